#include "domain/ledger_damage.h"
#include "domain/products.h"
#include "domain/warehouses.h"

namespace tavrok::domain {
namespace {

using test::damage;
using test::g_now;

class ledger_references : public test::ledger_damage {};
ON_EVERY_ENGINE(ledger_references);

/** Each row that names another one, and the texts that searches look at. */
TEST_P(ledger_references, names_what_leads_nowhere_and_what_cannot_be_found) {
    const auto names = [](const char* table, const char* column, const char* id, const char* words,
                          std::size_t findings) {
        return damage{{std::string("UPDATE ") + table + " SET " + column + " = 4711 WHERE id = " + id},
                      "reference",
                      words,
                      findings};
    };
    expect_found({
        names("stock", "company", "1003", "company 4711, stock 1003 names a row of company", 7),
        names("stock", "product", "1003", "stock 1003 names a row of product", 2),
        names("stock", "warehouse", "1003", "stock 1003 names a row of warehouse", 2),
        names("document", "company", "1004", "document 1004 names a row of company", 8),
        names("document", "operater", "1001", "document 1001 names a row of employee", 1),
        names("document", "writer", "1001", "document 1001 names a row of app_user", 1),
        names("document", "deleted_by", "1002", "document 1002 names a row of app_user", 1),
        names("document", "partner", "1001", "document 1001 names a row of partner", 1),
        names("document", "dept", "1002", "document 1002 names a row of department", 1),
        names("document_line", "document", "1005", "document_line 1005 names a row of document", 4),
        names("document_line", "product", "1005", "document_line 1005 names a row of product", 2),
        names("document_line", "warehouse", "1005", "document_line 1005 names a row of warehouse", 2),
        names("document_line", "stock", "1005", "document_line 1005 names a row of stock", 4),
        names("movement", "stock", "7", "movement 7 names a row of stock", 10),
        names("movement", "line", "7", "movement 7 names a row of document_line", 4),
        names("movement", "user_id", "7", "movement 7 names a row of app_user", 1),
        names("claim", "stock", "4", "claim 4 names a row of stock", 1),
        names("claim", "user_id", "4", "claim 4 names a row of app_user", 1),
        names("draft", "user_id", "1005", "draft 1005 names a row of app_user", 1),
        names("draft", "operater", "1005", "draft 1005 names a row of employee", 1),
        names("draft", "partner", "1005", "draft 1005 names a row of partner", 1),
        names("draft", "dept", "1005", "draft 1005 names a row of department", 1),
        names("draft_line", "draft", "(SELECT max(id) FROM draft_line)", "names a row of draft", 2),
        names("draft_line", "product", "(SELECT max(id) FROM draft_line)", "names a row of product", 1),
        names("draft_line", "warehouse", "(SELECT max(id) FROM draft_line)", "names a row of warehouse", 1),
        {{"UPDATE document_number SET company = 4711 WHERE kind = 'CG'"},
         "reference",
         "company 4711, document_number",
         3},
        {{"UPDATE product SET state = 2, retired_at = 1 WHERE id = (SELECT product FROM stock WHERE id = "
          "1001)",
          "UPDATE list_counter SET live = live - 1 WHERE list = 'product'"},
         "reference",
         "stock 1001 names a row of product",
         1},
        {{"UPDATE warehouse SET state = 2, retired_at = 1 WHERE id = (SELECT warehouse FROM stock WHERE id = "
          "1002)",
          "UPDATE list_counter SET live = live - 1 WHERE list = 'warehouse'"},
         "reference",
         "stock 1002 names a row of warehouse",
         2},
        {{"UPDATE stock SET place_folded = 'x' WHERE id = 1001"}, "folded", "stock 1001", 1},
        {{"UPDATE stock SET remark = '' WHERE id = 1001"}, "folded", "stock 1001", 1},
        {{"UPDATE stock SET remark_folded = '' WHERE id = 1001"}, "folded", "stock 1001", 1},
        {{"UPDATE document SET remark = 'x' WHERE id = 1003"}, "folded", "document 1003", 1},
        {{"UPDATE stock SET id = 7 WHERE id = 1003"}, "id", "stock has a row", 5},
        {{"UPDATE document SET id = 7 WHERE id = 1001"}, "id", "document has a row", 4},
        {{"UPDATE document_line SET id = 7 WHERE id = 1004"}, "id", "document_line has a row", 3},
        {{"UPDATE draft SET id = 7"}, "id", "draft has a row", 3},
        {{"UPDATE draft_line SET id = 7"}, "id", "draft_line has a row", 1},
    });
}

TEST_P(ledger_references, has_nothing_against_retired_goods_of_which_nothing_is_left) {
    in->write([&](store::connection& with) { remove_product(with, boss, of.products[2], g_now); });
    in->write([&](store::connection& with) { remove_warehouse(with, boss, of.warehouses[1], g_now); });
    EXPECT_TRUE(proof_with({}).empty());
}

} // namespace
} // namespace tavrok::domain
