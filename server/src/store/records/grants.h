#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "store/connection.h"

namespace tavrok::store {

/** A granted row; for a right, the action of the page above it, else empty. */
struct grant_record {
    std::int64_t menu{0};
    std::string action;
    std::string page;
};

/** The user's grants by row id. */
void each_grant(connection& with, std::int64_t company, std::int64_t user,
                const std::function<void(const grant_record&)>& each);
/** Keeps a user who may be granted rows as he is until the commit; false when there is no such user: unknown,
 * removed, or an administrator. */
bool hold_ordinary_user(connection& with, std::int64_t company, std::int64_t user);
/** These tell whether anything changed: granting what is granted and revoking what is not change nothing. */
bool insert_grant(connection& with, std::int64_t company, std::int64_t user, std::int64_t menu);
bool delete_grant(connection& with, std::int64_t company, std::int64_t user, std::int64_t menu);
/** Takes every grant of a user away. */
void delete_grants(connection& with, std::int64_t company, std::int64_t user);

} // namespace tavrok::store
