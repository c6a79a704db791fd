#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "domain/accounts.h"
#include "domain/listing.h"
#include "domain/pages.h"
#include "domain/principal.h"
#include "store/connection.h"
#include "store/records/users.h"

namespace tavrok::domain {

/** An account as its company's list shows it. */
struct user {
    std::int64_t id{0};
    std::string username;
    std::string realname;
    int type{2};
    std::string mobile;
    std::string email;
    int state{1};
    std::int64_t last_login_at{0}; /**< seconds; 0: never */
    std::int64_t registered_at{0};
};

/** Substrings, without regard to case; an empty one does not restrict, nor does a type or state of 0. */
struct user_search {
    std::string username{};
    std::string realname{};
    std::int64_t type{0};
    std::int64_t state{0};
};

using user_page = list_page<user>;

/** Pages whose screens open the picker of users: all documents, and the counts and moves of stock. */
inline constexpr auto g_user_picker_pages =
    joined(g_document_pages, page_list<2>{"stock_taking", "stock_allot"});

/** What an administrator changes of an account of his company. Name and type stay as they are. */
struct user_change {
    std::int64_t id{0};
    std::string realname;
    std::string mobile; /**< may be empty */
    std::string email;
    int state{1};
    std::string password_hash; /**< empty: the password stays */
};

/** The users of the company, newest first. */
user_page list_users(store::connection& with, const principal& who, const user_search& search,
                     const page_wish& wish, count_cache& counts);

/** What follows is for administrators, judged anew in here: who was disabled or removed a moment ago changes
 * nothing any more. All throw `refused`; an id of another company is as unknown as one that nobody has. */

/** Adds an ordinary user; administrators come with their company. `user.company` and `user.type` are not
 * looked at. */
added add_user(store::connection& with, const principal& who, new_user user, std::int64_t now);
/** A new password or disabling ends the user's sessions and secrets at once, but not the session that asks
 * for it. Nobody disables himself, and the last administrator stays enabled. */
void edit_user(store::connection& with, const principal& who, const user_change& change, std::int64_t now);
/** Takes a user away, with sessions, secrets and grants. Nobody removes himself, and the last administrator
 * stays. */
void remove_user(store::connection& with, const principal& who, std::int64_t id, std::int64_t now);

using store::user_mark;
/** True when somebody of the service has it, case aside; `except` is a user of the own company, or 0. */
bool taken(store::connection& with, const principal& who, user_mark what, const std::string& text,
           std::int64_t except);

} // namespace tavrok::domain
