#include "ledger_proofs.h"

#include <map>
#include <set>

namespace tavrok::test {

namespace {

/** Gives the ids of the rows that break a rule. */
struct proof {
    const char* rule;
    std::string sql;
};

/** What the lines say that they move: one row each, a transfer's two. */
const std::string g_shifts =
    "WITH shift AS (SELECT l.id AS line, l.document, l.stock, d.state, CASE WHEN d.module IN (1, 3) "
    "THEN l.amount ELSE -l.amount END AS amount FROM document_line l JOIN document d ON d.id = l.document "
    "UNION ALL SELECT l.id, l.document, l.stock_in, d.state, l.amount FROM document_line l "
    "JOIN document d ON d.id = l.document WHERE l.stock_in IS NOT NULL) ";

const proof g_proofs[] = {
    {"on hand is what the movements come to",
     "SELECT s.id FROM stock s WHERE s.on_hand <> "
     "(SELECT CAST(coalesce(sum(m.amount), 0) AS BIGINT) FROM movement m WHERE m.stock = s.id)"},
    {"on hand is what the live documents come to",
     g_shifts +
         "SELECT s.id FROM stock s LEFT JOIN (SELECT stock, sum(amount) AS moved FROM shift WHERE state = 1 "
         "GROUP BY stock) t ON t.stock = s.id WHERE s.on_hand <> coalesce(t.moved, 0)"},
    {"claimed is what the active claims by quantity come to",
     "SELECT s.id FROM stock s WHERE s.claimed <> (SELECT CAST(coalesce(sum(c.amount), 0) AS BIGINT) "
     "FROM claim c WHERE c.stock = s.id AND c.state = 1 AND c.use <> 2)"},
    {"holds are the active claims on the whole row",
     "SELECT s.id FROM stock s WHERE s.holds <> (SELECT count(*) FROM claim c WHERE c.stock = s.id "
     "AND c.state = 1 AND c.use = 2)"},
    {"all holds of a row are its holder's",
     "SELECT c.id FROM claim c JOIN stock s ON s.id = c.stock WHERE c.state = 1 AND c.use = 2 "
     "AND c.user_id <> s.holder"},
    {"a row of stock comes from one line, inbound or of a transfer",
     "SELECT s.id FROM stock s LEFT JOIN (SELECT CASE WHEN d.module = 1 THEN l.stock ELSE l.stock_in END AS "
     "made "
     "FROM document_line l JOIN document d ON d.id = l.document WHERE d.module IN (1, 4)) t ON t.made = s.id "
     "GROUP BY s.id HAVING count(t.made) <> 1"},
    {"the goods of a transfer went from its one warehouse to its other, as they were",
     "SELECT l.id FROM document_line l JOIN document d ON d.id = l.document JOIN stock f ON f.id = l.stock "
     "LEFT JOIN stock t ON t.id = l.stock_in WHERE (d.module = 4 AND (t.id IS NULL OR "
     "t.warehouse <> d.warehouse_in OR f.warehouse <> d.warehouse_out OR t.product <> f.product OR "
     "t.price <> f.price OR t.place <> l.place)) OR (d.module <> 4 AND l.stock_in IS NOT NULL)"},
    {"a document has lines and is what they come to",
     "SELECT d.id FROM document d LEFT JOIN (SELECT document, sum(total) AS total, sum(amount) AS amount "
     "FROM document_line GROUP BY document) t ON t.document = d.id WHERE t.document IS NULL OR "
     "d.total <> t.total OR d.difference <> CASE WHEN d.module = 3 THEN t.amount ELSE 0 END"},
    {"a line is its amount times its price, of a stocktaking truncated to whole money",
     "SELECT l.id FROM document_line l JOIN document d ON d.id = l.document WHERE l.total <> "
     "CASE WHEN d.module = 3 THEN l.amount * l.price / 100 * 100 ELSE l.amount * l.price END"},
    {"a stocktaking, and nothing else, tells what the system held",
     "SELECT l.id FROM document_line l JOIN document d ON d.id = l.document WHERE "
     "(d.module = 3) <> (l.sys_amount IS NOT NULL)"},
    {"a line of a live document moved its stock once, of a deleted one there and back",
     g_shifts + "SELECT s.line FROM shift s LEFT JOIN movement m ON m.line = s.line AND m.stock = s.stock "
                "GROUP BY s.line, s.stock, s.state, s.amount HAVING count(m.id) <> s.state OR "
                "coalesce(sum(m.amount), 0) <> CASE WHEN s.state = 2 THEN 0 ELSE s.amount END"},
    {"a movement is of its line's stock, document and value",
     g_shifts +
         "SELECT m.id FROM movement m JOIN stock s ON s.id = m.stock LEFT JOIN shift f ON f.line = m.line "
         "AND f.stock = m.stock AND f.document = m.document WHERE f.line IS NULL OR "
         "m.value <> m.amount * s.price"},
    {"a document has a number", "SELECT id FROM document WHERE sn IS NULL"},
    {"a draft counts its lines, a transfer's those of its document",
     "SELECT d.id FROM draft d WHERE d.lines <> CASE WHEN d.document IS NULL "
     "THEN (SELECT count(*) FROM draft_line l WHERE l.draft = d.id) "
     "ELSE (SELECT count(*) FROM document_line l WHERE l.document = d.document) END"},
    {"a draft that has become a document is its header",
     "SELECT d.id FROM draft d JOIN document t ON t.id = d.document WHERE d.module <> 4 OR t.module <> 4 OR "
     "t.remark <> d.remark OR t.writer <> d.user_id OR t.warehouse_out <> d.warehouse_out OR "
     "t.warehouse_in <> d.warehouse_in"},
    {"a line of a draft has its draft",
     "SELECT l.id FROM draft_line l LEFT JOIN draft d ON d.id = l.draft WHERE d.id IS NULL"},
};

using series = std::pair<std::int64_t, std::string>; /**< company, kind and day as the number begins */

/** Numbers run from 1 to the last one given, deleted documents among them. */
std::string number_faults(store::connection& with) {
    std::map<series, std::set<std::int64_t>> given;
    std::string found;
    with.query({"", "SELECT company, sn, id FROM document WHERE sn IS NOT NULL"}, {},
               [&](const store::row& one) {
                   const std::string sn(one.text(1));
                   const auto dash = sn.find('-');
                   const auto number = dash == std::string::npos ? 0 : std::stoll(sn.substr(dash + 1));
                   if (!given[{one.integer(0), sn.substr(0, dash)}].insert(number).second)
                       found += "twice: " + sn + "\n";
               });
    std::map<series, std::int64_t> last;
    with.query({"", "SELECT company, kind, day, last FROM document_number"}, {}, [&](const store::row& one) {
        last[{one.integer(0), std::string(one.text(1)) + std::to_string(one.integer(2))}] = one.integer(3);
    });
    for (const auto& [which, numbers] : given) {
        const auto count = static_cast<std::int64_t>(numbers.size());
        if (*numbers.begin() != 1 || *numbers.rbegin() != count || last[which] != count) {
            found += "gaps in " + which.second + "\n";
        }
    }
    return last.size() == given.size() ? found : found + "a series without documents\n";
}

} // namespace

std::string ledger_faults(store::connection& with) {
    std::string found;
    for (const auto& one : g_proofs) {
        with.query({"", one.sql}, {}, [&](const store::row& broken) {
            found += std::string("not so: ") + one.rule + ": " + std::to_string(broken.integer(0)) + "\n";
        });
    }
    return found + number_faults(with);
}

std::string ledger_faults(store::database& where) {
    std::string found;
    store::read_now(where, [&](store::connection& with) { found = ledger_faults(with); });
    return found;
}

} // namespace tavrok::test
