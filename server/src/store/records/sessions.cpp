#include "store/records/sessions.h"

namespace tavrok::store {

namespace {

const statement g_insert{"session_insert",
                         "INSERT INTO session (company, user_id, token_hash, peer, created_at, last_used_at) "
                         "VALUES (?, ?, ?, ?, ?, ?)"};
const statement g_by_token{
    "session_by_token",
    "SELECT s.company, s.id, s.user_id, s.created_at, s.last_used_at, u.username, u.type, "
    "u.state, c.is_operator FROM session s "
    "JOIN app_user u ON u.company = s.company AND u.id = s.user_id AND u.removed_at IS NULL "
    "JOIN company c ON c.id = s.company WHERE s.token_hash = ?"};
const statement g_touch{
    "session_touch", "UPDATE session SET last_used_at = ? WHERE company = ? AND id = ? AND last_used_at < ?"};
const statement g_delete{"session_delete",
                         "DELETE FROM session WHERE company = ? AND user_id = ? AND id <> ?"};
const statement g_delete_old{"session_delete_old",
                             "DELETE FROM session WHERE created_at <= ? OR last_used_at <= ?"};
const statement g_insert_relogin{"relogin_insert",
                                 "INSERT INTO relogin_secret (company, user_id, secret_hash, created_at, "
                                 "expires_at) VALUES (?, ?, ?, ?, ?)"};
const statement g_relogin{
    "relogin_fits",
    "UPDATE relogin_secret SET expires_at = expires_at WHERE company = ? AND user_id = ? AND "
    "secret_hash = ? AND expires_at > ?"};
const statement g_delete_relogin{"relogin_delete",
                                 "DELETE FROM relogin_secret WHERE company = ? AND user_id = ?"};
const statement g_delete_old_relogin{"relogin_delete_old",
                                     "DELETE FROM relogin_secret WHERE expires_at <= ?"};

} // namespace

void insert_session(connection& with, std::int64_t company, std::int64_t user, const std::string& token_hash,
                    const std::string& peer, std::int64_t now) {
    with.execute(g_insert, {company, user, token_hash, peer, now, now});
}

std::optional<session_record> session_by_token(connection& with, const std::string& token_hash) {
    std::optional<session_record> found;
    with.query(g_by_token, {token_hash}, [&](const row& one) {
        found = session_record{one.integer(0), one.integer(1), one.integer(2),
                               one.integer(3), one.integer(4), std::string(one.text(5)),
                               one.integer(6), one.integer(7), one.integer(8) != 0};
    });
    return found;
}

void touch_session(connection& with, std::int64_t company, std::int64_t session, std::int64_t now) {
    with.execute(g_touch, {now, company, session, now});
}

void delete_sessions(connection& with, std::int64_t company, std::int64_t user, std::int64_t kept) {
    with.execute(g_delete, {company, user, kept});
}

void delete_old_sessions(connection& with, std::int64_t created, std::int64_t used) {
    with.execute(g_delete_old, {created, used});
}

void insert_relogin(connection& with, std::int64_t company, std::int64_t user, const std::string& secret_hash,
                    std::int64_t now, std::int64_t expires) {
    with.execute(g_insert_relogin, {company, user, secret_hash, now, expires});
}

bool relogin_fits(connection& with, std::int64_t company, std::int64_t user, const std::string& secret_hash,
                  std::int64_t now) {
    return with.execute(g_relogin, {company, user, secret_hash, now}) != 0;
}

void delete_relogins(connection& with, std::int64_t company, std::int64_t user) {
    with.execute(g_delete_relogin, {company, user});
}

void delete_old_relogins(connection& with, std::int64_t now) {
    with.execute(g_delete_old_relogin, {now});
}

} // namespace tavrok::store
