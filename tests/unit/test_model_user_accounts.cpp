#include <QHeaderView>
#include <QTableWidget>

#include "model/model_user.h"
#include "net/md5_hex.h"
#include "support/client_fixture.h"
#include "support/screen.h"
#include "support/time_zone.h"

namespace {

struct_user full_user() {
    struct_user u;
    u.id = QStringLiteral("31");
    u.username = QStringLiteral("amy");
    u.realname = QStringLiteral("艾米");
    u.password = QStringLiteral("pw 1&2");
    u.last_login_time = QStringLiteral("2021-01-02 03:04");
    u.type = 2;
    u.mobile = QStringLiteral("13800000000");
    u.email = QStringLiteral("amy@tavrok.cn");
    u.state = 1;
    u.reg_time = QStringLiteral("2020-01-02 03:04");
    return u;
}

const char* const three_users = R"({"list":[
 {"id":"1","username":"boss","realname":"王","type":"1","mobile":"m","email":"e","state":"1",
  "last_login_time":1586696219,"reg_time":"1586696159"},
 {"id":2,"username":"amy","type":2,"state":2,"last_login_time":0,"reg_time":0},
 {"id":"3","type":"9","state":"0"}],"total":3,"page_count":"1","page_num":1})";

} // namespace

class account_model : public client_test {
protected:
    account_model() : model(&table) {}

    void load() {
        server.answer(three_users);
        model.get_page(QString(), 1, 20);
    }
    void expect_row(int row, std::initializer_list<const char*> cells) {
        int i = 0;
        for (const char* cell : cells) {
            EXPECT_EQ(cell_text(&table, row, i), QString::fromUtf8(cell))
                << "row " << row << ", column " << i;
            ++i;
        }
    }

    QTableWidget table;
    model_user model;
    const scoped_time_zone zone{"UTC"};
};

TEST_F(account_model, answers_to_the_interfaces_name) {
    EXPECT_EQ(qobject_cast<model_interface*>(static_cast<QObject*>(&model)),
              static_cast<model_interface*>(&model));
    EXPECT_NE(model.qt_metacast("model_interface"), nullptr);
}

TEST_F(account_model, page_request_and_information) {
    server.answer(three_users);
    const auto info = model.get_page(QStringLiteral("username=a&type=2"), 3, 20);
    EXPECT_EQ(server.last().path, "user/get_page");
    EXPECT_EQ(server.last().body, "username=a&type=2&page_num=3&page_size=20");
    EXPECT_EQ(info.value(QStringLiteral("total")).toString(), QStringLiteral("3"));
    EXPECT_EQ(info.value(QStringLiteral("page_count")).toString(), QStringLiteral("1"));
    EXPECT_EQ(info.value(QStringLiteral("page_num")).toString(), QStringLiteral("1"));
}

TEST_F(account_model, page_cells) {
    load();
    ASSERT_EQ(table.rowCount(), 3);
    expect_row(
        0, {"1", "boss", "王", "管理员", "m", "e", "启用", "2020-04-12 12:56", "1", "1", "2020-04-12 12:55"});
    // Numbers are no text, but words are found for them; a time of 0 is empty.
    expect_row(1, {"", "amy", "", "普通用户", "", "", "停用", "", "", "", ""});
    expect_row(2, {"3", "", "", "普通用户", "", "", "停用", "", "9", "0", ""});
}

TEST_F(account_model, page_headers_and_look) {
    model.get_page(QString(), 1, 20);
    const char* const headers[] = {"id",   "用户名",       "姓名",       "用户类型", "手机",    "邮件",
                                   "状态", "最后登录时间", "用户类型id", "状态数值", "注册时间"};
    ASSERT_EQ(table.columnCount(), 11);
    for (int i = 0; i < 11; ++i) {
        EXPECT_EQ(table.horizontalHeaderItem(i)->text(), QString::fromUtf8(headers[i]));
        EXPECT_EQ(table.isColumnHidden(i), i == 0 || i == 8 || i == 9) << i;
        EXPECT_EQ(table.horizontalHeader()->sectionResizeMode(i),
                  i == 0 ? QHeaderView::ResizeToContents : QHeaderView::Stretch);
    }
}

TEST_F(account_model, a_failed_page_clears_the_table_shows_headers_and_counts_zero) {
    for (const char* body : {"", "[]", "7", "{\"total\":", "<html>"}) {
        load();
        server.answer(body);
        const auto info = model.get_page(QString(), 1, 20);
        EXPECT_EQ(table.rowCount(), 0) << body;
        EXPECT_EQ(table.columnCount(), 11);
        EXPECT_EQ(info.value(QStringLiteral("page_count")).toInt(), 0);
    }
}

TEST_F(account_model, add_sends_the_hash_of_the_password) {
    server.answer("{\"http_state\":1,\"insert_id\":\"5\",\"datetime\":9}");
    const QJsonObject answer = model.do_add(full_user());
    EXPECT_EQ(server.last().path, "user/do_add");
    EXPECT_EQ(server.last().body,
              "username=amy&realname=艾米&password=" + md5_hex(QStringLiteral("pw 1&2")).toLatin1() +
                  "&mobile=13800000000&email=amy@tavrok.cn&type=2&state=1");
    EXPECT_EQ(answer.value(QLatin1String("insert_id")).toString(), QStringLiteral("5"));
}

TEST_F(account_model, add_leaves_no_key_out) {
    model.do_add(struct_user());
    EXPECT_EQ(server.last().body, "username=&realname=&password=" + md5_hex(QString()).toLatin1() +
                                      "&mobile=&email=&type=0&state=0");
}

TEST_F(account_model, edit_sends_the_password_as_typed_and_neither_name_nor_type) {
    model.do_edit(full_user());
    EXPECT_EQ(server.last().path, "user/do_edit");
    EXPECT_EQ(server.last().body, QByteArray("&realname=艾米&password=pw 1&2&mobile=13800000000"
                                             "&email=amy@tavrok.cn&state=1&id=31"));
}

TEST_F(account_model, edit_without_a_password_sends_no_password_key) {
    struct_user u = full_user();
    u.password.clear();
    model.do_edit(u);
    EXPECT_EQ(server.last().body,
              QByteArray("&realname=艾米&mobile=13800000000&email=amy@tavrok.cn&state=1&id=31"));
    model.do_edit(struct_user());
    EXPECT_EQ(server.last().body, "&realname=&mobile=&email=&state=0&id=");
}

TEST_F(account_model, edit_rewrites_the_whole_current_row) {
    load();
    table.setCurrentCell(1, 1);
    server.answer("1");
    model.do_edit(full_user());
    expect_row(1, {"31", "amy", "艾米", "普通用户", "13800000000", "amy@tavrok.cn", "启用",
                   "2021-01-02 03:04", "2", "1", "2020-01-02 03:04"});
    EXPECT_EQ(cell_text(&table, 0, 1), QStringLiteral("boss"));
    EXPECT_EQ(cell_text(&table, 0, 10), QStringLiteral("2020-04-12 12:55"));
}

TEST_F(account_model, a_failed_edit_leaves_the_row_unchanged) {
    load();
    table.setCurrentCell(0, 1);
    for (const char* body : {"0", "-1", "", "no", "{\"http_state\":1}"}) {
        server.answer(body);
        model.do_edit(full_user());
        EXPECT_EQ(cell_text(&table, 0, 1), QStringLiteral("boss")) << body;
    }
}

TEST_F(account_model, the_session_code_counts_as_a_saved_edit) {
    load();
    table.setCurrentCell(0, 1);
    server.answer("7");
    model.do_edit(full_user());
    EXPECT_EQ(cell_text(&table, 0, 1), QStringLiteral("amy"));
    EXPECT_EQ(server.last().path, "wms/check_login");
}

struct count_row {
    const char* body;
    bool more_than_none;
};
const count_row counts[] = {{"1", true},   {"2", true}, {" 1 ", true}, {"7", true},  {"0", false},
                            {"-1", false}, {"", false}, {"x", false},  {"{}", false}};

TEST_F(account_model, delete_reads_the_count_form) {
    for (const auto& r : counts) {
        server.forget();
        server.answer(r.body);
        EXPECT_EQ(model.do_delete(12), r.more_than_none) << r.body;
        EXPECT_EQ(server.requests().first().path, "user/do_delete");
        EXPECT_EQ(server.requests().first().body, "id=12");
    }
}

TEST_F(account_model, checks_read_the_count_form) {
    for (const auto& r : counts) {
        server.answer(r.body);
        EXPECT_EQ(model.check_username(QStringLiteral("a"), QString()), r.more_than_none) << r.body;
        server.answer(r.body);
        EXPECT_EQ(model.check_mobile(QStringLiteral("a"), QString()), r.more_than_none) << r.body;
        server.answer(r.body);
        EXPECT_EQ(model.check_email(QStringLiteral("a"), QString()), r.more_than_none) << r.body;
    }
}

TEST_F(account_model, checks_name_the_account_to_leave_out_only_if_there_is_one) {
    model_user without_table;
    without_table.check_username(QStringLiteral("艾米"), QStringLiteral("31"));
    without_table.check_mobile(QStringLiteral("138"), QStringLiteral("31"));
    without_table.check_email(QStringLiteral("a@b.cn"), QStringLiteral("31"));
    without_table.check_username(QStringLiteral("amy"), QString());
    without_table.check_mobile(QString(), QString());
    without_table.check_email(QStringLiteral("a&b"), QString());
    EXPECT_EQ(server.bodies("user/check_username"),
              QList<QByteArray>({"username=艾米&id=31", "username=amy"}));
    EXPECT_EQ(server.bodies("user/check_mobile"), QList<QByteArray>({"mobile=138&id=31", "mobile="}));
    EXPECT_EQ(server.bodies("user/check_email"), QList<QByteArray>({"email=a@b.cn&id=31", "email=a&b"}));
}

TEST_F(account_model, an_added_account_goes_on_top_and_has_never_logged_in) {
    load();
    table.setCurrentCell(0, 1);
    struct_user u = full_user();
    u.reg_time = QStringLiteral("1586696219");
    model.add_row(u);
    ASSERT_EQ(table.rowCount(), 4);
    expect_row(0, {"31", "amy", "艾米", "普通用户", "13800000000", "amy@tavrok.cn", "启用", "", "2", "1",
                   "2020-04-12 12:56"});
    EXPECT_EQ(table.currentRow(), 1) << "the new row does not become the current one";
    u.reg_time = QStringLiteral("0");
    u.type = 1;
    u.state = 2;
    model.add_row(u);
    expect_row(0, {"31", "amy", "艾米", "管理员", "13800000000", "amy@tavrok.cn", "停用", "", "1", "2", ""});
}

TEST_F(account_model, a_row_is_taken_back_as_its_record) {
    load();
    const struct_user u = read_record(&table, 0, model_user::columns());
    EXPECT_EQ(u.id, QStringLiteral("1"));
    EXPECT_EQ(u.username, QStringLiteral("boss"));
    EXPECT_EQ(u.realname, QStringLiteral("王"));
    EXPECT_TRUE(u.password.isEmpty());
    EXPECT_EQ(u.last_login_time, QStringLiteral("2020-04-12 12:56"));
    EXPECT_EQ(u.type, 1);
    EXPECT_EQ(u.mobile, QStringLiteral("m"));
    EXPECT_EQ(u.email, QStringLiteral("e"));
    EXPECT_EQ(u.state, 1);
    EXPECT_EQ(u.reg_time, QStringLiteral("2020-04-12 12:55"));
}

TEST_F(account_model, search_arguments_begin_with_an_ampersand_when_the_name_is_empty) {
    struct_user words;
    EXPECT_EQ(model_user::search_args(words), QString());
    words.state = 2;
    EXPECT_EQ(model_user::search_args(words), QStringLiteral("&state=2"));
    words.type = 1;
    words.realname = QStringLiteral("王");
    EXPECT_EQ(model_user::search_args(words), QStringLiteral("&realname=王&type=1&state=2"));
    words.username = QStringLiteral("a");
    EXPECT_EQ(model_user::search_args(words), QStringLiteral("username=a&realname=王&type=1&state=2"));
}

TEST_F(account_model, sign_up_sends_what_it_is_given) {
    server.answer("{\"company\":1,\"captcha\":0}");
    EXPECT_EQ(model.check_reg_exist(QStringLiteral("company=甲&captcha=a")).size(), 2);
    EXPECT_EQ(server.last().path, "user_reg/check_reg_exist");
    EXPECT_EQ(server.last().body, QByteArray("company=甲&captcha=a"));
    server.answer("{\"state\":5}");
    EXPECT_EQ(model.do_reg(QStringLiteral("company=乙")).value(QLatin1String("state")).toInt(), 5);
    EXPECT_EQ(server.last().path, "user_reg/do_reg");
    EXPECT_EQ(server.last().body, QByteArray("company=乙"));
    for (const char* body : {"", "7", "[1]", "<html>"}) {
        server.answer(body);
        EXPECT_TRUE(model.check_reg_exist(QString()).isEmpty()) << body;
        server.answer(body);
        EXPECT_TRUE(model.do_reg(QString()).isEmpty()) << body;
    }
}
