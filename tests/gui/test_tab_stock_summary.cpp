#include <QPrintPreviewDialog>
#include <QSignalSpy>
#include <QTemporaryDir>

#include "gui/stock_fixture.h"
#include "stock/tab_stock_summary.h"
#include "support/paper.h"
#include "support/rights_log.h"

/** The tab of the stock summary. Product n is called 货n, has the code cn and 10 n units. */
class summary_tab : public list_tab_test<tab_stock_summary, stock_test> {
protected:
    void open() {
        open_with({"search", "print"});
        server.forget();
    }
    void open_with(const std::vector<const char*>& rights) {
        g_http.rights.clear();
        grant("stock_summary", rights);
        server.always("wms_stock_summary/get_page", sums(1, 3));
        show(std::make_unique<tab_stock_summary>(nullptr));
    }

    static QByteArray sums(int first, int last, int page_count = 1) {
        QJsonArray list;
        for (int n = first; n <= last; ++n) {
            const QString number = QString::number(n);
            list.append(QJsonObject{{QStringLiteral("product_name"), QStringLiteral("货") + number},
                                    {QStringLiteral("product"), QString::number(100 + n)},
                                    {QStringLiteral("category_name"), QStringLiteral("类")},
                                    {QStringLiteral("category"), QStringLiteral("5")},
                                    {QStringLiteral("code"), QStringLiteral("c") + number},
                                    {QStringLiteral("spec"), QStringLiteral("s") + number},
                                    {QStringLiteral("avg_price"), number + QStringLiteral(".255")},
                                    {QStringLiteral("sum_amount"), QString::number(10 * n)},
                                    {QStringLiteral("sum_total"), number + QStringLiteral("2.5")}});
        }
        return page_body(list, page_count);
    }

    bool shown(const char* button) { return child<QPushButton>(tab.get(), button)->isVisible(); }
};

TEST_F(summary_tab, widgets) {
    open();
    EXPECT_EQ(tab->size(), QSize(1300, 500));
    const struct {
        const char* label;
        const char* field;
        const char* text;
    } fields[] = {{"label", "date_start", "日期从"},
                  {"label_2", "date_end", "到"},
                  {"label_5", "txt_product_name", "货品名称"},
                  {"label_6", "txt_num", "编码"},
                  {"label_7", "txt_spec", "规格"}};
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
    for (const char* name : {"txt_product_name", "txt_num", "txt_spec"})
        EXPECT_TRUE(field(name)->isClearButtonEnabled()) << name;
    const QDate today = QDate::currentDate();
    EXPECT_EQ(child<QDateEdit>(tab.get(), "date_start")->date(), QDate(today.year(), 1, 1));
    EXPECT_EQ(child<QDateEdit>(tab.get(), "date_end")->date(), today);
    for (const char* name : {"date_start", "date_end"})
        EXPECT_TRUE(child<QDateEdit>(tab.get(), name)->calendarPopup()) << name;
    expect_left_to_right(tab.get(), {"btn_search", "btn_print"});
    EXPECT_EQ(child<QPushButton>(tab.get(), "btn_search")->text(), QStringLiteral("查询"));
    EXPECT_EQ(child<QPushButton>(tab.get(), "btn_print")->text(), QStringLiteral("打印"));
    EXPECT_TRUE(table->hasMouseTracking());
    EXPECT_TRUE(tab->findChildren<QComboBox*>().isEmpty()) << "all warehouses are summed up";
    EXPECT_GT(child<QLabel>(tab.get(), "lbl_total")->mapTo(tab.get(), QPoint()).y(),
              table->geometry().bottom());
    expect_tab_order(tab.get(), {"date_start", "date_end", "txt_product_name", "txt_num", "txt_spec",
                                 "tablewidget", "btn_search", "btn_print"});
}

TEST_F(summary_tab, opens_with_the_first_page_of_20_since_new_year) {
    open_with({"search", "print"});
    EXPECT_EQ(server.paths(), QList<QByteArray>{"wms_stock_summary/get_page"});
    EXPECT_EQ(server.last().body, dates_of_this_year() + "&page_num=1&page_size=20");
    expect_cells(table, 1, {"货2", "102", "类", "5", "c2", "s2", "2.255", "20", "22.5"});
    ASSERT_EQ(table->columnCount(), 9);
    for (int i = 0; i < 9; ++i)
        EXPECT_EQ(table->isColumnHidden(i), i == 1 || i == 3) << i;
}

TEST_F(summary_tab, search_sends_what_is_filled_the_number_as_the_code) {
    open();
    const QSignalSpy sent(tab.get(), &tab_stock_summary::signal_send_args);
    set_dates(tab.get(), QDate(2020, 4, 12), QDate(2020, 5, 1));
    field("txt_num")->setText(QStringLiteral(" n 1\t"));
    click(tab.get(), "btn_search");
    const QByteArray dates = range(QDate(2020, 4, 12), QDate(2020, 5, 1));
    EXPECT_EQ(server.last().body, dates + "&code=n 1&page_num=1&page_size=20");
    field("txt_product_name")->setText(QStringLiteral(" 扳&x "));
    field("txt_spec")->setText(QStringLiteral("9件 "));
    click(tab.get(), "btn_search");
    EXPECT_EQ(server.last().body,
              dates + QByteArray("&product_name=扳&x&code=n 1&spec=9件&page_num=1&page_size=20"));
    field("txt_num")->setText(QStringLiteral("  "));
    click(tab.get(), "btn_search");
    EXPECT_EQ(server.last().body, dates + QByteArray("&product_name=扳&x&spec=9件&page_num=1&page_size=20"));
    ASSERT_EQ(sent.size(), 3);
    EXPECT_TRUE(sent[0].first().toString().startsWith(QStringLiteral("&date_start=")));
    EXPECT_EQ(server.requests().size(), 3);
}

TEST_F(summary_tab, days_are_those_of_the_users_zone_and_are_not_compared) {
    const scoped_time_zone shanghai("Asia/Shanghai");
    open();
    set_dates(tab.get(), QDate(2020, 4, 13), QDate(2020, 4, 12));
    click(tab.get(), "btn_search");
    EXPECT_EQ(server.last().body, "&date_start=1586707200&date_end=1586707199&page_num=1&page_size=20");
}

TEST_F(summary_tab, page_turns_keep_the_search) {
    open();
    set_dates(tab.get(), QDate(2020, 4, 12), QDate(2020, 5, 1));
    field("txt_num")->setText(QStringLiteral("c"));
    server.always("wms_stock_summary/get_page", sums(1, 3, 3));
    click(tab.get(), "btn_search");
    field("txt_num")->setText(QStringLiteral("not searched for"));
    turn_page(tab.get(), "lbl_next");
    EXPECT_EQ(server.last().body,
              range(QDate(2020, 4, 12), QDate(2020, 5, 1)) + "&code=c&page_num=2&page_size=20");
}

TEST_F(summary_tab, return_and_enter_search_and_every_other_key_is_swallowed) {
    open();
    int expected = 0;
    for (Qt::Key key : {Qt::Key_Return, Qt::Key_Enter})
        for (const char* name : {"date_start", "txt_num", "tablewidget"}) {
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

TEST_F(summary_tab, context_menu) {
    open();
    EXPECT_EQ(menu_texts(table),
              QStringList({QStringLiteral("查询"), QStringLiteral("-"), QStringLiteral("打印")}));
    expect_menu_at_pointer(table);
    action("查询")->trigger();
    EXPECT_EQ(server.paths(), QList<QByteArray>{"wms_stock_summary/get_page"});
    with_modal_of<QPrintPreviewDialog>([this] { action("打印")->trigger(); },
                                       [](QPrintPreviewDialog* preview) { preview->close(); });
}

TEST_F(summary_tab, a_cell_under_the_mouse_shows_its_text_as_its_tip) {
    open();
    EXPECT_EQ(tip_of_cell(table, 1, 0), QStringLiteral("货2"));
    EXPECT_TRUE(table->item(1, 2)->toolTip().isEmpty()) << "one cell at a time";
}

TEST_F(summary_tab, rows_are_only_read) {
    open();
    click_row(table, 1);
    QTest::mouseDClick(table->viewport(), Qt::LeftButton, Qt::NoModifier,
                       table->visualItemRect(table->item(1, 0)).center());
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    EXPECT_TRUE(server.requests().isEmpty());
}

TEST_F(summary_tab, a_failed_search_empties_the_list_and_says_nothing) {
    for (const char* body : {"", "[]", "7", "{\"list\":", R"({"list":[]})"}) {
        open();
        server.always("wms_stock_summary/get_page", body);
        click(tab.get(), "btn_search");
        EXPECT_EQ(table->rowCount(), 0) << body;
        EXPECT_EQ(child<QLabel>(tab.get(), "lbl_total")->text(), QStringLiteral("共0页/0条记录"));
        EXPECT_TRUE(shown_tip().isEmpty());
        EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    }
}

TEST_F(summary_tab, the_right_to_print_has_the_last_word_on_the_tab) {
    const struct {
        std::vector<const char*> rights;
        bool loads;
        bool enabled;
    } rows[] = {{{}, false, false},
                {{"search"}, true, false},
                {{"print"}, false, true},
                {{"search", "print"}, true, true},
                {{"view", "add", "Search", "prints"}, false, false}};
    for (const auto& r : rows) {
        server.forget();
        open_with(r.rights);
        EXPECT_EQ(server.requests().size(), r.loads ? 1 : 0);
        EXPECT_EQ(table->rowCount(), r.loads ? 3 : 0);
        EXPECT_EQ(tab->isEnabled(), r.enabled);
        EXPECT_EQ(shown("btn_search"), r.enabled);
        EXPECT_TRUE(shown("btn_print")) << "its signal is never emitted";
        EXPECT_TRUE(action("打印")->isEnabled());
        EXPECT_TRUE(action("查询")->isEnabled()) << "it follows no right";
    }
}

TEST_F(summary_tab, with_the_right_to_print_alone_the_empty_tab_can_search) {
    open_with({"print"});
    click(tab.get(), "btn_search");
    EXPECT_EQ(table->rowCount(), 3);
}

TEST_F(summary_tab, the_load_comes_first_and_both_rights_go_out_as_that_to_search) {
    rights_log log;
    int loads = 0;
    server.always("wms_stock_summary/get_page", [&](const recorded_request&) {
        const auto widgets = QApplication::allWidgets();
        for (const QWidget* widget : widgets)
            if (loads == 0 && qobject_cast<const tab_stock_summary*>(widget) != nullptr) log.follow(widget);
        ++loads;
        return scripted_answer("{}");
    });
    grant("stock_summary", {"search"});
    const tab_stock_summary made(nullptr);
    EXPECT_EQ(loads, 1);
    EXPECT_EQ(log.lines(), QStringList({QStringLiteral("search on"), QStringLiteral("search off")}));
}

TEST_F(summary_tab, the_signal_to_print_would_govern_button_and_entry) {
    open();
    for (bool on : {false, true}) {
        emit tab->signal_enable_print(on);
        expect_right("btn_print", "打印", on);
    }
}

TEST_F(summary_tab, prints_the_rows_of_the_page_that_is_shown) {
    open();
    server.always("wms_stock_summary/get_page", sums(2, 2, 3));
    turn_page(tab.get(), "lbl_first");
    const QTemporaryDir folder;
    const QString file = folder.filePath(QStringLiteral("sums.pdf"));
    with_preview([this] { click(tab.get(), "btn_print"); },
                 [this](QPrintPreviewDialog* preview) { EXPECT_EQ(preview->parentWidget(), tab.get()); },
                 file);
    tab->slot_print();
    // The last character is the number of the page.
    EXPECT_EQ(paper_texts(file).join(QString()),
              QStringLiteral("库存汇总货品名称类别编码规格平均价格数量总价货2类c2s22.2552022.51"));
}
