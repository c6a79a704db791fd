#include "domain/trees.h"

#include <unordered_map>

#include "domain/audit.h"
#include "domain/refused.h"
#include "domain/text_rules.h"
#include "store/records/companies.h"

namespace tavrok::domain {

namespace {

constexpr std::size_t g_name_limit = 200;

std::string words(const store::tree& in, std::int64_t id) {
    return std::string(in.nodes.name) + ' ' + std::to_string(id);
}

void finish(store::connection& with, const principal& who, const store::tree& in, const char* deed,
            std::int64_t id, std::int64_t now) {
    note(with, who, std::string(in.nodes.name) + deed, id, now);
    store::bump_data_version(with, who.company);
}

/** The nodes below `parent`; the recursion is no deeper than the tree. */
std::vector<tree_node> below(std::int64_t parent,
                             const std::unordered_map<std::int64_t, std::vector<store::node_record>>& all) {
    std::vector<tree_node> list;
    const auto found = all.find(parent);
    if (found == all.end()) return list;
    list.reserve(found->second.size());
    for (const auto& one : found->second)
        list.push_back({one.id, one.name, below(one.id, all)});
    return list;
}

} // namespace

std::vector<tree_node> list_tree(store::connection& with, const principal& who, const store::tree& of) {
    std::unordered_map<std::int64_t, std::vector<store::node_record>> by_parent;
    store::each_listed(with, of.nodes, {who.company, {}}, store::list_end::oldest, g_tree_nodes, 0,
                       [&](const store::row& row) {
                           auto one = store::node_of(row);
                           by_parent[one.parent].push_back(std::move(one));
                       });
    return below(0, by_parent);
}

added add_node(store::connection& with, const principal& who, const store::tree& to, const std::string& name,
               std::int64_t parent, std::int64_t now) {
    check_required("name", name, g_name_limit);
    std::int64_t depth = 1;
    if (parent != 0) {
        const auto above = store::hold_node(with, to, who.company, parent);
        if (!above) throw refused("unknown " + words(to, parent));
        depth = *above + 1;
    }
    if (depth > g_tree_depth) throw refused("below " + words(to, parent) + " is no more room");
    const auto id = store::insert_node(with, to, who.company, who.user, {0, parent, depth, now, name});
    store::change_list_counter(with, who.company, to.nodes, 1);
    if (store::list_counter(with, who.company, to.nodes) > g_tree_nodes) throw refused("the tree is full");
    finish(with, who, to, "_add", id, now);
    return {id, now};
}

void rename_node(store::connection& with, const principal& who, const store::tree& in, std::int64_t id,
                 const std::string& name, std::int64_t now) {
    check_required("name", name, g_name_limit);
    if (store::rename_node(with, in, who.company, id, name) == 0) throw refused("unknown " + words(in, id));
    finish(with, who, in, "_edit", id, now);
}

// Retired first and looked into afterwards: once the nodes are retired, nothing can be put into them, and
// what was put there before is seen.
void remove_node(store::connection& with, const principal& who, const store::tree& from, std::int64_t id,
                 std::int64_t now) {
    const auto gone = store::retire_subtree(with, from, who.company, id, now);
    if (gone.empty()) throw refused("unknown " + words(from, id));
    if (const auto held = store::content_of(with, from, who.company, gone)) {
        throw refused(std::string(from.content) + ' ' + std::to_string(*held) + " stands in " +
                      words(from, id));
    }
    store::change_list_counter(with, who.company, from.nodes, -static_cast<std::int64_t>(gone.size()));
    finish(with, who, from, "_delete", id, now);
}

} // namespace tavrok::domain
