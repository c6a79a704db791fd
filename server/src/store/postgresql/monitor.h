#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>

#include "store/database.h"
#include "store/postgresql/session.h"

namespace tavrok::store {

/** Asks the server once a second, on a link of its own, whether it still answers. */
class pg_monitor {
public:
    explicit pg_monitor(const options& how);
    ~pg_monitor();
    pg_monitor(const pg_monitor&) = delete;
    pg_monitor& operator=(const pg_monitor&) = delete;

    /** True when the server answered within the last four seconds. */
    bool answers() const;

private:
    void watch();
    void ask();

    const options m_how;
    std::unique_ptr<pg_session> m_session;
    std::atomic<std::chrono::steady_clock::time_point> m_last_answer;
    std::mutex m_guard;
    std::condition_variable m_changed;
    bool m_stopping{false};
    std::thread m_thread;
};

} // namespace tavrok::store
