#include "store/records/warehouses.h"

namespace tavrok::store {

namespace {

const statement g_insert{
    "warehouse_insert",
    "INSERT INTO warehouse (company, added_by, added_at, name, phone, address, mobile, keeper, remark, "
    "isdefault, name_folded, phone_folded) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?) RETURNING id"};
const statement g_update{
    "warehouse_update",
    "UPDATE warehouse SET name = ?, phone = ?, address = ?, mobile = ?, keeper = ?, remark = ?, "
    "isdefault = ?, name_folded = ?, phone_folded = ? WHERE company = ? AND id = ? AND state = 1"};
const statement g_keeper{"warehouse_keeper",
                         "SELECT keeper FROM warehouse WHERE company = ? AND id = ? AND state = 1"};
const statement g_options{
    "warehouse_options",
    "SELECT id, name, isdefault FROM warehouse WHERE company = ? AND state = 1 ORDER BY id"};
const statement g_stock{
    "warehouse_stock",
    "SELECT w.id, w.name, w.isdefault, coalesce(s.free, 0) FROM warehouse w LEFT JOIN (SELECT warehouse, "
    "CAST(sum(on_hand - claimed) AS BIGINT) AS free FROM stock WHERE company = ? AND listed = 1 GROUP BY "
    "warehouse) s ON s.warehouse = w.id WHERE w.company = ? AND w.state = 1 ORDER BY w.id"};

/** The values that both writes bind, in their order. */
void bind_details(std::vector<value>& bound, const warehouse_record& what, const warehouse_folds& folds) {
    bound.insert(bound.end(), {what.name, what.phone, what.address, what.mobile, what.keeper, what.remark,
                               what.isdefault, folds.name, folds.phone});
}

} // namespace

const listing g_warehouse_list{
    "warehouse", "warehouse", "state = 1",
    "t.id, t.name, t.phone, t.address, t.mobile, t.keeper, e.name, t.remark, t.isdefault, t.added_at",
    "JOIN employee e ON e.company = t.company AND e.id = t.keeper"};

list_filter criteria_of(std::int64_t company, const warehouse_criteria& criteria) {
    list_filter made{company, {}};
    like(made, "name_folded", criteria.name);
    like(made, "phone_folded", criteria.phone);
    if (criteria.keeper != 0) equal(made, "keeper", criteria.keeper);
    like(made, "mobile", criteria.mobile); // no letters in it, so nothing to fold
    return made;
}

warehouse_record warehouse_of(const row& one) {
    warehouse_record made;
    made.id = one.integer(0);
    made.name = one.text(1);
    made.phone = one.text(2);
    made.address = one.text(3);
    made.mobile = one.text(4);
    made.keeper = one.integer(5);
    made.keeper_name = one.text(6);
    made.remark = one.text(7);
    made.isdefault = one.integer(8);
    made.added_at = one.integer(9);
    return made;
}

std::int64_t insert_warehouse(connection& with, std::int64_t company, std::int64_t user,
                              const warehouse_record& what, const warehouse_folds& folds) {
    std::vector<value> bound{company, user, what.added_at};
    bind_details(bound, what, folds);
    std::int64_t id = 0;
    with.query(g_insert, bound, [&](const row& one) { id = one.integer(0); });
    return id;
}

std::int64_t update_warehouse(connection& with, std::int64_t company, const warehouse_record& what,
                              const warehouse_folds& folds) {
    std::vector<value> bound;
    bind_details(bound, what, folds);
    bound.emplace_back(company);
    bound.emplace_back(what.id);
    return with.execute(g_update, bound);
}

std::optional<std::int64_t> keeper_of_warehouse(connection& with, std::int64_t company, std::int64_t id) {
    std::optional<std::int64_t> keeper;
    with.query(g_keeper, {company, id}, [&](const row& one) { keeper = one.integer(0); });
    return keeper;
}

std::vector<warehouse_option> warehouse_options(connection& with, std::int64_t company) {
    std::vector<warehouse_option> all;
    with.query(g_options, {company}, [&](const row& one) {
        all.push_back({one.integer(0), std::string(one.text(1)), one.integer(2), 0});
    });
    return all;
}

std::vector<warehouse_option> warehouse_stock(connection& with, std::int64_t company) {
    std::vector<warehouse_option> all;
    with.query(g_stock, {company, company}, [&](const row& one) {
        all.push_back({one.integer(0), std::string(one.text(1)), one.integer(2), one.integer(3)});
    });
    return all;
}

} // namespace tavrok::store
