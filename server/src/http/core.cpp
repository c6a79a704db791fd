#include "http/core.h"

#include <cstdio>
#include <random>

namespace tavrok::http {

std::uint32_t core::make_run() {
    return std::random_device{}();
}

std::string core::next_id() {
    char text[32];
    // The run in front keeps ids of two runs apart in one log.
    std::snprintf(text, sizeof text, "%08x-%llu", m_run, static_cast<unsigned long long>(++m_requests));
    return text;
}

std::shared_ptr<ssl_ctx_st> core::tls() {
    const std::lock_guard lock(m_guard);
    return m_tls;
}

void core::use(std::shared_ptr<ssl_ctx_st> context) {
    const std::lock_guard lock(m_guard);
    m_tls = std::move(context);
}

void core::add(const std::shared_ptr<connection>& one) {
    const std::lock_guard lock(m_guard);
    m_open.emplace(one.get(), one);
}

void core::remove(const connection* one) {
    {
        const std::lock_guard lock(m_guard);
        m_open.erase(one);
    }
    m_changed.notify_all();
}

std::vector<std::shared_ptr<connection>> core::open() {
    const std::lock_guard lock(m_guard);
    std::vector<std::shared_ptr<connection>> all;
    for (const auto& [key, one] : m_open) {
        if (auto kept = one.lock()) all.push_back(std::move(kept));
    }
    return all;
}

bool core::wait_until_empty(std::chrono::steady_clock::time_point until) {
    std::unique_lock lock(m_guard);
    return m_changed.wait_until(lock, until, [this] { return m_open.empty(); });
}

} // namespace tavrok::http
