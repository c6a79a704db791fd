#include <QSignalSpy>

#include "documents/pickers.h"
#include "gui/tab_stock_allot_fixture.h"
#include "support/rights_log.h"

TEST_F(allot_tab, widgets) {
    open();
    EXPECT_EQ(tab->size(), QSize(1300, 500));
    const struct {
        const char* label;
        const char* field;
        const char* text;
    } fields[] = {{"label", "date_start", "日期从"},
                  {"label_2", "date_end", "到"},
                  {"label_3", "txt_sn", "单号"},
                  {"label_4", "comb_warehouse_out", "调出仓"},
                  {"label_5", "comb_warehouse_in", "调入仓"},
                  {"label_6", "txt_operater", "经办人"},
                  {"label_7", "txt_writer", "制单人"},
                  {"label_10", "txt_main_remark", "备注"}};
    int left = -1;
    for (const auto& f : fields) {
        const auto* label = child<QLabel>(tab.get(), f.label);
        const auto* widget = child<QWidget>(tab.get(), f.field);
        EXPECT_EQ(label->text(), QString::fromUtf8(f.text));
        EXPECT_EQ(label->buddy(), widget);
        EXPECT_GT(label->x(), left) << f.label;
        EXPECT_GT(widget->x(), label->x()) << f.field;
        left = widget->x();
    }
    for (const char* name : {"txt_operater", "txt_writer"}) {
        EXPECT_TRUE(field(name)->isReadOnly());
        EXPECT_FALSE(field(name)->isClearButtonEnabled()) << "a criterion goes by the picker alone";
        EXPECT_EQ(field(name)->placeholderText(), QStringLiteral("点击选择"));
    }
    for (const char* name : {"txt_sn", "txt_main_remark"})
        EXPECT_TRUE(field(name)->isClearButtonEnabled() && !field(name)->isReadOnly()) << name;
    for (const char* name : {"date_start", "date_end"})
        EXPECT_TRUE(child<QDateEdit>(tab.get(), name)->calendarPopup()) << name;
    for (const char* name : {"comb_warehouse_out", "comb_warehouse_in"})
        expect_warehouses(box(name));
    EXPECT_TRUE(table->hasMouseTracking());
    const struct {
        const char* name;
        const char* text;
    } buttons[] = {{"btn_search", "查询"},
                   {"btn_view", "查看"},
                   {"btn_add", "添加"},
                   {"btn_delete", "删除"},
                   {"btn_print", "打印"}};
    for (const auto& b : buttons)
        EXPECT_EQ(child<QPushButton>(tab.get(), b.name)->text(), QString::fromUtf8(b.text));
    expect_left_to_right(tab.get(), {"btn_search", "btn_view", "btn_add", "btn_delete", "btn_print"});
    EXPECT_EQ(child<QPushButton>(tab.get(), "btn_print")->geometry().right(), table->geometry().right());
    expect_tab_order(tab.get(),
                     {"date_start", "date_end", "txt_sn", "comb_warehouse_out", "comb_warehouse_in",
                      "txt_operater", "txt_writer", "txt_main_remark", "btn_search", "btn_view", "btn_add",
                      "btn_delete", "btn_print", "tablewidget"});
}

TEST_F(allot_tab, asks_for_the_warehouses_of_each_box_before_the_first_page) {
    open_with({"search"});
    EXPECT_EQ(server.paths(), (QList<QByteArray>{"wms_warehouse/get_option", "wms_warehouse/get_option",
                                                 "wms_stock_allot/get_page"}));
    EXPECT_EQ(server.requests()[0].method, "GET");
    EXPECT_EQ(server.last().body, dates_of_this_year().mid(1) + "&page_num=1&page_size=20")
        << "just the two dates, without a leading ampersand";
    expect_cells(table, 1,
                 {"2", "DB-2", "出仓2", "f2", "入仓2", "t2", "员工2", "o2", "用户2", "w2", "附注2",
                  "2020-04-12 12:58"});
    const QList<int> hidden{0, 3, 5, 7, 9};
    for (int i = 0; i < 12; ++i)
        EXPECT_EQ(table->isColumnHidden(i), hidden.contains(i)) << i;
}

TEST_F(allot_tab, one_click_searches_once) {
    open();
    click(tab.get(), "btn_search");
    EXPECT_EQ(server.requests().size(), 1);
    tab->on_btn_search_clicked();
    EXPECT_EQ(server.requests().size(), 2) << "the slot named after the button searches too";
}

TEST_F(allot_tab, all_criteria_go_out_in_their_order_the_destination_before_the_source) {
    open();
    const QSignalSpy sent(tab.get(), &tab_stock_allot::signal_send_args);
    struct_emp operater;
    operater.id = QStringLiteral("4");
    operater.name = QStringLiteral("顾");
    struct_user writer;
    writer.id = QStringLiteral("5");
    writer.realname = QStringLiteral("姜");
    box("comb_warehouse_out")->setCurrentIndex(1);
    box("comb_warehouse_in")->setCurrentIndex(2);
    EXPECT_EQ(search(), searched("&warehouse_in=8&warehouse_out=3"));
    tab->slot_writer_selected(writer);
    tab->slot_emp_selected(operater);
    field("txt_sn")->setText(QStringLiteral(" DB&1\t"));
    field("txt_main_remark")->setText(QStringLiteral("  备 注 "));
    EXPECT_EQ(
        search(),
        searched(QByteArray("&operater=4&writer=5&sn=DB&1&warehouse_in=8&warehouse_out=3&remark=备 注")));
    EXPECT_EQ(server.requests().size(), 2) << "the choices alone search nothing";
    for (const char* name : {"comb_warehouse_out", "comb_warehouse_in"})
        box(name)->setCurrentIndex(0);
    field("txt_sn")->setText(QStringLiteral("  "));
    EXPECT_EQ(search(), searched(QByteArray("&operater=4&writer=5&remark=备 注")));
    EXPECT_TRUE(sent.last().first().toString().startsWith(QStringLiteral("date_start=")));
}

TEST_F(allot_tab, days_are_local_and_are_not_compared) {
    const scoped_time_zone shanghai("Asia/Shanghai");
    open();
    set_dates(tab.get(), QDate(2020, 4, 13), QDate(2020, 4, 12));
    EXPECT_EQ(search(), "date_start=1586707200&date_end=1586707199&page_num=1&page_size=20");
}

TEST_F(allot_tab, page_turns_keep_the_search) {
    open();
    server.always("wms_stock_allot/get_page", page_body({transfer(1)}, 3));
    field("txt_sn")->setText(QStringLiteral("x"));
    search();
    field("txt_sn")->setText(QStringLiteral("not searched for"));
    turn_page(tab.get(), "lbl_next");
    EXPECT_EQ(searches().last(), searched("&sn=x").replace("page_num=1", "page_num=2"));
}

TEST_F(allot_tab, return_and_enter_search_and_every_other_key_is_swallowed) {
    open();
    int expected = 0;
    for (Qt::Key key : {Qt::Key_Return, Qt::Key_Enter})
        for (const char* name : {"txt_sn", "comb_warehouse_in", "date_start", "tablewidget"}) {
            QTest::keyClick(child<QWidget>(tab.get(), name), key);
            EXPECT_EQ(searches().size(), ++expected) << name;
        }
    for (int key : {int(Qt::Key_Escape), int(Qt::Key_F5), int(Qt::Key_A)}) {
        QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier);
        QApplication::sendEvent(tab.get(), &press);
        EXPECT_TRUE(press.isAccepted()) << key;
    }
    EXPECT_EQ(server.requests().size(), expected);
}

TEST_F(allot_tab, employee_and_user_are_picked_and_all_lifts_the_restriction) {
    server.always("wms_emp/get_page",
                  page_body({QJsonObject{{QStringLiteral("id"), QStringLiteral("41")},
                                         {QStringLiteral("name"), QStringLiteral("顾员")}}}));
    server.always("user/get_page",
                  page_body({QJsonObject{{QStringLiteral("id"), QStringLiteral("51")},
                                         {QStringLiteral("username"), QStringLiteral("login")},
                                         {QStringLiteral("realname"), QStringLiteral("姜用")}}}));
    open();
    const QString for_operater = QStringLiteral("查询选择经办人");
    const QString for_writer = QStringLiteral("查询选择制单人");
    pick<dlg_search_emp>(tab.get(), "txt_operater", for_operater, double_click_first);
    pick<dlg_search_user>(tab.get(), "txt_writer", for_writer, double_click_first);
    EXPECT_EQ(field("txt_operater")->text(), QStringLiteral("顾员"));
    EXPECT_EQ(field("txt_writer")->text(), QStringLiteral("姜用")) << "the person's name";
    EXPECT_TRUE(searches().isEmpty());
    EXPECT_EQ(search(), searched("&operater=41&writer=51"));
    pick<dlg_search_emp>(tab.get(), "txt_operater", for_operater,
                         [](dlg_search_emp* picker) { click(picker, "btn_all"); });
    EXPECT_EQ(field("txt_operater")->text(), QStringLiteral("【全部】"));
    EXPECT_EQ(search(), searched("&writer=51"));
    struct_user nameless;
    nameless.id = QStringLiteral("6");
    tab->slot_writer_selected(nameless);
    EXPECT_EQ(field("txt_writer")->text(), QStringLiteral("【全部】"));
    EXPECT_EQ(search(), searched(""));
}

TEST_F(allot_tab, the_filter_of_the_picked_fields_is_taken_off_and_put_on) {
    server.always("wms_emp/get_page", page_body({}));
    server.always("user/get_page", page_body({}));
    open();
    EXPECT_FALSE(presses_open_a_picker(tab.get(), {"txt_sn", "txt_main_remark"}));
    QTest::mousePress(field("txt_operater"), Qt::RightButton);
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    tab->slot_text_filter(false);
    EXPECT_FALSE(presses_open_a_picker(tab.get(), {"txt_operater", "txt_writer"}));
    tab->slot_text_filter(true);
    EXPECT_TRUE(presses_open_a_picker(tab.get(), {"txt_operater"}));
    EXPECT_TRUE(presses_open_a_picker(tab.get(), {"txt_writer"}));
    emit tab->signal_enable_search(false);
    tab->setEnabled(true);
    EXPECT_FALSE(presses_open_a_picker(tab.get(), {"txt_operater", "txt_writer"}));
}

TEST_F(allot_tab, context_menu) {
    open();
    const char* const texts[] = {"查询", "-", "查看", "-", "添加", "-", "删除", "-", "打印"};
    QStringList expected;
    for (const char* text : texts)
        expected.append(QString::fromUtf8(text));
    EXPECT_EQ(menu_texts(table), expected);
    expect_menu_at_pointer(table);
    action("查询")->trigger();
    EXPECT_EQ(server.paths(), QList<QByteArray>{"wms_stock_allot/get_page"});
    click_row(table, 0);
    for (const char* text : {"查看", "添加"})
        with_editor([&] { action(text)->trigger(); }, [](dlg_stock_allot_add*) {});
    with_question([this] { action("删除")->trigger(); }, QStringLiteral("确认删除"),
                  QStringLiteral("确认删除吗？"), QMessageBox::No);
    with_modal([this] { action("打印")->trigger(); },
               [](QWidget* preview) {
                   EXPECT_TRUE(preview->inherits("QPrintPreviewDialog"));
                   preview->close();
               });
}

TEST_F(allot_tab, a_cell_shows_its_whole_text) {
    open();
    EXPECT_TRUE(table->item(1, 1)->toolTip().isEmpty());
    EXPECT_EQ(tip_of_cell(table, 1, 1), QStringLiteral("DB-2"));
}

TEST_F(allot_tab, a_failed_search_empties_the_list_without_a_word) {
    for (const scripted_answer& failure :
         {scripted_answer(""), scripted_answer("7"), scripted_answer("[]"), scripted_answer::dropped()}) {
        open();
        server.always("wms_stock_allot/get_page", failure);
        click(tab.get(), "btn_search");
        EXPECT_EQ(table->rowCount(), 0);
        EXPECT_EQ(child<QLabel>(tab.get(), "lbl_total")->text(), QStringLiteral("共0页/0条记录"));
        EXPECT_TRUE(shown_tip().isEmpty());
        EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    }
}

TEST_F(allot_tab, rights_hide_buttons_and_grey_entries) {
    const struct {
        std::vector<const char*> rights;
        bool search;
        bool add;
        bool view;
        bool remove;
        bool print;
    } rows[] = {{{}, false, false, false, false, false},
                {{"print", "delete", "view", "add", "search"}, true, true, true, true, true},
                {{"search"}, true, false, false, false, false},
                {{"add", "detail_add"}, false, true, false, false, false},
                {{"search", "view"}, true, false, true, false, false},
                {{"search", "delete"}, true, false, false, true, false},
                {{"print"}, false, false, false, false, true},
                {{"edit", "detail_print", "Search"}, false, false, false, false, false}};
    for (const auto& r : rows) {
        server.forget();
        open_with(r.rights);
        EXPECT_EQ(searches().size(), r.search ? 1 : 0);
        EXPECT_EQ(table->rowCount(), r.search ? 3 : 0);
        EXPECT_EQ(tab->isEnabled(), r.search);
        EXPECT_NE(child<QPushButton>(tab.get(), "btn_search")->isHidden(), r.search);
        EXPECT_TRUE(action("查询")->isEnabled()) << "this entry follows no right";
        expect_right("btn_view", "查看", r.view);
        expect_right("btn_add", "添加", r.add);
        expect_right("btn_delete", "删除", r.remove);
        expect_right("btn_print", "打印", r.print);
    }
}
