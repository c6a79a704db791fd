#include "store/records/users.h"

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
const statement g_by_name{
    "user_by_name", "SELECT " + g_columns + " FROM app_user WHERE username_folded = ? AND username = ?"};
const statement g_by_id{
    "user_by_id",
    "SELECT " + g_columns + " FROM app_user WHERE company = ? AND id = ? AND removed_at IS NULL"};
const statement g_taken{"user_taken",
                        "SELECT 1 FROM app_user WHERE username_folded = ? "
                        "OR (mobile <> '' AND mobile = ?) OR (email_folded <> '' AND email_folded = ?)"};
const statement g_login{"user_login", "UPDATE app_user SET last_login_at = ? WHERE company = ? AND id = ?"};
const statement g_hash{"user_hash", "UPDATE app_user SET password_hash = ? WHERE company = ? AND id = ?"};
const statement g_state{"user_state", "UPDATE app_user SET state = ? WHERE company = ? AND id = ?"};
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

bool user_taken(connection& with, const user_record& user) {
    bool taken = false;
    with.query(g_taken, {user.username_folded, user.mobile, user.email_folded},
               [&](const row&) { taken = true; });
    return taken;
}

void set_user_login(connection& with, std::int64_t company, std::int64_t id, std::int64_t now) {
    with.execute(g_login, {now, company, id});
}

std::int64_t set_user_hash(connection& with, std::int64_t company, std::int64_t id, const std::string& hash) {
    return with.execute(g_hash, {hash, company, id});
}

std::int64_t set_user_state(connection& with, std::int64_t company, std::int64_t id, std::int64_t state) {
    return with.execute(g_state, {state, company, id});
}

std::int64_t other_administrators(connection& with, std::int64_t company, std::int64_t except) {
    std::int64_t count = 0;
    with.query(g_others, {company, except}, [&](const row& one) { count = one.integer(0); });
    return count;
}

} // namespace tavrok::store
