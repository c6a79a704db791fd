#include "domain/ledger_damage.h"

namespace tavrok::domain {
namespace {

using test::g_now;

/** Beside what ledger_damage has: stocktaking 1005 (line 1006 gains 3 of stock 1001, line 1007 loses 1 of
 * stock 1002) and 1006 (deleted, line 1008), transfer 1007 (line 1009 moves 4 of stock 1001 to stock 1004)
 * and 1008 (deleted, line 1010 moved 2 to stock 1005). Movements 8 to 17 in that order. Drafts 1008 and 1009
 * are those of the transfers. */
class ledger_counts : public test::ledger_damage {
protected:
    void SetUp() override {
        ledger_damage::SetUp();
        if (IsSkipped()) return;
        in->write([this](store::connection& with) {
            count(with, {counted(1001, 6, 3, 250, 700), counted(1002, 5, -1, 100, -100)});
            count(with, {counted(1001, 9, 1, 250, 200)});
            remove_document(with, boss, document_module::stocktaking, 1006, g_now);
            move(with, 4);
            move(with, 2);
            remove_document(with, boss, document_module::transfer, 1008, g_now);
        });
    }
    std::string second_warehouse() const { return std::to_string(of.warehouses[1]); }
    std::string first_warehouse() const { return std::to_string(of.warehouses[0]); }

private:
    document_header header() const {
        document_header made;
        made.type = 1;
        made.operater = std::to_string(of.employee);
        return made;
    }
    document_line goods(std::int64_t stock, std::int64_t amount, std::int64_t price,
                        std::int64_t total) const {
        document_line line;
        line.product = of.products.at(static_cast<std::size_t>(stock - 1001));
        line.warehouse = of.warehouses[0];
        line.place = "B-2";
        line.stock = stock;
        line.amount = amount;
        line.price = price;
        line.total = total;
        return line;
    }
    taking_line counted(std::int64_t stock, std::int64_t sys, std::int64_t difference, std::int64_t price,
                        std::int64_t total) const {
        return {goods(stock, difference, price, total), sys, sys + difference};
    }
    void count(store::connection& with, const std::vector<taking_line>& lines) {
        const auto draft = open_draft(with, boss, document_module::stocktaking, header(), g_now).id;
        document_sums sums;
        for (const auto& line : lines) {
            add_taking_line(with, boss, draft, line);
            sums.difference += line.what.amount;
            sums.total += line.what.total;
        }
        ASSERT_EQ(close_taking(with, boss, draft, sums, g_now), "");
    }
    void move(store::connection& with, std::int64_t amount) {
        auto told = header();
        told.warehouse_out = of.warehouses[0];
        told.warehouse_in = of.warehouses[1];
        const auto draft = open_draft(with, boss, document_module::transfer, told, g_now).id;
        add_transfer_line(with, boss, draft, goods(1001, amount, 999, 999 * amount), g_now);
    }
};
ON_EVERY_ENGINE(ledger_counts);

TEST_P(ledger_counts, has_nothing_against_a_sound_database) {
    EXPECT_EQ(in->number("SELECT count(*) FROM movement"), 17);
    EXPECT_EQ(in->number("SELECT max(id) FROM stock"), 1005);
    for (const auto& one : proof_with({}))
        ADD_FAILURE() << one.rule << ": " << one.text;
}

TEST_P(ledger_counts, names_what_breaks_a_stocktaking) {
    expect_found({
        {{"UPDATE document SET difference = difference + 1 WHERE id = 1005"},
         "document",
         "document 1005 tells another gain or loss",
         1},
        {{"UPDATE document SET difference = 1 WHERE id = 1001"},
         "document",
         "document 1001 tells another gain",
         1},
        {{"UPDATE document SET total = total + 100 WHERE id = 1005"},
         "document",
         "document 1005 tells another total",
         1},
        {{"UPDATE document_line SET amount = amount + 1, total = 1000 WHERE id = 1006",
          "UPDATE document SET difference = difference + 1, total = total + 300 WHERE id = 1005"},
         "ledger",
         "document_line 1006 moved another quantity",
         1},
        {{"UPDATE document_line SET total = 750 WHERE id = 1006",
          "UPDATE document SET total = 650 WHERE id = 1005"},
         "document",
         "document_line 1006 tells another money",
         1},
        {{"UPDATE document_line SET sys_amount = NULL WHERE id = 1006"},
         "document",
         "document_line 1006 was counted",
         1},
        {{"UPDATE document_line SET sys_amount = 1 WHERE id = 1001"},
         "document",
         "document_line 1001 was counted",
         1},
        {{"UPDATE document_line SET sys_amount = 100000000 WHERE id = 1006"},
         "document",
         "document_line 1006 tells a count or a price that is out of range",
         1},
        {{"UPDATE document_line SET sys_amount = 0 WHERE id = 1007"},
         "document",
         "document_line 1007 tells a count",
         1},
        {{"UPDATE document_line SET place = 'x' WHERE id = 1006"},
         "document",
         "document_line 1006 tells other goods",
         1},
        {{"UPDATE movement SET amount = -3, value = -750 WHERE id = 8"},
         "ledger",
         "document_line 1006 moved another quantity",
         3},
        {{"DELETE FROM movement WHERE id = 11"}, "ledger", "document_line 1008 was not undone", 5},
        {{"UPDATE document_number SET last = 3 WHERE kind = 'PD'"}, "number", "the series stands at 3", 1},
        {{"UPDATE document SET partner = " + std::to_string(of.partners[0]) + " WHERE id = 1005"},
         "document",
         "1005 has a partner",
         1},
        {{"UPDATE document SET type = 2 WHERE id = 1006"},
         "document",
         "document 1006 is of no known kind",
         2},
    });
}

TEST_P(ledger_counts, names_what_breaks_a_transfer) {
    expect_found({
        {{"UPDATE document_line SET stock_in = NULL WHERE id = 1009"},
         "document",
         "document_line 1009 has a destination and is of no transfer",
         2},
        {{"UPDATE document_line SET stock_in = 1003 WHERE id = 1001"},
         "ledger",
         "stock 1003 was brought in by more than one line",
         4},
        {{"UPDATE document_line SET stock_in = 4711 WHERE id = 1009"},
         "reference",
         "document_line 1009 names a row of stock, its destination",
         3},
        {{"UPDATE document_line SET warehouse = " + second_warehouse() + " WHERE id = 1009"},
         "document",
         "document_line 1009 takes from another warehouse",
         2},
        {{"UPDATE document SET warehouse_in = warehouse_out WHERE id = 1007"},
         "document",
         "document 1007 is a transfer within a warehouse",
         2},
        {{"UPDATE document SET warehouse_in = NULL WHERE id = 1007"},
         "document",
         "1007 is a transfer without",
         1},
        {{"UPDATE document SET warehouse_out = NULL WHERE id = 1007"},
         "document",
         "1007 is a transfer without",
         1},
        {{"UPDATE document SET warehouse_out = " + first_warehouse() + " WHERE id = 1001"},
         "document",
         "1001 is a transfer without two warehouses, or has some",
         1},
        {{"UPDATE stock SET price = price + 1 WHERE id = 1004"},
         "document",
         "document_line 1009 tells other goods",
         3},
        {{"UPDATE stock SET place = 'x', place_folded = 'x' WHERE id = 1004"},
         "document",
         "document_line 1009 tells other goods, or another place, than the stock row that it made",
         1},
        {{"DELETE FROM movement WHERE id = 13"},
         "ledger",
         "document_line 1009 has no movements at its destination",
         2},
        {{"DELETE FROM movement WHERE id = 12"}, "ledger", "document_line 1009 has no movements", 3},
        {{"UPDATE movement SET amount = 4, value = 1000 WHERE id = 12",
          "UPDATE movement SET amount = -4, value = -1000 WHERE id = 13"},
         "ledger",
         "document_line 1009 moved another quantity",
         6},
        {{"UPDATE document SET state = 1, deleted_at = NULL, deleted_by = NULL WHERE id = 1008"},
         "ledger",
         "document_line 1010 has more or fewer movements",
         4},
        {{"UPDATE draft SET lines = 5 WHERE id = 1008"},
         "draft",
         "draft 1008 tells another number of lines",
         1},
        {{"UPDATE draft SET document = 4711 WHERE id = 1008"},
         "reference",
         "draft 1008 names a row of document",
         2},
        {{"UPDATE draft SET document = 1005 WHERE id = 1008"},
         "reference",
         "draft 1008 names a row of document",
         2},
        {{"UPDATE draft SET warehouse_out = 4711 WHERE id = 1008"},
         "reference",
         "draft 1008 names a row of warehouse",
         1},
        {{"UPDATE draft SET warehouse_in = 4711 WHERE id = 1008"},
         "reference",
         "draft 1008 names a row of warehouse",
         1},
        {{"UPDATE document SET warehouse_out = 4711 WHERE id = 1007"},
         "reference",
         "document 1007 names a row of warehouse",
         2},
        {{"UPDATE document SET warehouse_in = 4711 WHERE id = 1007"},
         "reference",
         "document 1007 names a row of warehouse",
         2},
    });
}

} // namespace
} // namespace tavrok::domain
