#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalSpy>
#include <QTest>

#include "access/dlg_user_add.h"
#include "gui/tab_user_fixture.h"
#include "net/md5_hex.h"

class user_rows : public user_tab {
protected:
    user_rows() {
        administrators = {3};
        open();
        server.forget();
    }

    /** Opens the dialog with a button, has it filled and saves. */
    void save(const char* button, const std::function<void(dlg_user_add*)>& fill) {
        with_modal_of<dlg_user_add>([this, button] { click(tab.get(), button); },
                                    [&fill](dlg_user_add* d) {
                                        fill(d);
                                        click(d, "btn_submit");
                                        EXPECT_FALSE(d->isVisible());
                                    });
    }
    static void set(dlg_user_add* d, const char* field, const QString& text) {
        child<QLineEdit>(d, field)->setText(text);
    }
    void add_user() {
        save("btn_add", [](dlg_user_add* d) {
            set(d, "txt_username", QStringLiteral("new"));
            set(d, "txt_realname", QStringLiteral("新"));
            set(d, "txt_password", QStringLiteral("pw"));
            set(d, "txt_password2", QStringLiteral("pw"));
            set(d, "txt_email", QStringLiteral("n@b.cn"));
        });
    }
    void expect_row(int row, std::initializer_list<const char*> cells) {
        int i = 0;
        for (const char* cell : cells) {
            EXPECT_EQ(cell_text(table, row, i), QString::fromUtf8(cell)) << "row " << row << ", column " << i;
            ++i;
        }
    }
};

TEST_F(user_rows, add_posts_and_puts_the_row_on_top) {
    server.always("user/do_add", R"({"http_state":"1","insert_id":"77","datetime":"1586696220"})");
    add_user();
    EXPECT_EQ(server.paths(), (QList<QByteArray>{"user/check_username", "user/check_mobile",
                                                 "user/check_email", "user/do_add"}));
    EXPECT_EQ(server.last().body,
              "username=new&realname=新&password=" + md5_hex(QStringLiteral("pw")).toLatin1() +
                  "&mobile=&email=n@b.cn&type=2&state=1");
    ASSERT_EQ(table->rowCount(), 4);
    expect_row(0, {"77", "new", "新", "普通用户", "", "n@b.cn", "启用", "", "2", "1", "2020-04-12 12:57"});
    EXPECT_EQ(child<QLabel>(tab.get(), "lbl_total")->text(), QStringLiteral("共1页/3条记录"));
}

TEST_F(user_rows, an_added_row_of_no_known_time_shows_none) {
    server.always("user/do_add", R"({"http_state":1,"insert_id":"77","datetime":0})");
    add_user();
    EXPECT_TRUE(cell_text(table, 0, 10).isEmpty());
}

class refused_user : public user_rows, public testing::WithParamInterface<const char*> {};

TEST_P(refused_user, shows_nothing_and_the_dialog_is_gone) {
    server.always("user/do_add", GetParam());
    add_user();
    EXPECT_EQ(table->rowCount(), 3);
    EXPECT_TRUE(shown_tip().isEmpty());
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    EXPECT_EQ(server.bodies("user/do_add").size(), 1);
}

INSTANTIATE_TEST_SUITE_P(answers, refused_user,
                         testing::Values("{\"http_state\":0}", "{\"http_state\":7,\"insert_id\":\"1\"}", "{}",
                                         "", "[1]", "7"));

TEST_F(user_rows, everything_but_add_needs_a_row) {
    for (const char* button : {"btn_edit", "btn_delete", "btn_grant"}) {
        click(tab.get(), button);
        expect_tip(table, QStringLiteral("请先选中行"), QPoint(10, 30));
    }
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    EXPECT_TRUE(server.requests().isEmpty());
}

TEST_F(user_rows, edit_hands_the_row_to_the_dialog_and_patches_it) {
    click_row(table, 1);
    server.always("user/do_edit", "1");
    QSignalSpy handed(tab.get(), &tab_user::signal_user_to_edit);
    save("btn_edit", [](dlg_user_add* d) {
        EXPECT_EQ(d->windowTitle(), QStringLiteral("编辑用户"));
        EXPECT_EQ(child<QLineEdit>(d, "txt_username")->text(), QStringLiteral("user2"));
        EXPECT_EQ(child<QLineEdit>(d, "txt_realname")->text(), QStringLiteral("姓名2"));
        EXPECT_EQ(child<QLineEdit>(d, "txt_mobile")->text(), QStringLiteral("13800000002"));
        EXPECT_EQ(child<QLineEdit>(d, "txt_email")->text(), QStringLiteral("user2@tavrok.cn"));
        EXPECT_TRUE(child<QRadioButton>(d, "radio_off")->isChecked());
        set(d, "txt_realname", QStringLiteral("改"));
        child<QRadioButton>(d, "radio_on")->click();
    });
    ASSERT_EQ(handed.size(), 1);
    const auto record = handed.first().first().value<struct_user>();
    EXPECT_EQ(record.type, 2);
    EXPECT_EQ(record.state, 2);
    EXPECT_EQ(record.last_login_time, QStringLiteral("2020-04-12 12:58"));
    EXPECT_EQ(record.reg_time, QStringLiteral("2020-04-11 10:15"));
    EXPECT_EQ(server.bodies("user/check_username"), QList<QByteArray>{"username=user2&id=2"});
    EXPECT_EQ(server.last().body,
              QByteArray("&realname=改&mobile=13800000002&email=user2@tavrok.cn&state=1&id=2"))
        << "no password was typed, so none is sent";
    expect_row(1, {"2", "user2", "改", "普通用户", "13800000002", "user2@tavrok.cn", "启用",
                   "2020-04-12 12:58", "2", "1", "2020-04-11 10:15"});
    EXPECT_EQ(cell_text(table, 0, 10), QStringLiteral("2020-04-11 10:14"));
}

TEST_F(user_rows, a_new_password_goes_out_as_typed) {
    click_row(table, 0);
    save("btn_edit", [](dlg_user_add* d) {
        set(d, "txt_password", QStringLiteral(" Ab c "));
        set(d, "txt_password2", QStringLiteral("Ab c"));
    });
    EXPECT_EQ(server.last().body, QByteArray("&realname=姓名1&password=Ab c&mobile=13800000001"
                                             "&email=user1@tavrok.cn&state=1&id=1"));
}

TEST_F(user_rows, an_edited_administrator_shows_as_an_ordinary_user) {
    click_row(table, 2);
    server.always("user/do_edit", "1");
    save("btn_edit", [](dlg_user_add* d) { EXPECT_TRUE(child<QRadioButton>(d, "radio_off")->isHidden()); });
    EXPECT_EQ(cell_text(table, 2, 3), QStringLiteral("普通用户"));
    EXPECT_EQ(cell_text(table, 2, 8), QStringLiteral("2"));
}

TEST_F(user_rows, a_refused_edit_leaves_the_row_and_closes) {
    for (const char* body : {"0", "-3", "", "{\"http_state\":1}"}) {
        click_row(table, 1);
        server.always("user/do_edit", body);
        save("btn_edit", [](dlg_user_add* d) { set(d, "txt_realname", QStringLiteral("改")); });
        EXPECT_EQ(cell_text(table, 1, 2), QStringLiteral("姓名2")) << body;
        EXPECT_TRUE(shown_tip().isEmpty());
    }
}

TEST_F(user_rows, a_failed_check_saves_nothing) {
    with_modal_of<dlg_user_add>([this] { click(tab.get(), "btn_add"); },
                                [](dlg_user_add* d) {
                                    click(d, "btn_submit");
                                    EXPECT_EQ(shown_tip(), QStringLiteral("登录名不能为空"));
                                    EXPECT_TRUE(d->isVisible());
                                    click(d, "btn_cancel");
                                });
    EXPECT_TRUE(server.requests().isEmpty());
}

TEST_F(user_rows, grants_open_for_the_user_of_the_row) {
    click_row(table, 1);
    with_modal([this] { click(tab.get(), "btn_grant"); },
               [](QWidget* d) {
                   EXPECT_EQ(QLatin1String(d->metaObject()->className()), QLatin1String("dlg_permission"));
                   EXPECT_EQ(d->windowTitle(), QStringLiteral("分配权限"));
                   d->close();
               });
    EXPECT_EQ(server.bodies("wms_permission/get_permission"), QList<QByteArray>{"user=2"});
}
