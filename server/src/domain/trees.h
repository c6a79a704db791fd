#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "domain/listing.h"
#include "domain/principal.h"
#include "store/connection.h"
#include "store/records/trees.h"

namespace tavrok::domain {

/** The trees of a company: store::g_departments and store::g_categories. A tree goes out in one nested
 * answer, so both its size and its depth are bounded. */
inline constexpr std::int64_t g_tree_depth = 50;
inline constexpr std::int64_t g_tree_nodes = 10'000;

struct tree_node {
    std::int64_t id{0};
    std::string name;
    std::vector<tree_node> child; /**< in the order in which they were added */
};

std::vector<tree_node> list_tree(store::connection& with, const principal& who, const store::tree& of);
/** Adds a node below `parent`, 0 for the top. Throws `refused`, as do the next ones. */
added add_node(store::connection& with, const principal& who, const store::tree& to, const std::string& name,
               std::int64_t parent, std::int64_t now);
void rename_node(store::connection& with, const principal& who, const store::tree& in, std::int64_t id,
                 const std::string& name, std::int64_t now);
/** Retires the node with all below it. Refused while something live stands in one of them. */
void remove_node(store::connection& with, const principal& who, const store::tree& from, std::int64_t id,
                 std::int64_t now);

} // namespace tavrok::domain
