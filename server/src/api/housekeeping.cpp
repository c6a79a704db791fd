#include "api/housekeeping.h"

#include <spdlog/spdlog.h>

#include "domain/claims.h"
#include "domain/repeat.h"
#include "domain/sessions.h"

namespace tavrok::api {

namespace {

constexpr std::chrono::milliseconds gather{100};
constexpr std::chrono::milliseconds pause_after_failure{1000};
constexpr unsigned most_failures = 10; /**< what has failed so often is dropped */

std::string reason_of(const std::exception_ptr& failure) {
    try {
        std::rethrow_exception(failure);
    } catch (const std::exception& error) {
        return error.what();
    } catch (...) {
        return "unknown";
    }
}

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
        if (!m_next.used.try_emplace(who.session, use{slim(who)}).second) return;
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

/** Arrivals, those who were there all the time, and each who was gone: his claims lapse, which locks rows of
 * stock and may fail. */
std::vector<housekeeping::shared_batch> housekeeping::parts_of(const batch& whole, std::int64_t now,
                                                               const domain::session_limits& limits) {
    const auto arrivals = std::make_shared<batch>();
    const auto present = std::make_shared<batch>();
    arrivals->arrivals = whole.arrivals;
    std::vector<shared_batch> parts;
    for (const auto& one : whole.used) {
        auto into = present;
        if (domain::was_gone(one.second.who, now, limits))
            into = parts.emplace_back(std::make_shared<batch>());
        into->used.insert(one);
    }
    for (const auto& part : {arrivals, present})
        if (!part->empty()) parts.push_back(part);
    return parts;
}

void housekeeping::flush() {
    const auto now = m_with.clock();
    const auto& limits = m_with.options.sessions;
    std::vector<shared_batch> parts;
    {
        const std::lock_guard lock(m_mutex);
        m_scheduled = false;
        if (m_writing || m_next.empty()) return;
        m_writing = std::make_shared<batch>(std::exchange(m_next, {}));
        parts = parts_of(*m_writing, now, limits);
        m_open_parts = parts.size();
    }
    for (const auto& part : parts) {
        m_with.database.write(
            [part, now, limits](store::connection& db) {
                for (const auto& [key, one] : part->arrivals)
                    domain::delivered(db, one.who, one.record);
                for (const auto& [session, one] : part->used)
                    domain::touch(db, one.who, now, limits);
            },
            [self = shared_from_this(), part](const std::exception_ptr& failure) {
                self->written(part, failure);
            });
    }
}

/** To be tried again; under the lock. */
void housekeeping::put_back(const batch& part) {
    const auto keep = [](auto& into, const auto& from) {
        for (auto [key, one] : from)
            if (++one.failures < most_failures) into.try_emplace(key, std::move(one));
    };
    keep(m_next.arrivals, part.arrivals);
    keep(m_next.used, part.used);
}

void housekeeping::written(const shared_batch& part, const std::exception_ptr& failure) {
    bool failed = false;
    {
        const std::lock_guard lock(m_mutex);
        if (failure) {
            spdlog::warn("small writes failed: {} answers, {} sessions: {}", part->arrivals.size(),
                         part->used.size(), reason_of(failure));
            m_part_failed = true;
            put_back(*part);
        }
        if (--m_open_parts > 0) return;
        failed = std::exchange(m_part_failed, false);
        m_writing.reset();
        m_idle.notify_all();
        if (m_next.empty()) return;
    }
    schedule(failed ? pause_after_failure : gather);
}

void housekeeping::start_sweeping() {
    {
        const std::lock_guard lock(m_mutex);
        m_sweeps = m_with.options.sweep_every.count() > 0;
    }
    schedule_sweep(std::chrono::milliseconds(0));
}

void housekeeping::stop_sweeping() {
    const std::lock_guard lock(m_mutex);
    m_sweeps = false;
}

bool housekeeping::sweeps() const {
    const std::lock_guard lock(m_mutex);
    return m_sweeps;
}

void housekeeping::schedule_sweep(std::chrono::milliseconds delay) {
    {
        const std::lock_guard lock(m_mutex);
        if (!m_sweeps) return;
        ++m_busy;
    }
    later(delay, &housekeeping::sweep);
}

void housekeeping::sweep() {
    {
        const std::lock_guard lock(m_mutex);
        if (!m_sweeps) return;
        ++m_busy;
    }
    sweep_from(0);
}

void housekeeping::sweep_from(std::size_t at) {
    const auto parts = domain::sweep_parts();
    if (at == parts.size()) return sweep_claims({});
    const auto& part = parts[at];
    m_with.database.write(
        [&part, now = m_with.clock(), limits = m_with.options.sessions](store::connection& db) {
            part.run(db, now, limits);
        },
        [self = shared_from_this(), at, &part](const std::exception_ptr& failure) {
            if (failure)
                spdlog::warn("the sweep of {} failed, it is tried again at its next time: {}", part.what,
                             reason_of(failure));
            self->sweep_from(at + 1);
        });
}

/** Goes on until no row is left, so that none waits for the next sweep. */
void housekeeping::sweep_claims(const store::stock_key& after) {
    const auto rows = std::make_shared<std::vector<store::stock_key>>();
    m_with.database.read(
        [rows, after, now = m_with.clock(), limits = m_with.options.sessions](store::connection& db) {
            *rows = domain::rows_to_lapse(db, now, limits, after);
        },
        [self = shared_from_this(), rows](const std::exception_ptr& failure) {
            if (failure) spdlog::warn("the sweep of claims failed: {}", reason_of(failure));
            failure || rows->empty() ? self->swept() : self->lapse_from(rows, 0);
        });
}

void housekeeping::lapse_from(const dead_rows& rows, std::size_t at) {
    if (!sweeps()) return swept();
    if (at == rows->size()) return sweep_claims(rows->back());
    const auto row = (*rows)[at];
    m_with.database.write(
        [row, now = m_with.clock(), limits = m_with.options.sessions](store::connection& db) {
            domain::lapse_dead_claims(db, row.company, row.stock, now, limits);
        },
        [self = shared_from_this(), rows, at, row](const std::exception_ptr& failure) {
            if (failure)
                spdlog::warn("the sweep of the claims on stock row {} failed: {}", row.stock,
                             reason_of(failure));
            self->lapse_from(rows, at + 1);
        });
}

void housekeeping::swept() {
    schedule_sweep(m_with.options.sweep_every);
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
