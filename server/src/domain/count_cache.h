#pragma once

#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <list>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <unordered_map>

#include "domain/id_list.h"

namespace tavrok::domain {

/** What filtered lists hold, valid for one state of a company's data (its data version): so that a list is
 * counted once and any page of it is found without looking for it again. Bounded by the memory that it takes:
 * the list that was not asked for the longest time leaves first. One for each database; safe from any thread.
 */
class count_cache {
public:
    using shared_ids = std::shared_ptr<const id_list>;

    /** `limit` in bytes. A list of a million rows takes about one million. */
    explicit count_cache(std::size_t limit = std::size_t{32} << 20U);
    /** `criteria` names list and criteria without ambiguity. Null for what is not known. */
    shared_ids find(std::int64_t company, std::int64_t version, const std::string& criteria);
    /** What find() gives, or else what `make()` does, which is kept. Others who ask for the same meanwhile
     * wait for it: a list of a million rows is looked for once, not by everybody at the same time. What
     * `make` throws goes to its caller alone; those who waited then make it themselves. */
    template <typename maker>
    shared_ids find_or_make(std::int64_t company, std::int64_t version, const std::string& criteria,
                            maker make) {
        if (auto known = find(company, version, criteria)) return known;
        const turn mine(*this, company, version, criteria);
        if (auto known = find(company, version, criteria)) return known;
        shared_ids made = make();
        keep(company, version, criteria, made);
        return made;
    }
    /** A list that is larger than the limit is not kept. */
    void keep(std::int64_t company, std::int64_t version, const std::string& criteria, shared_ids ids);
    std::size_t size() const;
    /** Memory that the lists take with all that finds them. */
    std::size_t bytes() const;

private:
    struct entry {
        std::string key;
        std::int64_t version;
        shared_ids ids;
    };
    /** Held by who looks for a list; whoever else wants that one waits. */
    class turn {
    public:
        turn(count_cache& of, std::int64_t company, std::int64_t version, const std::string& criteria);
        ~turn();
        turn(const turn&) = delete;
        turn& operator=(const turn&) = delete;

    private:
        count_cache& m_of;
        std::string m_key;
    };
    static std::size_t bytes_of(const entry& one);
    void drop(std::list<entry>::iterator which);

    mutable std::mutex m_guard;
    std::condition_variable m_turn_over;
    std::set<std::string> m_looked_for;
    std::size_t m_limit;
    std::size_t m_bytes{0};
    std::list<entry> m_entries; // the latest first
    std::unordered_map<std::string, std::list<entry>::iterator> m_by_key;
};

} // namespace tavrok::domain
