#include "domain/ledger_oracle.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>

namespace tavrok::test {

using domain::claim_use;
using domain::document_module;

namespace {

constexpr std::int64_t g_hour = 3600;
constexpr std::int64_t g_idle = 8 * g_hour;
constexpr std::int64_t g_total = 24 * g_hour;
constexpr std::int64_t g_claim = 2 * g_hour;
constexpr std::int64_t g_minute = 60;

/** The kinds of a module, from kind 1 on. */
struct kinds {
    std::string counterparties; /**< supplier, client, any partner, department, nobody */
    std::vector<std::string> letters;
};
const std::map<document_module, kinds> g_kinds{
    {document_module::inbound, {"SDCDAAN", {"CG", "SC", "XT", "LT", "JR", "JH", "QR"}}},
    {document_module::outbound, {"SCDAAN", {"CT", "XS", "LY", "JC", "HH", "QC"}}},
    {document_module::stocktaking, {"N", {"PD"}}},
    {document_module::transfer, {"N", {"DB"}}}};

char counterparty(document_module module, std::int64_t type) {
    const auto& of = g_kinds.at(module).counterparties;
    if (type < 1 || type > static_cast<std::int64_t>(of.size())) return '?';
    return of[static_cast<std::size_t>(type - 1)];
}

bool alike(const domain::document_line& one, const domain::document_line& other) {
    return one.product == other.product && one.price == other.price && one.amount == other.amount &&
           one.warehouse == other.warehouse && one.place == other.place && one.remark == other.remark;
}

bool is_live(const std::map<std::int64_t, bool>& of, std::int64_t id) {
    const auto at = of.find(id);
    return at != of.end() && at->second;
}

} // namespace

bool ledger_oracle::alive(const session& one) const {
    return !one.ended && now - one.last < g_idle && now - one.created < g_total;
}

bool ledger_oracle::is_doubtful(std::int64_t at) const {
    return std::any_of(sessions.begin(), sessions.end(), [&](const auto& one) {
        const auto gap = at - one.second.last;
        return (gap >= g_claim && gap < g_claim + g_minute) || (gap >= g_idle - g_minute && gap < g_idle);
    });
}

void ledger_oracle::wait_until(std::int64_t at) {
    now = at;
    for (auto& [id, one] : sessions)
        if (!alive(one)) one.ended = true;
    lapse();
}

void ledger_oracle::lapse() {
    std::erase_if(claims, [&](const auto& one) {
        const bool present = std::any_of(sessions.begin(), sessions.end(), [&](const auto& of) {
            return of.second.user == one.second.user && alive(of.second) && now - of.second.last < g_claim;
        });
        if (!present) lapsed.insert(one);
        return !present;
    });
}

void ledger_oracle::log_in(std::int64_t user, std::int64_t id) {
    sessions[id] = {user, now, now, false};
}

void ledger_oracle::end_sessions_of(std::int64_t user) {
    for (auto& [id, one] : sessions)
        if (one.user == user) one.ended = true;
    lapse();
}

bool ledger_oracle::request(std::int64_t id) {
    auto& one = sessions.at(id);
    if (!alive(one)) return false;
    one.last = now;
    return true;
}

void ledger_oracle::sweep() {
    std::erase_if(drafts, [&](const auto& one) { return now - one.second.opened >= g_hour; });
}

bool ledger_oracle::ordinary_may(document_module module, std::int64_t type, const std::string& right) {
    switch (module) {
        case document_module::inbound:
            return false;
        case document_module::outbound:
            return type == 2 || (type == 6 && right == "add");
        case document_module::stocktaking:
            return true;
        case document_module::transfer:
            return right == "add";
    }
    return false;
}

bool ledger_oracle::may(std::int64_t user, document_module module, std::int64_t type,
                        const std::string& right) {
    return user != ordinary || ordinary_may(module, type, right);
}

bool ledger_oracle::counterparty_fits(document_module module, const domain::document_header& header) const {
    const auto wanted = counterparty(module, header.type);
    if (wanted == '?') return false;
    const bool partner = wanted == 'S' || wanted == 'C' || wanted == 'A';
    if (header.partner.has_value() != partner || header.dept.has_value() != (wanted == 'D')) return false;
    if (header.dept) return *header.dept == 0 || *header.dept == dept;
    if (!header.partner) return true;
    const auto at = std::find(partners.begin(), partners.end(), *header.partner);
    if (at == partners.end()) return false;
    return wanted == 'A' || at == partners.begin() + (wanted == 'S' ? 0 : 1);
}

bool ledger_oracle::warehouses_fit(document_module module, const domain::document_header& header) const {
    const auto& from = header.warehouse_out;
    const auto& to = header.warehouse_in;
    if (module != document_module::transfer) return !from && !to;
    return from && to && *from != *to && is_live(warehouses, *from) && is_live(warehouses, *to);
}

answer ledger_oracle::open_draft(std::int64_t by, document_module module,
                                 const domain::document_header& header, std::int64_t id) {
    const auto user = sessions.at(by).user;
    const bool own = header.writer.empty() || header.writer == std::to_string(user);
    if (!own || header.operater != std::to_string(employee) || !counterparty_fits(module, header) ||
        !warehouses_fit(module, header) || !may(user, module, header.type, "add")) {
        return answer::refused;
    }
    draft opened{by, module, header.type, now};
    opened.warehouse_out = header.warehouse_out.value_or(0);
    opened.warehouse_in = header.warehouse_in.value_or(0);
    drafts[id] = opened;
    return answer::done;
}

bool ledger_oracle::goods_live(const domain::document_line& line) const {
    return is_live(products, line.product) && is_live(warehouses, line.warehouse);
}

/** The draft of the session to which its user may add lines. */
ledger_oracle::draft* ledger_oracle::draft_for_line(std::int64_t by, document_module module,
                                                    std::int64_t id) {
    const auto at = drafts.find(id);
    const bool there = at != drafts.end() && at->second.session == by && at->second.module == module &&
                       may(sessions.at(by).user, module, at->second.type, "add");
    return there ? &at->second : nullptr;
}

/** A line that is not good leaves no trace in its draft. */
answer ledger_oracle::arrive(draft& at, bool good, std::int64_t id, const entry& what) {
    if (!good) return answer::refused;
    at.lines[id] = what;
    return answer::done;
}

answer ledger_oracle::add_line(std::int64_t by, document_module module, std::int64_t to,
                               const domain::document_line& what, std::int64_t id) {
    auto* at = draft_for_line(by, module, to);
    if (at == nullptr) return answer::refused;
    const bool good =
        in_bounds(what) && goods_live(what) && (module != document_module::inbound || !what.place.empty());
    return arrive(*at, good, id, {what});
}

answer ledger_oracle::announce(std::int64_t by, const domain::document_line& like) {
    entry* latest = nullptr;
    std::int64_t latest_id = 0;
    for (auto& [id, of] : drafts) {
        if (of.session != by || of.module != document_module::inbound) continue;
        for (auto& [line_id, line] : of.lines) {
            if (line.announced || !alike(line.what, like) || line_id < latest_id) continue;
            latest = &line;
            latest_id = line_id;
        }
    }
    if (latest == nullptr || !in_bounds(like)) return answer::refused;
    latest->announced = true;
    return answer::done;
}

answer ledger_oracle::drop_line(std::int64_t by, std::int64_t line) {
    for (auto& [id, of] : drafts)
        if (of.session == by && of.lines.erase(line) != 0) return answer::done;
    return answer::refused;
}

std::int64_t ledger_oracle::claimed(std::int64_t row) const {
    std::int64_t sum = 0;
    for (const auto& [token, one] : claims)
        if (one.stock == row && one.use != claim_use::stocktaking) sum += one.amount;
    return sum;
}

bool ledger_oracle::held_by_other(std::int64_t row, std::int64_t user) const {
    return std::any_of(claims.begin(), claims.end(), [&](const auto& one) {
        return one.second.stock == row && one.second.use == claim_use::stocktaking && one.second.user != user;
    });
}

/** Whether a line may change the row that it names. */
bool ledger_oracle::is_of_row(std::int64_t user, const domain::document_line& of) const {
    const auto at = stock.find(of.stock);
    return at != stock.end() && at->second.product == of.product && at->second.warehouse == of.warehouse &&
           goods_live(of) && !held_by_other(of.stock, user);
}

void ledger_oracle::use_up(std::int64_t user, const domain::document_line& by, claim_use use) {
    const auto own = claims.find(by.token);
    if (own == claims.end() || own->second.user != user || own->second.stock != by.stock ||
        own->second.use != use) {
        return;
    }
    ended.insert(own->first);
    claims.erase(own);
}

/** A line that takes goods: what it claimed before is its own, the rest comes from what is free. */
bool ledger_oracle::take_off(std::int64_t user, const domain::document_line& by, claim_use use) {
    if (!is_of_row(user, by)) return false;
    use_up(user, by, use);
    return change({{by.stock, -by.amount}});
}

/** Rows gain and lose all at once: what is left of each covers what is claimed of it. */
bool ledger_oracle::change(const std::map<std::int64_t, std::int64_t>& rows) {
    for (const auto& [row, by] : rows)
        if (stock.at(row).on_hand + by < claimed(row)) return false;
    for (const auto& [row, by] : rows)
        stock.at(row).on_hand += by;
    return true;
}

std::string ledger_oracle::next_number(document_module module, std::int64_t type) {
    const auto& letters = g_kinds.at(module).letters;
    const auto seconds = static_cast<std::time_t>(now);
    char day[16];
    std::strftime(day, sizeof day, "%Y%m%d", std::localtime(&seconds));
    const auto series = letters[static_cast<std::size_t>(type - 1)] + day;
    char number[32];
    std::snprintf(number, sizeof number, "-%04d", ++m_numbers[series]);
    return series + number;
}

/** What the lines of a document do to the rows that are there; where it gives false, half of it may be done.
 */
bool ledger_oracle::apply(std::int64_t user, const document& what) {
    if (what.module == document_module::stocktaking) return correct(user, what);
    return std::all_of(what.lines.begin(), what.lines.end(), [&](const entry& one) {
        return what.module == document_module::inbound ? one.announced && goods_live(one.what)
                                                       : take_off(user, one.what, claim_use::outbound);
    });
}

answer ledger_oracle::close(std::int64_t by, document_module module, std::int64_t id,
                            const domain::document_sums& told, const made& by_service) {
    const auto at = drafts.find(id);
    if (at == drafts.end() || at->second.session != by || at->second.module != module) return answer::refused;
    const auto from = at->second;
    const auto user = sessions.at(by).user;
    drafts.erase(at);
    const auto before_stock = stock;
    const auto before_claims = claims;
    const auto before_ended = ended;

    document one{module, from.type, true, {}, {}, {}};
    for (const auto& [line_id, line] : from.lines) {
        one.sums.total += line.what.total;
        if (module == document_module::stocktaking) one.sums.difference += line.what.amount;
        one.lines.push_back(line);
    }
    // a hundredth a line may be off, but whole money adds up
    const auto slack =
        module == document_module::stocktaking ? 1 : static_cast<std::int64_t>(one.lines.size());
    const bool good = !one.lines.empty() && may(user, module, from.type, "add") &&
                      one.sums.difference == told.difference &&
                      std::abs(one.sums.total - told.total) < slack && apply(user, one);
    if (!good) {
        stock = before_stock;
        claims = before_claims;
        ended = before_ended;
        return answer::dropped;
    }
    for (std::size_t i = 0; i < one.lines.size() && i < by_service.stock.size(); ++i) {
        auto& of = one.lines[i].what;
        if (module == document_module::inbound) {
            of.stock = by_service.stock[i];
            // a row that is there already would be overwritten and noticed as one too few
            stock[of.stock] = {of.product, of.warehouse, of.price, of.place, of.amount, now};
        } else {
            of.place = stock.at(of.stock).place;
        }
    }
    one.sn = next_number(module, from.type);
    documents[by_service.document] = one;
    return answer::done;
}

answer ledger_oracle::remove(std::int64_t by, document_module module, std::int64_t id) {
    const auto at = documents.find(id);
    const auto user = sessions.at(by).user;
    if (at == documents.end() || !at->second.live || at->second.module != module ||
        !may(user, module, at->second.type, "delete")) {
        return answer::refused;
    }
    const bool inbound = module == document_module::inbound;
    const bool transfer = module == document_module::transfer;
    const bool took = transfer || module == document_module::outbound;
    std::map<std::int64_t, std::int64_t> rows;
    for (const auto& one : at->second.lines) {
        const auto row = one.what.stock;
        if (!inbound && !goods_live(one.what)) return answer::refused;
        // rows that the document made must be left in peace even by its own user
        if (held_by_other(row, inbound ? 0 : user)) return answer::refused;
        if (transfer && held_by_other(one.stock_in, 0)) return answer::refused;
        rows[row] += took ? one.what.amount : -one.what.amount;
        if (transfer) rows[one.stock_in] -= one.what.amount;
    }
    if (!change(rows)) return answer::refused;
    at->second.live = false;
    return answer::done;
}

answer ledger_oracle::take(std::int64_t by, const domain::claim_wish& wish, const std::string& token) {
    const auto at = stock.find(wish.stock);
    const auto user = sessions.at(by).user;
    if (at == stock.end() || held_by_other(wish.stock, user)) return answer::refused;
    const bool whole = wish.use == claim_use::stocktaking;
    if (whole) {
        for (const auto& [other, one] : claims)
            if (one.stock == wish.stock && one.user != user) return answer::refused;
    } else if (wish.amount < 0 || wish.amount > at->second.on_hand - claimed(wish.stock)) {
        return answer::refused;
    }
    claims[token] = {wish.stock, user, wish.use, whole ? 0 : wish.amount};
    return answer::done;
}

void ledger_oracle::give_back(std::int64_t by, const std::string& token) {
    const auto at = claims.find(token);
    if (at == claims.end() || at->second.user != sessions.at(by).user) return;
    claims.erase(at);
    ended.insert(token);
}

answer ledger_oracle::retire(std::map<std::int64_t, bool>& of, std::int64_t id) {
    const bool any = std::any_of(stock.begin(), stock.end(), [&](const auto& one) {
        const auto& row = one.second;
        return row.on_hand > 0 && (&of == &products ? row.product : row.warehouse) == id;
    });
    if (any || !is_live(of, id)) return answer::refused;
    of[id] = false;
    return answer::done;
}

} // namespace tavrok::test
