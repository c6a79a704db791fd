#include <QSignalSpy>

#include "gui/tab_stock_detail_fixture.h"
#include "support/rights_log.h"

TEST_F(stock_tab, widgets) {
    open();
    EXPECT_EQ(tab->size(), QSize(1311, 500));
    const std::vector<search_field> fields{{"label", "date_start", "日期从"},
                                           {"label_2", "date_end", "到"},
                                           {"label_3", "comb_warehouse", "仓库"},
                                           {"label_8", "txt_place", "位置"},
                                           {"label_4", "txt_product_name", "货品名称"},
                                           {"label_6", "txt_code", "编码"},
                                           {"label_7", "txt_spec", "规格"},
                                           {"label_5", "txt_remark", "备注"}};
    expect_search_fields(tab.get(), fields);
    for (const auto& f : fields)
        EXPECT_EQ(child<QLabel>(tab.get(), f.label)->indent(), f.label == fields[0].label ? -1 : 10);
    expect_warehouses(child<QComboBox>(tab.get(), "comb_warehouse"));
    expect_left_to_right(tab.get(), {"btn_search", "btn_print"});
    EXPECT_EQ(child<QPushButton>(tab.get(), "btn_search")->text(), QStringLiteral("查询"));
    EXPECT_EQ(child<QPushButton>(tab.get(), "btn_print")->text(), QStringLiteral("打印"));
    int above = -1;
    for (const char* name : {"txt_remark", "btn_print", "tablewidget"}) {
        EXPECT_GT(child<QWidget>(tab.get(), name)->y(), above) << name;
        above = child<QWidget>(tab.get(), name)->geometry().bottom();
    }
    EXPECT_GT(child<QLabel>(tab.get(), "lbl_total")->mapTo(tab.get(), QPoint()).y(), above);
    expect_tab_order(tab.get(), {"date_start", "date_end", "comb_warehouse", "txt_place", "txt_product_name",
                                 "txt_code", "txt_spec", "txt_remark", "tablewidget"});
}

TEST_F(stock_tab, there_are_no_buttons_to_change_rows) {
    open();
    QStringList names;
    const auto buttons = tab->findChildren<QPushButton*>();
    for (const auto* button : buttons)
        names.append(button->objectName());
    names.sort();
    EXPECT_EQ(names, QStringList({QStringLiteral("btn_ok"), QStringLiteral("btn_print"),
                                  QStringLiteral("btn_search")}));
    click_row(table, 1);
    QTest::mouseDClick(table->viewport(), Qt::LeftButton, Qt::NoModifier,
                       table->visualItemRect(table->item(1, 1)).center());
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    EXPECT_TRUE(server.requests().isEmpty());
}

TEST_F(stock_tab, opens_with_warehouses_and_the_first_page_of_20_since_new_year) {
    open_with({"search"});
    EXPECT_EQ(server.paths(), (QList<QByteArray>{"wms_warehouse/get_option", "wms_stock_detail/get_page"}));
    EXPECT_EQ(server.last().body, dates_of_this_year() + "&page_num=1&page_size=20")
        << "both dates go out and no empty word does";
    expect_cells(table, 0,
                 {"1", "一号仓", "3", "架1", "货1", "101", "类", "5", "code1", "spec1", "1.5", "10", "15",
                  "remark1", "2020-04-12 12:57"});
    ASSERT_EQ(table->columnCount(), 15);
    for (int i = 0; i < 15; ++i)
        EXPECT_EQ(table->isColumnHidden(i), i == 0 || i == 2 || i == 5 || i == 7) << i;
}

TEST_F(stock_tab, search_sends_what_is_filled_in_order) {
    open();
    const QSignalSpy sent(tab.get(), &tab_stock_detail::signal_send_args);
    set_dates(tab.get(), QDate(2020, 4, 12), QDate(2020, 5, 1));
    fill_words(tab.get());
    child<QComboBox>(tab.get(), "comb_warehouse")->setCurrentIndex(2);
    EXPECT_TRUE(server.requests().isEmpty()) << "only the button searches";
    click(tab.get(), "btn_search");
    const QByteArray args =
        "&date_start=1586649600&date_end=1588377599&warehouse=8" + QByteArray(filled_words);
    EXPECT_EQ(server.last().path, "wms_stock_detail/get_page");
    EXPECT_EQ(server.last().body, args + "&page_num=1&page_size=20");
    ASSERT_EQ(sent.size(), 1);
    EXPECT_EQ(sent[0].first().toString(), QString::fromUtf8(args));
    field("txt_code")->clear();
    field("txt_place")->setText(QStringLiteral("  "));
    child<QComboBox>(tab.get(), "comb_warehouse")->setCurrentIndex(0);
    click(tab.get(), "btn_search");
    EXPECT_EQ(server.last().body,
              "&date_start=1586649600&date_end=1588377599&product_name=product_name&x&spec=spec&x"
              "&remark=remark&x&page_num=1&page_size=20");
}

TEST_F(stock_tab, days_are_those_of_the_users_zone) {
    const scoped_time_zone shanghai("Asia/Shanghai");
    open();
    set_dates(tab.get(), QDate(2020, 4, 12), QDate(2020, 4, 12));
    click(tab.get(), "btn_search");
    EXPECT_EQ(server.last().body, "&date_start=1586620800&date_end=1586707199&page_num=1&page_size=20");
}

TEST_F(stock_tab, a_range_that_ends_before_it_starts_is_sent_as_it_stands) {
    open();
    set_dates(tab.get(), QDate(2020, 5, 1), QDate(2020, 4, 12));
    click(tab.get(), "btn_search");
    EXPECT_EQ(server.last().body, range(QDate(2020, 5, 1), QDate(2020, 4, 12)) + "&page_num=1&page_size=20");
}

TEST_F(stock_tab, page_turns_keep_the_search) {
    open();
    set_dates(tab.get(), QDate(2020, 4, 12), QDate(2020, 5, 1));
    field("txt_code")->setText(QStringLiteral("c"));
    server.always("wms_stock_detail/get_page", stock_page(1, 3, 3));
    click(tab.get(), "btn_search");
    field("txt_code")->setText(QStringLiteral("not searched for"));
    turn_page(tab.get(), "lbl_next");
    EXPECT_EQ(server.last().body,
              range(QDate(2020, 4, 12), QDate(2020, 5, 1)) + "&code=c&page_num=2&page_size=20");
}

TEST_F(stock_tab, return_and_enter_search_and_every_other_key_is_swallowed) {
    open();
    int expected = 0;
    for (Qt::Key key : {Qt::Key_Return, Qt::Key_Enter})
        for (const char* name : {"date_start", "comb_warehouse", "txt_place", "tablewidget"}) {
            QTest::keyClick(child<QWidget>(tab.get(), name), key);
            EXPECT_EQ(server.requests().size(), ++expected) << name;
        }
    for (int key : {int(Qt::Key_Escape), int(Qt::Key_F5), int(Qt::Key_A)}) {
        QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier);
        QApplication::sendEvent(tab.get(), &press);
        EXPECT_TRUE(press.isAccepted()) << key;
    }
    EXPECT_EQ(server.requests().size(), expected);
}

TEST_F(stock_tab, context_menu) {
    open();
    EXPECT_EQ(menu_texts(table),
              QStringList({QStringLiteral("查询"), QStringLiteral("-"), QStringLiteral("打印")}));
    expect_menu_at_pointer(table);
    action("查询")->trigger();
    EXPECT_EQ(server.paths(), QList<QByteArray>{"wms_stock_detail/get_page"});
    with_modal([this] { action("打印")->trigger(); },
               [](QWidget* preview) {
                   EXPECT_EQ(QLatin1String(preview->metaObject()->className()),
                             QLatin1String("QPrintPreviewDialog"));
                   preview->close();
               });
}

TEST_F(stock_tab, a_cell_under_the_mouse_shows_its_text_as_its_tip) {
    open();
    EXPECT_TRUE(table->item(1, 3)->toolTip().isEmpty());
    EXPECT_EQ(tip_of_cell(table, 1, 3), QStringLiteral("架2"));
    EXPECT_TRUE(table->item(1, 4)->toolTip().isEmpty()) << "one cell at a time";
}

TEST_F(stock_tab, a_failed_search_empties_the_list_and_says_nothing) {
    for (const char* body : {"", "[]", "7", "{\"list\":", R"({"http_state":0})"}) {
        open();
        server.always("wms_stock_detail/get_page", body);
        click(tab.get(), "btn_search");
        EXPECT_EQ(table->rowCount(), 0) << body;
        EXPECT_EQ(child<QLabel>(tab.get(), "lbl_total")->text(), QStringLiteral("共0页/0条记录"));
        EXPECT_TRUE(shown_tip().isEmpty());
        EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    }
}

TEST_F(stock_tab, without_the_warehouses_all_of_them_can_be_searched) {
    server.always("wms_warehouse/get_option", "");
    open();
    EXPECT_EQ(child<QComboBox>(tab.get(), "comb_warehouse")->count(), 1);
    click(tab.get(), "btn_search");
    EXPECT_EQ(server.last().body, dates_of_this_year() + "&page_num=1&page_size=20");
}

TEST_F(stock_tab, the_right_to_search_is_the_only_one) {
    open_with({"search"});
    EXPECT_TRUE(tab->isEnabled());
    EXPECT_TRUE(child<QPushButton>(tab.get(), "btn_search")->isVisible());
    EXPECT_TRUE(child<QPushButton>(tab.get(), "btn_print")->isEnabled());
    EXPECT_TRUE(action("查询")->isEnabled());
    EXPECT_TRUE(action("打印")->isEnabled());
}

TEST_F(stock_tab, without_it_the_tab_is_grey_and_empty_and_asks_for_no_page) {
    open_with({"print", "add", "edit", "delete", "view"});
    EXPECT_EQ(server.paths(), QList<QByteArray>{"wms_warehouse/get_option"});
    EXPECT_FALSE(tab->isEnabled());
    EXPECT_FALSE(child<QPushButton>(tab.get(), "btn_search")->isVisible());
    EXPECT_TRUE(child<QPushButton>(tab.get(), "btn_print")->isVisible());
    EXPECT_FALSE(child<QPushButton>(tab.get(), "btn_print")->isEnabled());
    EXPECT_FALSE(action("查询")->isEnabled());
    EXPECT_TRUE(action("打印")->isEnabled()) << "nothing is looked up for it";
    EXPECT_EQ(table->rowCount(), 0);
}

TEST_F(stock_tab, the_first_load_comes_before_the_signal_of_the_right) {
    rights_log log;
    int loads = 0;
    server.always("wms_stock_detail/get_page", [&](const recorded_request&) {
        const auto widgets = QApplication::allWidgets();
        for (const QWidget* widget : widgets)
            if (loads == 0 &&
                QLatin1String(widget->metaObject()->className()) == QLatin1String("tab_stock_detail"))
                log.follow(widget);
        ++loads;
        return scripted_answer("{}");
    });
    grant("stock_detail", {"search"});
    const tab_stock_detail made(nullptr);
    EXPECT_EQ(loads, 1);
    EXPECT_EQ(log.lines(), QStringList{QStringLiteral("search on")});
}
