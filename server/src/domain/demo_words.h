#pragma once

#include <array>
#include <cstddef>
#include <cstdio>
#include <initializer_list>
#include <string>

namespace tavrok::domain {

/** What invented records are put together from. */
using words = std::initializer_list<const char*>;

inline const char* pick(words from, std::size_t number) {
    return from.begin()[number % from.size()];
}

/** `number` behind `before`, with zeros up to `width` digits. */
inline std::string digits(const char* before, std::size_t number, int width) {
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%s%0*zu", before, width, number);
    return text.data();
}

} // namespace tavrok::domain
