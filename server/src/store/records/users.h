#pragma once

#include <cstdint>
#include <optional>
#include <string>

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

/** The list of a company's users. */
extern const listing g_user_list;

/** Gives the id; `id` and `last_login_at` of the record are ignored. */
std::int64_t insert_user(connection& with, const user_record& user);
/** By the exact name and its folded form, over all companies: a login knows no company yet. */
std::optional<user_record> user_by_name(connection& with, const std::string& folded, const std::string& name);
std::optional<user_record> user_by_id(connection& with, std::int64_t company, std::int64_t id);
/** True when the folded name, the mobile or the folded e-mail is taken; empty ones are not looked for. */
bool user_taken(connection& with, const user_record& user);
void set_user_login(connection& with, std::int64_t company, std::int64_t id, std::int64_t now);
/** These give the number of rows that changed: 0 for an unknown user. */
std::int64_t set_user_hash(connection& with, std::int64_t company, std::int64_t id, const std::string& hash);
std::int64_t set_user_state(connection& with, std::int64_t company, std::int64_t id, std::int64_t state);
/** Enabled administrators of the company beside one user. */
std::int64_t other_administrators(connection& with, std::int64_t company, std::int64_t except);

} // namespace tavrok::store
