#include <algorithm>

#include "domain/accounts.h"
#include "domain/audit.h"
#include "domain/fold.h"
#include "domain/grants.h"
#include "store/records/login_failures.h"
#include "store/records/sessions.h"
#include "store/records/users.h"

namespace tavrok::domain {

namespace {

std::string name_key(const std::string& username) {
    return token_hash(fold(username));
}

bool pausing(const store::failure_count& seen, std::int64_t now, const throttle_limits& limits) {
    if (seen.count < limits.failures) return false;
    // 2 s after the last allowed failure, then doubling; the shift stays far from the width of the type.
    const auto further = std::min<std::int64_t>(seen.count - limits.failures, 16);
    const auto pause = std::min<std::int64_t>(std::int64_t{2} << further, limits.longest_pause);
    const auto passed = now - seen.last_at;
    return passed >= 0 && passed < pause;
}

/** `last_login`: of the account, 0 where there is none. The same statements run either way. */
bool throttled(store::connection& with, const std::string& username, std::int64_t last_login,
               const std::string& peer, std::int64_t now, const throttle_limits& limits) {
    const auto since = now - limits.window;
    return pausing(store::failures_of_name(with, name_key(username), std::max(since, last_login)), now,
                   limits) ||
           pausing(store::failures_of_peer(with, peer, since), now, limits);
}

login_result refuse(std::string reason) {
    login_result result;
    result.reason = std::move(reason);
    return result;
}

login_result accept(store::connection& with, const store::user_record& user, const std::string& peer,
                    std::int64_t now, const session_limits& limits) {
    // The account's row first: whoever disables it or changes its password at this moment either sees the new
    // session and ends it, or is seen here.
    if (store::set_user_login(with, user.company, user.id, user.password_hash, now) == 0) {
        return refuse("changed meanwhile");
    }
    login_result result;
    result.accepted = true;
    result.company = user.company;
    result.user = user.id;
    result.username = user.username;
    result.realname = user.realname;
    result.type = static_cast<int>(user.type);
    result.token = open_session(with, user.company, user.id, peer, now, limits);
    result.relogin_secret = new_token();
    store::insert_relogin(with, user.company, user.id, token_hash(result.relogin_secret), now,
                          now + limits.relogin);
    result.rows = granted_rows(with, {user.company, user.id}, user.type == 1);
    note(with, user.company, user.id, "login", user.id, now);
    return result;
}

} // namespace

login_candidate find_candidate(store::connection& with, const std::string& username, const std::string& peer,
                               std::int64_t now, const throttle_limits& limits) {
    const auto user = store::user_by_name(with, fold(username), username);
    login_candidate candidate;
    candidate.username = username;
    candidate.company = user ? user->company : 0;
    candidate.user = user ? user->id : 0;
    candidate.hash = user ? user->password_hash : dummy_hash();
    candidate.throttled = throttled(with, username, user ? user->last_login_at : 0, peer, now, limits);
    return candidate;
}

login_result complete_login(store::connection& with, const login_candidate& candidate, bool verified,
                            const std::string& peer, std::int64_t now, const session_limits& limits,
                            const throttle_limits& slow) {
    const auto user = store::user_by_id(with, candidate.company, candidate.user);
    // Many attempts may have been under way at once: those that the failures of the others rule out do not
    // count.
    if (throttled(with, candidate.username, user ? user->last_login_at : 0, peer, now, slow)) {
        return refuse("too many failures");
    }
    // The password may have been changed while this one was verified against the old one.
    const bool fits = verified && user && user->password_hash == candidate.hash;
    if (fits && user->state == 1) return accept(with, *user, peer, now, limits);
    store::insert_login_failure(with, name_key(candidate.username), peer, now);
    if (!user) return refuse("unknown name");
    return refuse(fits ? "disabled" : "wrong password");
}

relogin_result relogin(store::connection& with, const std::string& username, const std::string& secret,
                       const std::string& peer, std::int64_t now, const session_limits& limits) {
    const auto user = store::user_by_name(with, fold(username), username);
    if (!user || user->state != 1) return {};
    if (!store::relogin_fits(with, user->company, user->id, token_hash(secret), now)) return {};
    note(with, user->company, user->id, "relogin", user->id, now);
    return {true, user->company, user->id, open_session(with, user->company, user->id, peer, now, limits)};
}

} // namespace tavrok::domain
