#pragma once

#include <chrono>
#include <mutex>
#include <string>

#include "store/database.h"

namespace tavrok::store {

/** Counts what the threads of one database do; shared by its connections. */
class meter {
public:
    void statement_ran(const std::string& name, std::chrono::nanoseconds took);
    void commit_made(std::size_t jobs);
    /** What was counted so far; the depths of the queues are left to the caller. */
    activity read() const;

private:
    mutable std::mutex m_guard;
    activity m_counted;
};

/** Notes a statement with its time when the scope ends, however it ends. */
class measured {
public:
    measured(meter& into, const std::string& name)
        : m_into(into), m_name(name), m_start(std::chrono::steady_clock::now()) {}
    ~measured() { m_into.statement_ran(m_name, std::chrono::steady_clock::now() - m_start); }
    measured(const measured&) = delete;
    measured& operator=(const measured&) = delete;

private:
    meter& m_into;
    const std::string& m_name;
    std::chrono::steady_clock::time_point m_start;
};

} // namespace tavrok::store
