#include <QSignalSpy>

#include "documents/dlg_search_stock.h"
#include "gui/stock_fixture.h"

class stock_picker : public stock_test {
protected:
    void open(const QString& warehouse = QString()) {
        server.always("wms_stock_detail/get_page", stock_page(1, 4));
        picker = std::make_unique<dlg_search_stock>(nullptr, warehouse);
        picked = std::make_unique<QSignalSpy>(picker.get(), &dlg_search_stock::signal_stock_selected);
        picker->show();
        table = child<QTableWidget>(picker.get(), "tablewidget");
    }
    void double_click(int row) {
        click_row(table, row);
        QTest::mouseDClick(table->viewport(), Qt::LeftButton, Qt::NoModifier,
                           table->visualItemRect(table->item(row, 1)).center());
    }
    void expect_picked(int n) {
        ASSERT_EQ(picked->size(), 1);
        const auto s = picked->first().first().value<struct_stock>();
        const QString number = QString::number(n);
        EXPECT_EQ(s.id, number);
        EXPECT_EQ(s.warehouse_name, QStringLiteral("一号仓"));
        EXPECT_EQ(s.warehouse, QStringLiteral("3"));
        EXPECT_EQ(s.place, QStringLiteral("架") + number);
        EXPECT_EQ(s.product_name, QStringLiteral("货") + number);
        EXPECT_EQ(s.product, QString::number(100 + n));
        EXPECT_EQ(s.category_name, QStringLiteral("类"));
        EXPECT_EQ(s.category, QStringLiteral("5"));
        EXPECT_EQ(s.code, QStringLiteral("code") + number);
        EXPECT_EQ(s.spec, QStringLiteral("spec") + number);
        EXPECT_DOUBLE_EQ(s.price, n + 0.5);
        EXPECT_EQ(s.amount, 10 * n);
        EXPECT_DOUBLE_EQ(s.total, 10 * n * (n + 0.5));
        EXPECT_EQ(s.remark, QStringLiteral("remark") + number);
        EXPECT_EQ(s.date_start, 0);
        EXPECT_EQ(s.date_end, 0);
        EXPECT_FALSE(picker->isVisible());
        EXPECT_EQ(picker->result(), int(QDialog::Accepted));
    }

    std::unique_ptr<dlg_search_stock> picker;
    std::unique_ptr<QSignalSpy> picked;
    QTableWidget* table = nullptr;
};

TEST_F(stock_picker, window_and_widgets) {
    open();
    expect_window(picker.get(), QSize(1300, 562), Qt::WindowMaximizeButtonHint | Qt::WindowCloseButtonHint);
    expect_search_fields(picker.get(), {{"label_7", "date_start", "日期从"},
                                        {"label_8", "date_end", "到"},
                                        {"label_warehouse", "comb_warehouse", "仓库"},
                                        {"label_3", "txt_product_name", "货品名称"},
                                        {"label_4", "txt_code", "编码"},
                                        {"label_5", "txt_spec", "规格"},
                                        {"label_2", "txt_place", "存储位置"},
                                        {"label_6", "txt_remark", "备注"}});
    expect_warehouses(child<QComboBox>(picker.get(), "comb_warehouse"));
    EXPECT_EQ(child<QPushButton>(picker.get(), "btn_search")->text(), QStringLiteral("查询"));
    EXPECT_EQ(child<QPushButton>(picker.get(), "btn_close")->text(), QStringLiteral("关闭"));
    EXPECT_GT(child<QPushButton>(picker.get(), "btn_close")->y(), table->geometry().bottom());
    EXPECT_EQ(table->contextMenuPolicy(), Qt::CustomContextMenu);
    expect_tab_order(picker.get(),
                     {"date_start", "date_end", "comb_warehouse", "txt_product_name", "txt_code", "txt_spec",
                      "txt_place", "txt_remark", "btn_search", "tablewidget", "btn_close"});
}

TEST_F(stock_picker, there_is_no_button_for_all_or_none) {
    open();
    QStringList names;
    const auto buttons = picker->findChildren<QPushButton*>();
    for (const auto* button : buttons)
        names.append(button->objectName());
    names.sort();
    EXPECT_EQ(names, QStringList({QStringLiteral("btn_close"), QStringLiteral("btn_ok"),
                                  QStringLiteral("btn_search")}));
}

TEST_F(stock_picker, opens_with_warehouses_and_ten_rows_since_new_year) {
    open();
    EXPECT_EQ(server.paths(), (QList<QByteArray>{"wms_warehouse/get_option", "wms_stock_detail/get_page"}));
    EXPECT_EQ(server.last().body, dates_of_this_year() + "&page_num=1&page_size=10");
    EXPECT_EQ(table->rowCount(), 4);
    ASSERT_EQ(table->columnCount(), 15);
    for (int i = 0; i < 15; ++i)
        EXPECT_EQ(table->isColumnHidden(i), i == 0 || i == 2 || i == 5 || i == 7) << i;
}

TEST_F(stock_picker, a_fixed_warehouse_is_not_shown_and_goes_out_with_every_search) {
    open(QStringLiteral("8"));
    EXPECT_EQ(server.paths(), QList<QByteArray>{"wms_stock_detail/get_page"}) << "no list of warehouses";
    EXPECT_FALSE(child<QWidget>(picker.get(), "label_warehouse")->isVisible());
    EXPECT_FALSE(child<QWidget>(picker.get(), "comb_warehouse")->isVisible());
    const QByteArray args = dates_of_this_year() + "&warehouse=8";
    EXPECT_EQ(server.last().body, args + "&page_num=1&page_size=10");
    server.always("wms_stock_detail/get_page", stock_page(1, 4, 3));
    click(picker.get(), "btn_search");
    EXPECT_EQ(server.last().body, args + "&page_num=1&page_size=10");
    fill_words(picker.get());
    QTest::keyClick(picker.get(), Qt::Key_Return);
    EXPECT_EQ(server.last().body, args + filled_words + "&page_num=1&page_size=10");
    turn_page(picker.get(), "lbl_next");
    EXPECT_EQ(server.last().body, args + filled_words + "&page_num=2&page_size=10");
}

TEST_F(stock_picker, a_chosen_warehouse_goes_out_by_its_id_and_all_of_them_without) {
    open();
    auto* combo = child<QComboBox>(picker.get(), "comb_warehouse");
    combo->setCurrentIndex(1);
    EXPECT_EQ(server.requests().size(), 2) << "choosing does not search";
    click(picker.get(), "btn_search");
    EXPECT_EQ(server.last().body, dates_of_this_year() + "&warehouse=3&page_num=1&page_size=10");
    combo->setCurrentIndex(0);
    click(picker.get(), "btn_search");
    EXPECT_EQ(server.last().body, dates_of_this_year() + "&page_num=1&page_size=10");
}

TEST_F(stock_picker, search_sends_dates_and_words_in_order) {
    open();
    const QSignalSpy sent(picker.get(), &dlg_search_stock::signal_send_args);
    set_dates(picker.get(), QDate(2020, 4, 12), QDate(2020, 5, 1));
    fill_words(picker.get());
    click(picker.get(), "btn_search");
    const QByteArray args = "&date_start=1586649600&date_end=1588377599" + QByteArray(filled_words);
    EXPECT_EQ(server.last().body, args + "&page_num=1&page_size=10");
    ASSERT_EQ(sent.size(), 1);
    EXPECT_EQ(sent[0].first().toString(), QString::fromUtf8(args));
    child<QLineEdit>(picker.get(), "txt_product_name")->clear();
    click(picker.get(), "btn_search");
    EXPECT_EQ(server.last().body,
              "&date_start=1586649600&date_end=1588377599&spec=spec&x&code=code&x"
              "&place=place&x&remark=remark&x&page_num=1&page_size=10");
}

TEST_F(stock_picker, an_emptied_word_is_forgotten) {
    open();
    fill_words(picker.get());
    click(picker.get(), "btn_search");
    for (const char* name : {"txt_product_name", "txt_code", "txt_spec", "txt_place", "txt_remark"})
        child<QLineEdit>(picker.get(), name)->setText(QStringLiteral("  "));
    click(picker.get(), "btn_search");
    EXPECT_EQ(server.last().body, dates_of_this_year() + "&page_num=1&page_size=10");
}

TEST_F(stock_picker, return_and_enter_search_once_wherever_the_focus_is) {
    open();
    int expected = 2;
    for (Qt::Key key : {Qt::Key_Return, Qt::Key_Enter})
        for (const char* name :
             {"date_start", "comb_warehouse", "txt_code", "btn_search", "tablewidget", "btn_close"}) {
            QTest::keyClick(child<QWidget>(picker.get(), name), key);
            EXPECT_EQ(server.requests().size(), ++expected) << name;
        }
    EXPECT_TRUE(picker->isVisible());
    EXPECT_EQ(picked->size(), 0);
}

TEST_F(stock_picker, every_other_key_is_swallowed) {
    open();
    for (int key : {int(Qt::Key_Escape), int(Qt::Key_F1), int(Qt::Key_A)}) {
        QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier);
        QApplication::sendEvent(picker.get(), &press);
        EXPECT_TRUE(press.isAccepted());
    }
    EXPECT_TRUE(picker->isVisible());
    EXPECT_EQ(server.requests().size(), 2);
}

TEST_F(stock_picker, context_menu) {
    open();
    EXPECT_EQ(menu_texts(table), QStringList{QStringLiteral("查询")});
    expect_menu_at_pointer(table);
    menu_action(table, "查询")->trigger();
    EXPECT_EQ(server.requests().size(), 3);
    EXPECT_EQ(server.last().path, "wms_stock_detail/get_page");
}

TEST_F(stock_picker, a_double_click_delivers_the_whole_row) {
    open();
    double_click(1);
    expect_picked(2);
}

TEST_F(stock_picker, a_double_click_takes_the_current_row_and_not_the_index) {
    open();
    table->setCurrentCell(2, 1);
    picker->on_tablewidget_doubleClicked(table->model()->index(0, 0));
    expect_picked(3);
}

TEST_F(stock_picker, a_double_click_makes_its_row_the_current_one) {
    open();
    ASSERT_EQ(table->currentRow(), -1);
    const auto click_twice = [this](const QPoint& at) {
        QTest::mouseClick(table->viewport(), Qt::LeftButton, Qt::NoModifier, at);
        QTest::mouseDClick(table->viewport(), Qt::LeftButton, Qt::NoModifier, at);
    };
    const QRect last = table->visualItemRect(table->item(3, 1));
    click_twice(QPoint(last.center().x(), last.bottom() + 20));
    EXPECT_EQ(picked->size(), 0) << "no row, no choice";
    EXPECT_TRUE(picker->isVisible());
    click_twice(last.center());
    expect_picked(4);
}

TEST_F(stock_picker, what_was_searched_for_is_not_handed_over) {
    open(QStringLiteral("8"));
    fill_words(picker.get());
    click(picker.get(), "btn_search");
    double_click(0);
    expect_picked(1);
}

TEST_F(stock_picker, a_row_without_stock_can_be_picked) {
    open();
    QJsonObject empty = stock(1);
    empty[QStringLiteral("amount")] = QStringLiteral("0");
    server.always("wms_stock_detail/get_page", page_body({empty}));
    click(picker.get(), "btn_search");
    double_click(0);
    ASSERT_EQ(picked->size(), 1);
    EXPECT_EQ(picked->first().first().value<struct_stock>().amount, 0);
    EXPECT_EQ(picked->first().first().value<struct_stock>().id, QStringLiteral("1"));
}

TEST_F(stock_picker, an_empty_result_leaves_the_table_empty) {
    open();
    for (const char* body : {R"({"list":[],"total":"0","page_count":"0","page_num":"1"})", "", "7", "x"}) {
        server.always("wms_stock_detail/get_page", body);
        click(picker.get(), "btn_search");
        EXPECT_EQ(table->rowCount(), 0) << body;
        EXPECT_TRUE(shown_tip().isEmpty());
    }
    EXPECT_TRUE(picker->isVisible());
}

TEST_F(stock_picker, a_cell_under_the_mouse_shows_its_text_as_its_tip) {
    open();
    EXPECT_EQ(tip_of_cell(table, 2, 4), QStringLiteral("货3"));
}

TEST_F(stock_picker, close_says_nothing) {
    open();
    click_row(table, 1);
    click(picker.get(), "btn_close");
    EXPECT_FALSE(picker->isVisible());
    EXPECT_EQ(picked->size(), 0);
    EXPECT_EQ(picker->result(), int(QDialog::Rejected));
}
