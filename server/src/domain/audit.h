#pragma once

#include <cstdint>
#include <string_view>

#include "domain/principal.h"
#include "store/connection.h"

namespace tavrok::domain {

/** Notes who did what to which record, in the transaction of the deed. `what` is a word such as
 * "partner_add"; never a text of a user, never a secret. */
void note(store::connection& with, const principal& who, std::string_view what, std::int64_t id,
          std::int64_t now);
/** The same for deeds outside a session; `user` 0 is the operator at the console. */
void note(store::connection& with, std::int64_t company, std::int64_t user, std::string_view what,
          std::int64_t id, std::int64_t now);

} // namespace tavrok::domain
