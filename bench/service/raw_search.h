#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "store/connection.h"

struct sqlite3;
struct sqlite3_stmt;

namespace bench {

/** What the service asks its database for one search: count and page, with the values bound. */
struct recorded_search {
    struct step {
        std::string sql;
        std::vector<tavrok::store::value> bound;
    };
    std::string term;
    std::int64_t total{};
    std::vector<step> steps;
};

/** Runs the service's own search code over the file, one search of the name for each term, and notes its
 *  statements. The file must not be served meanwhile. */
std::vector<recorded_search> record_searches(const std::string& file, const std::vector<std::string>& terms);

/** The same statements on the same file, in this process and with nothing around them. */
class raw_reader {
public:
    explicit raw_reader(const std::string& file);
    ~raw_reader();
    raw_reader(const raw_reader&) = delete;
    raw_reader& operator=(const raw_reader&) = delete;

    /** One fresh read transaction; every column of every row is read. Gives the milliseconds. */
    double run(const recorded_search& search);

private:
    sqlite3_stmt* prepared(const std::string& sql);
    void control(const char* sql);

    sqlite3* m_handle{nullptr};
    std::map<std::string, sqlite3_stmt*> m_statements;
};

} // namespace bench
