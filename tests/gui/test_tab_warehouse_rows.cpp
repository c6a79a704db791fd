#include <QCheckBox>
#include <QTest>

#include "gui/tab_warehouse_fixture.h"

class warehouse_rows : public warehouse_tab {
protected:
    warehouse_rows() { open(); }

    /** Fills what is required, the keeper by way of the picker, and saves. */
    void add_warehouse() {
        with_modal_of<dlg_warehouse_add>(
            [this] { click(tab.get(), "btn_add"); },
            [](dlg_warehouse_add* d) {
                child<QLineEdit>(d, "txt_name")->setText(QStringLiteral("新"));
                with_modal_of<dlg_search_emp>(
                    [d] { QTest::mousePress(child<QLineEdit>(d, "txt_keeper"), Qt::LeftButton); },
                    [](dlg_search_emp* picker) { pick(picker, 1); });
                click(d, "btn_save");
            });
    }
    /** Opens the dialog on the current row, changes what `change` changes, and saves. */
    void edit_warehouse(const std::function<void(dlg_warehouse_add*)>& change) {
        with_modal_of<dlg_warehouse_add>([this] { click(tab.get(), "btn_edit"); },
                                         [&](dlg_warehouse_add* d) {
                                             change(d);
                                             click(d, "btn_save");
                                         });
    }
};

TEST_F(warehouse_rows, add_posts_and_puts_the_row_on_top) {
    server.always("wms_warehouse/do_add", "{\"http_state\":1,\"insert_id\":\"77\",\"datetime\":1586696220}");
    add_warehouse();
    EXPECT_EQ(server.paths(), QList<QByteArray>({"wms_emp/get_page", "wms_warehouse/do_add"}));
    EXPECT_EQ(server.last().body, QByteArray("name=新&keeper=200&isdefault=0"));
    ASSERT_EQ(table->rowCount(), 4);
    expect_cells(table, 0, {"77", "新", "", "", "员工200", "", "", "", "200", "0", "2020-04-12 12:57"});
    EXPECT_EQ(child<QLabel>(tab.get(), "lbl_total")->text(), QStringLiteral("共1页/3条记录"));
}

class warehouse_refused_add : public warehouse_rows, public testing::WithParamInterface<const char*> {};

TEST_P(warehouse_refused_add, shows_nothing_and_the_dialog_is_gone) {
    server.always("wms_warehouse/do_add", GetParam());
    add_warehouse();
    EXPECT_EQ(table->rowCount(), 3);
    EXPECT_TRUE(shown_tip().isEmpty());
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    EXPECT_EQ(server.bodies("wms_warehouse/do_add").size(), 1);
}

INSTANTIATE_TEST_SUITE_P(answers, warehouse_refused_add,
                         testing::Values("{\"http_state\":0}", "{\"http_state\":7,\"insert_id\":\"1\"}", "{}",
                                         "", "[1]", "7"));

TEST_F(warehouse_rows, edit_takes_the_row_and_patches_it) {
    click_row(table, 1);
    server.answer("1");
    edit_warehouse([](dlg_warehouse_add* d) {
        EXPECT_EQ(d->windowTitle(), QStringLiteral("编辑仓库"));
        EXPECT_EQ(child<QLineEdit>(d, "txt_name")->text(), QStringLiteral("仓库2"));
        EXPECT_EQ(child<QLineEdit>(d, "txt_keeper")->text(), QStringLiteral("员工2"));
        EXPECT_EQ(child<QLineEdit>(d, "txt_mobile")->text(), QStringLiteral("13800000002"));
        EXPECT_EQ(child<QLineEdit>(d, "txt_phone")->text(), QStringLiteral("phone2"));
        EXPECT_EQ(child<QLineEdit>(d, "txt_address")->text(), QStringLiteral("address2"));
        EXPECT_EQ(child<QLineEdit>(d, "txt_remark")->text(), QStringLiteral("remark2"));
        EXPECT_FALSE(child<QCheckBox>(d, "chk_default")->isChecked());
        child<QLineEdit>(d, "txt_phone")->clear();
    });
    EXPECT_EQ(server.paths(), QList<QByteArray>({"wms_warehouse/do_edit"}));
    EXPECT_EQ(server.last().body, QByteArray("id=2&name=仓库2&phone=&keeper=2&address=address2"
                                             "&mobile=13800000002&isdefault=0&remark=remark2"));
    expect_cells(
        table, 1,
        {"2", "仓库2", "", "address2", "员工2", "13800000002", "", "remark2", "2", "0", "2020-04-12 12:58"});
    EXPECT_EQ(cell_text(table, 0, 10), QStringLiteral("2020-04-12 12:57")) << "the add time stays in its row";
}

TEST_F(warehouse_rows, two_rows_say_default_until_the_next_load) {
    click_row(table, 2);
    server.answer("1");
    edit_warehouse([](dlg_warehouse_add* d) { child<QCheckBox>(d, "chk_default")->setChecked(true); });
    EXPECT_TRUE(server.last().body.contains("&isdefault=1&"));
    for (int row : {0, 2}) {
        EXPECT_EQ(cell_text(table, row, 6), QStringLiteral("默认")) << row;
        EXPECT_EQ(cell_text(table, row, 9), QStringLiteral("1")) << row;
    }
    click(tab.get(), "btn_search");
    EXPECT_TRUE(cell_text(table, 2, 6).isEmpty());
}

TEST_F(warehouse_rows, an_edited_default_is_taken_from_its_hidden_value) {
    table->item(1, 6)->setText(QStringLiteral("默认"));
    click_row(table, 1);
    edit_warehouse(
        [](dlg_warehouse_add* d) { EXPECT_FALSE(child<QCheckBox>(d, "chk_default")->isChecked()); });
    click_row(table, 0);
    edit_warehouse(
        [](dlg_warehouse_add* d) { EXPECT_TRUE(child<QCheckBox>(d, "chk_default")->isChecked()); });
}

TEST_F(warehouse_rows, another_keeper_goes_out_by_id_and_shows_by_name) {
    click_row(table, 0);
    server.always("wms_warehouse/do_edit", "1");
    edit_warehouse([](dlg_warehouse_add* d) {
        with_modal_of<dlg_search_emp>(
            [d] { QTest::mousePress(child<QLineEdit>(d, "txt_keeper"), Qt::LeftButton); },
            [](dlg_search_emp* picker) { pick(picker, 0); });
    });
    EXPECT_TRUE(server.last().body.contains("&keeper=65&address"));
    EXPECT_FALSE(server.last().body.contains("keeper_name"));
    EXPECT_EQ(cell_text(table, 0, 4), QStringLiteral("员工65"));
    EXPECT_EQ(cell_text(table, 0, 8), QStringLiteral("65"));
}

TEST_F(warehouse_rows, a_refused_edit_leaves_the_row_and_closes) {
    for (const char* body : {"0", "-3", "", "{\"http_state\":1}"}) {
        click_row(table, 1);
        server.answer(body);
        edit_warehouse(
            [](dlg_warehouse_add* d) { child<QLineEdit>(d, "txt_name")->setText(QStringLiteral("改")); });
        EXPECT_EQ(cell_text(table, 1, 1), QStringLiteral("仓库2")) << body;
        EXPECT_TRUE(shown_tip().isEmpty());
    }
    EXPECT_EQ(server.requests().size(), 4);
}

TEST_F(warehouse_rows, edit_and_delete_need_a_row) {
    click(tab.get(), "btn_edit");
    expect_tip(table, QStringLiteral("请先选中行"), QPoint(10, 30));
    click(tab.get(), "btn_delete");
    expect_tip(table, QStringLiteral("请先选中行"), QPoint(10, 30));
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    EXPECT_TRUE(server.requests().isEmpty());
}

TEST_F(warehouse_rows, delete_asks_and_walks_backwards) {
    click_row(table, 0);
    click_row(table, 2, Qt::ShiftModifier);
    remove(QMessageBox::No);
    EXPECT_TRUE(server.requests().isEmpty());
    for (const char* answer : {"1", "0", "1"})
        server.answer(answer);
    remove();
    EXPECT_EQ(server.bodies("wms_warehouse/do_delete"), QList<QByteArray>({"id=3", "id=2", "id=1"}));
    EXPECT_EQ(names(table), QStringList({QStringLiteral("仓库2")})) << "the refused one stays";
    EXPECT_TRUE(shown_tip().isEmpty()) << "nothing is said";
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    EXPECT_EQ(server.requests().size(), 3) << "no reload";
}

TEST_F(warehouse_rows, delete_reads_the_id_as_text) {
    table->item(0, 0)->setText(QStringLiteral("007"));
    table->item(1, 0)->setText(QStringLiteral("x"));
    click_row(table, 0);
    click_row(table, 1, Qt::ShiftModifier);
    remove();
    EXPECT_EQ(server.bodies("wms_warehouse/do_delete"), QList<QByteArray>({"id=x", "id=007"}));
}

TEST_F(warehouse_rows, a_selection_from_the_bottom_upward_deletes_by_numbers_that_have_moved) {
    click_row(table, 2);
    click_row(table, 0, Qt::ControlModifier);
    server.always("wms_warehouse/do_delete", "1");
    remove();
    EXPECT_EQ(server.bodies("wms_warehouse/do_delete"), QList<QByteArray>({"id=1", "id="}));
    EXPECT_EQ(names(table), QStringList({QStringLiteral("仓库2"), QStringLiteral("仓库3")}));
}
