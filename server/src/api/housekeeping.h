#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <exception>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "api/services.h"
#include "domain/principal.h"
#include "domain/sessions.h"
#include "store/records/claims.h"

namespace tavrok::api {

/** Small writes that nobody waits for, gathered and done a moment later: answers that have arrived, and
 * sessions that were used. Losing them in a crash is harmless. And the sweep of what is long over, at the
 * start and regularly. What may fail by itself has a transaction of its own, so that it spoils nothing else.
 */
class housekeeping : public std::enable_shared_from_this<housekeeping> {
public:
    explicit housekeeping(const services& with) : m_with(with) {}

    /** The answer that is stored as `record` for the request `key` has reached its peer. */
    void note_arrival(const std::string& key, const domain::principal& who, std::int64_t record);
    /** The record whose arrival the database may not know yet. */
    std::optional<std::int64_t> unwritten_arrival(const std::string& key) const;
    void note_use(const domain::principal& who);
    /** Sweeps from now on, as often as the settings say. */
    void start_sweeping();
    void stop_sweeping();
    /** Writes what is left, waits for it, and takes nothing more. */
    void close();

private:
    struct arrival {
        domain::principal who;
        std::int64_t record{0};
        unsigned failures{0};
    };
    struct use {
        domain::principal who;
        unsigned failures{0};
    };
    struct batch {
        std::unordered_map<std::string, arrival> arrivals;
        std::map<std::int64_t, use> used; /**< by session */
        bool empty() const { return arrivals.empty() && used.empty(); }
    };
    using shared_batch = std::shared_ptr<batch>;
    using dead_rows = std::shared_ptr<std::vector<store::stock_key>>;

    void schedule(std::chrono::milliseconds delay);
    void flush();
    static std::vector<shared_batch> parts_of(const batch& whole, std::int64_t now,
                                              const domain::session_limits& limits);
    void written(const shared_batch& part, const std::exception_ptr& failure);
    void put_back(const batch& part);
    void later(std::chrono::milliseconds delay, void (housekeeping::*task)());
    void schedule_sweep(std::chrono::milliseconds delay);
    void sweep();
    void sweep_from(std::size_t part);
    void sweep_claims(const store::stock_key& after);
    void lapse_from(const dead_rows& rows, std::size_t at);
    void swept();
    bool sweeps() const;

    const services& m_with;
    mutable std::mutex m_mutex;
    std::condition_variable m_idle;
    batch m_next;
    shared_batch m_writing;
    std::size_t m_open_parts{0}; /**< of it */
    bool m_part_failed{false};
    bool m_scheduled{false};
    unsigned m_busy{0}; /**< calls to the timer and sweeps under way */
    bool m_sweeps{false};
    bool m_closed{false};
};

} // namespace tavrok::api
