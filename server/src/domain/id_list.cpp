#include "domain/id_list.h"

#include <algorithm>

namespace tavrok::domain {

namespace {

constexpr std::int64_t g_block = 128; // ids
constexpr std::uint64_t g_low = 0x7F;
constexpr std::uint64_t g_more = 0x80;
constexpr unsigned g_bits = 7;

} // namespace

void id_list::add(std::int64_t id) {
    if (m_size % g_block == 0) m_blocks.push_back({m_last, m_steps.size()});
    // unsigned, so that the step from 0 to the first id is none too wide
    auto step = static_cast<std::uint64_t>(m_last) - static_cast<std::uint64_t>(id);
    for (; step > g_low; step >>= g_bits)
        m_steps.push_back(static_cast<std::uint8_t>((step & g_low) | g_more));
    m_steps.push_back(static_cast<std::uint8_t>(step));
    m_last = id;
    ++m_size;
}

void id_list::close() {
    m_steps.shrink_to_fit();
    m_blocks.shrink_to_fit();
}

std::size_t id_list::bytes() const {
    return sizeof(id_list) + m_steps.capacity() + m_blocks.capacity() * sizeof(block);
}

std::vector<std::int64_t> id_list::part(std::int64_t first, std::int64_t count) const {
    std::vector<std::int64_t> ids;
    const auto end = std::min(m_size, first + count);
    if (first >= end) return ids;
    ids.reserve(static_cast<std::size_t>(end - first));
    const auto& from = m_blocks[static_cast<std::size_t>(first / g_block)];
    auto id = static_cast<std::uint64_t>(from.before);
    auto at = from.at;
    for (auto number = first / g_block * g_block; number < end; ++number) {
        std::uint64_t step = 0;
        for (unsigned shift = 0;; shift += g_bits) {
            const std::uint64_t byte = m_steps[at++];
            step |= (byte & g_low) << shift;
            if ((byte & g_more) == 0) break;
        }
        id -= step;
        if (number >= first) ids.push_back(static_cast<std::int64_t>(id));
    }
    return ids;
}

} // namespace tavrok::domain
