#include "domain/count_cache.h"

#include <iterator>
#include <utility>

namespace tavrok::domain {

namespace {

/** What an entry costs in the list and in the table beside its key and its ids, roughly. */
constexpr std::size_t g_overhead = 256;

std::string key_of(std::int64_t company, const std::string& criteria) {
    return std::to_string(company) + ' ' + criteria;
}

} // namespace

count_cache::count_cache(std::size_t limit) : m_limit(limit) {}

count_cache::turn::turn(count_cache& of, std::int64_t company, std::int64_t version,
                        const std::string& criteria)
    : m_of(of), m_key(std::to_string(version) + ' ' + key_of(company, criteria)) {
    std::unique_lock hold(m_of.m_guard);
    m_of.m_turn_over.wait(hold, [this] { return m_of.m_looked_for.insert(m_key).second; });
}

count_cache::turn::~turn() {
    {
        const std::lock_guard hold(m_of.m_guard);
        m_of.m_looked_for.erase(m_key);
    }
    m_of.m_turn_over.notify_all();
}

std::size_t count_cache::bytes_of(const entry& one) {
    return g_overhead + 2 * one.key.size() + one.ids->bytes();
}

void count_cache::drop(std::list<entry>::iterator which) {
    m_bytes -= bytes_of(*which);
    m_by_key.erase(which->key);
    m_entries.erase(which);
}

count_cache::shared_ids count_cache::find(std::int64_t company, std::int64_t version,
                                          const std::string& criteria) {
    const std::lock_guard hold(m_guard);
    const auto at = m_by_key.find(key_of(company, criteria));
    if (at == m_by_key.end() || at->second->version != version) return nullptr;
    m_entries.splice(m_entries.begin(), m_entries, at->second);
    return at->second->ids;
}

void count_cache::keep(std::int64_t company, std::int64_t version, const std::string& criteria,
                       shared_ids ids) {
    const std::lock_guard hold(m_guard);
    entry made{key_of(company, criteria), version, std::move(ids)};
    if (const auto at = m_by_key.find(made.key); at != m_by_key.end()) {
        // A reader that began earlier may come late: the newer state stays.
        if (at->second->version > version) return;
        drop(at->second);
    }
    if (bytes_of(made) > m_limit) return;
    m_bytes += bytes_of(made);
    m_entries.push_front(std::move(made));
    m_by_key.emplace(m_entries.front().key, m_entries.begin());
    while (m_bytes > m_limit)
        drop(std::prev(m_entries.end()));
}

std::size_t count_cache::size() const {
    const std::lock_guard hold(m_guard);
    return m_entries.size();
}

std::size_t count_cache::bytes() const {
    const std::lock_guard hold(m_guard);
    return m_bytes;
}

} // namespace tavrok::domain
