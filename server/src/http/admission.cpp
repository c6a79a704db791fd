#include "http/admission.h"

#include <algorithm>

namespace tavrok::http {

namespace {

/** Beyond this many known addresses those that are quiet are forgotten. */
constexpr std::size_t known_addresses = 16'384;

address account_of(const address& who) {
    address key = who;
    const bool mapped = std::all_of(who.begin(), who.begin() + 10, [](std::uint8_t b) { return b == 0; });
    if (!mapped) std::fill(key.begin() + 8, key.end(), std::uint8_t{0});
    return key;
}

} // namespace

bool admission::enter(const address& who, bool exempt) {
    const std::lock_guard lock(m_guard);
    if (m_connections >= m_bounds.connections) return false;
    account& mine = m_accounts[account_of(who)];
    if (!exempt && mine.connections >= m_bounds.connections_per_address) return false;
    ++mine.connections;
    ++m_connections;
    return true;
}

void admission::leave(const address& who) {
    const std::lock_guard lock(m_guard);
    const auto found = m_accounts.find(account_of(who));
    --m_connections;
    if (--found->second.connections == 0 && !found->second.metered) m_accounts.erase(found);
}

bool admission::request(const address& who, clock::time_point now) {
    if (m_bounds.requests_per_second <= 0) return true;
    const std::lock_guard lock(m_guard);
    if (m_accounts.size() > known_addresses) forget_quiet(now);
    account& mine = m_accounts[account_of(who)];
    if (!mine.metered) {
        mine.metered = true;
        mine.tokens = m_bounds.request_burst;
    } else {
        const std::chrono::duration<double> passed = now - mine.filled;
        mine.tokens =
            std::min(m_bounds.request_burst, mine.tokens + passed.count() * m_bounds.requests_per_second);
    }
    mine.filled = now;
    if (mine.tokens < 1) return false;
    mine.tokens -= 1;
    return true;
}

void admission::forget_quiet(clock::time_point now) {
    if (now - m_swept < std::chrono::seconds(1)) return;
    m_swept = now;
    const std::chrono::duration<double> refill(m_bounds.request_burst / m_bounds.requests_per_second);
    std::erase_if(m_accounts, [&](const auto& entry) {
        return entry.second.connections == 0 && now - entry.second.filled > refill;
    });
}

} // namespace tavrok::http
