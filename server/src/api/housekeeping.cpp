#include "api/housekeeping.h"

#include <spdlog/spdlog.h>

#include "domain/repeat.h"
#include "domain/sessions.h"

namespace tavrok::api {

namespace {

constexpr std::chrono::milliseconds gather{100};
constexpr std::chrono::milliseconds pause_after_failure{1000};
constexpr unsigned most_failures = 10; /**< after so many in a row the batch is dropped */

/** Who did it, as far as the database asks: no rights, which would be many. */
domain::principal slim(const domain::principal& who) {
    domain::principal kept;
    kept.company = who.company;
    kept.user = who.user;
    kept.session = who.session;
    kept.last_used = who.last_used;
    return kept;
}

} // namespace

void housekeeping::note_arrival(const std::string& key, const domain::principal& who, std::int64_t record) {
    {
        const std::lock_guard lock(m_mutex);
        if (m_closed) return;
        m_next.arrivals.insert_or_assign(key, arrival{slim(who), record});
    }
    schedule(gather);
}

std::optional<std::int64_t> housekeeping::unwritten_arrival(const std::string& key) const {
    const std::lock_guard lock(m_mutex);
    for (const auto* from : {&m_next, static_cast<const batch*>(m_writing.get())}) {
        if (from == nullptr) continue;
        const auto at = from->arrivals.find(key);
        if (at != from->arrivals.end()) return at->second.record;
    }
    return std::nullopt;
}

void housekeeping::note_use(const domain::principal& who) {
    {
        const std::lock_guard lock(m_mutex);
        if (m_closed || (m_writing && m_writing->used.contains(who.session))) return;
        if (!m_next.used.try_emplace(who.session, slim(who)).second) return;
    }
    schedule(gather);
}

void housekeeping::schedule(std::chrono::milliseconds delay) {
    {
        const std::lock_guard lock(m_mutex);
        if (m_scheduled || m_writing || m_closed) return;
        m_scheduled = true;
        ++m_busy;
    }
    later(delay, &housekeeping::flush);
}

/** The caller has counted this call in m_busy: until it returns, close() does not. */
void housekeeping::later(std::chrono::milliseconds delay, void (housekeeping::*task)()) {
    m_with.later(delay, [self = shared_from_this(), task] { (self.get()->*task)(); });
    const std::lock_guard lock(m_mutex);
    --m_busy;
    m_idle.notify_all();
}

void housekeeping::flush() {
    auto what = std::make_shared<batch>();
    {
        const std::lock_guard lock(m_mutex);
        m_scheduled = false;
        if (m_writing || m_next.empty()) return;
        std::swap(*what, m_next);
        m_writing = what;
    }
    const auto now = m_with.clock();
    m_with.database.write(
        [what, now, limits = m_with.options.sessions](store::connection& db) {
            for (const auto& [key, one] : what->arrivals)
                domain::delivered(db, one.who, one.record);
            for (const auto& [session, who] : what->used)
                domain::touch(db, who, now, limits);
        },
        [self = shared_from_this(), what](std::exception_ptr failure) {
            self->written(what, failure == nullptr);
        });
}

void housekeeping::written(const std::shared_ptr<batch>& what, bool ok) {
    {
        const std::lock_guard lock(m_mutex);
        m_writing.reset();
        m_failures = ok ? 0 : m_failures + 1;
        if (!ok) {
            spdlog::warn("small writes failed: {} answers, {} sessions", what->arrivals.size(),
                         what->used.size());
            if (m_failures % most_failures != 0) {
                m_next.arrivals.merge(what->arrivals);
                m_next.used.merge(what->used);
            }
        }
        m_idle.notify_all();
        if (m_next.empty()) return;
    }
    schedule(ok ? gather : pause_after_failure);
}

void housekeeping::start_sweeping() {
    {
        const std::lock_guard lock(m_mutex);
        m_sweeps = m_with.options.sweep_every.count() > 0;
    }
    schedule_sweep();
}

void housekeeping::stop_sweeping() {
    const std::lock_guard lock(m_mutex);
    m_sweeps = false;
}

void housekeeping::schedule_sweep() {
    {
        const std::lock_guard lock(m_mutex);
        if (!m_sweeps) return;
        ++m_busy;
    }
    later(m_with.options.sweep_every, &housekeeping::sweep);
}

void housekeeping::sweep() {
    {
        const std::lock_guard lock(m_mutex);
        if (!m_sweeps) return;
        ++m_busy;
    }
    m_with.database.write([now = m_with.clock(), limits = m_with.options.sessions](
                              store::connection& db) { domain::sweep(db, now, limits); },
                          [self = shared_from_this()](std::exception_ptr failure) { self->swept(failure); });
}

void housekeeping::swept(std::exception_ptr failure) {
    if (failure) spdlog::warn("the sweep failed; it is tried again at its next time");
    schedule_sweep();
    const std::lock_guard lock(m_mutex);
    --m_busy;
    m_idle.notify_all();
}

void housekeeping::close() {
    const auto idle = [this] { return !m_writing && m_busy == 0; };
    {
        std::unique_lock lock(m_mutex);
        m_sweeps = false;
        m_closed = true;
        m_idle.wait(lock, idle);
    }
    flush();
    std::unique_lock lock(m_mutex);
    m_idle.wait(lock, idle);
}

} // namespace tavrok::api
