#include <QPushButton>
#include <QTest>

#include "gui/tab_user_fixture.h"

class user_delete : public user_tab {
protected:
    /** Opens the tab with these users and selects all rows from the top down. */
    void select_all_of(std::initializer_list<int> numbers) {
        open();
        server.always("user/get_page", page_of(numbers));
        click(tab.get(), "btn_search");
        click_row(table, 0);
        click_row(table, table->rowCount() - 1, Qt::ShiftModifier);
        server.always("user/do_delete", "1");
    }
    void remove(QMessageBox::StandardButton answer = QMessageBox::Yes) {
        with_question([this] { action("删除")->trigger(); }, QStringLiteral("确认删除"),
                      QStringLiteral("确认删除吗？"), answer);
    }
    QList<QByteArray> deleted() const { return server.bodies("user/do_delete"); }
    void expect_list_tip(const QString& text) { expect_tip(table, text, QPoint(10, 30)); }

    const QString own_account = QStringLiteral("当前登录用户不能删除");
    const QString administrator = QStringLiteral("本司管理员不能删除");
};

TEST_F(user_delete, walks_the_selection_backwards) {
    select_all_of({1, 2, 3});
    remove();
    EXPECT_EQ(deleted(), (QList<QByteArray>{"id=3", "id=2", "id=1"}));
    EXPECT_EQ(table->rowCount(), 0);
    EXPECT_TRUE(shown_tip().isEmpty());
}

TEST_F(user_delete, asks_first) {
    select_all_of({1, 2, 3});
    remove(QMessageBox::No);
    EXPECT_TRUE(deleted().isEmpty());
    EXPECT_EQ(table->rowCount(), 3);
}

TEST_F(user_delete, a_refusal_leaves_its_row_and_goes_on) {
    for (const char* refusal : {"0", "-1", "", "no"}) {
        select_all_of({1, 2, 3});
        server.forget();
        server.answer("1");
        server.answer(refusal);
        server.answer("1");
        remove();
        EXPECT_EQ(deleted().size(), 3);
        EXPECT_EQ(names(table), QStringList{QStringLiteral("user2")}) << refusal;
    }
}

TEST_F(user_delete, an_administrator_ends_the_walk_and_what_is_done_is_done) {
    administrators = {2};
    select_all_of({1, 2, 3});
    remove();
    expect_list_tip(administrator);
    EXPECT_EQ(deleted(), QList<QByteArray>{"id=3"});
    EXPECT_EQ(names(table), (QStringList{QStringLiteral("user1"), QStringLiteral("user2")}));
}

TEST_F(user_delete, an_administrator_alone_is_told_after_the_question) {
    administrators = {1};
    select_all_of({1});
    // The entry is greyed by then; the slot behind it has its own guard.
    with_question([this] { tab->slot_user_to_delete(); }, QStringLiteral("确认删除"),
                  QStringLiteral("确认删除吗？"), QMessageBox::Yes);
    expect_list_tip(administrator);
    EXPECT_TRUE(deleted().isEmpty());
}

TEST_F(user_delete, ones_own_account_is_known_by_the_code_of_a_single_character) {
    g_http.current_user.id = QStringLiteral("7");
    select_all_of({56, 55, 54});
    remove();
    expect_list_tip(own_account);
    EXPECT_EQ(deleted(), QList<QByteArray>{"id=54"});
    EXPECT_EQ(names(table), (QStringList{QStringLiteral("user56"), QStringLiteral("user55")}));
}

TEST_F(user_delete, the_guard_of_ones_own_account_does_not_compare_the_ids) {
    g_http.current_user.id = QStringLiteral("7");
    select_all_of({7});
    remove();
    EXPECT_EQ(deleted(), QList<QByteArray>{"id=7"});
    EXPECT_TRUE(shown_tip().isEmpty());
}

TEST_F(user_delete, an_id_of_several_characters_is_not_guarded) {
    for (const QString& own : {QStringLiteral("55"), QStringLiteral("71"), QString()}) {
        g_http.current_user.id = own;
        select_all_of({55});
        server.forget();
        remove();
        EXPECT_EQ(deleted(), QList<QByteArray>{"id=55"}) << own.toStdString();
    }
}

TEST_F(user_delete, ones_own_account_comes_before_the_administrator) {
    administrators = {55};
    g_http.current_user.id = QStringLiteral("7");
    select_all_of({55});
    with_question([this] { tab->slot_user_to_delete(); }, QStringLiteral("确认删除"),
                  QStringLiteral("确认删除吗？"), QMessageBox::Yes);
    expect_list_tip(own_account);
}

TEST_F(user_delete, a_selection_from_the_bottom_upward_deletes_by_numbers_that_have_moved) {
    open();
    click_row(table, 2);
    click_row(table, 0, Qt::ControlModifier);
    server.always("user/do_delete", "1");
    remove();
    EXPECT_EQ(deleted(), (QList<QByteArray>{"id=1", "id=0"}));
    EXPECT_EQ(names(table), (QStringList{QStringLiteral("user2"), QStringLiteral("user3")}));
}
