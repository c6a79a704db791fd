#include <QElapsedTimer>
#include <QTimer>

#include "net/http.h"
#include "support/client_fixture.h"
#include "support/screen.h"

class http_calls : public client_test {
protected:
    http_calls() { door.base_url = server.base_url(); }
    http door;
};

TEST_F(http_calls, post_sends_the_body_as_it_stands) {
    QString args = QStringLiteral("&name=甲&乙&note=a+b=%41");
    const QByteArray expected = args.toUtf8();
    door.do_post(QStringLiteral("wms_company/do_add"), args);
    ASSERT_EQ(server.requests().size(), 1);
    EXPECT_EQ(server.last().method, "POST");
    EXPECT_EQ(server.last().path, "wms_company/do_add");
    EXPECT_EQ(server.last().body, expected);
    EXPECT_EQ(server.last().header("Content-Type"), "application/x-www-form-urlencoded");
}

TEST_F(http_calls, do_post_empties_the_callers_args_and_the_wrappers_do_not) {
    QString args = QStringLiteral("a=1");
    door.do_post(QStringLiteral("x/y"), args);
    EXPECT_TRUE(args.isEmpty());
    args = QStringLiteral("a=1");
    door.post_raw(QStringLiteral("x/y"), args);
    EXPECT_EQ(args, QStringLiteral("a=1"));
}

TEST_F(http_calls, get_has_no_body_and_the_same_content_type) {
    server.answer("\x89PNG");
    EXPECT_EQ(door.get_raw(QStringLiteral("user_reg/captcha_data")), "\x89PNG");
    EXPECT_EQ(server.last().method, "GET");
    EXPECT_TRUE(server.last().body.isEmpty());
    EXPECT_EQ(server.last().header("Content-Type"), "application/x-www-form-urlencoded");
}

TEST_F(http_calls, no_header_of_our_own_beside_the_content_type) {
    door.get(QStringLiteral("x/y"));
    for (const auto& h : server.last().headers)
        EXPECT_TRUE(QList<QByteArray>({"Host", "Connection", "Accept-Encoding", "Accept-Language",
                                       "User-Agent", "Content-Type", "Cookie"})
                        .contains(h.first))
            << h.first.toStdString();
    EXPECT_TRUE(server.last().header("User-Agent") == "Mozilla/5.0") << "the toolkit's own";
}

TEST_F(http_calls, the_body_is_trimmed) {
    server.answer(" \r\n 12\t\n");
    EXPECT_EQ(door.post_raw(QStringLiteral("x/y"), QString()), "12");
}

struct form_row {
    const char* what;
    const char* body;
    int array_size;
    int object_size;
};

class http_forms : public http_calls, public testing::WithParamInterface<form_row> {};

TEST_P(http_forms, every_operation_reads_its_form) {
    for (int i = 0; i < 6; ++i)
        server.answer(GetParam().body);
    const QString path = QStringLiteral("x/y");
    EXPECT_EQ(door.post_array(path, QString()).size(), GetParam().array_size);
    EXPECT_EQ(door.get_array(path).size(), GetParam().array_size);
    EXPECT_EQ(door.post_object(path, QString()).size(), GetParam().object_size);
    EXPECT_EQ(door.get_object(path).size(), GetParam().object_size);
    const bool is_json = GetParam().array_size + GetParam().object_size > 0;
    EXPECT_EQ(!door.post_json(path, QString()).isEmpty(), is_json);
    EXPECT_EQ(!door.get_json(path).isEmpty(), is_json);
    EXPECT_EQ(server.requests().size(), 6);
}

INSTANTIATE_TEST_SUITE_P(bodies, http_forms,
                         testing::Values(form_row{"array", "[1,2,3]", 3, 0},
                                         form_row{"object", "{\"a\":1,\"b\":2}", 0, 2},
                                         form_row{"count", "1", 0, 0}, form_row{"empty", "", 0, 0},
                                         form_row{"broken", "{\"a\":", 0, 0},
                                         form_row{"page", "<html>404</html>", 0, 0}),
                         [](const auto& p) { return std::string(p.param.what); });

TEST_F(http_calls, path_is_appended_to_the_root_as_it_stands) {
    door.base_url = server.base_url() + QStringLiteral("deep/");
    door.post(QStringLiteral("a/b"), QStringLiteral("c=d"));
    EXPECT_EQ(server.last().path, "deep/a/b");
}

TEST_F(http_calls, one_connection_serves_many_calls) {
    for (int i = 0; i < 5; ++i)
        door.post_raw(QStringLiteral("x/y"), QStringLiteral("i=%1").arg(i));
    EXPECT_EQ(server.connections(), 1);
    EXPECT_EQ(server.bodies("x/y"), QList<QByteArray>({"i=0", "i=1", "i=2", "i=3", "i=4"}));
}

TEST_F(http_calls, events_go_on_while_a_call_waits) {
    bool handled = false;
    QTimer::singleShot(0, &door, [&handled] { handled = true; });
    server.answer(scripted_answer::late(50, "done"));
    EXPECT_EQ(door.post_raw(QStringLiteral("x/y"), QString()), "done");
    EXPECT_TRUE(handled);
}

TEST_F(http_calls, a_call_waits_as_long_as_the_answer_takes) {
    server.answer(scripted_answer::late(300, "1"));
    QElapsedTimer clock;
    clock.start();
    EXPECT_EQ(door.post_raw(QStringLiteral("x/y"), QString()), "1");
    EXPECT_GE(clock.elapsed(), 295);
}

TEST_F(http_calls, a_call_inside_a_call_overwrites_what_is_known_of_the_first) {
    QByteArray inner = "untouched";
    QTimer::singleShot(20, &door, [&] { inner = door.get_raw(QStringLiteral("inner/call")); });
    server.answer(scripted_answer::late(200, "outer"));
    server.answer(scripted_answer::late(20, "inner"));
    const QByteArray outer = door.get_raw(QStringLiteral("outer/call"));
    EXPECT_EQ(server.paths(), QList<QByteArray>({"outer/call", "inner/call"}));
    // The one loop is not entered twice: the inner call returns at once with nothing, and what ends the outer
    // wait is the first answer to come, read from the latest reply.
    EXPECT_TRUE(inner.isEmpty());
    EXPECT_EQ(outer, "inner");
}
