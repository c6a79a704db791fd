#pragma once

#include <cstddef>
#include <cstdint>
#include <mutex>
#include <string>
#include <unordered_map>

namespace tavrok::api {

/** Slows each address down: so many requests in a burst, then one every so often. IPv6 peers count by their
 * /64, which one peer owns whole. Safe from any thread. */
class brake {
public:
    /** `every`: seconds. Beyond `addresses` the quietest one is forgotten. */
    brake(std::int64_t burst, std::int64_t every, std::size_t addresses = 10'000)
        : m_every(every), m_reach(burst * every), m_addresses(addresses) {}

    /** True when the address may do it once more at `now` (seconds); that is counted then. */
    bool allow(const std::string& peer, std::int64_t now);

private:
    void make_room(std::int64_t now);

    const std::int64_t m_every;
    const std::int64_t m_reach;
    const std::size_t m_addresses;
    std::mutex m_guard;
    /** By address, the moment from which it has its whole burst again. */
    std::unordered_map<std::string, std::int64_t> m_rested;
};

} // namespace tavrok::api
