#include <QSignalSpy>

#include "documents/pickers.h"
#include "gui/document_tab_fixture.h"
#include "support/tree.h"
#include "widgets/paging.h"

INSTANTIATE_TEST_SUITE_P(inbound, any_document_tab, testing::ValuesIn(inbound_rows),
                         [](const auto& p) { return p.param.word(); });
INSTANTIATE_TEST_SUITE_P(outbound, any_document_tab, testing::ValuesIn(outbound_rows),
                         [](const auto& p) { return p.param.word(); });

TEST_P(any_document_tab, widgets) {
    open();
    EXPECT_EQ(tab->size(), QSize(kind->inbound ? 1361 : 1300, 500));
    const bool in = kind->inbound;
    const struct {
        const char* label;
        const char* field;
        const char* text;
        bool picked;
    } fields[] = {{in ? "label_6" : "label_3", "txt_sn", "单号", false},
                  {in ? "label_4" : "label_5", "txt_operater", "经办人", true},
                  {in ? "label_5" : "label_6", "txt_writer", "制单人", true},
                  {in ? "label_10" : "label_7", remark_field(), "备注", false}};
    for (const auto& f : fields) {
        EXPECT_EQ(child<QLabel>(tab.get(), f.label)->text(), u(f.text));
        expect_label_of(tab.get(), f.field, f.text);
        EXPECT_EQ(field(f.field)->isReadOnly(), f.picked) << f.field;
        EXPECT_EQ(field(f.field)->isClearButtonEnabled(), !f.picked) << f.field;
        EXPECT_EQ(field(f.field)->placeholderText(), f.picked ? u("点击选择") : QString());
    }
    EXPECT_EQ(child<QLabel>(tab.get(), "label")->text(), u("日期从"));
    EXPECT_EQ(child<QLabel>(tab.get(), "label_2")->text(), u("到"));
    expect_left_to_right(
        tab.get(), {"label", "date_start", "label_2", "date_end", fields[0].label, "txt_sn", fields[1].label,
                    "txt_operater", fields[2].label, "txt_writer", fields[3].label, remark_field()});
    EXPECT_TRUE(table->hasMouseTracking());
    EXPECT_GT(child<QLabel>(tab.get(), "lbl_total")->mapTo(tab.get(), QPoint()).y(),
              table->geometry().bottom());
}

TEST_P(any_document_tab, a_row_of_buttons_on_the_right_below_the_fields) {
    open();
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
    }
    expect_left_to_right(tab.get(), {"btn_search", "btn_view", "btn_add", "btn_delete", "btn_print"});
    EXPECT_EQ(child<QPushButton>(tab.get(), "btn_print")->geometry().right(), table->geometry().right());
    EXPECT_GT(child<QPushButton>(tab.get(), "btn_search")->x(), tab->width() / 2);
}

TEST_P(any_document_tab, tab_goes_along_the_fields_and_the_buttons) {
    open();
    expect_tab_order(tab.get(), {"date_start", "date_end", "txt_sn", "txt_company", "txt_dept",
                                 "txt_operater", "txt_writer", remark_field(), "btn_search", "btn_view",
                                 "btn_add", "btn_delete", "btn_print", "tablewidget"});
}

TEST_P(any_document_tab, shows_the_partner_of_the_kind_alone) {
    open();
    for (const char* partner : {"company", "dept"}) {
        auto* label = child<QLabel>(tab.get(), (QByteArray("label_") + partner).constData());
        auto* edit = field((QByteArray("txt_") + partner).constData());
        EXPECT_EQ(label->isVisible(), kind->has(partner)) << partner;
        EXPECT_EQ(edit->isVisible(), kind->has(partner)) << partner;
        EXPECT_TRUE(edit->isReadOnly());
        EXPECT_FALSE(edit->isClearButtonEnabled());
        if (!kind->has(partner)) {
            EXPECT_EQ(label->text(), partner == std::string("dept") ? u("部门") : u("单位"));
            continue;
        }
        EXPECT_EQ(label->text(), u(kind->label));
        EXPECT_EQ(edit->placeholderText(), u("点击选择"));
        expect_label_of(tab.get(), edit->objectName().toLatin1().constData(), kind->label);
        EXPECT_GT(label->x(), field("txt_sn")->x());
        EXPECT_LT(edit->x(), field("txt_operater")->x());
    }
}

TEST_P(any_document_tab, dates_reach_from_new_year_to_today) {
    const QDate before = QDate::currentDate();
    open_with(GetParam(), {"search"});
    const QDate after = QDate::currentDate();
    const auto* start = child<QDateEdit>(tab.get(), "date_start");
    const auto* end = child<QDateEdit>(tab.get(), "date_end");
    EXPECT_TRUE(end->date() == before || end->date() == after);
    EXPECT_EQ(start->date(), QDate(end->date().year(), 1, 1));
    EXPECT_EQ(end->text(), end->date().toString(Qt::ISODate)) << "whatever the locale";
    EXPECT_TRUE(start->calendarPopup() && end->calendarPopup());
}

TEST_P(any_document_tab, opens_with_the_first_page_of_20_of_its_kind_and_nothing_else_to_search_for) {
    open_with(GetParam(), {"search"});
    EXPECT_EQ(server.paths(), QList<QByteArray>{path("get_page")});
    const QDate start = child<QDateEdit>(tab.get(), "date_start")->date();
    const QDate end = child<QDateEdit>(tab.get(), "date_end")->date();
    const qint64 first = QDateTime(start, QTime(0, 0), Qt::UTC).toSecsSinceEpoch();
    const qint64 last = QDateTime(end, QTime(23, 59, 59), Qt::UTC).toSecsSinceEpoch();
    QByteArray expected = searched("");
    expected.replace("1577836800", QByteArray::number(first));
    expected.replace("1609459199", QByteArray::number(last));
    EXPECT_EQ(server.last().body, expected);
    EXPECT_EQ(names(table), (QStringList{u("N-1"), u("N-2"), u("N-3")}));
}

TEST_P(any_document_tab, search_sends_trimmed_words) {
    open();
    QSignalSpy spy(tab.get(), SIGNAL(signal_send_args(QString)));
    EXPECT_EQ(search(), searched("")) << "both dates and the kind go out always";
    field("txt_sn")->setText(u(" RK&1\t"));
    field(remark_field())->setText(u("  备 注 "));
    EXPECT_EQ(search(), searched("&sn=RK&1&remark=备 注"));
    field("txt_sn")->setText(u("   "));
    EXPECT_EQ(search(), searched("&remark=备 注"));
    ASSERT_EQ(spy.size(), 3);
    EXPECT_EQ(spy[2].first().toString().toUtf8() + "&page_num=1&page_size=20", searched("&remark=备 注"));
}

TEST_P(any_document_tab, a_start_after_the_end_is_sent_as_it_is) {
    open();
    child<QDateEdit>(tab.get(), "date_start")->setDate(QDate(2021, 1, 1));
    EXPECT_EQ(search(), searched("").replace("1577836800", "1609459200"));
}

TEST_P(any_document_tab, days_are_local) {
    const scoped_time_zone elsewhere{"Asia/Shanghai"};
    open();
    EXPECT_EQ(search(), searched("").replace("1577836800", "1577808000").replace("1609459199", "1609430399"));
}

TEST_P(any_document_tab, page_turns_keep_the_search) {
    open();
    server.always(path("get_page"), page_body({document(1)}, 3));
    field("txt_sn")->setText(u("x"));
    search();
    field("txt_sn")->setText(u("not searched for"));
    QTest::mousePress(child<QLabel>(tab.get(), "lbl_next"), Qt::LeftButton);
    EXPECT_EQ(searches().last(), searched("&sn=x").replace("page_num=1", "page_num=2"));
}

TEST_P(any_document_tab, return_and_enter_search_and_every_other_key_is_swallowed) {
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

TEST_P(any_document_tab, a_failed_search_empties_the_list_without_a_word) {
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

TEST_P(any_document_tab, the_partner_is_picked_under_the_title_of_the_kind) {
    open();
    if (kind->has("company")) {
        press("txt_company", [this](QWidget* picker) {
            EXPECT_NE(qobject_cast<dlg_search_company*>(picker), nullptr);
            EXPECT_EQ(picker->windowTitle(), u(kind->picker_title));
            EXPECT_EQ(server.last().body,
                      "type=" + QByteArray::number(kind->company_type) + "&page_num=1&page_size=10");
            EXPECT_TRUE(child<QPushButton>(picker, "btn_all")->isVisible());
            double_click_first(picker);
        });
        EXPECT_EQ(field("txt_company")->text(), u("甲行"));
        EXPECT_TRUE(searches().isEmpty()) << "the choice alone searches nothing";
        EXPECT_EQ(search(), searched("&company=31"));
        press("txt_company", [](QWidget* picker) { click(picker, "btn_all"); });
        EXPECT_EQ(field("txt_company")->text(), u("【全部】"));
        EXPECT_EQ(search(), searched(""));
    }
    if (kind->has("dept")) {
        press("txt_dept", [this](QWidget* picker) {
            EXPECT_NE(qobject_cast<dlg_dept*>(picker), nullptr);
            EXPECT_EQ(picker->windowTitle(), u(kind->picker_title));
            double_click_node(child<QTreeView>(picker, "treeview"), u("一部"));
        });
        EXPECT_EQ(field("txt_dept")->text(), u("一部"));
        EXPECT_TRUE(searches().isEmpty());
        EXPECT_EQ(search(), searched(kind->inbound ? "&dept=61" : ""));
    }
}

TEST_P(any_document_tab, employee_and_user_are_picked_and_searched_for) {
    open();
    press("txt_operater", [](QWidget* picker) {
        EXPECT_NE(qobject_cast<dlg_search_emp*>(picker), nullptr);
        EXPECT_EQ(picker->windowTitle(), u("查询选择经办人"));
        double_click_first(picker);
    });
    press("txt_writer", [](QWidget* picker) {
        EXPECT_NE(qobject_cast<dlg_search_user*>(picker), nullptr);
        EXPECT_EQ(picker->windowTitle(), u("查询选择制单人"));
        double_click_first(picker);
    });
    EXPECT_EQ(field("txt_operater")->text(), u("顾员"));
    EXPECT_EQ(field("txt_writer")->text(), u("姜用")) << "the person's name";
    EXPECT_TRUE(searches().isEmpty()) << "the choice alone searches nothing";
    field("txt_sn")->setText(u("s"));
    field(remark_field())->setText(u("r"));
    EXPECT_EQ(search(), searched("&sn=s&operater=41&writer=51&remark=r"));
    for (const char* name : {"txt_operater", "txt_writer"}) {
        press(name, [](QWidget* picker) { click(picker, "btn_close"); });
        EXPECT_NE(field(name)->text(), u("【全部】")) << "leaving the picker keeps the choice";
    }
    EXPECT_EQ(search(), searched("&sn=s&operater=41&writer=51&remark=r"));
    for (const char* name : {"txt_operater", "txt_writer"}) {
        press(name, [](QWidget* picker) { click(picker, "btn_all"); });
        EXPECT_EQ(field(name)->text(), u("【全部】"));
    }
    EXPECT_EQ(search(), searched("&sn=s&remark=r"));
}

TEST_P(any_document_tab, a_left_press_alone_picks_and_on_four_fields_alone) {
    open();
    for (const char* name : {"txt_company", "txt_dept", "txt_operater", "txt_writer"}) {
        for (Qt::MouseButton button : {Qt::RightButton, Qt::MiddleButton}) {
            QMouseEvent press(QEvent::MouseButtonPress, QPointF(3, 3), button, button, Qt::NoModifier);
            QApplication::sendEvent(field(name), &press);
        }
        QTest::keyClicks(field(name), u("typed"));
        EXPECT_TRUE(field(name)->text().isEmpty()) << name;
    }
    QTest::mousePress(field("txt_sn"), Qt::LeftButton);
    QTest::mousePress(field(remark_field()), Qt::LeftButton);
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    EXPECT_TRUE(server.requests().isEmpty());
}

TEST_P(any_document_tab, the_filter_of_the_fields_is_taken_off_and_put_on) {
    open();
    QMetaObject::invokeMethod(tab.get(), "slot_text_filter", Q_ARG(bool, false));
    for (const char* name : {"txt_company", "txt_dept", "txt_operater", "txt_writer"}) {
        QMouseEvent press(QEvent::MouseButtonPress, QPointF(3, 3), Qt::LeftButton, Qt::LeftButton,
                          Qt::NoModifier);
        QApplication::sendEvent(field(name), &press);
        EXPECT_EQ(QApplication::activeModalWidget(), nullptr) << name;
    }
    EXPECT_TRUE(server.requests().isEmpty());
    QMetaObject::invokeMethod(tab.get(), "slot_text_filter", Q_ARG(bool, true));
    press("txt_operater", [](QWidget* picker) { picker->close(); });
    QMetaObject::invokeMethod(tab.get(), "signal_enable_search", Q_ARG(bool, false));
    tab->setEnabled(true);
    QMouseEvent press_again(QEvent::MouseButtonPress, QPointF(3, 3), Qt::LeftButton, Qt::LeftButton,
                            Qt::NoModifier);
    QApplication::sendEvent(field("txt_operater"), &press_again);
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
}

TEST_P(any_document_tab, context_menu) {
    open();
    EXPECT_EQ(menu_texts(table), (QStringList{u("查询"), u("-"), u("查看"), u("-"), u("添加"), u("-"),
                                              u("删除"), u("-"), u("打印")}));
    expect_menu_at_pointer(table);
    action("查询")->trigger();
    EXPECT_EQ(server.paths(), QList<QByteArray>{path("get_page")});
    click_row(table, 0);
    for (const char* text : {"查看", "添加"})
        with_editor([&] { action(text)->trigger(); },
                    [&](QWidget* editor) { EXPECT_EQ(editor->windowTitle(), u(text) + u(kind->name)); });
    with_question([this] { action("删除")->trigger(); }, QStringLiteral("确认删除"),
                  QStringLiteral("确认删除吗？"), QMessageBox::No);
    with_modal([this] { action("打印")->trigger(); },
               [](QWidget* preview) {
                   EXPECT_TRUE(preview->inherits("QPrintPreviewDialog"));
                   preview->close();
               });
}

TEST_P(any_document_tab, a_cell_shows_its_whole_text) {
    open();
    EXPECT_TRUE(table->item(1, 1)->toolTip().isEmpty());
    QMouseEvent move(QEvent::MouseMove, table->visualItemRect(table->item(1, 1)).center(), Qt::NoButton,
                     Qt::NoButton, Qt::NoModifier);
    QApplication::sendEvent(table->viewport(), &move);
    EXPECT_EQ(table->item(1, 1)->toolTip(), u("N-2"));
    emit table->itemEntered(table->item(2, 10));
    EXPECT_EQ(table->item(2, 10)->toolTip(), u("2020-04-12 12:59"));
}

struct document_rights_row {
    const char* what;
    std::vector<const char*> rights;
    bool search;
    bool add;
    bool view;
    bool remove;
    bool print;
};

class document_rights_test : public document_tab,
                             public testing::WithParamInterface<std::tuple<known_kind, document_rights_row>> {
};

TEST_P(document_rights_test, hide_buttons_and_grey_entries) {
    const auto& row = std::get<1>(GetParam());
    open_with(std::get<0>(GetParam()), row.rights);
    EXPECT_EQ(searches().size(), row.search ? 1 : 0);
    EXPECT_EQ(server.requests().size(), row.search ? 1 : 0);
    EXPECT_EQ(table->rowCount(), row.search ? 3 : 0);
    EXPECT_EQ(tab->isEnabled(), row.search);
    const struct {
        const char* button;
        const char* entry;
        bool granted;
    } controls[] = {{"btn_view", "查看", row.view},
                    {"btn_add", "添加", row.add},
                    {"btn_delete", "删除", row.remove},
                    {"btn_print", "打印", row.print}};
    for (const auto& c : controls) {
        EXPECT_EQ(child<QPushButton>(tab.get(), c.button)->isVisible(), c.granted) << c.button;
        EXPECT_EQ(action(c.entry)->isEnabled(), c.granted) << c.entry;
    }
    EXPECT_EQ(child<QPushButton>(tab.get(), "btn_search")->isVisible(), row.search);
    EXPECT_EQ(action("查询")->isEnabled(), kind->inbound || row.search)
        << "only the outbound list greys this entry";
}

INSTANTIATE_TEST_SUITE_P(
    rights, document_rights_test,
    testing::Combine(
        testing::Values(inbound_rows[0], inbound_rows[6], outbound_rows[2], outbound_rows[3]),
        testing::Values(
            document_rights_row{"nothing", {}, false, false, false, false, false},
            document_rights_row{
                "all", {"print", "delete", "view", "add", "search"}, true, true, true, true, true},
            document_rights_row{"search", {"search"}, true, false, false, false, false},
            document_rights_row{"add", {"add", "detail_add"}, false, true, false, false, false},
            document_rights_row{"view", {"search", "view"}, true, false, true, false, false},
            document_rights_row{"delete", {"search", "delete"}, true, false, false, true, false},
            document_rights_row{"print", {"print"}, false, false, false, false, true},
            document_rights_row{
                "others", {"edit", "detail_print", "Search", "views"}, false, false, false, false, false})),
    [](const auto& p) { return std::get<0>(p.param).word() + "_" + std::get<1>(p.param).what; });

TEST_F(document_tab, rights_of_another_kind_are_none) {
    grant("instore_production", {"search", "add"});
    open_with(inbound_rows[0], {});
    EXPECT_FALSE(tab->isEnabled());
    EXPECT_TRUE(server.requests().isEmpty());
}
