#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

#include "gui/company_fixture.h"
#include "master/dlg_search_company.h"
#include "model/struct_company.h"

class company_picker : public company_test {
protected:
    void open(int mode = 3) {
        server.always("wms_company/get_page", page_of(1, 4));
        picker = std::make_unique<dlg_search_company>(nullptr, 2, mode);
        picked = std::make_unique<QSignalSpy>(picker.get(), &dlg_search_company::signal_company_selected);
        sent = std::make_unique<QSignalSpy>(picker.get(), &dlg_search_company::signal_send_args);
        picker->show();
        table = child<QTableWidget>(picker.get(), "tablewidget");
    }
    struct_company result() { return picked->first().first().value<struct_company>(); }
    void expect_picked(const char* id, const QString& name) {
        ASSERT_EQ(picked->size(), 1);
        EXPECT_EQ(result().id, QLatin1String(id));
        EXPECT_EQ(result().name, name);
        EXPECT_EQ(result().type, 2);
        EXPECT_FALSE(picker->isVisible());
        EXPECT_EQ(picker->result(), int(QDialog::Accepted));
    }

    std::unique_ptr<dlg_search_company> picker;
    std::unique_ptr<QSignalSpy> picked;
    std::unique_ptr<QSignalSpy> sent;
    QTableWidget* table = nullptr;
};

const char* const search_fields[] = {"txt_name", "txt_bank", "txt_account", "txt_address", "txt_remark"};

TEST_F(company_picker, window_and_widgets) {
    open();
    expect_window(picker.get(), QSize(1300, 564), Qt::WindowMaximizeButtonHint | Qt::WindowCloseButtonHint);
    const char* const labels[] = {"名称", "开户行", "银行帐号", "地址", "备注"};
    for (int i = 0; i < 5; ++i) {
        EXPECT_TRUE(child<QLineEdit>(picker.get(), search_fields[i])->isClearButtonEnabled());
        expect_label_of(picker.get(), search_fields[i], labels[i]);
    }
    expect_left_to_right(picker.get(), {search_fields, search_fields + 5});
    const struct {
        const char* name;
        const char* text;
    } buttons[] = {
        {"btn_search", "查询"}, {"btn_all", "全部"}, {"btn_choose", "选择"}, {"btn_close", "关闭"}};
    for (const auto& b : buttons)
        EXPECT_EQ(child<QPushButton>(picker.get(), b.name)->text(), QString::fromUtf8(b.text));
    EXPECT_LT(table->y(), child<QPushButton>(picker.get(), "btn_choose")->y());
}

TEST_F(company_picker, opens_with_ten_partners_of_its_kind) {
    open();
    ASSERT_EQ(server.requests().size(), 1);
    EXPECT_EQ(server.last().body, "type=2&page_num=1&page_size=10");
    EXPECT_EQ(table->rowCount(), 4);
    ASSERT_EQ(table->columnCount(), 12);
    for (int i = 0; i < 12; ++i)
        EXPECT_EQ(table->isColumnHidden(i), i == 0 || i == 10);
}

TEST_F(company_picker, mode_3_offers_all_and_mode_4_the_double_click) {
    open(3);
    EXPECT_TRUE(child<QPushButton>(picker.get(), "btn_all")->isVisible());
    EXPECT_TRUE(table->toolTip().isEmpty());
    open(4);
    EXPECT_FALSE(child<QPushButton>(picker.get(), "btn_all")->isVisible());
    EXPECT_EQ(table->toolTip(), QStringLiteral("双击选择"));
}

TEST_F(company_picker, search) {
    open();
    for (const char* name : search_fields)
        child<QLineEdit>(picker.get(), name)
            ->setText(QStringLiteral(" ") + QLatin1String(name + 4) + QStringLiteral(" "));
    click(picker.get(), "btn_search");
    ASSERT_EQ(server.requests().size(), 2);
    EXPECT_EQ(server.last().body,
              "type=2&name=name&address=address&bank=bank&account=account&remark=remark"
              "&page_num=1&page_size=10");
    ASSERT_EQ(sent->size(), 1);
    EXPECT_EQ(sent->first().first().toString(),
              QStringLiteral("type=2&name=name&address=address&bank=bank&account=account&remark=remark"));
}

TEST_F(company_picker, return_and_enter_search_once_wherever_the_focus_is) {
    open();
    int expected = 1;
    for (Qt::Key key : {Qt::Key_Return, Qt::Key_Enter})
        for (const char* name : {"txt_name", "tablewidget", "btn_choose", "btn_all", "btn_close"}) {
            QTest::keyClick(child<QWidget>(picker.get(), name), key);
            EXPECT_EQ(server.requests().size(), ++expected) << name;
        }
    EXPECT_TRUE(picker->isVisible());
    EXPECT_EQ(picked->size(), 0);
}

TEST_F(company_picker, every_other_key_is_swallowed) {
    open();
    for (int key : {int(Qt::Key_Escape), int(Qt::Key_F1), int(Qt::Key_A)}) {
        QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier);
        QApplication::sendEvent(picker.get(), &press);
        EXPECT_TRUE(press.isAccepted());
    }
    EXPECT_TRUE(picker->isVisible());
    EXPECT_EQ(server.requests().size(), 1);
}

TEST_F(company_picker, choose_needs_a_row) {
    open();
    click(picker.get(), "btn_choose");
    expect_tip(table, QStringLiteral("请先选中行"), QPoint(10, 30));
    EXPECT_TRUE(picker->isVisible());
    EXPECT_EQ(picked->size(), 0);
    click_row(table, 2);
    click(picker.get(), "btn_choose");
    expect_picked("3", QStringLiteral("单位3"));
}

TEST_F(company_picker, a_double_click_takes_the_current_row_and_not_the_index) {
    open();
    table->setCurrentCell(1, 1);
    picker->on_tablewidget_doubleClicked(table->model()->index(3, 0));
    expect_picked("2", QStringLiteral("单位2"));
}

TEST_F(company_picker, a_double_click_on_the_screen_picks) {
    open();
    click_row(table, 1);
    QTest::mouseDClick(table->viewport(), Qt::LeftButton, Qt::NoModifier,
                       table->visualItemRect(table->item(1, 1)).center());
    expect_picked("2", QStringLiteral("单位2"));
}

TEST_F(company_picker, all_hands_over_an_empty_id_and_name) {
    open();
    click_row(table, 1);
    click(picker.get(), "btn_all");
    expect_picked("", QString());
}

TEST_F(company_picker, the_other_fields_keep_the_search_words) {
    open();
    child<QLineEdit>(picker.get(), "txt_bank")->setText(QStringLiteral("b"));
    child<QLineEdit>(picker.get(), "txt_name")->setText(QStringLiteral("n"));
    click(picker.get(), "btn_search");
    click_row(table, 0);
    click(picker.get(), "btn_choose");
    expect_picked("1", QStringLiteral("单位1"));
    EXPECT_EQ(result().bank, QStringLiteral("b"));
    EXPECT_TRUE(result().phone.isEmpty());
}

TEST_F(company_picker, close_says_nothing) {
    open();
    click_row(table, 1);
    click(picker.get(), "btn_close");
    EXPECT_FALSE(picker->isVisible());
    EXPECT_EQ(picked->size(), 0);
    EXPECT_EQ(picker->result(), int(QDialog::Rejected));
}

TEST_F(company_picker, tab_order) {
    open();
    expect_tab_order(picker.get(), {"txt_name", "txt_bank", "txt_account", "txt_address", "txt_remark",
                                    "btn_search", "btn_all", "tablewidget"});
}
