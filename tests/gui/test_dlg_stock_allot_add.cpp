#include <QApplication>
#include <QPrintPreviewDialog>
#include <QVBoxLayout>

#include "documents/pickers.h"
#include "gui/allot_fixture.h"
#include "support/rights_log.h"

// The window of the transfer editor: what it shows in each mode, its boxes, its rights and its menu.

class allot_window : public allot_test {};

TEST_F(allot_window, window_and_widgets) {
    open(1);
    expect_window(dialog.get(), QSize(1300, 500), Qt::WindowMaximizeButtonHint | Qt::WindowCloseButtonHint);
    const struct {
        const char* name;
        const char* text;
        const char* field;
        bool required;
    } labels[] = {{"label_sn", "单号", "txt_sn", false},
                  {"label_warehouse_out", "调出仓", "comb_warehouse_out", true},
                  {"label_warehouse_in", "调入仓", "comb_warehouse_in", true},
                  {"label_operater", "经办人", "txt_operater", true},
                  {"label_writer", "制单人", "txt_writer", false},
                  {"label_remark", "备注", "txt_remark", false}};
    for (const auto& l : labels) {
        const auto* label = child<QLabel>(dialog.get(), l.name);
        EXPECT_EQ(label->text(), QString::fromUtf8(l.text));
        EXPECT_EQ(label->buddy(), child<QWidget>(dialog.get(), l.field)) << l.name;
        const auto* star = dialog->findChild<QLabel*>(QLatin1String(l.name) + QStringLiteral("_star"));
        ASSERT_EQ(star != nullptr, l.required) << l.name;
        if (star == nullptr) continue;
        EXPECT_EQ(star->text(), QStringLiteral("*"));
        EXPECT_EQ(star->styleSheet(), QStringLiteral("color:red;"));
    }
    EXPECT_EQ(field("txt_sn")->maximumWidth(), 160);
    EXPECT_TRUE(field("txt_sn")->isReadOnly() && field("txt_operater")->isReadOnly());
    EXPECT_FALSE(field("txt_writer")->isReadOnly() || field("txt_remark")->isReadOnly());
    const struct {
        const char* name;
        const char* text;
        int width;
    } buttons[] = {{"btn_add", "添加明细", 0},
                   {"btn_delete", "删除明细", 0},
                   {"btn_print", "打印", 0},
                   {"btn_submit", "保存", 200},
                   {"btn_cancel", "关闭", 200}};
    for (const auto& b : buttons) {
        EXPECT_EQ(child<QPushButton>(dialog.get(), b.name)->text(), QString::fromUtf8(b.text));
        EXPECT_EQ(child<QPushButton>(dialog.get(), b.name)->minimumWidth(), b.width) << b.name;
    }
    EXPECT_EQ(dialog->findChild<QPushButton*>(QStringLiteral("btn_audit")), nullptr);
    EXPECT_EQ(qobject_cast<QVBoxLayout*>(dialog->layout())->itemAt(1)->widget(), table);
    expect_left_to_right(dialog.get(), {"txt_sn", "comb_warehouse_out", "comb_warehouse_in", "txt_operater",
                                        "txt_writer", "txt_remark", "btn_add", "btn_delete", "btn_print"});
    EXPECT_TRUE(table->hasMouseTracking());
    EXPECT_FALSE(table->verticalHeader()->isVisible());
    EXPECT_EQ(table->selectionBehavior(), QAbstractItemView::SelectRows);
    EXPECT_EQ(table->editTriggers(), QAbstractItemView::NoEditTriggers);
    expect_tab_order(dialog.get(), {"txt_sn", "comb_warehouse_out", "comb_warehouse_in", "txt_operater",
                                    "txt_writer", "txt_remark", "btn_add", "btn_delete", "btn_print",
                                    "tablewidget", "btn_submit", "btn_cancel"});
    EXPECT_TRUE(wire().isEmpty());
}

TEST_F(allot_window, header_begins_at_the_table_and_labels_stand_at_their_fields) {
    open(0);
    expect_first_label_at_the_table(dialog.get(), "label_warehouse_out");
    open(5);
    expect_label_at_its_field(dialog.get(), "label_sn", "txt_sn");
    EXPECT_EQ(child<QLabel>(dialog.get(), "label_warehouse_out")->indent(), 10);
}

TEST_F(allot_window, the_line_table_calls_the_goods_products) {
    open(0);
    const QStringList headers = words({"id", "产品名称", "产品id", "编码", "规格", "价格", "数量", "总价",
                                       "位置", "备注", "stock_id", "changed", "main_id", "locked_id"});
    const QList<int> hidden{0, 2, 10, 11, 12, 13};
    ASSERT_EQ(table->columnCount(), headers.size());
    EXPECT_EQ(table->rowCount(), 0);
    for (int i = 0; i < headers.size(); ++i) {
        EXPECT_EQ(table->horizontalHeaderItem(i)->text(), headers[i]);
        EXPECT_EQ(table->isColumnHidden(i), hidden.contains(i)) << i;
        EXPECT_EQ(table->horizontalHeader()->sectionResizeMode(i),
                  i == 0 ? QHeaderView::ResizeToContents : QHeaderView::Stretch);
    }
}

struct allot_mode_sample {
    const char* name;
    int mode;
    const char* title;
    std::vector<const char*> hidden;
    QStringList sources;
};

class allot_mode : public allot_test, public testing::WithParamInterface<allot_mode_sample> {};

TEST_P(allot_mode, shows_what_it_has_a_use_for) {
    const auto& sample = GetParam();
    open(sample.mode);
    EXPECT_EQ(dialog->windowTitle(), QString::fromUtf8(sample.title)) << "a saved one is titled by the list";
    for (const char* name :
         {"label_sn", "txt_sn", "label_warehouse_out", "comb_warehouse_out", "label_warehouse_in",
          "comb_warehouse_in", "label_operater", "txt_operater", "label_writer", "txt_writer", "label_remark",
          "txt_remark", "btn_add", "btn_delete", "btn_print", "btn_submit", "btn_cancel", "tablewidget"}) {
        const bool expected =
            std::none_of(sample.hidden.begin(), sample.hidden.end(),
                         [name](const char* each) { return QLatin1String(each) == QLatin1String(name); });
        EXPECT_EQ(child<QWidget>(dialog.get(), name)->isVisible(), expected) << name;
    }
    const bool viewed = sample.mode == 5;
    EXPECT_EQ(field("txt_remark")->isReadOnly(), viewed);
    EXPECT_EQ(field("txt_writer")->isReadOnly(), viewed);
    EXPECT_EQ(source()->isEnabled(), !viewed);
    EXPECT_EQ(destination()->isEnabled(), !viewed);
    EXPECT_EQ(field("txt_operater")->placeholderText(),
              sample.mode == 0 ? QStringLiteral("点击选择") : QString());
    EXPECT_EQ(table->contextMenuPolicy(), sample.mode == 0 ? Qt::CustomContextMenu : Qt::DefaultContextMenu);
    expect_fits_with_the_style_sheet(dialog.get());
}

TEST_P(allot_mode, fills_its_boxes) {
    const auto texts = [](const QComboBox* box) {
        QStringList result;
        for (int i = 0; i < box->count(); ++i)
            result.append(box->itemText(i) + QLatin1Char('=') + box->itemData(i).toString());
        return result;
    };
    open(GetParam().mode);
    EXPECT_EQ(texts(source()), GetParam().sources);
    EXPECT_EQ(texts(destination()), words({"【选择仓库】=", "一号仓=3", "二号仓=8"}));
    EXPECT_EQ(destination()->currentIndex(), 0) << "the default warehouse is not proposed";
    EXPECT_EQ(source()->currentIndex(), GetParam().sources.isEmpty() ? -1 : 0);
    EXPECT_EQ(server.paths().count("wms_warehouse/get_option_with_stat"), GetParam().mode == 0 ? 1 : 0);
    EXPECT_EQ(server.paths().count("wms_warehouse/get_option"), GetParam().mode == 5 ? 2 : 1);
    EXPECT_EQ(server.requests().first().method, "GET");
}

INSTANTIATE_TEST_SUITE_P(
    modes, allot_mode,
    testing::Values(allot_mode_sample{"new_transfer",
                                      0,
                                      "添加调拨",
                                      {"label_sn", "txt_sn", "label_writer", "txt_writer", "btn_print"},
                                      {QStringLiteral("【选择仓库】="), QStringLiteral("一号仓\t[库存:40]=3"),
                                       QStringLiteral("二号仓\t[库存:5]=8")}},
                    allot_mode_sample{"edit", 1, "", {}, {}},
                    allot_mode_sample{"view",
                                      5,
                                      "",
                                      {"btn_add", "btn_delete", "btn_submit"},
                                      {QStringLiteral("【选择仓库】="), QStringLiteral("一号仓=3"),
                                       QStringLiteral("二号仓=8")}}),
    [](const auto& p) { return std::string(p.param.name); });

TEST_F(allot_window, the_operator_is_picked_in_a_new_transfer_alone) {
    server.always("wms_emp/get_page",
                  page_body({QJsonObject{{QStringLiteral("id"), QStringLiteral("65")},
                                         {QStringLiteral("name"), QStringLiteral("张三")}}}));
    for (int mode : {1, 5}) {
        open(mode);
        EXPECT_FALSE(presses_open_a_picker(dialog.get(), {"txt_operater"})) << mode;
    }
    open(0);
    QTest::mousePress(field("txt_operater"), Qt::RightButton);
    QTest::mousePress(field("txt_remark"), Qt::LeftButton);
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    pick<dlg_search_emp>(dialog.get(), "txt_operater", QStringLiteral("查询选择经办人"), double_click_first);
    EXPECT_EQ(field("txt_operater")->text(), QStringLiteral("张三"));
    source()->setCurrentIndex(1);
    destination()->setCurrentIndex(2);
    add_line(1, 1);
    click(dialog.get(), "btn_submit");
    EXPECT_TRUE(server.bodies("wms_stock_allot/do_add").value(0).contains("&operater=65"));
}

TEST_F(allot_window, all_in_the_picker_says_so_and_leaves_the_transfer_without_an_operator) {
    server.always("wms_emp/get_page", page_body({}));
    write({1});
    pick<dlg_search_emp>(dialog.get(), "txt_operater", QStringLiteral("查询选择经办人"),
                         [](dlg_search_emp* picker) { click(picker, "btn_all"); });
    EXPECT_EQ(field("txt_operater")->text(), QStringLiteral("【全部】"));
    server.forget();
    click(dialog.get(), "btn_submit");
    expect_tip(field("txt_operater"), QStringLiteral("请选择经办人"));
    dialog->slot_emp_selected(employee("4", ""));
    click(dialog.get(), "btn_submit");
    expect_tip(field("txt_operater"), QStringLiteral("请选择经办人"));
    EXPECT_TRUE(wire().isEmpty());
}

TEST_F(allot_window, the_writer_has_an_id_and_no_name) {
    open(1);
    dialog->slot_set_current_user();
    EXPECT_TRUE(field("txt_writer")->text().isEmpty());
    write({1});
    dialog->slot_set_current_user();
    click(dialog.get(), "btn_submit");
    EXPECT_EQ(server.bodies("wms_stock_allot/do_add"),
              QList<QByteArray>{"&warehouse_out=3&warehouse_in=8&operater=3&writer=9"});
}

TEST_F(allot_window, a_cell_shows_its_text_as_its_tip) {
    open(5);
    dialog->slot_stock_allot_to_edit(saved_transfer());
    emit table->itemEntered(table->item(0, 1));
    EXPECT_EQ(table->item(0, 1)->toolTip(), QStringLiteral("货1"));
}

class allot_rights : public allot_test {};

TEST_F(allot_rights, to_print_overrules_the_one_to_delete) {
    const struct {
        std::vector<const char*> rights;
        const char* heard;
        bool adds;
        bool deletes;
    } rows[] = {{{}, "add off, delete off, delete off", false, false},
                {{"detail_add"}, "add on, delete off, delete off", true, false},
                {{"detail_add", "detail_delete"}, "add on, delete on, delete off", true, false},
                {{"detail_print"}, "add off, delete off, delete on", false, true},
                {{"add", "delete", "print"}, "add off, delete off, delete off", false, false}};
    for (const auto& r : rows) {
        g_http.rights.clear();
        grant("stock_allot", r.rights);
        rights_log log;
        // The editor asks for its sources before it looks at the rights.
        bool heard = false;
        server.always("wms_warehouse/get_option", [&](const recorded_request&) {
            const auto widgets = QApplication::topLevelWidgets();
            for (const QWidget* widget : widgets)
                if (!heard && qobject_cast<const dlg_stock_allot_add*>(widget) != nullptr) log.follow(widget);
            heard = true;
            return scripted_answer("[]");
        });
        dialog.reset();
        open(0);
        EXPECT_EQ(log.lines().join(QStringLiteral(", ")), QLatin1String(r.heard));
        EXPECT_EQ(child<QPushButton>(dialog.get(), "btn_add")->isVisible(), r.adds);
        EXPECT_EQ(menu_action(table, "添加")->isEnabled(), r.adds);
        EXPECT_EQ(child<QPushButton>(dialog.get(), "btn_delete")->isVisible(), r.deletes);
        EXPECT_EQ(menu_action(table, "删除")->isEnabled(), r.deletes);
        EXPECT_TRUE(menu_action(table, "打印")->isEnabled()) << "its signal is never emitted";
        open(5);
        EXPECT_TRUE(child<QPushButton>(dialog.get(), "btn_print")->isVisible());
        EXPECT_FALSE(child<QPushButton>(dialog.get(), "btn_delete")->isVisible()) << "the mode comes last";
    }
}

TEST_F(allot_rights, signals_govern_buttons_and_entries) {
    open(1);
    const struct {
        void (dlg_stock_allot_add::*enable)(bool);
        const char* button;
        const char* entry;
    } rows[] = {{&dlg_stock_allot_add::signal_enable_add, "btn_add", "添加"},
                {&dlg_stock_allot_add::signal_enable_delete, "btn_delete", "删除"},
                {&dlg_stock_allot_add::signal_enable_print, "btn_print", "打印"}};
    for (const auto& r : rows)
        for (bool on : {false, true}) {
            emit(dialog.get()->*r.enable)(on);
            EXPECT_EQ(child<QPushButton>(dialog.get(), r.button)->isVisible(), on) << r.button;
            EXPECT_EQ(menu_action(table, r.entry)->isEnabled(), on) << r.entry;
        }
}

class allot_menu : public allot_test {
protected:
    /** Whether an entry runs anything; the menu itself hears each of its entries. */
    bool is_wired(const char* entry) {
        return connections_of(menu_action(table, entry), SIGNAL(triggered(bool))) > 1;
    }
};

TEST_F(allot_menu, of_a_new_transfer_adds_and_deletes_and_prints_nothing) {
    open(0);
    EXPECT_EQ(menu_texts(table), words({"添加", "-", "删除", "-", "打印"}));
    expect_menu_at_pointer(table);
    menu_action(table, "添加")->trigger();
    expect_tip(source(), QStringLiteral("请先选择调出仓库"));
    menu_action(table, "删除")->trigger();
    expect_tip(table, QStringLiteral("请先选中行"), QPoint(10, 30));
    EXPECT_FALSE(is_wired("打印"));
}

TEST_F(allot_menu, of_a_viewed_transfer_does_not_open_though_its_print_entry_is_wired) {
    open(5);
    EXPECT_EQ(table->contextMenuPolicy(), Qt::DefaultContextMenu);
    EXPECT_FALSE(is_wired("添加") || is_wired("删除"));
    with_modal_of<QPrintPreviewDialog>([this] { menu_action(table, "打印")->trigger(); },
                                       [](QPrintPreviewDialog* preview) { preview->close(); });
    QContextMenuEvent event(QContextMenuEvent::Mouse, QPoint(5, 5), table->mapToGlobal(QPoint(5, 5)));
    QApplication::sendEvent(table->viewport(), &event);
    EXPECT_FALSE(table->findChild<QMenu*>()->isVisible());
}

TEST_F(allot_menu, of_an_edit_is_wired_to_nothing_and_so_are_the_buttons) {
    open(1);
    EXPECT_FALSE(is_wired("添加") || is_wired("删除") || is_wired("打印"));
    click(dialog.get(), "btn_add");
    click(dialog.get(), "btn_delete");
    EXPECT_TRUE(shown_tip().isEmpty());
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
}
