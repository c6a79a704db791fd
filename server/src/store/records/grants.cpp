#include "store/records/grants.h"

namespace tavrok::store {

namespace {

const statement g_grants{
    "grant_rows",
    "SELECT m.id, m.action, CASE WHEN m.real_level = 2 THEN p.action ELSE '' END "
    "FROM user_grant g JOIN menu m ON m.id = g.menu_id LEFT JOIN menu p ON p.id = m.parent "
    "WHERE g.company = ? AND g.user_id = ? ORDER BY m.id"};
// Changes nothing; what it is for is the lock on the row.
const statement g_hold{"grant_hold_user",
                       "UPDATE app_user SET type = type WHERE company = ? AND id = ? AND type = 2 AND "
                       "removed_at IS NULL"};
const statement g_grant{"grant_insert",
                        "INSERT INTO user_grant (company, user_id, menu_id) VALUES (?, ?, ?) "
                        "ON CONFLICT (company, user_id, menu_id) DO NOTHING"};
const statement g_revoke{"grant_delete",
                         "DELETE FROM user_grant WHERE company = ? AND user_id = ? AND menu_id = ?"};
const statement g_revoke_all{"grant_delete_all", "DELETE FROM user_grant WHERE company = ? AND user_id = ?"};

} // namespace

void each_grant(connection& with, std::int64_t company, std::int64_t user,
                const std::function<void(const grant_record&)>& each) {
    with.query(g_grants, {company, user}, [&](const row& one) {
        each({one.integer(0), std::string(one.text(1)),
              one.null(2) ? std::string() : std::string(one.text(2))});
    });
}

bool hold_ordinary_user(connection& with, std::int64_t company, std::int64_t user) {
    return with.execute(g_hold, {company, user}) > 0;
}

bool insert_grant(connection& with, std::int64_t company, std::int64_t user, std::int64_t menu) {
    return with.execute(g_grant, {company, user, menu}) > 0;
}

bool delete_grant(connection& with, std::int64_t company, std::int64_t user, std::int64_t menu) {
    return with.execute(g_revoke, {company, user, menu}) > 0;
}

void delete_grants(connection& with, std::int64_t company, std::int64_t user) {
    with.execute(g_revoke_all, {company, user});
}

} // namespace tavrok::store
