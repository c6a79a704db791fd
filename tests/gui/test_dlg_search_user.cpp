#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

#include "access/dlg_search_user.h"
#include "gui/user_fixture.h"

class user_picker : public user_test {
protected:
    user_picker() {
        administrators = {1};
        server.always("user/get_page", page_of({1, 2, 3, 4}));
        picker = std::make_unique<dlg_search_user>();
        picked = std::make_unique<QSignalSpy>(picker.get(), &dlg_search_user::signal_user_selected);
        picker->show();
        table = child<QTableWidget>(picker.get(), "tablewidget");
    }
    void expect_picked(int n) {
        ASSERT_EQ(picked->size(), 1);
        const auto u = picked->first().first().value<struct_user>();
        const QString number = QString::number(n);
        EXPECT_EQ(u.id, number);
        EXPECT_EQ(u.username, QStringLiteral("user") + number);
        EXPECT_EQ(u.realname, QStringLiteral("姓名") + number);
        EXPECT_EQ(u.mobile, QStringLiteral("1380000000") + number);
        EXPECT_EQ(u.email, QStringLiteral("user%1@tavrok.cn").arg(number));
        EXPECT_EQ(u.type, n == 1 ? 1 : 2);
        EXPECT_EQ(u.state, n % 2 == 1 ? 1 : 2);
        EXPECT_EQ(u.last_login_time, QStringLiteral("2020-04-12 12:5%1").arg(n + 6));
        EXPECT_EQ(u.reg_time, QStringLiteral("2020-04-11 10:1%1").arg(n + 3));
        EXPECT_FALSE(picker->isVisible());
        EXPECT_EQ(picker->result(), int(QDialog::Accepted));
    }

    std::unique_ptr<dlg_search_user> picker;
    std::unique_ptr<QSignalSpy> picked;
    QTableWidget* table = nullptr;
};

TEST_F(user_picker, window_and_widgets) {
    // Title and system menu come with any button.
    EXPECT_EQ(picker->windowFlags(), Qt::Dialog | Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
                                         Qt::WindowMaximizeButtonHint | Qt::WindowCloseButtonHint);
    EXPECT_EQ(picker->size(), QSize(1300, 564));
    EXPECT_TRUE(picker->windowTitle().isEmpty()) << "the caller's";
    const struct {
        const char* label;
        const char* field;
        const char* text;
    } fields[] = {{"label_username", "txt_username", "登录名"},
                  {"label_realname", "txt_realname", "姓名"},
                  {"label_type", "comb_type", "用户类型"},
                  {"label_state", "comb_state", "状态"}};
    int left = -1;
    for (const auto& f : fields) {
        auto* label = child<QLabel>(picker.get(), f.label);
        auto* field = child<QWidget>(picker.get(), f.field);
        EXPECT_EQ(label->text(), QString::fromUtf8(f.text));
        EXPECT_TRUE(label->x() > left && label->x() < field->x());
        left = field->x();
    }
    const struct {
        const char* name;
        const char* text;
    } buttons[] = {
        {"btn_search", "查询"}, {"btn_all", "全部"}, {"btn_choose", "选择"}, {"btn_close", "关闭"}};
    for (const auto& b : buttons)
        EXPECT_EQ(child<QPushButton>(picker.get(), b.name)->text(), QString::fromUtf8(b.text));
    EXPECT_TRUE(child<QLineEdit>(picker.get(), "txt_username")->isClearButtonEnabled());
    EXPECT_TRUE(child<QLineEdit>(picker.get(), "txt_realname")->isClearButtonEnabled());
    const int bar = child<QLabel>(picker.get(), "lbl_total")->mapTo(picker.get(), QPoint()).y();
    EXPECT_GT(bar, table->geometry().bottom());
    EXPECT_GT(child<QPushButton>(picker.get(), "btn_choose")->y(), bar);
}

TEST_F(user_picker, nothing_is_cut_off_with_the_style_sheet) {
    expect_fits_with_the_style_sheet(picker.get());
}

TEST_F(user_picker, tab_goes_from_top_to_bottom) {
    EXPECT_EQ(tab_order(child<QLineEdit>(picker.get(), "txt_username"), 9),
              (QStringList{
                  QStringLiteral("txt_username"), QStringLiteral("txt_realname"), QStringLiteral("comb_type"),
                  QStringLiteral("comb_state"), QStringLiteral("btn_search"), QStringLiteral("btn_all"),
                  QStringLiteral("tablewidget"), QStringLiteral("btn_choose"), QStringLiteral("btn_close")}));
}

TEST_F(user_picker, boxes_are_those_of_the_list) {
    const auto entries = [this](const char* name) {
        QStringList texts;
        const auto* box = child<QComboBox>(picker.get(), name);
        for (int i = 0; i < box->count(); ++i)
            texts.append(box->itemText(i) + QString::number(box->itemData(i).toInt()));
        return texts;
    };
    EXPECT_EQ(entries("comb_type"), (QStringList{QStringLiteral("【全部】0"), QStringLiteral("普通用户2"),
                                                 QStringLiteral("管理员1")}));
    EXPECT_EQ(entries("comb_state"),
              (QStringList{QStringLiteral("【全部】0"), QStringLiteral("启用1"), QStringLiteral("停用2")}));
}

TEST_F(user_picker, the_first_page_comes_at_once_10_rows_a_page) {
    EXPECT_EQ(server.paths(), QList<QByteArray>{"user/get_page"});
    EXPECT_EQ(server.last().body, "&page_num=1&page_size=10");
    ASSERT_EQ(table->columnCount(), 11);
    for (int i = 0; i < 11; ++i)
        EXPECT_EQ(table->isColumnHidden(i), i == 0 || i == 8 || i == 9) << i;
}

TEST_F(user_picker, search_sends_what_is_set_in_order) {
    QSignalSpy sent(picker.get(), &dlg_search_user::signal_send_args);
    child<QLineEdit>(picker.get(), "txt_realname")->setText(QStringLiteral(" 李 "));
    child<QComboBox>(picker.get(), "comb_type")->setCurrentIndex(2);
    click(picker.get(), "btn_search");
    EXPECT_EQ(server.last().body, QByteArray("&realname=李&type=1&page_num=1&page_size=10"));
    child<QLineEdit>(picker.get(), "txt_username")->setText(QStringLiteral("a"));
    child<QComboBox>(picker.get(), "comb_state")->setCurrentIndex(1);
    click(picker.get(), "btn_search");
    EXPECT_EQ(server.last().body,
              QByteArray("username=a&realname=李&type=1&state=1&page_num=1&page_size=10"));
    ASSERT_EQ(sent.size(), 2);
    EXPECT_EQ(sent.first().first().toString(), QStringLiteral("&realname=李&type=1"));
}

TEST_F(user_picker, return_and_enter_search_and_every_other_key_is_swallowed) {
    server.forget();
    int expected = 0;
    for (Qt::Key key : {Qt::Key_Return, Qt::Key_Enter})
        for (const char* name : {"txt_username", "tablewidget", "btn_close"}) {
            QTest::keyClick(child<QWidget>(picker.get(), name), key);
            EXPECT_EQ(server.requests().size(), ++expected) << name;
        }
    for (Qt::Key key : {Qt::Key_Escape, Qt::Key_F5, Qt::Key_A}) {
        QTest::keyClick(picker.get(), key);
        EXPECT_TRUE(picker->isVisible());
    }
    EXPECT_EQ(server.requests().size(), expected);
}

TEST_F(user_picker, choose_needs_a_current_row) {
    click(picker.get(), "btn_choose");
    expect_tip(table, QStringLiteral("请先选中行"), QPoint(10, 30));
    EXPECT_TRUE(picker->isVisible());
    EXPECT_EQ(picked->size(), 0);
}

TEST_F(user_picker, choose_hands_over_the_whole_record) {
    click_row(table, 2);
    click(picker.get(), "btn_choose");
    expect_picked(3);
}

TEST_F(user_picker, a_double_click_chooses) {
    click_row(table, 0);
    const QPoint cell = table->visualItemRect(table->item(0, 1)).center();
    QTest::mouseDClick(table->viewport(), Qt::LeftButton, Qt::NoModifier, cell);
    expect_picked(1);
}

TEST_F(user_picker, a_double_click_takes_the_current_row_and_not_the_index) {
    click_row(table, 1);
    picker->on_tablewidget_doubleClicked(table->model()->index(3, 1));
    expect_picked(2);
}

TEST_F(user_picker, all_hands_over_an_empty_record) {
    click_row(table, 1);
    child<QLineEdit>(picker.get(), "txt_username")->setText(QStringLiteral("a"));
    click(picker.get(), "btn_search");
    click(picker.get(), "btn_all");
    ASSERT_EQ(picked->size(), 1);
    const auto u = picked->first().first().value<struct_user>();
    EXPECT_TRUE(u.id.isEmpty());
    EXPECT_TRUE(u.username.isEmpty());
    EXPECT_TRUE(u.realname.isEmpty());
    EXPECT_EQ(u.type, 0);
    EXPECT_EQ(u.state, 0);
    EXPECT_EQ(picker->result(), int(QDialog::Accepted));
    EXPECT_FALSE(picker->isVisible());
}

TEST_F(user_picker, close_rejects) {
    click_row(table, 1);
    click(picker.get(), "btn_close");
    EXPECT_FALSE(picker->isVisible());
    EXPECT_EQ(picker->result(), int(QDialog::Rejected));
    EXPECT_EQ(picked->size(), 0);
}
