#include "gui/document_tab_fixture.h"

/** What the outbound list does and the inbound list does not, or otherwise. */
class outstore_tab : public document_tab {
protected:
    tab_outstore* outbound() { return static_cast<tab_outstore*>(tab.get()); }

    /** Views a row; gives the record that is handed to the editor. */
    struct_outstore handed_over(int row) {
        struct_outstore handed{};
        QObject::connect(outbound(), &tab_outstore::signal_outstore_to_edit, tab.get(),
                         [&handed](struct_outstore outstore) { handed = outstore; });
        click_row(table, row);
        with_editor([this] { click(tab.get(), "btn_view"); }, [](QWidget*) {});
        return handed;
    }
};

class outstore_record : public outstore_tab, public testing::WithParamInterface<known_kind> {};

INSTANTIATE_TEST_SUITE_P(kinds, outstore_record, testing::ValuesIn(outbound_rows),
                         [](const auto& p) { return p.param.word(); });

TEST_P(outstore_record, of_a_viewed_row_comes_from_its_cells) {
    open(GetParam());
    const struct_outstore d = handed_over(1);
    EXPECT_EQ(d.id, u("2"));
    EXPECT_EQ(d.sn, u("N-2"));
    EXPECT_EQ(d.operater, u("o-2"));
    EXPECT_EQ(d.operater_name, u("员工2"));
    EXPECT_EQ(d.writer, u("w-2"));
    EXPECT_EQ(d.writer_name, u("用户2"));
    EXPECT_EQ(d.company, kind->has("company") ? u("c-2") : QString());
    EXPECT_EQ(d.company_name, kind->has("company") ? u("单位2") : QString());
    EXPECT_EQ(d.dept, kind->has("dept") ? u("d-2") : QString());
    EXPECT_EQ(d.dept_name, kind->has("dept") ? u("部门2") : QString());
    EXPECT_DOUBLE_EQ(d.total, 2.25);
    EXPECT_EQ(d.remark, u("附注2"));
    EXPECT_EQ(d.type, kind->type);
    ASSERT_EQ(d.details.size(), 1);
    EXPECT_EQ(d.details[0].id, u("71"));
    EXPECT_EQ(d.details[0].amount, 3);
}

TEST_P(outstore_record, of_the_search_is_that_of_the_row_opened_last) {
    open(GetParam());
    field("txt_sn")->setText(u("s"));
    handed_over(1);
    EXPECT_EQ(search(), searched("&sn=s" + QByteArray(kind->has("company") ? "&company=c-2" : "") +
                                 "&operater=o-2&writer=w-2"))
        << "number and remark are read from their fields";
    for (const char* name : {"txt_company", "txt_dept", "txt_operater", "txt_writer"})
        EXPECT_TRUE(field(name)->text().isEmpty()) << name << " shows what it showed";
    outbound()->slot_company_selected(struct_company());
    outbound()->slot_emp_selected(struct_emp());
    EXPECT_EQ(search(), searched("&sn=s&writer=w-2")) << "until a picker sets them again";
}

TEST_F(outstore_tab, a_partner_picked_before_stays_in_the_field_and_is_searched_for_no_longer) {
    open(outbound_rows[0]);
    press("txt_company", double_click_first);
    EXPECT_EQ(search(), searched("&company=31"));
    with_editor([this] { double_click(2); }, [](QWidget*) {});
    EXPECT_EQ(field("txt_company")->text(), u("甲行"));
    EXPECT_EQ(search(), searched("&company=c-3&operater=o-3&writer=w-3"));
}

TEST_F(outstore_tab, all_criteria_go_out_in_their_order_the_kind_first_and_no_department) {
    open(outbound_rows[2]);
    struct_company company;
    company.id = u("1");
    company.name = u("甲");
    struct_dept dept;
    dept.id = u("2");
    dept.name = u("一部");
    struct_emp operater;
    operater.id = u("3");
    operater.name = u("顾");
    struct_user writer;
    writer.id = u("4");
    writer.realname = u("姜");
    outbound()->slot_writer_selected(writer);
    outbound()->slot_emp_selected(operater);
    outbound()->slot_dept_selected(dept);
    outbound()->slot_company_selected(company);
    field("txt_sn")->setText(u("s"));
    field("txt_main_remark")->setText(u("r"));
    EXPECT_EQ(search(),
              "outstore_type=3&date_start=1577836800&date_end=1609459199&sn=s&company=1&operater=3"
              "&writer=4&remark=r&page_num=1&page_size=20");
    EXPECT_EQ(field("txt_dept")->text(), u("一部"));
}

TEST_F(outstore_tab, a_department_is_shown_and_narrows_nothing) {
    open(outbound_rows[2]);
    const QByteArray before = search();
    struct_dept dept;
    dept.id = u("61");
    dept.name = u("一部");
    outbound()->slot_dept_selected(dept);
    EXPECT_EQ(field("txt_dept")->text(), u("一部"));
    EXPECT_EQ(search(), before);
    outbound()->slot_dept_selected(struct_dept());
    EXPECT_EQ(field("txt_dept")->text(), u("【全部】"));
}

TEST_F(outstore_tab, what_has_no_name_is_no_restriction_whatever_its_id) {
    open(outbound_rows[0]);
    struct_company company;
    company.id = u("1");
    struct_emp operater;
    operater.id = u("3");
    struct_user writer;
    writer.id = u("4");
    writer.username = u("login");
    outbound()->slot_company_selected(company);
    outbound()->slot_emp_selected(operater);
    outbound()->slot_writer_selected(writer);
    for (const char* name : {"txt_company", "txt_operater", "txt_writer"})
        EXPECT_EQ(field(name)->text(), u("【全部】")) << name;
    EXPECT_EQ(search(), searched(""));
}

TEST_F(outstore_tab, a_document_without_partner_has_neither_column_nor_cells_of_one) {
    open(outbound_rows[5]);
    for (int column : {2, 7}) {
        EXPECT_TRUE(table->isColumnHidden(column));
        EXPECT_EQ(table->item(0, column), nullptr);
    }
}

TEST_F(outstore_tab, its_double_click_takes_the_current_row_and_not_the_index) {
    open(outbound_rows[0]);
    const QModelIndex first = table->model()->index(0, 1);
    outbound()->on_tablewidget_doubleClicked(first);
    expect_tip(table, u("请先选中行"), QPoint(10, 30));
    click_row(table, 2);
    with_editor([&] { outbound()->on_tablewidget_doubleClicked(first); },
                [](QWidget* editor) { EXPECT_EQ(child<QLineEdit>(editor, "txt_sn")->text(), u("N-3")); });
}
