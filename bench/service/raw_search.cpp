#include "service/raw_search.h"

#include <sqlite3.h>

#include <stdexcept>

#include "domain/accounts.h"
#include "domain/partners.h"
#include "store/database.h"
#include "support/service.h"
#include "support/statistics.h"

namespace bench {
namespace {

using namespace tavrok;

/** Notes what goes through it. */
class recorder final : public store::connection {
public:
    explicit recorder(store::connection& inner) : m_inner(inner) {}
    void query(const store::statement& what, std::span<const store::value> bound,
               const std::function<void(const store::row&)>& each) override {
        steps.push_back({what.sql, {bound.begin(), bound.end()}});
        m_inner.query(what, bound, each);
    }
    std::int64_t execute(const store::statement& what, std::span<const store::value> bound) override {
        return m_inner.execute(what, bound);
    }

    std::vector<recorded_search::step> steps;

private:
    store::connection& m_inner;
};

void bind(sqlite3_stmt* statement, int at, const store::value& value) {
    if (const auto* number = std::get_if<std::int64_t>(&value))
        sqlite3_bind_int64(statement, at, *number);
    else if (const auto* text = std::get_if<std::string>(&value))
        sqlite3_bind_text(statement, at, text->data(), static_cast<int>(text->size()), SQLITE_STATIC);
    else
        sqlite3_bind_null(statement, at);
}

} // namespace

std::vector<recorded_search> record_searches(const std::string& file, const std::vector<std::string>& terms) {
    store::options how;
    how.location = file;
    const auto database = store::open(how);
    std::vector<recorded_search> all;
    store::read_now(*database, [&](store::connection& with) {
        const auto user = domain::find_user(with, demo_name);
        if (!user) throw std::runtime_error("no demo account");
        domain::principal who;
        who.company = user->company;
        who.user = user->user;
        who.administrator = true;
        all.clear();
        for (const std::string& term : terms) {
            recorder notes(with);
            domain::count_cache empty;
            domain::partner_search search;
            search.type = domain::partner_type::supplier;
            search.name = term;
            const auto page = domain::list_partners(notes, who, search, 1, 20, empty);
            all.push_back({term, page.total, std::move(notes.steps)});
        }
    });
    database->stop();
    return all;
}

raw_reader::raw_reader(const std::string& file) {
    if (sqlite3_open_v2(file.c_str(), &m_handle, SQLITE_OPEN_READONLY | SQLITE_OPEN_NOMUTEX, nullptr) !=
        SQLITE_OK)
        throw std::runtime_error("cannot read " + file);
    control("PRAGMA mmap_size=0");
    control("PRAGMA case_sensitive_like=ON"); // as the service has it
}

raw_reader::~raw_reader() {
    for (const auto& [sql, statement] : m_statements)
        sqlite3_finalize(statement);
    sqlite3_close(m_handle);
}

double raw_reader::run(const recorded_search& search) {
    const std::int64_t begin = now_ns();
    control("BEGIN");
    for (const recorded_search::step& step : search.steps) {
        sqlite3_stmt* statement = prepared(step.sql);
        int at = 0;
        for (const store::value& value : step.bound)
            bind(statement, ++at, value);
        int code = SQLITE_ROW;
        while ((code = sqlite3_step(statement)) == SQLITE_ROW)
            for (int column = 0; column < sqlite3_column_count(statement); ++column)
                sqlite3_column_text(statement, column);
        sqlite3_reset(statement);
        if (code != SQLITE_DONE) throw std::runtime_error(sqlite3_errmsg(m_handle));
    }
    control("COMMIT");
    return static_cast<double>(now_ns() - begin) / 1e6;
}

sqlite3_stmt* raw_reader::prepared(const std::string& sql) {
    sqlite3_stmt*& statement = m_statements[sql];
    if (statement == nullptr && sqlite3_prepare_v3(m_handle, sql.c_str(), -1, SQLITE_PREPARE_PERSISTENT,
                                                   &statement, nullptr) != SQLITE_OK)
        throw std::runtime_error(sqlite3_errmsg(m_handle));
    return statement;
}

void raw_reader::control(const char* sql) {
    if (sqlite3_exec(m_handle, sql, nullptr, nullptr, nullptr) != SQLITE_OK)
        throw std::runtime_error(sqlite3_errmsg(m_handle));
}

} // namespace bench
