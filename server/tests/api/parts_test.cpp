#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <atomic>
#include <charconv>
#include <future>

#include "api/endpoint.h"
#include "api/probes.h"
#include "api/registry.h"
#include "api/scheduler.h"
#include "api/work_queue.h"

namespace tavrok::api {
namespace {

endpoint good() {
    return {.module = "m",
            .action = "a",
            .keys = {text_key("k")},
            .allowed = {.needs = access::who::session},
            .work = read_work{[](context&) {}}};
}

TEST(registry, takes_a_declared_endpoint_and_finds_it) {
    registry routes;
    routes.add(good());
    ASSERT_NE(routes.find("m/a"), nullptr);
    EXPECT_EQ(routes.find("m/b"), nullptr);
    EXPECT_EQ(routes.find("m/a/"), nullptr);
}

TEST(registry, refuses_an_endpoint_that_nobody_declared_access_to) {
    registry routes;
    auto what = good();
    what.allowed = {};
    EXPECT_THROW(routes.add(std::move(what)), std::logic_error);
}

TEST(registry, refuses_rights_without_a_rule_and_rules_without_rights) {
    registry routes;
    auto bare = good();
    bare.allowed = {.needs = access::who::rights};
    EXPECT_THROW(routes.add(std::move(bare)), std::logic_error);
    auto loose = good();
    loose.allowed = {.needs = access::who::session, .any_of = {{"emp", "add"}}};
    EXPECT_THROW(routes.add(std::move(loose)), std::logic_error);
}

TEST(registry, refuses_work_on_the_database_that_is_open_to_anybody) {
    registry routes;
    auto what = good();
    what.allowed = {.needs = access::who::open};
    EXPECT_THROW(routes.add(std::move(what)), std::logic_error);
}

TEST(registry, refuses_doubles_and_keys_that_cannot_be_told_apart) {
    registry routes;
    routes.add(good());
    EXPECT_THROW(routes.add(good()), std::logic_error);
    for (const auto& keys : {std::vector<key>{text_key("a"), text_key("a")}, std::vector<key>{text_key("")},
                             std::vector<key>{text_key("a&b")}, std::vector<key>{text_key("a=")}}) {
        auto what = good();
        what.action = "b";
        what.keys = keys;
        EXPECT_THROW(routes.add(std::move(what)), std::logic_error);
    }
    auto by_unknown = good();
    by_unknown.action = "c";
    by_unknown.allowed = {.needs = access::who::rights,
                          .by_value = pages_by_value{"type", "add", {{1, {"emp"}}}}};
    EXPECT_THROW(routes.add(std::move(by_unknown)), std::logic_error);
}

TEST(registry, takes_a_second_order_of_the_same_keys_and_nothing_else) {
    for (const auto& [other, fits] : std::vector<std::pair<std::vector<key>, bool>>{
             {{text_key("b"), text_key("a")}, true},
             {{text_key("b")}, false},
             {{text_key("b"), text_key("b")}, false},
             {{text_key("b"), text_key("c")}, false},
             {{text_key("b"), text_key("a"), text_key("a")}, false}}) {
        registry routes;
        auto what = good();
        what.keys = {text_key("a"), text_key("b")};
        what.other_keys = other;
        if (fits) {
            EXPECT_NO_THROW(routes.add(std::move(what)));
        } else {
            EXPECT_THROW(routes.add(std::move(what)), std::logic_error);
        }
    }
}

TEST(session_code, is_seen_wherever_the_client_would_see_it) {
    for (const auto* body : {"7", " 7\n", "07", "+7", "\t+007 "})
        EXPECT_TRUE(reads_as_session_code(body)) << body;
    for (const auto* body :
         {"", "0", "1", "70", "77", "-7", "7.", "a7", "{\"http_state\":7}", "0x7", "+ 7", "++7"})
        EXPECT_FALSE(reads_as_session_code(body)) << body;
}

TEST(session_code, no_failure_form_reads_as_it) {
    for (const auto shape :
         {form::count, form::result, form::page, form::array, form::object, form::image, form::none}) {
        endpoint what = good();
        what.answer = shape;
        EXPECT_FALSE(reads_as_session_code(failure_of(what)));
    }
}

TEST(work_queue, takes_so_many_and_no_more) {
    std::promise<void> gate;
    auto open = gate.get_future().share();
    std::promise<void> begun;
    std::atomic<int> ran{0};
    {
        work_queue queue(1, 2);
        ASSERT_TRUE(queue.submit([&, open] {
            begun.set_value();
            open.wait();
            ++ran;
        }));
        begun.get_future().wait();
        EXPECT_TRUE(queue.submit([&] { ++ran; }));
        EXPECT_TRUE(queue.submit([&] { ++ran; }));
        EXPECT_FALSE(queue.submit([&] { ++ran; }));
        gate.set_value();
    }
    EXPECT_EQ(ran, 3);
}

TEST(scheduler, runs_the_earlier_first_and_the_rest_at_the_stop) {
    std::promise<void> soon;
    std::vector<int> order;
    scheduler timer;
    timer.after(std::chrono::hours(2), [&] { order.push_back(3); });
    timer.after(std::chrono::hours(1), [&] { order.push_back(2); });
    timer.after(std::chrono::milliseconds(0), [&] {
        order.push_back(1);
        soon.set_value();
    });
    soon.get_future().wait();
    timer.stop();
    EXPECT_EQ(order, (std::vector<int>{1, 2, 3}));
    timer.after(std::chrono::hours(1), [&] { order.push_back(4); });
    EXPECT_EQ(order.back(), 4);
}

TEST(probes, answer_who_may_know) {
    registry routes;
    routes.add(good());
    metrics figures(routes);
    figures.count(*routes.find("m/a"), outcome::refused, std::chrono::milliseconds(3));
    settings options;
    options.more_metrics = [](std::string& out) { out += "other 1\n"; };
    const auto ask = [&](const char* path, const char* peer, bool ready) {
        return probe({"GET", path, "", "", peer, "1"}, {ready, options, figures});
    };
    EXPECT_EQ(ask("healthz", "192.0.2.1", false).status, 200u);
    EXPECT_EQ(ask("readyz", "192.0.2.1", true).status, 200u);
    EXPECT_EQ(ask("readyz", "192.0.2.1", false).status, 503u);
    EXPECT_EQ(ask("nothing", "127.0.0.1", true).status, 404u);
    EXPECT_EQ(ask("metrics", "192.0.2.1", true).status, 404u);
    for (const auto* near : {"127.0.0.1", "127.8.9.1", "::1", "::ffff:127.0.0.1"}) {
        const auto body = ask("metrics", near, true).body;
        EXPECT_NE(body.find("tavrok_requests_total{path=\"m/a\",outcome=\"refused\"} 1\n"),
                  std::string::npos);
        EXPECT_NE(body.find("tavrok_request_seconds_bucket{path=\"m/a\",le=\"0.005\"} 1\n"),
                  std::string::npos);
        EXPECT_NE(body.find("tavrok_request_seconds_bucket{path=\"m/a\",le=\"0.002\"} 0\n"),
                  std::string::npos);
        EXPECT_NE(body.find("other 1\n"), std::string::npos);
    }
    options.metrics_for_all = true;
    EXPECT_EQ(ask("metrics", "192.0.2.1", true).status, 200u);
}

} // namespace
} // namespace tavrok::api
