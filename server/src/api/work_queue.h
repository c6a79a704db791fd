#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace tavrok::api {

/** A bounded queue with threads of its own for work that is too slow for any other thread: hashing passwords,
 * drawing pictures. */
class work_queue {
public:
    work_queue(unsigned threads, std::size_t limit);
    work_queue(const work_queue&) = delete;
    work_queue& operator=(const work_queue&) = delete;
    /** Finishes what was accepted. */
    ~work_queue();

    /** False, and `task` is not run, when the queue is full. `task` must not throw. */
    bool submit(std::function<void()> task);

private:
    void run();

    std::mutex m_mutex;
    std::condition_variable m_wake;
    std::deque<std::function<void()>> m_tasks;
    std::size_t m_limit;
    bool m_stop{false};
    std::vector<std::thread> m_threads;
};

} // namespace tavrok::api
