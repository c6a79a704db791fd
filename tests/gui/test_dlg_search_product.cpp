#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>

#include "gui/product_fixture.h"
#include "master/dlg_search_product.h"
#include "model/struct_product.h"

class product_picker : public product_test {
protected:
    product_picker() {
        server.always("wms_product/get_page", page_of(4));
        picker = std::make_unique<dlg_search_product>(nullptr);
        picked = std::make_unique<QSignalSpy>(picker.get(), &dlg_search_product::signal_product_selected);
        sent = std::make_unique<QSignalSpy>(picker.get(), &dlg_search_product::signal_send_args);
        picker->show();
        table = child<QTableWidget>(picker.get(), "tablewidget");
    }
    void expect_picked(const QString& number) {
        ASSERT_EQ(picked->size(), 1);
        const auto p = picked->first().first().value<struct_product>();
        EXPECT_EQ(p.id, number);
        EXPECT_EQ(p.category_name, QStringLiteral("类"));
        EXPECT_EQ(p.name, QStringLiteral("货") + number);
        EXPECT_EQ(p.code, QStringLiteral("code") + number);
        EXPECT_EQ(p.spec, QStringLiteral("spec") + number);
        EXPECT_DOUBLE_EQ(p.price, number.toInt() + 0.5);
        EXPECT_EQ(p.category, QStringLiteral("5"));
        EXPECT_TRUE(p.datetime_text.isEmpty());
        EXPECT_FALSE(picker->isVisible());
        EXPECT_EQ(picker->result(), int(QDialog::Accepted));
    }

    std::unique_ptr<dlg_search_product> picker;
    std::unique_ptr<QSignalSpy> picked;
    std::unique_ptr<QSignalSpy> sent;
    QTableWidget* table = nullptr;
};

TEST_F(product_picker, window_and_widgets) {
    EXPECT_EQ(picker->size(), QSize(1300, 564));
    // Title and system menu come with any button.
    const auto titled = Qt::Dialog | Qt::WindowTitleHint | Qt::WindowSystemMenuHint;
    EXPECT_EQ(picker->windowFlags(), titled | Qt::WindowMaximizeButtonHint | Qt::WindowCloseButtonHint);
    const struct {
        const char* label;
        const char* field;
        const char* text;
    } fields[] = {{"label_product_name", "txt_product_name", "货品名称"},
                  {"label_code", "txt_code", "编码"},
                  {"label_spec", "txt_spec", "规格"}};
    int left = -1;
    for (const auto& f : fields) {
        auto* edit = child<QLineEdit>(picker.get(), f.field);
        EXPECT_EQ(child<QLabel>(picker.get(), f.label)->text(), QString::fromUtf8(f.text));
        EXPECT_TRUE(edit->isClearButtonEnabled());
        EXPECT_GT(edit->x(), left);
        left = edit->x();
    }
    EXPECT_EQ(table->toolTip(), QStringLiteral("双击选择"));
    auto* close = child<QPushButton>(picker.get(), "btn_close");
    EXPECT_EQ(close->text(), QStringLiteral("关闭"));
    EXPECT_EQ(close->minimumSize(), QSize(300, 30));
    EXPECT_GT(close->y(), table->geometry().bottom());
    EXPECT_EQ(tab_order(child<QLineEdit>(picker.get(), "txt_product_name"), 4),
              words({"txt_product_name", "txt_code", "txt_spec", "tablewidget"}));
}

TEST_F(product_picker, there_is_no_button_but_close_and_the_page_bars) {
    QStringList names;
    const auto buttons = picker->findChildren<QPushButton*>();
    for (const auto* button : buttons)
        names.append(button->objectName());
    names.sort();
    EXPECT_EQ(names, words({"btn_close", "btn_ok"}));
}

TEST_F(product_picker, opens_with_ten_products_and_no_words) {
    ASSERT_EQ(server.requests().size(), 1);
    EXPECT_EQ(server.last().path, "wms_product/get_page");
    EXPECT_EQ(server.last().body, "&page_num=1&page_size=10");
    EXPECT_EQ(table->rowCount(), 4);
    ASSERT_EQ(table->columnCount(), 8);
    for (int i = 0; i < 8; ++i)
        EXPECT_EQ(table->isColumnHidden(i), i == 0 || i == 6);
}

TEST_F(product_picker, return_and_enter_search_wherever_the_focus_is) {
    set_texts(picker.get(), {{"txt_product_name", QStringLiteral(" n ")},
                             {"txt_code", QStringLiteral("c")},
                             {"txt_spec", QStringLiteral("s")}});
    int expected = 1;
    for (Qt::Key key : {Qt::Key_Return, Qt::Key_Enter})
        for (const char* name : {"txt_product_name", "tablewidget", "btn_close"}) {
            QTest::keyClick(child<QWidget>(picker.get(), name), key);
            EXPECT_EQ(server.requests().size(), ++expected) << name;
            EXPECT_EQ(server.last().body, "&name=n&code=c&spec=s&page_num=1&page_size=10");
        }
    EXPECT_EQ(sent->size(), 6);
    EXPECT_EQ(sent->first().first().toString(), QStringLiteral("&name=n&code=c&spec=s"));
    set_texts(picker.get(), {{"txt_product_name", QStringLiteral("  ")}, {"txt_code", QString()}});
    QTest::keyClick(picker.get(), Qt::Key_Return);
    EXPECT_EQ(server.last().body, "&spec=s&page_num=1&page_size=10");
    EXPECT_TRUE(picker->isVisible());
    EXPECT_EQ(picked->size(), 0);
}

TEST_F(product_picker, page_turns_keep_the_search) {
    server.always("wms_product/get_page", page_of(4, 3));
    set_texts(picker.get(), {{"txt_code", QStringLiteral("c")}});
    QTest::keyClick(picker.get(), Qt::Key_Return);
    QTest::mousePress(child<QLabel>(picker.get(), "lbl_last"), Qt::LeftButton);
    EXPECT_EQ(server.last().body, "&code=c&page_num=-1&page_size=10");
}

TEST_F(product_picker, every_other_key_is_swallowed) {
    for (int key : {int(Qt::Key_Escape), int(Qt::Key_F1), int(Qt::Key_A), int(Qt::Key_Space)}) {
        QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier);
        QApplication::sendEvent(picker.get(), &press);
        EXPECT_TRUE(press.isAccepted());
    }
    EXPECT_TRUE(picker->isVisible());
    EXPECT_EQ(server.requests().size(), 1);
}

TEST_F(product_picker, a_double_click_delivers_the_whole_record) {
    click_row(table, 1);
    QTest::mouseDClick(table->viewport(), Qt::LeftButton, Qt::NoModifier,
                       table->visualItemRect(table->item(1, 1)).center());
    expect_picked(QStringLiteral("2"));
}

TEST_F(product_picker, a_double_click_takes_the_current_row_and_not_the_index) {
    table->setCurrentCell(2, 1);
    picker->on_tablewidget_doubleClicked(table->model()->index(0, 0));
    expect_picked(QStringLiteral("3"));
}

TEST_F(product_picker, close_says_nothing) {
    click_row(table, 1);
    click(picker.get(), "btn_close");
    EXPECT_FALSE(picker->isVisible());
    EXPECT_EQ(picked->size(), 0);
    EXPECT_EQ(picker->result(), int(QDialog::Rejected));
}
