#pragma once

#include <span>
#include <string_view>

#include "store/connection.h"

namespace tavrok::store {

/** True for well-formed UTF-8 without a zero byte: the text that both databases can hold. */
bool storable(std::string_view text);

/** Throws error_kind::check when a bound text is not storable. PostgreSQL would refuse it and SQLite would
 * not, so it is decided here. */
void check_bound(const statement& what, std::span<const value> bound);

} // namespace tavrok::store
