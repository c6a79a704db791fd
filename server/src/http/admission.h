#pragma once

#include <chrono>
#include <map>
#include <mutex>

#include "http/address.h"
#include "http/limits.h"

namespace tavrok::http {

/** Keeps each address to its share of connections and requests. IPv6 peers count by their /64, which one peer
 * owns whole. Safe from any thread. */
class admission {
public:
    using clock = std::chrono::steady_clock;

    explicit admission(const limits& bounds) : m_bounds(bounds) {}
    /** Counts a connection in; false, and nothing counted, where it is one too many. */
    bool enter(const address& who, bool exempt);
    /** Counts a connection out that was counted in. */
    void leave(const address& who);
    /** True while the address may make another request at `now`. */
    bool request(const address& who, clock::time_point now);

private:
    struct account {
        unsigned connections{0};
        double tokens{0};
        clock::time_point filled{};
        bool metered{false};
    };
    void forget_quiet(clock::time_point now);

    const limits m_bounds;
    std::mutex m_guard;
    unsigned m_connections{0};
    std::map<address, account> m_accounts;
    clock::time_point m_swept{};
};

} // namespace tavrok::http
