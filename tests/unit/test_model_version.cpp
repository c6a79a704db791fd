#include "model/model_version.h"
#include "net/http.h"
#include "support/client_fixture.h"
#include "support/screen.h"

class version_check_call : public client_test {};

TEST_F(version_check_call, tells_the_build_stamp_and_returns_the_answer) {
    server.answer("{\"need_update\":1,\"file_name\":\"download/wms.zip\"}");
    const QJsonObject answer = version_check();
    EXPECT_EQ(server.last().path, "version/wms_check");
    EXPECT_EQ(server.last().body, "version_time=1586696219");
    EXPECT_EQ(answer.value(QLatin1String("need_update")).toVariant().toString(), QStringLiteral("1"));
    EXPECT_EQ(answer.value(QLatin1String("file_name")).toString(), QStringLiteral("download/wms.zip"));
}

TEST_F(version_check_call, the_session_code_renews_with_empty_credentials_and_reads_as_nothing) {
    server.answer("7");
    EXPECT_TRUE(version_check().isEmpty());
    EXPECT_EQ(server.paths(), QList<QByteArray>({"version/wms_check", "wms/check_login"}));
    EXPECT_EQ(server.last().body, "username=&password=");
}

TEST_F(version_check_call, no_answer_is_an_empty_object) {
    EXPECT_TRUE(version_check().isEmpty());
}
