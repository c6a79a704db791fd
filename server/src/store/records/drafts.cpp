#include "store/records/drafts.h"

namespace tavrok::store {

namespace {

const statement g_insert{
    "draft_insert",
    "INSERT INTO draft (company, module, type, user_id, session, opened_at, operater, partner, "
    "dept, has_dept, remark, warehouse_out, warehouse_in) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?) "
    "RETURNING id"};
const statement g_count{"drafts_of_session",
                        "SELECT count(*) FROM draft WHERE company = ? AND session = ? AND document IS NULL"};
const statement g_hold{
    "draft_hold",
    "UPDATE draft SET lines = lines WHERE company = ? AND id = ? AND session = ? AND module = ? "
    "RETURNING type, user_id, opened_at, operater, partner, dept, has_dept, remark, lines, warehouse_out, "
    "warehouse_in, document, spoilt"};
const statement g_spoil{
    "draft_spoil", "UPDATE draft SET spoilt = 1 WHERE company = ? AND id = ? AND session = ? AND module = ?"};
const statement g_newest{"draft_newest",
                         "SELECT coalesce(max(id), 0) FROM draft WHERE company = ? AND session = ? AND "
                         "module = ?"};
const statement g_count_line{"draft_count_line",
                             "UPDATE draft SET lines = lines + 1 WHERE company = ? AND id = ?"};
const statement g_count_document_line{
    "draft_count_document_line",
    "UPDATE draft SET lines = lines + 1, document = ? WHERE company = ? AND id = ?"};
const statement g_insert_line{
    "draft_line_insert",
    "INSERT INTO draft_line (company, draft, product, price, amount, warehouse, place, remark, stock, token, "
    "total, sys_amount) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?) RETURNING id"};

/** The latest inbound line of a session that says the same, looked for draft by draft from the newest line
 * backwards: however many lines there are, the one that was written last is found at once. */
std::string latest_like(const std::string& and_also) {
    return "(SELECT max((SELECT l.id FROM draft_line l WHERE l.company = d.company AND l.draft = d.id AND "
           "l.product = ? AND l.price = ? AND l.amount = ? AND l.warehouse = ? AND l.place = ? AND "
           "l.remark = ?" +
           and_also +
           " ORDER BY l.id DESC LIMIT 1)) FROM draft d WHERE d.company = ? AND d.session = ? AND "
           "d.module = 1)";
}

const statement g_announce{"draft_line_announce",
                           "UPDATE draft_line SET stocked = 1 WHERE stocked = 0 AND id = " +
                               latest_like(" AND l.stocked = 0") + " AND company = ?"};
const statement g_latest_like{"draft_line_latest_like", "SELECT coalesce(" + latest_like("") + ", 0)"};
const statement g_lines{"draft_lines",
                        "SELECT id, product, price, amount, warehouse, place, remark, stock, token, stocked, "
                        "total, sys_amount "
                        "FROM draft_line WHERE company = ? AND draft = ? ORDER BY id"};
const statement g_uncount_line{
    "draft_uncount_line",
    "UPDATE draft SET lines = lines - 1 WHERE company = ? AND session = ? AND id = (SELECT draft FROM "
    "draft_line WHERE company = ? AND id = ?)"};
const statement g_delete_line{"draft_line_delete", "DELETE FROM draft_line WHERE company = ? AND id = ?"};
const statement g_delete{"draft_delete", "DELETE FROM draft WHERE company = ? AND id = ?"};
const statement g_delete_old{"draft_delete_old", "DELETE FROM draft WHERE opened_at <= ?"};

std::optional<std::int64_t> optional_at(const row& one, int column) {
    return one.null(column) ? std::nullopt : std::optional(one.integer(column));
}

} // namespace

std::int64_t insert_draft(connection& with, std::int64_t company, const draft_record& what) {
    std::int64_t id = 0;
    with.query(g_insert,
               {company, static_cast<std::int64_t>(what.module), what.type, what.user, what.session,
                what.opened_at, what.operater, or_null(what.partner), what.dept.value_or(0),
                static_cast<std::int64_t>(what.dept.has_value()), what.remark, or_null(what.warehouse_out),
                or_null(what.warehouse_in)},
               [&](const row& one) { id = one.integer(0); });
    return id;
}

std::int64_t drafts_of_session(connection& with, std::int64_t company, std::int64_t session) {
    std::int64_t count = 0;
    with.query(g_count, {company, session}, [&](const row& one) { count = one.integer(0); });
    return count;
}

std::optional<draft_record> hold_draft(connection& with, std::int64_t company, std::int64_t session,
                                       document_module module, std::int64_t id) {
    std::optional<draft_record> found;
    with.query(g_hold, {company, id, session, static_cast<std::int64_t>(module)}, [&](const row& one) {
        draft_record made;
        made.id = id;
        made.module = module;
        made.session = session;
        made.type = one.integer(0);
        made.user = one.integer(1);
        made.opened_at = one.integer(2);
        made.operater = one.integer(3);
        made.partner = optional_at(one, 4);
        if (one.integer(6) != 0) made.dept = one.integer(5);
        made.remark = one.text(7);
        made.lines = one.integer(8);
        made.warehouse_out = optional_at(one, 9);
        made.warehouse_in = optional_at(one, 10);
        made.document = optional_at(one, 11);
        made.spoilt = one.integer(12) != 0;
        found = made;
    });
    return found;
}

void spoil_draft(connection& with, std::int64_t company, std::int64_t session, document_module module,
                 std::int64_t id) {
    with.execute(g_spoil, {company, id, session, static_cast<std::int64_t>(module)});
}

std::int64_t newest_draft(connection& with, std::int64_t company, std::int64_t session,
                          document_module module) {
    std::int64_t id = 0;
    with.query(g_newest, {company, session, static_cast<std::int64_t>(module)},
               [&](const row& one) { id = one.integer(0); });
    return id;
}

std::int64_t insert_draft_line(connection& with, std::int64_t company, std::int64_t draft,
                               const draft_line_record& what) {
    std::int64_t id = 0;
    with.query(g_insert_line,
               {company, draft, what.product, what.price, what.amount, what.warehouse, what.place,
                what.remark, what.stock, what.token, what.total, or_null(what.sys_amount)},
               [&](const row& one) { id = one.integer(0); });
    with.execute(g_count_line, {company, draft});
    return id;
}

bool announce_stock(connection& with, std::int64_t company, std::int64_t session,
                    const draft_line_record& like) {
    return with.execute(g_announce, {like.product, like.price, like.amount, like.warehouse, like.place,
                                     like.remark, company, session, company}) != 0;
}

std::int64_t latest_line_like(connection& with, std::int64_t company, std::int64_t session,
                              const draft_line_record& like) {
    std::int64_t id = 0;
    with.query(
        g_latest_like,
        {like.product, like.price, like.amount, like.warehouse, like.place, like.remark, company, session},
        [&](const row& one) { id = one.integer(0); });
    return id;
}

std::vector<draft_line_record> draft_lines(connection& with, std::int64_t company, std::int64_t draft) {
    std::vector<draft_line_record> lines;
    with.query(g_lines, {company, draft}, [&](const row& one) {
        lines.push_back({one.integer(0),
                         one.integer(1),
                         one.integer(2),
                         one.integer(3),
                         one.integer(4),
                         std::string(one.text(5)),
                         std::string(one.text(6)),
                         one.integer(7),
                         std::string(one.text(8)),
                         one.integer(9) != 0,
                         one.integer(10),
                         optional_at(one, 11),
                         {}});
    });
    return lines;
}

bool delete_draft_line(connection& with, std::int64_t company, std::int64_t session, std::int64_t line) {
    // The draft first, as the closing call does: a line that is becoming one of a document is not taken out.
    return with.execute(g_uncount_line, {company, session, company, line}) != 0 &&
           with.execute(g_delete_line, {company, line}) != 0;
}

void count_document_line(connection& with, std::int64_t company, std::int64_t draft, std::int64_t document) {
    with.execute(g_count_document_line, {document, company, draft});
}

void delete_draft(connection& with, std::int64_t company, std::int64_t id) {
    with.execute(g_delete, {company, id});
}

void delete_old_drafts(connection& with, std::int64_t opened) {
    with.execute(g_delete_old, {opened});
}

} // namespace tavrok::store
