#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tavrok::domain {

/** The day of an instant in the service's time zone, as a number such as 20261121. */
std::int64_t day_of(std::int64_t now);
/** The number of a document: "CG20261121-0001". The sequence has four digits, and more when it needs them. */
std::string document_number(std::string_view prefix, std::int64_t day, std::int64_t sequence);

} // namespace tavrok::domain
