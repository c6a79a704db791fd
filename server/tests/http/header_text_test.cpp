#include "http/header_text.h"

#include <gtest/gtest.h>

namespace tavrok::http {

TEST(header_text, a_path_has_no_leading_slash_and_no_query) {
    EXPECT_EQ(path_of("/wms_company/get_page"), "wms_company/get_page");
    EXPECT_EQ(path_of("/wms_company/get_page?a=/b&c"), "wms_company/get_page");
    EXPECT_EQ(path_of("https://host:1/wms_company/get_page#x"), "wms_company/get_page");
    EXPECT_EQ(path_of("http://host"), "");
    EXPECT_EQ(path_of("//x"), "/x");
    EXPECT_EQ(path_of("/"), "");
    EXPECT_EQ(path_of(""), "");
}

TEST(header_text, finds_the_session_among_cookies) {
    EXPECT_EQ(session_of("tavrok_session=abc"), "abc");
    EXPECT_EQ(session_of("a=1; tavrok_session=abc ;b=2"), "abc");
    EXPECT_EQ(session_of("tavrok_session2=no; xtavrok_session=no;tavrok_session=yes"), "yes");
    EXPECT_EQ(session_of("tavrok_session"), "");
    EXPECT_EQ(session_of("tavrok_session="), "");
    EXPECT_EQ(session_of(""), "");
}

TEST(header_text, a_head_says_what_the_peer_needs) {
    response answer;
    answer.body = "12345";
    EXPECT_EQ(head_of(answer, true),
              "HTTP/1.1 200 OK\r\nContent-Type: text/plain; charset=utf-8\r\nContent-Length: 5\r\n"
              "Cache-Control: no-store\r\nConnection: keep-alive\r\n\r\n");
    answer.set_cookie = "f00d";
    answer.status = 404;
    const std::string head = head_of(answer, false);
    EXPECT_TRUE(head.starts_with("HTTP/1.1 404 Not Found\r\n"));
    EXPECT_NE(head.find("\r\nSet-Cookie: tavrok_session=f00d; Path=/; HttpOnly; Secure; SameSite=Strict\r\n"),
              std::string::npos);
    EXPECT_TRUE(head.ends_with("Connection: close\r\n\r\n"));
}

TEST(header_text, nothing_breaks_out_of_its_line) {
    response answer;
    answer.set_cookie = "a\r\nX: 1";
    answer.content_type = "text/plain\r\nY: 2";
    const std::string head = head_of(answer, true);
    EXPECT_EQ(head.find("X: 1"), std::string::npos);
    EXPECT_EQ(head.find("Y: 2"), std::string::npos);
    answer.set_cookie = "a; Domain=b";
    EXPECT_EQ(head_of(answer, true).find("Domain"), std::string::npos);
}

TEST(header_text, a_log_line_stays_one_line) {
    EXPECT_EQ(loggable("a\nb\x01\xff c"), "a?b???c");
    EXPECT_EQ(loggable(std::string(500, 'p')).size(), 120u);
}

} // namespace tavrok::http
