#include <gtest/gtest.h>

#include "api/faulty_database.h"
#include "api/harness.h"

namespace tavrok::test {
namespace {

class faults_test : public testing::TestWithParam<std::string> {
protected:
    void SetUp() override {
        SKIP_WITHOUT(GetParam());
        world = std::make_unique<harness>(GetParam());
        cookie = world->administrator("owner");
        faulty = std::make_unique<faulty_database>(*world->database);
        api::settings options;
        options.sweep_every = std::chrono::minutes(0);
        world->service = api::service::make(
            *faulty, options, [this] { return world->now.load(); },
            [this](std::chrono::milliseconds delay, std::function<void()> task) {
                world->timer.after(delay, std::move(task));
            });
    }
    void TearDown() override {
        if (world) world->service.reset();
    }
    std::string add() {
        return world->ask("wms_company/do_add", "&type=1&name=n&phone=1&address=a", cookie).body;
    }

    std::unique_ptr<harness> world;
    std::unique_ptr<faulty_database> faulty;
    std::string cookie;
};

using fault = faulty_database::fault;
const std::string not_done = R"({"http_state":0})";

TEST_P(faults_test, a_write_that_fails_is_a_failure_and_the_next_one_works) {
    faulty->next = fault::refuse_write;
    EXPECT_EQ(add(), not_done);
    EXPECT_EQ(world->partners_of(cookie), 0);
    EXPECT_NE(add(), not_done);
    EXPECT_EQ(world->partners_of(cookie), 1);
}

TEST_P(faults_test, a_commit_of_unknown_outcome_that_happened_is_answered_from_its_record) {
    faulty->next = fault::lose_after_commit;
    EXPECT_NE(add(), not_done);
    EXPECT_EQ(world->partners_of(cookie), 1);
    EXPECT_EQ(faulty->writes, 2);
}

TEST_P(faults_test, a_commit_of_unknown_outcome_after_a_former_wish_takes_effect_once) {
    const auto first = add();
    faulty->next = fault::lose_after_commit;
    const auto second = add();
    EXPECT_NE(second, first);
    EXPECT_NE(second, not_done);
    EXPECT_EQ(world->partners_of(cookie), 2);
}

TEST_P(faults_test, a_commit_of_unknown_outcome_that_did_not_happen_is_done_once_more) {
    faulty->next = fault::lose_before_commit;
    EXPECT_NE(add(), not_done);
    EXPECT_EQ(world->partners_of(cookie), 1);
}

TEST_P(faults_test, a_read_that_fails_is_a_failure_in_the_form_of_the_endpoint) {
    faulty->next = fault::refuse_read;
    EXPECT_EQ(world->ask("wms_menu/get_menu", "action=list", cookie).body, "[]");
    EXPECT_EQ(world->ask("login/check_login", "username=a&password=b", "").body,
              R"({"user":{"username":""},"wms_permission":[]})");
    EXPECT_EQ(world->ask({"readyz", "", "", "192.0.2.1", "GET"}).status, 503u);
    faulty->next = fault::none;
    EXPECT_NE(world->ask("wms_menu/get_menu", "action=list", cookie).body, "[]");
}

TEST_P(faults_test, small_writes_that_fail_are_tried_again) {
    const auto first = add();
    faulty->next = fault::refuse_write;
    world->timer.turn(std::chrono::milliseconds(100));
    ASSERT_EQ(world->timer.waiting(), 1u);
    EXPECT_NE(add(), first);
    world->service.reset();
    world->replace_service();
    EXPECT_EQ(world->partners_of(cookie), 2);
    add();
    EXPECT_EQ(world->partners_of(cookie), 3);
}

INSTANTIATE_TEST_SUITE_P(engines, faults_test, testing::ValuesIn(engines()));

} // namespace
} // namespace tavrok::test
