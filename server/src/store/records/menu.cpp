#include "store/records/menu.h"

#include "store/records/listing.h"

namespace tavrok::store {

namespace {

constexpr const char* g_series = "menu";

const statement g_rows{"menu_rows",
                       "SELECT id, coalesce(parent, 0), name, action, real_level, sort, shown FROM menu "
                       "ORDER BY sort, id"};
const statement g_exists{"menu_exists", "SELECT 1 FROM menu WHERE id = ?"};
const statement g_lock{"menu_lock", "UPDATE number_series SET last = last WHERE name = ?"};
const statement g_insert{"menu_insert",
                         "INSERT INTO menu (parent, name, action, real_level, sort, shown, id) "
                         "VALUES (nullif(?, 0), ?, ?, ?, ?, ?, ?)"};
const statement g_update{"menu_update",
                         "UPDATE menu SET parent = nullif(?, 0), name = ?, action = ?, real_level = ?, "
                         "sort = ?, shown = ? WHERE id = ?"};
const statement g_delete{"menu_delete",
                         "WITH RECURSIVE gone (id) AS (SELECT id FROM menu WHERE id = ? "
                         "UNION SELECT m.id FROM menu m JOIN gone g ON m.parent = g.id) "
                         "DELETE FROM menu WHERE id IN (SELECT id FROM gone)"};

void write_row(connection& with, const statement& how, const menu_record& row) {
    with.execute(how, {row.parent, row.name, row.action, row.real_level, row.sort, row.shown, row.id});
}

} // namespace

void each_menu_row(connection& with, const std::function<void(const menu_record&)>& each) {
    with.query(g_rows, {}, [&](const row& one) {
        each({one.integer(0), one.integer(1), std::string(one.text(2)), std::string(one.text(3)),
              one.integer(4), one.integer(5), one.integer(6)});
    });
}

bool menu_row_exists(connection& with, std::int64_t menu) {
    bool found = false;
    with.query(g_exists, {menu}, [&](const row&) { found = true; });
    return found;
}

void lock_menu(connection& with) {
    with.execute(g_lock, {std::string(g_series)});
}

std::int64_t next_menu_row(connection& with) {
    return next_number(with, g_series);
}

void insert_menu_row(connection& with, const menu_record& row) {
    write_row(with, g_insert, row);
}

void update_menu_row(connection& with, const menu_record& row) {
    write_row(with, g_update, row);
}

void delete_menu_rows(connection& with, std::int64_t top) {
    with.execute(g_delete, {top});
}

} // namespace tavrok::store
