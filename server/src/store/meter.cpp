#include "store/meter.h"

namespace tavrok::store {

void meter::statement_ran(const std::string& name, std::chrono::nanoseconds took) {
    const std::lock_guard hold(m_guard);
    auto& figures = m_counted.statements[name.empty() ? "unnamed" : name];
    ++figures.count;
    figures.time += took;
}

void meter::commit_made(std::size_t jobs) {
    const std::lock_guard hold(m_guard);
    ++m_counted.commits;
    m_counted.committed_jobs += jobs;
}

activity meter::read() const {
    const std::lock_guard hold(m_guard);
    return m_counted;
}

} // namespace tavrok::store
