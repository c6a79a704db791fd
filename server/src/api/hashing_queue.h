#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace tavrok::api {

/** A bounded queue with threads of its own for password hashing, which is too slow for any other thread. */
class hashing_queue {
public:
    hashing_queue(unsigned threads, std::size_t limit);
    hashing_queue(const hashing_queue&) = delete;
    hashing_queue& operator=(const hashing_queue&) = delete;
    /** Finishes what was accepted. */
    ~hashing_queue();

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
