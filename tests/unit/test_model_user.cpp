#include "model/model_user.h"
#include "net/http.h"
#include "support/client_fixture.h"
#include "support/screen.h"

class login_call : public client_test {
protected:
    int log_in(const char* answer) {
        server.answer(answer);
        return model_user().check_login(QStringLiteral("amy"), QStringLiteral("0123abcd"));
    }
};

TEST_F(login_call, body) {
    log_in("{}");
    EXPECT_EQ(server.last().path, "login/check_login");
    EXPECT_EQ(server.last().body, "username=amy&password=0123abcd");
}

TEST_F(login_call, success_fills_the_session_state) {
    g_http.permissions.insert(QStringLiteral("99"), QStringLiteral("of the former user"));
    EXPECT_EQ(
        log_in("{\"user\":{\"username\":\"amy\",\"password\":\"secret\",\"user_id\":\"12\",\"realname\":"
               "\"艾米\",\"type\":\"2\"},\"wms_permission\":[{\"id\":\"1\",\"action\":\"a\"},{\"id\":\"2\","
               "\"action\":\"b\"},{\"id\":\"1\",\"action\":\"later\"}]}"),
        2);
    EXPECT_EQ(g_http.current_user.id, QStringLiteral("12"));
    EXPECT_EQ(g_http.current_user.username, QStringLiteral("amy"));
    EXPECT_EQ(g_http.current_user.password, QStringLiteral("secret"));
    EXPECT_EQ(g_http.current_user.realname, QStringLiteral("艾米"));
    EXPECT_EQ(g_http.current_user.type, 2);
    const QHash<QString, QString> expected = {{QStringLiteral("1"), QStringLiteral("later")},
                                              {QStringLiteral("2"), QStringLiteral("b")}};
    EXPECT_EQ(g_http.permissions, expected);
}

TEST_F(login_call, the_type_may_be_a_number) {
    EXPECT_EQ(log_in("{\"user\":{\"username\":\"amy\",\"type\":1}}"), 2);
    EXPECT_EQ(g_http.current_user.type, 1);
}

TEST_F(login_call, a_user_without_grants_is_logged_in) {
    EXPECT_EQ(log_in("{\"user\":{\"username\":\"amy\",\"type\":2},\"wms_permission\":[]}"), 2);
    EXPECT_TRUE(g_http.permissions.isEmpty());
}

struct refusal {
    const char* what;
    const char* answer;
    int result;
};
class refused_login : public login_call, public testing::WithParamInterface<refusal> {};

TEST_P(refused_login, leaves_the_session_state_as_it_was) {
    g_http.current_user.id = QStringLiteral("5");
    g_http.current_user.username = QStringLiteral("bob");
    g_http.permissions.insert(QStringLiteral("1"), QStringLiteral("x"));
    EXPECT_EQ(log_in(GetParam().answer), GetParam().result);
    EXPECT_EQ(g_http.current_user.id, QStringLiteral("5"));
    EXPECT_EQ(g_http.current_user.username, QStringLiteral("bob"));
    EXPECT_EQ(g_http.permissions.size(), 1);
}

INSTANTIATE_TEST_SUITE_P(answers, refused_login,
                         testing::Values(refusal{"no_user", "{\"wms_permission\":[]}", 3},
                                         refusal{"other_case",
                                                 "{\"user\":{\"username\":\"Amy\",\"user_id\":\"1\"}}", 3},
                                         refusal{"other_name", "{\"user\":{\"username\":\"amy2\"}}", 3},
                                         refusal{"numeric_name", "{\"user\":{\"username\":5}}", 3},
                                         refusal{"empty_object", "{}", 1}, refusal{"nothing", "", 1},
                                         refusal{"an_array", "[1]", 1}, refusal{"an_error_page", "<html>", 1},
                                         refusal{"the_session_code", "7", 1}),
                         [](const auto& p) { return std::string(p.param.what); });
