#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "domain/principal.h"
#include "store/connection.h"

namespace tavrok::domain {

/** How long things live, in seconds. */
struct session_limits {
    std::int64_t idle{8 * 3600};     /**< a session without a request */
    std::int64_t total{24 * 3600};   /**< a session in all */
    std::int64_t relogin{24 * 3600}; /**< a re-login secret */
    std::int64_t claim{2 * 3600};    /**< claims on stock after the last request of their user */
};

/** 256 random bits in lower-case hexadecimal: a session token or a re-login secret. */
std::string new_token();
/** A number from 0 to `end` - 1 that nobody can foresee. */
std::uint32_t random_below(std::uint32_t end);
/** The form in which tokens, secrets and other texts that are only recognised are stored: SHA-256 in
 * lower-case hexadecimal. */
std::string token_hash(const std::string& token);

/** The principal behind a session token; none when the token is unknown, the session has ended or its user is
 *  disabled. Reads only. */
std::optional<principal> resume(store::connection& with, const std::string& token, std::int64_t now,
                                const session_limits& limits = {});
/** True when the stored last use is older than 60 s, so that touch() is worth a write. */
bool needs_touch(const principal& who, std::int64_t now);
/** True for one whose claims have lapsed because he asked nothing for so long. */
bool was_gone(const principal& who, std::int64_t now, const session_limits& limits);
/** Notes a request of the session; never moves the time back. */
void touch(store::connection& with, const principal& who, std::int64_t now,
           const session_limits& limits = {});

/** Before a request that writes: where its user was gone, his claims have lapsed, and his return is noted, so
 * that what he claims from now on lives. True where it did that: the request then needs a transaction of its
 * own, because this one holds stock rows that the request may not be the first to need. */
bool come_back(store::connection& with, const principal& who, std::int64_t now,
               const session_limits& limits = {});

/** Makes a session for a login from `peer` and gives its token; the database keeps the hash. Claims of a user
 * who was gone have lapsed: his login does not revive them. */
std::string open_session(store::connection& with, std::int64_t company, std::int64_t user,
                         const std::string& peer, std::int64_t now, const session_limits& limits = {});
/** Ends every session of a user, but for the one with the id `kept`, and voids his re-login secrets. What is
 * being made of a secret at this moment is ended as well. */
void void_access(store::connection& with, std::int64_t company, std::int64_t user, std::int64_t kept = 0);
/** One of the things that are long over and deleted: lapsed secrets, ended sessions, login failures beyond
 * their window, pictures of visitors, drafts that nobody closed. Each stands alone, so that a part that fails
 * keeps no other from its work. */
struct sweep_part {
    std::string_view what;
    void (*run)(store::connection& with, std::int64_t now, const session_limits& limits);
};
/** In an order that may also run in one transaction: locks are taken as void_access() and a closing call do.
 */
std::span<const sweep_part> sweep_parts();
/** All parts and sweep_claims() in the transaction at hand. */
void sweep(store::connection& with, std::int64_t now, const session_limits& limits = {});

} // namespace tavrok::domain
