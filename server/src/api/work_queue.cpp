#include "api/work_queue.h"

#include <algorithm>
#include <utility>

namespace tavrok::api {

work_queue::work_queue(unsigned threads, std::size_t limit) : m_limit(limit) {
    for (unsigned i = 0; i < std::max(threads, 1u); ++i)
        m_threads.emplace_back([this] { run(); });
}

work_queue::~work_queue() {
    {
        const std::lock_guard lock(m_mutex);
        m_stop = true;
    }
    m_wake.notify_all();
    for (auto& thread : m_threads)
        thread.join();
}

bool work_queue::submit(std::function<void()> task) {
    {
        const std::lock_guard lock(m_mutex);
        if (m_tasks.size() >= m_limit) return false;
        m_tasks.push_back(std::move(task));
    }
    m_wake.notify_one();
    return true;
}

void work_queue::run() {
    std::unique_lock lock(m_mutex);
    while (true) {
        m_wake.wait(lock, [this] { return m_stop || !m_tasks.empty(); });
        if (m_tasks.empty()) return;
        auto task = std::move(m_tasks.front());
        m_tasks.pop_front();
        lock.unlock();
        task();
        task = nullptr;
        lock.lock();
    }
}

} // namespace tavrok::api
