// The calls of stock control in a play: stocktakings, transfers and the summary.
#include <algorithm>

#include "domain/ledger_player.h"

namespace tavrok::test {

using domain::claim_use;
using domain::document_line;
using domain::principal;
using domain::summary_item;

namespace {

constexpr const char* g_no_name = "物"; // of no product
constexpr std::int64_t g_never = std::int64_t{1} << 60;

std::string text_of(const summary_item& one) {
    return std::to_string(one.product) + ": " + std::to_string(one.sum_amount) + " at " +
           std::to_string(one.avg_price) + " are " + domain::format_money_sum(one.sum_total);
}

/** In what a page of the summary is not the one that was wished of all; empty where it is. */
std::string difference(const domain::list_page<summary_item>& page, const std::vector<summary_item>& all,
                       const domain::page_wish& wish) {
    const auto size = static_cast<std::int64_t>(all.size());
    const auto pages = (size + wish.page_size - 1) / wish.page_size;
    const auto last = std::max<std::int64_t>(pages, 1);
    const auto num = wish.page_num == -1 ? last : std::clamp<std::int64_t>(wish.page_num, 1, last);
    if (page.total != size || page.page_count != pages || page.page_num != num) {
        return "the summary should have " + std::to_string(size) + " products, not " +
               std::to_string(page.total);
    }
    const auto from = (num - 1) * wish.page_size;
    if (static_cast<std::int64_t>(page.list.size()) != std::min(wish.page_size, size - from)) {
        return "a page of the summary has another size";
    }
    for (std::size_t i = 0; i < page.list.size(); ++i) {
        const auto wanted = text_of(all[static_cast<std::size_t>(from) + i]);
        const auto got = text_of(page.list[i]);
        if (wanted != got) return "the summary should have " + wanted + ", not " + got;
    }
    return {};
}

} // namespace

std::int64_t ledger_player::some_row(const actor& who, std::int64_t draft) {
    const auto& oracle = mine(who).oracle;
    const auto known = oracle.drafts.find(draft);
    std::vector<std::int64_t> there;
    for (const auto& [id, row] : oracle.stock)
        if (known != oracle.drafts.end() && row.warehouse == known->second.warehouse_out && row.on_hand > 0) {
            there.push_back(id);
        }
    if (!there.empty() && !one_in(12)) return any(there);
    return oracle.stock.empty() ? 4711 : some_row(oracle);
}

void ledger_player::claim_for_line(const actor& who, std::int64_t draft, module what) {
    const bool taking = what == module::stocktaking;
    if ((!taking && what != module::transfer) || one_in(4)) return;
    const auto row = some_row(who, draft);
    const auto known = mine(who).oracle.stock.find(row);
    const auto there = known == mine(who).oracle.stock.end() ? 0 : static_cast<int>(known->second.on_hand);
    claim(who, {taking ? claim_use::stocktaking : claim_use::transfer, row, below(there / 2 + 2)});
}

void ledger_player::fill_from_row(const actor& who, claim_use use, std::int64_t row, document_line& made) {
    const auto& oracle = mine(who).oracle;
    made.stock = row;
    const auto house = [&](std::int64_t id) {
        return oracle.stock.contains(id) ? oracle.stock.at(id).warehouse : 0;
    };
    for (const auto& [token, claim] : oracle.claims) {
        if (claim.user != who.user.user || claim.use != use || one_in(5)) continue;
        if (house(claim.stock) != house(row) && !one_in(4)) continue;
        made.stock = claim.stock;
        made.token = token;
        if (!one_in(4)) made.amount = claim.amount;
    }
    if (one_in(8) && !mine(who).tokens.empty()) made.token = any(mine(who).tokens);
    const auto known = oracle.stock.find(made.stock);
    const bool there = known != oracle.stock.end();
    const auto& foreign = other(who).of;
    made.product = some_goods(there ? known->second.product : some_live(oracle.products), foreign.products[0],
                              oracle.products);
    made.warehouse = some_goods(there ? known->second.warehouse : some_live(oracle.warehouses),
                                foreign.warehouses[0], oracle.warehouses);
    made.price = there && one_in(3) ? known->second.price : below(500);
    if (one_in(30)) made.price = one_in(2) ? -1 : 9'999'999'901;
    if (one_in(25)) made.stock = 4711;
    made.place = one_in(4) ? "丁架" : "丙架";
    made.remark = one_in(4) ? "注" : "";
}

domain::taking_line ledger_player::some_count(const actor& who) {
    const auto& oracle = mine(who).oracle;
    domain::taking_line made;
    auto& what = made.what;
    fill_from_row(who, claim_use::stocktaking, some_row(who, 0), what);
    const auto row = oracle.stock.find(what.stock);
    made.sys_amount = row == oracle.stock.end() || one_in(4) ? below(20) : row->second.on_hand;
    made.real_amount = one_in(8) ? 0 : std::max<std::int64_t>(made.sys_amount + below(8) - 4, 0);
    if (one_in(40)) made.real_amount = one_in(2) ? -1 : 100'000'000;
    if (one_in(60)) made.sys_amount = one_in(2) ? -1 : 100'000'000;
    what.amount = made.real_amount - made.sys_amount + (one_in(40) ? 1 : 0);
    // a client multiplies binary fractions and cuts what is behind the point
    const auto money = static_cast<double>(what.amount) * (static_cast<double>(what.price) / 100);
    what.total = static_cast<std::int64_t>(money) * 100 + (one_in(25) ? one_in(2) ? 1 : 100 : 0);
    return made;
}

document_line ledger_player::some_move(const actor& who, std::int64_t draft) {
    const auto& oracle = mine(who).oracle;
    document_line made;
    const auto wanted = some_row(who, draft);
    const auto row = oracle.stock.find(wanted);
    made.amount = row == oracle.stock.end() ? 1 : below(static_cast<int>(row->second.on_hand) / 2 + 2);
    fill_from_row(who, claim_use::transfer, wanted, made);
    if (one_in(40)) made.amount = one_in(2) ? -1 : 100'000'000;
    if (one_in(40)) made.place.clear();
    made.total = made.amount * made.price + (one_in(20) ? 1 : 0);
    return made;
}

void ledger_player::count(const actor& who, std::int64_t draft) {
    const auto one = some_count(who);
    m_story.push_back("session " + std::to_string(who.session) + " counts for draft " +
                      std::to_string(draft) + " " + std::to_string(one.sys_amount) + " as " +
                      std::to_string(one.real_amount) + " of " + std::to_string(one.what.product) + " in " +
                      std::to_string(one.what.warehouse) + ", row " + std::to_string(one.what.stock) + " " +
                      one.what.token);
    std::int64_t id = 0;
    const auto got = request(who, [&](store::connection& with, const principal& by) {
        id = domain::add_taking_line(with, by, draft, one);
    });
    expect("count", got, got == answer::over ? got : mine(who).oracle.add_count(who.session, draft, one, id));
}

void ledger_player::move(const actor& who, std::int64_t draft) {
    const auto one = some_move(who, draft);
    m_story.push_back("session " + std::to_string(who.session) + " moves for draft " + std::to_string(draft) +
                      " " + std::to_string(one.amount) + " of " + std::to_string(one.product) + ", row " +
                      std::to_string(one.stock) + " " + one.token);
    bool first = false;
    const auto got = request(who, [&](store::connection& with, const principal& by) {
        first = domain::add_transfer_line(with, by, draft, one, m_now);
    });
    auto& oracle = mine(who).oracle;
    const auto known = oracle.drafts.find(draft);
    const bool expected = known != oracle.drafts.end() && known->second.document == 0;
    const auto made = got == answer::done ? newest_move(mine(who)) : ledger_oracle::made{};
    const auto wanted = got == answer::over ? got : oracle.add_move(who.session, draft, one, made);
    if (got == answer::done && wanted == got && first != expected) {
        throw disagreement("the first line of a transfer and no other makes it");
    }
    expect("move", got, wanted);
}

ledger_oracle::made ledger_player::newest_move(const firm& of) {
    return m_in.read([&](store::connection& with) {
        ledger_oracle::made made;
        with.query({"test_newest_move",
                    "SELECT document, coalesce(stock_in, 0) FROM document_line WHERE company = ? ORDER BY id "
                    "DESC LIMIT 1"},
                   {of.of.id}, [&](const store::row& one) {
                       made = {one.integer(0), {one.integer(1)}};
                   });
        return made;
    });
}

domain::summary_search ledger_player::some_search(const ledger_oracle& of) {
    domain::summary_search made;
    const auto moment = [&] {
        return (of.stock.empty() ? m_now : any(of.stock).second.added) + below(3) - 1;
    };
    if (one_in(2)) made.date_start = moment();
    if (one_in(2)) made.date_end = moment();
    if (one_in(3)) made.product_name = one_in(5) ? g_no_name : "货";
    return made;
}

/** Everything, or a page of what a search finds. */
void ledger_player::summary(std::size_t at, bool whole) {
    const auto& of = m_firms.at(at);
    const auto search = whole ? domain::summary_search{} : some_search(of.oracle);
    const domain::page_wish wish =
        whole ? domain::page_wish{1, 200} : domain::page_wish{below(5) - 1, 1 + below(4)};
    m_story.push_back("summary of company " + std::to_string(of.of.id) + " from " +
                      std::to_string(search.date_start.value_or(-1)) + " to " +
                      std::to_string(search.date_end.value_or(-1)) + ", page " +
                      std::to_string(wish.page_num) + " of " + std::to_string(wish.page_size));
    std::set<std::string> standing;
    const auto page = m_in.read([&](store::connection& with) {
        with.query({"test_standing", "SELECT token FROM claim WHERE company = ? AND state = 1"}, {of.of.id},
                   [&](const store::row& one) {
                       const std::string token(one.text(0));
                       if (of.oracle.lapsed.contains(token)) standing.insert(token);
                   });
        principal who;
        who.company = of.of.id;
        who.user = of.of.boss.user;
        return domain::list_stock_summary(with, who, search, wish, m_counts);
    });
    auto all = of.oracle.summary(search.date_start.value_or(0), search.date_end.value_or(g_never), standing);
    if (search.product_name == g_no_name) all.clear();
    if (const auto wrong = difference(page, all, wish); !wrong.empty()) throw disagreement(wrong);
    m_story.back() += ": done";
    ++m_figures["summary done"];
}

} // namespace tavrok::test
