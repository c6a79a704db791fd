#pragma once

#include <chrono>
#include <exception>
#include <functional>
#include <memory>
#include <string>
#include <unordered_map>

#include "store/connection.h"
#include "store/meter.h"
#include "store/migrations.h"

struct sqlite3;
struct sqlite3_stmt;

namespace tavrok::store {

/** One handle on a SQLite file, with its prepared statements. Used by one thread at a time.
 *
 *  The first failed statement spoils the transaction, as PostgreSQL has it: what follows fails too, until
 *  start_job(). So a job cannot swallow an error and commit the half that worked. */
class sqlite_connection final : public connection, public schema_session {
public:
    enum class access { read, write };
    struct setup {
        std::string path;
        access rights{access::read};
        std::chrono::milliseconds lock_timeout{0};
        std::shared_ptr<meter> figures;
        std::function<void(const std::string&)> on_doubt;
    };

    explicit sqlite_connection(setup how);
    ~sqlite_connection() override;
    sqlite_connection(const sqlite_connection&) = delete;
    sqlite_connection& operator=(const sqlite_connection&) = delete;

    using connection::execute;
    using connection::query;
    void query(const statement& what, std::span<const value> bound,
               const std::function<void(const row&)>& each) override;
    std::int64_t execute(const statement& what, std::span<const value> bound) override;

    dialect speaks() const override { return dialect::sqlite; }
    void script(const std::string& sql) override;
    void in_transaction(const std::function<void(connection&)>& step) override;

    /** Runs transaction control or a pragma, outside of the rules for jobs. */
    void control(const char* sql);
    /** False once SQLite itself has rolled the transaction back. */
    bool transaction_open() const;
    /** Forgets a failure of the job before. */
    void start_job() { m_failure = nullptr; }
    /** Throws what the job must not have passed over: a failed statement, a reference that leads nowhere. */
    void finish_job();
    /** No statement runs longer than this; zero: no limit. */
    void limit_statements(std::chrono::milliseconds longest) { m_longest = longest; }

    /** Frames in the write-ahead log after the last commit. */
    int wal_frames() const { return m_wal_frames; }
    int page_size() const { return m_page_size; }
    /** Moves what the log holds into the database without waiting for anybody. */
    void checkpoint();
    /** Moves all and cuts the log to nothing; false when readers still need it after `patience`. */
    bool truncate_log(std::chrono::milliseconds patience);

private:
    struct prepared {
        sqlite3_stmt* handle{nullptr};
        std::string sql;
        bool in_use{false};
        ~prepared();
    };
    class lease;

    void configure(const setup& how);
    lease ready_to_step(const statement& what, std::span<const value> bound);
    std::unique_ptr<prepared> prepare(const statement& what);
    lease take(const statement& what);
    void bind(sqlite3_stmt* handle, const statement& what, std::span<const value> bound);
    /** Steps to the end. */
    void run(sqlite3_stmt* handle, const statement& what, const std::function<void(const row&)>& each);
    bool checkpoint(int mode);
    [[noreturn]] void fail(int code, const std::string& where);
    [[noreturn]] void refuse(error_kind kind, const std::string& text);

    sqlite3* m_handle{nullptr};
    std::shared_ptr<meter> m_figures;
    std::function<void(const std::string&)> m_on_doubt;
    std::chrono::milliseconds m_lock_timeout;
    std::chrono::milliseconds m_longest{0};
    std::chrono::steady_clock::time_point m_deadline{};
    std::unordered_map<std::string, std::unique_ptr<prepared>> m_cache;
    std::exception_ptr m_failure;
    int m_wal_frames{0};
    int m_page_size{0};
};

} // namespace tavrok::store
