#include "store/records/users.h"

#include <array>

namespace tavrok::store {

namespace {

const std::string g_columns =
    "company, id, username, username_folded, realname, password_hash, type, state, mobile, email, "
    "email_folded, last_login_at, registered_at";

const statement g_insert{
    "user_insert",
    "INSERT INTO app_user (company, username, username_folded, realname, password_hash, type, state, mobile, "
    "email, email_folded, registered_at, realname_folded) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?) "
    "RETURNING id"};
const statement g_by_name{"user_by_name", "SELECT " + g_columns +
                                              " FROM app_user WHERE username_folded = ? AND username = ? "
                                              "AND removed_at IS NULL"};
const statement g_by_id{
    "user_by_id",
    "SELECT " + g_columns + " FROM app_user WHERE company = ? AND id = ? AND removed_at IS NULL"};
// in the order of user_mark
const std::array<statement, 3> g_taken{{
    {"user_name_taken",
     "SELECT 1 FROM app_user WHERE username_folded = ? AND id <> ? AND removed_at IS NULL"},
    {"user_mobile_taken", "SELECT 1 FROM app_user WHERE mobile = ? AND mobile <> '' AND id <> ?"},
    {"user_email_taken", "SELECT 1 FROM app_user WHERE email_folded = ? AND email_folded <> '' AND id <> ?"},
}};
const statement g_login{"user_login",
                        "UPDATE app_user SET last_login_at = ? WHERE company = ? AND id = ? AND "
                        "password_hash = ? AND state = 1 AND removed_at IS NULL"};
const statement g_hash{
    "user_hash", "UPDATE app_user SET password_hash = ? WHERE company = ? AND id = ? AND removed_at IS NULL"};
const statement g_details{
    "user_details",
    "UPDATE app_user SET realname = ?, realname_folded = ?, mobile = ?, email = ?, email_folded = ? "
    "WHERE company = ? AND id = ? AND removed_at IS NULL"};
const statement g_state{"user_state",
                        "UPDATE app_user SET state = ? WHERE company = ? AND id = ? AND removed_at IS NULL"};
// Changes nothing; what it is for is the lock on the row.
const statement g_hold{
    "user_hold", "UPDATE app_user SET state = state WHERE company = ? AND id = ? AND removed_at IS NULL"};
// No user name begins with a blank, so the one that this leaves is nobody's, and no hash reads '-'.
const statement g_remove{
    "user_remove",
    "UPDATE app_user SET removed_at = ?, state = 2, username_folded = ' ' || CAST(id AS TEXT), mobile = '', "
    "email = '', email_folded = '', password_hash = '-' "
    "WHERE company = ? AND id = ? AND removed_at IS NULL"};
const statement g_unfolded{"user_unfolded",
                           "SELECT company, id, realname FROM app_user WHERE realname_folded = '' AND "
                           "realname <> '' ORDER BY company, id"};
const statement g_fold{"user_fold",
                       "UPDATE app_user SET realname_folded = ? WHERE company = ? AND id = ? AND "
                       "realname_folded = ''"};
const statement g_others{
    "user_others",
    "SELECT count(*) FROM app_user WHERE company = ? AND id <> ? AND type = 1 AND state = 1 AND "
    "removed_at IS NULL"};

std::optional<user_record> read_one(connection& with, const statement& what,
                                    std::initializer_list<value> bound) {
    std::optional<user_record> found;
    with.query(what, bound, [&](const row& one) {
        found = user_record{one.integer(0),           one.integer(1),           std::string(one.text(2)),
                            std::string(one.text(3)), std::string(one.text(4)), {},
                            std::string(one.text(5)), one.integer(6),           one.integer(7),
                            std::string(one.text(8)), std::string(one.text(9)), std::string(one.text(10)),
                            one.integer(11),          one.integer(12)};
    });
    return found;
}

} // namespace

const listing g_user_list{"user", "app_user", "removed_at IS NULL",
                          "t.id, t.username, t.realname, t.type, t.mobile, t.email, t.state, "
                          "t.last_login_at, t.registered_at"};

user_record user_of_row(const row& one) {
    user_record made;
    made.id = one.integer(0);
    made.username = one.text(1);
    made.realname = one.text(2);
    made.type = one.integer(3);
    made.mobile = one.text(4);
    made.email = one.text(5);
    made.state = one.integer(6);
    made.last_login_at = one.integer(7);
    made.registered_at = one.integer(8);
    return made;
}

std::int64_t insert_user(connection& with, const user_record& user) {
    std::int64_t id = 0;
    with.query(
        g_insert,
        {user.company, user.username, user.username_folded, user.realname, user.password_hash, user.type,
         user.state, user.mobile, user.email, user.email_folded, user.registered_at, user.realname_folded},
        [&](const row& one) { id = one.integer(0); });
    change_list_counter(with, user.company, g_user_list, 1);
    return id;
}

std::optional<user_record> user_by_name(connection& with, const std::string& folded,
                                        const std::string& name) {
    return read_one(with, g_by_name, {folded, name});
}

std::optional<user_record> user_by_id(connection& with, std::int64_t company, std::int64_t id) {
    return read_one(with, g_by_id, {company, id});
}

bool user_mark_taken(connection& with, user_mark what, const std::string& text, std::int64_t except) {
    bool taken = false;
    with.query(g_taken[static_cast<std::size_t>(what)], {text, except}, [&](const row&) { taken = true; });
    return taken;
}

std::int64_t set_user_login(connection& with, std::int64_t company, std::int64_t id, const std::string& hash,
                            std::int64_t now) {
    return with.execute(g_login, {now, company, id, hash});
}

std::int64_t set_user_hash(connection& with, std::int64_t company, std::int64_t id, const std::string& hash) {
    return with.execute(g_hash, {hash, company, id});
}

std::int64_t set_user_details(connection& with, const user_record& user) {
    return with.execute(g_details, {user.realname, user.realname_folded, user.mobile, user.email,
                                    user.email_folded, user.company, user.id});
}

std::int64_t set_user_state(connection& with, std::int64_t company, std::int64_t id, std::int64_t state) {
    return with.execute(g_state, {state, company, id});
}

bool hold_user(connection& with, std::int64_t company, std::int64_t id) {
    return with.execute(g_hold, {company, id}) != 0;
}

std::int64_t remove_user(connection& with, std::int64_t company, std::int64_t id, std::int64_t now) {
    return with.execute(g_remove, {now, company, id});
}

std::vector<unfolded_user> unfolded_users(connection& with) {
    std::vector<unfolded_user> all;
    with.query(g_unfolded, {}, [&](const row& one) {
        all.push_back({one.integer(0), one.integer(1), std::string(one.text(2))});
    });
    return all;
}

void fold_realname(connection& with, std::int64_t company, std::int64_t id, const std::string& folded) {
    with.execute(g_fold, {folded, company, id});
}

std::int64_t other_administrators(connection& with, std::int64_t company, std::int64_t except) {
    std::int64_t count = 0;
    with.query(g_others, {company, except}, [&](const row& one) { count = one.integer(0); });
    return count;
}

} // namespace tavrok::store
