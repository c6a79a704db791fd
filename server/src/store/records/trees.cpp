#include "store/records/trees.h"

#include <algorithm>
#include <utility>

namespace tavrok::store {

namespace {

const char* const g_columns = "t.id, t.parent, t.name";

statement in_words(const tree& in, const char* name, const std::string& sql) {
    return {std::string(in.nodes.name) + name, sql};
}

/** Ids go into a statement so many at a time: always the same number, so that it is the same statement. */
constexpr std::size_t g_at_once = 64;

std::string places() {
    std::string text = "(?";
    for (std::size_t i = 1; i < g_at_once; ++i)
        text += ", ?";
    return text + ')';
}

/** Runs a statement that ends with places() for all the ids; what it binds before them comes first. */
void query_with_ids(connection& with, const statement& what, const std::vector<value>& before,
                    const std::vector<std::int64_t>& ids, const std::function<void(const row&)>& each) {
    for (std::size_t from = 0; from < ids.size(); from += g_at_once) {
        auto bound = before;
        for (std::size_t i = from; i < from + g_at_once; ++i)
            bound.emplace_back(ids[std::min(i, ids.size() - 1)]);
        with.query(what, bound, each);
    }
}

std::optional<std::int64_t> first(connection& with, const statement& what,
                                  std::initializer_list<value> bound) {
    std::optional<std::int64_t> found;
    with.query(what, bound, [&](const row& one) { found = one.integer(0); });
    return found;
}

} // namespace

const tree g_departments{{"department", "department", "state = 1", g_columns}, nullptr};
const tree g_categories{{"category", "category", "state = 1", g_columns}, "product"};

node_record node_of(const row& one) {
    node_record made;
    made.id = one.integer(0);
    made.parent = one.integer(1);
    made.name = one.text(2);
    return made;
}

std::int64_t insert_node(connection& with, const tree& in, std::int64_t company, std::int64_t user,
                         const node_record& what) {
    const auto insert = in_words(in, "_insert",
                                 std::string("INSERT INTO ") + in.nodes.table +
                                     " (company, added_by, parent, depth, added_at, name) "
                                     "VALUES (?, ?, ?, ?, ?, ?) RETURNING id");
    return first(with, insert, {company, user, what.parent, what.depth, what.added_at, what.name}).value();
}

std::int64_t rename_node(connection& with, const tree& in, std::int64_t company, std::int64_t id,
                         const std::string& name) {
    const auto update = in_words(
        in, "_rename",
        std::string("UPDATE ") + in.nodes.table + " SET name = ? WHERE company = ? AND id = ? AND state = 1");
    return with.execute(update, {name, company, id});
}

std::optional<std::int64_t> hold_node(connection& with, const tree& in, std::int64_t company,
                                      std::int64_t id) {
    const auto hold =
        in_words(in, "_hold",
                 std::string("UPDATE ") + in.nodes.table +
                     " SET state = state WHERE company = ? AND id = ? AND state = 1 RETURNING depth");
    return first(with, hold, {company, id});
}

// Each level is retired by statements of its own, after the level above it: whoever puts a node below another
// one holds that one first, so he is either done, and the next statement sees what he put there, or finds it
// retired.
std::vector<std::int64_t> retire_subtree(connection& with, const tree& in, std::int64_t company,
                                         std::int64_t id, std::int64_t now) {
    const auto retire = [&](const char* name, const std::string& which) {
        return in_words(in, name,
                        std::string("UPDATE ") + in.nodes.table +
                            " SET state = 2, retired_at = ? WHERE company = ? AND state = 1 AND " + which +
                            " RETURNING id");
    };
    const auto top = first(with, retire("_retire", "id = ?"), {now, company, id});
    if (!top) return {};
    const auto below = retire("_retire_below", "parent IN " + places());
    std::vector<std::int64_t> gone{*top};
    for (auto level = gone; !level.empty();) {
        std::vector<std::int64_t> next;
        query_with_ids(with, below, {now, company}, level,
                       [&](const row& one) { next.push_back(one.integer(0)); });
        gone.insert(gone.end(), next.begin(), next.end());
        level = std::move(next);
    }
    return gone;
}

std::optional<std::int64_t> content_of(connection& with, const tree& in, std::int64_t company,
                                       const std::vector<std::int64_t>& nodes) {
    std::optional<std::int64_t> found;
    if (in.content == nullptr) return found;
    const auto search =
        in_words(in, "_content",
                 std::string("SELECT min(id) FROM ") + in.content + " WHERE company = ? AND state = 1 AND " +
                     in.nodes.table + " IN " + places());
    query_with_ids(with, search, {company}, nodes, [&](const row& one) {
        if (!one.null(0)) found = one.integer(0);
    });
    return found;
}

} // namespace tavrok::store
