#include "ledger_proofs.h"

#include <gtest/gtest.h>

#include "documents_site.h"

namespace tavrok::test {

namespace {

/** What is done to books that are right, and the proof that must not hold any more. */
struct damage {
    const char* sql;
    const char* rule;
};

constexpr damage g_damages[] = {
    {"UPDATE stock SET on_hand = on_hand + 1 WHERE on_hand > 1", "on hand is what the movements come to"},
    {"UPDATE stock SET on_hand = on_hand + 1 WHERE on_hand > 1",
     "on hand is what the live documents come to"},
    {"UPDATE stock SET claimed = 1 WHERE on_hand > 1", "claimed is what the active claims"},
    {"UPDATE stock SET holds = 1, holder = 1 WHERE on_hand > 1", "holds are the active claims"},
    {"UPDATE document_line SET stock_in = stock WHERE stock_in IS NOT NULL",
     "a row of stock comes from one line"},
    {"UPDATE document_line SET stock_in = NULL", "the goods of a transfer went"},
    {"UPDATE document_line SET place = 'B-2' WHERE stock_in IS NOT NULL", "the goods of a transfer went"},
    {"UPDATE document SET warehouse_in = warehouse_out, warehouse_out = warehouse_in WHERE module = 4",
     "the goods of a transfer went"},
    {"UPDATE document SET difference = 7 WHERE module = 3", "a document has lines and is what they come to"},
    {"UPDATE document SET total = total + 1 WHERE module = 4",
     "a document has lines and is what they come to"},
    {"UPDATE document_line SET total = -250 WHERE sys_amount IS NOT NULL", "a line is its amount times"},
    {"UPDATE document_line SET total = total + 1 WHERE sys_amount IS NULL", "a line is its amount times"},
    {"UPDATE document_line SET sys_amount = NULL, amount = 1, total = 0 WHERE sys_amount IS NOT NULL",
     "a stocktaking, and nothing else, tells"},
    {"DELETE FROM movement WHERE stock IN (SELECT stock_in FROM document_line)",
     "a line of a live document moved"},
    {"UPDATE document SET state = 2, deleted_at = 1, deleted_by = writer WHERE module = 3",
     "a line of a live document moved"},
    {"UPDATE movement SET value = value + 1", "a movement is of its line's stock"},
    {"UPDATE movement SET document = (SELECT min(id) FROM document)", "a movement is of its line's stock"},
    {"UPDATE document SET sn = NULL WHERE module = 3", "a document has a number"},
    {"UPDATE draft SET lines = lines + 1", "a draft counts its lines"},
    {"UPDATE draft SET remark = 'another'", "a draft that has become a document"},
    {"UPDATE document_number SET last = 2 WHERE kind = 'PD'", "gaps in PD"},
    {"UPDATE document_number SET last = 2 WHERE kind = 'DB'", "gaps in DB"},
};

class proofs_of_the_books : public testing::TestWithParam<std::string> {
protected:
    void SetUp() override { SKIP_WITHOUT(GetParam()); }
};

/** Takes away, until the transaction is undone, what keeps the ledger as it is. */
void allow_damage(store::connection& with, const std::string& engine) {
    if (engine == "sqlite") {
        with.execute({"", "DROP TRIGGER movement_unchanged"}, {});
        with.execute({"", "DROP TRIGGER movement_kept"}, {});
    } else {
        with.execute({"", "ALTER TABLE movement DISABLE TRIGGER movement_kept"}, {});
    }
}

} // namespace

TEST_P(proofs_of_the_books, each_finds_what_it_is_for) {
    documents_site site(GetParam(), 1);
    const auto service = site.start();
    auto world = site.furnish(service->port());
    const auto row = world.stock("10", "1.00", "10.00");
    world.taking(row);
    world.transfer(row);
    ASSERT_EQ(service->stop(), 0);
    ASSERT_EQ(site.faults(), "");
    for (const auto& one : g_damages) {
        SCOPED_TRACE(one.sql);
        struct undone {};
        try {
            store::write_now(*site.database(), [&](store::connection& with) {
                allow_damage(with, GetParam());
                with.execute({"", one.sql}, {});
                EXPECT_NE(ledger_faults(with).find(one.rule), std::string::npos) << ledger_faults(with);
                throw undone{};
            });
        } catch (const undone&) {
        }
    }
    EXPECT_EQ(site.faults(), "");
}

INSTANTIATE_TEST_SUITE_P(engine, proofs_of_the_books, testing::ValuesIn(engines()),
                         [](const auto& chosen) { return chosen.param; });

} // namespace tavrok::test
