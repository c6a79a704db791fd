#include <functional>

#include "net/http.h"
#include "support/client_fixture.h"
#include "support/screen.h"

class http_session : public client_test {
protected:
    http_session() {
        door.base_url = server.base_url();
        door.current_user.username = QStringLiteral("王&五");
        door.current_user.password = QStringLiteral("p=1");
    }
    http door;
};

struct session_row {
    const char* operation;
    std::function<void(http&)> call;
    bool checks;
};

const QString some_path = QStringLiteral("x/y");
const QString no_args;

const session_row session_rows[] = {
    {"do_post",
     [](http& h) {
         QString args;
         h.do_post(some_path, args);
     },
     false},
    {"do_get", [](http& h) { h.do_get(some_path); }, false},
    {"post", [](http& h) { h.post(some_path, no_args); }, true},
    {"post_raw", [](http& h) { EXPECT_EQ(h.post_raw(some_path, no_args), "7"); }, true},
    {"post_json", [](http& h) { EXPECT_TRUE(h.post_json(some_path, no_args).isEmpty()); }, true},
    {"post_array", [](http& h) { EXPECT_TRUE(h.post_array(some_path, no_args).isEmpty()); }, true},
    {"post_object", [](http& h) { EXPECT_TRUE(h.post_object(some_path, no_args).isEmpty()); }, true},
    {"get", [](http& h) { h.get(some_path); }, true},
    {"get_raw", [](http& h) { EXPECT_EQ(h.get_raw(some_path), "7"); }, true},
    {"get_json", [](http& h) { EXPECT_TRUE(h.get_json(some_path).isEmpty()); }, true},
    {"get_array", [](http& h) { EXPECT_TRUE(h.get_array(some_path).isEmpty()); }, true},
    {"get_object", [](http& h) { EXPECT_TRUE(h.get_object(some_path).isEmpty()); }, true},
};

class session_check : public http_session, public testing::WithParamInterface<session_row> {};

TEST_P(session_check, seven_renews_the_session_once_and_repeats_nothing) {
    server.answer(" 7\n");
    server.answer("whatever");
    GetParam().call(door);
    if (!GetParam().checks) {
        EXPECT_EQ(server.paths(), QList<QByteArray>({"x/y"}));
        return;
    }
    ASSERT_EQ(server.paths(), QList<QByteArray>({"x/y", "wms/check_login"}));
    EXPECT_EQ(server.last().method, "POST");
    EXPECT_EQ(server.last().body, QByteArray("username=王&五&password=p=1"));
}

INSTANTIATE_TEST_SUITE_P(operations, session_check, testing::ValuesIn(session_rows),
                         [](const auto& p) { return std::string(p.param.operation); });

TEST_F(http_session, seven_in_answer_to_the_renewal_goes_nowhere) {
    server.answer("7");
    server.answer("7");
    EXPECT_EQ(door.post_raw(some_path, no_args), "7");
    EXPECT_EQ(server.requests().size(), 2);
}

struct not_expired {
    const char* what;
    const char* body;
};
class other_bodies : public http_session, public testing::WithParamInterface<not_expired> {};

TEST_P(other_bodies, are_not_the_session_code) {
    server.answer(GetParam().body);
    door.post_raw(some_path, no_args);
    EXPECT_EQ(server.requests().size(), 1);
}

INSTANTIATE_TEST_SUITE_P(bodies, other_bodies,
                         testing::Values(not_expired{"state", "{\"http_state\":7}"},
                                         not_expired{"list", "[7]"}, not_expired{"quoted", "\"7\""},
                                         not_expired{"longer", "77"}, not_expired{"negative", "-7"},
                                         not_expired{"fraction", "7.0"}, not_expired{"two", "7 7"},
                                         not_expired{"nothing", ""}),
                         [](const auto& p) { return std::string(p.param.what); });

TEST_F(http_session, a_renewal_before_any_login_posts_empty_credentials) {
    door.current_user = struct_user();
    server.answer("7");
    door.post_object(QStringLiteral("version/wms_check"), no_args);
    EXPECT_EQ(server.last().body, "username=&password=");
}

TEST_F(http_session, the_renewed_cookie_carries_the_next_call) {
    server.answer(scripted_answer::with_cookie("7", "s=old; Path=/"));
    server.answer(scripted_answer::with_cookie("1", "s=new; Path=/"));
    door.post_raw(some_path, no_args);
    door.post_raw(some_path, no_args);
    ASSERT_EQ(server.requests().size(), 3);
    EXPECT_EQ(server.requests()[1].header("Cookie"), "s=old");
    EXPECT_EQ(server.requests()[2].header("Cookie"), "s=new");
}

TEST_F(http_session, a_cookie_rides_on_every_later_request_of_both_methods) {
    server.answer(scripted_answer::with_cookie("1", "s=abc; Path=/; HttpOnly"));
    door.post_raw(some_path, no_args);
    EXPECT_TRUE(server.last().header("Cookie").isNull());
    door.get_raw(some_path);
    EXPECT_EQ(server.last().header("Cookie"), "s=abc");
    EXPECT_EQ(server.last().header("Content-Type"), "application/x-www-form-urlencoded");
    door.post_raw(some_path, no_args);
    EXPECT_EQ(server.last().header("Cookie"), "s=abc");
}

TEST_F(http_session, an_empty_cookie_list_leaves_the_earlier_header) {
    server.answer(scripted_answer::with_cookie("1", "s=abc; Path=/only/here"));
    door.post_raw(QStringLiteral("only/here"), no_args);
    // The jar has nothing for the other path, and the shared request keeps what it had.
    door.post_raw(QStringLiteral("else/where"), no_args);
    EXPECT_EQ(server.last().header("Cookie"), "s=abc");
    server.answer(scripted_answer::with_cookie("1", "s=gone; Path=/only/here; Max-Age=0"));
    door.post_raw(QStringLiteral("only/here"), no_args);
    door.get_raw(QStringLiteral("only/here"));
    EXPECT_EQ(server.last().header("Cookie"), "s=abc");
}

TEST_F(http_session, several_cookies_go_together) {
    scripted_answer first = scripted_answer::with_cookie("1", "a=1; Path=/");
    first.headers.append("Set-Cookie: b=2; Path=/");
    server.answer(first);
    door.post_raw(some_path, no_args);
    door.post_raw(some_path, no_args);
    EXPECT_EQ(server.last().header("Cookie"), "a=1; b=2");
}
