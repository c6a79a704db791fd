#include <rapidcheck.h>

#include <algorithm>
#include <map>
#include <random>
#include <thread>

#include "domain/check.h"
#include "domain/interleave.h"
#include "domain/menu_edit.h"

namespace tavrok::domain {
namespace {

using test::g_now;
using test::is_refused;

class menu_model : public test::on_engine {};
ON_EVERY_ENGINE(menu_model);

constexpr std::int64_t g_unknown = 99'999;

struct node {
    std::int64_t parent;
    std::string name;
    std::string action;
    std::int64_t sort;
    int shown;
    std::int64_t level;
    bool operator==(const node&) const = default;
};
using table = std::map<std::int64_t, node>;

void flatten(const std::vector<menu_node>& nodes, std::int64_t parent, table& into) {
    for (const auto& one : nodes) {
        into[one.id] = {parent, one.name, one.action, one.sort, one.show, std::stoll(one.real_level)};
        flatten(one.child, one.id, into);
    }
}

table stored(test::scene& in) {
    table rows;
    flatten(in.read([](store::connection& with) { return whole_menu(with); }), 0, rows);
    return rows;
}

/** What must hold of a menu as a whole, with no thought of what was changed. */
bool sound(const table& rows) {
    std::map<std::pair<std::int64_t, std::string>, int> meanings;
    for (const auto& [id, one] : rows) {
        int depth = 1;
        for (auto at = one.parent; at != 0; at = rows.at(at).parent) {
            if (!rows.contains(at) || ++depth > g_menu_depth) return false;
        }
        if (one.level == 2 && (one.parent == 0 || rows.at(one.parent).level != 1)) return false;
        if (one.level != 2 && one.parent != 0 && rows.at(one.parent).level == 2) return false;
        if (one.level != 0 && ++meanings[{one.level == 2 ? one.parent : 0, one.action}] > 1) return false;
    }
    return true;
}

/** What must hold of the rows that the service was made with. */
bool kept(const table& seed, const table& rows) {
    return std::all_of(seed.begin(), seed.end(), [&](const auto& entry) {
        const auto& [id, was] = entry;
        const auto at = rows.find(id);
        if (at == rows.end()) return was.level == 0;
        const auto& is = at->second;
        return is.level == was.level && (was.level == 0 || is.action == was.action) &&
               (was.level != 2 || is.parent == was.parent);
    });
}

class editor {
public:
    editor(test::scene& in, const principal& who, const table& seed)
        : m_in(in), m_who(who), m_seed(seed), m_rows(stored(in)) {}

    void step() {
        const auto what = *rc::gen::inRange(0, 10);
        if (what < 4) {
            add();
        } else if (what < 8) {
            edit();
        } else {
            remove();
        }
    }
    void compare() const { RC_ASSERT(stored(m_in) == m_rows); }

private:
    /** A row of any kind, more often one that was added, now and then one that is not there. */
    std::int64_t some_row() const {
        const auto how = *rc::gen::inRange(0, 20);
        if (how == 0) return g_unknown;
        const auto own = m_rows.upper_bound(g_last_own_menu_row);
        const auto from = how < 14 && own != m_rows.end() ? own : m_rows.begin();
        const auto count = std::distance(from, m_rows.end());
        if (count == 0) return g_unknown;
        return std::next(from, *rc::gen::inRange<std::ptrdiff_t>(0, count))->first;
    }
    menu_wish some_wish() const {
        menu_wish wish;
        wish.name = *rc::gen::element<std::string>("甲", "乙", "c & d", "名=");
        wish.parent = *rc::gen::inRange(0, 4) == 0 ? 0 : some_row();
        wish.action =
            *rc::gen::element<std::string>("search", "add", "edit", "report", "chart", "user", "emp");
        wish.sort = *rc::gen::inRange(-2, 5);
        wish.shown = *rc::gen::inRange(0, 2);
        wish.real_level = *rc::gen::inRange(0, 3);
        return wish;
    }
    static node of(const menu_wish& wish) {
        return {wish.parent, wish.name, wish.action, wish.sort, wish.shown, *wish.real_level};
    }
    bool allowed(const table& next) const { return sound(next) && kept(m_seed, next); }
    void settle(bool done, table next) {
        RC_ASSERT(done == allowed(next));
        if (done) m_rows = std::move(next);
    }

    void add() {
        const auto wish = some_wish();
        std::int64_t id = 0;
        const bool done = !is_refused([&] {
            id = m_in.write([&](store::connection& with) { return add_menu_row(with, m_who, wish, g_now); });
        });
        if (done) RC_ASSERT(id > g_last_own_menu_row && !m_rows.contains(id));
        auto next = m_rows;
        next[done ? id : 1'000'000'000] = of(wish);
        settle(done, std::move(next));
    }
    void edit() {
        const auto id = some_row();
        auto wish = some_wish();
        if (const auto at = m_rows.find(id); at != m_rows.end() && *rc::gen::inRange(0, 3) > 0) {
            // mostly a change that leaves the meaning alone
            wish.action = at->second.action;
            wish.real_level = at->second.level;
            if (at->second.level == 2) wish.parent = at->second.parent;
        }
        const bool done = !is_refused([&] {
            m_in.write([&](store::connection& with) { edit_menu_row(with, m_who, id, wish, g_now); });
        });
        if (!m_rows.contains(id)) return RC_ASSERT_FALSE(done);
        auto next = m_rows;
        next[id] = of(wish);
        settle(done, std::move(next));
    }
    void remove() {
        const auto id = some_row();
        const bool done = !is_refused(
            [&] { m_in.write([&](store::connection& with) { remove_menu_row(with, m_who, id, g_now); }); });
        if (!m_rows.contains(id)) return RC_ASSERT_FALSE(done);
        auto next = m_rows;
        next.erase(id);
        for (bool more = true; more;) {
            more = std::erase_if(next, [&](const auto& one) {
                       return one.second.parent != 0 && !next.contains(one.second.parent);
                   }) > 0;
        }
        settle(done, std::move(next));
    }

    test::scene& m_in;
    principal m_who;
    const table& m_seed;
    table m_rows;
};

TEST_P(menu_model, any_run_of_changes_leaves_the_tree_that_an_oracle_expects) {
    test::scene in(GetParam());
    const auto seed = stored(in);
    const auto boss = in.log_in(in.boss);
    EXPECT_TRUE(rc::check([&] {
        editor one(in, boss, seed);
        const auto steps = *rc::gen::inRange(1, 25);
        for (int i = 0; i < steps; ++i)
            one.step();
        one.compare();
        RC_ASSERT(in.read([](store::connection& with) { return check(with); }).empty());
    }));
    EXPECT_GT(in.number("SELECT count(*) FROM audit WHERE what LIKE 'menu_%'"), 100);
}

/** Many move the same few rows about at once: whatever comes of it is a tree. */
TEST_P(menu_model, changes_at_the_same_time_leave_a_tree) {
    test::scene in(GetParam());
    const auto boss = in.log_in(in.boss);
    std::vector<std::int64_t> rows{0};
    for (int i = 0; i < 6; ++i) {
        rows.push_back(in.write([&](store::connection& with) {
            return add_menu_row(with, boss, {"n", 0, "a", 0, 1, 0}, g_now);
        }));
    }
    std::vector<std::thread> movers;
    std::atomic<int> done{0};
    for (unsigned seed = 1; seed <= 4; ++seed) {
        movers.emplace_back([&, seed] {
            std::minstd_rand chance(seed);
            for (int i = 0; i < 40; ++i) {
                const auto row = rows[1 + chance() % 6];
                const menu_wish wish{"n", rows[chance() % 7], "a", 0, 1, 0};
                done += !is_refused([&] {
                    in.write([&](store::connection& with) { edit_menu_row(with, boss, row, wish, g_now); });
                });
            }
        });
    }
    for (auto& one : movers)
        one.join();
    EXPECT_GT(done, 0);
    for (const auto& one : in.read([](store::connection& with) { return check(with); }))
        ADD_FAILURE() << one.text;
    EXPECT_EQ(static_cast<std::int64_t>(stored(in).size()), in.number("SELECT count(*) FROM menu"));
}

} // namespace
} // namespace tavrok::domain
