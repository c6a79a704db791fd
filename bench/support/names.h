#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace bench {

/** The name of the partner with this number: place, firm name, trade and form, as a trading company has them.
 */
std::string partner_name(std::uint32_t number);

/** The name of the product with this number: make, quality and what it is. */
std::string product_name(std::uint32_t number);

/** The name of the employee with this number. */
std::string person_name(std::uint32_t number);

/** The remark of the stock rows that have plenty on hand: every thousandth. */
inline constexpr const char* bulk_remark = "大宗";

/** Two-character texts that stand in some of the names of partners: from one name in a few hundred to one in
 * eight. */
const std::vector<std::string>& search_terms();

/** The same for the names of products. */
const std::vector<std::string>& product_terms();

} // namespace bench
