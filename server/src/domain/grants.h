#pragma once

#include <cstdint>
#include <vector>

#include "domain/accounts.h"
#include "domain/principal.h"
#include "store/connection.h"

namespace tavrok::domain {

/** What a user has been given: every row of the menu for an administrator, else the granted ones; by id. */
std::vector<granted_row> granted_rows(store::connection& with, const user_key& whom, bool administrator);
/** The same for an administrator who looks at a user of his company. Throws `refused` for an unknown user. */
std::vector<granted_row> granted_rows(store::connection& with, const principal& who, std::int64_t user);

/** Grants one menu row to an ordinary user of the administrator's company, or takes it away; it counts from
 * the user's next request on. Doing twice is doing once. Throws `refused` for an unknown user or row, and for
 * an administrator, who has every right and can lose none. */
void grant_row(store::connection& with, const principal& who, std::int64_t user, std::int64_t menu_row,
               std::int64_t now);
void revoke_row(store::connection& with, const principal& who, std::int64_t user, std::int64_t menu_row,
                std::int64_t now);
/** Grants a row from the console. */
void grant_row(store::connection& with, const user_key& whom, std::int64_t menu_row, std::int64_t now);

} // namespace tavrok::domain
