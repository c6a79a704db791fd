#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tavrok::domain {

/** Money is a whole number of hundredths from the request to the database and back: no binary fractions. */

/** The hundredths of a decimal text such as "12", "12.5" or "12.50". Refuses a text with a sign, a blank, an
 *  exponent or more than two decimals, and one above `most` hundredths. `what` names it in the log. */
std::int64_t parse_money(std::string_view what, std::string_view text, std::int64_t most);
/** The same for money that may be lost: a minus may stand before it. The bound is that of its size. */
std::int64_t parse_signed_money(std::string_view what, std::string_view text, std::int64_t most);
/** The text with exactly two decimals: "12.50", "-0.05". */
std::string format_money(std::int64_t hundredths);

/** Wide enough for the value of any stock: a single row may already fill 64 bits. */
__extension__ using money_sum = __int128;
std::string format_money_sum(money_sum hundredths);
/** The value of one of `count` that are worth `hundredths` together, neither below 0, rounded half away from
 * zero. `count` is not 0. */
std::int64_t average_money(money_sum hundredths, std::int64_t count);

/** The sum; refuses one that no 64-bit number holds. */
std::int64_t add_money(std::int64_t left, std::int64_t right);
/** Whether a sum of `parts` amounts agrees with what a client made of them in binary fractions: less than one
 * hundredth off for each part, beside what such a fraction cannot tell of very large sums. */
bool agrees(std::int64_t sum, std::int64_t told, std::int64_t parts);
/** What a client's binary fractions cannot tell of a sum whose parts are that large in all. */
std::int64_t binary_slack(std::int64_t size, std::int64_t parts);
/** Whether `told` is what a client makes of amount times price when it truncates the product toward zero to
 * whole money: of the exact product, or of what binary fractions make of it (100 times 0.29 is 28 there). */
bool truncates_to(std::int64_t amount, std::int64_t price, std::int64_t told);

} // namespace tavrok::domain
