#pragma once

#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include "store/database.h"

struct pg_conn;
struct pg_result;

namespace tavrok::store {

struct free_pg_result {
    void operator()(pg_result* result) const;
};
using pg_result_ptr = std::unique_ptr<pg_result, free_pg_result>;

/** One link to a PostgreSQL server. No call waits longer than its deadline, not even on a network that
 * swallows everything. After any failure of the link itself usable() is false and the session must be
 * replaced. */
class pg_session {
public:
    using clock = std::chrono::steady_clock;
    static constexpr clock::time_point no_deadline = clock::time_point::max();

    /** Connects and sets the session up. Throws `error`. */
    pg_session(const options& how, clock::time_point deadline);
    ~pg_session();
    pg_session(const pg_session&) = delete;
    pg_session& operator=(const pg_session&) = delete;

    bool usable() const { return m_usable; }
    void retire() { m_usable = false; }
    /** Runs text without values; several statements are allowed. Throws `error`. */
    pg_result_ptr run(const std::string& sql, clock::time_point deadline);
    void prepare(const std::string& name, const std::string& sql, const std::vector<unsigned>& types,
                 clock::time_point deadline);
    /** A null pointer in `values` is a null. */
    pg_result_ptr run_prepared(const std::string& name, const std::vector<const char*>& values,
                               clock::time_point deadline);

private:
    void connect(const options& how, clock::time_point deadline);
    void set_up(const options& how, clock::time_point deadline);
    /** Waits until the socket is ready for `events` (poll); throws error_kind::lost at the deadline. */
    void wait(short events, clock::time_point deadline);
    /** Takes all results of what was sent; gives the last, or throws what the server said. */
    pg_result_ptr collect(int sent, clock::time_point deadline);
    [[noreturn]] void fail_link(const std::string& what);
    [[noreturn]] void fail(const pg_result* result);

    pg_conn* m_link{nullptr};
    bool m_usable{true};
};

} // namespace tavrok::store
