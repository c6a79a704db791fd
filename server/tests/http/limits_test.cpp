#include <gtest/gtest.h>

#include <thread>

#include "scene.h"

namespace tavrok::test {

using namespace std::chrono_literals;

TEST(limits, a_body_over_the_limit_is_answered_and_the_connection_lives_on) {
    scene stage([](http::settings& how) { how.bounds.body_bytes = 1000; });
    tls_client client(stage.port());
    ASSERT_TRUE(client.ask(post("fits", std::string(1000, 'x'))));
    const auto got = client.ask(post("too_long", std::string(200'000, 'x')));
    ASSERT_TRUE(got);
    EXPECT_EQ(got->status, 200u);
    EXPECT_EQ(got->body, "0");
    const auto rejected = stage.handler->rejected.wait(1);
    ASSERT_EQ(rejected.size(), 1u);
    EXPECT_EQ(rejected[0], http::rejection::body_too_large);
    EXPECT_EQ(client.ask(post("after", "x"))->body, "after|x");
    EXPECT_EQ(stage.handler->seen.wait(2).size(), 2u) << "the handler must not see the long body";
}

TEST(limits, a_body_in_chunks_has_the_same_limit) {
    scene stage([](http::settings& how) { how.bounds.body_bytes = 1000; });
    tls_client client(stage.port());
    std::string text = "POST /c HTTP/1.1\r\nHost: a\r\nTransfer-Encoding: chunked\r\n\r\n";
    for (int n = 0; n < 40; ++n)
        text += "64\r\n" + std::string(100, 'x') + "\r\n";
    const auto got = client.ask(text + "0\r\n\r\n");
    ASSERT_TRUE(got);
    EXPECT_EQ(got->body, "0");
    EXPECT_EQ(client.ask(post("after", "x"))->body, "after|x");
}

TEST(limits, a_body_without_end_is_answered_at_once_and_closed) {
    scene stage([](http::settings& how) {
        how.bounds.body_bytes = 1000;
        how.bounds.discard_bytes = 5000;
    });
    tls_client announced(stage.port());
    auto got = announced.ask("POST /x HTTP/1.1\r\nHost: a\r\nContent-Length: 99999999999\r\n\r\nabc");
    ASSERT_TRUE(got);
    EXPECT_EQ(got->body, "0");
    EXPECT_EQ(got->field("Connection"), "close");
    EXPECT_TRUE(announced.closed_within(patience));

    tls_client unannounced(stage.port());
    std::string text = "POST /c HTTP/1.1\r\nHost: a\r\nTransfer-Encoding: chunked\r\n\r\n";
    for (int n = 0; n < 100; ++n)
        text += "64\r\n" + std::string(100, 'x') + "\r\n";
    got = unannounced.ask(text);
    ASSERT_TRUE(got);
    EXPECT_EQ(got->body, "0");
    EXPECT_TRUE(unannounced.closed_within(patience));
}

TEST(limits, a_header_over_the_limit_is_refused) {
    scene stage;
    tls_client fits(stage.port());
    EXPECT_EQ(fits.ask(get("x", "X: " + std::string(7000, 'x') + "\r\n"))->status, 200u);
    for (const char* end : {"\r\n", ""}) {
        tls_client client(stage.port());
        const auto got = client.ask(get("x", "X: " + std::string(9000, 'x') + end));
        ASSERT_TRUE(got);
        EXPECT_EQ(got->status, 431u);
        EXPECT_TRUE(client.closed_within(patience));
    }
}

TEST(limits, a_connection_has_a_number_of_requests) {
    scene stage([](http::settings& how) { how.bounds.requests_per_connection = 3; });
    tls_client client(stage.port());
    EXPECT_EQ(client.ask(get("1"))->field("Connection"), "keep-alive");
    EXPECT_EQ(client.ask(get("2"))->field("Connection"), "keep-alive");
    EXPECT_EQ(client.ask(get("3"))->field("Connection"), "close");
    EXPECT_TRUE(client.closed_within(patience));
}

TEST(limits, an_address_has_a_number_of_connections) {
    scene stage([](http::settings& how) { how.bounds.connections_per_address = 2; });
    tls_client first(stage.port());
    {
        tls_client second(stage.port());
        ASSERT_TRUE(second.ask(get("x")));
        tls_client third(stage.port());
        EXPECT_FALSE(third.connected());
        EXPECT_TRUE(stage.reaches(stage.server->figures().connections_refused, 1));
        ASSERT_TRUE(first.ask(get("x")));
    }
    const auto until = std::chrono::steady_clock::now() + patience;
    bool served = false;
    while (!served && std::chrono::steady_clock::now() < until) {
        tls_client again(stage.port());
        served = again.connected() && again.ask(get("x"));
    }
    EXPECT_TRUE(served) << "a closed connection must make room";
}

TEST(limits, all_peers_together_have_a_number_of_connections) {
    scene stage([](http::settings& how) {
        how.bounds.connections = 2;
        how.proxies = {"127.0.0.1"};
    });
    tls_client first(stage.port());
    tls_client second(stage.port());
    ASSERT_TRUE(first.ask(get("x")) && second.ask(get("x")));
    EXPECT_FALSE(tls_client(stage.port()).connected());
}

TEST(limits, a_proxy_may_hold_more_connections_than_another_address) {
    scene stage([](http::settings& how) {
        how.bounds.connections_per_address = 1;
        how.proxies = {"127.0.0.1"};
    });
    tls_client first(stage.port());
    tls_client second(stage.port());
    EXPECT_TRUE(first.ask(get("x")) && second.ask(get("x")));
}

TEST(limits, an_address_has_a_number_of_requests) {
    scene stage([](http::settings& how) {
        how.bounds.requests_per_second = 0.001;
        how.bounds.request_burst = 2;
        how.proxies = {"127.0.0.1"};
    });
    tls_client client(stage.port());
    const std::string from = "X-Forwarded-For: 192.0.2.1\r\n";
    EXPECT_EQ(client.ask(get("a", from))->body, "a|");
    EXPECT_EQ(client.ask(get("b", from))->body, "b|");
    EXPECT_EQ(client.ask(get("c", from))->body, "0");
    EXPECT_EQ(stage.handler->rejected.wait(1).at(0), http::rejection::too_many_requests);
    EXPECT_EQ(client.ask(get("d", "X-Forwarded-For: 192.0.2.2\r\n"))->body, "d|");
}

TEST(limits, a_handler_that_takes_too_long_is_answered_for) {
    scene stage([](http::settings& how) { how.bounds.handler = 50ms; });
    tls_client client(stage.port());
    const auto got = client.ask(post("hold", "x"));
    ASSERT_TRUE(got);
    EXPECT_EQ(got->body, "0");
    EXPECT_EQ(stage.handler->rejected.wait(1).at(0), http::rejection::timed_out);
    EXPECT_TRUE(stage.handler->seen.wait(1).at(0).outcome->given_up());
    stage.handler->answer_held(1, "late");
    EXPECT_EQ(stage.handler->sent.wait(1), std::vector<bool>{false});
    EXPECT_EQ(client.ask(post("after", "x"))->body, "after|x");
    EXPECT_FALSE(stage.handler->seen.wait(2).at(1).outcome->given_up()) << "each request has its own";
}

TEST(limits, failure_is_not_told_of_what_may_take_place_after_all) {
    scene stage([](http::settings& how) { how.bounds.handler = 50ms; });
    tls_client client(stage.port());
    ASSERT_TRUE(client.send(post("bound", "x")));
    EXPECT_FALSE(client.read()) << "no answer, and an end";
    EXPECT_TRUE(client.closed_within(patience));
    EXPECT_TRUE(stage.handler->rejected.wait(0).empty());
    stage.handler->answer_held(1, "late");
    EXPECT_EQ(stage.handler->sent.wait(1), std::vector<bool>{false});
}

TEST(limits, what_nobody_knows_is_not_answered) {
    scene stage;
    tls_client client(stage.port());
    ASSERT_TRUE(client.send(post("unknown", "x")));
    EXPECT_FALSE(client.read());
    EXPECT_TRUE(client.closed_within(patience));
    EXPECT_EQ(stage.handler->sent.wait(1), std::vector<bool>{false});
    EXPECT_TRUE(stage.handler->rejected.wait(0).empty());
}

TEST(limits, a_peer_that_is_silent_in_the_handshake_is_closed) {
    scene stage([](http::settings& how) { how.bounds.handshake = 50ms; });
    tcp_client client(stage.port());
    EXPECT_TRUE(client.closed_within(patience));
    EXPECT_TRUE(stage.reaches(stage.server->figures().timeouts, 1));
}

TEST(limits, a_peer_that_asks_nothing_is_closed) {
    scene stage([](http::settings& how) { how.bounds.header = 50ms; });
    tls_client client(stage.port());
    ASSERT_TRUE(client.connected());
    EXPECT_TRUE(client.closed_within(patience));
}

TEST(limits, a_slow_header_is_cut_off_however_it_drips) {
    scene stage([](http::settings& how) {
        how.bounds.header = 200ms;
        how.bounds.idle = 60s;
    });
    tls_client client(stage.port());
    ASSERT_TRUE(client.ask(get("x")));
    ASSERT_TRUE(client.send("GET /x HTTP/1.1\r\n"));
    const auto until = std::chrono::steady_clock::now() + patience;
    // A byte every now and then: the deadline does not move with them.
    while (!client.readable_within(10ms) && std::chrono::steady_clock::now() < until) {
        ASSERT_TRUE(client.send("x"));
    }
    const auto got = client.read();
    ASSERT_TRUE(got);
    EXPECT_EQ(got->status, 408u);
    EXPECT_TRUE(client.closed_within(patience));
    EXPECT_EQ(stage.handler->seen.wait(1).size(), 1u);
}

TEST(limits, a_slow_body_is_cut_off) {
    scene stage([](http::settings& how) { how.bounds.body = 50ms; });
    tls_client client(stage.port());
    const auto got = client.ask("POST /x HTTP/1.1\r\nHost: a\r\nContent-Length: 100\r\n\r\nabc");
    ASSERT_TRUE(got);
    EXPECT_EQ(got->status, 408u);
    EXPECT_TRUE(client.closed_within(patience));
}

TEST(limits, an_idle_connection_is_closed) {
    scene stage([](http::settings& how) { how.bounds.idle = 50ms; });
    tls_client client(stage.port());
    ASSERT_TRUE(client.ask(get("x")));
    EXPECT_TRUE(client.closed_within(patience));
    EXPECT_EQ(stage.server->figures().timeouts, 0u) << "being idle is no failure";
}

TEST(limits, a_peer_that_reads_nothing_is_cut_off) {
    scene stage([](http::settings& how) { how.bounds.write = 50ms; });
    tls_client client(stage.port());
    ASSERT_TRUE(client.send(post("hold", "x")));
    // More than the system's buffers on both sides take.
    stage.handler->answer_held(1, std::string(32 * 1024 * 1024, 'x'));
    EXPECT_EQ(stage.handler->sent.wait(1), std::vector<bool>{false});
    EXPECT_TRUE(stage.reaches(stage.server->figures().timeouts, 1));
}

TEST(limits, a_peer_that_ignores_the_farewell_is_closed) {
    scene stage([](http::settings& how) { how.bounds.shutdown = 50ms; });
    tls_client client(stage.port());
    ASSERT_TRUE(client.ask(get("x", "Connection: close\r\n")));
    const auto until = std::chrono::steady_clock::now() + patience;
    while (stage.server->figures().connections_open > 0 && std::chrono::steady_clock::now() < until) {
        std::this_thread::yield();
    }
    EXPECT_EQ(stage.server->figures().connections_open, 0u);
}

TEST(limits, a_good_peer_is_answered_beside_many_silent_ones) {
    scene stage([](http::settings& how) { how.threads = 1; });
    std::vector<std::unique_ptr<tcp_client>> silent;
    for (int n = 0; n < 200; ++n) {
        silent.push_back(std::make_unique<tcp_client>(stage.port()));
        if (n % 2 == 0) silent.back()->send("\x16\x03\x01\x02");
    }
    ASSERT_TRUE(stage.reaches(stage.server->figures().connections, 200));
    const auto start = std::chrono::steady_clock::now();
    tls_client good(stage.port());
    ASSERT_TRUE(good.ask(get("x")));
    EXPECT_LT(std::chrono::steady_clock::now() - start, 5s) << "handshake time-outs must not be waited for";
    EXPECT_EQ(stage.server->figures().connections_open, 201u);
}

} // namespace tavrok::test
