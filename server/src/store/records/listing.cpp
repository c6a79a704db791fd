#include "store/records/listing.h"

namespace tavrok::store {

namespace {

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

condition condition_of(const listing& what, const list_filter& filter) {
    condition made{"", std::string("company = ? AND ") + what.live, {filter.company}};
    for (const auto& one : filter.criteria) {
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

std::int64_t count_listed(connection& with, const listing& what, const list_filter& filter) {
    const auto where = condition_of(what, filter);
    const statement count{std::string(what.name) + "_count" + where.name,
                          std::string("SELECT count(*) FROM ") + what.table + " WHERE " + where.sql};
    std::int64_t found = 0;
    with.query(count, where.bound, [&](const row& one) { found = one.integer(0); });
    return found;
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
