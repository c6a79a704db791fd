#include "api/brake.h"

#include <arpa/inet.h>

#include <algorithm>
#include <array>

namespace tavrok::api {

namespace {

std::string account_of(const std::string& peer) {
    std::array<char, 16> bytes{};
    if (::inet_pton(AF_INET6, peer.c_str(), bytes.data()) != 1) return peer;
    const bool mapped = std::all_of(bytes.begin(), bytes.begin() + 10, [](char one) { return one == 0; });
    return mapped ? peer : std::string(bytes.data(), 8);
}

} // namespace

bool brake::allow(const std::string& peer, std::int64_t now) {
    const auto account = account_of(peer);
    const std::lock_guard lock(m_guard);
    auto at = m_rested.find(account);
    if (at == m_rested.end()) {
        make_room(now);
        at = m_rested.emplace(account, now).first;
    }
    // A clock that was set back must not hold anybody for longer than a spent burst does.
    at->second = std::clamp(at->second, now, now + m_reach);
    if (at->second + m_every - now > m_reach) return false;
    at->second += m_every;
    return true;
}

void brake::make_room(std::int64_t now) {
    if (m_rested.size() < m_addresses) return;
    std::erase_if(m_rested, [now](const auto& one) { return one.second <= now; });
    if (m_rested.size() < m_addresses) return;
    m_rested.erase(std::min_element(m_rested.begin(), m_rested.end(), [](const auto& one, const auto& other) {
        return one.second < other.second;
    }));
}

} // namespace tavrok::api
