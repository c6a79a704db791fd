// The calls of a play: each makes up what it asks for, asks, and compares.
#include "domain/ledger_player.h"

namespace tavrok::test {

using domain::claim_use;
using domain::document_line;
using domain::principal;

namespace {

const char* name_of(domain::document_module what) {
    using enum domain::document_module;
    return what == inbound       ? "inbound"
           : what == outbound    ? "outbound"
           : what == stocktaking ? "taking"
                                 : "transfer";
}

} // namespace

/** More comes in than goes out. */
ledger_player::module ledger_player::any_module() {
    const auto what = below(10);
    return what < 4   ? module::inbound
           : what < 6 ? module::outbound
           : what < 8 ? module::stocktaking
                      : module::transfer;
}

void ledger_player::step_of_documents(const actor& who) {
    const auto what = below(100);
    if (what < 20) return remove(who);
    if (what < 23) return drop_line(who);
    if (what < 32) return close(who, some_draft(who));
    if (what < 40) {
        const auto draft = some_draft(who);
        const auto known = mine(who).oracle.drafts.find(draft);
        const bool there = known != mine(who).oracle.drafts.end() && !one_in(20);
        return line(who, draft, there ? known->second.module : any_module());
    }
    write(who, any_module());
}

/** A document from the header on, as a client would write it, with others at work meanwhile. */
void ledger_player::write(const actor& who, module what) {
    const auto draft = open(who, what);
    if (draft == 0) return;
    const auto lines = 1 + below(3);
    for (int i = 0; i < lines; ++i) {
        claim_for_line(who, draft, what);
        line(who, draft, what);
        if (one_in(8)) step_of_claims(any(m_actors));
        if (one_in(15)) drop_line(who);
    }
    if (one_in(12)) wait();
    if (one_in(12)) retire();
    if (what == module::transfer ? one_in(20) : !one_in(8)) close(who, draft);
}

void ledger_player::step_of_claims(const actor& who) {
    one_in(3) ? give_back(who) : take(who);
}

/** Mostly one of the session. */
std::int64_t ledger_player::some_draft(const actor& who) {
    std::vector<std::int64_t> own;
    for (const auto& [id, one] : mine(who).oracle.drafts)
        if (one.session == who.session) own.push_back(id);
    const auto& all = one_in(3) ? other(who).oracle.drafts : mine(who).oracle.drafts;
    if (!own.empty() && !one_in(12)) return any(own);
    return all.empty() ? 4711 : any(all).first;
}

/** Mostly one with something on hand. */
std::int64_t ledger_player::some_row(const ledger_oracle& of) {
    std::vector<std::int64_t> full;
    for (const auto& [id, one] : of.stock)
        if (one.on_hand > 0) full.push_back(id);
    return full.empty() || one_in(8) ? any(of.stock).first : any(full);
}

std::int64_t ledger_player::some_live(const std::map<std::int64_t, bool>& of) {
    std::vector<std::int64_t> live;
    for (const auto& [id, is_live] : of)
        if (is_live) live.push_back(id);
    return live.empty() ? any(of).first : any(live);
}

/** Mostly the usual one; else one that is retired, another company's or nobody's. */
std::int64_t ledger_player::some_goods(std::int64_t usual, std::int64_t foreign,
                                       const std::map<std::int64_t, bool>& of) {
    if (!one_in(25)) return usual;
    const std::int64_t others[] = {foreign, 4711, any(of).first};
    return others[below(3)];
}

document_line ledger_player::some_line(const actor& who, module what) {
    const auto& oracle = mine(who).oracle;
    const auto& foreign = other(who).of;
    document_line made;
    auto product = some_live(oracle.products);
    auto warehouse = some_live(oracle.warehouses);
    made.amount = below(13);
    made.price = below(500);
    made.place = one_in(4) ? "乙架" : "甲架";
    made.remark = one_in(4) ? "注" : "";
    if (what == module::outbound && !oracle.stock.empty()) {
        const auto id = some_row(oracle);
        const auto& row = oracle.stock.at(id);
        made.stock = one_in(20) ? 4711 : id;
        product = row.product;
        warehouse = row.warehouse;
        made.amount = below(static_cast<int>(row.on_hand) / (one_in(3) ? 1 : 2) + 2);
        for (const auto& [token, claim] : oracle.claims) {
            if (claim.stock != id || claim.user != who.user.user || one_in(4)) continue;
            made.token = token;
            if (!one_in(4)) made.amount = claim.amount;
        }
        if (one_in(6) && !mine(who).tokens.empty()) made.token = any(mine(who).tokens);
    }
    made.product = some_goods(product, foreign.products[0], oracle.products);
    made.warehouse = some_goods(warehouse, foreign.warehouses[0], oracle.warehouses);
    if (one_in(30)) made.amount = one_in(2) ? -1 : 100'000'000;
    if (one_in(30)) made.price = one_in(2) ? -1 : 9'999'999'901;
    if (one_in(40)) made.place.clear();
    made.total = made.amount * made.price + (one_in(20) ? 1 : 0);
    return made;
}

domain::document_header ledger_player::some_header(const actor& who, module what) {
    const auto& of = mine(who).of;
    const auto& foreign = other(who).of;
    const auto kinds = what == module::inbound ? 7 : what == module::outbound ? 6 : 1;
    const auto type = 1 + below(kinds);
    const bool usual = mine(who).oracle.ordinary == who.user.user && kinds > 1 && !one_in(6);
    auto made = header_for(of, what, usual ? 2 : type);
    if (what == module::transfer || one_in(50)) {
        const auto& all = mine(who).oracle.warehouses;
        const auto& rows = mine(who).oracle.stock;
        const auto full =
            rows.empty() || one_in(6) ? some_live(all) : rows.at(some_row(mine(who).oracle)).warehouse;
        made.warehouse_out = some_goods(full, foreign.warehouses[0], all);
        for (int tries = 0; tries < 4 && (tries == 0 || made.warehouse_in == made.warehouse_out); ++tries)
            made.warehouse_in = some_goods(some_live(all), foreign.warehouses[0], all);
    }
    if (one_in(3)) made.writer = std::to_string(who.user.user);
    if (!one_in(7)) return made;
    switch (below(9)) {
        case 0:
            made.type = one_in(2) ? 0 : 8;
            break;
        case 1:
            made.type = 1 + below(7); // its counterparty may still fit
            break;
        case 2:
            made.operater = std::to_string(one_in(2) ? foreign.employee : 4711);
            break;
        case 3:
            made.writer = std::to_string(foreign.boss.user);
            break;
        case 4:
            made.partner = one_in(2) ? foreign.partners[0] : any(of.partners);
            break;
        case 5:
            made.dept = one_in(3) ? foreign.dept : one_in(2) ? 0 : of.dept;
            break;
        case 6:
            made.partner.reset();
            break;
        case 7:
            made.warehouse_in.reset();
            break;
        default:
            made.dept.reset();
    }
    return made;
}

std::int64_t ledger_player::open(const actor& who, module what) {
    const auto header = some_header(who, what);
    m_story.push_back("session " + std::to_string(who.session) + " opens a draft of module " +
                      std::to_string(static_cast<int>(what)) + ", kind " + std::to_string(header.type));
    std::int64_t id = 0;
    const auto got = request(who, [&](store::connection& with, const principal& by) {
        domain::demand_right(by, what, header.type, "add");
        id = domain::open_draft(with, by, what, header, m_now).id;
    });
    auto& oracle = mine(who).oracle;
    expect("open", got, got == answer::over ? got : oracle.open_draft(who.session, what, header, id));
    return got == answer::done ? id : 0;
}

void ledger_player::line(const actor& who, std::int64_t draft, module what) {
    if (what == module::stocktaking) return count(who, draft);
    if (what == module::transfer) return move(who, draft);
    const auto one = some_line(who, what);
    m_story.push_back("session " + std::to_string(who.session) + " adds to draft " + std::to_string(draft) +
                      " " + std::to_string(one.amount) + " of " + std::to_string(one.product) + " in " +
                      std::to_string(one.warehouse) + ", row " + std::to_string(one.stock) + " " + one.token);
    std::int64_t id = 0;
    const auto got = request(who, [&](store::connection& with, const principal& by) {
        id = domain::add_line(with, by, what, draft, one);
    });
    auto& oracle = mine(who).oracle;
    expect("line", got, got == answer::over ? got : oracle.add_line(who.session, what, draft, one, id));
    if (what == module::inbound && (got == answer::done ? !one_in(20) : one_in(4))) announce(who, one);
}

void ledger_player::announce(const actor& who, const document_line& like) {
    auto one = like;
    if (one_in(40)) one.amount += 1;
    if (one_in(40)) one.remark += "x";
    if (one_in(40)) one.place = "别处";
    one.total = one.amount * one.price;
    m_story.push_back("session " + std::to_string(who.session) + " announces " + std::to_string(one.amount));
    const auto got = request(
        who, [&](store::connection& with, const principal& by) { domain::announce_stock(with, by, one); });
    expect("announce", got, got == answer::over ? got : mine(who).oracle.announce(who.session, one));
}

void ledger_player::drop_line(const actor& who) {
    std::vector<std::int64_t> lines{4711};
    std::vector<std::int64_t> own;
    for (const auto& from : {&mine(who), &other(who)})
        for (const auto& [id, one] : from->oracle.drafts)
            for (const auto& [line, what] : one.lines) {
                lines.push_back(line);
                if (one.session == who.session) own.push_back(line);
            }
    const auto id = own.empty() || one_in(3) ? any(lines) : any(own);
    m_story.push_back("session " + std::to_string(who.session) + " drops line " + std::to_string(id));
    const auto got =
        request(who, [&](store::connection& with, const principal& by) { domain::drop_line(with, by, id); });
    expect("drop", got, got == answer::over ? got : mine(who).oracle.drop_line(who.session, id));
}

void ledger_player::close(const actor& who, std::int64_t id) {
    auto& oracle = mine(who).oracle;
    const auto known = oracle.drafts.find(id);
    auto what = any_module();
    domain::document_sums told;
    if (known != oracle.drafts.end()) {
        if (!one_in(20)) what = known->second.module;
        for (const auto& [line, one] : known->second.lines) {
            told.total += one.what.total;
            if (what == module::stocktaking) told.difference += one.what.amount;
        }
        if (one_in(8)) told.total += below(static_cast<int>(known->second.lines.size()) + 2);
        if (what == module::stocktaking && one_in(12)) told.difference += one_in(2) ? 1 : -1;
    }
    if (what == module::transfer)
        what = one_in(2) ? module::inbound : module::stocktaking; // it has no closing call
    m_story.push_back("session " + std::to_string(who.session) + " closes draft " + std::to_string(id) +
                      " with " + std::to_string(told.total) + " and " + std::to_string(told.difference));
    std::string reason;
    auto got = request(who, [&](store::connection& with, const principal& by) {
        reason = what == module::stocktaking ? domain::close_taking(with, by, id, told, m_now)
                                             : domain::close_draft(with, by, what, id, told.total, m_now);
    });
    if (got == answer::done && !reason.empty()) got = answer::dropped;
    m_story.back() += " (" + reason + ")";
    const auto made = got == answer::done ? newest_document(mine(who)) : ledger_oracle::made{};
    expect(std::string("close ") + name_of(what), got,
           got == answer::over ? got : oracle.close(who.session, what, id, told, made));
}

ledger_oracle::made ledger_player::newest_document(const firm& of) {
    return m_in.read([&](store::connection& with) {
        ledger_oracle::made made;
        with.query({"test_newest_lines",
                    "SELECT l.document, l.stock FROM document_line l WHERE l.company = ? AND l.document = "
                    "(SELECT max(d.id) FROM document d WHERE d.company = ?) ORDER BY l.id"},
                   {of.of.id, of.of.id}, [&](const store::row& one) {
                       made.document = one.integer(0);
                       made.stock.push_back(one.integer(1));
                   });
        return made;
    });
}

void ledger_player::remove(const actor& who) {
    const auto& from = one_in(12) ? other(who).oracle.documents : mine(who).oracle.documents;
    std::vector<std::int64_t> live;
    for (const auto& [document, one] : from)
        if (one.live) live.push_back(document);
    const auto id = from.empty() ? 4711 : live.empty() || one_in(6) ? any(from).first : any(live);
    const auto what = from.empty() || one_in(15) ? any_module() : from.at(id).module;
    m_story.push_back("session " + std::to_string(who.session) + " deletes document " + std::to_string(id));
    const auto got = request(who, [&](store::connection& with, const principal& by) {
        domain::remove_document(with, by, what, id, m_now);
    });
    expect(std::string("delete ") + name_of(what), got,
           got == answer::over ? got : mine(who).oracle.remove(who.session, what, id));
}

void ledger_player::take(const actor& who) {
    auto& oracle = mine(who).oracle;
    const auto& rows = one_in(15) ? other(who).oracle.stock : oracle.stock;
    domain::claim_wish wish;
    wish.use = one_in(4) ? claim_use::stocktaking : one_in(4) ? claim_use::transfer : claim_use::outbound;
    wish.stock = rows.empty() ? 4711 : &rows == &oracle.stock ? some_row(oracle) : any(rows).first;
    for (const auto& [token, one] : oracle.claims) // who holds a row may hold it again
        if (one.use == claim_use::stocktaking && one_in(6)) wish = {one.use, one.stock, 0};
    const auto there = rows.count(wish.stock) == 0 ? 0 : static_cast<int>(rows.at(wish.stock).on_hand);
    wish.amount = one_in(30) ? -1 : below(there / (one_in(3) ? 1 : 3) + 2);
    claim(who, wish);
}

void ledger_player::claim(const actor& who, const domain::claim_wish& wish) {
    m_story.push_back("session " + std::to_string(who.session) + " claims " + std::to_string(wish.amount) +
                      " of row " + std::to_string(wish.stock) + " for " +
                      std::to_string(static_cast<int>(wish.use)));
    std::string token;
    const auto got = request(who, [&](store::connection& with, const principal& by) {
        token = domain::take_claim(with, by, wish, m_now);
    });
    if (got == answer::done) mine(who).tokens.push_back(token);
    m_story.back() += " " + token;
    expect(wish.use == claim_use::stocktaking ? "hold" : "claim", got,
           got == answer::over ? got : mine(who).oracle.take(who.session, wish, token));
}

void ledger_player::give_back(const actor& who) {
    const auto& from = one_in(10) ? other(who).tokens : mine(who).tokens;
    const auto& live = mine(who).oracle.claims;
    const auto token = !live.empty() && one_in(2)   ? any(live).first
                       : from.empty() || one_in(20) ? std::string("Lnone")
                                                    : any(from);
    m_story.push_back("session " + std::to_string(who.session) + " gives back " + token);
    const auto got = request(who, [&](store::connection& with, const principal& by) {
        domain::give_back_claim(with, by, token, m_now);
    });
    if (got == answer::done) mine(who).oracle.give_back(who.session, token);
    expect("give back", got, got == answer::over ? got : answer::done);
}

} // namespace tavrok::test
