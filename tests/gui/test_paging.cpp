#include <QLabel>
#include <QLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

#include "gui/company_fixture.h"
#include "widgets/paging.h"

class paging_bar : public company_test {
protected:
    paging_bar() : bar(nullptr, &table, QStringLiteral("company"), 20) {
        bar.slot_set_args(QStringLiteral("type=1"));
        bar.show();
    }

    void load(int page_count, int page_num = 1) {
        server.answer(page_of(1, 3, page_count, page_num));
        bar.page_first();
        server.forget();
    }
    void press(const char* label, Qt::MouseButton button = Qt::LeftButton) {
        QTest::mousePress(child<QLabel>(&bar, label), button);
    }
    QString number() { return child<QLineEdit>(&bar, "txt_page_num")->text(); }
    QString counts() { return child<QLabel>(&bar, "lbl_total")->text(); }
    QByteArray asked() { return server.requests().isEmpty() ? QByteArray() : server.last().body; }

    QTableWidget table;
    paging bar;
};

TEST_F(paging_bar, widgets) {
    const struct {
        const char* name;
        const char* text;
    } labels[] = {{"lbl_first", "首页"}, {"lbl_pre", "上一页"}, {"lbl_next", "下一页"}, {"lbl_last", "末页"}};
    int left = -1;
    for (const auto& l : labels) {
        auto* label = child<QLabel>(&bar, l.name);
        EXPECT_EQ(label->text(), QString::fromUtf8(l.text));
        EXPECT_EQ(label->cursor().shape(), Qt::PointingHandCursor);
        EXPECT_GT(label->x(), left) << "in one row, in order";
        left = label->x();
    }
    auto* box = child<QLineEdit>(&bar, "txt_page_num");
    EXPECT_EQ(box->maximumWidth(), 40);
    EXPECT_GT(box->x(), left);
    EXPECT_EQ(child<QPushButton>(&bar, "btn_ok")->text(), QStringLiteral("确定"));
    EXPECT_EQ(counts(), QStringLiteral("共"));
    auto* row = bar.layout();
    EXPECT_NE(row->itemAt(0)->spacerItem(), nullptr);
    EXPECT_NE(row->itemAt(row->count() - 1)->spacerItem(), nullptr);
    EXPECT_TRUE(bar.html.isEmpty());
}

TEST_F(paging_bar, arguments_alone_load_nothing) {
    EXPECT_TRUE(server.requests().isEmpty());
    bar.slot_set_args(QStringLiteral("type=2"));
    EXPECT_TRUE(server.requests().isEmpty());
    bar.page_first();
    EXPECT_EQ(asked(), "type=2&page_num=1&page_size=20");
}

TEST_F(paging_bar, the_arguments_survive_every_page_turn) {
    load(3);
    press("lbl_first");
    press("lbl_first");
    EXPECT_EQ(server.bodies("wms_company/get_page"),
              QList<QByteArray>({"type=1&page_num=1&page_size=20", "type=1&page_num=1&page_size=20"}));
}

TEST_F(paging_bar, counts_and_page_number) {
    server.answer(page_of(1, 3, 7, 5));
    bar.page_first();
    EXPECT_EQ(counts(), QStringLiteral("共7页/3条记录"));
    EXPECT_EQ(number(), QStringLiteral("1")) << "the first page is page 1 whatever the answer says";
    EXPECT_EQ(table.rowCount(), 3);
}

TEST_F(paging_bar, before_the_first_load_only_the_first_page_acts) {
    press("lbl_pre");
    press("lbl_next");
    press("lbl_last");
    EXPECT_TRUE(server.requests().isEmpty());
    press("lbl_first");
    EXPECT_EQ(asked(), "type=1&page_num=1&page_size=20");
}

TEST_F(paging_bar, next_and_previous_stay_within_the_latest_count) {
    load(2);
    server.always("wms_company/get_page", page_of(1, 1, 2, 9));
    press("lbl_pre");
    EXPECT_TRUE(server.requests().isEmpty());
    press("lbl_next");
    EXPECT_EQ(asked(), "type=1&page_num=2&page_size=20");
    EXPECT_EQ(number(), QStringLiteral("2")) << "not the number of the answer";
    press("lbl_next");
    EXPECT_EQ(server.requests().size(), 1);
    press("lbl_pre");
    EXPECT_EQ(asked(), "type=1&page_num=1&page_size=20");
    EXPECT_EQ(number(), QStringLiteral("1"));
}

TEST_F(paging_bar, the_last_page_is_asked_for_by_minus_one_and_named_by_the_answer) {
    load(9);
    server.answer(page_of(1, 1, 12, 12));
    press("lbl_last");
    EXPECT_EQ(asked(), "type=1&page_num=-1&page_size=20");
    EXPECT_EQ(number(), QStringLiteral("12"));
    press("lbl_last");
    EXPECT_EQ(server.requests().size(), 1) << "already there, even if the data have grown";
}

TEST_F(paging_bar, the_box_asks_for_its_page) {
    load(9);
    type_into(&bar, "txt_page_num", QStringLiteral("4"));
    EXPECT_TRUE(server.requests().isEmpty()) << "typing loads nothing";
    server.answer(page_of(1, 1, 9, 1));
    click(&bar, "btn_ok");
    EXPECT_EQ(asked(), "type=1&page_num=4&page_size=20");
    EXPECT_EQ(number(), QStringLiteral("4"));
}

TEST_F(paging_bar, an_empty_box_asks_for_page_0) {
    load(9);
    child<QLineEdit>(&bar, "txt_page_num")->clear();
    click(&bar, "btn_ok");
    EXPECT_EQ(asked(), "type=1&page_num=0&page_size=20");
    EXPECT_EQ(server.requests().size(), 1);
}

TEST_F(paging_bar, a_number_beyond_the_last_page_is_cut_while_typing) {
    load(5);
    type_into(&bar, "txt_page_num", QStringLiteral("999"));
    EXPECT_EQ(number(), QStringLiteral("5"));
    EXPECT_TRUE(server.requests().isEmpty());
    click(&bar, "btn_ok");
    EXPECT_EQ(asked(), "type=1&page_num=5&page_size=20");
}

TEST_F(paging_bar, the_box_holds_1_at_least) {
    load(0);
    type_into(&bar, "txt_page_num", QStringLiteral("3"));
    EXPECT_EQ(number(), QStringLiteral("1"));
    load(5);
    type_into(&bar, "txt_page_num", QStringLiteral("0"));
    EXPECT_EQ(number(), QStringLiteral("1"));
    child<QLineEdit>(&bar, "txt_page_num")->setFocus();
    QTest::keyClick(child<QLineEdit>(&bar, "txt_page_num"), Qt::Key_Backspace);
    EXPECT_EQ(number(), QStringLiteral("1")) << "emptied by hand";
}

TEST_F(paging_bar, the_box_takes_digits_alone) {
    load(50);
    auto* box = child<QLineEdit>(&bar, "txt_page_num");
    box->selectAll();
    QTest::keyClicks(box, QStringLiteral("a2-x 3"));
    EXPECT_EQ(number(), QStringLiteral("23"));
}

TEST_F(paging_bar, an_empty_result) {
    server.answer("{\"list\":[],\"total\":0,\"page_count\":0,\"page_num\":1}");
    bar.page_first();
    server.forget();
    EXPECT_EQ(counts(), QStringLiteral("共0页/0条记录"));
    for (const char* label : {"lbl_next", "lbl_pre", "lbl_last"})
        press(label);
    EXPECT_TRUE(server.requests().isEmpty());
    press("lbl_first");
    EXPECT_EQ(asked(), "type=1&page_num=1&page_size=20");
}

TEST_F(paging_bar, no_answer_counts_zero_and_keeps_the_number_asked_for) {
    load(9);
    type_into(&bar, "txt_page_num", QStringLiteral("6"));
    click(&bar, "btn_ok");
    EXPECT_EQ(counts(), QStringLiteral("共0页/0条记录"));
    EXPECT_EQ(number(), QStringLiteral("6"));
    EXPECT_EQ(table.rowCount(), 0);
    load(9);
    press("lbl_last");
    EXPECT_EQ(number(), QStringLiteral("0")) << "the last page alone takes its number from the answer";
}

TEST_F(paging_bar, the_session_code_leaves_an_empty_list_and_the_next_press_loads) {
    server.answer("7");
    server.answer("1");
    bar.page_first();
    EXPECT_EQ(server.paths(), QList<QByteArray>({"wms_company/get_page", "wms/check_login"}));
    EXPECT_EQ(counts(), QStringLiteral("共0页/0条记录"));
    server.answer(page_of(1, 3));
    press("lbl_first");
    EXPECT_EQ(table.rowCount(), 3);
    EXPECT_EQ(server.requests().size(), 3);
}

TEST_F(paging_bar, any_mouse_button_acts_and_at_the_press) {
    load(9);
    int expected = 0;
    for (Qt::MouseButton button : {Qt::LeftButton, Qt::RightButton, Qt::MiddleButton}) {
        press("lbl_first", button);
        EXPECT_EQ(server.requests().size(), ++expected);
        QTest::mouseRelease(child<QLabel>(&bar, "lbl_first"), button);
        EXPECT_EQ(server.requests().size(), expected);
    }
}

TEST_F(paging_bar, the_page_controls_are_never_disabled) {
    load(0);
    for (const char* label : {"lbl_first", "lbl_pre", "lbl_next", "lbl_last"})
        EXPECT_TRUE(child<QLabel>(&bar, label)->isEnabled());
}
