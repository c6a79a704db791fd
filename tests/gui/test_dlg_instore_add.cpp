#include <QVBoxLayout>

#include "documents/editor_parts.h"
#include "gui/dlg_instore_fixture.h"
#include "support/rights_log.h"

// What the editor looks like in its modes and kinds, its menu and its rights.

namespace {

/** Whether anybody but the menu itself hears of an entry. */
bool runs_something(const QAction* entry) {
    return connections_of(entry, SIGNAL(triggered(bool))) > 1;
}

} // namespace

TEST_F(instore_editor, window_and_widgets) {
    open(1);
    expect_window(editor.get(), QSize(1300, 550), Qt::WindowMaximizeButtonHint | Qt::WindowCloseButtonHint);
    const struct {
        const char* label;
        const char* text;
        const char* star;
        const char* name;
        const char* placeholder;
        bool read_only;
    } rows[] = {{"label_sn", "单号", nullptr, "txt_sn", "", true},
                {"label", "经办人", "label_2", "txt_operater", "点击选择经办人", true},
                {"label_writer", "制单人", nullptr, "txt_writer", "", true},
                {"label_company", "供应商", "label_company_star", "txt_company", "点击选择", true},
                {"label_dept", "部门", "label_dept_star", "txt_dept", "点击选择", true},
                {"label_5", "备注", nullptr, "txt_remark", "", false}};
    for (const auto& r : rows) {
        EXPECT_EQ(child<QLabel>(editor.get(), r.label)->text(), QString::fromUtf8(r.text));
        EXPECT_EQ(child<QLabel>(editor.get(), r.label)->buddy(), field(r.name));
        EXPECT_EQ(field(r.name)->placeholderText(), QString::fromUtf8(r.placeholder));
        EXPECT_EQ(field(r.name)->isReadOnly(), r.read_only) << r.name;
        if (r.star == nullptr) continue;
        EXPECT_EQ(child<QLabel>(editor.get(), r.star)->text(), QStringLiteral("*"));
        EXPECT_EQ(child<QLabel>(editor.get(), r.star)->styleSheet(), QStringLiteral("color:red;"));
    }
    EXPECT_EQ(field("txt_sn")->maximumWidth(), 160);
    EXPECT_EQ(child<QLabel>(editor.get(), "label_company")->indent(), 10);
    const struct {
        const char* name;
        const char* text;
    } buttons[] = {{"btn_add", "添加明细"},
                   {"btn_delete", "删除明细"},
                   {"btn_print", "打印"},
                   {"btn_submit", "保存"},
                   {"btn_cancel", "关闭"}};
    for (const auto& b : buttons)
        EXPECT_EQ(child<QPushButton>(editor.get(), b.name)->text(), QString::fromUtf8(b.text));
    EXPECT_EQ(child<QPushButton>(editor.get(), "btn_add")->minimumHeight(), 30);
    expect_left_to_right(
        editor.get(), {"label_sn", "txt_sn", "label", "label_2", "txt_operater", "label_writer", "txt_writer",
                       "label_company", "label_company_star", "txt_company", "label_5", "txt_remark",
                       "btn_add", "btn_delete", "btn_print"});
    EXPECT_LT(field("txt_sn")->y(), table->y());
    EXPECT_LT(table->y(), child<QPushButton>(editor.get(), "btn_submit")->y());
    auto* layout = qobject_cast<QVBoxLayout*>(editor->layout());
    EXPECT_EQ(layout->stretch(0), 1);
    EXPECT_EQ(layout->stretch(1), 10);
    EXPECT_EQ(layout->itemAt(1)->widget(), table);
    expect_tab_order(editor.get(),
                     {"txt_sn", "txt_operater", "txt_writer", "txt_company", "txt_dept", "txt_remark",
                      "btn_add", "btn_delete", "btn_print", "tablewidget", "btn_submit", "btn_cancel"});
    EXPECT_TRUE(server.requests().isEmpty()) << "opening costs no call";
}

TEST_F(instore_editor, header_begins_at_the_table_and_labels_stand_at_their_fields) {
    open(0, 7);
    expect_first_label_at_the_table(editor.get(), "label");
    open(5, 7);
    expect_label_at_its_field(editor.get(), "label_sn", "txt_sn");
    EXPECT_EQ(child<QLabel>(editor.get(), "label")->indent(), 10);
}

TEST_F(instore_editor, line_table) {
    open(0);
    const char* const headers[] = {"id",       "货品id", "货品名称", "编码",   "类别id", "类别",
                                   "规格",     "单价",   "数量",     "总价",   "仓库id", "仓库",
                                   "存储位置", "备注",   "是否变更", "main_id"};
    const QList<int> hidden_ones{0, 1, 4, 10, 14, 15};
    ASSERT_EQ(table->columnCount(), 16);
    for (int i = 0; i < 16; ++i) {
        EXPECT_EQ(table->horizontalHeaderItem(i)->text(), QString::fromUtf8(headers[i]));
        EXPECT_EQ(table->isColumnHidden(i), hidden_ones.contains(i)) << i;
        EXPECT_EQ(table->horizontalHeader()->sectionResizeMode(i),
                  i == 0 ? QHeaderView::ResizeToContents : QHeaderView::Stretch);
    }
    EXPECT_TRUE(table->hasMouseTracking());
    EXPECT_EQ(table->editTriggers(), QAbstractItemView::NoEditTriggers);
    EXPECT_EQ(table->selectionBehavior(), QAbstractItemView::SelectRows);
    EXPECT_TRUE(table->verticalHeader()->isHidden());
}

class instore_editor_kind : public instore_editor, public testing::WithParamInterface<known_kind> {};

TEST_P(instore_editor_kind, shows_its_partner_alone) {
    for (int mode : {0, 1, 5}) {
        open(mode, GetParam().type);
        for (const std::string partner : {"company", "dept"}) {
            const bool shown = partner == GetParam().partner;
            EXPECT_EQ(is_hidden("label_" + partner), !shown) << partner;
            EXPECT_EQ(is_hidden("label_" + partner + "_star"), !shown) << partner;
            EXPECT_EQ(is_hidden("txt_" + partner), !shown) << partner;
            const QString label = child<QLabel>(editor.get(), ("label_" + partner).c_str())->text();
            const char* in_the_form = partner == "dept" ? "部门" : "单位";
            EXPECT_EQ(label, QString::fromUtf8(shown ? GetParam().label : in_the_form)) << partner;
        }
    }
}

TEST_P(instore_editor_kind, finds_no_rights_and_leaves_everything_as_the_mode_made_it) {
    grant(GetParam().page, {"search"});
    open(1, GetParam().type);
    for (const char* button : {"btn_add", "btn_delete", "btn_print"})
        EXPECT_FALSE(is_hidden(button)) << button;
    for (const char* entry : {"添加", "删除", "打印"})
        EXPECT_TRUE(action(entry)->isEnabled()) << entry;
    grant(GetParam().page, {"detail_add", "detail_delete", "detail_print"});
    open(0, GetParam().type);
    EXPECT_TRUE(is_hidden("btn_print")) << "the right does not bring it back";
}

INSTANTIATE_TEST_SUITE_P(kinds, instore_editor_kind, testing::ValuesIn(inbound_rows),
                         [](const auto& p) { return std::string(p.param.page); });

TEST_F(instore_editor, a_number_that_is_no_kind_has_no_partner) {
    open(0, 8);
    EXPECT_TRUE(is_hidden("txt_company"));
    EXPECT_TRUE(is_hidden("txt_dept"));
}

struct instore_mode_row {
    int mode;
    std::vector<const char*> hidden;
    bool remark_read_only;
    Qt::ContextMenuPolicy policy;
};
class instore_editor_mode : public instore_editor, public testing::WithParamInterface<instore_mode_row> {};

TEST_P(instore_editor_mode, hides_what_it_does_not_need) {
    open(GetParam().mode);
    for (const char* name :
         {"label_sn", "txt_sn", "label", "label_2", "txt_operater", "label_writer", "txt_writer", "label_5",
          "txt_remark", "btn_add", "btn_delete", "btn_print", "tablewidget", "btn_submit", "btn_cancel"}) {
        const auto& hidden = GetParam().hidden;
        const bool expected = std::any_of(hidden.begin(), hidden.end(),
                                          [name](const char* h) { return qstrcmp(h, name) == 0; });
        EXPECT_EQ(is_hidden(name), expected) << name;
    }
    EXPECT_EQ(field("txt_remark")->isReadOnly(), GetParam().remark_read_only);
    EXPECT_EQ(table->contextMenuPolicy(), GetParam().policy);
    EXPECT_EQ(menu_texts(table),
              QStringList({QStringLiteral("添加"), QStringLiteral("-"), QStringLiteral("删除"),
                           QStringLiteral("-"), QStringLiteral("打印")}));
}

INSTANTIATE_TEST_SUITE_P(
    modes, instore_editor_mode,
    testing::Values(instore_mode_row{0,
                                     {"btn_print", "label_sn", "txt_sn", "label_writer", "txt_writer"},
                                     false,
                                     Qt::CustomContextMenu},
                    instore_mode_row{1, {}, false, Qt::DefaultContextMenu},
                    instore_mode_row{
                        5, {"btn_add", "btn_delete", "btn_submit"}, true, Qt::DefaultContextMenu}),
    [](const auto& p) { return "mode_" + std::to_string(p.param.mode); });

TEST_F(instore_editor, menu_of_a_new_document) {
    open(0);
    expect_menu_at_pointer(table);
    with_modal_of<dlg_instore_detail_add>([this] { action("添加")->trigger(); },
                                          [](dlg_instore_detail_add* line) { line->close(); });
    action("删除")->trigger();
    expect_tip(table, QStringLiteral("请先选中行"), QPoint(10, 30));
    EXPECT_FALSE(runs_something(action("打印")));
}

TEST_F(instore_editor, menu_of_a_saved_document_is_wired_and_does_not_open) {
    open(5);
    QContextMenuEvent right_click(QContextMenuEvent::Mouse, QPoint(5, 5),
                                  table->viewport()->mapToGlobal(QPoint(5, 5)));
    QApplication::sendEvent(table->viewport(), &right_click);
    EXPECT_FALSE(table->findChild<QMenu*>()->isVisible());
    EXPECT_FALSE(runs_something(action("添加")));
    EXPECT_FALSE(runs_something(action("删除")));
    EXPECT_TRUE(runs_something(action("打印")));
}

TEST_F(instore_editor, menu_of_an_edit_is_wired_to_nothing) {
    open(1);
    for (const char* entry : {"添加", "删除", "打印"})
        EXPECT_FALSE(runs_something(action(entry))) << entry;
}

TEST_F(instore_editor, each_signal_about_rights_governs_a_button_and_an_entry) {
    open(1);
    const struct {
        void (dlg_instore_add::*signal)(bool);
        const char* button;
        const char* entry;
    } rows[] = {{&dlg_instore_add::signal_enable_add, "btn_add", "添加"},
                {&dlg_instore_add::signal_enable_delete, "btn_delete", "删除"},
                {&dlg_instore_add::signal_enable_print, "btn_print", "打印"}};
    for (const auto& r : rows)
        for (bool on : {false, true}) {
            emit(editor.get()->*r.signal)(on);
            EXPECT_EQ(is_hidden(r.button), !on) << r.button;
            EXPECT_EQ(action(r.entry)->isEnabled(), on) << r.entry;
        }
}

TEST_F(instore_editor, the_right_to_print_would_overrule_the_one_to_delete) {
    const struct {
        std::vector<const char*> rights;
        const char* heard;
        bool deletes;
    } rows[] = {{{}, "add off, delete off, delete off", false},
                {{"detail_add", "detail_delete"}, "add on, delete on, delete off", false},
                {{"detail_print"}, "add off, delete off, delete on", true},
                {{"detail_add", "detail_delete", "detail_print"}, "add on, delete on, delete on", true}};
    for (const auto& r : rows) {
        g_http.rights.clear();
        grant("instore_purchase", r.rights);
        open(1);
        rights_log log;
        log.follow(editor.get());
        apply_line_rights(editor.get(), inbound_kind(1));
        EXPECT_EQ(log.lines().join(QStringLiteral(", ")), QLatin1String(r.heard));
        EXPECT_EQ(is_hidden("btn_delete"), !r.deletes);
        EXPECT_FALSE(is_hidden("btn_print")) << "its signal is never emitted";
    }
}

TEST_F(instore_editor, of_no_kind_there_are_no_rights) {
    // Not even when somebody grants something on a page without a name.
    grant("", {"detail_print"});
    open(1);
    rights_log log;
    log.follow(editor.get());
    apply_line_rights(editor.get(), inbound_kind(0));
    EXPECT_TRUE(log.lines().isEmpty());
}

TEST_F(instore_editor, title) {
    open(0);
    emit editor->slot_set_window_title(QStringLiteral("添加采购进货入库"));
    EXPECT_EQ(editor->windowTitle(), QStringLiteral("添加采购进货入库"));
}

TEST_F(instore_editor, a_cell_that_the_pointer_enters_shows_its_text_as_a_tip) {
    open(0);
    editor->slot_instore_detail_do_add(line_of("9"));
    emit table->itemEntered(table->item(0, 13));
    EXPECT_EQ(table->item(0, 13)->toolTip(), QStringLiteral("轻放"));
    EXPECT_TRUE(table->item(0, 2)->toolTip().isEmpty());
}
