#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "domain/principal.h"
#include "store/connection.h"

namespace tavrok::domain {

/** A page that the service and its client know: the action key of a navigation row and its title. */
struct page {
    std::string_view key;
    std::string_view title;
};

/** Every page. The rows themselves, with groups and rights, are data in the menu table. */
extern const std::array<page, 26> g_pages;

/** Ids up to here are of the rows that the service was made with; later ones are given to added rows. */
inline constexpr std::int64_t g_last_own_menu_row = 100'000;
/** Rights that the service was made with and that are in the menu no more, as page and right. Pages that are
 * not there themselves are left out. */
std::vector<std::pair<std::string, std::string>> missing_rights(store::connection& with);

/** A menu row with the rows below it, in their order. */
struct menu_node {
    std::int64_t id{0};
    std::string name;
    std::string action;     /**< navigation key, right key, or the key of a group */
    std::string real_level; /**< "0" group, "1" page, "2" right */
    std::int64_t sort{0};
    int show{1};
    std::vector<menu_node> child;
};

/** The whole table as a tree: for the grant dialog and the menu administration. */
std::vector<menu_node> whole_menu(store::connection& with);
/** The tree as its reader may see it: shown rows; for an ordinary user the granted ones, and below a row that
 * is not granted nothing. */
std::vector<menu_node> visible_menu(store::connection& with, const principal& who);

} // namespace tavrok::domain
