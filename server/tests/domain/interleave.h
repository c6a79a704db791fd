#pragma once

#include <atomic>
#include <exception>
#include <thread>

#include "domain/refused.h"
#include "domain/scene.h"

namespace tavrok::test {

/** How a transaction that met another one ended. */
struct met {
    bool waited{false};         /**< it had to wait for the other's commit */
    std::exception_ptr failure; /**< what it threw */
};

/** PostgreSQL only. `first(connection&)` is done and not yet committed when `second(connection&)` begins in a
 * transaction of its own; the first does `last(connection&)` and commits once the second waits for one of its
 * locks, or is over. */
template <typename first_t, typename second_t, typename last_t>
met interleave(scene& in, const first_t& first, const second_t& second, const last_t& last) {
    met result;
    std::atomic<bool> first_done{false};
    std::atomic<bool> second_over{false};
    const auto let_go = [&] {
        first_done = true;
        first_done.notify_all();
    };
    std::thread other([&] {
        first_done.wait(false);
        try {
            in.write([&](store::connection& with) { second(with); });
        } catch (...) {
            result.failure = std::current_exception();
        }
        second_over = true;
    });
    const store::statement waiting{
        "test_waiting",
        "SELECT 1 FROM pg_locks w JOIN pg_locks h ON h.transactionid = w.transactionid "
        "WHERE NOT w.granted AND h.granted AND h.pid = pg_backend_pid()"};
    std::exception_ptr failed;
    try {
        in.write([&](store::connection& with) {
            first(with);
            let_go();
            while (!second_over && !result.waited)
                with.query(waiting, {}, [&](const store::row&) { result.waited = true; });
            last(with);
        });
    } catch (...) {
        failed = std::current_exception();
        let_go();
    }
    other.join();
    if (failed) std::rethrow_exception(failed);
    return result;
}

template <typename first_t, typename second_t>
met interleave(scene& in, const first_t& first, const second_t& second) {
    return interleave(in, first, second, [](store::connection&) {});
}

/** Runs it and tells whether the rules refused it; anything else that it throws goes on. */
template <typename what_t>
bool is_refused(what_t&& what) {
    try {
        what();
    } catch (const domain::refused&) {
        return true;
    }
    return false;
}

} // namespace tavrok::test
