#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
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
