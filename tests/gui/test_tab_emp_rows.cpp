#include <QCheckBox>
#include <QTest>

#include "gui/tab_emp_fixture.h"

class emp_rows : public emp_tab {
protected:
    emp_rows() { open(); }

    void add_emp() {
        with_modal_of<dlg_emp_add>([this] { click(tab.get(), "btn_add"); },
                                   [](dlg_emp_add* d) {
                                       child<QLineEdit>(d, "txt_name")->setText(QStringLiteral("新"));
                                       child<QLineEdit>(d, "txt_jobnum")->setText(QStringLiteral("A9"));
                                       click(d, "btn_save");
                                   });
    }
    /** Opens the dialog on the current row, changes what `change` changes, and saves. */
    void edit_emp(const std::function<void(dlg_emp_add*)>& change) {
        with_modal_of<dlg_emp_add>([this] { click(tab.get(), "btn_edit"); },
                                   [&](dlg_emp_add* d) {
                                       change(d);
                                       click(d, "btn_save");
                                   });
    }
    static void rename(dlg_emp_add* d) { child<QLineEdit>(d, "txt_name")->setText(QStringLiteral("改")); }
};

TEST_F(emp_rows, cells) {
    expect_cells(table, 0,
                 {"1", "员工1", "110101199001011231", "A1", "13800000001", "address1", "remark1", "1", "2",
                  "是", "", "2020-04-12 12:57"});
    expect_cells(table, 1,
                 {"2", "员工2", "110101199001011232", "A2", "13800000002", "address2", "remark2", "2", "1",
                  "", "是", "2020-04-12 12:58"});
}

TEST_F(emp_rows, add_checks_posts_and_puts_the_row_on_top) {
    server.answer("0");
    server.answer("{\"http_state\":\"1\",\"insert_id\":\"77\",\"datetime\":\"1586696220\"}");
    add_emp();
    EXPECT_EQ(server.paths(), QList<QByteArray>({"wms_emp/check_jobnum_exist", "wms_emp/do_add"}));
    EXPECT_EQ(server.requests()[0].body, "jobnum=A9");
    EXPECT_EQ(server.last().body,
              QByteArray("name=新&jobnum=A9&mobile=&address=&idnum=&remark=&isdefault=2&dimission=2"));
    ASSERT_EQ(table->rowCount(), 4);
    expect_cells(table, 0, {"77", "新", "", "A9", "", "", "", "2", "2", "", "", "2020-04-12 12:57"});
    EXPECT_EQ(child<QLabel>(tab.get(), "lbl_total")->text(), QStringLiteral("共1页/3条记录"));
}

TEST_F(emp_rows, a_number_that_is_taken_keeps_the_dialog_open) {
    server.answer("1");
    with_modal_of<dlg_emp_add>([this] { click(tab.get(), "btn_add"); },
                               [](dlg_emp_add* d) {
                                   child<QLineEdit>(d, "txt_name")->setText(QStringLiteral("新"));
                                   child<QLineEdit>(d, "txt_jobnum")->setText(QStringLiteral("A9"));
                                   click(d, "btn_save");
                                   EXPECT_EQ(shown_tip(), QStringLiteral("已存在其他重复的工号"));
                                   EXPECT_TRUE(d->isVisible());
                                   click(d, "btn_cancel");
                               });
    EXPECT_EQ(server.requests().size(), 1);
    EXPECT_EQ(table->rowCount(), 3);
}

class emp_refused_add : public emp_rows, public testing::WithParamInterface<const char*> {};

TEST_P(emp_refused_add, shows_nothing_and_the_dialog_is_gone) {
    server.answer("0");
    server.answer(GetParam());
    add_emp();
    EXPECT_EQ(table->rowCount(), 3);
    EXPECT_TRUE(shown_tip().isEmpty());
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    EXPECT_EQ(server.bodies("wms_emp/do_add").size(), 1);
}

INSTANTIATE_TEST_SUITE_P(answers, emp_refused_add,
                         testing::Values("{\"http_state\":0}", "{\"http_state\":7,\"insert_id\":\"1\"}", "{}",
                                         "", "[1]", "7"));

TEST_F(emp_rows, edit_takes_the_row_checks_with_its_id_and_patches_it) {
    click_row(table, 1);
    for (const char* answer : {"0", "0", "0", "1"})
        server.answer(answer);
    edit_emp([](dlg_emp_add* d) {
        EXPECT_EQ(d->windowTitle(), QStringLiteral("编辑员工"));
        EXPECT_EQ(child<QLineEdit>(d, "txt_name")->text(), QStringLiteral("员工2"));
        EXPECT_EQ(child<QLineEdit>(d, "txt_idnum")->text(), QStringLiteral("110101199001011232"));
        EXPECT_EQ(child<QLineEdit>(d, "txt_jobnum")->text(), QStringLiteral("A2"));
        EXPECT_EQ(child<QLineEdit>(d, "txt_mobile")->text(), QStringLiteral("13800000002"));
        EXPECT_EQ(child<QLineEdit>(d, "txt_address")->text(), QStringLiteral("address2"));
        EXPECT_EQ(child<QLineEdit>(d, "txt_remark")->text(), QStringLiteral("remark2"));
        EXPECT_FALSE(child<QCheckBox>(d, "chk_default")->isChecked());
        EXPECT_TRUE(child<QCheckBox>(d, "chk_leave")->isChecked());
        child<QCheckBox>(d, "chk_default")->setChecked(true);
        child<QCheckBox>(d, "chk_leave")->setChecked(false);
        child<QLineEdit>(d, "txt_remark")->clear();
    });
    EXPECT_EQ(server.paths(), QList<QByteArray>({"wms_emp/check_idnum_exist", "wms_emp/check_jobnum_exist",
                                                 "wms_emp/check_mobile", "wms_emp/do_edit"}));
    EXPECT_EQ(server.requests()[0].body, "idnum=110101199001011232&id=2");
    EXPECT_EQ(server.requests()[1].body, "jobnum=A2&id=2");
    EXPECT_EQ(server.requests()[2].body, "mobile=13800000002&id=2");
    EXPECT_EQ(server.last().body, QByteArray("id=2&name=员工2&jobnum=A2&mobile=13800000002&address=address2"
                                             "&idnum=110101199001011232&remark=&isdefault=1&dimission=2"));
    expect_cells(table, 1,
                 {"2", "员工2", "110101199001011232", "A2", "13800000002", "address2", "", "1", "2", "是", "",
                  "2020-04-12 12:58"});
    EXPECT_EQ(cell_text(table, 0, 11), QStringLiteral("2020-04-12 12:57")) << "the add time stays in its row";
    EXPECT_EQ(cell_text(table, 0, 9), QStringLiteral("是"))
        << "the other default says so until the next load";
}

TEST_F(emp_rows, an_emptied_mobile_number_goes_out_empty_and_unchecked) {
    click_row(table, 0);
    server.always("wms_emp/do_edit", "1");
    edit_emp([](dlg_emp_add* d) {
        child<QLineEdit>(d, "txt_mobile")->clear();
        child<QLineEdit>(d, "txt_idnum")->clear();
    });
    EXPECT_EQ(server.paths(), QList<QByteArray>({"wms_emp/check_jobnum_exist", "wms_emp/do_edit"}));
    EXPECT_TRUE(server.last().body.contains("&mobile=&address=address1&idnum=&remark"));
    EXPECT_TRUE(cell_text(table, 0, 4).isEmpty());
}

TEST_F(emp_rows, a_refused_edit_leaves_the_row_and_closes) {
    for (const char* body : {"0", "-3", "", "{\"http_state\":1}"}) {
        click_row(table, 1);
        server.always("wms_emp/do_edit", body);
        edit_emp(rename);
        EXPECT_EQ(cell_text(table, 1, 1), QStringLiteral("员工2")) << body;
        EXPECT_TRUE(shown_tip().isEmpty());
    }
    EXPECT_EQ(server.bodies("wms_emp/do_edit").size(), 4);
}

TEST_F(emp_rows, edit_and_delete_need_a_row) {
    click(tab.get(), "btn_edit");
    expect_tip(table, QStringLiteral("请先选中行"), QPoint(10, 30));
    click(tab.get(), "btn_delete");
    expect_tip(table, QStringLiteral("请先选中行"), QPoint(10, 30));
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    EXPECT_TRUE(server.requests().isEmpty());
}

TEST_F(emp_rows, delete_asks_and_walks_backwards) {
    click_row(table, 0);
    click_row(table, 2, Qt::ShiftModifier);
    remove(QMessageBox::No);
    EXPECT_TRUE(server.requests().isEmpty());
    for (const char* answer : {"1", "0", "1"})
        server.answer(answer);
    remove();
    EXPECT_EQ(server.bodies("wms_emp/do_delete"), QList<QByteArray>({"id=3", "id=2", "id=1"}));
    EXPECT_EQ(names(table), QStringList({QStringLiteral("员工2")})) << "the refused one stays";
    EXPECT_TRUE(shown_tip().isEmpty()) << "nothing is said";
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    EXPECT_EQ(server.requests().size(), 3) << "no reload";
}

TEST_F(emp_rows, delete_reads_the_id_as_a_number) {
    table->item(0, 0)->setText(QStringLiteral("007"));
    table->item(1, 0)->setText(QStringLiteral("x"));
    click_row(table, 0);
    click_row(table, 1, Qt::ShiftModifier);
    remove();
    EXPECT_EQ(server.bodies("wms_emp/do_delete"), QList<QByteArray>({"id=0", "id=7"}));
}

TEST_F(emp_rows, a_name_with_an_ampersand_goes_out_as_it_stands) {
    click_row(table, 0);
    edit_emp([](dlg_emp_add* d) { child<QLineEdit>(d, "txt_name")->setText(QStringLiteral("A&id=3")); });
    EXPECT_TRUE(server.last().body.startsWith("id=1&name=A&id=3&jobnum=A1"));
}

TEST_F(emp_rows, a_selection_from_the_bottom_upward_deletes_by_numbers_that_have_moved) {
    click_row(table, 2);
    click_row(table, 0, Qt::ControlModifier);
    server.always("wms_emp/do_delete", "1");
    remove();
    EXPECT_EQ(server.bodies("wms_emp/do_delete"), QList<QByteArray>({"id=1", "id=0"}));
    EXPECT_EQ(names(table), QStringList({QStringLiteral("员工2"), QStringLiteral("员工3")}));
}
