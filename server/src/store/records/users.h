#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "store/connection.h"
#include "store/records/listing.h"

namespace tavrok::store {

/** One account. type: 1 administrator, 2 ordinary; state: 1 enabled, 2 disabled. */
struct user_record {
    std::int64_t company{0};
    std::int64_t id{0};
    std::string username;
    std::string username_folded;
    std::string realname;
    std::string realname_folded;
    std::string password_hash;
    std::int64_t type{2};
    std::int64_t state{1};
    std::string mobile;
    std::string email;
    std::string email_folded;
    std::int64_t last_login_at{0};
    std::int64_t registered_at{0};
};

/** The list of a company's users; user_of_row() reads its rows. */
extern const listing g_user_list;
user_record user_of_row(const row& one);

/** Gives the id; `id` and `last_login_at` of the record are ignored. */
std::int64_t insert_user(connection& with, const user_record& user);
/** By the exact name and its folded form, over all companies: a login knows no company yet. This and all
 * below know nothing of removed users. */
std::optional<user_record> user_by_name(connection& with, const std::string& folded, const std::string& name);
std::optional<user_record> user_by_id(connection& with, std::int64_t company, std::int64_t id);
/** What must be one user's alone in the whole service: the folded name, the mobile, the folded e-mail. */
enum class user_mark { username, mobile, email };
/** True when a user other than `except` has it; nobody has an empty one. */
bool user_mark_taken(connection& with, user_mark what, const std::string& text, std::int64_t except = 0);
/** Notes a login, if the account is still enabled and its password still the one of that hash; gives 0
 * otherwise. */
std::int64_t set_user_login(connection& with, std::int64_t company, std::int64_t id, const std::string& hash,
                            std::int64_t now);
/** These give the number of rows that changed: 0 for an unknown user. */
std::int64_t set_user_hash(connection& with, std::int64_t company, std::int64_t id, const std::string& hash);
std::int64_t set_user_details(connection& with, const user_record& user);
std::int64_t set_user_state(connection& with, std::int64_t company, std::int64_t id, std::int64_t state);
/** Keeps the user as he is until the commit; false for an unknown one. Always before the company is locked.
 */
bool hold_user(connection& with, std::int64_t company, std::int64_t id);
/** Takes the user out of the lists, whose counter is the caller's to change. His name, mobile and e-mail are
 * free again and his password is gone; the row with the name as it was stays, since documents go on naming
 * him. */
std::int64_t remove_user(connection& with, std::int64_t company, std::int64_t id, std::int64_t now);
/** Users whose real name is not folded, removed ones too, and folding it. */
struct unfolded_user {
    std::int64_t company;
    std::int64_t id;
    std::string realname;
};
std::vector<unfolded_user> unfolded_users(connection& with);
void fold_realname(connection& with, std::int64_t company, std::int64_t id, const std::string& folded);
/** Enabled administrators of the company beside one user. */
std::int64_t other_administrators(connection& with, std::int64_t company, std::int64_t except);

} // namespace tavrok::store
