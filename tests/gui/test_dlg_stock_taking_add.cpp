#include <QVBoxLayout>

#include "documents/editor_parts.h"
#include "gui/taking_fixture.h"
#include "support/rights_log.h"

// The window of the stocktaking editor: what it shows in each mode, its rights, its menu and its picker.

class taking_window : public taking_test {};

TEST_F(taking_window, window_and_widgets) {
    open(1);
    expect_window(dialog.get(), QSize(1300, 500), Qt::WindowMaximizeButtonHint | Qt::WindowCloseButtonHint);
    const struct {
        const char* name;
        const char* text;
        const char* field;
    } labels[] = {{"label_sn", "单号", "txt_sn"},
                  {"label_2", "经办人", "txt_operater"},
                  {"label_writer", "制单人", "txt_writer"},
                  {"label_4", "备注", "txt_remark"}};
    for (const auto& l : labels) {
        EXPECT_EQ(child<QLabel>(dialog.get(), l.name)->text(), u(l.text));
        EXPECT_EQ(child<QLabel>(dialog.get(), l.name)->buddy(), field(l.field)) << l.name;
    }
    EXPECT_EQ(child<QLabel>(dialog.get(), "label_3")->text(), u("*"));
    EXPECT_EQ(child<QLabel>(dialog.get(), "label_3")->styleSheet(), u("color:red;"));
    EXPECT_EQ(field("txt_sn")->minimumWidth(), 160);
    EXPECT_EQ(field("txt_sn")->maximumWidth(), QWIDGETSIZE_MAX) << "a least width, not a greatest";
    EXPECT_EQ(field("txt_operater")->placeholderText(), u("点击选择经办人"));
    for (const char* name : {"txt_writer", "txt_remark"}) {
        EXPECT_TRUE(field(name)->placeholderText().isEmpty()) << name;
        EXPECT_FALSE(field(name)->isReadOnly()) << name;
    }
    const struct {
        const char* name;
        const char* text;
    } buttons[] = {{"btn_add", "添加明细"}, {"btn_delete", "删除明细"}, {"btn_print", "打印"},
                   {"btn_audit", "审核"},   {"btn_submit", "保存"},     {"btn_cancel", "关闭"}};
    for (const auto& b : buttons)
        EXPECT_EQ(child<QPushButton>(dialog.get(), b.name)->text(), u(b.text));
    expect_left_to_right(dialog.get(), {"txt_sn", "txt_operater", "txt_writer", "txt_remark", "btn_add",
                                        "btn_delete", "btn_print"});
    expect_left_to_right(dialog.get(), {"btn_audit", "btn_submit", "btn_cancel"});
    EXPECT_GT(child<QPushButton>(dialog.get(), "btn_audit")->y(), table->geometry().bottom());
    EXPECT_TRUE(table->hasMouseTracking());
    EXPECT_FALSE(table->verticalHeader()->isVisible());
    EXPECT_EQ(table->selectionBehavior(), QAbstractItemView::SelectRows);
    EXPECT_EQ(table->editTriggers(), QAbstractItemView::NoEditTriggers);
    expect_tab_order(dialog.get(),
                     {"txt_sn", "txt_operater", "txt_writer", "txt_remark", "btn_add", "btn_delete",
                      "btn_print", "tablewidget", "btn_audit", "btn_submit", "btn_cancel"});
    EXPECT_TRUE(server.requests().isEmpty());
}

TEST_F(taking_window, header_begins_at_the_table_and_labels_stand_at_their_fields) {
    open(0);
    expect_first_label_at_the_table(dialog.get(), "label_2");
    open(5);
    EXPECT_EQ(child<QLabel>(dialog.get(), "label_sn")->x(), table->x());
    expect_label_at_its_field(dialog.get(), "label_sn", "txt_sn");
    EXPECT_EQ(child<QLabel>(dialog.get(), "label_2")->indent(), 10);
}

TEST_F(taking_window, line_table) {
    open(0);
    const QStringList headers =
        words({"id", "仓库id", "仓库", "位置", "货品id", "货品名称", "规格", "编码", "价格", "系统数量",
               "盘点数量", "盈亏数量", "盈亏金额", "备注", "stock_id", "changed", "locked_id"});
    const QList<int> hidden{0, 1, 4, 14, 15, 16};
    ASSERT_EQ(table->columnCount(), headers.size());
    EXPECT_EQ(table->rowCount(), 0);
    for (int i = 0; i < headers.size(); ++i) {
        EXPECT_EQ(table->horizontalHeaderItem(i)->text(), headers[i]);
        EXPECT_EQ(table->isColumnHidden(i), hidden.contains(i)) << i;
        EXPECT_EQ(table->horizontalHeader()->sectionResizeMode(i),
                  i == 0 ? QHeaderView::ResizeToContents : QHeaderView::Stretch);
    }
}

struct taking_mode_row {
    const char* name;
    int mode;
    std::vector<const char*> hidden;
    std::vector<const char*> read_only;
    const char* title;
};

void PrintTo(const taking_mode_row& row, std::ostream* out) {
    *out << row.name;
}

class taking_mode : public taking_test, public testing::WithParamInterface<taking_mode_row> {
protected:
    static bool among(const std::vector<const char*>& names, const char* name) {
        return std::any_of(names.begin(), names.end(),
                           [name](const char* each) { return QLatin1String(each) == QLatin1String(name); });
    }
};

TEST_P(taking_mode, shows_what_it_has_a_use_for) {
    const auto& row = GetParam();
    open(row.mode);
    for (const char* name : {"label_sn", "txt_sn", "label_2", "label_3", "txt_operater", "label_writer",
                             "txt_writer", "label_4", "txt_remark", "btn_add", "btn_delete", "btn_print",
                             "btn_audit", "btn_submit", "btn_cancel", "tablewidget"})
        EXPECT_EQ(child<QWidget>(dialog.get(), name)->isVisible(), !among(row.hidden, name)) << name;
    for (const char* name : {"txt_sn", "txt_operater", "txt_writer", "txt_remark"})
        EXPECT_EQ(field(name)->isReadOnly(), among(row.read_only, name)) << name;
    EXPECT_EQ(dialog->windowTitle(), u(row.title)) << "the list gives the others";
    expect_fits_with_the_style_sheet(dialog.get());
}

TEST_P(taking_mode, its_menu_opens_at_the_pointer_and_does_something_in_a_new_document_alone) {
    open(GetParam().mode);
    EXPECT_EQ(menu_texts(table), words({"添加", "-", "删除", "-", "打印"}));
    expect_menu_at_pointer(table);
    // The menu itself hears each of its entries.
    const auto wired = [this](const char* entry) {
        return connections_of(menu_action(table, entry), SIGNAL(triggered(bool))) > 1;
    };
    EXPECT_EQ(wired("添加"), GetParam().mode == 0);
    EXPECT_EQ(wired("删除"), GetParam().mode == 0);
    EXPECT_FALSE(wired("打印")) << "the button prints";
    EXPECT_TRUE(menu_action(table, "打印")->isEnabled());
}

INSTANTIATE_TEST_SUITE_P(modes, taking_mode,
                         testing::Values(taking_mode_row{"new_document",
                                                         0,
                                                         {"label_sn", "txt_sn", "label_writer", "txt_writer",
                                                          "btn_print", "btn_audit"},
                                                         {"txt_sn", "txt_operater"},
                                                         "添加盘点"},
                                         taking_mode_row{"edit", 1, {}, {"txt_sn", "txt_operater"}, ""},
                                         taking_mode_row{
                                             "view",
                                             5,
                                             {"btn_add", "btn_delete", "btn_submit", "btn_audit"},
                                             {"txt_sn", "txt_operater", "txt_writer", "txt_remark"},
                                             ""},
                                         taking_mode_row{"audit", 6, {}, {"txt_sn", "txt_operater"}, ""}),
                         [](const auto& p) { return std::string(p.param.name); });

TEST_F(taking_window, the_menu_adds_and_deletes_in_a_new_document) {
    open(0);
    with_modal_of<dlg_stock_taking_detail_add>([this] { menu_action(table, "添加")->trigger(); },
                                               [](dlg_stock_taking_detail_add* line) { line->close(); });
    menu_action(table, "删除")->trigger();
    expect_tip(table, u("请先选中行"), QPoint(10, 30));
}

TEST_F(taking_window, the_operater_is_picked_and_shown_as_it_is) {
    server.always(
        "wms_emp/get_page",
        page_body({QJsonObject{{QStringLiteral("id"), u("65")}, {QStringLiteral("name"), u("张三")}}}));
    open_with_lines({1});
    pick<dlg_search_emp>(dialog.get(), "txt_operater", u("查询选择经办人"), double_click_first);
    EXPECT_EQ(field("txt_operater")->text(), u("张三"));
    click(dialog.get(), "btn_submit");
    EXPECT_EQ(server.bodies("wms_stock_taking/do_add"), QList<QByteArray>{"&operater=65&writer="});
}

TEST_F(taking_window, all_in_the_picker_takes_the_choice_back) {
    open_with_lines({1});
    pick_operater();
    EXPECT_EQ(field("txt_operater")->text(), u("员工"));
    dialog->slot_emp_selected(struct_emp());
    EXPECT_EQ(field("txt_operater")->text(), QString()) << "empty, not a word for all";
    click(dialog.get(), "btn_submit");
    expect_tip(field("txt_operater"), u("请选择经办人"));
}

TEST_F(taking_window, the_picker_opens_in_new_and_edit_by_the_left_button_on_the_operater_alone) {
    server.always("wms_emp/get_page", page_body({}));
    for (int mode : {0, 1, 5, 6}) {
        open(mode);
        QTest::mousePress(field("txt_operater"), Qt::RightButton);
        QTest::mousePress(field("txt_remark"), Qt::LeftButton);
        QTest::mousePress(field("txt_writer"), Qt::LeftButton);
        EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
        EXPECT_EQ(presses_open_a_picker(dialog.get(), {"txt_operater"}), mode < 2) << mode;
    }
}

TEST_F(taking_window, a_cell_shows_its_text_as_its_tip) {
    open(5);
    dialog->slot_stock_taking_to_edit(saved_taking());
    emit table->itemEntered(table->item(0, 5));
    EXPECT_EQ(table->item(0, 5)->toolTip(), u("货1"));
}

class taking_line_rights : public taking_test {};

TEST_F(taking_line_rights, to_print_decide_over_deleting_and_nothing_over_printing) {
    const struct {
        std::vector<const char*> rights;
        bool adds;
        bool deletes;
    } rows[] = {{{}, false, false},
                {{"detail_delete"}, false, false},
                {{"detail_print"}, false, true},
                {{"detail_add", "detail_delete"}, true, false},
                {{"detail_add", "detail_delete", "detail_print"}, true, true},
                {{"add", "delete", "print", "search"}, false, false}};
    for (const auto& r : rows)
        for (int mode : {0, 1}) {
            g_http.rights.clear();
            grant("stock_taking", r.rights);
            open(mode);
            EXPECT_EQ(child<QPushButton>(dialog.get(), "btn_add")->isVisible(), r.adds);
            EXPECT_EQ(menu_action(table, "添加")->isEnabled(), r.adds);
            EXPECT_EQ(child<QPushButton>(dialog.get(), "btn_delete")->isVisible(), r.deletes);
            EXPECT_EQ(menu_action(table, "删除")->isEnabled(), r.deletes);
            EXPECT_EQ(child<QPushButton>(dialog.get(), "btn_print")->isVisible(), mode == 1);
            EXPECT_TRUE(menu_action(table, "打印")->isEnabled());
        }
}

TEST_F(taking_line_rights, do_not_bring_back_what_a_mode_hides) {
    open(5);
    for (const char* name : {"btn_add", "btn_delete", "btn_submit", "btn_audit"})
        EXPECT_FALSE(child<QPushButton>(dialog.get(), name)->isVisible()) << name;
    g_http.rights.clear();
    open(5);
    EXPECT_TRUE(child<QPushButton>(dialog.get(), "btn_print")->isVisible()) << "printing needs no right";
}

TEST_F(taking_line_rights, go_out_in_order_and_the_signal_to_print_never) {
    g_http.rights.clear();
    grant("stock_taking", {"detail_add", "detail_delete"});
    open(1);
    rights_log log;
    log.follow(dialog.get());
    apply_line_rights(dialog.get(), QStringLiteral("stock_taking"));
    EXPECT_EQ(log.lines(), words({"add on", "delete on", "delete off"}));
    emit dialog->signal_enable_print(false);
    EXPECT_FALSE(child<QPushButton>(dialog.get(), "btn_print")->isVisible()) << "wired all the same";
    EXPECT_FALSE(menu_action(table, "打印")->isEnabled());
}
