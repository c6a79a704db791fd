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
constexpr std::int64_t g_dearest = 9'999'999'900;
constexpr std::int64_t g_most = 99'999'999;

/** Supplier, client, any partner, department, nobody: what the kinds want, from kind 1 on. */
const std::string g_inbound = "SDCDAAN";
const std::string g_outbound = "SCDAAN";
const std::vector<std::string> g_inbound_letters{"CG", "SC", "XT", "LT", "JR", "JH", "QR"};
const std::vector<std::string> g_outbound_letters{"CT", "XS", "LY", "JC", "HH", "QC"};

char counterparty(document_module module, std::int64_t type) {
    const auto& kinds = module == document_module::inbound ? g_inbound : g_outbound;
    if (type < 1 || type > static_cast<std::int64_t>(kinds.size())) return '?';
    return kinds[static_cast<std::size_t>(type - 1)];
}

bool alike(const domain::document_line& one, const domain::document_line& other) {
    return one.product == other.product && one.price == other.price && one.amount == other.amount &&
           one.warehouse == other.warehouse && one.place == other.place && one.remark == other.remark;
}

bool in_bounds(const domain::document_line& line) {
    return line.price >= 0 && line.price <= g_dearest && line.amount >= 0 && line.amount <= g_most &&
           line.total == line.price * line.amount;
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
        if (!present) lapsed.insert(one.first);
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
    return module == document_module::outbound && (type == 2 || (type == 6 && right == "add"));
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

answer ledger_oracle::open_draft(std::int64_t by, document_module module,
                                 const domain::document_header& header, std::int64_t id) {
    const auto user = sessions.at(by).user;
    const bool own = header.writer.empty() || header.writer == std::to_string(user);
    if (!own || header.operater != std::to_string(employee) || !counterparty_fits(module, header) ||
        !may(user, module, header.type, "add")) {
        return answer::refused;
    }
    drafts[id] = {by, module, header.type, now, {}};
    return answer::done;
}

bool ledger_oracle::goods_live(const domain::document_line& line) const {
    return is_live(products, line.product) && is_live(warehouses, line.warehouse);
}

answer ledger_oracle::add_line(std::int64_t by, document_module module, std::int64_t to,
                               const domain::document_line& line, std::int64_t id) {
    const auto at = drafts.find(to);
    if (at == drafts.end() || at->second.session != by || at->second.module != module ||
        !may(sessions.at(by).user, module, at->second.type, "add") || !in_bounds(line) || !goods_live(line) ||
        (module == document_module::inbound && line.place.empty())) {
        return answer::refused;
    }
    at->second.lines[id] = {line, false};
    return answer::done;
}

answer ledger_oracle::announce(std::int64_t by, const domain::document_line& like) {
    draft_line* latest = nullptr;
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

/** An outbound line: what it claimed before is its own, the rest comes from what is free. */
bool ledger_oracle::take_off(std::int64_t user, const domain::document_line& line) {
    const auto at = stock.find(line.stock);
    if (at == stock.end() || at->second.product != line.product || at->second.warehouse != line.warehouse ||
        !goods_live(line) || held_by_other(line.stock, user)) {
        return false;
    }
    const auto own = claims.find(line.token);
    if (own != claims.end() && own->second.user == user && own->second.stock == line.stock &&
        own->second.use == claim_use::outbound) {
        ended.insert(own->first);
        claims.erase(own);
    }
    if (at->second.on_hand - claimed(line.stock) < line.amount) return false;
    at->second.on_hand -= line.amount;
    return true;
}

std::string ledger_oracle::next_number(document_module module, std::int64_t type) {
    const auto& letters = module == document_module::inbound ? g_inbound_letters : g_outbound_letters;
    const auto seconds = static_cast<std::time_t>(now);
    char day[16];
    std::strftime(day, sizeof day, "%Y%m%d", std::localtime(&seconds));
    const auto series = letters[static_cast<std::size_t>(type - 1)] + day;
    char number[32];
    std::snprintf(number, sizeof number, "-%04d", ++m_numbers[series]);
    return series + number;
}

answer ledger_oracle::close(std::int64_t by, document_module module, std::int64_t id, std::int64_t told,
                            const made& by_service) {
    const auto at = drafts.find(id);
    if (at == drafts.end() || at->second.session != by || at->second.module != module) return answer::refused;
    const auto from = at->second;
    const auto user = sessions.at(by).user;
    drafts.erase(at);
    const auto before_stock = stock;
    const auto before_claims = claims;
    const auto before_ended = ended;

    document one{module, from.type, true, {}, 0, {}};
    bool good = !from.lines.empty() && may(user, module, from.type, "add");
    for (const auto& [line_id, line] : from.lines) {
        one.total += line.what.price * line.what.amount;
        one.lines.push_back(line.what);
        if (module == document_module::inbound) {
            good = good && line.announced && goods_live(line.what);
        } else {
            good = good && take_off(user, line.what);
        }
    }
    if (!good || std::abs(one.total - told) >= static_cast<std::int64_t>(one.lines.size())) {
        stock = before_stock;
        claims = before_claims;
        ended = before_ended;
        return answer::dropped;
    }
    if (module == document_module::inbound && by_service.stock.size() == one.lines.size()) {
        for (std::size_t i = 0; i < one.lines.size(); ++i) {
            auto& line = one.lines[i];
            line.stock = by_service.stock[i];
            // a row that is there already would be overwritten and noticed as one too few
            stock[line.stock] = {line.product, line.warehouse, line.price, line.place, line.amount};
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
    const auto sign = module == document_module::inbound ? -1 : 1;
    for (const auto& line : at->second.lines) {
        const auto free = stock.at(line.stock).on_hand - claimed(line.stock);
        const bool good = sign > 0 ? goods_live(line) && !held_by_other(line.stock, user)
                                   : free >= line.amount && !held_by_other(line.stock, 0);
        if (!good) return answer::refused;
    }
    for (const auto& line : at->second.lines)
        stock.at(line.stock).on_hand += sign * line.amount;
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
