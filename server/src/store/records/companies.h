#pragma once

#include <cstdint>
#include <string>

#include "store/connection.h"

namespace tavrok::store {

std::int64_t insert_company(connection& with, const std::string& name, const std::string& folded,
                            bool is_operator, std::int64_t now);
bool any_company(connection& with);
bool operator_exists(connection& with);
/** The version of the company's data; 0 for an unknown company. */
std::int64_t data_version(connection& with, std::int64_t company);
/** Marks the company's data as changed. Late in the transaction: the row is locked from here to the commit.
 */
void bump_data_version(connection& with, std::int64_t company);

} // namespace tavrok::store
