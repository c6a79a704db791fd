#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "store/connection.h"
#include "store/records/listing.h"

namespace tavrok::store {

/** A table of nodes, each below a node that stood before it. */
struct tree {
    listing nodes;       /**< a row of it is read by node_of */
    const char* content; /**< the table whose live rows stand in the nodes by a column that is named as the
                              nodes' table; null where nothing stands in them */
};

extern const tree g_departments;
extern const tree g_categories;

struct node_record {
    std::int64_t id{0};
    std::int64_t parent{0}; /**< 0 at the top */
    std::int64_t depth{1};  /**< 1 at the top */
    std::int64_t added_at{0};
    std::string name{};
};

/** Reads id, parent and name. */
node_record node_of(const row& one);

std::int64_t insert_node(connection& with, const tree& in, std::int64_t company, std::int64_t user,
                         const node_record& what);
/** Gives 0 for an unknown or retired node. */
std::int64_t rename_node(connection& with, const tree& in, std::int64_t company, std::int64_t id,
                         const std::string& name);
/** Holds a live node until the transaction ends, so that it cannot be retired meanwhile, and gives its depth;
 *  none for an unknown or retired node. To be called before anything is put into the node. */
std::optional<std::int64_t> hold_node(connection& with, const tree& in, std::int64_t company,
                                      std::int64_t id);
/** Retires a node and all below it, and gives the ids of those that were live, the node first; none when it
 * was not. Whatever is put below one of them at the same time with hold_node is retired too, or finds its
 * node retired. */
std::vector<std::int64_t> retire_subtree(connection& with, const tree& in, std::int64_t company,
                                         std::int64_t id, std::int64_t now);
/** A live row that stands in one of the nodes. */
std::optional<std::int64_t> content_of(connection& with, const tree& in, std::int64_t company,
                                       const std::vector<std::int64_t>& nodes);

} // namespace tavrok::store
