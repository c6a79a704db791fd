#include <gtest/gtest.h>

#include <future>

#include "scene.h"

namespace tavrok::test {

using namespace std::chrono_literals;

namespace {

std::future<void> stop_in_background(scene& stage, std::chrono::milliseconds grace) {
    return std::async(std::launch::async, [&stage, grace] { stage.server->stop(grace); });
}

} // namespace

TEST(stop, a_request_under_way_is_answered) {
    scene stage;
    tls_client busy(stage.port());
    tls_client idle(stage.port());
    ASSERT_TRUE(idle.ask(get("x")));
    ASSERT_TRUE(busy.send(post("hold", "x")));
    stage.handler->seen.wait(2);
    auto stopped = stop_in_background(stage, patience);
    EXPECT_TRUE(idle.closed_within(patience)) << "idle connections are closed at once";
    stage.handler->answer_held(1, "in time");
    const auto got = busy.read();
    ASSERT_TRUE(got);
    EXPECT_EQ(got->body, "in time");
    EXPECT_EQ(got->field("Connection"), "close");
    EXPECT_TRUE(busy.closed_within(patience));
    busy.transport().half_close();
    EXPECT_EQ(stopped.wait_for(patience), std::future_status::ready);
    EXPECT_EQ(stage.handler->sent.wait(2), (std::vector<bool>{true, true}));
    EXPECT_THROW(tcp_client(stage.port()), std::runtime_error);
}

TEST(stop, a_body_under_way_is_waited_for) {
    scene stage;
    tls_client client(stage.port());
    const std::string text = post("x", "body");
    ASSERT_TRUE(client.send(text.substr(0, text.size() - 2)));
    ASSERT_TRUE(stage.reaches(stage.server->figures().bytes_in, text.size() - 2));
    auto stopped = stop_in_background(stage, patience);
    const auto got = client.ask(text.substr(text.size() - 2));
    ASSERT_TRUE(got);
    EXPECT_EQ(got->body, "x|body");
    client.transport().half_close();
    EXPECT_EQ(stopped.wait_for(patience), std::future_status::ready);
}

TEST(stop, what_is_not_answered_in_the_grace_time_is_dropped) {
    scene stage;
    tls_client client(stage.port());
    ASSERT_TRUE(client.send(post("hold", "x")));
    stage.handler->seen.wait(1);
    stage.server->stop(50ms);
    EXPECT_TRUE(client.closed_within(patience));
    stage.handler->answer_held(1, "too late");
    EXPECT_EQ(stage.handler->sent.wait(1), std::vector<bool>{false});
}

TEST(stop, silent_peers_do_not_hold_it_up) {
    scene stage;
    tcp_client unencrypted(stage.port());
    tls_client unasked(stage.port());
    ASSERT_TRUE(stage.reaches(stage.server->figures().connections, 2));
    const auto start = std::chrono::steady_clock::now();
    stage.server->stop(patience);
    EXPECT_LT(std::chrono::steady_clock::now() - start, patience / 2);
    EXPECT_TRUE(unasked.closed_within(patience));
    EXPECT_EQ(stage.server->figures().connections_open, 0u);
}

TEST(stop, is_safe_before_start_and_twice) {
    scratch_directory files;
    http::settings how;
    how.certificate = {files.file("c.pem"), files.file("k.pem")};
    http::make_certificate_if_absent(how.certificate);
    how.log = std::make_shared<spdlog::logger>("none");
    http::server never_started(how, std::make_shared<echo_handler>());
    never_started.stop();
    never_started.stop();
    SUCCEED();
}

TEST(start, a_port_in_use_is_told) {
    scene stage;
    http::settings how;
    how.certificate = stage.certificate;
    how.port = stage.port();
    how.log = std::make_shared<spdlog::logger>("none");
    http::server second(how, std::make_shared<echo_handler>());
    try {
        second.start();
        FAIL() << "two servers at one port";
    } catch (const std::exception& failure) {
        EXPECT_NE(std::string(failure.what()).find("cannot listen at 127.0.0.1"), std::string::npos);
    }
}

} // namespace tavrok::test
