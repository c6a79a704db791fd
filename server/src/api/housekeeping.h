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

#include "api/services.h"
#include "domain/principal.h"

namespace tavrok::api {

/** Small writes that nobody waits for, gathered into one transaction a moment later: answers that have
 * arrived, and sessions that were used. Losing them in a crash is harmless. And the regular sweep of what is
 * long over. */
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
    };
    struct batch {
        std::unordered_map<std::string, arrival> arrivals;
        std::map<std::int64_t, domain::principal> used; /**< by session */
        bool empty() const { return arrivals.empty() && used.empty(); }
    };
    void schedule(std::chrono::milliseconds delay);
    void flush();
    void later(std::chrono::milliseconds delay, void (housekeeping::*task)());
    void schedule_sweep();
    void sweep();
    void swept(std::exception_ptr failure);
    void written(const std::shared_ptr<batch>& what, bool ok);

    const services& m_with;
    mutable std::mutex m_mutex;
    std::condition_variable m_idle;
    batch m_next;
    std::shared_ptr<batch> m_writing;
    unsigned m_failures{0}; /**< in a row */
    bool m_scheduled{false};
    unsigned m_busy{0}; /**< calls to the timer and sweeps under way */
    bool m_sweeps{false};
    bool m_closed{false};
};

} // namespace tavrok::api
