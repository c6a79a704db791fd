#pragma once

#include <cstddef>
#include <cstdint>
#include <list>
#include <mutex>
#include <optional>
#include <string>
#include <unordered_map>

namespace tavrok::domain {

/** Counts of filtered lists, valid for one state of a company's data (its data version). Bounded: the count
 * that was not asked for the longest time leaves first. One for each database; safe from any thread. */
class count_cache {
public:
    explicit count_cache(std::size_t limit = 4096);
    /** `criteria` names list and criteria without ambiguity. */
    std::optional<std::int64_t> find(std::int64_t company, std::int64_t version, const std::string& criteria);
    void keep(std::int64_t company, std::int64_t version, const std::string& criteria, std::int64_t count);
    std::size_t size() const;

private:
    struct entry {
        std::string key;
        std::int64_t version;
        std::int64_t count;
    };
    mutable std::mutex m_guard;
    std::size_t m_limit;
    std::list<entry> m_entries; // the latest first
    std::unordered_map<std::string, std::list<entry>::iterator> m_by_key;
};

} // namespace tavrok::domain
