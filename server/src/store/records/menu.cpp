#include "store/records/menu.h"

namespace tavrok::store {

namespace {

const statement g_rows{"menu_rows",
                       "SELECT id, coalesce(parent, 0), name, action, real_level, sort, shown FROM menu "
                       "ORDER BY real_level, sort, id"};
const statement g_grants{
    "grant_rows",
    "SELECT m.id, m.action, CASE WHEN m.real_level = 2 THEN p.action ELSE '' END "
    "FROM user_grant g JOIN menu m ON m.id = g.menu_id LEFT JOIN menu p ON p.id = m.parent "
    "WHERE g.company = ? AND g.user_id = ? ORDER BY m.id"};
const statement g_exists{"menu_exists", "SELECT 1 FROM menu WHERE id = ?"};
const statement g_grant{"grant_insert",
                        "INSERT INTO user_grant (company, user_id, menu_id) VALUES (?, ?, ?) "
                        "ON CONFLICT (company, user_id, menu_id) DO NOTHING"};
const statement g_drop_grants{"grant_drop_all", "DELETE FROM user_grant WHERE company = ? AND user_id = ?"};

} // namespace

void each_menu_row(connection& with, const std::function<void(const menu_record&)>& each) {
    with.query(g_rows, {}, [&](const row& one) {
        each({one.integer(0), one.integer(1), std::string(one.text(2)), std::string(one.text(3)),
              one.integer(4), one.integer(5), one.integer(6)});
    });
}

void each_grant(connection& with, std::int64_t company, std::int64_t user,
                const std::function<void(const grant_record&)>& each) {
    with.query(g_grants, {company, user}, [&](const row& one) {
        each({one.integer(0), std::string(one.text(1)),
              one.null(2) ? std::string() : std::string(one.text(2))});
    });
}

bool menu_row_exists(connection& with, std::int64_t menu) {
    bool found = false;
    with.query(g_exists, {menu}, [&](const row&) { found = true; });
    return found;
}

void insert_grant(connection& with, std::int64_t company, std::int64_t user, std::int64_t menu) {
    with.execute(g_grant, {company, user, menu});
}

void delete_grants(connection& with, std::int64_t company, std::int64_t user) {
    with.execute(g_drop_grants, {company, user});
}

} // namespace tavrok::store
