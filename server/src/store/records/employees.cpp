#include "store/records/employees.h"

#include <array>

namespace tavrok::store {

namespace {

const statement g_insert{
    "employee_insert",
    "INSERT INTO employee (company, added_by, added_at, name, jobnum, mobile, address, idnum, remark, "
    "isdefault, dimission, name_folded, jobnum_folded, idnum_folded, id) "
    "VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)"};
const statement g_update{
    "employee_update",
    "UPDATE employee SET name = ?, jobnum = ?, mobile = ?, address = ?, idnum = ?, remark = ?, "
    "isdefault = ?, dimission = ?, name_folded = ?, jobnum_folded = ?, idnum_folded = ? "
    "WHERE company = ? AND id = ? AND state = 1"};
const statement g_low_byte{
    "employee_low_byte",
    "SELECT id FROM employee WHERE company = ? AND state = 1 AND (id % 256) = ? ORDER BY id LIMIT 2"};
const statement g_options{"employee_options",
                          "SELECT id, name, jobnum FROM employee WHERE company = ? AND state = 1 "
                          "AND dimission = 2 ORDER BY id"};
const statement g_ids{"employee_ids", "SELECT company, id FROM employee ORDER BY company, id"};

// in the order of employee_mark
const std::array<statement, 3> g_bears{{
    {"employee_bears_jobnum",
     "SELECT id FROM employee WHERE company = ? AND state = 1 AND jobnum_folded = ? AND id <> ?"},
    {"employee_bears_idnum",
     "SELECT id FROM employee WHERE company = ? AND state = 1 AND idnum_folded <> '' AND idnum_folded = ? "
     "AND id <> ?"},
    {"employee_bears_mobile",
     "SELECT id FROM employee WHERE company = ? AND state = 1 AND mobile <> '' AND mobile = ? AND id <> ?"},
}};

/** The values that both writes bind, in their order. */
void bind_texts(std::vector<value>& bound, const employee_record& what, const employee_folds& folds) {
    bound.insert(bound.end(), {what.name, what.jobnum, what.mobile, what.address, what.idnum, what.remark,
                               what.isdefault, what.dimission, folds.name, folds.jobnum, folds.idnum});
}

} // namespace

const listing g_employee_list{"employee", "employee", "state = 1",
                              "t.id, t.name, t.jobnum, t.mobile, t.address, t.idnum, t.remark, t.isdefault, "
                              "t.dimission, t.added_at"};

list_filter criteria_of(std::int64_t company, const employee_patterns& patterns) {
    list_filter made{company, {}};
    like(made, "name_folded", patterns.name);
    like(made, "idnum_folded", patterns.idnum);
    like(made, "jobnum_folded", patterns.jobnum);
    like(made, "mobile", patterns.mobile); // no letters in it, so nothing to fold
    return made;
}

employee_record employee_of(const row& one) {
    employee_record made;
    made.id = one.integer(0);
    made.name = one.text(1);
    made.jobnum = one.text(2);
    made.mobile = one.text(3);
    made.address = one.text(4);
    made.idnum = one.text(5);
    made.remark = one.text(6);
    made.isdefault = one.integer(7);
    made.dimission = one.integer(8);
    made.added_at = one.integer(9);
    return made;
}

void insert_employee(connection& with, std::int64_t company, std::int64_t user, const employee_record& what,
                     const employee_folds& folds) {
    std::vector<value> bound{company, user, what.added_at};
    bind_texts(bound, what, folds);
    bound.emplace_back(what.id);
    with.execute(g_insert, bound);
}

std::int64_t update_employee(connection& with, std::int64_t company, const employee_record& what,
                             const employee_folds& folds) {
    std::vector<value> bound;
    bind_texts(bound, what, folds);
    bound.emplace_back(company);
    bound.emplace_back(what.id);
    return with.execute(g_update, bound);
}

bool employee_bears(connection& with, std::int64_t company, employee_mark mark, const std::string& text,
                    std::int64_t except) {
    bool found = false;
    with.query(g_bears.at(static_cast<std::size_t>(mark)), {company, text, except},
               [&](const row&) { found = true; });
    return found;
}

std::vector<std::int64_t> employees_of_low_byte(connection& with, std::int64_t company, std::int64_t byte) {
    std::vector<std::int64_t> ids;
    with.query(g_low_byte, {company, byte}, [&](const row& one) { ids.push_back(one.integer(0)); });
    return ids;
}

std::vector<employee_option> employee_options(connection& with, std::int64_t company) {
    std::vector<employee_option> all;
    with.query(g_options, {company}, [&](const row& one) {
        all.push_back({one.integer(0), std::string(one.text(1)), std::string(one.text(2))});
    });
    return all;
}

void each_employee_id(connection& with,
                      const std::function<void(std::int64_t company, std::int64_t id)>& each) {
    with.query(g_ids, {}, [&](const row& one) { each(one.integer(0), one.integer(1)); });
}

} // namespace tavrok::store
