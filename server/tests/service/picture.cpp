#include "picture.h"

#include <sstream>

namespace tavrok::test {

namespace {

/** Remark, module, state, id; then remark, amount, stock, announcement or arrival, and system's figure of a
 * line, null without one. A transfer's draft that has become a document is that document. */
constexpr const char* g_drafts =
    "SELECT d.remark, d.module, 0, d.id, l.remark, l.amount, l.stock, l.stocked, coalesce(l.sys_amount, 0) "
    "FROM draft d LEFT JOIN draft_line l ON l.draft = d.id "
    "WHERE d.user_id = ? AND d.document IS NULL ORDER BY d.id, l.id";
constexpr const char* g_documents =
    "SELECT d.remark, d.module, d.state, d.id, l.remark, l.amount, l.stock, CASE WHEN d.module = 1 THEN 1 "
    "WHEN d.module = 4 THEN (SELECT count(*) FROM movement m JOIN stock s ON s.id = m.stock "
    "WHERE m.company = l.company AND m.line = l.id AND m.stock = l.stock_in AND m.amount = l.amount "
    "AND s.warehouse = d.warehouse_in AND s.place = l.place) ELSE 0 END, coalesce(l.sys_amount, 0) "
    "FROM document d LEFT JOIN document_line l ON l.document = d.id WHERE d.writer = ? ORDER BY d.id, l.id";
constexpr const char* g_claims = "SELECT token, stock, amount, use, state FROM claim WHERE user_id = ?";

template <typename kept_t>
std::string free_name(const std::map<std::string, kept_t>& among, std::string name) {
    while (among.contains(name))
        name += " again";
    return name;
}

void take_papers(store::connection& with, const char* sql, std::int64_t user, picture& into) {
    std::int64_t last = 0;
    paper* current = nullptr;
    with.query({"", sql}, {user}, [&](const store::row& one) {
        const auto module = static_cast<int>(one.integer(1));
        if (one.integer(3) != last) {
            last = one.integer(3);
            current = &into.papers[free_name(into.papers, std::string(one.text(0)))];
            current->module = module;
            current->state = static_cast<paper_state>(one.integer(2));
        }
        if (one.null(4)) return;
        current->lines[free_name(current->lines, std::string(one.text(4)))] = {
            one.integer(5), module == 1 ? 0 : one.integer(6), one.integer(8), one.integer(7) == 1};
    });
}

std::string words(const paper& one) {
    std::ostringstream text;
    text << "module " << one.module << " state " << static_cast<int>(one.state) << " lines";
    for (const auto& [remark, line] : one.lines)
        text << " [" << remark << " " << line.amount << " of " << line.stock << " sys " << line.sys
             << (line.stocked ? " stocked]" : "]");
    return text.str();
}

std::string words(const claim_state_of& one) {
    std::ostringstream text;
    text << one.amount << " of " << one.stock << " use " << one.use << " state " << one.state;
    return text.str();
}

template <typename kept_t>
void compare(const std::map<std::string, kept_t>& remembered, const std::map<std::string, kept_t>& found,
             std::string& text) {
    for (const auto& [name, one] : remembered) {
        const auto at = found.find(name);
        if (at != found.end() && at->second == one) continue;
        text += name + ": remembered " + words(one) + ", found " +
                (at == found.end() ? "nothing" : words(at->second));
        text += "\n";
    }
    for (const auto& [name, one] : found)
        if (!remembered.contains(name)) text += name + ": found " + words(one) + ", remembered nothing\n";
}

} // namespace

picture picture_of(store::database& where, std::int64_t user) {
    picture found;
    store::read_now(where, [&](store::connection& with) {
        found = {};
        take_papers(with, g_drafts, user, found);
        take_papers(with, g_documents, user, found);
        with.query({"", g_claims}, {user}, [&](const store::row& one) {
            found.claims[std::string(one.text(0))] = {one.integer(1), one.integer(2),
                                                      static_cast<int>(one.integer(3)),
                                                      static_cast<int>(one.integer(4))};
        });
    });
    return found;
}

std::string difference(const picture& remembered, const picture& found) {
    std::string text;
    compare(remembered.papers, found.papers, text);
    compare(remembered.claims, found.claims, text);
    return text;
}

} // namespace tavrok::test
