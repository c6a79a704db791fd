#include <rapidcheck.h>

#include <algorithm>
#include <map>

#include "domain/check.h"
#include "domain/fold.h"
#include "domain/scene.h"

namespace tavrok::domain {
namespace {

using test::g_now;

class partner_model : public test::on_engine {};
ON_EVERY_ENGINE(partner_model);

/** Pieces that searches stumble over. */
rc::Gen<std::string> text() {
    const auto piece = rc::gen::element<std::string>("仓", "库", "仓库", "%", "_", "\\", "a", "A", "Z", "é",
                                                     "É", "Ж", "ж", "'", "\"", " ", "&", "0", "ß", "😀");
    return rc::gen::map(rc::gen::resize(6, rc::gen::container<std::vector<std::string>>(piece)),
                        [](const std::vector<std::string>& pieces) {
                            std::string made;
                            for (const auto& one : pieces)
                                made += one;
                            return made;
                        });
}

partner random_partner() {
    partner made;
    made.type = *rc::gen::inRange(1, 4);
    made.name = "n" + *text();
    made.phone = "1";
    made.address = "a" + *text();
    made.account = *text();
    made.bank = *text();
    made.remark = *text();
    return made;
}

bool holds(const std::string& where, const std::string& what) {
    return fold(where).find(fold(what)) != std::string::npos;
}

/** What the list must be: plain vectors and loops. */
struct oracle {
    std::map<std::int64_t, partner> live;

    std::vector<std::int64_t> ids(const partner_search& search) const {
        std::vector<std::int64_t> found;
        for (const auto& [id, one] : live) {
            if (search.type != partner_type::any && one.type != static_cast<int>(search.type)) continue;
            if (holds(one.name, search.name) && holds(one.address, search.address) &&
                holds(one.account, search.account) && holds(one.bank, search.bank) &&
                holds(one.remark, search.remark)) {
                found.push_back(id);
            }
        }
        std::reverse(found.begin(), found.end());
        return found;
    }
};

partner_search random_search() {
    partner_search search;
    search.type = static_cast<partner_type>(*rc::gen::inRange(1, 5));
    for (auto word : {&partner_search::name, &partner_search::address, &partner_search::account,
                      &partner_search::bank, &partner_search::remark}) {
        if (*rc::gen::inRange(0, 3) == 0) search.*word = *text();
    }
    return search;
}

class company {
public:
    company(test::scene& in, const principal& who, count_cache& counts)
        : m_in(in), m_who(who), m_counts(counts) {}

    void step() {
        const auto what = *rc::gen::inRange(0, 10);
        if (what < 5 || m_model.live.empty()) return add();
        const auto at =
            std::next(m_model.live.begin(), *rc::gen::inRange(0, static_cast<int>(m_model.live.size())));
        if (what < 8) return edit(at->second);
        m_in.write([&](store::connection& with) { remove_partner(with, m_who, at->first, g_now); });
        m_model.live.erase(at);
    }

    /** Turns all pages over: each once, newest first, no double, no hole, and the totals fit. */
    void compare() {
        const auto search = random_search();
        const auto size = *rc::gen::inRange<std::int64_t>(1, 6);
        const auto wanted = m_model.ids(search);
        std::vector<std::int64_t> got;
        std::int64_t pages = 1;
        for (std::int64_t num = 1; num <= pages; ++num) {
            const auto page = list(search, num, size);
            pages = std::max<std::int64_t>(page.page_count, 1);
            RC_ASSERT(page.total == static_cast<std::int64_t>(wanted.size()));
            RC_ASSERT(page.page_count == (page.total + size - 1) / size);
            for (const auto& one : page.list)
                got.push_back(one.id);
            if (num < page.page_count) RC_ASSERT(page.list.size() == static_cast<std::size_t>(size));
            for (const auto& one : page.list)
                same(one, m_model.live.at(one.id));
        }
        RC_ASSERT(got == wanted);
        if (!wanted.empty()) RC_ASSERT(list(search, -1, size).list.back().id == wanted.back());
    }

private:
    void add() {
        auto what = random_partner();
        const auto made =
            m_in.write([&](store::connection& with) { return add_partner(with, m_who, what, g_now); });
        what.id = made.id;
        m_model.live[made.id] = what;
    }

    void edit(partner& one) {
        partner_change change;
        change.id = one.id;
        if (*rc::gen::arbitrary<bool>()) change.name = one.name = "m" + *text();
        if (*rc::gen::arbitrary<bool>()) change.remark = one.remark = *text();
        if (*rc::gen::arbitrary<bool>()) change.bank = one.bank = *text();
        m_in.write([&](store::connection& with) { edit_partner(with, m_who, change, g_now); });
    }

    partner_page list(const partner_search& search, std::int64_t num, std::int64_t size) {
        return m_in.read(
            [&](store::connection& with) { return list_partners(with, m_who, search, num, size, m_counts); });
    }

    static void same(const partner& one, const partner& other) {
        RC_ASSERT(one.type == other.type);
        RC_ASSERT(one.name == other.name);
        RC_ASSERT(one.address == other.address);
        RC_ASSERT(one.account == other.account);
        RC_ASSERT(one.bank == other.bank);
        RC_ASSERT(one.remark == other.remark);
    }

    test::scene& m_in;
    principal m_who;
    count_cache& m_counts;
    oracle m_model;
};

TEST_P(partner_model, any_run_of_changes_leaves_the_lists_that_an_oracle_expects) {
    test::scene in(GetParam());
    count_cache counts(4096); // small, so that it forgets within a run
    int run = 0;
    EXPECT_TRUE(rc::check([&] {
        // two companies side by side in every run; fresh ones, so that runs do not meet
        std::vector<company> both;
        for (int i = 0; i < 2; ++i) {
            ++run;
            const auto id = in.write([&](store::connection& with) {
                return create_company(with, "公司 " + std::to_string(run), false, g_now);
            });
            both.emplace_back(in, in.log_in(in.user(id, "u" + std::to_string(run), 1)), counts);
        }
        const auto steps = *rc::gen::inRange(0, 30);
        for (int i = 0; i < steps; ++i) {
            auto& one = both[static_cast<std::size_t>(*rc::gen::inRange(0, 2))];
            one.step();
            if (i % 4 == 0) one.compare();
        }
        for (auto& one : both) {
            for (int i = 0; i < 4; ++i)
                one.compare();
        }
    }));
    EXPECT_TRUE(in.read([](store::connection& with) { return check(with); }).empty());
}

} // namespace
} // namespace tavrok::domain
