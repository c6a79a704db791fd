#include "store/records/listing.h"

#include <limits>

namespace tavrok::store {

namespace {

constexpr std::int64_t g_read_at_once = 100'000; // ids: PostgreSQL's client takes 40 bytes for each
constexpr std::size_t g_asked_at_once = 20;      // rows by id, so that few statements do for all numbers

const statement g_counter{"list_counter", "SELECT live FROM list_counter WHERE company = ? AND list = ?"};
const statement g_change{"list_counter_change",
                         "UPDATE list_counter SET live = live + ? WHERE company = ? AND list = ?"};
const statement g_create{"list_counter_create",
                         "INSERT INTO list_counter (company, list, live) VALUES (?, ?, ?)"};
const statement g_next{"number_next",
                       "UPDATE number_series SET last = last + 1 WHERE name = ? RETURNING last"};

/** The conditions of a filter with what they bind; `name` tells filters with different conditions apart. */
struct condition {
    std::string name;
    std::string sql;
    std::vector<value> bound;
};

/** How a criterion reads in a statement and in its name. */
struct match_words {
    const char* name;
    const char* sql;
};

match_words words_of(criterion::match how) {
    switch (how) {
        case criterion::match::like:
            return {"_like_", " LIKE ? ESCAPE '\\'"};
        case criterion::match::at_least:
            return {"_from_", " >= ?"};
        case criterion::match::at_most:
            return {"_to_", " <= ?"};
        default:
            return {"_is_", " = ?"};
    }
}

void add(list_filter& filter, const char* column, criterion::match how, std::int64_t bound) {
    auto& one = filter.criteria.emplace_back();
    one.column = column;
    one.how = how;
    one.bound = bound;
}

void add_named_like(condition& to, const criterion& one, std::int64_t company) {
    to.name.append("_in_").append(one.table).append("_").append(one.text);
    to.sql.append(" AND ").append(one.column).append(" IN (SELECT id FROM ").append(one.table);
    to.sql.append(" WHERE company = ? AND ").append(one.text).append(" LIKE ? ESCAPE '\\')");
    to.bound.emplace_back(company);
    to.bound.push_back(one.bound);
}

void add_named_within(condition& to, const listing& what, const criterion& one, std::int64_t company) {
    const std::string column = one.column;
    const std::string at = one.text;
    to.name.append("_in_").append(one.among->name).append("_").append(column).append("_").append(at);
    to.sql.append(" AND EXISTS (SELECT 1 FROM ")
        .append(one.among->table)
        .append(" n WHERE n.company = ? AND n.");
    to.sql.append(one.among->live).append(" AND n.").append(column).append(" = ").append(what.table);
    to.sql.append(".id AND n.").append(at).append(" >= ? AND n.").append(at).append(" <= ?)");
    to.bound.insert(to.bound.end(), {company, one.bound, one.most});
}

condition condition_of(const listing& what, const list_filter& filter) {
    condition made{"", std::string("company = ? AND ") + what.live, {filter.company}};
    for (const auto& one : filter.criteria) {
        if (one.how == criterion::match::named_like) {
            add_named_like(made, one, filter.company);
            continue;
        }
        if (one.how == criterion::match::named_within) {
            add_named_within(made, what, one, filter.company);
            continue;
        }
        const auto words = words_of(one.how);
        made.name.append(words.name).append(one.column);
        made.sql.append(" AND ").append(one.column).append(words.sql);
        made.bound.push_back(one.bound);
    }
    return made;
}

} // namespace

void like(list_filter& filter, const char* column, const std::string& pattern) {
    if (pattern.empty()) return;
    auto& one = filter.criteria.emplace_back();
    one.column = column;
    one.how = criterion::match::like;
    one.bound = pattern;
}

void named_like(list_filter& filter, const char* column, const char* table, const char* text,
                const std::string& pattern) {
    if (pattern.empty()) return;
    filter.criteria.push_back({column, criterion::match::named_like, pattern, table, text});
}

void named_within(list_filter& filter, const listing& among, const char* naming, const char* at,
                  std::int64_t least, std::int64_t most) {
    filter.criteria.push_back({naming, criterion::match::named_within, least, "", at, &among, most});
}

void equal(list_filter& filter, const char* column, std::int64_t bound) {
    add(filter, column, criterion::match::equal, bound);
}

void at_least(list_filter& filter, const char* column, std::int64_t bound) {
    add(filter, column, criterion::match::at_least, bound);
}

void at_most(list_filter& filter, const char* column, std::int64_t bound) {
    add(filter, column, criterion::match::at_most, bound);
}

void each_listed(connection& with, const listing& what, const list_filter& filter, list_end from,
                 std::int64_t limit, std::int64_t offset, const std::function<void(const row&)>& each) {
    auto where = condition_of(what, filter);
    const bool newest = from == list_end::newest;
    const std::string order = newest ? "DESC" : "ASC";
    // The ids first, from an index alone; only the rows of the page are read whole.
    const statement page{std::string(what.name) + (newest ? "_newest" : "_oldest") + where.name,
                         std::string("SELECT ") + what.columns + " FROM (SELECT id FROM " + what.table +
                             " WHERE " + where.sql + " ORDER BY id " + order + " LIMIT ? OFFSET ?) k JOIN " +
                             what.table + " t ON t.id = k.id AND t.company = ? " + what.joins +
                             " ORDER BY k.id " + order};
    where.bound.emplace_back(limit);
    where.bound.emplace_back(offset);
    where.bound.emplace_back(filter.company);
    with.query(page, where.bound, each);
}

void each_listed_id(connection& with, const listing& what, const list_filter& filter,
                    const std::function<void(std::int64_t id)>& each) {
    auto where = condition_of(what, filter);
    const statement part{std::string(what.name) + "_ids" + where.name,
                         std::string("SELECT id FROM ") + what.table + " WHERE " + where.sql +
                             " AND id < ? ORDER BY id DESC LIMIT " + std::to_string(g_read_at_once)};
    where.bound.emplace_back(std::numeric_limits<std::int64_t>::max());
    std::int64_t count = g_read_at_once;
    while (count == g_read_at_once) {
        count = 0;
        with.query(part, where.bound, [&](const row& one) {
            const auto id = one.integer(0);
            each(id);
            where.bound.back() = id;
            ++count;
        });
    }
}

void each_listed_of(connection& with, const listing& what, std::int64_t company,
                    const std::vector<std::int64_t>& ids, const std::function<void(const row&)>& each) {
    if (ids.empty()) return;
    std::vector<value> bound{company};
    const auto marks = bind_ids(bound, ids);
    const statement rows{std::string(what.name) + "_of_" + std::to_string(bound.size() - 1),
                         std::string("SELECT ") + what.columns + " FROM " + what.table + " t " + what.joins +
                             " WHERE t.company = ? AND t.id IN (" + marks + ") ORDER BY t.id DESC"};
    with.query(rows, bound, each);
}

std::string bind_ids(std::vector<value>& bound, const std::vector<std::int64_t>& ids) {
    const auto asked = (ids.size() + g_asked_at_once - 1) / g_asked_at_once * g_asked_at_once;
    bound.insert(bound.end(), ids.begin(), ids.end());
    bound.resize(bound.size() + asked - ids.size(), ids.back()); // asked for twice, a row comes once
    std::string marks = "?";
    for (std::size_t i = 1; i < asked; ++i)
        marks += ", ?";
    return marks;
}

std::int64_t list_counter(connection& with, std::int64_t company, const listing& what) {
    std::int64_t live = 0;
    with.query(g_counter, {company, std::string(what.name)}, [&](const row& one) { live = one.integer(0); });
    return live;
}

void change_list_counter(connection& with, std::int64_t company, const listing& what, std::int64_t by) {
    if (with.execute(g_change, {by, company, std::string(what.name)}) == 0) {
        with.execute(g_create, {company, std::string(what.name), by});
    }
}

std::int64_t next_number(connection& with, const std::string& series) {
    std::int64_t number = 0;
    with.query(g_next, {series}, [&](const row& one) { number = one.integer(0); });
    return number;
}

} // namespace tavrok::store
