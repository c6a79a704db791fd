#include "store/records/companies.h"

namespace tavrok::store {

namespace {

const statement g_insert{"company_insert",
                         "INSERT INTO company (name, name_folded, phone, address, is_operator, created_at) "
                         "VALUES (?, ?, ?, ?, ?, ?) RETURNING id"};
const statement g_taken{"company_taken",
                        "SELECT id FROM company WHERE name_folded = ? AND name_folded <> ''"};
const statement g_unfolded{"company_unfolded",
                           "SELECT id, name FROM company WHERE name_folded = '' ORDER BY id"};
const statement g_fold{"company_fold",
                       "UPDATE company SET name_folded = ? WHERE id = ? AND name_folded = ''"};
const statement g_any{"company_any", "SELECT id FROM company LIMIT 1"};
const statement g_operator{"company_operator", "SELECT id FROM company WHERE is_operator = 1"};
const statement g_version{"company_version", "SELECT data_version FROM company WHERE id = ?"};
const statement g_bump{"company_bump", "UPDATE company SET data_version = data_version + 1 WHERE id = ?"};

} // namespace

std::int64_t insert_company(connection& with, const company_record& what) {
    std::int64_t id = 0;
    with.query(g_insert,
               {what.name, what.name_folded, what.phone, what.address, std::int64_t{what.is_operator},
                what.created_at},
               [&](const row& one) { id = one.integer(0); });
    return id;
}

bool company_taken(connection& with, const std::string& name_folded) {
    bool taken = false;
    with.query(g_taken, {name_folded}, [&](const row&) { taken = true; });
    return taken;
}

std::vector<unfolded_company> unfolded_companies(connection& with) {
    std::vector<unfolded_company> all;
    with.query(g_unfolded, {}, [&](const row& one) {
        all.push_back({one.integer(0), std::string(one.text(1))});
    });
    return all;
}

void fold_company_name(connection& with, std::int64_t id, const std::string& folded) {
    with.execute(g_fold, {folded, id});
}

bool any_company(connection& with) {
    bool found = false;
    with.query(g_any, {}, [&](const row&) { found = true; });
    return found;
}

bool operator_exists(connection& with) {
    bool found = false;
    with.query(g_operator, {}, [&](const row&) { found = true; });
    return found;
}

std::int64_t data_version(connection& with, std::int64_t company) {
    std::int64_t version = 0;
    with.query(g_version, {company}, [&](const row& one) { version = one.integer(0); });
    return version;
}

void bump_data_version(connection& with, std::int64_t company) {
    with.execute(g_bump, {company});
}

} // namespace tavrok::store
