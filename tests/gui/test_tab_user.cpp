#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

#include "access/dlg_user_add.h"
#include "gui/tab_user_fixture.h"

const char* const button_names[] = {"btn_search", "btn_add", "btn_edit", "btn_delete", "btn_grant"};
const char* const button_texts[] = {"查询", "添加", "编辑", "删除", "分配权限"};

TEST_F(user_tab, widgets) {
    open();
    EXPECT_EQ(tab->size(), QSize(1300, 500));
    const struct {
        const char* label;
        const char* field;
        const char* text;
    } fields[] = {{"label_username", "txt_username", "用户名"},
                  {"label_realname", "txt_realname", "姓名"},
                  {"label_type", "comb_type", "类型"},
                  {"label_state", "comb_state", "状态"}};
    int left = -1;
    for (const auto& f : fields) {
        auto* field = child<QWidget>(tab.get(), f.field);
        auto* label = child<QLabel>(tab.get(), f.label);
        EXPECT_EQ(label->text(), QString::fromUtf8(f.text));
        EXPECT_TRUE(label->x() > left && label->x() < field->x());
        left = field->x();
    }
    EXPECT_TRUE(child<QLineEdit>(tab.get(), "txt_username")->isClearButtonEnabled());
    EXPECT_TRUE(child<QLineEdit>(tab.get(), "txt_realname")->isClearButtonEnabled());
    for (int i = 0; i < 5; ++i) {
        auto* button = child<QPushButton>(tab.get(), button_names[i]);
        EXPECT_EQ(button->text(), QString::fromUtf8(button_texts[i]));
        EXPECT_GT(button->x(), left);
        left = button->x();
    }
    EXPECT_GT(child<QLabel>(tab.get(), "lbl_total")->mapTo(tab.get(), QPoint()).y(),
              table->geometry().bottom());
}

TEST_F(user_tab, boxes_have_their_choices_with_data) {
    open();
    const struct {
        const char* box;
        QList<QPair<QString, int>> entries;
    } boxes[] = {
        {"comb_type",
         {{QStringLiteral("【全部】"), 0}, {QStringLiteral("普通用户"), 2}, {QStringLiteral("管理员"), 1}}},
        {"comb_state",
         {{QStringLiteral("【全部】"), 0}, {QStringLiteral("启用"), 1}, {QStringLiteral("停用"), 2}}}};
    for (const auto& b : boxes) {
        auto* box = child<QComboBox>(tab.get(), b.box);
        ASSERT_EQ(box->count(), b.entries.size());
        EXPECT_EQ(box->currentIndex(), 0);
        for (int i = 0; i < box->count(); ++i) {
            EXPECT_EQ(box->itemText(i), b.entries[i].first);
            EXPECT_EQ(box->itemData(i).toInt(), b.entries[i].second);
        }
    }
}

TEST_F(user_tab, nothing_is_cut_off_with_the_style_sheet) {
    open();
    expect_fits_with_the_style_sheet(tab.get());
}

TEST_F(user_tab, tab_goes_from_left_to_right_and_to_the_list) {
    open();
    EXPECT_EQ(
        tab_order(child<QLineEdit>(tab.get(), "txt_username"), 10),
        (QStringList{QStringLiteral("txt_username"), QStringLiteral("txt_realname"),
                     QStringLiteral("comb_type"), QStringLiteral("comb_state"), QStringLiteral("btn_search"),
                     QStringLiteral("btn_add"), QStringLiteral("btn_edit"), QStringLiteral("btn_delete"),
                     QStringLiteral("btn_grant"), QStringLiteral("tablewidget")}));
}

TEST_F(user_tab, the_list_comes_at_once_20_rows_a_page) {
    open();
    EXPECT_EQ(server.paths(), QList<QByteArray>{"user/get_page"});
    EXPECT_EQ(server.last().body, "&page_num=1&page_size=20");
    EXPECT_EQ(names(table),
              (QStringList{QStringLiteral("user1"), QStringLiteral("user2"), QStringLiteral("user3")}));
}

TEST_F(user_tab, search_sends_what_is_set_in_order) {
    open();
    QSignalSpy sent(tab.get(), &tab_user::signal_send_args);
    auto* username = child<QLineEdit>(tab.get(), "txt_username");
    auto* type = child<QComboBox>(tab.get(), "comb_type");
    username->setText(QStringLiteral(" li "));
    child<QLineEdit>(tab.get(), "txt_realname")->setText(QStringLiteral("\t李 "));
    type->setCurrentIndex(1);
    child<QComboBox>(tab.get(), "comb_state")->setCurrentIndex(2);
    click(tab.get(), "btn_search");
    EXPECT_EQ(server.last().body,
              QByteArray("username=li&realname=李&type=2&state=2&page_num=1&page_size=20"));
    username->setText(QStringLiteral("  "));
    type->setCurrentIndex(2);
    click(tab.get(), "btn_search");
    EXPECT_EQ(server.last().body, QByteArray("&realname=李&type=1&state=2&page_num=1&page_size=20"));
    child<QLineEdit>(tab.get(), "txt_realname")->clear();
    type->setCurrentIndex(0);
    child<QComboBox>(tab.get(), "comb_state")->setCurrentIndex(1);
    click(tab.get(), "btn_search");
    EXPECT_EQ(server.last().body, "&state=1&page_num=1&page_size=20");
    ASSERT_EQ(sent.size(), 3);
    EXPECT_EQ(sent.last().first().toString(), QStringLiteral("&state=1"));
}

TEST_F(user_tab, page_turns_keep_the_search) {
    open();
    server.always("user/get_page", page_of({1, 2}, 3));
    child<QLineEdit>(tab.get(), "txt_username")->setText(QStringLiteral("x"));
    click(tab.get(), "btn_search");
    child<QLineEdit>(tab.get(), "txt_username")->setText(QStringLiteral("not searched for"));
    QTest::mousePress(child<QLabel>(tab.get(), "lbl_next"), Qt::LeftButton);
    EXPECT_EQ(server.last().body, "username=x&page_num=2&page_size=20");
}

TEST_F(user_tab, return_and_enter_search_and_every_other_key_is_swallowed) {
    open();
    click_row(table, 0);
    server.forget();
    int expected = 0;
    for (Qt::Key key : {Qt::Key_Return, Qt::Key_Enter})
        for (const char* name : {"txt_username", "txt_realname", "tablewidget"}) {
            QTest::keyClick(child<QWidget>(tab.get(), name), key);
            EXPECT_EQ(server.requests().size(), ++expected) << name;
        }
    for (int key : {int(Qt::Key_Escape), int(Qt::Key_F5), int(Qt::Key_A), int(Qt::Key_Delete)}) {
        QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier);
        QApplication::sendEvent(tab.get(), &press);
        EXPECT_TRUE(press.isAccepted()) << key;
    }
    EXPECT_EQ(server.requests().size(), expected);
}

TEST_F(user_tab, context_menu_has_the_five_actions_with_separators) {
    open();
    QStringList entries;
    for (const QAction* a : table->findChild<QMenu*>()->actions())
        entries.append(a->isSeparator() ? QStringLiteral("-") : a->text());
    const QString line = QStringLiteral("-");
    EXPECT_EQ(entries,
              (QStringList{QStringLiteral("查询"), line, QStringLiteral("添加"), line, QStringLiteral("编辑"),
                           line, QStringLiteral("删除"), line, QStringLiteral("分配权限")}));
}

TEST_F(user_tab, context_menu_opens_at_the_cursor_on_a_row) {
    open();
    click_row(table, 1);
    QCursor::setPos(QPoint(123, 77));
    emit table->customContextMenuRequested(QPoint(1, 1));
    QMenu* menu = table->findChild<QMenu*>();
    EXPECT_TRUE(menu->isVisible());
    EXPECT_EQ(menu->pos(), QCursor::pos());
    menu->close();
}

TEST_F(user_tab, a_right_click_without_a_current_row_gets_the_tip_and_no_menu_for_everybody) {
    for (int type : {1, 2}) {
        g_http.current_user.type = type;
        g_http.rights[QStringLiteral("user")] = QStringList{QStringLiteral("search")};
        open_as_is();
        QSignalSpy enabled(tab.get(), &tab_user::signal_enable_delete);
        emit table->customContextMenuRequested(QPoint(1, 1));
        expect_tip(table, QStringLiteral("请先选中行"), QPoint(10, 30));
        EXPECT_FALSE(table->findChild<QMenu*>()->isVisible());
        EXPECT_EQ(enabled.size(), 0);
    }
}

TEST_F(user_tab, menu_entries_do_what_the_buttons_do) {
    open();
    click_row(table, 1);
    server.forget();
    action("查询")->trigger();
    EXPECT_EQ(server.paths(), QList<QByteArray>{"user/get_page"});
    click_row(table, 1);
    const auto opens = [](const std::function<void()>& act, const QString& title) {
        with_modal(act, [&title](QWidget* d) {
            EXPECT_EQ(d->windowTitle(), title);
            d->close();
        });
    };
    for (bool by_button : {false, true}) {
        const auto act = [&](int i) {
            return [this, by_button, i] {
                by_button ? click(tab.get(), button_names[i]) : action(button_texts[i])->trigger();
            };
        };
        opens(act(1), QStringLiteral("添加用户"));
        opens(act(2), QStringLiteral("编辑用户"));
        with_question(act(3), QStringLiteral("确认删除"), QStringLiteral("确认删除吗？"), QMessageBox::No);
        opens(act(4), QStringLiteral("分配权限"));
    }
    EXPECT_TRUE(server.bodies("user/do_delete").isEmpty());
}

struct people_row {
    const char* what;
    int type;
    std::vector<const char*> rights;
    bool search;
    bool change;
};

class user_rights : public user_tab, public testing::WithParamInterface<people_row> {};

TEST_P(user_rights, look_at_the_type_first) {
    const people_row& row = GetParam();
    g_http.current_user.type = row.type;
    grant("user", row.rights);
    open_as_is();
    EXPECT_EQ(server.requests().size(), row.search ? 1 : 0);
    EXPECT_EQ(tab->isEnabled(), row.search);
    EXPECT_EQ(!child<QPushButton>(tab.get(), "btn_search")->isHidden(), row.search);
    EXPECT_TRUE(action("查询")->isEnabled());
    for (int i = 1; i < 5; ++i) {
        EXPECT_EQ(!child<QPushButton>(tab.get(), button_names[i])->isHidden(), row.change) << button_names[i];
        EXPECT_EQ(action(button_texts[i])->isEnabled(), row.change) << button_texts[i];
    }
    EXPECT_EQ(g_http.rights.contains(QStringLiteral("user")), row.type == 2 || !row.rights.empty())
        << "an absent key reads as an empty list";
}

INSTANTIATE_TEST_SUITE_P(
    people, user_rights,
    testing::Values(people_row{"administrator_without_rights", 1, {}, true, true},
                    people_row{"unknown_type", 0, {}, true, true},
                    people_row{
                        "ordinary_with_all", 2, {"search", "add", "edit", "delete", "grant"}, true, false},
                    people_row{"ordinary_with_search", 2, {"search"}, true, false},
                    people_row{"ordinary_without_search", 2, {"add", "edit", "delete"}, false, false},
                    people_row{"ordinary_with_nothing", 2, {}, false, false}),
    [](const auto& p) { return std::string(p.param.what); });

TEST_F(user_tab, a_signal_shows_the_button_and_enables_the_entry) {
    open();
    const struct {
        void (tab_user::*signal)(bool);
        int control;
    } rows[] = {{&tab_user::signal_enable_add, 1},
                {&tab_user::signal_enable_edit, 2},
                {&tab_user::signal_enable_delete, 3},
                {&tab_user::signal_enable_grant, 4}};
    for (const auto& r : rows)
        for (bool on : {false, true}) {
            emit(tab.get()->*r.signal)(on);
            for (int i = 1; i < 5; ++i) {
                const bool expected = i != r.control || on;
                EXPECT_EQ(child<QPushButton>(tab.get(), button_names[i])->isVisible(), expected);
                EXPECT_EQ(action(button_texts[i])->isEnabled(), expected);
            }
        }
}

class user_gating : public user_tab {
protected:
    void expect_offered(bool offered) {
        for (int i : {3, 4}) {
            EXPECT_EQ(child<QPushButton>(tab.get(), button_names[i])->isVisible(), offered)
                << button_names[i];
            EXPECT_EQ(action(button_texts[i])->isEnabled(), offered) << button_texts[i];
        }
        for (int i : {1, 2})
            EXPECT_TRUE(action(button_texts[i])->isEnabled());
    }
};

TEST_F(user_gating, a_click_on_an_administrator_takes_deletion_and_grants_away) {
    administrators = {2};
    open();
    expect_offered(true);
    click_row(table, 1);
    expect_offered(false);
    click_row(table, 0);
    expect_offered(true);
}

TEST_F(user_gating, a_right_click_looks_at_the_current_row_too) {
    administrators = {2};
    open();
    table->setCurrentCell(1, 1);
    expect_offered(true);
    emit table->customContextMenuRequested(QPoint(1, 1));
    expect_offered(false);
    table->findChild<QMenu*>()->close();
    table->setCurrentCell(2, 1);
    emit table->customContextMenuRequested(QPoint(1, 1));
    expect_offered(true);
    table->findChild<QMenu*>()->close();
}

TEST_F(user_gating, another_type_changes_nothing) {
    open();
    table->item(1, 8)->setText(QStringLiteral("3"));
    table->item(2, 8)->setText(QString());
    table->item(0, 8)->setText(QStringLiteral("1"));
    for (int row : {1, 2}) {
        click_row(table, row);
        expect_offered(true);
    }
    click_row(table, 0);
    for (int row : {1, 2}) {
        click_row(table, row);
        expect_offered(false);
    }
}

TEST_F(user_gating, is_for_administrators_alone) {
    for (int type : {0, 2}) {
        g_http.current_user.type = type;
        grant("user", {"search"});
        open_as_is();
        QSignalSpy to_delete(tab.get(), &tab_user::signal_enable_delete);
        QSignalSpy to_grant(tab.get(), &tab_user::signal_enable_grant);
        click_row(table, 1);
        emit table->customContextMenuRequested(QPoint(1, 1));
        EXPECT_TRUE(table->findChild<QMenu*>()->isVisible());
        table->findChild<QMenu*>()->close();
        EXPECT_EQ(to_delete.size() + to_grant.size(), 0);
    }
}
