// What a play compares: the rows of a company against its oracle, and the promises that the rows make by
// themselves.
#include <algorithm>

#include "domain/ledger_player.h"

namespace tavrok::test {

namespace {

const store::statement g_version{"test_version", "SELECT data_version FROM company WHERE id = ?"};
const store::statement g_stock{
    "test_stock",
    "SELECT r.id, r.product, r.warehouse, r.price, r.place, r.on_hand, r.claimed, r.holder, r.holds, "
    "r.listed, "
    "r.added_at, (SELECT coalesce(sum(m.amount), 0) FROM movement m WHERE m.company = r.company AND m.stock "
    "= r.id), "
    "(SELECT coalesce(sum(m.value), 0) FROM movement m WHERE m.company = r.company AND m.stock = r.id), "
    "(SELECT coalesce(sum(c.amount), 0) FROM claim c WHERE c.company = r.company AND c.stock = r.id AND "
    "c.state = 1), "
    "(SELECT count(*) FROM claim c WHERE c.company = r.company AND c.stock = r.id AND c.state = 1 AND c.use "
    "= "
    "2) FROM stock r WHERE r.company = ? ORDER BY r.id"};
const store::statement g_claims{
    "test_claims",
    "SELECT token, stock, user_id, use, amount, state FROM claim WHERE company = ? ORDER BY id"};
const store::statement g_documents{
    "test_documents",
    "SELECT id, module, type, state, sn, total, difference FROM document WHERE company = ? ORDER BY id"};
const store::statement g_lines{
    "test_document_lines",
    "SELECT document, stock, coalesce(stock_in, 0), product, warehouse, price, amount, total, "
    "coalesce(sys_amount, 0), place, remark FROM document_line WHERE company = ? ORDER BY document, id"};
const store::statement g_drafts{
    "test_drafts",
    "SELECT d.id, d.session, d.lines, coalesce(l.id, 0), coalesce(l.stocked, 0), coalesce(d.document, 0) "
    "FROM "
    "draft d LEFT JOIN "
    "draft_line l ON l.company = d.company AND l.draft = d.id WHERE d.company = ? ORDER BY d.id, l.id"};

void demand(bool true_of, const std::string& what, std::int64_t id = 0) {
    if (!true_of) throw disagreement(what + (id == 0 ? "" : " " + std::to_string(id)));
}

std::string joined(std::initializer_list<std::int64_t> numbers) {
    std::string text;
    for (const auto one : numbers)
        text += std::to_string(one) + ' ';
    return text;
}

} // namespace

void ledger_player::compare(bool version_too) {
    for (std::size_t i = 0; i < m_firms.size(); ++i)
        if (i == m_acting || one_in(5)) compare(m_firms[i], version_too);
}

void ledger_player::compare(firm& of, bool version_too) {
    m_in.read([&](store::connection& with) {
        with.query(g_version, {of.of.id}, [&](const store::row& one) {
            if (version_too) demand(of.version == one.integer(0), "a failed call changed the data version");
            of.version = one.integer(0);
        });
        compare_stock(with, of);
        compare_claims(with, of);
        compare_documents(with, of);
        compare_drafts(with, of);
    });
}

void ledger_player::compare_stock(store::connection& with, const firm& of) {
    std::size_t rows = 0;
    with.query(g_stock, {of.of.id}, [&](const store::row& one) {
        ++rows;
        const auto id = one.integer(0);
        const auto on_hand = one.integer(5);
        const auto claimed = one.integer(6);
        demand(on_hand >= 0 && claimed >= 0 && claimed <= on_hand, "more is claimed than on hand in row", id);
        demand(one.integer(11) == on_hand, "the movements are not what is on hand in row", id);
        demand(one.integer(12) == on_hand * one.integer(3), "the values are not those of row", id);
        demand(one.integer(13) == claimed, "the claims are not what is claimed of row", id);
        demand(one.integer(14) == one.integer(8), "the holds are not those of row", id);
        demand((one.integer(7) == 0) == (one.integer(8) == 0), "the holder is not that of row", id);
        demand(one.integer(9) == (on_hand > 0 ? 1 : 0), "wrongly listed or not listed: row", id);
        const auto known = of.oracle.stock.find(id);
        demand(known != of.oracle.stock.end(), "nobody expects stock row", id);
        const auto& row = known->second;
        demand(row.product == one.integer(1) && row.warehouse == one.integer(2) &&
                   row.price == one.integer(3) && row.place == one.text(4) && row.added == one.integer(10),
               "other goods than expected in row", id);
        demand(
            row.on_hand == on_hand,
            "expected " + std::to_string(row.on_hand) + ", there are " + std::to_string(on_hand) + " in row",
            id);
    });
    demand(rows == of.oracle.stock.size(), "rows of stock are missing");
}

void ledger_player::compare_claims(store::connection& with, const firm& of) {
    std::size_t live = 0;
    with.query(g_claims, {of.of.id}, [&](const store::row& one) {
        const std::string token(one.text(0));
        const auto known = of.oracle.claims.find(token);
        const auto state = one.integer(5);
        if (known == of.oracle.claims.end()) {
            // a claim whose user is gone may stand until somebody looks at its row; what else has ended says
            // so
            const bool gone = of.oracle.lapsed.contains(token);
            demand(gone ? state == 1 || state == 4 : state == 2 || state == 3,
                   "a claim is in another state than expected: " + token + ", state", state);
            return;
        }
        ++live;
        const auto& claim = known->second;
        demand(state == 1, "a claim that lives has ended: " + token + ", state", state);
        demand(joined({claim.stock, claim.user, static_cast<std::int64_t>(claim.use), claim.amount}) ==
                   joined({one.integer(1), one.integer(2), one.integer(3), one.integer(4)}),
               "another claim than expected: " + token);
    });
    demand(live == of.oracle.claims.size(), "claims are missing");
}

void ledger_player::compare_documents(store::connection& with, const firm& of) {
    std::size_t rows = 0;
    with.query(g_documents, {of.of.id}, [&](const store::row& one) {
        ++rows;
        const auto id = one.integer(0);
        const auto known = of.oracle.documents.find(id);
        demand(known != of.oracle.documents.end(), "nobody expects document", id);
        const auto& document = known->second;
        demand(joined({static_cast<std::int64_t>(document.module), document.type, document.live ? 1 : 2,
                       document.sums.total, document.sums.difference}) ==
                   joined({one.integer(1), one.integer(2), one.integer(3), one.integer(5), one.integer(6)}),
               "another document than expected:", id);
        demand(document.sn == one.text(4),
               "expected the number " + document.sn + ", not " + std::string(one.text(4)) + " of document",
               id);
    });
    demand(rows == of.oracle.documents.size(), "documents are missing");
    compare_lines(with, of);
}

void ledger_player::compare_lines(store::connection& with, const firm& of) {
    std::vector<std::string> expected;
    for (const auto& [id, document] : of.oracle.documents) {
        for (const auto& one : document.lines) {
            const auto& what = one.what;
            expected.push_back(joined({id, what.stock, one.stock_in, what.product, what.warehouse, what.price,
                                       what.amount, what.total, one.sys_amount}) +
                               what.place + ' ' + what.remark);
        }
    }
    std::vector<std::string> found;
    with.query(g_lines, {of.of.id}, [&](const store::row& one) {
        found.push_back(
            joined({one.integer(0), one.integer(1), one.integer(2), one.integer(3), one.integer(4),
                    one.integer(5), one.integer(6), one.integer(7), one.integer(8)}) +
            std::string(one.text(9)) + ' ' + std::string(one.text(10)));
    });
    for (std::size_t i = 0; i < std::min(expected.size(), found.size()); ++i)
        demand(expected[i] == found[i], "expected the line " + expected[i] + ", not " + found[i]);
    demand(expected.size() == found.size(), "lines of documents are missing, or there are too many");
}

void ledger_player::compare_drafts(store::connection& with, const firm& of) {
    std::set<std::int64_t> drafts;
    std::size_t lines = 0;
    std::size_t expected = 0;
    for (const auto& [id, one] : of.oracle.drafts)
        expected += one.lines.size();
    with.query(g_drafts, {of.of.id}, [&](const store::row& one) {
        const auto id = one.integer(0);
        drafts.insert(id);
        const auto known = of.oracle.drafts.find(id);
        demand(known != of.oracle.drafts.end(), "nobody expects draft", id);
        demand(known->second.session == one.integer(1), "another session's draft", id);
        demand(known->second.document == one.integer(5), "another document of draft", id);
        demand(static_cast<std::int64_t>(known->second.lines.size()) + known->second.moved == one.integer(2),
               "the lines are miscounted of draft", id);
        if (one.integer(3) == 0) return;
        ++lines;
        const auto line = known->second.lines.find(one.integer(3));
        demand(line != known->second.lines.end(), "nobody expects the draft's line", one.integer(3));
        demand(line->second.announced == (one.integer(4) == 1), "announced or not: line", one.integer(3));
    });
    demand(drafts.size() == of.oracle.drafts.size() && lines == expected, "drafts or lines are missing");
}

} // namespace tavrok::test
