#pragma once

#include <array>
#include <functional>
#include <map>
#include <optional>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include "domain/count_cache.h"
#include "domain/ledger_oracle.h"
#include "domain/ledger_scene.h"

namespace tavrok::test {

/** The service and the oracle are not of one mind. */
class disagreement : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/** How often a call ended how, over many plays; the key is such as "close dropped". */
using play_figures = std::map<std::string, int>;

/** One play: two companies whose users do at random what users do, with failures between any two operations
 * of the store. After each call the answers and the whole state are compared with the oracles. */
class ledger_player {
public:
    ledger_player(scene& in, std::uint64_t seed, play_figures& figures);

    /** Makes the companies and logs their users in. This and play() throw `disagreement`. */
    void begin();
    void play(int steps);
    /** What was done, a line a call. */
    std::string story() const;

private:
    /** A company, and what it must be. */
    struct firm {
        ledger_company of;
        ledger_oracle oracle;
        std::int64_t version{0};
        std::vector<std::string> tokens{}; /**< of all claims that ever were */
    };
    /** A session at work. */
    struct actor {
        std::size_t firm;
        domain::user_key user;
        std::string token;
        std::int64_t session;
    };
    using deed = std::function<void(store::connection&, const domain::principal&)>;
    using module = domain::document_module;

    // chance
    int below(int end) { return static_cast<int>(m_random() % static_cast<std::uint64_t>(end)); }
    bool one_in(int count) { return below(count) == 0; }
    template <typename list>
    const auto& any(const list& of) {
        return *std::next(of.begin(), below(static_cast<int>(of.size())));
    }
    module any_module();

    // the world
    firm& mine(const actor& who) { return m_firms.at(who.firm); }
    firm& other(const actor& who) { return m_firms.at(1 - who.firm); }
    void make_firm(firm& made, const std::string& name);
    void log_in(std::size_t at, const domain::user_key& user);
    void end_sessions();
    void wait();
    void sweep();
    void retire();

    // calls
    void step();
    void step_of_documents(const actor& who);
    void step_of_claims(const actor& who);
    void write(const actor& who, module what);
    /** Gives the draft, 0 for none. */
    std::int64_t open(const actor& who, module what);
    void line(const actor& who, std::int64_t draft, module what);
    void count(const actor& who, std::int64_t draft);
    void move(const actor& who, std::int64_t draft);
    void announce(const actor& who, const domain::document_line& like);
    void drop_line(const actor& who);
    void close(const actor& who, std::int64_t id);
    void remove(const actor& who);
    void take(const actor& who);
    void claim(const actor& who, const domain::claim_wish& wish);
    void claim_for_line(const actor& who, std::int64_t draft, module what);
    void give_back(const actor& who);
    void summary(std::size_t at, bool whole);
    std::int64_t some_draft(const actor& who);
    std::int64_t some_row(const ledger_oracle& of);
    std::int64_t some_live(const std::map<std::int64_t, bool>& of);
    std::int64_t some_goods(std::int64_t usual, std::int64_t foreign, const std::map<std::int64_t, bool>& of);
    domain::document_line some_line(const actor& who, module what);
    domain::document_header some_header(const actor& who, module what);
    domain::taking_line some_count(const actor& who);
    domain::document_line some_move(const actor& who, std::int64_t draft);
    /** One out of which the draft's lines can take, mostly. */
    std::int64_t some_row(const actor& who, std::int64_t draft);
    /** Takes a row of the warehouse that the user has claimed for that use, where there is one. */
    void fill_from_row(const actor& who, domain::claim_use use, std::int64_t row,
                       domain::document_line& made);
    domain::summary_search some_search(const ledger_oracle& of);
    ledger_oracle::made newest_document(const firm& of);
    ledger_oracle::made newest_move(const firm& of);

    // running
    /** One transaction, which may fail first and is then done again. */
    answer attempt(const std::function<void(store::connection&)>& what);
    answer request(const actor& who, const deed& what);
    /** Compares what the service said with what it should have said, and both states. */
    void expect(const std::string& call, answer got, answer wanted);
    /** The company that acted, and the other one now and then. */
    void compare(bool version_too = false);
    void compare(firm& of, bool version_too);
    void compare_stock(store::connection& with, const firm& of);
    void compare_claims(store::connection& with, const firm& of);
    void compare_documents(store::connection& with, const firm& of);
    void compare_lines(store::connection& with, const firm& of);
    void compare_drafts(store::connection& with, const firm& of);

    scene& m_in;
    std::mt19937_64 m_random;
    std::string m_name; /**< in those of the companies */
    play_figures& m_figures;
    std::int64_t m_now{g_now};
    std::optional<domain::principal> m_untouched{}; /**< whose request is to be noted after its answer */
    std::array<firm, 2> m_firms{};
    std::size_t m_acting{0}; /**< of them */
    std::vector<actor> m_actors{};
    domain::count_cache m_counts{};
    std::vector<std::string> m_story{};
};

} // namespace tavrok::test
