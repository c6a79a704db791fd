#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>

#include "scene.h"

namespace tavrok::test {

TEST(connection, a_request_reaches_the_handler_whole) {
    scene stage;
    tls_client client(stage.port());
    ASSERT_TRUE(client.connected());
    const auto got = client.ask(
        post("wms_company/do_add?x=1", "a=1&b=%+\xe4\xbb\x93", "Cookie: x=1; tavrok_session=abc\r\n"));
    ASSERT_TRUE(got);
    EXPECT_EQ(got->status, 200u);
    EXPECT_EQ(got->body, "wms_company/do_add|a=1&b=%+\xe4\xbb\x93");
    EXPECT_EQ(got->field("Content-Type"), "text/plain; charset=utf-8");
    const auto seen = stage.handler->seen.wait(1);
    ASSERT_EQ(seen.size(), 1u);
    EXPECT_EQ(seen[0].method, "POST");
    EXPECT_EQ(seen[0].path, "wms_company/do_add");
    EXPECT_EQ(seen[0].cookie, "abc");
    EXPECT_EQ(seen[0].peer, "127.0.0.1");
    EXPECT_FALSE(seen[0].id.empty());
    EXPECT_EQ(stage.handler->sent.wait(1), std::vector<bool>{true});
}

TEST(connection, stays_open_for_the_next_request) {
    scene stage;
    tls_client client(stage.port());
    for (int n = 0; n < 50; ++n) {
        const auto got = client.ask(post("n", std::to_string(n)));
        ASSERT_TRUE(got) << n;
        EXPECT_EQ(got->body, "n|" + std::to_string(n));
        EXPECT_EQ(got->field("Connection"), "keep-alive");
    }
    EXPECT_EQ(stage.server->figures().connections, 1u);
    EXPECT_TRUE(stage.reaches(stage.server->figures().requests, 50));
}

// The desktop client's network library writes head and body apart and leaves Nagle's algorithm on: its kernel
// holds the body back until the head is acknowledged. A delayed acknowledgement makes such a request a
// hundred times slower.
TEST(connection, a_body_that_comes_after_its_head_is_not_held_back) {
    scene stage;
    tls_client client(stage.port());
    const std::string whole = post("n", "a body");
    const std::string_view head = std::string_view(whole).substr(0, whole.size() - 6);
    const auto fastest = [&](bool apart) {
        auto best = std::chrono::steady_clock::duration::max();
        for (int n = 0; n < 30; ++n) {
            const auto begun = std::chrono::steady_clock::now();
            const bool sent = apart ? client.send(head) && client.send("a body") : client.send(whole);
            if (!sent || !client.read()) return std::chrono::steady_clock::duration::max();
            // The first few run before the kernel starts to delay acknowledgements.
            if (n >= 20) best = std::min(best, std::chrono::steady_clock::now() - begun);
        }
        return best;
    };
    const auto at_once = fastest(false);
    EXPECT_LT(fastest(true), 20 * at_once);
}

TEST(connection, closes_where_the_peer_asks_for_it) {
    scene stage;
    tls_client client(stage.port());
    const auto got = client.ask(post("last", "", "Connection: close\r\n"));
    ASSERT_TRUE(got);
    EXPECT_EQ(got->field("Connection"), "close");
    EXPECT_TRUE(client.closed_within(patience));
}

TEST(connection, answers_pipelined_requests_in_their_order) {
    scene stage;
    tls_client client(stage.port());
    std::string all;
    for (int n = 0; n < 20; ++n)
        all += post("p", std::to_string(n));
    ASSERT_TRUE(client.send(all));
    for (int n = 0; n < 20; ++n) {
        const auto got = client.read();
        ASSERT_TRUE(got) << n;
        EXPECT_EQ(got->body, "p|" + std::to_string(n));
    }
}

TEST(connection, understands_requests_that_come_byte_by_byte) {
    scene stage;
    tls_client client(stage.port());
    const std::string text = post("slow", "body");
    for (const char c : text)
        ASSERT_TRUE(client.send(std::string_view(&c, 1)));
    const auto got = client.read();
    ASSERT_TRUE(got);
    EXPECT_EQ(got->body, "slow|body");
}

TEST(connection, understands_bodies_in_chunks_and_the_wish_to_be_asked_for_them) {
    scene stage;
    tls_client client(stage.port());
    const auto chunked = client.ask(
        "POST /c HTTP/1.1\r\nHost: a\r\nTransfer-Encoding: chunked\r\n\r\n3\r\nabc\r\n2\r\nde\r\n0\r\n\r\n");
    ASSERT_TRUE(chunked);
    EXPECT_EQ(chunked->body, "c|abcde");
    const auto go_on =
        client.ask("POST /e HTTP/1.1\r\nHost: a\r\nExpect: 100-continue\r\nContent-Length: 4\r\n\r\n");
    ASSERT_TRUE(go_on);
    EXPECT_EQ(go_on->status, 100u);
    const auto got = client.ask("body");
    ASSERT_TRUE(got);
    EXPECT_EQ(got->body, "e|body");
}

TEST(connection, an_answer_is_one_write) {
    scene stage;
    tls_client client(stage.port());
    const auto got = client.ask(get("large"));
    ASSERT_TRUE(got);
    EXPECT_EQ(got->body.size(), 8000u);
    // Session tickets may come as one record more, before the first answer.
    const unsigned before = client.records();
    EXPECT_LE(before, 2u);
    ASSERT_TRUE(client.ask(get("large")));
    EXPECT_EQ(client.records(), before + 1);
}

TEST(connection, sets_the_session_cookie) {
    scene stage;
    tls_client client(stage.port());
    const auto got = client.ask(post("login", ""));
    ASSERT_TRUE(got);
    EXPECT_EQ(got->field("Set-Cookie"), "tavrok_session=0123abcd; Path=/; HttpOnly; Secure; SameSite=Strict");
    EXPECT_EQ(client.ask(post("other", ""))->field("Set-Cookie"), "");
}

TEST(connection, a_failing_handler_is_answered_in_the_failure_form) {
    scene stage;
    tls_client client(stage.port());
    auto got = client.ask(post("drop", "x"));
    ASSERT_TRUE(got);
    EXPECT_EQ(got->status, 200u);
    EXPECT_EQ(got->body, "0");
    // The rejection throws as well: the last resort is an empty answer.
    got = client.ask(post("throw", "x"));
    ASSERT_TRUE(got);
    EXPECT_EQ(got->status, 200u);
    EXPECT_EQ(got->body, "");
    EXPECT_EQ(client.ask(post("after", ""))->body, "after|");
    EXPECT_EQ(stage.handler->rejected.wait(2).size(), 2u);
}

TEST(connection, a_handler_that_says_nothing_on_rejections_gives_an_empty_answer) {
    struct deaf : http::handler {
        void handle(http::request, http::respond) override {}
    } nobody;
    http::response got;
    got.body = "before";
    nobody.reject({}, http::rejection::failed, [&](http::response given) { got = std::move(given); });
    EXPECT_EQ(got.status, 200u);
    EXPECT_EQ(got.body, "");
}

TEST(connection, the_answer_to_head_has_no_body) {
    scene stage;
    tls_client client(stage.port());
    ASSERT_TRUE(client.send("HEAD /h HTTP/1.1\r\nHost: a\r\n\r\n" + get("next", "Connection: close\r\n")));
    ASSERT_TRUE(stage.reaches(stage.server->figures().requests, 2));
    const auto first = client.read(); // takes the bytes that the length announces from the next answer
    ASSERT_TRUE(first);
    EXPECT_EQ(first->field("Content-Length"), "2");
    EXPECT_EQ(first->body, "HT");
}

TEST(connection, a_half_closed_peer_still_gets_its_answer) {
    scene stage;
    tls_client client(stage.port());
    ASSERT_TRUE(client.send(post("hold", "x")));
    client.say_farewell();
    client.transport().half_close();
    stage.handler->answer_held(1, "late");
    const auto got = client.read();
    ASSERT_TRUE(got);
    EXPECT_EQ(got->body, "late");
    // Nobody can tell such a peer from one that has gone, so its answer does not count as received.
    EXPECT_EQ(stage.handler->sent.wait(1), std::vector<bool>{false});
}

TEST(connection, an_answer_to_a_dropped_connection_is_told_as_unsent) {
    scene stage;
    for (const bool reset : {false, true}) {
        {
            tls_client client(stage.port());
            ASSERT_TRUE(client.send(post("hold", "x")));
            stage.handler->seen.wait(reset ? 2 : 1);
            if (reset) client.transport().reset_on_close();
        }
        stage.handler->answer_held(reset ? 2 : 1, "late");
    }
    EXPECT_EQ(stage.handler->sent.wait(2), (std::vector<bool>{false, false}));
    EXPECT_TRUE(stage.reaches(stage.server->figures().unsent, 2));
}

TEST(connection, garbage_is_answered_with_400_and_closed) {
    scene stage;
    const std::string bad[] = {
        "\x16\x03\x01 nonsense\r\n\r\n",
        "GET / HTTP/9.9\r\n\r\n",
        "POST /x HTTP/1.1\r\nContent-Length: -1\r\n\r\n",
        "POST /x HTTP/1.1\r\nContent-Length: 1\r\nContent-Length: 2\r\n\r\n",
        "POST /x HTTP/1.1\r\nContent-Length: 1\r\nTransfer-Encoding: chunked\r\n\r\n0\r\n\r\n",
        "POST /x HTTP/1.1\r\nTransfer-Encoding: chunked\r\n\r\nzz\r\n",
    };
    for (const std::string& bytes : bad) {
        tls_client client(stage.port());
        const auto got = client.ask(bytes);
        ASSERT_TRUE(got) << bytes;
        EXPECT_EQ(got->status, 400u) << bytes;
        EXPECT_TRUE(client.closed_within(patience)) << bytes;
    }
    EXPECT_EQ(stage.server->figures().malformed, std::size(bad));
    tls_client good(stage.port());
    EXPECT_TRUE(good.ask(get("x")));
}

TEST(connection, bytes_that_are_no_tls_are_dropped) {
    scene stage;
    tcp_client client(stage.port());
    client.send("GET / HTTP/1.1\r\n\r\n");
    EXPECT_TRUE(client.closed_within(patience));
    EXPECT_TRUE(stage.reaches(stage.server->figures().handshakes_failed, 1));
}

TEST(connection, the_log_has_one_line_a_request_and_no_secret) {
    scene stage;
    tls_client client(stage.port());
    ASSERT_TRUE(
        client.ask(post("login?password=secret1", "password=secret2", "Cookie: tavrok_session=secret3\r\n")));
    const auto lines = stage.log_lines(1);
    ASSERT_EQ(lines.size(), 1u);
    const auto seen = stage.handler->seen.wait(1);
    EXPECT_EQ(lines[0].find(seen[0].id + " POST login 200 "), 0u) << lines[0];
    EXPECT_NE(lines[0].find(" 127.0.0.1"), std::string::npos);
    for (const char* secret : {"secret", "0123abcd"}) {
        EXPECT_EQ(lines[0].find(secret), std::string::npos) << lines[0];
    }
}

TEST(connection, a_forwarded_address_counts_from_listed_proxies_only) {
    const std::string field = "X-Forwarded-For: 192.0.2.1\r\nX-Forwarded-For: 198.51.100.7, 127.0.0.9\r\n";
    {
        scene stage;
        tls_client client(stage.port());
        ASSERT_TRUE(client.ask(get("x", field)));
        EXPECT_EQ(stage.handler->seen.wait(1).at(0).peer, "127.0.0.1");
    }
    scene stage([](http::settings& how) { how.proxies = {"127.0.0.0/8"}; });
    tls_client client(stage.port());
    ASSERT_TRUE(client.ask(get("x", field)));
    EXPECT_EQ(stage.handler->seen.wait(1).at(0).peer, "198.51.100.7");
}

} // namespace tavrok::test
