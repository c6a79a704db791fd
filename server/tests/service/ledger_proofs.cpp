#include "ledger_proofs.h"

#include <map>
#include <set>

namespace tavrok::test {

namespace {

/** Gives the ids of the rows that break a rule. */
struct proof {
    const char* rule;
    const char* sql;
};

constexpr proof g_proofs[] = {
    {"on hand is what the movements come to",
     "SELECT s.id FROM stock s WHERE s.on_hand <> "
     "(SELECT CAST(coalesce(sum(m.amount), 0) AS BIGINT) FROM movement m WHERE m.stock = s.id)"},
    {"on hand is what the live documents come to",
     "SELECT s.id FROM stock s WHERE s.on_hand <> (SELECT CAST(coalesce(sum(CASE WHEN d.module = 1 "
     "THEN l.amount ELSE -l.amount END), 0) AS BIGINT) FROM document_line l JOIN document d ON d.id = "
     "l.document "
     "WHERE l.stock = s.id AND d.state = 1)"},
    {"claimed is what the active claims by quantity come to",
     "SELECT s.id FROM stock s WHERE s.claimed <> (SELECT CAST(coalesce(sum(c.amount), 0) AS BIGINT) "
     "FROM claim c WHERE c.stock = s.id AND c.state = 1 AND c.use <> 2)"},
    {"holds are the active claims on the whole row",
     "SELECT s.id FROM stock s WHERE s.holds <> (SELECT count(*) FROM claim c WHERE c.stock = s.id "
     "AND c.state = 1 AND c.use = 2)"},
    {"all holds of a row are its holder's",
     "SELECT c.id FROM claim c JOIN stock s ON s.id = c.stock WHERE c.state = 1 AND c.use = 2 "
     "AND c.user_id <> s.holder"},
    {"a row of stock comes from one inbound line",
     "SELECT s.id FROM stock s WHERE (SELECT count(*) FROM document_line l JOIN document d ON d.id = "
     "l.document "
     "WHERE l.stock = s.id AND d.module = 1) <> 1"},
    {"a document has lines and is what they come to",
     "SELECT d.id FROM document d WHERE d.total <> (SELECT CAST(coalesce(sum(l.total), -1) AS BIGINT) "
     "FROM document_line l WHERE l.document = d.id)"},
    {"a line is its amount times its price", "SELECT id FROM document_line WHERE total <> amount * price"},
    {"a line of a live document moved its stock once, of a deleted one there and back",
     "SELECT l.id FROM document_line l JOIN document d ON d.id = l.document WHERE "
     "(SELECT count(*) FROM movement m WHERE m.line = l.id) <> d.state OR "
     "(SELECT CAST(coalesce(sum(m.amount), 0) AS BIGINT) FROM movement m WHERE m.line = l.id) <> "
     "(CASE WHEN d.state = 2 THEN 0 WHEN d.module = 1 THEN l.amount ELSE -l.amount END)"},
    {"a movement is of its line's stock, document and value",
     "SELECT m.id FROM movement m JOIN document_line l ON l.id = m.line JOIN stock s ON s.id = m.stock "
     "WHERE m.stock <> l.stock OR m.document <> l.document OR m.value <> m.amount * s.price"},
    {"a document has a number", "SELECT id FROM document WHERE sn IS NULL"},
    {"a draft counts its lines",
     "SELECT d.id FROM draft d WHERE d.lines <> (SELECT count(*) FROM draft_line l WHERE l.draft = d.id)"},
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

std::string ledger_faults(store::database& where) {
    std::string found;
    store::read_now(where, [&](store::connection& with) {
        found.clear();
        for (const auto& one : g_proofs) {
            with.query({"", one.sql}, {}, [&](const store::row& broken) {
                found += std::string("not so: ") + one.rule + ": " + std::to_string(broken.integer(0)) + "\n";
            });
        }
        found += number_faults(with);
    });
    return found;
}

} // namespace tavrok::test
