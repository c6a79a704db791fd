#pragma once

#include <cstdint>
#include <string_view>

#include "domain/principal.h"
#include "store/connection.h"

namespace tavrok::domain {

/** Notes who did what to which record, in the transaction of the deed. `what` is a word such as
 * "partner_add"; never a text of a user, never a secret. `detail`: the second thing that a deed concerns,
 * such as the menu row that a user was granted. */
void note(store::connection& with, const principal& who, std::string_view what, std::int64_t id,
          std::int64_t now, std::int64_t detail = 0);
/** The same for deeds outside a session; `user` 0 is the operator at the console. */
void note(store::connection& with, std::int64_t company, std::int64_t user, std::string_view what,
          std::int64_t id, std::int64_t now, std::int64_t detail = 0);

} // namespace tavrok::domain
