#include "store/task_queue.h"

#include <spdlog/spdlog.h>

#include <iterator>
#include <utility>

namespace tavrok::store {

void task::tell(const std::exception_ptr& outcome) const noexcept {
    try {
        if (done) done(outcome);
    } catch (const std::exception& thrown) {
        spdlog::error("store: a completion threw: {}", thrown.what());
    } catch (...) {
        spdlog::error("store: a completion threw");
    }
}

void task_queue::push(task incoming) {
    const char* refusal = nullptr;
    auto kind = error_kind::busy;
    {
        const std::lock_guard hold(m_guard);
        const auto limit = incoming.what == task::kind::write ? m_write_limit : m_read_limit;
        if (m_closed) {
            refusal = "the database is closed";
            kind = error_kind::lost;
        } else if (count(incoming.what) >= limit) {
            refusal = "too much work waits for the database";
        } else {
            ++count(incoming.what);
            m_tasks.push_back(std::move(incoming));
            m_changed.notify_one();
            return;
        }
    }
    incoming.tell(std::make_exception_ptr(error(kind, refusal)));
}

std::optional<task> task_queue::pop() {
    std::unique_lock hold(m_guard);
    m_changed.wait(hold, [this] { return m_closed || !m_tasks.empty(); });
    if (m_tasks.empty()) return std::nullopt;
    auto next = std::move(m_tasks.front());
    m_tasks.pop_front();
    --count(next.what);
    return next;
}

std::optional<std::vector<task>> task_queue::take_all(std::chrono::milliseconds patience) {
    std::unique_lock hold(m_guard);
    m_changed.wait_for(hold, patience, [this] { return m_closed || !m_tasks.empty(); });
    if (m_tasks.empty() && m_closed) return std::nullopt;
    std::vector<task> all(std::make_move_iterator(m_tasks.begin()), std::make_move_iterator(m_tasks.end()));
    m_tasks.clear();
    m_writes = m_reads = 0;
    return all;
}

void task_queue::close() {
    {
        const std::lock_guard hold(m_guard);
        m_closed = true;
    }
    m_changed.notify_all();
}

std::size_t task_queue::waiting(task::kind what) const {
    const std::lock_guard hold(m_guard);
    return what == task::kind::write ? m_writes : m_reads;
}

} // namespace tavrok::store
