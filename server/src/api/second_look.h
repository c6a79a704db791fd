#pragma once

#include <exception>
#include <optional>

#include "store/connection.h"

namespace tavrok::api {

/** True for a write that failed in a way that its own records can explain: the connection was lost on the
 * way, so that it may have taken place, or somebody else wrote the same at that moment. Run once more, it
 * finds out. */
bool worth_a_second_look(const std::exception_ptr& failure);
/** Of which kind a failure of the store is; none where it is something else. */
std::optional<store::error_kind> store_failure(const std::exception_ptr& failure);

} // namespace tavrok::api
