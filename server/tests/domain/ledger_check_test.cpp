#include "domain/document_numbers.h"
#include "domain/ledger_damage.h"

namespace tavrok::domain {
namespace {

using test::g_now;

class ledger_check : public test::ledger_damage {};
ON_EVERY_ENGINE(ledger_check);

TEST_P(ledger_check, has_nothing_against_a_sound_database) {
    EXPECT_EQ(in->number("SELECT count(*) FROM movement"), 7);
    EXPECT_EQ(in->number("SELECT count(DISTINCT state) FROM claim"), 4);
    EXPECT_EQ(in->number("SELECT count(*) FROM draft_line"), 1);
    for (const auto& one : proof_with({}))
        ADD_FAILURE() << one.rule << ": " << one.text;
}

TEST_P(ledger_check, names_what_breaks_the_ledger) {
    const std::string stock = "company " + std::to_string(of.id) + ", stock 1001";
    expect_found({
        {{"UPDATE stock SET on_hand = on_hand + 1 WHERE id = 1001"}, "ledger", stock.c_str(), 2},
        {{"UPDATE stock SET price = price + 1 WHERE id = 1003"},
         "document",
         "document_line 1003 tells another price",
         3},
        {{"UPDATE stock SET on_hand = -1, listed = 0, claimed = 0 WHERE id = 1001"},
         "ledger",
         "stock 1001 has less than nothing",
         5},
        {{"UPDATE stock SET listed = 0 WHERE id = 1002"}, "ledger", "stock 1002 is listed", 1},
        {{"UPDATE stock SET listed = 1 WHERE id = 1003"}, "ledger", "stock 1003 is listed", 1},
        {{"UPDATE movement SET amount = amount + 1 WHERE id = 1"}, "ledger", "stock 1001 has another", 3},
        {{"UPDATE movement SET value = value + 1 WHERE id = 1"}, "ledger", "stock 1001 is worth", 2},
        {{"UPDATE movement SET value = value + 1 WHERE id = 3",
          "UPDATE movement SET value = value - 1 WHERE id = 4"},
         "ledger",
         "movement 3 has another value",
         2},
        {{"DELETE FROM movement WHERE id = 5"}, "ledger", "document_line 1004 has no movements", 3},
        {{"DELETE FROM movement WHERE id = 4"}, "ledger", "document_line 1003 has more or fewer", 5},
        {{"INSERT INTO movement SELECT company, 90, stock, amount, value, document, line, user_id, moved_at "
          "FROM movement WHERE id = 1"},
         "ledger",
         "document_line 1001 has more or fewer",
         4},
        {{"UPDATE movement SET amount = 8, value = 264 WHERE id = 3",
          "UPDATE movement SET amount = -8, value = -264 WHERE id = 4"},
         "ledger",
         "document_line 1003 was not undone",
         1},
        {{"UPDATE movement SET stock = 1001, value = 1750 WHERE id = 3",
          "UPDATE movement SET stock = 1001, value = -1750 WHERE id = 4"},
         "ledger",
         "movement 3 names another stock row",
         4},
        {{"UPDATE movement SET document = 1003 WHERE id = 1"},
         "ledger",
         "movement 1 names another document",
         1},
        {{"UPDATE movement SET line = 1005 WHERE id = 5"},
         "ledger",
         "document_line 1004 has no movements",
         6},
        // as many lines are named as there are: one of them leads nowhere
        {{"UPDATE movement SET line = 4711 WHERE id = 5"},
         "ledger",
         "document_line 1004 has no movements",
         2},
        {{"INSERT INTO stock SELECT company, 1090, product, warehouse, place, price, remark, added_at, 0, 0, "
          "0, "
          "0, 0, place_folded, remark_folded FROM stock WHERE id = 1001"},
         "ledger",
         "stock 1090 has no movements",
         1},
        {{"UPDATE document_line SET stock = 1001, product = (SELECT product FROM stock WHERE id = 1001), "
          "price "
          "= 250, amount = 0, total = 0 WHERE id = 1002",
          "DELETE FROM movement WHERE line = 1002"},
         "ledger",
         "stock 1001 was brought in by more",
         5},
    });
}

TEST_P(ledger_check, names_what_breaks_the_claims) {
    const std::string claim =
        "INSERT INTO claim (company, id, token, stock, user_id, use, amount, state, "
        "taken_at) SELECT company, 90, 'Lother', stock, ";
    expect_found({
        {{"UPDATE stock SET claimed = claimed + 1 WHERE id = 1001"}, "claim", "stock 1001 tells another", 1},
        {{"UPDATE stock SET claimed = 0 WHERE id = 1001"}, "claim", "stock 1001 tells another", 1},
        {{"UPDATE claim SET amount = 7 WHERE id = 2", "UPDATE stock SET claimed = 7 WHERE id = 1001"},
         "claim",
         "stock 1001 has more claimed",
         1},
        {{"UPDATE claim SET amount = amount + 1 WHERE id = 2"},
         "claim",
         "stock 1001 tells another claimed",
         1},
        {{"UPDATE claim SET state = 3, ended_at = 1 WHERE id = 2"}, "claim", "stock 1001 tells another", 1},
        {{"UPDATE claim SET state = 1, ended_at = NULL WHERE id = 5"},
         "claim",
         "stock 1001 tells another",
         1},
        {{"UPDATE stock SET holds = 2 WHERE id = 1002"},
         "claim",
         "stock 1002 tells another number of holds",
         1},
        {{"UPDATE stock SET holder = 1004 WHERE id = 1002"}, "claim", "stock 1002 tells another holder", 1},
        {{"UPDATE stock SET holder = 0, holds = 0 WHERE id = 1002"}, "claim", "tells another holder", 2},
        {{"UPDATE claim SET user_id = 1004 WHERE id = 3"}, "claim", "stock 1002 tells another holder", 1},
        {{claim + "1004, 2, 0, 1, taken_at FROM claim WHERE id = 3",
          "UPDATE stock SET holds = 2 WHERE id = 1002"},
         "claim",
         "stock 1002 is held by more than one user",
         1},
        {{"UPDATE claim SET ended_at = 1 WHERE id = 2"}, "claim", "claim 2 is active and has an end", 1},
        {{"UPDATE claim SET ended_at = NULL WHERE id = 1"}, "claim", "claim 1 has ended", 1},
        {{"UPDATE claim SET ended_at = NULL WHERE id = 4"}, "claim", "claim 4 has ended", 1},
        {{"UPDATE claim SET ended_at = NULL WHERE id = 5"}, "claim", "claim 5 has ended", 1},
        {{"UPDATE claim SET state = 9 WHERE id = 4"}, "claim", "claim 4 is in no known state", 1},
        {{"UPDATE claim SET amount = -1 WHERE id = 4"}, "claim", "claim 4 claims less than nothing", 1},
        {{"UPDATE claim SET amount = 1 WHERE id = 3"}, "claim", "claim 3 holds its row as a whole", 1},
        {{"UPDATE claim SET token = '7' WHERE id = 4"}, "claim", "claim 4 has a token", 1},
    });
}

TEST_P(ledger_check, names_what_breaks_documents_and_drafts) {
    const auto client = std::to_string(of.partners[1]);
    const auto supplier = std::to_string(of.partners[0]);
    expect_found({
        {{"UPDATE document SET total = total + 1 WHERE id = 1001"},
         "document",
         "document 1001 tells another",
         1},
        {{"UPDATE document_line SET total = total + 1 WHERE id = 1005"},
         "document",
         "document_line 1005 tells another total",
         2},
        {{"UPDATE document_line SET amount = amount + 1, total = total + price WHERE id = 1004",
          "UPDATE document SET total = (SELECT total FROM document_line l WHERE l.id = 1004) WHERE id = "
          "1003"},
         "ledger",
         "document_line 1004 moved another quantity",
         1},
        {{"DELETE FROM document_line WHERE id = 1005"}, "document", "document 1004 has no lines", 3},
        {{"DELETE FROM document_line WHERE id = 1003", "DELETE FROM movement WHERE line = 1003"},
         "document",
         "document 1002 has no lines",
         2},
        {{"UPDATE document_line SET product = product + 1 WHERE id = 1004"},
         "document",
         "document_line 1004 tells other goods",
         1},
        {{"UPDATE document_line SET warehouse = warehouse + 1 WHERE id = 1001"},
         "document",
         "document_line 1001 tells other goods",
         1},
        {{"UPDATE document_line SET place = 'x' WHERE id = 1004"}, "document", "document_line 1004 tells", 1},
        {{"UPDATE document_line SET price = 251, total = 2510 WHERE id = 1001",
          "UPDATE document SET total = total + 10 WHERE id = 1001"},
         "document",
         "document_line 1001 tells another price",
         1},
        {{"UPDATE document SET state = 9 WHERE id = 1001"},
         "document",
         "document 1001 is in no known state",
         1},
        {{"UPDATE document SET state = 2, deleted_at = 1, deleted_by = writer WHERE id = 1003"},
         "ledger",
         "document_line 1004 has more or fewer movements",
         3},
        {{"UPDATE document SET state = 1, deleted_at = NULL, deleted_by = NULL WHERE id = 1004"},
         "ledger",
         "document_line 1005 has more or fewer movements",
         2},
        {{"UPDATE document SET deleted_at = 1 WHERE id = 1001"}, "document", "document 1001 is live and", 1},
        {{"UPDATE document SET deleted_by = writer WHERE id = 1001"}, "document", "1001 is live and", 1},
        {{"UPDATE document SET deleted_at = NULL WHERE id = 1002"},
         "document",
         "document 1002 is deleted",
         1},
        {{"UPDATE document SET deleted_by = NULL WHERE id = 1002"},
         "document",
         "document 1002 is deleted",
         1},
        {{"UPDATE document SET partner = " + client + " WHERE id = 1001"},
         "document",
         "1001 has a partner",
         1},
        {{"UPDATE document SET partner = " + supplier + " WHERE id = 1003"},
         "document",
         "1003 has a partner",
         1},
        {{"UPDATE document SET partner = NULL WHERE id = 1001"}, "document", "1001 has a partner", 1},
        {{"UPDATE document SET partner = " + supplier + " WHERE id = 1004"},
         "document",
         "1004 has a partner",
         1},
        {{"UPDATE document SET has_dept = 1 WHERE id = 1001"}, "document", "1001 has a partner", 1},
        {{"UPDATE document SET has_dept = 0 WHERE id = 1002"}, "document", "1002 has a partner", 1},
        {{"UPDATE document SET type = 7 WHERE id = 1004"},
         "document",
         "document 1004 is of no known kind",
         2},
        {{"UPDATE draft SET lines = 2"}, "draft", "tells another number of lines", 1},
        {{"DELETE FROM draft_line"}, "draft", "tells another number of lines", 1},
    });
}

/** The number of a document of today. */
std::string number(const char* prefix, std::int64_t sequence) {
    return "'" + document_number(prefix, day_of(g_now), sequence) + "'";
}

TEST_P(ledger_check, names_what_breaks_the_numbers) {
    const auto day = std::to_string(day_of(g_now));
    const auto next_kind = "UPDATE document SET type = 6, partner = NULL, has_dept = 0 WHERE id = 1003";
    expect_found({
        {{"UPDATE document SET sn = NULL WHERE id = 1001"}, "number", "document 1001 has the number \"\"", 2},
        {{"UPDATE document SET sn = 'x' WHERE id = 1001"}, "number", "document 1001 has the number \"x\"", 2},
        {{"UPDATE document SET sn = " + number("XS", 1) + " WHERE id = 1001"},
         "number",
         "none of its kind",
         2},
        {{"UPDATE document SET sn = replace(sn, '-000', '-0') WHERE id = 1001"},
         "number",
         "document 1001",
         2},
        {{"UPDATE document SET sn = replace(sn, '-0001', '-00o1') WHERE id = 1001"}, "number", "00o1", 2},
        {{"UPDATE document SET sn = '" + document_number("CG", 20'200'102, 1) + "' WHERE id = 1001"},
         "number",
         "document 1001 has the number CG20200102-0001, which is of another day",
         3},
        {{"UPDATE document SET sn = " + number("CG", 2) + " WHERE id = 1001",
          "UPDATE document_number SET last = 2 WHERE kind = 'CG'"},
         "number",
         "nothing has the number 1, the next is of document 1001",
         1},
        // two documents of one kind with one number, and with a hole between them
        {{next_kind, "UPDATE document SET sn = " + number("QC", 1) + " WHERE id = 1003",
          "DELETE FROM document_number WHERE kind = 'XS'"},
         "number",
         "1 is given twice, the second time to document 1004",
         1},
        {{next_kind, "UPDATE document SET sn = " + number("QC", 3) + " WHERE id = 1003",
          "DELETE FROM document_number WHERE kind = 'XS'",
          "UPDATE document_number SET last = 3 WHERE kind = 'QC'"},
         "number",
         "nothing has the number 2, the next is of document 1003",
         1},
        {{"UPDATE document_number SET last = 2 WHERE kind = 'CG'"}, "number", "the series stands at 2", 1},
        {{"UPDATE document_number SET last = 0 WHERE kind = 'CG'"}, "number", "the series stands at 0", 1},
        {{"DELETE FROM document_number WHERE kind = 'CG'"}, "number", "document 1001 has a number of it", 1},
        {{"INSERT INTO document_number (company, kind, day, last) VALUES (" + std::to_string(of.id) +
          ", 'JC', " + day + ", 1)"},
         "number",
         "no document has one",
         1},
    });
}

} // namespace
} // namespace tavrok::domain
