#pragma once

#include <cstdint>

#include "store/connection.h"
#include "store/records/listing.h"

namespace tavrok::store {

/** What the tables of retired records have in common: the columns state (1 live, 2 retired) and retired_at,
 * and where one row of a company is the default one, isdefault (1 for yes). */

/** True when the company has this row and it is live. */
bool is_live(connection& with, const listing& what, std::int64_t company, std::int64_t id);
/** Gives 0 for an unknown or retired row. */
std::int64_t retire(connection& with, const listing& what, std::int64_t company, std::int64_t id,
                    std::int64_t now);
/** Takes the default flag from every live row of the company but `except`; `no` is what says that a row is
 * not the default one. Lock the company before: a second default that comes at the same instant cannot be
 * seen from here. */
void clear_default(connection& with, const listing& what, std::int64_t company, std::int64_t no,
                   std::int64_t except = 0);

} // namespace tavrok::store
