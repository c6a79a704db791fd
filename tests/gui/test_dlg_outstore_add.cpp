#include <QPrintPreviewDialog>
#include <QVBoxLayout>

#include "documents/editor_parts.h"
#include "gui/outstore_fixture.h"
#include "support/rights_log.h"
#include "support/tree.h"

// The window of the outbound editor: what it shows in each mode and for each kind, and its pickers.

class outstore_window : public outstore_test {};

TEST_F(outstore_window, window_and_widgets) {
    open(1, 1);
    expect_window(dialog.get(), QSize(1300, 550), Qt::WindowMaximizeButtonHint | Qt::WindowCloseButtonHint);
    const struct {
        const char* name;
        const char* text;
        const char* field;
    } labels[] = {{"label_sn", "单号", "txt_sn"},           {"label_4", "经办人", "txt_operater"},
                  {"label_writer", "制单人", "txt_writer"}, {"label_company", "供应商", "txt_company"},
                  {"label_dept", "部门", "txt_dept"},       {"label", "备注", "txt_remark"}};
    for (const auto& l : labels) {
        EXPECT_EQ(child<QLabel>(dialog.get(), l.name)->text(), QString::fromUtf8(l.text));
        EXPECT_EQ(child<QLabel>(dialog.get(), l.name)->buddy(), field(l.field)) << l.name;
    }
    const auto* layout = qobject_cast<QVBoxLayout*>(dialog->layout());
    EXPECT_EQ(layout->stretch(0), 1);
    EXPECT_EQ(layout->stretch(1), 10);
    EXPECT_EQ(layout->itemAt(1)->widget(), table);
    EXPECT_EQ(field("txt_sn")->maximumWidth(), 160);
    EXPECT_EQ(field("txt_operater")->placeholderText(), QStringLiteral("点击选择经办人"));
    EXPECT_EQ(field("txt_company")->placeholderText(), QStringLiteral("点击选择"));
    EXPECT_EQ(field("txt_dept")->placeholderText(), QStringLiteral("点击选择"));
    EXPECT_EQ(child<QLabel>(dialog.get(), "label_company")->indent(), 10);
    for (const char* name : {"txt_sn", "txt_operater", "txt_writer", "txt_company", "txt_dept"})
        EXPECT_TRUE(field(name)->isReadOnly()) << name;
    EXPECT_FALSE(field("txt_remark")->isReadOnly());
    for (const char* name : {"label_operater_star", "label_company_star", "label_dept_star"}) {
        EXPECT_EQ(child<QLabel>(dialog.get(), name)->text(), QStringLiteral("*"));
        EXPECT_EQ(child<QLabel>(dialog.get(), name)->styleSheet(), QStringLiteral("color:red;"));
    }
    const struct {
        const char* name;
        const char* text;
    } buttons[] = {{"btn_add", "添加明细"},
                   {"btn_delete", "删除明细"},
                   {"btn_print", "打印"},
                   {"btn_submit", "保存"},
                   {"btn_cancel", "关闭"}};
    for (const auto& b : buttons)
        EXPECT_EQ(child<QPushButton>(dialog.get(), b.name)->text(), QString::fromUtf8(b.text));
    EXPECT_EQ(child<QPushButton>(dialog.get(), "btn_add")->minimumHeight(), 30);
    expect_left_to_right(dialog.get(), {"txt_sn", "txt_operater", "txt_writer", "txt_company", "txt_remark",
                                        "btn_add", "btn_delete", "btn_print"});
    EXPECT_TRUE(table->hasMouseTracking());
    EXPECT_FALSE(table->verticalHeader()->isVisible());
    EXPECT_EQ(table->selectionBehavior(), QAbstractItemView::SelectRows);
    EXPECT_EQ(table->editTriggers(), QAbstractItemView::NoEditTriggers);
    expect_tab_order(dialog.get(),
                     {"txt_sn", "txt_operater", "txt_writer", "txt_company", "txt_dept", "txt_remark",
                      "btn_add", "btn_delete", "btn_print", "tablewidget", "btn_submit", "btn_cancel"});
    EXPECT_TRUE(wire().isEmpty());
}

TEST_F(outstore_window, header_begins_at_the_table_and_labels_stand_at_their_fields) {
    open(0, 6);
    expect_first_label_at_the_table(dialog.get(), "label_4");
    open(5, 6);
    expect_label_at_its_field(dialog.get(), "label_sn", "txt_sn");
    EXPECT_EQ(child<QLabel>(dialog.get(), "label_4")->indent(), 10);
}

TEST_F(outstore_window, line_table) {
    open(0);
    const QStringList headers =
        words({"id", "货品id", "货品名称", "编码", "类别id", "类别", "规格", "单价", "数量", "总价", "仓库id",
               "仓库", "位置", "备注", "库存id", "是否变更", "main_id", "locked_id"});
    const QList<int> hidden{0, 1, 4, 10, 14, 15, 16, 17};
    ASSERT_EQ(table->columnCount(), headers.size());
    EXPECT_EQ(table->rowCount(), 0);
    for (int i = 0; i < headers.size(); ++i) {
        EXPECT_EQ(table->horizontalHeaderItem(i)->text(), headers[i]);
        EXPECT_EQ(table->isColumnHidden(i), hidden.contains(i)) << i;
        EXPECT_EQ(table->horizontalHeader()->sectionResizeMode(i),
                  i == 0 ? QHeaderView::ResizeToContents : QHeaderView::Stretch);
    }
}

struct mode_sample {
    const char* name;
    int mode;
    std::vector<const char*> hidden;
};
class outstore_mode : public outstore_test, public testing::WithParamInterface<mode_sample> {};

TEST_P(outstore_mode, shows_what_it_has_a_use_for) {
    open(GetParam().mode, 1);
    const auto& hidden = GetParam().hidden;
    for (const char* name : {"label_sn", "txt_sn", "label_4", "txt_operater", "label_writer", "txt_writer",
                             "label_company", "txt_company", "label", "txt_remark", "btn_add", "btn_delete",
                             "btn_print", "btn_submit", "btn_cancel", "tablewidget"}) {
        const bool expected = std::none_of(hidden.begin(), hidden.end(), [name](const char* each) {
            return QLatin1String(each) == QLatin1String(name);
        });
        EXPECT_EQ(child<QWidget>(dialog.get(), name)->isVisible(), expected) << name;
    }
    EXPECT_EQ(field("txt_remark")->isReadOnly(), GetParam().mode == 5);
    EXPECT_EQ(table->contextMenuPolicy(),
              GetParam().mode == 0 ? Qt::CustomContextMenu : Qt::DefaultContextMenu);
    expect_fits_with_the_style_sheet(dialog.get());
}

INSTANTIATE_TEST_SUITE_P(
    modes, outstore_mode,
    testing::Values(
        mode_sample{"new_document", 0, {"label_sn", "txt_sn", "label_writer", "txt_writer", "btn_print"}},
        mode_sample{"edit", 1, {}}, mode_sample{"view", 5, {"btn_add", "btn_delete", "btn_submit"}}),
    [](const auto& p) { return std::string(p.param.name); });

TEST_P(outstore_kind, shows_the_partner_that_it_has) {
    for (int mode : {0, 1, 5}) {
        open(mode, GetParam().type);
        for (const char* partner : {"company", "dept"}) {
            const QByteArray name = partner;
            for (const QByteArray& part : {"label_" + name, "label_" + name + "_star", "txt_" + name})
                EXPECT_EQ(child<QWidget>(dialog.get(), part.constData())->isVisible(), uses(partner))
                    << part.toStdString();
        }
        const auto text = [this](const char* label) { return child<QLabel>(dialog.get(), label)->text(); };
        const QString shown = QString::fromUtf8(GetParam().label);
        EXPECT_EQ(text("label_company"), uses("company") ? shown : QStringLiteral("单位"));
        EXPECT_EQ(text("label_dept"), uses("dept") ? shown : QStringLiteral("部门"));
    }
}

TEST_P(outstore_kind, takes_what_its_partner_picker_hands_over) {
    if (uses("")) return;
    server.always("wms_company/get_page",
                  page_body({QJsonObject{{QStringLiteral("id"), QStringLiteral("31")},
                                         {QStringLiteral("name"), QStringLiteral("甲")}}}));
    server.always("wms_dept/get_dept", R"([{"id":"32","name":"乙","child":[]}])");
    const QString title = QString::fromUtf8(GetParam().picker_title);
    open(0, GetParam().type);
    pick_people(GetParam());
    if (uses("company")) {
        pick<dlg_search_company>(dialog.get(), "txt_company", title, double_click_first);
        EXPECT_EQ(server.last().body,
                  "type=" + QByteArray::number(GetParam().company_type) + "&page_num=1&page_size=10");
        EXPECT_EQ(field("txt_company")->text(), QStringLiteral("甲"));
    } else {
        pick<dlg_dept>(dialog.get(), "txt_dept", title, [](dlg_dept* picker) {
            double_click_node(child<QTreeView>(picker, "treeview"), QStringLiteral("乙"));
        });
        EXPECT_EQ(field("txt_dept")->text(), QStringLiteral("乙"));
    }
    add_line(1, 1);
    click(dialog.get(), "btn_submit");
    const QByteArray header = server.bodies("wms_outstore/do_add").value(0);
    EXPECT_TRUE(header.contains(uses("company") ? "&company=31&" : "&dept=32&")) << header.toStdString();
}

INSTANTIATE_TEST_SUITE_P(kinds, outstore_kind, testing::ValuesIn(outbound_rows),
                         [](const auto& p) { return p.param.word(); });

TEST_F(outstore_window, pickers_act_on_the_left_button_while_a_document_is_written) {
    server.always("wms_emp/get_page", page_body({}));
    for (int mode : {0, 1}) {
        open(mode, 1);
        QTest::mousePress(field("txt_operater"), Qt::RightButton);
        QTest::mousePress(field("txt_remark"), Qt::LeftButton);
        EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
        with_modal([this] { QTest::mousePress(field("txt_operater"), Qt::LeftButton); },
                   [](QWidget* picker) {
                       EXPECT_EQ(QLatin1String(picker->metaObject()->className()),
                                 QLatin1String("dlg_search_emp"));
                       EXPECT_EQ(picker->windowTitle(), QStringLiteral("查询选择经办人"));
                       picker->close();
                   });
    }
    for (const char* name : {"txt_operater", "txt_company", "txt_dept"}) {
        open(5, 1);
        QTest::mousePress(field(name), Qt::LeftButton);
        EXPECT_EQ(QApplication::activeModalWidget(), nullptr) << name;
    }
}

TEST_F(outstore_window, the_operater_is_picked) {
    server.always("wms_emp/get_page",
                  page_body({QJsonObject{{QStringLiteral("id"), QStringLiteral("65")},
                                         {QStringLiteral("name"), QStringLiteral("张三")}}}));
    open(0);
    pick<dlg_search_emp>(dialog.get(), "txt_operater", QStringLiteral("查询选择经办人"), double_click_first);
    EXPECT_EQ(field("txt_operater")->text(), QStringLiteral("张三"));
    add_line(1, 1);
    click(dialog.get(), "btn_submit");
    EXPECT_TRUE(server.bodies("wms_outstore/do_add").value(0).contains("&operater=65&"));
}

TEST_F(outstore_window, what_was_picked_is_shown) {
    open(0, 1);
    pick_people(outbound_rows[0]);
    EXPECT_EQ(field("txt_operater")->text(), QStringLiteral("员工"));
    EXPECT_EQ(field("txt_company")->text(), QStringLiteral("单位"));
    dialog->slot_dept_selected(dept());
    EXPECT_EQ(field("txt_dept")->text(), QStringLiteral("部门"));
}

TEST_F(outstore_window, the_title_is_given_by_the_list) {
    open(0);
    dialog->slot_set_window_title(QStringLiteral("添加领用出库"));
    EXPECT_EQ(dialog->windowTitle(), QStringLiteral("添加领用出库"));
}

TEST_F(outstore_window, a_cell_shows_its_text_as_its_tip) {
    open(5);
    dialog->slot_outstore_to_edit(saved_document());
    emit table->itemEntered(table->item(0, 2));
    EXPECT_EQ(table->item(0, 2)->toolTip(), QStringLiteral("货1"));
}

class outstore_rights : public outstore_test {};

TEST_F(outstore_rights, find_no_kind_and_change_nothing) {
    for (const char* page : {"", "outstore_purchase_return", "outstore_sale_take", "outstore_other"})
        g_http.rights[QLatin1String(page)] = QStringList{QStringLiteral("search")};
    for (int type = 1; type <= 6; ++type) {
        open(1, type);
        for (const char* name : {"btn_add", "btn_delete", "btn_print"})
            EXPECT_TRUE(child<QPushButton>(dialog.get(), name)->isVisible()) << name;
        for (const char* text : {"添加", "删除", "打印"})
            EXPECT_TRUE(menu_action(table, text)->isEnabled()) << text;
    }
}

TEST_F(outstore_rights, signals_govern_buttons_and_entries) {
    open(1);
    const struct {
        void (dlg_outstore_add::*enable)(bool);
        const char* button;
        const char* entry;
    } rows[] = {{&dlg_outstore_add::signal_enable_add, "btn_add", "添加"},
                {&dlg_outstore_add::signal_enable_delete, "btn_delete", "删除"},
                {&dlg_outstore_add::signal_enable_print, "btn_print", "打印"}};
    for (const auto& r : rows)
        for (bool on : {false, true}) {
            emit(dialog.get()->*r.enable)(on);
            EXPECT_EQ(child<QPushButton>(dialog.get(), r.button)->isVisible(), on) << r.button;
            EXPECT_EQ(menu_action(table, r.entry)->isEnabled(), on) << r.entry;
        }
}

TEST_F(outstore_rights, to_print_would_overrule_the_one_to_delete) {
    const struct {
        std::vector<const char*> rights;
        const char* heard;
        bool deletes;
    } rows[] = {{{}, "add off, delete off, delete off", false},
                {{"detail_add", "detail_delete"}, "add on, delete on, delete off", false},
                {{"detail_print"}, "add off, delete off, delete on", true}};
    for (const auto& r : rows) {
        g_http.rights.clear();
        grant("outstore_sale_take", r.rights);
        open(1);
        rights_log log;
        log.follow(dialog.get());
        apply_line_rights(dialog.get(), outbound_kind(2));
        EXPECT_EQ(log.lines().join(QStringLiteral(", ")), QLatin1String(r.heard));
        EXPECT_EQ(child<QPushButton>(dialog.get(), "btn_delete")->isVisible(), r.deletes);
        EXPECT_TRUE(child<QPushButton>(dialog.get(), "btn_print")->isVisible())
            << "its signal is never emitted";
    }
}

class outstore_menu : public outstore_test {
protected:
    /** Whether an entry runs anything; the menu itself hears each of its entries. */
    bool is_wired(const char* entry) {
        return connections_of(menu_action(table, entry), SIGNAL(triggered(bool))) > 1;
    }
};

TEST_F(outstore_menu, opens_at_the_pointer_in_a_new_document) {
    open(0);
    EXPECT_EQ(menu_texts(table), words({"添加", "-", "删除", "-", "打印"}));
    expect_menu_at_pointer(table);
}

TEST_F(outstore_menu, adds_and_deletes_in_a_new_document_and_prints_nothing) {
    open(0);
    with_modal_of<dlg_outstore_detail_add>([this] { menu_action(table, "添加")->trigger(); },
                                           [](dlg_outstore_detail_add* line) { line->close(); });
    menu_action(table, "删除")->trigger();
    expect_tip(table, QStringLiteral("请先选中行"), QPoint(10, 30));
    EXPECT_TRUE(menu_action(table, "打印")->isEnabled());
    EXPECT_FALSE(is_wired("打印"));
}

TEST_F(outstore_menu, is_out_of_reach_in_a_viewed_document_where_its_print_entry_is_wired) {
    open(5);
    EXPECT_EQ(table->contextMenuPolicy(), Qt::DefaultContextMenu);
    EXPECT_FALSE(is_wired("添加") || is_wired("删除"));
    with_modal_of<QPrintPreviewDialog>([this] { menu_action(table, "打印")->trigger(); },
                                       [](QPrintPreviewDialog* preview) { preview->close(); });
    QContextMenuEvent event(QContextMenuEvent::Mouse, QPoint(5, 5), table->mapToGlobal(QPoint(5, 5)));
    QApplication::sendEvent(table->viewport(), &event);
    EXPECT_FALSE(table->findChild<QMenu*>()->isVisible());
}
