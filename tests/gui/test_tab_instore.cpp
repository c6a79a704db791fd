#include "gui/document_tab_fixture.h"

/** What the inbound list does and the outbound list does not, or otherwise. */
class instore_tab : public document_tab {
protected:
    tab_instore* inbound() { return static_cast<tab_instore*>(tab.get()); }

    /** The record that viewing a row hands to the editor. */
    struct_instore handed_over(int row) {
        struct_instore handed{};
        QObject::connect(inbound(), &tab_instore::signal_instore_to_edit, tab.get(),
                         [&handed](struct_instore instore) { handed = instore; });
        click_row(table, row);
        with_editor([this] { click(tab.get(), "btn_view"); }, [](QWidget*) {});
        return handed;
    }
};

class instore_record : public instore_tab, public testing::WithParamInterface<known_kind> {};

INSTANTIATE_TEST_SUITE_P(kinds, instore_record, testing::ValuesIn(inbound_rows),
                         [](const auto& p) { return p.param.word(); });

TEST_P(instore_record, of_a_viewed_row_comes_from_its_cells) {
    open(GetParam());
    const struct_instore d = handed_over(1);
    EXPECT_EQ(d.id, u("2"));
    EXPECT_EQ(d.sn, u("N-2"));
    EXPECT_EQ(d.operater, u("o-2"));
    EXPECT_EQ(d.operater_name, u("员工2"));
    EXPECT_EQ(d.writer, u("w-2"));
    EXPECT_EQ(d.writer_name, u("用户2"));
    EXPECT_EQ(d.company, kind->has("company") ? u("c-2") : QString());
    EXPECT_EQ(d.company_name, kind->has("company") ? u("单位2") : QString())
        << "a document without partner has none, though its list has one in a hidden column";
    EXPECT_EQ(d.dept, kind->has("dept") ? u("d-2") : QString());
    EXPECT_EQ(d.dept_name, kind->has("dept") ? u("部门2") : QString());
    EXPECT_DOUBLE_EQ(d.total, 2.25);
    EXPECT_EQ(d.remark, u("附注2"));
    ASSERT_EQ(d.details.size(), 1);
    EXPECT_EQ(d.details[0].id, u("71"));
    EXPECT_EQ(d.details[0].amount, 3);
}

TEST_F(instore_tab, a_viewed_row_does_not_touch_the_search) {
    open(inbound_rows[0]);
    handed_over(0);
    EXPECT_EQ(search(), searched(""));
}

TEST_F(instore_tab, all_criteria_go_out_in_their_order_the_kind_last) {
    open(inbound_rows[2]);
    struct_company company;
    company.id = u("1");
    company.name = u("甲");
    struct_dept dept;
    dept.id = u("2");
    dept.name = u("一部");
    inbound()->slot_company_selected(company);
    inbound()->slot_dept_selected(dept);
    struct_emp operater;
    operater.id = u("3");
    operater.name = u("顾");
    struct_user writer;
    writer.id = u("4");
    writer.realname = u("姜");
    inbound()->slot_operater_selected(operater);
    inbound()->slot_writer_selected(writer);
    field("txt_sn")->setText(u("s"));
    field("txt_remark")->setText(u("r"));
    EXPECT_EQ(search(),
              "date_start=1577836800&date_end=1609459199&sn=s&company=1&operater=3&writer=4"
              "&remark=r&dept=2&instore_type=3&page_num=1&page_size=20");
    inbound()->slot_instore_get_list();
    EXPECT_EQ(server.last().body, searches().first()) << "the slot for the editor is the same search";
}

TEST_F(instore_tab, what_has_no_name_is_no_restriction_whatever_its_id) {
    open(inbound_rows[0]);
    struct_company company;
    company.id = u("1");
    struct_emp operater;
    operater.id = u("3");
    struct_user writer;
    writer.id = u("4");
    writer.username = u("login");
    inbound()->slot_company_selected(company);
    inbound()->slot_operater_selected(operater);
    inbound()->slot_writer_selected(writer);
    for (const char* name : {"txt_company", "txt_operater", "txt_writer"})
        EXPECT_EQ(field(name)->text(), u("【全部】")) << name;
    EXPECT_EQ(search(), searched(""));
}

TEST_F(instore_tab, a_department_without_an_id_is_no_restriction_and_the_root_is_one) {
    open(inbound_rows[1]);
    struct_dept dept;
    dept.name = u("x");
    inbound()->slot_dept_selected(dept);
    EXPECT_EQ(field("txt_dept")->text(), u("【全部】"));
    EXPECT_EQ(search(), searched(""));
    dept.id = u("0");
    dept.name = u("【全部】");
    inbound()->slot_dept_selected(dept);
    EXPECT_EQ(field("txt_dept")->text(), u("【全部】"));
    EXPECT_EQ(search(), searched("&dept=0")) << "the service takes it as every department";
}

TEST_F(instore_tab, both_department_kinds_open_their_picker_under_the_same_title) {
    for (int type : {2, 4}) {
        open(inbound_rows[type - 1]);
        press("txt_dept", [](QWidget* picker) {
            EXPECT_EQ(picker->windowTitle(), u("选择生产部门"));
            picker->close();
        });
    }
}

TEST_F(instore_tab, a_document_without_partner_has_a_hidden_column_with_one) {
    open(inbound_rows[6]);
    EXPECT_TRUE(table->isColumnHidden(5));
    EXPECT_EQ(cell_text(table, 0, 5), u("单位1"));
}

TEST_F(instore_tab, its_double_click_takes_the_current_row_and_not_the_cell) {
    open(inbound_rows[0]);
    inbound()->on_tablewidget_cellDoubleClicked(0, 1);
    expect_tip(table, u("请先选中行"), QPoint(10, 30));
    click_row(table, 2);
    with_editor([this] { inbound()->on_tablewidget_cellDoubleClicked(0, 1); },
                [](QWidget* editor) { EXPECT_EQ(child<QLineEdit>(editor, "txt_sn")->text(), u("N-3")); });
}

TEST_F(instore_tab, the_slot_named_after_the_button_deletes_too) {
    open(inbound_rows[0]);
    click_row(table, 0);
    server.answer("1");
    with_question([this] { inbound()->on_btn_delete_clicked(); }, QStringLiteral("确认删除"),
                  QStringLiteral("确认删除吗？"), QMessageBox::Yes);
    EXPECT_EQ(names(table), (QStringList{u("N-2"), u("N-3")}));
}
