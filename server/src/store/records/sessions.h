#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "store/connection.h"

namespace tavrok::store {

/** A session with the user and company behind it. */
struct session_record {
    std::int64_t company{0};
    std::int64_t id{0};
    std::int64_t user{0};
    std::int64_t created_at{0};
    std::int64_t last_used_at{0};
    std::string username;
    std::int64_t user_type{2};
    std::int64_t user_state{1};
    bool operator_company{false};
};

/** `peer` is the address that the login came from. */
void insert_session(connection& with, std::int64_t company, std::int64_t user, const std::string& token_hash,
                    const std::string& peer, std::int64_t now);
std::optional<session_record> session_by_token(connection& with, const std::string& token_hash);
/** Moves the last use forward, never back. */
void touch_session(connection& with, std::int64_t company, std::int64_t session, std::int64_t now);
/** Deletes the sessions of a user, but for the one with the id `kept`. */
void delete_sessions(connection& with, std::int64_t company, std::int64_t user, std::int64_t kept);
/** Sessions that were made before `created` or not used since `used`. */
void delete_old_sessions(connection& with, std::int64_t created, std::int64_t used);

void insert_relogin(connection& with, std::int64_t company, std::int64_t user, const std::string& secret_hash,
                    std::int64_t now, std::int64_t expires);
/** True when the secret is the user's and has not expired. Its row is locked from here to the commit: whoever
 * voids the secret meanwhile finds the session that it makes. */
bool relogin_fits(connection& with, std::int64_t company, std::int64_t user, const std::string& secret_hash,
                  std::int64_t now);
void delete_relogins(connection& with, std::int64_t company, std::int64_t user);
void delete_old_relogins(connection& with, std::int64_t now);

} // namespace tavrok::store
