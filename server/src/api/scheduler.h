#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <map>
#include <mutex>
#include <thread>

namespace tavrok::api {

/** Runs `task` after `delay` on some thread. Tests give one that they turn by hand. */
using defer = std::function<void(std::chrono::milliseconds delay, std::function<void()> task)>;

/** The timer of the service: one thread that starts short tasks when their time has come. */
class scheduler {
public:
    scheduler();
    scheduler(const scheduler&) = delete;
    scheduler& operator=(const scheduler&) = delete;
    ~scheduler();

    void after(std::chrono::milliseconds delay, std::function<void()> task);
    /** Runs everything that still waits at once, then takes no more: later tasks run in the caller. */
    void stop();

private:
    using instant = std::chrono::steady_clock::time_point;
    void run();

    std::mutex m_mutex;
    std::condition_variable m_wake;
    std::multimap<instant, std::function<void()>> m_tasks;
    bool m_stop{false};
    std::thread m_thread;
};

} // namespace tavrok::api
