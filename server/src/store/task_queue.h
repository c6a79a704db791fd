#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <mutex>
#include <optional>
#include <vector>

#include "store/database.h"

namespace tavrok::store {

/** A job on its way through a database. */
struct task {
    enum class kind { read, write };
    kind what;
    job work;
    completion done;

    /** Tells the outcome. A completion that throws is logged: there is nobody else to tell. */
    void tell(const std::exception_ptr& outcome) const noexcept;
};

/** The work that waits for the threads of a database, in order of arrival, bounded per kind. */
class task_queue {
public:
    explicit task_queue(const options& how) : m_write_limit(how.queue_limit), m_read_limit(how.read_limit) {}

    /** Takes the task in, or tells it error_kind::busy when the queue is full and error_kind::lost when
     * closed. */
    void push(task incoming);
    /** Waits for a task; none once the queue is closed and empty. */
    std::optional<task> pop();
    /** Waits up to `patience` and takes all that is there; none once the queue is closed and empty. */
    std::optional<std::vector<task>> take_all(std::chrono::milliseconds patience);
    /** Lets nothing more in. */
    void close();
    std::size_t waiting(task::kind what) const;

private:
    std::size_t& count(task::kind what) { return what == task::kind::write ? m_writes : m_reads; }

    const std::size_t m_write_limit;
    const std::size_t m_read_limit;
    mutable std::mutex m_guard;
    std::condition_variable m_changed;
    std::deque<task> m_tasks;
    std::size_t m_writes{0};
    std::size_t m_reads{0};
    bool m_closed{false};
};

} // namespace tavrok::store
