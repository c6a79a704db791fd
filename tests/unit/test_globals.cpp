#include <gtest/gtest.h>

#include <QMetaType>

#include "model/model_company.h"
#include "model/model_menu.h"
#include "model/model_user.h"
#include "net/constants.h"
#include "net/http.h"
#include "net/md5_hex.h"
#include "support/screen.h"

TEST(constants, texts) {
    EXPECT_EQ(g_app_title, QStringLiteral("Tavrok仓储管理系统(Tavrok_WMS)"));
    EXPECT_EQ(g_version_time, QStringLiteral("1586696219"));
    EXPECT_EQ(g_version, QStringLiteral("1.0.3"));
    EXPECT_EQ(
        g_style_list,
        QStringLiteral("<style>table{border-color:#004EA1;color:#004EA1;border-style:solid;font-family:"
                       "Microsoft YaHei;font-size:9pt;}#td_title{font-size:15pt;padding:10;}#tr_header{"
                       "font-size:11pt;background-color:#E0EEFF;align:center}#tr_header td{align:center}"
                       "</style>"));
    EXPECT_EQ(
        g_style_detail,
        QStringLiteral("<style>table{border:1pt;border-color:#6F9CCF;color:#004EA1;border-style:solid;"
                       "font-family:Microsoft YaHei;font-size:10pt}td{padding:5px}#title{font-size:16pt;"
                       "color:#004EA1;text-align:center}.tr_header{background-color:#E0EEFF;font-size:"
                       "11pt;}.tr_header td{align:center}td{border:1px;border-color:#6F9CCF;border-style:"
                       "solid;}#table_data{margin:10pt}#td_data{padding:15px}</style>"));
}

TEST(constants, the_service_root_ends_in_a_slash) {
    EXPECT_TRUE(g_http.base_url.endsWith(QLatin1Char('/')));
}

TEST(md5_hex, known_values) {
    EXPECT_EQ(md5_hex(QString()), QStringLiteral("d41d8cd98f00b204e9800998ecf8427e"));
    EXPECT_EQ(md5_hex(QStringLiteral("123456")), QStringLiteral("e10adc3949ba59abbe56e057f20f883e"));
}

TEST(md5_hex, takes_latin1_bytes_and_question_marks_for_the_rest) {
    EXPECT_EQ(md5_hex(QStringLiteral("é")), QStringLiteral("3406877694691ddd1dfb0aca54681407"));
    EXPECT_EQ(md5_hex(QStringLiteral("密码")), md5_hex(QStringLiteral("??")));
}

TEST(records, are_known_to_the_meta_type_system_by_name) {
    const model_user accounts;
    const model_company partners(nullptr);
    const model_menu menu(nullptr, nullptr, 2);
    for (const char* name : {"struct_user", "struct_company", "struct_menu"})
        EXPECT_NE(QMetaType::type(name), int(QMetaType::UnknownType)) << name;
}

TEST(records, defaults) {
    EXPECT_EQ(struct_company().type, 4);
    EXPECT_EQ(struct_company().datetime, 0);
    EXPECT_TRUE(struct_company().id.isEmpty());
}
