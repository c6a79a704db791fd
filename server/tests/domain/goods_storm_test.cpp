#include <random>
#include <thread>

#include "domain/goods_scene.h"

namespace tavrok::domain {
namespace {

using test::g_categories;
using test::g_departments;
using test::g_now;

class goods_storm : public test::goods_test {};
ON_EVERY_ENGINE(goods_storm);

/** One user who adds, moves and deletes without looking. */
class hand {
public:
    hand(test::scene& in, const principal& who, unsigned seed) : m_in(in), m_who(who), m_random(seed) {}

    void work(int deeds) {
        for (int i = 0; i < deeds; ++i)
            attempt();
    }
    int done() const { return m_done; }

private:
    std::int64_t up_to(std::int64_t most) {
        return std::uniform_int_distribution<std::int64_t>(0, most)(m_random);
    }
    /** An id that may be live, retired or not yet given; now and then the root. */
    std::int64_t some_id() { return up_to(5) == 0 ? 0 : 1001 + up_to(25); }

    void attempt() {
        const auto what = up_to(11);
        const auto& tree = up_to(3) == 0 ? g_departments : g_categories;
        const auto one = some_id();
        const auto other = some_id();
        const auto deed = [&](store::connection& with) {
            if (what < 4) {
                add_node(with, m_who, tree, "n", one, g_now);
            } else if (what < 6) {
                remove_node(with, m_who, tree, one, g_now);
            } else if (what < 8) {
                add_product(with, m_who, {.name = "p", .category = one}, g_now);
            } else if (what < 10) {
                edit_product(with, m_who, {.id = one, .category = other}, g_now);
            } else {
                remove_product(with, m_who, one, g_now);
            }
        };
        // as the dispatcher does: what a unique index refused is tried once more
        for (int tries = 0; tries < 2; ++tries) {
            try {
                m_in.write(deed);
                ++m_done;
                return;
            } catch (const refused&) {
                return;
            } catch (const store::error& error) {
                if (error.kind() == store::error_kind::unique && tries == 0) continue;
                ADD_FAILURE() << error.what();
                return;
            }
        }
    }

    test::scene& m_in;
    principal m_who;
    std::mt19937 m_random;
    int m_done{0};
};

TEST_P(goods_storm, leaves_nothing_live_below_what_is_gone) {
    constexpr unsigned users = 6;
    const auto notes = in->number("SELECT count(*) FROM audit");
    std::vector<hand> hands;
    for (unsigned i = 0; i < users; ++i)
        hands.emplace_back(*in, boss, 4711 + i);
    std::vector<std::thread> threads;
    for (auto& one : hands)
        threads.emplace_back([&one] { one.work(150); });
    for (auto& one : threads)
        one.join();
    int done = 0;
    for (const auto& one : hands)
        done += one.done();
    EXPECT_GT(done, 100);
    EXPECT_EQ(in->number("SELECT count(*) FROM audit"), notes + done);
    EXPECT_GT(in->number("SELECT count(*) FROM category WHERE state = 2"), 0);
    sound();
}

} // namespace
} // namespace tavrok::domain
