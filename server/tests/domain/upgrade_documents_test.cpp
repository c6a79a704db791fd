#include "domain/check.h"
#include "domain/scene.h"
#include "store/meter.h"
#include "store/migrations.h"
#include "store/postgresql/connection.h"
#include "store/sqlite/connection.h"
#include "store/sqlite/files.h"

namespace tavrok::domain {
namespace {

constexpr std::size_t g_before = 8; // steps, of which the last knows inbound and outbound documents alone

/** A database as it was before stocktakings and transfers, with a received, an issued and a deleted document,
 * a claim and a draft, opened by this program. */
class upgrade_documents : public test::on_engine {
protected:
    void SetUp() override {
        on_engine::SetUp();
        if (IsSkipped()) return;
        m_old = std::make_unique<test::scratch_database>(GetParam());
        const auto session = bare();
        store::migrate(*session, std::span(store::known_migrations()).first(g_before), 100);
        session->in_transaction([](store::connection& with) {
            for (const auto* sql :
                 {"INSERT INTO company (id, name, name_folded, is_operator, created_at) VALUES (1001, '甲', "
                  "'甲', 1, 1)",
                  "INSERT INTO app_user (company, id, username, username_folded, realname, realname_folded, "
                  "password_hash, type, state, mobile, email, email_folded, registered_at) VALUES "
                  "(1001, 1001, 'boss', 'boss', '', '', 'h', 1, 1, '', '', '', 1)",
                  "INSERT INTO partner_counter (company, type, live) VALUES (1001, 1, 0), (1001, 2, 0), "
                  "(1001, 3, 0)",
                  "INSERT INTO list_counter (company, list, live) VALUES (1001, 'user', 1), (1001, "
                  "'employee', 1), "
                  "(1001, 'warehouse', 1), (1001, 'product', 1)",
                  "UPDATE number_series SET last = 1089 WHERE name = 'employee'",
                  "INSERT INTO employee (company, id, added_by, added_at, name, jobnum, mobile, address, "
                  "idnum, "
                  "remark, isdefault, dimission, name_folded, jobnum_folded, idnum_folded) VALUES "
                  "(1001, 1089, 1001, 1, '员', '1', '', '', '', '', 2, 2, '员', '1', '')",
                  "INSERT INTO product (company, id, added_by, added_at, name, code, spec, category, price, "
                  "name_folded, code_folded, spec_folded) VALUES (1001, 1001, 1001, 1, '货', '', '', 0, 250, "
                  "'货', '', '')",
                  "INSERT INTO warehouse (company, id, added_by, added_at, name, phone, address, mobile, "
                  "keeper, "
                  "remark, isdefault, name_folded, phone_folded) VALUES (1001, 1001, 1001, 1, '仓', '', '', "
                  "'', 1089, "
                  "'', 0, '仓', '')",
                  "INSERT INTO stock (company, id, product, warehouse, place, price, remark, added_at, "
                  "on_hand, "
                  "claimed, listed, place_folded, remark_folded) VALUES (1001, 1001, 1001, 1001, 'a', 250, "
                  "'', 1, 6, 2, "
                  "1, 'a', ''), (1001, 1002, 1001, 1001, 'a', 250, '', 1, 0, 0, 0, 'a', '')",
                  "INSERT INTO document (company, id, module, type, sn, added_at, operater, writer, "
                  "has_dept, total, "
                  "remark, remark_folded, state, deleted_at, deleted_by) VALUES "
                  "(1001, 1001, 1, 7, 'QR20260528-0001', 1780000000, 1089, 1001, 0, 2500, '', '', 1, NULL, "
                  "NULL), "
                  "(1001, 1003, 2, 6, 'QC20260528-0001', 1780000000, 1089, 1001, 0, 1000, '', '', 1, NULL, "
                  "NULL), "
                  "(1001, 1004, 1, 7, 'QR20260528-0002', 1780000000, 1089, 1001, 0, 750, '', '', 2, "
                  "1780000009, 1001)",
                  "INSERT INTO document_number (company, kind, day, last) VALUES (1001, 'QR', 20260528, 2), "
                  "(1001, 'QC', 20260528, 1)",
                  "INSERT INTO document_line (company, id, document, product, price, amount, total, "
                  "warehouse, place, "
                  "remark, stock) VALUES (1001, 1001, 1001, 1001, 250, 10, 2500, 1001, 'a', '', 1001), "
                  "(1001, 1002, 1003, 1001, 250, 4, 1000, 1001, 'a', '', 1001), "
                  "(1001, 1005, 1004, 1001, 250, 3, 750, 1001, 'a', '', 1002)",
                  "INSERT INTO movement (company, id, stock, amount, value, document, line, user_id, "
                  "moved_at) VALUES "
                  "(1001, 1, 1001, 10, 2500, 1001, 1001, 1001, 1), (1001, 2, 1001, -4, -1000, 1003, 1002, "
                  "1001, 1), "
                  "(1001, 3, 1002, 3, 750, 1004, 1005, 1001, 1), (1001, 4, 1002, -3, -750, 1004, 1005, 1001, "
                  "1)",
                  "INSERT INTO claim (company, id, token, stock, user_id, use, amount, taken_at) VALUES "
                  "(1001, 1, 'Labcdefghijklmnopqrstuvwxyz', 1001, 1001, 3, 2, 1)",
                  "INSERT INTO draft (company, id, module, type, user_id, session, opened_at, operater, "
                  "has_dept, "
                  "remark, lines) VALUES (1001, 1006, 1, 7, 1001, 1, 1780000000, 1089, 0, 'd', 1)",
                  "INSERT INTO draft_line (company, id, draft, product, price, amount, warehouse, place, "
                  "remark) VALUES "
                  "(1001, 1007, 1006, 1001, 250, 3, 1001, 'a', 'r')"})
                with.execute({"", sql}, {});
        });
        give_away(*session);
    }
    /** Ids that were given, and whose rows are gone, are not given again. */
    void give_away(store::schema_session& session) {
        session.in_transaction([&](store::connection& with) {
            for (const std::string table : {"document", "document_line", "draft", "draft_line"}) {
                if (GetParam() == "sqlite") {
                    with.execute({"", "UPDATE sqlite_sequence SET seq = 2000 WHERE name = '" + table + "'"},
                                 {});
                } else {
                    with.query({"", "SELECT setval(pg_get_serial_sequence('" + table + "', 'id'), 2000)"}, {},
                               [](const store::row&) {});
                }
            }
        });
    }
    std::int64_t number(const std::string& sql) {
        std::int64_t found = -1;
        store::read_now(**m_old, [&](store::connection& with) {
            with.query({"", sql}, {}, [&](const store::row& one) { found = one.integer(0); });
        });
        return found;
    }
    bool accepts(const std::string& sql) {
        try {
            store::write_now(**m_old, [&](store::connection& with) { with.execute({"", sql}, {}); });
        } catch (const store::error&) {
            return false;
        }
        return true;
    }
    /** A document that fits but for what is told. */
    bool accepts_document(const std::string& module, const std::string& total, const std::string& difference,
                          const std::string& out, const std::string& in) {
        return accepts(
            "INSERT INTO document (company, module, type, added_at, operater, writer, has_dept, remark, "
            "remark_folded, total, difference, warehouse_out, warehouse_in) SELECT 1001, " +
            module + ", 1, 1, 1089, 1001, 0, '', '', " + total + ", " + difference + ", " + out + ", " + in +
            " FROM company");
    }
    bool accepts_line(const std::string& amount, const std::string& total, const std::string& sys) {
        return accepts(
            "INSERT INTO document_line (company, document, product, price, amount, total, warehouse, place, "
            "remark, stock, sys_amount) VALUES (1001, 1001, 1001, 250, " +
            amount + ", " + total + ", 1001, 'a', '', 1001, " + sys + ")");
    }

    std::unique_ptr<test::scratch_database> m_old;

private:
    std::unique_ptr<store::schema_session> bare() {
        auto figures = std::make_shared<store::meter>();
        if (GetParam() != "sqlite") return std::make_unique<store::pg_connection>(m_old->options(), figures);
        const auto& path = m_old->options().location;
        store::create_private_file(path);
        return std::make_unique<store::sqlite_connection>(store::sqlite_connection::setup{
            path, store::sqlite_connection::access::write, std::chrono::milliseconds(100), figures, {}});
    }
};
ON_EVERY_ENGINE(upgrade_documents);

TEST_P(upgrade_documents, keeps_every_row_as_it_was) {
    EXPECT_EQ(number("SELECT count(*) FROM document WHERE difference = 0 AND warehouse_out IS NULL AND "
                     "warehouse_in IS NULL"),
              3);
    EXPECT_EQ(number("SELECT total FROM document WHERE id = 1003 AND module = 2 AND sn = 'QC20260528-0001'"),
              1000);
    EXPECT_EQ(number("SELECT deleted_at FROM document WHERE id = 1004 AND state = 2 AND deleted_by = 1001"),
              1780000009);
    EXPECT_EQ(number("SELECT count(*) FROM document_line WHERE sys_amount IS NULL AND stock_in IS NULL"), 3);
    EXPECT_EQ(number("SELECT sum(value) FROM movement"), 1500);
    EXPECT_EQ(number("SELECT id FROM movement WHERE line = 1002 AND document = 1003"), 2);
    EXPECT_EQ(number("SELECT lines FROM draft WHERE id = 1006 AND remark = 'd' AND document IS NULL"), 1);
    EXPECT_EQ(number("SELECT total FROM draft_line WHERE id = 1007 AND draft = 1006 AND stocked = 0"), 750)
        << "amount times price";
    store::read_now(**m_old, [](store::connection& with) {
        for (const auto& one : check(with))
            ADD_FAILURE() << one.rule << ": " << one.text;
    });
}

TEST_P(upgrade_documents, leaves_nothing_of_the_old_tables) {
    const auto tables =
        GetParam() == "sqlite"
            ? "SELECT count(*) FROM sqlite_schema WHERE sql GLOB '*old_*' OR name GLOB 'old_*'"
            : "SELECT count(*) FROM pg_class WHERE starts_with(relname, 'old_')";
    EXPECT_EQ(number(tables), 0);
    const auto indexes = GetParam() == "sqlite"
                             ? "SELECT count(*) FROM sqlite_schema WHERE type = 'index' AND name IN "
                             : "SELECT count(*) FROM pg_class WHERE relkind = 'i' AND relname IN ";
    EXPECT_EQ(number(std::string(indexes) +
                     "('document_page', 'document_line_of', 'movement_of_stock', 'movement_of_line', "
                     "'draft_of_session', 'draft_age', 'draft_line_of')"),
              7);
}

TEST_P(upgrade_documents, gives_no_id_twice) {
    ASSERT_TRUE(accepts_document("1", "0", "0", "NULL", "NULL"));
    EXPECT_EQ(number("SELECT max(id) FROM document"), 2001);
    ASSERT_TRUE(accepts_line("1", "250", "NULL"));
    EXPECT_EQ(number("SELECT max(id) FROM document_line"), 2001);
    ASSERT_TRUE(
        accepts("INSERT INTO draft (company, module, type, user_id, session, opened_at, operater, has_dept, "
                "remark) VALUES (1001, 3, 1, 1001, 1, 1, 1089, 0, '')"));
    EXPECT_EQ(number("SELECT max(id) FROM draft"), 2001);
    ASSERT_TRUE(accepts(
        "INSERT INTO draft_line (company, draft, product, price, amount, warehouse, place, remark, total) "
        "VALUES (1001, 2001, 1001, 1, -1, 1001, '', '', -1)"));
    EXPECT_EQ(number("SELECT max(id) FROM draft_line"), 2001);
    ASSERT_TRUE(accepts("DELETE FROM draft WHERE id = 2001"));
    EXPECT_EQ(number("SELECT count(*) FROM draft_line"), 1) << "lines go with their draft";
}

TEST_P(upgrade_documents, keeps_guarding_the_tables) {
    ASSERT_TRUE(accepts(
        "INSERT INTO warehouse (company, id, added_by, added_at, name, phone, address, mobile, keeper, "
        "remark, isdefault, name_folded, phone_folded) VALUES (1001, 1002, 1001, 1, '二', '', '', '', "
        "1089, '', 0, '二', '')"));
    EXPECT_TRUE(accepts_document("3", "-100", "-1", "NULL", "NULL"));
    EXPECT_TRUE(accepts_document("4", "100", "0", "1001", "1002"));
    EXPECT_FALSE(accepts_document("5", "0", "0", "NULL", "NULL"));
    EXPECT_FALSE(accepts_document("1", "-1", "0", "NULL", "NULL"));
    EXPECT_FALSE(accepts_document("2", "0", "1", "NULL", "NULL"));
    EXPECT_FALSE(accepts_document("4", "0", "0", "1001", "1001"));
    EXPECT_FALSE(accepts_document("4", "0", "0", "1001", "NULL"));
    EXPECT_FALSE(accepts_document("3", "0", "0", "1001", "1002"));
    EXPECT_FALSE(accepts_document("4", "0", "0", "1001", "4711")) << "no such warehouse";
    EXPECT_TRUE(accepts_line("-5", "-1200", "5"));
    EXPECT_FALSE(accepts_line("-6", "-1500", "5"));
    EXPECT_FALSE(accepts_line("-1", "-250", "NULL"));
    EXPECT_FALSE(accepts_line("100000000", "1", "NULL"));
    EXPECT_FALSE(
        accepts("INSERT INTO movement (company, id, stock, amount, value, document, line, user_id, moved_at) "
                "VALUES (1001, 99, 1001, 1, 1, 1001, 4711, 1001, 1)"))
        << "no such line";
    EXPECT_FALSE(accepts("UPDATE document SET sn = 'QR20260528-0001' WHERE id = 1003"))
        << "a number is given once";
    EXPECT_FALSE(accepts("UPDATE draft SET document = 1001")) << "only transfers are made line by line";
}

} // namespace
} // namespace tavrok::domain
