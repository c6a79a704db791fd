#include "store/records/documents.h"

#include <limits>

namespace tavrok::store {

namespace {

const statement g_insert{"document_insert",
                         "INSERT INTO document (company, module, type, added_at, operater, writer, partner, "
                         "dept, has_dept, total, remark, remark_folded, difference, warehouse_out, "
                         "warehouse_in) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?) RETURNING id"};
const statement g_grow{"document_grow",
                       "UPDATE document SET total = total + ? WHERE company = ? AND id = ? AND module = 4 "
                       "AND state = 1 AND total <= ?"};
const statement g_insert_line{"document_line_insert",
                              "INSERT INTO document_line (company, document, product, price, amount, total, "
                              "warehouse, place, remark, stock, sys_amount, stock_in) "
                              "VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?) RETURNING id"};
const statement g_next{
    "document_number_next",
    "INSERT INTO document_number (company, kind, day, last) VALUES (?, ?, ?, 1) ON CONFLICT "
    "(company, kind, day) DO UPDATE SET last = document_number.last + 1 RETURNING last"};
const statement g_number{"document_number_give", "UPDATE document SET sn = ? WHERE company = ? AND id = ?"};
const statement g_type{"document_type",
                       "SELECT type FROM document WHERE company = ? AND id = ? AND module = ? AND state = 1"};
const statement g_delete{"document_delete",
                         "UPDATE document SET state = 2, deleted_at = ?, deleted_by = ? "
                         "WHERE company = ? AND id = ? AND module = ? AND state = 1"};
const statement g_lines{
    "document_lines",
    "SELECT l.id, l.document, l.product, p.name, p.code, p.spec, p.category, coalesce(g.name, ''), l.price, "
    "l.amount, l.total, l.warehouse, w.name, l.place, l.remark, l.stock, d.added_at, "
    "coalesce(l.sys_amount, 0), coalesce(l.stock_in, 0) FROM document_line l "
    "JOIN document d ON d.company = l.company AND d.id = l.document "
    "JOIN product p ON p.company = l.company AND p.id = l.product "
    "JOIN warehouse w ON w.company = l.company AND w.id = l.warehouse "
    "LEFT JOIN category g ON g.company = p.company AND g.id = p.category "
    "WHERE l.company = ? AND l.document = ? ORDER BY l.id"};
const statement g_retired{
    "document_retired_goods",
    "SELECT 1 FROM document_line l JOIN product p ON p.company = l.company AND p.id = l.product "
    "JOIN warehouse w ON w.company = l.company AND w.id = l.warehouse "
    "WHERE l.company = ? AND l.document = ? AND (p.state <> 1 OR w.state <> 1) LIMIT 1"};

} // namespace

const listing g_document_list{
    "document", "document", "state = 1",
    "t.id, t.type, coalesce(t.sn, ''), t.added_at, t.operater, e.name, t.writer, u.realname, t.partner, "
    "coalesce(p.name, "
    "''), "
    "t.has_dept, t.dept, coalesce(d.name, ''), t.total, t.remark, t.difference, t.warehouse_out, "
    "coalesce(o.name, ''), t.warehouse_in, coalesce(i.name, '')",
    "JOIN employee e ON e.company = t.company AND e.id = t.operater "
    "JOIN app_user u ON u.company = t.company AND u.id = t.writer "
    "LEFT JOIN partner p ON p.company = t.company AND p.id = t.partner "
    "LEFT JOIN department d ON d.company = t.company AND d.id = t.dept AND t.has_dept = 1 "
    "LEFT JOIN warehouse o ON o.company = t.company AND o.id = t.warehouse_out "
    "LEFT JOIN warehouse i ON i.company = t.company AND i.id = t.warehouse_in"};

document_record document_of(const row& one) {
    document_record made;
    made.id = one.integer(0);
    made.type = one.integer(1);
    made.sn = one.text(2);
    made.added_at = one.integer(3);
    made.operater = one.integer(4);
    made.operater_name = one.text(5);
    made.writer = one.integer(6);
    made.writer_name = one.text(7);
    if (!one.null(8)) made.partner = one.integer(8);
    made.partner_name = one.text(9);
    if (one.integer(10) != 0) made.dept = one.integer(11);
    made.dept_name = one.text(12);
    made.total = one.integer(13);
    made.remark = one.text(14);
    made.difference = one.integer(15);
    if (!one.null(16)) made.warehouse_out = one.integer(16);
    made.warehouse_out_name = one.text(17);
    if (!one.null(18)) made.warehouse_in = one.integer(18);
    made.warehouse_in_name = one.text(19);
    return made;
}

void of_kind(list_filter& filter, document_module module, std::int64_t type) {
    equal(filter, "module", static_cast<std::int64_t>(module));
    equal(filter, "type", type);
}

std::int64_t insert_document(connection& with, std::int64_t company, const draft_record& draft,
                             const document_sums& sums, const std::string& remark_folded, std::int64_t now) {
    std::int64_t id = 0;
    with.query(g_insert,
               {company, static_cast<std::int64_t>(draft.module), draft.type, now, draft.operater, draft.user,
                or_null(draft.partner), draft.dept.value_or(0),
                static_cast<std::int64_t>(draft.dept.has_value()), sums.total, draft.remark, remark_folded,
                sums.difference, or_null(draft.warehouse_out), or_null(draft.warehouse_in)},
               [&](const row& one) { id = one.integer(0); });
    return id;
}

std::int64_t insert_document_line(connection& with, std::int64_t company, std::int64_t document,
                                  const draft_line_record& what) {
    std::int64_t id = 0;
    with.query(g_insert_line,
               {company, document, what.product, what.price, what.amount, what.total, what.warehouse,
                what.place, what.remark, what.stock, or_null(what.sys_amount), or_null(what.stock_in)},
               [&](const row& one) { id = one.integer(0); });
    return id;
}

bool grow_transfer(connection& with, std::int64_t company, std::int64_t document, std::int64_t by) {
    return with.execute(g_grow, {by, company, document, std::numeric_limits<std::int64_t>::max() - by}) != 0;
}

std::int64_t next_document_number(connection& with, std::int64_t company, const std::string& kind,
                                  std::int64_t day) {
    std::int64_t number = 0;
    with.query(g_next, {company, kind, day}, [&](const row& one) { number = one.integer(0); });
    return number;
}

void number_document(connection& with, std::int64_t company, std::int64_t document, const std::string& sn) {
    with.execute(g_number, {sn, company, document});
}

std::optional<std::int64_t> document_type(connection& with, std::int64_t company, document_module module,
                                          std::int64_t id) {
    std::optional<std::int64_t> type;
    with.query(g_type, {company, id, static_cast<std::int64_t>(module)},
               [&](const row& one) { type = one.integer(0); });
    return type;
}

bool delete_document(connection& with, std::int64_t company, document_module module, std::int64_t id,
                     std::int64_t user, std::int64_t now) {
    return with.execute(g_delete, {now, user, company, id, static_cast<std::int64_t>(module)}) != 0;
}

std::vector<document_line_record> document_lines(connection& with, std::int64_t company,
                                                 std::int64_t document) {
    std::vector<document_line_record> lines;
    with.query(g_lines, {company, document}, [&](const row& one) {
        lines.push_back({one.integer(0), one.integer(1), one.integer(2), std::string(one.text(3)),
                         std::string(one.text(4)), std::string(one.text(5)), one.integer(6),
                         std::string(one.text(7)), one.integer(8), one.integer(9), one.integer(10),
                         one.integer(11), std::string(one.text(12)), std::string(one.text(13)),
                         std::string(one.text(14)), one.integer(15), one.integer(16), one.integer(17),
                         one.integer(18)});
    });
    return lines;
}

bool names_retired_goods(connection& with, std::int64_t company, std::int64_t document) {
    bool found = false;
    with.query(g_retired, {company, document}, [&](const row&) { found = true; });
    return found;
}

} // namespace tavrok::store
