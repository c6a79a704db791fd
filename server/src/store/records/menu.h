#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "store/connection.h"

namespace tavrok::store {

/** A row of the menu; `parent` 0 is the top. */
struct menu_record {
    std::int64_t id{0};
    std::int64_t parent{0};
    std::string name;
    std::string action;
    std::int64_t real_level{0};
    std::int64_t sort{0};
    std::int64_t shown{1};
};

/** Every row, siblings in their order. */
void each_menu_row(connection& with, const std::function<void(const menu_record&)>& each);
bool menu_row_exists(connection& with, std::int64_t menu);

/** Keeps everybody else from changing the menu until the commit. */
void lock_menu(connection& with);
/** The id of a row to be added; locks the menu. */
std::int64_t next_menu_row(connection& with);
void insert_menu_row(connection& with, const menu_record& row);
void update_menu_row(connection& with, const menu_record& row);
/** Deletes the row with all that stand below it and all their grants. */
void delete_menu_rows(connection& with, std::int64_t top);

} // namespace tavrok::store
