#pragma once

#include <string_view>

#include "store/connection.h"

namespace tavrok::store {

/** The class of an SQLSTATE. */
error_kind classify_postgresql(std::string_view state);

/** True when the connection is of no more use after this SQLSTATE. */
bool ends_connection(std::string_view state);

} // namespace tavrok::store
