#include <atomic>

#include "domain/interleave.h"
#include "domain/products.h"
#include "domain/staff_scene.h"
#include "domain/users.h"
#include "store/records/companies.h"
#include "store/records/products.h"
#include "store/records/users.h"

namespace tavrok::domain {
namespace {

using test::g_now;

/** Changes that take the same rows of the database, stopped between two of them. A deadlock would be broken
 * by the database and the loser would run again: so nothing may run twice. */
class lock_order : public testing::Test {
protected:
    void SetUp() override {
        SKIP_WITHOUT("postgresql");
        in = std::make_unique<test::staff_scene>("postgresql");
        boss = in->log_in(in->boss);
        hand = in->log_in(in->hand);
    }
    template <typename first_t, typename second_t, typename last_t>
    test::met meet(const first_t& first, const second_t& second, const last_t& last) {
        return test::interleave(
            *in,
            [&](store::connection& with) {
                ++runs;
                first(with);
            },
            [&](store::connection& with) {
                ++runs;
                second(with);
            },
            last);
    }
    void remove_hand(store::connection& with) { remove_user(with, boss, in->hand.user, g_now); }
    void lock_company(store::connection& with) { store::bump_data_version(with, in->company); }

    std::unique_ptr<test::staff_scene> in;
    principal boss;
    principal hand;
    std::atomic<int> runs{0};
};

TEST_F(lock_order, an_addition_of_a_user_who_is_removed) {
    const auto outcome = meet(
        [&](store::connection& with) {
            store::insert_product(with, in->company, in->hand.user, {0, g_now, 0, 0, {"货"}, {}}, {"货"});
            store::change_list_counter(with, in->company, store::g_product_list, 1);
        },
        [&](store::connection& with) { remove_hand(with); },
        [&](store::connection& with) { lock_company(with); });
    EXPECT_TRUE(outcome.waited);
    EXPECT_FALSE(outcome.failure);
    EXPECT_EQ(runs, 2);
    EXPECT_EQ(in->number("SELECT count(*) FROM app_user WHERE username = 'hand' AND removed_at IS NULL"), 0);
}

TEST_F(lock_order, an_employee_and_a_warehouse_of_a_user_who_is_removed) {
    const auto keeper = std::to_string(in->hire(in->chief, test::some_employee("0")));
    for (const bool hires : {true, false}) {
        runs = 0;
        const auto going = in->user(in->company, hires ? "going" : "gone", 2);
        const auto who = in->log_in(going);
        const auto outcome =
            meet([&](store::connection& with) { store::remove_user(with, in->company, going.user, g_now); },
                 [&](store::connection& with) {
                     if (hires) {
                         add_employee(with, who, test::some_employee("1"), g_now);
                     } else {
                         add_warehouse(with, who, test::some_warehouse("仓"), keeper, g_now);
                     }
                 },
                 [&](store::connection& with) { lock_company(with); });
        EXPECT_TRUE(outcome.waited);
        ASSERT_TRUE(outcome.failure);
        EXPECT_TRUE(test::is_refused([&] { std::rethrow_exception(outcome.failure); }))
            << "removed meanwhile";
        EXPECT_EQ(runs, 2);
    }
}

TEST_F(lock_order, an_edit_of_a_user_who_is_removed) {
    const auto outcome =
        meet([&](store::connection& with) { store::remove_user(with, in->company, in->hand.user, g_now); },
             [&](store::connection& with) {
                 edit_user(with, boss, {in->hand.user, "n", "", "h@example.com", 1, ""}, g_now);
             },
             [&](store::connection& with) { lock_company(with); });
    EXPECT_TRUE(outcome.waited);
    EXPECT_TRUE(outcome.failure);
    EXPECT_EQ(runs, 2);
}

TEST_F(lock_order, a_sweep_and_the_end_of_somebody_s_access) {
    in->write([&](store::connection& with) {
        complete_login(with, find_candidate(with, "hand", "p", g_now - 48 * 3600), true, "p",
                       g_now - 48 * 3600);
    });
    const auto outcome = meet(
        [&](store::connection& with) {
            with.execute({"", "DELETE FROM relogin_secret WHERE user_id = ?"}, {in->hand.user});
        },
        [&](store::connection& with) { sweep(with, g_now); },
        [&](store::connection& with) {
            with.execute({"", "DELETE FROM session WHERE user_id = ?"}, {in->hand.user});
        });
    EXPECT_TRUE(outcome.waited);
    EXPECT_FALSE(outcome.failure);
    EXPECT_EQ(runs, 2);
}

} // namespace
} // namespace tavrok::domain
