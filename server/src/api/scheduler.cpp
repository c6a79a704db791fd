#include "api/scheduler.h"

#include <utility>

namespace tavrok::api {

scheduler::scheduler() : m_thread([this] { run(); }) {}

scheduler::~scheduler() {
    stop();
}

void scheduler::after(std::chrono::milliseconds delay, std::function<void()> task) {
    std::unique_lock lock(m_mutex);
    if (m_stop) {
        lock.unlock();
        task();
        return;
    }
    m_tasks.emplace(std::chrono::steady_clock::now() + delay, std::move(task));
    m_wake.notify_one();
}

void scheduler::stop() {
    {
        const std::lock_guard lock(m_mutex);
        m_stop = true;
    }
    m_wake.notify_one();
    if (m_thread.joinable()) m_thread.join();
}

void scheduler::run() {
    std::unique_lock lock(m_mutex);
    while (true) {
        if (m_tasks.empty()) {
            if (m_stop) return;
            m_wake.wait(lock);
            continue;
        }
        const auto due = m_tasks.begin()->first;
        if (!m_stop && due > std::chrono::steady_clock::now()) {
            m_wake.wait_until(lock, due);
            continue;
        }
        auto task = std::move(m_tasks.extract(m_tasks.begin()).mapped());
        lock.unlock();
        task();
        task = nullptr;
        lock.lock();
    }
}

} // namespace tavrok::api
