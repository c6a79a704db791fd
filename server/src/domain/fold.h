#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tavrok::domain {

/** What next_letter() gives for a byte that is no part of valid UTF-8. */
inline constexpr char32_t g_no_letter = 0xffffffff;

/** The code point at `at`, which moves behind it; g_no_letter and one byte on where there is none. */
char32_t next_letter(std::string_view text, std::size_t& at);

/** The text without regard to case, for comparison: simple one-to-one folding of the alphabets that have
 * case, letter by letter and whatever the locale. We carry the table ourselves because the databases fold
 * ASCII only (or as their locale says), and what is stored must compare the same on every machine. Invalid
 * UTF-8 passes through. */
std::string fold(std::string_view text);

/** A pattern for LIKE ... ESCAPE '\' that finds the folded `text` anywhere in a folded column. */
std::string like_pattern(std::string_view text);

} // namespace tavrok::domain
