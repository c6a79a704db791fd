#include <gtest/gtest.h>

#include "api/documents_world.h"
#include "api/faulty_database.h"
#include "api/harness.h"

namespace tavrok::test {
namespace {

using fault = faulty_database::fault;
const std::string not_done = R"({"http_state":0})";
const std::string add_path = "wms_company/do_add";

/** Requests that somebody may give up, and writes of which it is not known at once whether they took place.
 */
class outcomes : public testing::TestWithParam<std::string> {
protected:
    struct under_way {
        std::shared_ptr<http::fate> outcome;
        std::future<http::response> answer;
    };

    void SetUp() override {
        SKIP_WITHOUT(GetParam());
        world = std::make_unique<harness>(GetParam());
        cookie = world->administrator("owner");
        faulty = std::make_unique<faulty_database>(*world->database);
        api::settings options;
        options.sweep_every = std::chrono::minutes(0);
        world->service = api::service::make(
            *faulty, options,
            [this] {
                if (during_work) during_work();
                return world->now.load();
            },
            [this](std::chrono::milliseconds delay, std::function<void()> task) {
                world->timer.after(delay, std::move(task));
            });
    }
    void TearDown() override {
        if (world) world->service.reset();
    }
    under_way begin(const std::string& path, const std::string& body) {
        auto promise = std::make_shared<std::promise<http::response>>();
        http::request request{"POST", path, body, cookie, "192.0.2.9", "o"};
        under_way made{request.outcome, promise->get_future()};
        world->service->handle(std::move(request),
                               [promise](http::response answer) { promise->set_value(std::move(answer)); });
        return made;
    }
    under_way begin_add() { return begin(add_path, "&type=1&name=n&phone=1&address=a"); }
    /** Waits, while the hours pass that the service is willing to wait. */
    http::response end(under_way& one) {
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(60);
        while (one.answer.wait_for(std::chrono::milliseconds(1)) != std::future_status::ready) {
            world->timer.turn(std::chrono::seconds(10));
            if (std::chrono::steady_clock::now() > deadline) {
                ADD_FAILURE() << "no answer";
                return {};
            }
        }
        auto got = one.answer.get();
        if (got.on_sent) got.on_sent(true);
        return got;
    }
    http::response ask(const std::string& path, const std::string& body) {
        auto one = begin(path, body);
        return end(one);
    }
    http::response add() {
        auto one = begin_add();
        return end(one);
    }
    std::int64_t partners() { return world->partners_of(cookie); }

    std::unique_ptr<harness> world;
    std::unique_ptr<faulty_database> faulty;
    std::string cookie;
    std::function<void()> during_work;
};

TEST_P(outcomes, what_is_given_up_while_it_waits_is_not_done) {
    faulty->next = fault::hold_job;
    auto one = begin_add();
    EXPECT_TRUE(one.outcome->give_up());
    faulty->let_go();
    EXPECT_EQ(end(one).body, not_done);
    EXPECT_EQ(partners(), 0);
}

TEST_P(outcomes, what_is_given_up_while_it_runs_is_not_done) {
    faulty->next = fault::hold_job;
    auto one = begin_add();
    during_work = [&] { EXPECT_TRUE(one.outcome->give_up()); };
    faulty->let_go();
    EXPECT_EQ(end(one).body, not_done);
    during_work = nullptr;
    EXPECT_EQ(partners(), 0);
}

TEST_P(outcomes, what_may_be_done_already_cannot_be_given_up) {
    faulty->next = fault::hold_outcome;
    auto one = begin_add();
    faulty->wait_held();
    EXPECT_FALSE(one.outcome->give_up());
    faulty->let_go();
    EXPECT_NE(end(one).body, not_done);
    EXPECT_EQ(partners(), 1);
}

TEST_P(outcomes, what_waits_for_another_with_its_bytes_cannot_be_given_up) {
    faulty->next = fault::hold_job;
    auto one = begin_add();
    auto same = begin_add();
    EXPECT_FALSE(same.outcome->give_up());
    faulty->let_go();
    const auto first = end(one);
    EXPECT_NE(first.body, not_done);
    EXPECT_EQ(end(same).body, first.body);
    EXPECT_EQ(partners(), 1);
}

TEST_P(outcomes, one_that_waited_can_be_given_up_once_its_turn_has_come) {
    auto one = begin_add();
    auto first = one.answer.get();
    auto later = begin_add();
    EXPECT_FALSE(later.outcome->give_up()) << "it waits to hear whether that answer arrived";
    faulty->next = fault::hold_job;
    first.on_sent(true);
    EXPECT_TRUE(later.outcome->give_up());
    faulty->let_go();
    EXPECT_EQ(end(later).body, not_done);
    EXPECT_EQ(partners(), 1);
}

TEST_P(outcomes, a_lost_commit_is_looked_for_until_it_is_found) {
    for (const auto trouble : {fault::clash, fault::busy_in_job, fault::lose_before_commit}) {
        const auto before = partners();
        faulty->writes = 0;
        faulty->then = {trouble, trouble, trouble, trouble};
        faulty->next = fault::lose_after_commit;
        const auto got = add();
        EXPECT_FALSE(got.unknown);
        EXPECT_NE(got.body, not_done);
        EXPECT_EQ(partners(), before + 1);
        EXPECT_GE(faulty->writes, 6);
    }
}

TEST_P(outcomes, a_lost_commit_that_is_not_found_is_no_failure) {
    faulty->always = fault::lose_before_commit;
    faulty->next = fault::lose_after_commit;
    EXPECT_TRUE(add().unknown);
    faulty->always = fault::none;
    const auto again = add();
    EXPECT_FALSE(again.unknown);
    EXPECT_NE(again.body, not_done);
    EXPECT_EQ(partners(), 1) << "the network brings it once more, and then it is found";
}

TEST_P(outcomes, what_never_ran_is_a_failure) {
    faulty->always = fault::lose_before_commit;
    const auto got = add();
    EXPECT_FALSE(got.unknown);
    EXPECT_EQ(got.body, not_done);
    EXPECT_EQ(faulty->writes, 2);
}

TEST_P(outcomes, a_write_that_waited_in_vain_is_a_failure) {
    faulty->next = fault::busy_in_job;
    const auto got = add();
    EXPECT_FALSE(got.unknown);
    EXPECT_EQ(got.body, not_done);
    EXPECT_EQ(faulty->writes, 1);
    EXPECT_EQ(partners(), 0);
}

TEST_P(outcomes, a_closing_call_that_waited_in_vain_looks_whether_it_was_done_elsewhere) {
    documents_world with([this](const auto& path, const auto& body) { return ask(path, body).body; });
    const auto draft = with.inbound_draft("8", "2.50", "20.00");
    const auto close = [&] { return ask("wms_instore/update_total", "id=" + draft + "&total=20.00"); };
    faulty->next = fault::refuse_busy;
    EXPECT_EQ(close().body, "0") << "turned away at the door";
    faulty->always = fault::busy_in_job;
    EXPECT_TRUE(close().unknown) << "who holds the lock may be closing the same draft";
    faulty->always = fault::none;
    faulty->then = {fault::busy_in_job};
    faulty->next = fault::busy_in_job;
    EXPECT_EQ(close().body, "1");
    EXPECT_EQ(with.page("wms_instore/get_page", "instore_type=1").at("total").as_int64(), 1);
}

INSTANTIATE_TEST_SUITE_P(engines, outcomes, testing::ValuesIn(engines()));

} // namespace
} // namespace tavrok::test
