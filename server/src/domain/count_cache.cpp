#include "domain/count_cache.h"

namespace tavrok::domain {

namespace {

std::string key_of(std::int64_t company, const std::string& criteria) {
    return std::to_string(company) + ' ' + criteria;
}

} // namespace

count_cache::count_cache(std::size_t limit) : m_limit(limit) {}

std::optional<std::int64_t> count_cache::find(std::int64_t company, std::int64_t version,
                                              const std::string& criteria) {
    const std::lock_guard hold(m_guard);
    const auto at = m_by_key.find(key_of(company, criteria));
    if (at == m_by_key.end() || at->second->version != version) return std::nullopt;
    m_entries.splice(m_entries.begin(), m_entries, at->second);
    return at->second->count;
}

void count_cache::keep(std::int64_t company, std::int64_t version, const std::string& criteria,
                       std::int64_t count) {
    const std::lock_guard hold(m_guard);
    auto key = key_of(company, criteria);
    if (const auto at = m_by_key.find(key); at != m_by_key.end()) {
        // A reader that began earlier may come late: the newer state stays.
        if (at->second->version <= version) *at->second = {std::move(key), version, count};
        return;
    }
    m_entries.push_front({key, version, count});
    m_by_key.emplace(std::move(key), m_entries.begin());
    if (m_entries.size() <= m_limit) return;
    m_by_key.erase(m_entries.back().key);
    m_entries.pop_back();
}

std::size_t count_cache::size() const {
    const std::lock_guard hold(m_guard);
    return m_entries.size();
}

} // namespace tavrok::domain
