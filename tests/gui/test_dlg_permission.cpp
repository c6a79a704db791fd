#include <QPushButton>
#include <QTest>
#include <QTreeWidget>

#include "gui/permission_fixture.h"

namespace {

// 0 a group with two pages: 1 with the rights 2, 3 and 4; 5 with 6. 7 a group of its own, without pages.
const std::vector<int> rows = {-1, 0, 1, 1, 1, 0, 5, -1};

} // namespace

class permission_dialog : public permission_test {
protected:
    void open_with(const std::set<int>& granted) {
        serve(rows, granted);
        open();
    }
    /** The service refuses the requests of these numbers, counted from 1. */
    void refuse(const std::set<int>& numbers) {
        serve_with([numbers, n = 0]() mutable { return numbers.count(++n) == 0; });
    }
    using states = std::vector<int>;
};

TEST_F(permission_dialog, window) {
    open_with({});
    EXPECT_EQ(dialog->windowFlags(),
              Qt::Dialog | Qt::WindowTitleHint | Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint);
    EXPECT_EQ(dialog->size(), QSize(420, 600));
    EXPECT_TRUE(dialog->windowTitle().isEmpty()) << "who opens it says what it is";
    const auto buttons = dialog->findChildren<QPushButton*>();
    ASSERT_EQ(buttons.size(), 1) << "no OK: each click is saved";
    EXPECT_EQ(buttons.first()->objectName(), QStringLiteral("btn_close"));
    EXPECT_EQ(buttons.first()->text(), QStringLiteral("关闭"));
    EXPECT_EQ(tab_order(tree, 2).last(), QStringLiteral("btn_close"));
    EXPECT_TRUE(tree->isHeaderHidden());
    for (int i = 0; i < 7; ++i)
        EXPECT_EQ(tree->isColumnHidden(i), i > 0) << i;
}

TEST_F(permission_dialog, asks_for_the_grants_and_then_for_the_tree) {
    serve(rows, {});
    const dlg_permission opened(nullptr, [] {
        struct_user user;
        user.id = QStringLiteral("44");
        return user;
    }());
    EXPECT_EQ(server.paths(),
              QList<QByteArray>({"wms_permission/get_permission", "wms_permission/get_permission_tree"}));
}

TEST_F(permission_dialog, shows_the_grants_with_parts_marked) {
    open_with({0, 1, 2, 5, 6});
    EXPECT_EQ(marks(), states({1, 1, 2, 0, 0, 2, 2, 0}));
}

TEST_F(permission_dialog, a_failed_tree_request_shows_an_empty_tree) {
    open();
    EXPECT_EQ(tree->topLevelItemCount(), 0);
    EXPECT_TRUE(tree->isHeaderHidden());
}

TEST_F(permission_dialog, each_opening_shows_what_the_service_holds_then) {
    open_with({});
    EXPECT_EQ(mark(7), 0);
    granted_rows = {7};
    EXPECT_EQ(mark(7), 0);
    open();
    EXPECT_EQ(mark(7), 2);
}

TEST_F(permission_dialog, a_click_on_the_box_is_a_grant) {
    open_with({});
    const QRect row = tree->visualItemRect(item(7));
    QTest::mouseClick(tree->viewport(), Qt::LeftButton, Qt::NoModifier,
                      QPoint(row.left() + 10, row.center().y()));
    EXPECT_EQ(asked(), "+7");
    EXPECT_EQ(mark(7), 2);
    EXPECT_EQ(granted_rows, std::set<int>({7}));
}

TEST_F(permission_dialog, checking_a_leaf_among_several_grants_what_is_above_it) {
    open_with({});
    toggle(3);
    EXPECT_EQ(asked(), "+3 +1 +0");
    EXPECT_EQ(marks(), states({1, 1, 0, 2, 0, 0, 0, 0}));
    EXPECT_EQ(granted_rows, std::set<int>({0, 1, 3})) << "partly granted is granted";
}

TEST_F(permission_dialog, clearing_the_last_checked_child_clears_what_is_above_it) {
    open_with({0, 1, 3});
    toggle(3);
    EXPECT_EQ(asked(), "-3 -1 -0");
    EXPECT_EQ(marks(), states(8, 0));
    EXPECT_TRUE(granted_rows.empty());
}

TEST_F(permission_dialog, clearing_one_of_two_checked_children_leaves_a_part) {
    open_with({0, 1, 2, 3});
    toggle(2);
    EXPECT_EQ(asked(), "-2 +1 +0");
    EXPECT_EQ(marks(), states({1, 1, 0, 2, 0, 0, 0, 0}));
}

TEST_F(permission_dialog, checking_the_last_open_child_completes_its_parents) {
    open_with({0, 1, 2, 3, 5, 6});
    toggle(4);
    EXPECT_EQ(asked(), "+4 +1 +0");
    EXPECT_EQ(marks(), states({2, 2, 2, 2, 2, 2, 2, 0}));
}

TEST_F(permission_dialog, checking_a_parent_grants_everything_below_twice) {
    open_with({});
    toggle(0);
    EXPECT_EQ(asked(), "+0 +1 +1 +2 +2 +3 +3 +4 +4 +5 +5 +6 +6");
    EXPECT_EQ(marks(), states({2, 2, 2, 2, 2, 2, 2, 0}));
    EXPECT_EQ(granted_rows, std::set<int>({0, 1, 2, 3, 4, 5, 6}));
}

TEST_F(permission_dialog, clearing_a_parent_grants_each_row_below_and_then_revokes_it) {
    open_with({0, 1, 2, 3, 4, 5, 6});
    toggle(0);
    EXPECT_EQ(asked(), "-0 +1 -1 +2 -2 +3 -3 +4 -4 +5 -5 +6 -6");
    EXPECT_EQ(marks(), states(8, 0));
    EXPECT_TRUE(granted_rows.empty());
}

TEST_F(permission_dialog, clearing_a_page_goes_down_first_and_then_up) {
    open_with({0, 1, 2, 3, 4, 5, 6});
    toggle(1);
    EXPECT_EQ(asked(), "-1 +2 -2 +3 -3 +4 -4 +0");
    EXPECT_EQ(marks(), states({1, 0, 0, 0, 0, 2, 2, 0}));
    EXPECT_EQ(granted_rows, std::set<int>({0, 5, 6}));
}

TEST_F(permission_dialog, a_click_on_a_part_grants_all_of_it) {
    open_with({0, 1, 3});
    toggle(1);
    EXPECT_EQ(asked(), "+1 +2 +2 +3 +3 +4 +4 +0");
    EXPECT_EQ(marks(), states({1, 2, 2, 2, 2, 0, 0, 0}));
}

TEST_F(permission_dialog, a_refused_click_keeps_the_mark_and_goes_on) {
    open_with({});
    refuse({1});
    toggle(1);
    EXPECT_EQ(asked(), "+1 +2 +2 +3 +3 +4 +4 +0");
    EXPECT_EQ(marks(), states({1, 2, 2, 2, 2, 0, 0, 0}));
    EXPECT_EQ(granted_rows, std::set<int>({0, 2, 3, 4})) << "the page itself is not granted";
}

TEST_F(permission_dialog, a_refused_leaf_still_sums_up) {
    open_with({});
    refuse({1, 2, 3});
    toggle(2);
    EXPECT_EQ(asked(), "+2 +1 -0");
    EXPECT_EQ(marks(), states({0, 0, 2, 0, 0, 0, 0, 0}));
    EXPECT_TRUE(granted_rows.empty());
}

TEST_F(permission_dialog, a_refusal_of_the_first_grant_stops_a_row_and_what_is_below_it) {
    open_with({});
    refuse({2});
    toggle(0);
    EXPECT_EQ(asked(), "+0 +1 +5 +5 +6 +6");
    EXPECT_EQ(marks(), states({2, 0, 0, 0, 0, 2, 2, 0}));
}

TEST_F(permission_dialog, a_refusal_while_clearing_leaves_a_row_and_what_is_below_it_granted) {
    open_with({0, 1, 2, 3, 4, 5, 6});
    refuse({2});
    toggle(0);
    EXPECT_EQ(asked(), "-0 +1 +5 -5 +6 -6");
    EXPECT_EQ(marks(), states({0, 2, 2, 2, 2, 0, 0, 0}));
    EXPECT_EQ(granted_rows, std::set<int>({1, 2, 3, 4}));
}

TEST_F(permission_dialog, a_refused_second_request_keeps_the_mark_and_goes_on_below_it) {
    open_with({});
    refuse({3});
    toggle(0);
    // Page 1 stays clear, so its rights are granted and revoked.
    EXPECT_EQ(asked(), "+0 +1 +1 +2 -2 +3 -3 +4 -4 +5 +5 +6 +6");
    EXPECT_EQ(marks(), states({2, 0, 0, 0, 0, 2, 2, 0}));
    EXPECT_EQ(granted_rows, std::set<int>({0, 1, 5, 6})) << "granted by the first request, not marked";
}

TEST_F(permission_dialog, below_a_part_that_stays_the_rows_are_granted_once_and_keep_their_marks) {
    open_with({0, 1, 2});
    refuse({3});
    toggle(0);
    EXPECT_EQ(asked(), "+0 +1 +1 +2 +3 +4 +5 +5 +6 +6");
    EXPECT_EQ(marks(), states({2, 1, 2, 0, 0, 2, 2, 0}));
    EXPECT_EQ(granted_rows, std::set<int>({0, 1, 2, 3, 4, 5, 6}));
}

TEST_F(permission_dialog, without_network_the_mark_stays_and_nobody_says_a_word) {
    open_with({});
    for (int i = 0; i < 3; ++i)
        server.answer(scripted_answer());
    toggle(2);
    EXPECT_EQ(marks(), states({0, 0, 2, 0, 0, 0, 0, 0}));
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    EXPECT_TRUE(shown_tip().isEmpty());
}

TEST_F(permission_dialog, blocked_signals_are_the_only_guard) {
    open_with({});
    int changes = 0;
    QObject::connect(tree, &QTreeWidget::itemChanged, tree, [&changes] { ++changes; });
    bool blocked = false;
    serve_with([&] {
        // A second click while the first is being saved changes the mark and nothing else.
        blocked = tree->signalsBlocked();
        item(7)->setCheckState(0, Qt::Checked);
        return true;
    });
    toggle(0);
    EXPECT_TRUE(blocked);
    EXPECT_FALSE(tree->signalsBlocked());
    EXPECT_EQ(changes, 1) << "the click itself";
    EXPECT_EQ(mark(7), 2);
    EXPECT_EQ(granted_rows.count(7), 0u);
}

TEST_F(permission_dialog, close_and_escape_close_it_and_return_does_nothing) {
    open_with({});
    QTest::keyClick(tree, Qt::Key_Return);
    EXPECT_TRUE(dialog->isVisible());
    click(dialog.get(), "btn_close");
    EXPECT_FALSE(dialog->isVisible());
    dialog->show();
    QTest::keyClick(dialog.get(), Qt::Key_Escape);
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_TRUE(server.requests().isEmpty());
}
