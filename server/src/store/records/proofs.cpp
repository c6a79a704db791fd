#include "store/records/proofs.h"

#include <array>

namespace tavrok::store {

namespace {

const statement g_counters{
    "proof_counters",
    "SELECT c.id, t.type, coalesce(k.live, -1), (SELECT count(*) FROM partner p WHERE p.company = c.id "
    "AND p.type = t.type AND p.state = 1) FROM company c "
    "CROSS JOIN (SELECT 1 AS type UNION ALL SELECT 2 UNION ALL SELECT 3) t "
    "LEFT JOIN partner_counter k ON k.company = c.id AND k.type = t.type ORDER BY c.id, t.type"};
const statement g_partners{
    "proof_partners",
    "SELECT company, id, type, added_at, name, phone, linkman, mobile, fax, address, account, bank, remark, "
    "name_folded, address_folded, account_folded, bank_folded, remark_folded FROM partner ORDER BY company, "
    "id"};
const statement g_users{"proof_users",
                        "SELECT company, id, username, username_folded, email, email_folded FROM app_user "
                        "WHERE removed_at IS NULL ORDER BY company, id"};

const statement g_companies{"proof_companies", "SELECT id, name, name_folded FROM company ORDER BY id"};
const statement g_headless{
    "proof_headless",
    "SELECT c.id FROM company c WHERE NOT EXISTS (SELECT 1 FROM app_user u WHERE u.company = c.id AND "
    "u.type = 1 AND u.state = 1 AND u.removed_at IS NULL) ORDER BY c.id"};

/** A series that gives the ids of a table. */
struct numbered_table {
    const char* series;
    const char* table;
};

constexpr auto g_numbered_tables =
    std::to_array<numbered_table>({{"menu", "menu"}, {"employee", "employee"}});

/** A list whose live rows are counted in list_counter. */
struct counted_list {
    const char* table;
    const char* list;
    const char* live;
};

constexpr auto g_counted_lists = std::to_array<counted_list>({
    {"app_user", "user", "removed_at IS NULL"},
    {"employee", "employee", "state = 1"},
    {"warehouse", "warehouse", "state = 1"},
    {"department", "department", "state = 1"},
    {"category", "category", "state = 1"},
    {"product", "product", "state = 1"},
});

struct folded_column {
    const char* table;
    const char* column; // its folded form stands in column_folded
};

constexpr auto g_folded_columns = std::to_array<folded_column>({
    {"app_user", "realname"},
    {"employee", "name"},
    {"employee", "jobnum"},
    {"employee", "idnum"},
    {"warehouse", "name"},
    {"warehouse", "phone"},
    {"product", "name"},
    {"product", "code"},
    {"product", "spec"},
    {"stock", "place"},
    {"stock", "remark"},
    {"document", "remark"},
});

/** Listed stock is of a product, and in a warehouse, that is live. */
constexpr const char* g_stocked_product =
    "p.company = c.company AND p.id = c.product AND (p.state = 1 OR c.listed = 0)";
constexpr const char* g_stocking_warehouse =
    "p.company = c.company AND p.id = c.warehouse AND (p.state = 1 OR c.listed = 0)";

/** What a live node asks of the one above it. */
constexpr const char* g_above =
    "p.company = c.company AND p.id = c.parent AND p.depth = c.depth - 1 AND (p.state = 1 OR c.state = 2)";

struct reference {
    const char* table;
    const char* id; // the column that finds the row again
    const char* parent;
    const char* fits; // c is the row, p the one it names
    const char* only{"1 = 1"};
};

constexpr auto g_references = std::to_array<reference>({
    {"app_user", "id", "company", "p.id = c.company"},
    {"session", "id", "app_user", "p.company = c.company AND p.id = c.user_id AND p.removed_at IS NULL"},
    {"relogin_secret", "user_id", "app_user",
     "p.company = c.company AND p.id = c.user_id AND p.removed_at IS NULL"},
    {"repeat_record", "id", "session", "p.company = c.company AND p.id = c.session"},
    {"audit", "id", "company", "p.id = c.company"},
    {"audit", "id", "app_user", "p.company = c.company AND p.id = c.user_id", "c.user_id <> 0"},
    {"user_grant", "user_id", "app_user",
     "p.company = c.company AND p.id = c.user_id AND p.removed_at IS NULL AND p.type = 2"},
    {"user_grant", "user_id", "menu", "p.id = c.menu_id"},
    {"partner", "id", "company", "p.id = c.company"},
    {"partner", "id", "app_user", "p.company = c.company AND p.id = c.added_by"},
    {"partner_counter", "type", "company", "p.id = c.company"},
    {"employee", "id", "company", "p.id = c.company"},
    {"employee", "id", "app_user", "p.company = c.company AND p.id = c.added_by"},
    {"warehouse", "id", "company", "p.id = c.company"},
    {"warehouse", "id", "app_user", "p.company = c.company AND p.id = c.added_by"},
    {"warehouse", "id", "employee", "p.company = c.company AND p.id = c.keeper"},
    {"department", "id", "company", "p.id = c.company"},
    {"department", "id", "app_user", "p.company = c.company AND p.id = c.added_by"},
    {"department", "id", "department", g_above, "c.parent <> 0"},
    {"category", "id", "company", "p.id = c.company"},
    {"category", "id", "app_user", "p.company = c.company AND p.id = c.added_by"},
    {"category", "id", "category", g_above, "c.parent <> 0"},
    {"product", "id", "company", "p.id = c.company"},
    {"product", "id", "app_user", "p.company = c.company AND p.id = c.added_by"},
    {"product", "id", "category",
     "p.company = c.company AND p.id = c.category AND (p.state = 1 OR c.state = 2)", "c.category <> 0"},
    {"stock", "id", "company", "p.id = c.company"},
    {"stock", "id", "product", g_stocked_product},
    {"stock", "id", "warehouse", g_stocking_warehouse},
    {"document", "id", "company", "p.id = c.company"},
    {"document", "id", "employee", "p.company = c.company AND p.id = c.operater"},
    {"document", "id", "app_user", "p.company = c.company AND p.id = c.writer"},
    {"document", "id", "app_user", "p.company = c.company AND p.id = c.deleted_by",
     "c.deleted_by IS NOT NULL"},
    {"document", "id", "partner", "p.company = c.company AND p.id = c.partner", "c.partner IS NOT NULL"},
    {"document", "id", "department", "p.company = c.company AND p.id = c.dept", "c.dept <> 0"},
    {"document", "id", "warehouse", "p.company = c.company AND p.id = c.warehouse_out",
     "c.warehouse_out IS NOT NULL"},
    {"document", "id", "warehouse", "p.company = c.company AND p.id = c.warehouse_in",
     "c.warehouse_in IS NOT NULL"},
    {"document_line", "id", "product", "p.company = c.company AND p.id = c.product"},
    {"document_line", "id", "warehouse", "p.company = c.company AND p.id = c.warehouse"},
    {"movement", "id", "app_user", "p.company = c.company AND p.id = c.user_id"},
    {"claim", "id", "stock", "p.company = c.company AND p.id = c.stock"},
    {"claim", "id", "app_user", "p.company = c.company AND p.id = c.user_id"},
    {"draft", "id", "app_user", "p.company = c.company AND p.id = c.user_id"},
    {"draft", "id", "employee", "p.company = c.company AND p.id = c.operater"},
    {"draft", "id", "partner", "p.company = c.company AND p.id = c.partner", "c.partner IS NOT NULL"},
    {"draft", "id", "department", "p.company = c.company AND p.id = c.dept", "c.dept <> 0"},
    {"draft", "id", "warehouse", "p.company = c.company AND p.id = c.warehouse_out",
     "c.warehouse_out IS NOT NULL"},
    {"draft", "id", "warehouse", "p.company = c.company AND p.id = c.warehouse_in",
     "c.warehouse_in IS NOT NULL"},
    {"draft", "id", "document", "p.company = c.company AND p.id = c.document AND p.module = c.module",
     "c.document IS NOT NULL"},
    {"draft_line", "id", "draft", "p.company = c.company AND p.id = c.draft"},
    {"draft_line", "id", "product", "p.company = c.company AND p.id = c.product"},
    {"draft_line", "id", "warehouse", "p.company = c.company AND p.id = c.warehouse"},
    {"document_number", "day", "company", "p.id = c.company"},
});

constexpr auto g_tables_with_ids = std::to_array<const char*>(
    {"company", "app_user", "menu", "partner", "employee", "warehouse", "department", "category", "product",
     "stock", "document", "document_line", "draft", "draft_line"});

} // namespace

void each_wrong_counter(connection& with, const std::function<void(const wrong_counter&)>& each) {
    with.query(g_counters, {}, [&](const row& one) {
        const wrong_counter found{one.integer(0), one.integer(1), one.integer(2), one.integer(3)};
        if (found.stored != found.counted) each(found);
    });
}

void each_wrong_list_counter(connection& with, const std::function<void(const wrong_list_counter&)>& each) {
    for (const auto& [table, list, live] : g_counted_lists) {
        const statement search{
            std::string("proof_counter_") + list,
            std::string("SELECT c.id, coalesce(k.live, 0), (SELECT count(*) FROM ") + table +
                " t WHERE t.company = c.id AND " + live +
                ") FROM company c LEFT JOIN list_counter k ON k.company = c.id AND k.list = ? ORDER BY c.id"};
        with.query(search, {std::string(list)}, [&, name = list](const row& one) {
            const wrong_list_counter found{one.integer(0), name, one.integer(1), one.integer(2)};
            if (found.stored != found.counted) each(found);
        });
    }
}

void each_folded_text(connection& with, const std::function<void(const folded_text&)>& each) {
    for (const auto& [table, column] : g_folded_columns) {
        const statement search{std::string("proof_folded_") + table + '_' + column,
                               std::string("SELECT company, id, ") + column + ", " + column +
                                   "_folded FROM " + table + " WHERE " + column + " <> '' OR " + column +
                                   "_folded <> ''"};
        with.query(search, {}, [&, name = table](const row& one) {
            each({name, one.integer(0), one.integer(1), std::string(one.text(2)), std::string(one.text(3))});
        });
    }
}

void each_orphan(connection& with, const std::function<void(const orphan&)>& each) {
    int number = 0; // a table may name another one twice
    for (const auto& [table, id, parent, fits, only] : g_references) {
        const statement search{"proof_reference_" + std::to_string(++number),
                               std::string("SELECT c.company, c.") + id + " FROM " + table + " c WHERE " +
                                   only + " AND NOT EXISTS (SELECT 1 FROM " + parent + " p WHERE " + fits +
                                   ")"};
        with.query(search, {}, [&, child = table, to = parent](const row& one) {
            each({child, to, one.integer(0), one.integer(1)});
        });
    }
}

void each_folded_partner(connection& with,
                         const std::function<void(std::int64_t company, const partner_record& partner,
                                                  const partner_words& folded)>& each) {
    with.query(g_partners, {}, [&](const row& one) {
        partner_record partner{one.integer(1), one.integer(2), one.integer(3), {}};
        int column = 4;
        for (auto& text : partner.texts)
            text = one.text(column++);
        partner_words folded;
        for (auto& word : folded)
            word = one.text(column++);
        each(one.integer(0), partner, folded);
    });
}

void each_folded_user(connection& with, const std::function<void(const folded_user&)>& each) {
    with.query(g_users, {}, [&](const row& one) {
        each({one.integer(0), one.integer(1), std::string(one.text(2)), std::string(one.text(3)),
              std::string(one.text(4)), std::string(one.text(5))});
    });
}

void each_company_name(connection& with, const std::function<void(const company_name&)>& each) {
    with.query(g_companies, {}, [&](const row& one) {
        each({one.integer(0), std::string(one.text(1)), std::string(one.text(2))});
    });
}

void each_headless_company(connection& with, const std::function<void(std::int64_t company)>& each) {
    with.query(g_headless, {}, [&](const row& one) { each(one.integer(0)); });
}

void each_late_series(connection& with, const std::function<void(const late_series&)>& each) {
    for (const auto& [series, table] : g_numbered_tables) {
        const statement search{std::string("proof_series_") + series,
                               std::string("SELECT coalesce((SELECT last FROM number_series WHERE name = ?), "
                                           "-1), coalesce((SELECT max(id) FROM ") +
                                   table + "), 0)"};
        with.query(search, {std::string(series)}, [&, name = series](const row& one) {
            const late_series found{name, one.integer(0), one.integer(1)};
            if (found.last < found.greatest) each(found);
        });
    }
}

void each_row_with_id(connection& with, std::int64_t id,
                      const std::function<void(const std::string& table)>& each) {
    for (const std::string table : g_tables_with_ids) {
        const statement search{"proof_id_" + table, "SELECT id FROM " + table + " WHERE id = ?"};
        with.query(search, {id}, [&](const row&) { each(table); });
    }
}

} // namespace tavrok::store
