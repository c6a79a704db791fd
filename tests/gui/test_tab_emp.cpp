#include <QMouseEvent>
#include <QSignalSpy>
#include <QTest>

#include "gui/tab_emp_fixture.h"

TEST_F(emp_tab, widgets) {
    open();
    EXPECT_EQ(tab->size(), QSize(1300, 500));
    const struct {
        const char* field;
        const char* text;
    } fields[] = {
        {"txt_name", "姓名"}, {"txt_idnum", "身份证"}, {"txt_jobnum", "工号"}, {"txt_mobile", "手机"}};
    for (const auto& f : fields) {
        EXPECT_TRUE(field(f.field)->isClearButtonEnabled());
        expect_label_of(tab.get(), f.field, f.text);
    }
    const struct {
        const char* name;
        const char* text;
    } buttons[] = {{"btn_search", "查询"}, {"btn_add", "添加"}, {"btn_edit", "编辑"}, {"btn_delete", "删除"}};
    for (const auto& b : buttons)
        EXPECT_EQ(child<QPushButton>(tab.get(), b.name)->text(), QString::fromUtf8(b.text));
    expect_left_to_right(tab.get(), {"txt_name", "txt_idnum", "txt_jobnum", "txt_mobile", "btn_search",
                                     "btn_add", "btn_edit", "btn_delete"});
    EXPECT_GT(child<QLabel>(tab.get(), "lbl_total")->mapTo(tab.get(), QPoint()).y(),
              table->geometry().bottom());
    expect_tab_order(tab.get(), {"txt_name", "txt_idnum", "txt_jobnum", "txt_mobile", "btn_search", "btn_add",
                                 "btn_edit", "btn_delete", "tablewidget"});
}

TEST_F(emp_tab, search_sends_filled_fields_in_order) {
    open();
    QSignalSpy sent(tab.get(), &tab_emp::signal_send_args);
    click(tab.get(), "btn_search");
    EXPECT_EQ(server.last().body, "&page_num=1&page_size=20");
    for (const char* name : {"txt_name", "txt_idnum", "txt_jobnum", "txt_mobile"})
        field(name)->setText(QStringLiteral("\t") + QLatin1String(name + 4) + QStringLiteral("  "));
    click(tab.get(), "btn_search");
    EXPECT_EQ(server.last().body,
              "name=name&idnum=idnum&jobnum=jobnum&mobile=mobile&page_num=1&page_size=20");
    field("txt_name")->setText(QStringLiteral("  "));
    click(tab.get(), "btn_search");
    EXPECT_EQ(server.last().body, "&idnum=idnum&jobnum=jobnum&mobile=mobile&page_num=1&page_size=20");
    ASSERT_EQ(sent.size(), 3);
    EXPECT_EQ(sent[2].first().toString(), QStringLiteral("&idnum=idnum&jobnum=jobnum&mobile=mobile"));
    EXPECT_EQ(server.paths(),
              QList<QByteArray>({"wms_emp/get_page", "wms_emp/get_page", "wms_emp/get_page"}));
}

TEST_F(emp_tab, page_turns_keep_the_search) {
    open();
    server.always("wms_emp/get_page", page_of({1, 2, 3}, 3));
    field("txt_jobnum")->setText(QStringLiteral("7"));
    click(tab.get(), "btn_search");
    field("txt_jobnum")->setText(QStringLiteral("not searched for"));
    QTest::mousePress(child<QLabel>(tab.get(), "lbl_next"), Qt::LeftButton);
    EXPECT_EQ(server.last().body, "&jobnum=7&page_num=2&page_size=20");
}

TEST_F(emp_tab, return_and_enter_search_and_every_other_key_is_swallowed) {
    open();
    int expected = 0;
    for (Qt::Key key : {Qt::Key_Return, Qt::Key_Enter})
        for (const char* name : {"txt_name", "txt_mobile", "tablewidget"}) {
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

TEST_F(emp_tab, context_menu) {
    open();
    EXPECT_EQ(
        menu_texts(table),
        QStringList({QStringLiteral("查询"), QStringLiteral("-"), QStringLiteral("添加"), QStringLiteral("-"),
                     QStringLiteral("编辑"), QStringLiteral("-"), QStringLiteral("删除")}));
    expect_menu_at_pointer(table);
    action("查询")->trigger();
    EXPECT_EQ(server.paths(), QList<QByteArray>({"wms_emp/get_page"}));
    for (const char* text : {"添加", "编辑"}) {
        click_row(table, 0);
        with_modal_of<dlg_emp_add>([&] { action(text)->trigger(); },
                                   [&](dlg_emp_add* d) {
                                       EXPECT_EQ(d->windowTitle(),
                                                 QString::fromUtf8(text) + QStringLiteral("员工"));
                                       d->close();
                                   });
    }
    with_question([this] { action("删除")->trigger(); }, QStringLiteral("确认删除"),
                  QStringLiteral("确认删除吗？"), QMessageBox::No);
    EXPECT_EQ(server.requests().size(), 1);
}

TEST_F(emp_tab, a_cell_under_the_pointer_shows_its_text) {
    open();
    EXPECT_TRUE(table->item(1, 5)->toolTip().isEmpty());
    EXPECT_TRUE(table->viewport()->hasMouseTracking()) << "or the cells would hear of pressed moves alone";
    // Straight to the list, whatever lies over it on the screen.
    QMouseEvent move(QEvent::MouseMove, table->visualItemRect(table->item(1, 5)).center(), Qt::NoButton,
                     Qt::NoButton, Qt::NoModifier);
    QApplication::sendEvent(table->viewport(), &move);
    EXPECT_EQ(table->item(1, 5)->toolTip(), QStringLiteral("address2"));
    EXPECT_TRUE(table->item(2, 5)->toolTip().isEmpty());
}

struct emp_rights_row {
    const char* what;
    std::vector<const char*> granted;
    bool search;
    bool add;
    bool edit;
    bool remove;
};
class emp_rights : public emp_tab, public testing::WithParamInterface<emp_rights_row> {};

TEST_P(emp_rights, hide_buttons_and_grey_entries) {
    const auto& row = GetParam();
    open_with(row.granted);
    EXPECT_EQ(server.requests().size(), row.search ? 1 : 0);
    EXPECT_EQ(tab->isEnabled(), row.search);
    EXPECT_NE(child<QPushButton>(tab.get(), "btn_search")->isHidden(), row.search);
    EXPECT_TRUE(action("查询")->isEnabled()) << "goes grey with nothing of its own";
    expect_right("btn_add", "添加", row.add);
    expect_right("btn_edit", "编辑", row.edit);
    expect_right("btn_delete", "删除", row.remove);
}

INSTANTIATE_TEST_SUITE_P(
    rights, emp_rights,
    testing::Values(emp_rights_row{"none", {}, false, false, false, false},
                    emp_rights_row{"all", {"search", "add", "edit", "delete"}, true, true, true, true},
                    emp_rights_row{"search_alone", {"search"}, true, false, false, false},
                    emp_rights_row{"add_without_search", {"add"}, false, true, false, false},
                    emp_rights_row{"edit_and_search", {"edit", "search"}, true, false, true, false},
                    emp_rights_row{
                        "delete_and_view", {"search", "delete", "view"}, true, false, false, true}),
    [](const auto& p) { return std::string(p.param.what); });

TEST_F(emp_tab, rights_of_another_page_do_not_count) {
    grant("warehouse", {"search", "add", "edit", "delete"});
    open_with({});
    EXPECT_FALSE(tab->isEnabled());
    EXPECT_TRUE(server.requests().isEmpty());
    EXPECT_TRUE(g_http.rights.contains(QStringLiteral("emp"))) << "an absent key reads as an empty list";
}
