#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "domain/passwords.h"
#include "domain/sessions.h"
#include "store/connection.h"

namespace tavrok::domain {

/** Five failures within 15 minutes, of a name or from an address, slow it down: from then on every further
 * failure starts a pause in which nothing is tried, 2 s at first, doubling up to 60 s. A success of a name
 * starts its count anew; an address is only cleared by time. */
struct throttle_limits {
    std::int64_t failures{5};
    std::int64_t window{15 * 60};
    std::int64_t longest_pause{60};
};

/** First stage of a login: what is to be verified. */
struct login_candidate {
    std::string username; /**< as the client sent it */
    std::int64_t company{0};
    std::int64_t user{0}; /**< 0: nobody of that name */
    std::string hash;     /**< the stored hash or the dummy; always worth verifying */
    bool throttled{
        false}; /**< inside a pause: answer the refusal at once, without verifying and completing */
};

/** A menu row as the login answer names it. */
struct granted_row {
    std::int64_t id;
    std::string action;
};

/** The outcome of a login. Refused when `accepted` is false; nobody learns why (the log does: `reason`). */
struct login_result {
    bool accepted{false};
    std::string reason; /**< for the log: "unknown name", "wrong password", "disabled", "too many failures" */
    std::int64_t company{0};
    std::int64_t user{0};
    std::string username;
    std::string realname;
    int type{0};                   /**< 1 administrator, 2 ordinary user */
    std::string token;             /**< for the session cookie */
    std::string relogin_secret;    /**< goes out as user.password */
    std::vector<granted_row> rows; /**< every row for an administrator, else the granted ones; by id */
};

/** The outcome of a re-login: a new session, or none. */
struct relogin_result {
    bool accepted{false};
    std::int64_t company{0};
    std::int64_t user{0};
    std::string token;
};

/** Stage one of a login (reads): looks the name up and tells whether it is worth trying. */
login_candidate find_candidate(store::connection& with, const std::string& username, const std::string& peer,
                               std::int64_t now, const throttle_limits& limits = {});
/** Stage three (writes), after verify_password() on the hashing queue: notes the failure, or makes session,
 * re-login secret and audit row. It judges account and throttle anew, as both may have changed since stage
 * one. */
login_result complete_login(store::connection& with, const login_candidate& candidate, bool verified,
                            const std::string& peer, std::int64_t now, const session_limits& limits = {},
                            const throttle_limits& slow = {});
/** A new session for a re-login secret (writes). Failures are not counted: a secret of 256 bits cannot be
 * guessed, and a client whose secret has lapsed repeats it at every click. */
relogin_result relogin(store::connection& with, const std::string& username, const std::string& secret,
                       const std::string& peer, std::int64_t now, const session_limits& limits = {});

struct new_user {
    std::int64_t company{0};
    std::string username;
    std::string realname;
    std::string password_hash; /**< of hash_password() */
    int type{2};               /**< 1 administrator, 2 ordinary user */
    std::string mobile;        /**< may be empty */
    std::string email;         /**< may be empty */
    int state{1};              /**< 1 enabled, 2 disabled */
};

/** Gives the id. `operator_company`: the company that runs the service; there is at most one. Its name is
 * unique in the service, without regard to case. Throws `refused`. */
std::int64_t create_company(store::connection& with, const std::string& name, bool operator_company,
                            std::int64_t now, const std::string& phone = {}, const std::string& address = {});
/** Gives the id. User name, mobile and e-mail are unique in the service, without regard to case. `by`: the
 * user who does it, 0 where nobody is logged in. Throws `refused`. */
std::int64_t create_user(store::connection& with, const new_user& user, std::int64_t now,
                         std::int64_t by = 0);
/** True when no company exists yet. */
bool no_company(store::connection& with);

struct user_key {
    std::int64_t company;
    std::int64_t user;
};
/** The account of that exact name. */
std::optional<user_key> find_user(store::connection& with, const std::string& username);
/** Replaces the password; every session and re-login secret of the user is void. Throws `refused` for an
 * unknown id. */
void set_password(store::connection& with, const user_key& whom, const std::string& password_hash,
                  std::int64_t now);
/** For changes that look at other rows of the company before they add one in the user's name: holds the user
 * and then the company, in this order, until the commit. Refuses a user who was removed meanwhile. */
void lock_for_adding(store::connection& with, const principal& who);
/** Refuses when the company has no enabled administrator beside this one. The company is locked by now. */
void demand_administrators_beside(store::connection& with, const user_key& whom);
/** Refuses when without this user nobody would be left to administer the company. Changes the company's row
 * first, so that two who take one of the last two administrators each cannot both succeed. */
void demand_other_administrator(store::connection& with, const user_key& whom);
/** Disables an account with all its sessions and secrets; the last administrator stays (`refused`). */
void disable_user(store::connection& with, const user_key& whom, std::int64_t now);
/** Enables an account again. */
void enable_user(store::connection& with, const user_key& whom, std::int64_t now);

} // namespace tavrok::domain
