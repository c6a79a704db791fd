// The oracle's rules of stock control: stocktakings, transfers and the summary.
#include <algorithm>

#include "domain/ledger_oracle.h"

namespace tavrok::test {

using domain::claim_use;
using domain::document_module;

namespace {

constexpr std::int64_t g_dearest = 9'999'999'900;
constexpr std::int64_t g_most = 99'999'999;

bool within(std::int64_t number, std::int64_t most) {
    return number >= 0 && number <= most;
}

/** The whole money of amount times price as a client works it out in binary fractions, or exactly. */
bool is_cut_money(const domain::document_line& line) {
    const auto fractions = static_cast<double>(line.amount) * (static_cast<double>(line.price) / 100);
    const auto exactly = line.amount * line.price / 100;
    return line.total == exactly * 100 || line.total == static_cast<std::int64_t>(fractions) * 100;
}

std::int64_t rounded(std::int64_t worth, std::int64_t count) {
    const auto whole = worth / count;
    return worth % count * 2 >= count ? whole + 1 : whole;
}

} // namespace

bool ledger_oracle::in_bounds(const domain::document_line& line) {
    return within(line.price, g_dearest) && within(line.amount, g_most) &&
           line.total == line.price * line.amount;
}

answer ledger_oracle::add_count(std::int64_t by, std::int64_t to, const domain::taking_line& counted,
                                std::int64_t id) {
    auto* at = draft_for_line(by, document_module::stocktaking, to);
    if (at == nullptr) return answer::refused;
    const auto& what = counted.what;
    const bool good = within(counted.sys_amount, g_most) && within(counted.real_amount, g_most) &&
                      counted.sys_amount + what.amount == counted.real_amount &&
                      within(what.price, g_dearest) && is_cut_money(what) && goods_live(what);
    return arrive(*at, good, id, {what, false, counted.sys_amount});
}

/** Each line uses up what it holds; its row changes by what it is off, in all the lines together. */
bool ledger_oracle::correct(std::int64_t user, const document& by) {
    std::map<std::int64_t, std::int64_t> off;
    for (const auto& one : by.lines) {
        if (!is_of_row(user, one.what)) return false;
        use_up(user, one.what, claim_use::stocktaking);
        off[one.what.stock] += one.what.amount;
    }
    return change(off);
}

answer ledger_oracle::add_move(std::int64_t by, std::int64_t to, const domain::document_line& what,
                               const made& by_service) {
    auto* at = draft_for_line(by, document_module::transfer, to);
    if (at == nullptr) return answer::refused;
    auto moved = what;
    moved.warehouse = at->warehouse_out;
    const auto user = sessions.at(by).user;
    const auto target = warehouses.find(at->warehouse_in);
    const auto before_claims = claims;
    const auto before_ended = ended;
    const bool good = in_bounds(what) && !what.place.empty() && target->second &&
                      (at->document == 0 || documents.at(at->document).live) &&
                      take_off(user, moved, claim_use::transfer);
    if (!good) {
        claims = before_claims;
        ended = before_ended;
        return answer::refused;
    }
    const auto source = stock.at(what.stock);
    const auto there = by_service.stock.empty() ? 0 : by_service.stock[0];
    // a row that is there already would be overwritten and noticed as one too few
    stock[there] = {source.product, at->warehouse_in, source.price, what.place, what.amount, now};
    if (at->document == 0) {
        at->document = by_service.document;
        documents[at->document] = {document_module::transfer,         at->type, true,
                                   next_number(at->module, at->type), {},       {}};
    }
    ++at->moved;
    auto& grown = documents.at(at->document);
    grown.sums.total += what.total;
    grown.lines.push_back({moved, false, 0, there});
    return answer::done;
}

std::vector<domain::summary_item> ledger_oracle::summary(std::int64_t from, std::int64_t to,
                                                         const std::set<std::string>& standing) const {
    std::vector<domain::summary_item> all;
    for (auto product = products.rbegin(); product != products.rend(); ++product) {
        domain::summary_item one;
        one.product = product->first;
        std::int64_t on_hand = 0;
        std::int64_t worth = 0;
        std::int64_t worth_free = 0;
        for (const auto& [id, row] : stock) {
            if (row.product != product->first || row.on_hand == 0 || row.added < from || row.added > to) {
                continue;
            }
            auto free = row.on_hand - claimed(id);
            for (const auto& token : standing)
                if (lapsed.at(token).stock == id) free -= lapsed.at(token).amount;
            on_hand += row.on_hand;
            worth += row.on_hand * row.price;
            one.sum_amount += free;
            worth_free += free * row.price;
        }
        if (on_hand == 0) continue;
        one.sum_total = worth_free;
        one.avg_price = one.sum_amount > 0 ? rounded(worth_free, one.sum_amount) : rounded(worth, on_hand);
        all.push_back(one);
    }
    return all;
}

} // namespace tavrok::test
