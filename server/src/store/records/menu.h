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

/** A granted row; for a right, the action of the page above it, else empty. */
struct grant_record {
    std::int64_t menu{0};
    std::string action;
    std::string page;
};

/** Every row, parents before children, siblings in their order. */
void each_menu_row(connection& with, const std::function<void(const menu_record&)>& each);
/** The user's grants by row id. */
void each_grant(connection& with, std::int64_t company, std::int64_t user,
                const std::function<void(const grant_record&)>& each);
bool menu_row_exists(connection& with, std::int64_t menu);
/** Granting twice is granting once. */
void insert_grant(connection& with, std::int64_t company, std::int64_t user, std::int64_t menu);
/** Takes every grant of a user away. */
void delete_grants(connection& with, std::int64_t company, std::int64_t user);

} // namespace tavrok::store
