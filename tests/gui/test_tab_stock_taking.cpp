#include <QPrintPreviewDialog>
#include <QSignalSpy>
#include <QTemporaryDir>

#include "gui/tab_stock_taking_fixture.h"
#include "support/paper.h"
#include "support/rights_log.h"
#include "widgets/paging.h"

// The list of stocktakings: what it shows, searches for, lets pick and prints.

TEST_F(taking_tab, widgets) {
    open();
    EXPECT_EQ(tab->size(), QSize(1300, 500));
    const struct {
        const char* label;
        const char* field;
        const char* text;
        bool picked;
    } fields[] = {{"label_3", "txt_sn", "单号", false},
                  {"label_4", "txt_operater", "经办人", true},
                  {"label_5", "txt_writer", "制单人", true},
                  {"label_10", "txt_main_remark", "备注", false}};
    for (const auto& f : fields) {
        EXPECT_EQ(child<QLabel>(tab.get(), f.label)->text(), u(f.text));
        expect_label_of(tab.get(), f.field, f.text);
        EXPECT_EQ(field(f.field)->isReadOnly(), f.picked) << f.field;
        EXPECT_EQ(field(f.field)->isClearButtonEnabled(), !f.picked) << f.field;
        EXPECT_EQ(field(f.field)->placeholderText(), f.picked ? u("点击选择") : QString());
    }
    EXPECT_EQ(child<QLabel>(tab.get(), "label")->text(), u("日期从"));
    EXPECT_EQ(child<QLabel>(tab.get(), "label_2")->text(), u("到"));
    expect_left_to_right(tab.get(),
                         {"label", "date_start", "label_2", "date_end", "label_3", "txt_sn", "label_4",
                          "txt_operater", "label_5", "txt_writer", "label_10", "txt_main_remark"});
    const struct {
        const char* name;
        const char* text;
    } buttons[] = {{"btn_search", "查询"},
                   {"btn_view", "查看"},
                   {"btn_add", "添加"},
                   {"btn_delete", "删除"},
                   {"btn_print", "打印"}};
    for (const auto& b : buttons) {
        auto* button = child<QPushButton>(tab.get(), b.name);
        EXPECT_EQ(button->text(), u(b.text));
        EXPECT_EQ(button->minimumHeight(), 30) << b.name;
        EXPECT_GT(button->y(), field("txt_sn")->geometry().bottom());
        EXPECT_LT(button->geometry().bottom(), table->y());
        EXPECT_GT(button->x(), tab->width() / 2);
    }
    expect_left_to_right(tab.get(), {"btn_search", "btn_view", "btn_add", "btn_delete", "btn_print"});
    EXPECT_EQ(child<QPushButton>(tab.get(), "btn_print")->geometry().right(), table->geometry().right());
    EXPECT_TRUE(table->hasMouseTracking());
    EXPECT_GT(child<QLabel>(tab.get(), "lbl_total")->mapTo(tab.get(), QPoint()).y(),
              table->geometry().bottom());
    expect_tab_order(tab.get(),
                     {"date_start", "date_end", "txt_sn", "txt_operater", "txt_writer", "txt_main_remark",
                      "btn_search", "btn_view", "btn_add", "btn_delete", "btn_print", "tablewidget"});
}

TEST_F(taking_tab, opens_with_the_first_page_of_20_since_new_year) {
    const QDate before = QDate::currentDate();
    open_with({"search"});
    const QDate after = QDate::currentDate();
    const auto* start = child<QDateEdit>(tab.get(), "date_start");
    const auto* end = child<QDateEdit>(tab.get(), "date_end");
    EXPECT_TRUE(end->date() == before || end->date() == after);
    EXPECT_EQ(start->date(), QDate(end->date().year(), 1, 1));
    EXPECT_TRUE(start->calendarPopup() && end->calendarPopup());
    EXPECT_EQ(end->text(), end->date().toString(Qt::ISODate)) << "whatever the locale";
    EXPECT_EQ(server.paths(), QList<QByteArray>{path("get_page")});
    const QDateTime first(start->date(), QTime(0, 0), Qt::UTC);
    const QDateTime last(end->date(), QTime(23, 59, 59), Qt::UTC);
    EXPECT_EQ(server.last().body, "&date_start=" + QByteArray::number(first.toSecsSinceEpoch()) +
                                      "&date_end=" + QByteArray::number(last.toSecsSinceEpoch()) +
                                      "&page_num=1&page_size=20");
    expect_cells(table, 1,
                 {"2", "P-2", "o-2", "员工2", "w-2", "用户2", "-2", "-2.25", "附注2", "2020-04-12 12:58"});
    for (int i = 0; i < 10; ++i)
        EXPECT_EQ(table->isColumnHidden(i), i == 0 || i == 2 || i == 4) << i;
}

TEST_F(taking_tab, search_sends_trimmed_words_behind_an_ampersand) {
    open();
    QSignalSpy spy(tab.get(), &tab_stock_taking::signal_send_args);
    EXPECT_EQ(search(), searched("")) << "both dates go out always";
    field("txt_sn")->setText(u(" P&1\t"));
    field("txt_main_remark")->setText(u("  备 注 "));
    EXPECT_EQ(search(), searched("&sn=P&1&remark=备 注"));
    field("txt_sn")->setText(u("   "));
    EXPECT_EQ(search(), searched("&remark=备 注"));
    ASSERT_EQ(spy.size(), 3);
    EXPECT_EQ(spy[2].first().toString(), u("&date_start=1577836800&date_end=1609459199&remark=备 注"));
    tab->slot_stock_taking_get_list();
    EXPECT_EQ(searches().last(), searched("&remark=备 注"));
}

TEST_F(taking_tab, a_start_after_the_end_is_sent_as_it_is_and_days_are_local) {
    const scoped_time_zone elsewhere{"Asia/Shanghai"};
    open();
    child<QDateEdit>(tab.get(), "date_start")->setDate(QDate(2021, 1, 1));
    EXPECT_EQ(search(), searched("").replace("1577836800", "1609430400").replace("1609459199", "1609430399"));
}

TEST_F(taking_tab, page_turns_keep_the_search) {
    open();
    server.always(path("get_page"), page_body({taking(1)}, 3));
    field("txt_sn")->setText(u("x"));
    search();
    field("txt_sn")->setText(u("not searched for"));
    QTest::mousePress(child<QLabel>(tab.get(), "lbl_next"), Qt::LeftButton);
    EXPECT_EQ(searches().last(), searched("&sn=x").replace("page_num=1", "page_num=2"));
}

TEST_F(taking_tab, return_and_enter_search_and_every_other_key_is_swallowed) {
    open();
    int expected = 0;
    for (Qt::Key key : {Qt::Key_Return, Qt::Key_Enter})
        for (const char* name : {"txt_sn", "txt_writer", "date_start", "tablewidget"}) {
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

TEST_F(taking_tab, a_failed_search_empties_the_list_without_a_word) {
    for (const scripted_answer& failure :
         {scripted_answer(""), scripted_answer("7"), scripted_answer("[]"), scripted_answer::dropped()}) {
        open();
        server.always(path("get_page"), failure);
        click(tab.get(), "btn_search");
        EXPECT_EQ(table->rowCount(), 0);
        EXPECT_EQ(child<QLabel>(tab.get(), "lbl_total")->text(), u("共0页/0条记录"));
        EXPECT_TRUE(shown_tip().isEmpty());
        EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    }
}

TEST_F(taking_tab, employee_and_user_are_picked_under_the_title_of_the_employee) {
    open();
    press("txt_operater", [](QWidget* picker) {
        EXPECT_STREQ(picker->metaObject()->className(), "dlg_search_emp");
        EXPECT_EQ(picker->windowTitle(), u("查询选择经办人"));
        double_click_first(picker);
    });
    press("txt_writer", [](QWidget* picker) {
        EXPECT_STREQ(picker->metaObject()->className(), "dlg_search_user");
        EXPECT_EQ(picker->windowTitle(), u("查询选择经办人")) << "the title of the other picker";
        double_click_first(picker);
    });
    EXPECT_EQ(field("txt_operater")->text(), u("顾员"));
    EXPECT_EQ(field("txt_writer")->text(), u("姜用")) << "the person's name";
    EXPECT_TRUE(searches().isEmpty()) << "the choice alone searches nothing";
    field("txt_sn")->setText(u("s"));
    field("txt_main_remark")->setText(u("r"));
    EXPECT_EQ(search(), searched("&operater=41&writer=51&sn=s&remark=r"));
    for (const char* name : {"txt_operater", "txt_writer"})
        press(name, [](QWidget* picker) { click(picker, "btn_close"); });
    EXPECT_EQ(search(), searched("&operater=41&writer=51&sn=s&remark=r")) << "leaving keeps the choice";
    press("txt_operater", [](QWidget* picker) { click(picker, "btn_all"); });
    EXPECT_EQ(field("txt_operater")->text(), u("【全部】"));
    EXPECT_EQ(search(), searched("&writer=51&sn=s&remark=r"));
    press("txt_writer", [](QWidget* picker) { click(picker, "btn_all"); });
    EXPECT_EQ(field("txt_writer")->text(), u("【全部】"));
    EXPECT_EQ(search(), searched("&sn=s&remark=r"));
}

TEST_F(taking_tab, what_has_no_name_is_no_restriction_whatever_its_id) {
    open();
    struct_emp operater;
    operater.id = u("3");
    tab->slot_emp_selected(operater);
    struct_user writer;
    writer.id = u("4");
    writer.username = u("login");
    tab->slot_writer_selected(writer);
    EXPECT_EQ(field("txt_operater")->text(), u("【全部】"));
    EXPECT_EQ(field("txt_writer")->text(), u("【全部】"));
    EXPECT_EQ(search(), searched(""));
}

TEST_F(taking_tab, a_left_press_alone_picks_and_on_two_fields_alone) {
    open();
    for (const char* name : {"txt_operater", "txt_writer"}) {
        press_in_vain(name, Qt::RightButton);
        press_in_vain(name, Qt::MiddleButton);
        QTest::keyClicks(field(name), u("typed"));
        EXPECT_TRUE(field(name)->text().isEmpty()) << name;
    }
    press_in_vain("txt_sn");
    press_in_vain("txt_main_remark");
    EXPECT_TRUE(server.requests().isEmpty());
}

TEST_F(taking_tab, the_filter_of_the_fields_is_taken_off_and_put_on) {
    open();
    tab->slot_text_filter(false);
    press_in_vain("txt_operater");
    press_in_vain("txt_writer");
    EXPECT_TRUE(server.requests().isEmpty());
    tab->slot_text_filter(true);
    press("txt_operater", [](QWidget* picker) { picker->close(); });
    emit tab->signal_enable_search(false);
    tab->setEnabled(true);
    press_in_vain("txt_operater");
}

TEST_F(taking_tab, context_menu) {
    open();
    EXPECT_EQ(menu_texts(table), (QStringList{u("查询"), u("-"), u("查看"), u("-"), u("添加"), u("-"),
                                              u("删除"), u("-"), u("打印")}));
    expect_menu_at_pointer(table);
    action("查询")->trigger();
    EXPECT_EQ(server.paths(), QList<QByteArray>{path("get_page")});
    click_row(table, 0);
    for (const char* text : {"查看", "添加"})
        with_modal([&] { action(text)->trigger(); },
                   [&](QWidget* editor) {
                       EXPECT_EQ(editor->windowTitle(), u(text) + u("盘点"));
                       editor->close();
                   });
    with_question([this] { action("删除")->trigger(); }, u("确认删除"), u("确认删除吗？"), QMessageBox::No);
    with_modal_of<QPrintPreviewDialog>([this] { action("打印")->trigger(); },
                                       [](QPrintPreviewDialog* preview) { preview->close(); });
}

TEST_F(taking_tab, a_cell_shows_its_whole_text) {
    open();
    EXPECT_TRUE(table->item(1, 1)->toolTip().isEmpty());
    QMouseEvent move(QEvent::MouseMove, table->visualItemRect(table->item(1, 1)).center(), Qt::NoButton,
                     Qt::NoButton, Qt::NoModifier);
    QApplication::sendEvent(table->viewport(), &move);
    EXPECT_EQ(table->item(1, 1)->toolTip(), u("P-2"));
}

TEST_F(taking_tab, a_page_of_the_list_comes_out_on_paper) {
    open();
    search();
    const QTemporaryDir folder;
    const QString file = folder.filePath(QStringLiteral("list.pdf"));
    with_preview([this] { click(tab.get(), "btn_print"); },
                 [this](QPrintPreviewDialog* preview) {
                     EXPECT_TRUE(preview->isMaximized());
                     EXPECT_EQ(preview->parentWidget(), tab.get());
                     EXPECT_EQ(preview->printer()->pageLayout().pageSize().id(), QPageSize::A4);
                 },
                 file);
    tab->slot_print();
    QString expected = u("盘点记录单号经办人制单人盈亏数量盈亏金额备注时间");
    for (const char* n : {"1", "2", "3"})
        expected += u("P-%1员工%1用户%1-%1-%1.25附注%12020-04-1212:5").replace(u("%1"), u(n)) +
                    QString::number(6 + QByteArray(n).toInt());
    // The last character is the number of the page.
    EXPECT_EQ(paper_texts(file).join(QString()), expected + u("1"));
    EXPECT_EQ(searches().size(), 1) << "printing asks the service for nothing";
}

TEST_F(taking_tab, before_any_search_an_empty_text_is_printed) {
    open_with({"print"});
    EXPECT_TRUE(tab->findChild<paging*>()->html.isEmpty());
    EXPECT_TRUE(server.requests().isEmpty());
}

struct taking_rights_row {
    const char* what;
    std::vector<const char*> rights;
    bool search;
    bool add;
    bool view;
    bool remove;
    bool print;
};

class taking_rights : public taking_tab, public testing::WithParamInterface<taking_rights_row> {};

TEST_P(taking_rights, hide_buttons_and_grey_entries) {
    const auto& row = GetParam();
    open_with(row.rights);
    EXPECT_EQ(server.requests().size(), row.search ? 1 : 0);
    EXPECT_EQ(table->rowCount(), row.search ? 3 : 0);
    EXPECT_EQ(tab->isEnabled(), row.search);
    expect_right("btn_view", "查看", row.view);
    expect_right("btn_add", "添加", row.add);
    expect_right("btn_delete", "删除", row.remove);
    expect_right("btn_print", "打印", row.print);
    EXPECT_EQ(child<QPushButton>(tab.get(), "btn_search")->isVisible(), row.search);
    EXPECT_TRUE(action("查询")->isEnabled()) << "this entry follows no right";
}

INSTANTIATE_TEST_SUITE_P(
    rows, taking_rights,
    testing::Values(taking_rights_row{"nothing", {}, false, false, false, false, false},
                    taking_rights_row{
                        "all", {"print", "delete", "view", "add", "search"}, true, true, true, true, true},
                    taking_rights_row{"search", {"search"}, true, false, false, false, false},
                    taking_rights_row{"add", {"add", "detail_add"}, false, true, false, false, false},
                    taking_rights_row{"view", {"search", "view"}, true, false, true, false, false},
                    taking_rights_row{"remove", {"search", "delete"}, true, false, false, true, false},
                    taking_rights_row{"print", {"print"}, false, false, false, false, true},
                    taking_rights_row{"others",
                                      {"edit", "audit", "detail_print", "Search", "views"},
                                      false,
                                      false,
                                      false,
                                      false,
                                      false}),
    [](const auto& p) { return std::string(p.param.what); });
