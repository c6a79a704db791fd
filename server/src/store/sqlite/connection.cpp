#include "store/sqlite/connection.h"

#include <sqlite3.h>

#include <optional>
#include <utility>

#include "store/bound_values.h"
#include "store/sqlite/errors.h"

namespace tavrok::store {

namespace {

constexpr std::size_t g_cache_limit = 512;
constexpr int g_steps_between_looks = 4000; // of the virtual machine, well below a millisecond

class sqlite_row final : public row {
public:
    sqlite_row(sqlite3_stmt* handle, const std::string& name) : m_handle(handle), m_name(name) {}

    bool null(int column) const override { return type(column) == SQLITE_NULL; }
    std::int64_t integer(int column) const override {
        expect(column, SQLITE_INTEGER, "an integer");
        return sqlite3_column_int64(m_handle, column);
    }
    std::string_view text(int column) const override {
        expect(column, SQLITE_TEXT, "a text");
        const auto* bytes = reinterpret_cast<const char*>(sqlite3_column_text(m_handle, column));
        return {bytes, static_cast<std::size_t>(sqlite3_column_bytes(m_handle, column))};
    }

private:
    int type(int column) const {
        if (column < 0 || column >= sqlite3_column_count(m_handle)) wrong(column, "there");
        return sqlite3_column_type(m_handle, column);
    }
    void expect(int column, int wanted, const char* words) const {
        if (type(column) != wanted) wrong(column, words);
    }
    [[noreturn]] void wrong(int column, const char* words) const {
        throw error(error_kind::other, m_name + ": column " + std::to_string(column) + " is not " + words);
    }

    sqlite3_stmt* m_handle;
    const std::string& m_name;
};

const std::string& label(const statement& what) {
    return what.name.empty() ? what.sql : what.name;
}

bool only_blanks(const char* text) {
    return std::string_view(text).find_first_not_of(" \t\r\n;") == std::string_view::npos;
}

} // namespace

sqlite_connection::prepared::~prepared() {
    sqlite3_finalize(handle);
}

/** A statement while it is used. However that ends, the statement is reset: one left open would hold its
 * snapshot. */
class sqlite_connection::lease {
public:
    explicit lease(prepared& cached) : m_statement(&cached) { m_statement->in_use = true; }
    explicit lease(std::unique_ptr<prepared> own) : m_own(std::move(own)), m_statement(m_own.get()) {}
    lease(lease&& other) noexcept
        : m_own(std::move(other.m_own)), m_statement(std::exchange(other.m_statement, nullptr)) {}
    lease& operator=(lease&&) = delete;
    ~lease() {
        if (!m_statement) return;
        sqlite3_reset(m_statement->handle);
        sqlite3_clear_bindings(m_statement->handle);
        m_statement->in_use = false;
    }
    sqlite3_stmt* handle() const { return m_statement->handle; }

private:
    std::unique_ptr<prepared> m_own;
    prepared* m_statement;
};

sqlite_connection::sqlite_connection(setup how)
    : m_figures(how.figures), m_on_doubt(how.on_doubt), m_lock_timeout(how.lock_timeout) {
    const int rights = how.rights == access::write ? SQLITE_OPEN_READWRITE : SQLITE_OPEN_READONLY;
    const int code = sqlite3_open_v2(how.path.c_str(), &m_handle,
                                     rights | SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_EXRESCODE, nullptr);
    try {
        if (code != SQLITE_OK) fail(code, "open " + how.path);
        configure(how);
    } catch (...) {
        sqlite3_close_v2(m_handle);
        throw;
    }
}

sqlite_connection::~sqlite_connection() {
    m_cache.clear();
    sqlite3_close_v2(m_handle);
}

void sqlite_connection::configure(const setup& how) {
    sqlite3_busy_timeout(m_handle, static_cast<int>(m_lock_timeout.count()));
    // Two connections must never be at the log at once, one with a checkpoint: the writer alone does it, when
    // told.
    sqlite3_db_config(m_handle, SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1, nullptr);
    // A misspelt column in double quotes is an error, as it is on PostgreSQL.
    sqlite3_db_config(m_handle, SQLITE_DBCONFIG_DQS_DML, 0, nullptr);
    sqlite3_db_config(m_handle, SQLITE_DBCONFIG_DQS_DDL, 0, nullptr);
    sqlite3_db_config(m_handle, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
    if (how.rights == access::write) {
        const statement log{"", "PRAGMA journal_mode=WAL"};
        query(log, {}, [this](const row& one) {
            if (one.text(0) != "wal") refuse(error_kind::other, "no write-ahead log can be kept here");
        });
        control("PRAGMA synchronous=FULL");
        control("PRAGMA foreign_keys=ON");
    } else {
        control("PRAGMA query_only=ON");
    }
    control("PRAGMA wal_autocheckpoint=0");
    control("PRAGMA mmap_size=0");
    control("PRAGMA temp_store=MEMORY");
    control("PRAGMA trusted_schema=OFF");
    control("PRAGMA cell_size_check=ON");
    control("PRAGMA case_sensitive_like=ON"); // as on PostgreSQL
    sqlite3_wal_hook(
        m_handle,
        [](void* self, sqlite3*, const char*, int frames) {
            static_cast<sqlite_connection*>(self)->m_wal_frames = frames;
            return SQLITE_OK;
        },
        this);
    sqlite3_progress_handler(
        m_handle, g_steps_between_looks,
        [](void* self) {
            const auto& us = *static_cast<sqlite_connection*>(self);
            return us.m_longest.count() > 0 && std::chrono::steady_clock::now() > us.m_deadline ? 1 : 0;
        },
        this);
    const statement size{"", "PRAGMA page_size"};
    query(size, {}, [this](const row& one) { m_page_size = static_cast<int>(one.integer(0)); });
}

void sqlite_connection::query(const statement& what, std::span<const value> bound,
                              const std::function<void(const row&)>& each) {
    const measured timed(*m_figures, what.name);
    const auto ready = ready_to_step(what, bound);
    run(ready.handle(), what, each);
}

std::int64_t sqlite_connection::execute(const statement& what, std::span<const value> bound) {
    const measured timed(*m_figures, what.name);
    const auto ready = ready_to_step(what, bound);
    const auto before = sqlite3_total_changes64(m_handle);
    run(ready.handle(), what, [](const row&) {});
    // A statement that changes no rows by its nature leaves the count of the one before it.
    return sqlite3_total_changes64(m_handle) == before ? 0 : sqlite3_changes64(m_handle);
}

sqlite_connection::lease sqlite_connection::ready_to_step(const statement& what,
                                                          std::span<const value> bound) {
    if (m_failure) std::rethrow_exception(m_failure);
    try {
        check_bound(what, bound);
    } catch (const error&) {
        m_failure = std::current_exception();
        throw;
    }
    auto ready = take(what);
    bind(ready.handle(), what, bound);
    m_deadline = std::chrono::steady_clock::now() + m_longest;
    return ready;
}

std::unique_ptr<sqlite_connection::prepared> sqlite_connection::prepare(const statement& what) {
    auto fresh = std::make_unique<prepared>();
    fresh->sql = what.sql;
    const char* tail = nullptr;
    const int code = sqlite3_prepare_v3(m_handle, fresh->sql.c_str(), -1, SQLITE_PREPARE_PERSISTENT,
                                        &fresh->handle, &tail);
    if (code != SQLITE_OK) fail(code, label(what));
    if (!fresh->handle || !only_blanks(tail)) {
        refuse(error_kind::other, label(what) + ": not exactly one statement: " + what.sql);
    }
    return fresh;
}

sqlite_connection::lease sqlite_connection::take(const statement& what) {
    if (what.name.empty()) return lease(prepare(what));
    auto found = m_cache.find(what.name);
    if (found == m_cache.end()) {
        if (m_cache.size() >= g_cache_limit) {
            std::erase_if(m_cache, [](const auto& entry) { return !entry.second->in_use; });
        }
        found = m_cache.emplace(what.name, prepare(what)).first;
    }
    if (found->second->sql != what.sql) {
        refuse(error_kind::other, "two statements share the name " + what.name);
    }
    // The statement stands on a row of an outer query: the inner one gets a copy of its own.
    if (found->second->in_use) return lease(prepare(what));
    return lease(*found->second);
}

void sqlite_connection::bind(sqlite3_stmt* handle, const statement& what, std::span<const value> bound) {
    const auto wanted = static_cast<std::size_t>(sqlite3_bind_parameter_count(handle));
    if (wanted != bound.size()) {
        refuse(error_kind::other, label(what) + ": takes " + std::to_string(wanted) + " values, not " +
                                      std::to_string(bound.size()));
    }
    for (std::size_t i = 0; i < bound.size(); ++i) {
        const int place = static_cast<int>(i) + 1;
        int code = SQLITE_OK;
        if (const auto* number = std::get_if<std::int64_t>(&bound[i])) {
            code = sqlite3_bind_int64(handle, place, *number);
        } else if (const auto* text = std::get_if<std::string>(&bound[i])) {
            code = sqlite3_bind_text64(handle, place, text->data(), text->size(), SQLITE_STATIC, SQLITE_UTF8);
        } else {
            code = sqlite3_bind_null(handle, place);
        }
        if (code != SQLITE_OK) fail(code, label(what));
    }
}

void sqlite_connection::run(sqlite3_stmt* handle, const statement& what,
                            const std::function<void(const row&)>& each) {
    const sqlite_row here(handle, label(what));
    int code = sqlite3_step(handle);
    while (code == SQLITE_ROW) {
        each(here);
        code = sqlite3_step(handle);
    }
    if (code != SQLITE_DONE) fail(code, label(what));
}

void sqlite_connection::script(const std::string& sql) {
    m_deadline = std::chrono::steady_clock::time_point::max();
    const int code = sqlite3_exec(m_handle, sql.c_str(), nullptr, nullptr, nullptr);
    if (code != SQLITE_OK) fail(code, "script");
}

void sqlite_connection::in_transaction(const std::function<void(connection&)>& step) {
    start_job();
    control("BEGIN IMMEDIATE");
    try {
        step(*this);
        finish_job();
        control("COMMIT");
    } catch (...) {
        if (transaction_open()) control("ROLLBACK");
        throw;
    }
}

void sqlite_connection::control(const char* sql) {
    m_deadline = std::chrono::steady_clock::time_point::max();
    const int code = sqlite3_exec(m_handle, sql, nullptr, nullptr, nullptr);
    if (code != SQLITE_OK) fail(code, sql);
}

bool sqlite_connection::transaction_open() const {
    return sqlite3_get_autocommit(m_handle) == 0;
}

void sqlite_connection::finish_job() {
    if (m_failure) std::rethrow_exception(m_failure);
    int unresolved = 0;
    int unused = 0;
    // A deferred reference is looked at by COMMIT only, and would take the neighbours in the group down with
    // it.
    sqlite3_db_status(m_handle, SQLITE_DBSTATUS_DEFERRED_FKS, &unresolved, &unused, 0);
    if (unresolved != 0) refuse(error_kind::unique, "a reference leads to no row");
}

void sqlite_connection::checkpoint() {
    checkpoint(SQLITE_CHECKPOINT_PASSIVE);
}

bool sqlite_connection::truncate_log(std::chrono::milliseconds patience) {
    sqlite3_busy_timeout(m_handle, static_cast<int>(patience.count()));
    const bool all = checkpoint(SQLITE_CHECKPOINT_TRUNCATE);
    sqlite3_busy_timeout(m_handle, static_cast<int>(m_lock_timeout.count()));
    if (all) m_wal_frames = 0;
    return all;
}

bool sqlite_connection::checkpoint(int mode) {
    m_deadline = std::chrono::steady_clock::time_point::max();
    const int code = sqlite3_wal_checkpoint_v2(m_handle, nullptr, mode, nullptr, nullptr);
    if ((code & 0xFF) == SQLITE_BUSY) return false;
    if (code != SQLITE_OK) fail(code, "checkpoint");
    return true;
}

void sqlite_connection::fail(int code, const std::string& where) {
    const int extended = m_handle ? sqlite3_extended_errcode(m_handle) : code;
    const std::string text = where + ": " + (m_handle ? sqlite3_errmsg(m_handle) : sqlite3_errstr(code)) +
                             " (" + std::to_string(extended) + ")";
    if (casts_doubt(extended) && m_on_doubt) m_on_doubt(text);
    refuse(classify_sqlite(extended), text);
}

void sqlite_connection::refuse(error_kind kind, const std::string& text) {
    m_failure = std::make_exception_ptr(error(kind, text));
    std::rethrow_exception(m_failure);
}

} // namespace tavrok::store
