#include "store/records/stock.h"

namespace tavrok::store {

namespace {

const statement g_insert{
    "stock_insert",
    "INSERT INTO stock (company, product, warehouse, place, price, remark, added_at, on_hand, "
    "listed, place_folded, remark_folded) VALUES (?, ?, ?, ?, ?, ?, ?, 0, 0, ?, ?) RETURNING id"};
const std::string g_columns =
    "product, warehouse, place, price, remark, added_at, on_hand, claimed, holder, holds";
const statement g_hold{"stock_hold",
                       "UPDATE stock SET holds = holds WHERE company = ? AND id = ? RETURNING " + g_columns};
const statement g_read{"stock_read", "SELECT " + g_columns + " FROM stock WHERE company = ? AND id = ?"};
const statement g_change{
    "stock_change",
    "UPDATE stock SET on_hand = on_hand + ?, claimed = claimed + ?, holds = holds + ?, "
    "holder = CASE WHEN holds + ? > 0 THEN CASE WHEN holder = 0 THEN ? ELSE holder END ELSE 0 END, "
    "listed = CASE WHEN on_hand + ? > 0 THEN 1 ELSE 0 END "
    "WHERE company = ? AND id = ? AND on_hand + ? >= claimed + ? AND on_hand + ? <= ? AND (holder = 0 OR "
    "holder = ?)"};
const statement g_release{
    "stock_release",
    "UPDATE stock SET claimed = claimed - ?, holds = holds - ?, "
    "holder = CASE WHEN holds - ? > 0 THEN holder ELSE 0 END WHERE company = ? AND id = ?"};
const statement g_move{
    "movement_insert",
    "INSERT INTO movement (company, stock, amount, value, document, line, user_id, moved_at) "
    "VALUES (?, ?, ?, ?, ?, ?, ?, ?)"};
const statement g_product{"stock_of_product",
                          "SELECT id FROM stock WHERE company = ? AND listed = 1 AND product = ? LIMIT 1"};
const statement g_warehouse{
    "stock_in_warehouse", "SELECT id FROM stock WHERE company = ? AND listed = 1 AND warehouse = ? LIMIT 1"};

std::optional<stock_record> read_row(connection& with, const statement& search, std::int64_t company,
                                     std::int64_t id) {
    std::optional<stock_record> found;
    with.query(search, {company, id}, [&](const row& one) {
        found = stock_record{id,
                             one.integer(0),
                             one.integer(1),
                             std::string(one.text(2)),
                             one.integer(3),
                             std::string(one.text(4)),
                             one.integer(5),
                             one.integer(6),
                             one.integer(7),
                             one.integer(8),
                             one.integer(9)};
    });
    return found;
}

bool any(connection& with, const statement& search, std::int64_t company, std::int64_t of) {
    bool found = false;
    with.query(search, {company, of}, [&](const row&) { found = true; });
    return found;
}

} // namespace

std::int64_t insert_stock(connection& with, std::int64_t company, const stock_record& what,
                          const std::string& place_folded, const std::string& remark_folded) {
    std::int64_t id = 0;
    with.query(g_insert,
               {company, what.product, what.warehouse, what.place, what.price, what.remark, what.added_at,
                place_folded, remark_folded},
               [&](const row& one) { id = one.integer(0); });
    return id;
}

std::optional<stock_record> hold_stock(connection& with, std::int64_t company, std::int64_t id) {
    return read_row(with, g_hold, company, id);
}

std::optional<stock_record> read_stock(connection& with, std::int64_t company, std::int64_t id) {
    return read_row(with, g_read, company, id);
}

bool change_stock(connection& with, std::int64_t company, std::int64_t id, const stock_change& by) {
    return with.execute(g_change, {by.on_hand, by.claimed, by.holds, by.holds, by.user, by.on_hand, company,
                                   id, by.on_hand, by.claimed, by.on_hand, g_most_on_hand, by.user}) != 0;
}

void release_stock(connection& with, std::int64_t company, std::int64_t id, std::int64_t claimed,
                   std::int64_t holds) {
    with.execute(g_release, {claimed, holds, holds, company, id});
}

void insert_movement(connection& with, std::int64_t company, const movement_record& what) {
    with.execute(g_move, {company, what.stock, what.amount, what.value, what.document, what.line, what.user,
                          what.moved_at});
}

bool product_on_hand(connection& with, std::int64_t company, std::int64_t product) {
    return any(with, g_product, company, product);
}

bool warehouse_in_use(connection& with, std::int64_t company, std::int64_t warehouse) {
    return any(with, g_warehouse, company, warehouse);
}

} // namespace tavrok::store
