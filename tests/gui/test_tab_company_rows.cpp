#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include "gui/tab_company_fixture.h"
#include "master/dlg_company_add.h"

class company_rows : public company_tab {
protected:
    company_rows() {
        open();
        server.forget();
    }

    /** Opens the dialog with a button, fills some fields and saves. */
    void save(const char* button, const QList<QPair<const char*, QString>>& texts) {
        with_modal_of<dlg_company_add>([this, button] { click(tab.get(), button); },
                                       [&texts](dlg_company_add* d) {
                                           for (const auto& t : texts)
                                               child<QLineEdit>(d, t.first)->setText(t.second);
                                           click(d, "btn_save");
                                       });
    }
    void add_partner() {
        save("btn_add", {{"txt_name", QStringLiteral("新")},
                         {"txt_address", QStringLiteral("路")},
                         {"txt_phone", QStringLiteral("5")}});
    }
};

TEST_F(company_rows, add_posts_and_puts_the_row_on_top) {
    click_row(table, 1);
    server.answer("{\"http_state\":\"1\",\"insert_id\":\"77\",\"datetime\":\"1586696220\"}");
    add_partner();
    ASSERT_EQ(server.paths(), QList<QByteArray>({"wms_company/do_add"}));
    EXPECT_EQ(server.last().body, QByteArray("&type=1&name=新&phone=5&address=路"));
    EXPECT_EQ(names(table), QStringList({QStringLiteral("新"), QStringLiteral("单位1"),
                                         QStringLiteral("单位2"), QStringLiteral("单位3")}));
    EXPECT_EQ(cell_text(table, 0, 0), QStringLiteral("77"));
    EXPECT_EQ(cell_text(table, 0, 10), QStringLiteral("1"));
    EXPECT_EQ(cell_text(table, 0, 11), QStringLiteral("2020-04-12 12:57"));
    EXPECT_EQ(table->currentRow(), 2) << "the row that was current moved down with its record";
    EXPECT_EQ(child<QLabel>(tab.get(), "lbl_total")->text(), QStringLiteral("共1页/3条记录"));
}

class refused_add : public company_rows, public testing::WithParamInterface<const char*> {};

TEST_P(refused_add, shows_nothing_and_the_dialog_is_gone) {
    server.answer(GetParam());
    add_partner();
    EXPECT_EQ(table->rowCount(), 3);
    EXPECT_TRUE(shown_tip().isEmpty());
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    EXPECT_EQ(server.bodies("wms_company/do_add").size(), 1);
}

INSTANTIATE_TEST_SUITE_P(answers, refused_add,
                         testing::Values("{\"http_state\":0}", "{\"http_state\":7,\"insert_id\":\"1\"}", "{}",
                                         "", "[1]", "7"));

TEST_F(company_rows, a_numeric_insert_id_reads_as_empty) {
    server.answer("{\"http_state\":1,\"insert_id\":77,\"datetime\":0}");
    add_partner();
    ASSERT_EQ(table->rowCount(), 4);
    EXPECT_TRUE(cell_text(table, 0, 0).isEmpty());
    EXPECT_TRUE(cell_text(table, 0, 11).isEmpty());
}

TEST_F(company_rows, a_failed_check_sends_nothing) {
    with_modal_of<dlg_company_add>([this] { click(tab.get(), "btn_add"); },
                                   [](dlg_company_add* d) {
                                       click(d, "btn_save");
                                       EXPECT_EQ(shown_tip(), QStringLiteral("名称不能为空"));
                                       EXPECT_TRUE(d->isVisible());
                                       click(d, "btn_cancel");
                                   });
    EXPECT_TRUE(server.requests().isEmpty());
}

TEST_F(company_rows, the_dialog_stays_on_the_screen_during_its_own_save) {
    server.answer(scripted_answer::late(30, "{\"http_state\":0}"));
    bool visible_meanwhile = false;
    with_modal_of<dlg_company_add>(
        [this] { click(tab.get(), "btn_add"); },
        [&](dlg_company_add* d) {
            for (const char* name : {"txt_name", "txt_address", "txt_phone"})
                child<QLineEdit>(d, name)->setText(QStringLiteral("1"));
            QTimer::singleShot(5, d, [&visible_meanwhile, d] { visible_meanwhile = d->isVisible(); });
            click(d, "btn_save");
        });
    EXPECT_TRUE(visible_meanwhile);
}

TEST_F(company_rows, edit_and_delete_need_a_row) {
    click(tab.get(), "btn_edit");
    expect_tip(table, QStringLiteral("请先选中行"), QPoint(10, 30));
    click(tab.get(), "btn_delete");
    expect_tip(table, QStringLiteral("请先选中行"), QPoint(10, 30));
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    EXPECT_TRUE(server.requests().isEmpty());
}

TEST_F(company_rows, edit_takes_the_row_and_patches_it) {
    click_row(table, 0);
    server.answer("1");
    with_modal_of<dlg_company_add>(
        [this] { click(tab.get(), "btn_edit"); },
        [](dlg_company_add* d) {
            EXPECT_EQ(child<QLineEdit>(d, "txt_name")->text(), QStringLiteral("单位1"));
            EXPECT_EQ(child<QLineEdit>(d, "txt_account")->text(), QStringLiteral("account1"));
            EXPECT_EQ(child<QLineEdit>(d, "txt_mobile")->text(), QStringLiteral("13800000001"));
            child<QLineEdit>(d, "txt_name")->setText(QStringLiteral("改"));
            child<QLineEdit>(d, "txt_remark")->clear();
            click(d, "btn_save");
        });
    EXPECT_EQ(server.paths(), QList<QByteArray>({"wms_company/do_edit"}));
    EXPECT_EQ(server.last().body, QByteArray("&id=1&name=改&phone=phone1&linkman=linkman1&mobile=13800000001"
                                             "&fax=fax1&address=address1&account=account1&bank=bank1"));
    EXPECT_EQ(cell_text(table, 0, 1), QStringLiteral("改"));
    EXPECT_TRUE(cell_text(table, 0, 9).isEmpty()) << "shown as cleared, though no key went out for it";
    EXPECT_EQ(cell_text(table, 0, 11), QStringLiteral("2020-04-12 12:57"));
}

TEST_F(company_rows, a_refused_edit_leaves_the_row_and_closes) {
    for (const char* body : {"0", "-3", "", "{\"http_state\":1}"}) {
        click_row(table, 1);
        server.answer(body);
        save("btn_edit", {{"txt_name", QStringLiteral("改")}});
        EXPECT_EQ(cell_text(table, 1, 1), QStringLiteral("单位2")) << body;
        EXPECT_TRUE(shown_tip().isEmpty());
    }
}

TEST_F(company_rows, the_record_keeps_the_kind_of_its_row) {
    table->item(0, 10)->setText(QStringLiteral("3"));
    click_row(table, 0);
    server.answer("1");
    with_modal_of<dlg_company_add>([this] { click(tab.get(), "btn_edit"); },
                                   [](dlg_company_add* d) {
                                       EXPECT_EQ(d->windowTitle(), QStringLiteral("编辑供应商"))
                                           << "the title has the tab's kind";
                                       click(d, "btn_save");
                                   });
    EXPECT_EQ(cell_text(table, 0, 10), QStringLiteral("3"));
}

TEST_F(company_rows, delete_asks_first) {
    click_row(table, 0);
    remove(QMessageBox::No);
    EXPECT_EQ(table->rowCount(), 3);
    with_modal_of<QMessageBox>([this] { click(tab.get(), "btn_delete"); },
                               [](QMessageBox* box) {
                                   EXPECT_EQ(box->standardButtons(), QMessageBox::Yes | QMessageBox::No);
                                   EXPECT_EQ(box->icon(), QMessageBox::Question);
                                   box->close();
                               });
    EXPECT_TRUE(server.requests().isEmpty());
}

TEST_F(company_rows, delete_walks_from_the_last_selected_row_to_the_first) {
    click_row(table, 0);
    click_row(table, 2, Qt::ShiftModifier);
    server.always("wms_company/do_delete", "1");
    remove(QMessageBox::Yes);
    EXPECT_EQ(server.bodies("wms_company/do_delete"), QList<QByteArray>({"id=3", "id=2", "id=1"}));
    EXPECT_EQ(table->rowCount(), 0);
    EXPECT_EQ(server.requests().size(), 3) << "no reload";
    EXPECT_EQ(child<QLabel>(tab.get(), "lbl_total")->text(), QStringLiteral("共1页/3条记录"));
}

TEST_F(company_rows, a_refused_delete_leaves_its_row_and_goes_on) {
    for (const char* refusal : {"0", "-1", "", "no"}) {
        click(tab.get(), "btn_search");
        click_row(table, 0);
        click_row(table, 2, Qt::ShiftModifier);
        server.forget();
        server.answer("1");
        server.answer(refusal);
        server.answer("1");
        remove(QMessageBox::Yes);
        EXPECT_EQ(server.requests().size(), 3);
        EXPECT_EQ(names(table), QStringList({QStringLiteral("单位2")})) << refusal;
        EXPECT_TRUE(shown_tip().isEmpty()) << "nothing is said";
        EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    }
}

TEST_F(company_rows, delete_reads_the_id_as_a_number) {
    table->item(0, 0)->setText(QStringLiteral("007"));
    table->item(1, 0)->setText(QStringLiteral("x"));
    click_row(table, 0);
    click_row(table, 1, Qt::ShiftModifier);
    remove(QMessageBox::Yes);
    EXPECT_EQ(server.bodies("wms_company/do_delete"), QList<QByteArray>({"id=0", "id=7"}));
}
