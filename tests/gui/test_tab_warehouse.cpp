#include <QSignalSpy>
#include <QTest>

#include "gui/tab_warehouse_fixture.h"

class warehouse_keeper : public warehouse_tab {
protected:
    /** Presses the keeper and does something in the picker that comes. */
    void press(const std::function<void(dlg_search_emp*)>& act) {
        with_modal_of<dlg_search_emp>([this] { QTest::mousePress(field("txt_keeper"), Qt::LeftButton); },
                                      act);
    }
};

TEST_F(warehouse_tab, widgets) {
    open();
    EXPECT_EQ(tab->size(), QSize(1300, 500));
    const struct {
        const char* label;
        const char* field;
        const char* text;
        bool can_be_cleared;
    } fields[] = {{"label", "txt_name", "名称", true},
                  {"label_2", "txt_phone", "电话", true},
                  {"label_3", "txt_keeper", "仓管员", false},
                  {"label_4", "txt_mobile", "手机", true}};
    for (const auto& f : fields) {
        EXPECT_EQ(child<QLabel>(tab.get(), f.label)->text(), QString::fromUtf8(f.text));
        expect_label_of(tab.get(), f.field, f.text);
        EXPECT_EQ(field(f.field)->isClearButtonEnabled(), f.can_be_cleared) << f.field;
        EXPECT_EQ(field(f.field)->isReadOnly(), !f.can_be_cleared);
    }
    EXPECT_EQ(field("txt_keeper")->placeholderText(), QStringLiteral("点击选择"));
    const struct {
        const char* name;
        const char* text;
    } buttons[] = {{"btn_search", "查询"}, {"btn_add", "添加"}, {"btn_edit", "编辑"}, {"btn_delete", "删除"}};
    for (const auto& b : buttons)
        EXPECT_EQ(child<QPushButton>(tab.get(), b.name)->text(), QString::fromUtf8(b.text));
    expect_left_to_right(tab.get(),
                         {"label", "txt_name", "label_2", "txt_phone", "label_3", "txt_keeper", "label_4",
                          "txt_mobile", "btn_search", "btn_add", "btn_edit", "btn_delete"});
    EXPECT_GT(child<QLabel>(tab.get(), "lbl_total")->mapTo(tab.get(), QPoint()).y(),
              table->geometry().bottom());
    expect_tab_order(tab.get(), {"txt_name", "txt_phone", "txt_keeper", "txt_mobile", "btn_search", "btn_add",
                                 "btn_edit", "btn_delete", "tablewidget"});
}

TEST_F(warehouse_tab, search_sends_filled_fields_in_order) {
    open();
    QSignalSpy sent(tab.get(), &tab_warehouse::signal_send_args);
    click(tab.get(), "btn_search");
    EXPECT_EQ(server.last().path, "wms_warehouse/get_page");
    EXPECT_EQ(server.last().body, "&page_num=1&page_size=20");
    for (const char* name : {"txt_name", "txt_phone", "txt_mobile"})
        field(name)->setText(QStringLiteral("\t") + QLatin1String(name + 4) + QStringLiteral("  "));
    click(tab.get(), "btn_search");
    EXPECT_EQ(server.last().body, "name=name&phone=phone&mobile=mobile&page_num=1&page_size=20");
    field("txt_name")->clear();
    click(tab.get(), "btn_search");
    EXPECT_EQ(server.last().body, "&phone=phone&mobile=mobile&page_num=1&page_size=20");
    ASSERT_EQ(sent.size(), 3);
    EXPECT_EQ(sent[2].first().toString(), QStringLiteral("&phone=phone&mobile=mobile"));
}

TEST_F(warehouse_tab, return_and_enter_search_and_every_other_key_is_swallowed) {
    open();
    int expected = 0;
    for (Qt::Key key : {Qt::Key_Return, Qt::Key_Enter})
        for (const char* name : {"txt_name", "txt_keeper", "tablewidget"}) {
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

TEST_F(warehouse_tab, context_menu) {
    open();
    EXPECT_EQ(
        menu_texts(table),
        QStringList({QStringLiteral("查询"), QStringLiteral("-"), QStringLiteral("添加"), QStringLiteral("-"),
                     QStringLiteral("编辑"), QStringLiteral("-"), QStringLiteral("删除")}));
    expect_menu_at_pointer(table);
    action("查询")->trigger();
    EXPECT_EQ(server.paths(), QList<QByteArray>({"wms_warehouse/get_page"}));
    for (const char* text : {"添加", "编辑"}) {
        click_row(table, 0);
        with_modal_of<dlg_warehouse_add>([&] { action(text)->trigger(); },
                                         [&](dlg_warehouse_add* d) {
                                             EXPECT_EQ(d->windowTitle(),
                                                       QString::fromUtf8(text) + QStringLiteral("仓库"));
                                             d->close();
                                         });
    }
    with_question([this] { action("删除")->trigger(); }, QStringLiteral("确认删除"),
                  QStringLiteral("确认删除吗？"), QMessageBox::No);
    EXPECT_EQ(server.requests().size(), 1);
}

TEST_F(warehouse_keeper, a_left_press_picks_an_employee_to_search_for) {
    open();
    press([](dlg_search_emp* picker) {
        EXPECT_EQ(picker->windowTitle(), QStringLiteral("查询选择经办人")) << "not the keeper's own word";
        pick(picker, 0);
    });
    EXPECT_EQ(field("txt_keeper")->text(), QStringLiteral("员工65"));
    EXPECT_EQ(server.paths(), QList<QByteArray>({"wms_emp/get_page"})) << "the choice alone searches nothing";
    field("txt_name")->setText(QStringLiteral("n"));
    field("txt_mobile")->setText(QStringLiteral("m"));
    click(tab.get(), "btn_search");
    EXPECT_EQ(server.last().body, "name=n&keeper=65&mobile=m&page_num=1&page_size=20");
}

TEST_F(warehouse_keeper, the_button_of_the_picker_gives_a_character_to_search_for) {
    open();
    press([](dlg_search_emp* picker) {
        child<QTableWidget>(picker, "tablewidget")->setCurrentCell(0, 1);
        click(picker, "btn_choose");
    });
    EXPECT_EQ(field("txt_keeper")->text(), QStringLiteral("员工65"));
    click(tab.get(), "btn_search");
    EXPECT_EQ(server.last().body, "&keeper=A&page_num=1&page_size=20");
}

TEST_F(warehouse_keeper, all_lifts_the_restriction_and_close_keeps_it) {
    open();
    press([](dlg_search_emp* picker) { pick(picker, 0); });
    press([](dlg_search_emp* picker) { click(picker, "btn_close"); });
    click(tab.get(), "btn_search");
    EXPECT_EQ(server.last().body, "&keeper=65&page_num=1&page_size=20");
    press([](dlg_search_emp* picker) { click(picker, "btn_all"); });
    EXPECT_TRUE(field("txt_keeper")->text().isEmpty());
    click(tab.get(), "btn_search");
    EXPECT_EQ(server.last().body, "&page_num=1&page_size=20");
}

TEST_F(warehouse_keeper, other_buttons_of_the_mouse_pick_nobody) {
    open();
    for (Qt::MouseButton button : {Qt::RightButton, Qt::MiddleButton}) {
        QTest::mousePress(field("txt_keeper"), button);
        EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    }
    QTest::mousePress(field("txt_name"), Qt::LeftButton);
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    EXPECT_TRUE(server.requests().isEmpty());
}

struct warehouse_rights_row {
    const char* what;
    std::vector<const char*> granted;
    bool search;
    bool add;
    bool edit;
    bool remove;
};
class warehouse_rights : public warehouse_tab, public testing::WithParamInterface<warehouse_rights_row> {};

TEST_P(warehouse_rights, hide_buttons_and_grey_entries) {
    const auto& row = GetParam();
    grant("emp", {"search", "add", "edit", "delete"});
    open_with(row.granted);
    EXPECT_EQ(server.requests().size(), row.search ? 1 : 0);
    EXPECT_EQ(tab->isEnabled(), row.search);
    EXPECT_NE(child<QPushButton>(tab.get(), "btn_search")->isHidden(), row.search);
    expect_right("btn_add", "添加", row.add);
    expect_right("btn_edit", "编辑", row.edit);
    expect_right("btn_delete", "删除", row.remove);
}

INSTANTIATE_TEST_SUITE_P(
    rights, warehouse_rights,
    testing::Values(warehouse_rights_row{"none", {}, false, false, false, false},
                    warehouse_rights_row{"all", {"search", "add", "edit", "delete"}, true, true, true, true},
                    warehouse_rights_row{"search_alone", {"search"}, true, false, false, false},
                    warehouse_rights_row{"add_without_search", {"add"}, false, true, false, false},
                    warehouse_rights_row{"edit", {"edit", "search"}, true, false, true, false},
                    warehouse_rights_row{"delete", {"search", "delete"}, true, false, false, true}),
    [](const auto& p) { return std::string(p.param.what); });
