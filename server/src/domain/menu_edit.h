#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "domain/menu.h"
#include "domain/principal.h"
#include "store/connection.h"

namespace tavrok::domain {

/** So many rows may stand one below the other: what reads the tree goes down it row by row. */
inline constexpr int g_menu_depth = 12;

/** A menu row as somebody wants it. */
struct menu_wish {
    std::string name;
    std::int64_t parent{0}; /**< 0: the top */
    std::string action;
    std::int64_t sort{0};
    int shown{1};
    /** Without one an edited row keeps its own, and a new row becomes a right below a page, else a page. */
    std::optional<std::int64_t> real_level{};
};

/** The whole table, for those who may change it. Throws `refused` for all others. */
std::vector<menu_node> menu_to_edit(store::connection& with, const principal& who);

/**
 * These change the menu of the whole service. They throw `refused` where the menu would not hold together:
 * the row above must exist; nothing stands below a right, a right stands below a page, and nothing below
 * itself or deeper than g_menu_depth; a page is there once, a right once on its page. The pages that the
 * service knows and their rights keep their action and level, the rights their page, and none of them is
 * deleted.
 */
std::int64_t add_menu_row(store::connection& with, const principal& who, const menu_wish& wish,
                          std::int64_t now);
void edit_menu_row(store::connection& with, const principal& who, std::int64_t id, const menu_wish& wish,
                   std::int64_t now);
/** With all that stands below the row, and the grants of all of them. */
void remove_menu_row(store::connection& with, const principal& who, std::int64_t id, std::int64_t now);

/** Rows that break these rules, a sentence each. */
std::vector<std::string> menu_faults(store::connection& with);

} // namespace tavrok::domain
