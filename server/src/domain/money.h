#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tavrok::domain {

/** Money is a whole number of hundredths from the request to the database and back: no binary fractions. */

/** The hundredths of a decimal text such as "12", "12.5" or "12.50". Refuses a text with a sign, a blank, an
 *  exponent or more than two decimals, and one above `most` hundredths. `what` names it in the log. */
std::int64_t parse_money(std::string_view what, std::string_view text, std::int64_t most);
/** The text with exactly two decimals: "12.50", "-0.05". */
std::string format_money(std::int64_t hundredths);

/** The sum; refuses one that no 64-bit number holds. */
std::int64_t add_money(std::int64_t left, std::int64_t right);
/** Whether a sum of `parts` amounts agrees with what a client made of them in binary fractions: less than one
 * hundredth off for each part, beside what such a fraction cannot tell of very large sums. */
bool agrees(std::int64_t sum, std::int64_t told, std::int64_t parts);

} // namespace tavrok::domain
