#include "domain/fold.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace tavrok::domain {

namespace {

/** Letters `first` to `last` fold to themselves plus `shift`; with step 2 every second one does, as in the
 * blocks where capital and small letter alternate. */
struct letters {
    char32_t first;
    char32_t last;
    std::int32_t shift;
    char32_t step{1};
};

constexpr std::array<letters, 50> g_letters{{
    {0x0041, 0x005a, 32},    {0x00b5, 0x00b5, 775},   {0x00c0, 0x00d6, 32},   {0x00d8, 0x00de, 32},
    {0x0100, 0x012f, 1, 2},  {0x0132, 0x0137, 1, 2},  {0x0139, 0x0148, 1, 2}, {0x014a, 0x0177, 1, 2},
    {0x0178, 0x0178, -121},  {0x0179, 0x017e, 1, 2},  {0x017f, 0x017f, -268}, {0x01a0, 0x01a5, 1, 2},
    {0x01af, 0x01af, 1},     {0x01cd, 0x01dc, 1, 2},  {0x01de, 0x01ef, 1, 2}, {0x01f8, 0x021f, 1, 2},
    {0x0222, 0x0233, 1, 2},  {0x0386, 0x0386, 38},    {0x0388, 0x038a, 37},   {0x038c, 0x038c, 64},
    {0x038e, 0x038f, 63},    {0x0391, 0x03a1, 32},    {0x03a3, 0x03ab, 32},   {0x03c2, 0x03c2, 1},
    {0x0400, 0x040f, 80},    {0x0410, 0x042f, 32},    {0x0460, 0x0481, 1, 2}, {0x048a, 0x04bf, 1, 2},
    {0x04c0, 0x04c0, 15},    {0x04c1, 0x04ce, 1, 2},  {0x04d0, 0x052f, 1, 2}, {0x0531, 0x0556, 48},
    {0x1e00, 0x1e95, 1, 2},  {0x1e9e, 0x1e9e, -7615}, {0x1ea0, 0x1eff, 1, 2}, {0x2126, 0x2126, -7517},
    {0x212a, 0x212a, -8383}, {0x212b, 0x212b, -8262}, {0x2160, 0x216f, 16},   {0x24b6, 0x24cf, 26},
    {0x2c00, 0x2c2f, 48},    {0x2c67, 0x2c6c, 1, 2},  {0x2c80, 0x2ce3, 1, 2}, {0xa640, 0xa66d, 1, 2},
    {0xa680, 0xa69b, 1, 2},  {0xa722, 0xa72f, 1, 2},  {0xa732, 0xa76f, 1, 2}, {0xff21, 0xff3a, 32},
    {0x10400, 0x10427, 40},  {0x118a0, 0x118bf, 32},
}};

char32_t folded(char32_t letter) {
    const auto* after =
        std::upper_bound(g_letters.begin(), g_letters.end(), letter,
                         [](char32_t one, const letters& block) { return one < block.first; });
    if (after == g_letters.begin()) return letter;
    const auto& block = *(after - 1);
    if (letter > block.last || (letter - block.first) % block.step != 0) return letter;
    return static_cast<char32_t>(static_cast<std::int32_t>(letter) + block.shift);
}

void append(std::string& text, char32_t letter) {
    if (letter < 0x80) {
        text += static_cast<char>(letter);
    } else if (letter < 0x800) {
        text += static_cast<char>(0xc0 | letter >> 6);
        text += static_cast<char>(0x80 | (letter & 0x3f));
    } else if (letter < 0x10000) {
        text += static_cast<char>(0xe0 | letter >> 12);
        text += static_cast<char>(0x80 | (letter >> 6 & 0x3f));
        text += static_cast<char>(0x80 | (letter & 0x3f));
    } else {
        text += static_cast<char>(0xf0 | letter >> 18);
        text += static_cast<char>(0x80 | (letter >> 12 & 0x3f));
        text += static_cast<char>(0x80 | (letter >> 6 & 0x3f));
        text += static_cast<char>(0x80 | (letter & 0x3f));
    }
}

} // namespace

char32_t next_letter(std::string_view text, std::size_t& at) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned char head = byte(at);
    const std::size_t length = head < 0x80 ? 1 : head >= 0xf0 && head < 0xf8 ? 4 : head >= 0xe0 ? 3 : 2;
    if (head >= 0xf8 || (head >= 0x80 && head < 0xc2) || at + length > text.size()) {
        ++at;
        return g_no_letter;
    }
    char32_t letter = length == 1 ? head : head & (0xffU >> (length + 1));
    for (std::size_t i = 1; i < length; ++i) {
        if ((byte(at + i) & 0xc0) != 0x80) {
            ++at;
            return g_no_letter;
        }
        letter = letter << 6 | (byte(at + i) & 0x3f);
    }
    at += length;
    return letter;
}

std::string fold(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    for (std::size_t at = 0; at < text.size();) {
        const auto start = at;
        const auto letter = next_letter(text, at);
        const auto other = letter == g_no_letter ? letter : folded(letter);
        if (other == letter) {
            result.append(text.substr(start, at - start));
        } else {
            append(result, other);
        }
    }
    return result;
}

std::string like_pattern(std::string_view text) {
    std::string pattern = "%";
    for (const char one : fold(text)) {
        if (one == '%' || one == '_' || one == '\\') pattern += '\\';
        pattern += one;
    }
    return pattern += '%';
}

} // namespace tavrok::domain
