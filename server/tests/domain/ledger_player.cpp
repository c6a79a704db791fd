#include "domain/ledger_player.h"

#include <utility>

#include "domain/document_kinds.h"
#include "domain/products.h"
#include "domain/refused.h"
#include "domain/warehouses.h"
#include "support/failing_connection.h"

namespace tavrok::test {

using domain::principal;

namespace {

const char* word_of(answer what) {
    switch (what) {
        case answer::done:
            return "done";
        case answer::refused:
            return "refused";
        case answer::dropped:
            return "dropped";
        case answer::over:
            return "over";
    }
    return "";
}

/** The service gives rights as pairs of page and right. */
void give_rights(principal& who) {
    using enum domain::document_module;
    for (const auto& [module, kinds] : {std::pair{outbound, 6}, {stocktaking, 1}, {transfer, 1}}) {
        for (std::int64_t type = 1; type <= kinds; ++type) {
            for (const std::string right : {"add", "delete"}) {
                if (ledger_oracle::ordinary_may(module, type, right)) {
                    who.rights.emplace(domain::page_of(module, type), right);
                }
            }
        }
    }
}

} // namespace

// ---- running

answer ledger_player::attempt(const std::function<void(store::connection&)>& what) {
    const bool fails = one_in(3);
    const int at = 1 + below(one_in(2) ? 8 : 40);
    const auto how = one_in(2) ? failing_connection::way::error : failing_connection::way::stop;
    const auto run = [&](const std::function<void(store::connection&)>& job) {
        try {
            m_in.write([&](store::connection& with) { job(with); });
        } catch (const domain::refused&) {
            return answer::refused;
        }
        return answer::done;
    };
    if (fails) {
        try {
            return run([&](store::connection& real) {
                failing_connection with(real, at, how);
                what(with);
                with.commit();
            });
        } catch (const store::error& failed) {
            if (failed.kind() != store::error_kind::other) throw;
        } catch (const stopped&) {
        }
        ++m_figures["failure injected"];
        compare(true);
    }
    return run(what);
}

answer ledger_player::request(const actor& who, const deed& what) {
    m_acting = who.firm;
    principal asked;
    bool over = false;
    auto result = attempt([&](store::connection& with) {
        auto found = domain::resume(with, who.token, m_now);
        over = !found;
        if (over) return;
        if (!found->administrator) give_rights(*found);
        asked = *found;
        domain::come_back(with, asked, m_now);
        what(with, asked);
    });
    if (over) result = answer::over;
    if (!over && domain::needs_touch(asked, m_now)) m_untouched = asked;
    const bool alive = mine(who).oracle.request(who.session);
    if (alive == over) throw disagreement(over ? "a session is over too early" : "a session lives on");
    return result;
}

void ledger_player::expect(const std::string& call, answer got, answer wanted) {
    m_story.back() += std::string(": ") + word_of(got);
    ++m_figures[call + ' ' + word_of(got)];
    if (got != wanted) throw disagreement(call + ": should have been " + word_of(wanted));
    compare();
    if (!m_untouched) return;
    const auto who = *std::exchange(m_untouched, std::nullopt);
    attempt([&](store::connection& with) { domain::touch(with, who, m_now); });
}

std::string ledger_player::story() const {
    std::string text;
    for (const auto& one : m_story)
        text += one + '\n';
    return text;
}

// ---- the world

ledger_player::ledger_player(scene& in, std::uint64_t seed, play_figures& figures)
    : m_in(in), m_random(seed), m_name(std::to_string(seed)), m_figures(figures) {}

void ledger_player::begin() {
    for (std::size_t i = 0; i < m_firms.size(); ++i) {
        make_firm(m_firms[i], m_name + (i == 0 ? " 甲" : " 乙"));
        const auto& of = m_firms[i].of;
        for (const auto& user : {of.boss, of.deputy, of.hand})
            log_in(i, user);
    }
    for (int documents = 0; documents < 6; ++documents)
        write(any(m_actors), module::inbound); // something to begin with
    compare();
}

void ledger_player::make_firm(firm& made, const std::string& name) {
    made.of = m_in.write([&](store::connection& with) { return make_ledger_company(with, name, m_now); });
    for (const auto id : made.of.products)
        made.oracle.products[id] = true;
    for (const auto id : made.of.warehouses)
        made.oracle.warehouses[id] = true;
    made.oracle.partners.assign(made.of.partners.begin(), made.of.partners.end());
    made.oracle.dept = made.of.dept;
    made.oracle.employee = made.of.employee;
    made.oracle.ordinary = made.of.hand.user;
    made.oracle.now = m_now;
    compare(made, false);
}

void ledger_player::log_in(std::size_t at, const domain::user_key& user) {
    m_story.push_back("log in " + std::to_string(user.user));
    actor made{at, user, {}, 0};
    m_acting = at;
    attempt([&](store::connection& with) {
        made.token = domain::open_session(with, user.company, user.user, "192.0.2.1", m_now);
        made.session = domain::resume(with, made.token, m_now).value().session;
    });
    m_firms[at].oracle.log_in(user.user, made.session);
    m_actors.push_back(made);
}

void ledger_player::end_sessions() {
    const auto who = any(m_actors);
    m_acting = who.firm;
    m_story.push_back("end the sessions of " + std::to_string(who.user.user));
    attempt([&](store::connection& with) { domain::void_access(with, who.user.company, who.user.user); });
    mine(who).oracle.end_sessions_of(who.user.user);
    compare();
}

void ledger_player::wait() {
    constexpr std::int64_t waits[] = {5, 20, 70, 900, 3000, 3700, 7300, 5 * 3600, 9 * 3600, 25 * 3600};
    const auto most = one_in(3) ? 10 : 6;
    auto until = m_now + waits[below(most)];
    const auto doubtful = [&](const firm& one) { return one.oracle.is_doubtful(until); };
    while (doubtful(m_firms[0]) || doubtful(m_firms[1]))
        until += 31;
    m_story.push_back("wait " + std::to_string(until - m_now));
    m_now = until;
    for (auto& one : m_firms)
        one.oracle.wait_until(m_now);
}

void ledger_player::sweep() {
    m_story.emplace_back("sweep");
    attempt([&](store::connection& with) { domain::sweep(with, m_now); });
    for (auto& one : m_firms)
        one.oracle.sweep();
    compare();
    for (const auto& one : m_firms) {
        for (const auto& [token, claim] : one.oracle.lapsed) {
            const auto active =
                m_in.number("SELECT count(*) FROM claim WHERE state = 1 AND token = '" + token + "'");
            if (active != 0) throw disagreement("the sweep left the claim " + token);
        }
    }
}

void ledger_player::retire() {
    const auto& who = any(m_actors);
    auto& to = mine(who);
    const bool product = one_in(2);
    auto& all = product ? to.oracle.products : to.oracle.warehouses;
    const bool fresh = one_in(3);
    std::vector<std::int64_t> named; // by drafts: they must notice
    for (const auto& [draft, one] : to.oracle.drafts)
        for (const auto& [line, of] : one.lines)
            named.push_back(product ? of.what.product : of.what.warehouse);
    if (!product) {
        for (const auto& [draft, one] : to.oracle.drafts)
            if (one.module == module::transfer)
                named.push_back(one_in(2) ? one.warehouse_out : one.warehouse_in);
    }
    const auto& foreign = other(who).of;
    auto id = named.empty() || one_in(3) ? any(all).first : any(named);
    if (one_in(8)) id = any(product ? foreign.products : foreign.warehouses);
    m_story.push_back((fresh ? "add a " : "retire ") + std::string(product ? "product " : "warehouse ") +
                      std::to_string(id));
    std::int64_t made = 0;
    const auto got = request(who, [&](store::connection& with, const principal& by) {
        domain::warehouse house;
        house.name = "仓";
        if (fresh && product) {
            made = domain::add_product(with, by, {.name = "货"}, m_now).id;
        } else if (fresh) {
            made = domain::add_warehouse(with, by, house, std::to_string(to.of.employee), m_now).id;
        } else if (product) {
            domain::remove_product(with, by, id, m_now);
        } else {
            domain::remove_warehouse(with, by, id, m_now);
        }
    });
    if (got != answer::over && fresh) all[made] = true;
    const auto wanted = got == answer::over ? got : fresh ? answer::done : to.oracle.retire(all, id);
    expect(fresh ? "add goods" : "retire", got, wanted);
}

// ---- what the users do

void ledger_player::play(int steps) {
    for (int i = 0; i < steps; ++i)
        step();
    for (std::size_t i = 0; i < m_firms.size(); ++i) {
        compare(m_firms[i], false);
        summary(i, true);
    }
}

void ledger_player::step() {
    const auto what = below(100);
    if (what < 6) return wait();
    if (what < 10) {
        const auto at = static_cast<std::size_t>(below(2));
        const auto& of = m_firms[at].of;
        log_in(at, any(std::vector{of.boss, of.deputy, of.hand}));
        return compare();
    }
    if (what < 11) return end_sessions();
    if (what < 13) return sweep();
    if (what < 15) return retire();
    if (what < 21) return summary(static_cast<std::size_t>(below(2)), one_in(4));
    // mostly somebody whose session lives
    auto who = any(m_actors);
    for (int i = 0; i < 12 && mine(who).oracle.sessions.at(who.session).ended; ++i)
        who = any(m_actors);
    what < 72 ? step_of_documents(who) : step_of_claims(who);
}

} // namespace tavrok::test
