#include <gtest/gtest.h>

#include "api/harness.h"

namespace tavrok::test {
namespace {

const std::string add_path = "wms_company/do_add";
const std::string add_body = "&type=1&name=twice&phone=1&address=a";

class repeats_test : public testing::TestWithParam<std::string> {
protected:
    void SetUp() override {
        SKIP_WITHOUT(GetParam());
        world = std::make_unique<harness>(GetParam());
        cookie = world->administrator("owner");
    }
    wish add() const { return {add_path, add_body, cookie}; }
    /** The answer, left on its way. */
    reply take(std::future<reply> from) {
        if (from.wait_for(std::chrono::seconds(60)) != std::future_status::ready) {
            ADD_FAILURE() << "no answer";
            return {};
        }
        return from.get();
    }
    bool waits(const std::future<reply>& one) {
        return one.wait_for(std::chrono::seconds(0)) != std::future_status::ready;
    }

    std::unique_ptr<harness> world;
    std::string cookie;
};

TEST_P(repeats_test, a_request_whose_answer_was_lost_takes_effect_once) {
    auto first = take(world->begin(add()));
    first.sent(false);
    const auto again = world->ask(add());
    EXPECT_EQ(again.body, first.body);
    EXPECT_EQ(world->partners_of(cookie), 1);
}

TEST_P(repeats_test, the_same_body_after_an_answer_that_arrived_is_a_new_wish) {
    const auto first = world->ask(add());
    const auto second = world->ask(add());
    const auto third = world->ask(add());
    EXPECT_NE(second.body, first.body);
    EXPECT_NE(third.body, second.body);
    EXPECT_EQ(world->partners_of(cookie), 3);
}

TEST_P(repeats_test, a_repeated_answer_that_arrived_ends_the_repetition) {
    auto first = take(world->begin(add()));
    first.sent(false);
    EXPECT_EQ(world->ask(add()).body, first.body);
    EXPECT_NE(world->ask(add()).body, first.body);
    EXPECT_EQ(world->partners_of(cookie), 2);
}

TEST_P(repeats_test, two_at_once_are_one) {
    auto one = world->begin(add());
    auto two = world->begin(add());
    auto first = take(std::move(one));
    if (waits(two)) first.sent(false);
    auto second = take(std::move(two));
    EXPECT_EQ(first.body, second.body);
    EXPECT_EQ(world->partners_of(cookie), 1);
    if (first.sent) first.sent(false);
    if (second.sent) second.sent(true);
}

TEST_P(repeats_test, what_comes_while_the_answer_is_on_its_way_waits_to_hear_whether_it_arrived) {
    auto first = take(world->begin(add()));
    auto pending = world->begin(add());
    EXPECT_TRUE(waits(pending));
    first.sent(true);
    auto second = take(std::move(pending));
    EXPECT_NE(second.body, first.body);
    auto lost = world->begin(add());
    EXPECT_TRUE(waits(lost));
    second.sent(false);
    auto third = take(std::move(lost));
    EXPECT_EQ(third.body, second.body);
    third.sent(true);
    EXPECT_EQ(world->partners_of(cookie), 2);
}

TEST_P(repeats_test, another_instance_knows_what_was_not_delivered) {
    auto first = take(world->begin(add()));
    first.sent(false);
    world->replace_service();
    EXPECT_EQ(world->ask(add()).body, first.body);
    EXPECT_EQ(world->partners_of(cookie), 1);
}

TEST_P(repeats_test, another_instance_knows_what_was_delivered) {
    const auto first = world->ask(add());
    world->replace_service();
    EXPECT_NE(world->ask(add()).body, first.body);
    EXPECT_EQ(world->partners_of(cookie), 2);
}

TEST_P(repeats_test, the_database_hears_of_an_arrival_by_the_timer) {
    const auto first = world->ask(add());
    EXPECT_EQ(world->timer.waiting(), 1u);
    world->timer.turn(std::chrono::seconds(1));
    EXPECT_NE(world->ask(add()).body, first.body);
    EXPECT_EQ(world->partners_of(cookie), 2);
}

TEST_P(repeats_test, after_two_minutes_it_is_a_new_wish) {
    auto first = take(world->begin(add()));
    first.sent(false);
    world->now += 119;
    auto repeated = take(world->begin(add()));
    EXPECT_EQ(repeated.body, first.body);
    repeated.sent(false);
    world->now += 240;
    EXPECT_NE(world->ask(add()).body, first.body);
}

TEST_P(repeats_test, another_session_or_another_body_is_no_repeat) {
    auto first = take(world->begin(add()));
    first.sent(false);
    const auto who = world->principal_of(cookie);
    const auto second_session = world->session_of({who.company, who.user});
    EXPECT_NE(world->ask(add_path, add_body, second_session).body, first.body);
    EXPECT_NE(world->ask(add_path, add_body + "&remark=x", cookie).body, first.body);
    EXPECT_EQ(world->partners_of(cookie), 3);
}

TEST_P(repeats_test, a_refusal_changes_nothing_and_is_not_kept) {
    const auto id = world->add_partner(cookie, 1, "kept");
    const auto body = "id=" + std::to_string(id + 1);
    auto refused = take(world->begin({"wms_company/do_delete", body, cookie}));
    EXPECT_EQ(refused.body, "0");
    EXPECT_EQ(world->partners_of(cookie), 1);
    ASSERT_EQ(world->add_partner(cookie, 1, "the next one"), id + 1);
    EXPECT_EQ(world->ask("wms_company/do_delete", body, cookie).body, "1");
}

TEST_P(repeats_test, many_at_once_from_many_sessions_all_take_effect) {
    const auto who = world->principal_of(cookie);
    std::vector<std::future<reply>> pending;
    for (int i = 0; i < 40; ++i) {
        const auto own = world->session_of({who.company, who.user});
        pending.push_back(world->begin({add_path, add_body, own}));
    }
    for (auto& one : pending) {
        auto got = take(std::move(one));
        EXPECT_EQ(got.body.rfind("{\"http_state\":1,", 0), 0u) << got.body;
        if (got.sent) got.sent(true);
    }
    EXPECT_EQ(world->partners_of(cookie), 40);
}

INSTANTIATE_TEST_SUITE_P(engines, repeats_test, testing::ValuesIn(engines()));

} // namespace
} // namespace tavrok::test
