#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QTcpServer>

#include "model/model_version.h"
#include "net/http.h"
#include "support/client_fixture.h"
#include "support/screen.h"

class http_failures : public client_test {
protected:
    http_failures() { door.base_url = server.base_url(); }

    void expect_nothing_read() {
        const QString path = QStringLiteral("x/y");
        EXPECT_EQ(door.post_raw(path, QString()).toInt(nullptr, 10), 0);
        EXPECT_TRUE(door.post_array(path, QString()).isEmpty());
        const QJsonObject object = door.post_object(path, QString());
        EXPECT_TRUE(object.isEmpty());
        EXPECT_EQ(object.value(QLatin1String("http_state")).toVariant().toInt(), 0);
        EXPECT_TRUE(door.get_array(path).isEmpty());
    }

    http door;
};

TEST_F(http_failures, nobody_listens) {
    QTcpServer silent;
    ASSERT_TRUE(silent.listen(QHostAddress::LocalHost));
    door.base_url = QStringLiteral("http://127.0.0.1:%1/").arg(silent.serverPort());
    silent.close();
    expect_nothing_read();
}

TEST_F(http_failures, a_tls_handshake_with_a_peer_that_has_no_tls) {
    QTcpServer refusing;
    ASSERT_TRUE(refusing.listen(QHostAddress::LocalHost));
    QObject::connect(&refusing, &QTcpServer::newConnection, &refusing,
                     [&refusing] { delete refusing.nextPendingConnection(); });
    door.base_url = QStringLiteral("https://127.0.0.1:%1/").arg(refusing.serverPort());
    expect_nothing_read();
}

TEST_F(http_failures, a_connection_dropped_after_the_request) {
    for (int i = 0; i < 40; ++i)
        server.answer(scripted_answer::dropped());
    EXPECT_EQ(door.post_raw(QStringLiteral("x/y"), QString()).toInt(nullptr, 10), 0);
    EXPECT_GE(server.requests().size(), 1);
}

TEST_F(http_failures, garbage_instead_of_an_answer) {
    for (int i = 0; i < 40; ++i)
        server.answer(scripted_answer::of_garbage("\x16\x03\x01 what is this\r\n\r\n"));
    EXPECT_TRUE(door.post_object(QStringLiteral("x/y"), QString()).isEmpty());
}

TEST_F(http_failures, an_error_page) {
    for (int i = 0; i < 4; ++i)
        server.answer(scripted_answer::with_status(500, "<html>broken</html>"));
    expect_nothing_read();
}

TEST_F(http_failures, the_status_code_is_not_looked_at) {
    server.answer(scripted_answer::with_status(500, "3"));
    EXPECT_EQ(door.post_raw(QStringLiteral("x/y"), QString()), "3");
    server.answer(scripted_answer::with_status(404, "{\"http_state\":1}"));
    EXPECT_EQ(door.post_object(QStringLiteral("x/y"), QString()).size(), 1);
}

TEST_F(http_failures, the_content_type_is_not_looked_at) {
    scripted_answer plain("{\"a\":1}");
    plain.headers.append("Content-Type: image/png");
    server.answer(plain);
    EXPECT_EQ(door.post_object(QStringLiteral("x/y"), QString()).size(), 1);
}

TEST_F(http_failures, invalid_json_reads_as_empty) {
    for (int i = 0; i < 4; ++i)
        server.answer("{\"http_state\":1");
    expect_nothing_read();
}

TEST_F(http_failures, the_wrong_json_type_reads_as_empty) {
    server.answer("{\"list\":[]}");
    EXPECT_TRUE(door.post_array(QStringLiteral("x/y"), QString()).isEmpty());
    server.answer("[{}]");
    EXPECT_TRUE(door.post_object(QStringLiteral("x/y"), QString()).isEmpty());
}

TEST_F(http_failures, a_count_that_is_no_number_is_a_failure) {
    for (const char* body : {"", "abc", "1x", "{}", "1.5", "0x1"}) {
        server.answer(body);
        EXPECT_LE(door.post_raw(QStringLiteral("x/y"), QString()).toInt(nullptr, 10), 0) << body;
    }
}

TEST_F(http_failures, there_is_no_time_out) {
    auto* manager = door.findChild<QNetworkAccessManager*>();
    ASSERT_NE(manager, nullptr);
    QList<int> time_outs;
    QObject::connect(manager, &QNetworkAccessManager::finished, &door, [&time_outs](QNetworkReply* reply) {
        time_outs.append(reply->request().transferTimeout());
    });
    server.answer("1");
    door.post_raw(QStringLiteral("x/y"), QString());
    server.answer("1");
    door.get_raw(QStringLiteral("x/y"));
    EXPECT_EQ(time_outs, QList<int>({0, 0}));
    EXPECT_EQ(manager->transferTimeout(), 0);
}

TEST_F(http_failures, the_door_works_again_after_a_failure) {
    QTcpServer silent;
    ASSERT_TRUE(silent.listen(QHostAddress::LocalHost));
    door.base_url = QStringLiteral("http://127.0.0.1:%1/").arg(silent.serverPort());
    silent.close();
    EXPECT_EQ(door.post_raw(QStringLiteral("x/y"), QString()), "");
    door.base_url = server.base_url();
    server.answer("1");
    EXPECT_EQ(door.post_raw(QStringLiteral("x/y"), QString()), "1");
}
