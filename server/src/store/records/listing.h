#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "store/connection.h"

namespace tavrok::store {

/** A table whose live rows are listed newest first: how its pages are read. */
struct listing {
    const char* name;    /**< names its statements, its counter and its counts */
    const char* table;   /**< has the columns company and id */
    const char* live;    /**< the condition of a row that lists show */
    const char* columns; /**< what a row is read with; the table is t */
    const char* joins{""};
};

/** What a listed row must fulfil. */
struct criterion {
    enum class match { equal, like, at_least, at_most, named_like, named_within };
    const char* column{""};
    match how{match::equal};
    value bound{nullptr}; /**< for `like` a pattern over a folded column */
    /** For `named_like`: the table, of the same company, a row of which the column names, and the text of it
     * that the pattern is over. */
    const char* table{""};
    const char* text{""};
    /** For `named_within`: the listing whose rows name the one that is listed, in `column`, with `text`
     * between `bound` and `most`. */
    const listing* among{nullptr};
    value most{nullptr};
};

struct list_filter {
    std::int64_t company{0};
    std::vector<criterion> criteria;
};

/** The end from which rows are counted off: the nearer one is the cheaper. */
enum class list_end { newest, oldest };

/** Adds a criterion where there is a pattern. */
void like(list_filter& filter, const char* column, const std::string& pattern);
/** Adds a criterion on a text of the row of `table` that the column names, where there is a pattern. That
 * table is searched first: it is the small one. Rows of it that are no longer live count as well. */
void named_like(list_filter& filter, const char* column, const char* table, const char* text,
                const std::string& pattern);
/** Adds a criterion. */
void equal(list_filter& filter, const char* column, std::int64_t bound);
/** Adds the bounds of a range, both included. */
void at_least(list_filter& filter, const char* column, std::int64_t bound);
void at_most(list_filter& filter, const char* column, std::int64_t bound);

/** Adds that a row of `among`, of the same company, names the listed one in its column `naming`, with `at`
 * between the bounds, both included. */
void named_within(list_filter& filter, const listing& among, const char* naming, const char* at,
                  std::int64_t least, std::int64_t most);

/** Rows `offset` to `offset + limit` from that end, and in that direction. */
void each_listed(connection& with, const listing& what, const list_filter& filter, list_end from,
                 std::int64_t limit, std::int64_t offset, const std::function<void(const row&)>& each);
/** Every id, newest first, row by row: for filtered lists. */
void each_listed_id(connection& with, const listing& what, const list_filter& filter,
                    const std::function<void(std::int64_t id)>& each);
/** The rows of the company with these ids, newest first. */
void each_listed_of(connection& with, const listing& what, std::int64_t company,
                    const std::vector<std::int64_t>& ids, const std::function<void(const row&)>& each);

/** Appends the ids to what is bound and gives the marks for them. They are filled up with the last one, so
 * that few statements do for all numbers; there is at least one. */
std::string bind_ids(std::vector<value>& bound, const std::vector<std::int64_t>& ids);

/** The kept number of live rows of a company's list. */
std::int64_t list_counter(connection& with, std::int64_t company, const listing& what);
void change_list_counter(connection& with, std::int64_t company, const listing& what, std::int64_t by);

/** The next number of a series; its row is locked from here to the commit. */
std::int64_t next_number(connection& with, const std::string& series);

} // namespace tavrok::store
