#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace tavrok::domain {

/** Ids in falling order, kept small: about a byte for each id of a dense list, two for one in a hundred and
 * up to ten for the sparsest. Any part of it can be read without the rest. */
class id_list {
public:
    /** `id` is below all those before. */
    void add(std::int64_t id);
    /** Gives back what room is left over; nothing is added any more. */
    void close();
    std::int64_t size() const { return m_size; }
    /** Memory that it takes, itself included. */
    std::size_t bytes() const;
    /** The ids from number `first` on, counted from 0: `count` of them, or as many as there are. */
    std::vector<std::int64_t> part(std::int64_t first, std::int64_t count) const;

private:
    /** Where the steps to the ids after a whole block begin, and the id before them. */
    struct block {
        std::int64_t before;
        std::size_t at;
    };
    std::vector<std::uint8_t> m_steps; // from id to id, seven bits a byte, the lowest first
    std::vector<block> m_blocks;
    std::int64_t m_last{0};
    std::int64_t m_size{0};
};

} // namespace tavrok::domain
