#include <QPrintPreviewDialog>
#include <QSignalSpy>
#include <QTemporaryDir>

#include "gui/tab_stock_allot_fixture.h"
#include "support/paper.h"

// The rows of the list of transfers: viewed, added, deleted and printed.

class allot_rows : public allot_tab {
protected:
    void double_click(int row) {
        click_row(table, row);
        QTest::mouseDClick(table->viewport(), Qt::LeftButton, Qt::NoModifier,
                           table->visualItemRect(table->item(row, 1)).center());
    }
    QList<QByteArray> deleted() const { return server.bodies("wms_stock_allot/do_delete"); }
};

TEST_F(allot_rows, a_view_shows_the_current_row_under_a_title_of_one_word) {
    open();
    struct_stock_allot handed;
    QObject::connect(tab.get(), &tab_stock_allot::signal_stock_allot_to_edit, tab.get(),
                     [&handed](struct_stock_allot record) { handed = record; });
    click_row(table, 1);
    with_editor([this] { click(tab.get(), "btn_view"); },
                [](dlg_stock_allot_add* editor) {
                    EXPECT_EQ(editor->windowTitle(), QStringLiteral("查看"));
                    EXPECT_EQ(child<QLineEdit>(editor, "txt_sn")->text(), QStringLiteral("DB-2"));
                    EXPECT_FALSE(child<QPushButton>(editor, "btn_submit")->isVisible());
                    EXPECT_EQ(child<QTableWidget>(editor, "tablewidget")->rowCount(), 1);
                });
    EXPECT_EQ(server.bodies("wms_stock_allot/get_detail"), QList<QByteArray>{"id=2"});
    EXPECT_TRUE(searches().isEmpty()) << "closing the editor loads nothing";
    EXPECT_EQ(handed.id, QStringLiteral("2"));
    EXPECT_EQ(handed.sn, QStringLiteral("DB-2"));
    EXPECT_EQ(handed.warehouse_out, QStringLiteral("f2"));
    EXPECT_EQ(handed.warehouse_out_name, QStringLiteral("出仓2"));
    EXPECT_EQ(handed.warehouse_in, QStringLiteral("t2"));
    EXPECT_EQ(handed.warehouse_in_name, QStringLiteral("入仓2"));
    EXPECT_EQ(handed.operater, QStringLiteral("o2"));
    EXPECT_EQ(handed.operater_name, QStringLiteral("员工2"));
    EXPECT_EQ(handed.writer, QStringLiteral("w2"));
    EXPECT_EQ(handed.writer_name, QStringLiteral("用户2"));
    EXPECT_EQ(handed.remark, QStringLiteral("附注2"));
    ASSERT_EQ(handed.details.size(), 1);
    EXPECT_EQ(handed.details[0].amount, 3);
}

TEST_F(allot_rows, a_viewed_row_does_not_touch_the_search) {
    open();
    field("txt_sn")->setText(QStringLiteral("s"));
    with_editor([this] { double_click(2); }, [](dlg_stock_allot_add*) {});
    EXPECT_EQ(search(), searched("&sn=s"));
}

TEST_F(allot_rows, a_double_click_views_whatever_the_rights_say) {
    open_with({"search"});
    with_editor([this] { double_click(2); },
                [](dlg_stock_allot_add* editor) {
                    EXPECT_EQ(editor->windowTitle(), QStringLiteral("查看"));
                    EXPECT_EQ(child<QLineEdit>(editor, "txt_sn")->text(), QStringLiteral("DB-3"));
                });
}

TEST_F(allot_rows, edit_is_there_and_nothing_leads_to_it) {
    open();
    click_row(table, 0);
    with_editor([this] { tab->slot_stock_allot_to_edit(); },
                [](dlg_stock_allot_add* editor) {
                    EXPECT_EQ(editor->windowTitle(), QStringLiteral("编辑"));
                    EXPECT_TRUE(child<QPushButton>(editor, "btn_submit")->isVisible());
                });
    EXPECT_FALSE(menu_texts(table).contains(QStringLiteral("编辑")));
    EXPECT_EQ(tab->findChild<QPushButton*>(QStringLiteral("btn_edit")), nullptr);
}

TEST_F(allot_rows, add_opens_an_empty_editor_that_knows_its_writer) {
    g_http.current_user.id = QStringLiteral("9");
    open();
    grant("stock_allot", {"detail_add"});
    server.always("wms_warehouse/get_option_with_stat", R"([{"id":"3","name":"一号仓","sum_amount":"40"}])");
    const QSignalSpy told(tab.get(), &tab_stock_allot::signal_set_current_user);
    with_editor([this] { click(tab.get(), "btn_add"); },
                [&](dlg_stock_allot_add* editor) {
                    EXPECT_EQ(editor->windowTitle(), QStringLiteral("添加调拨"));
                    EXPECT_EQ(told.size(), 1);
                    child<QComboBox>(editor, "comb_warehouse_out")->setCurrentIndex(1);
                    child<QComboBox>(editor, "comb_warehouse_in")->setCurrentIndex(2);
                    struct_emp operater;
                    operater.id = QStringLiteral("4");
                    operater.name = QStringLiteral("顾");
                    editor->slot_emp_selected(operater);
                    editor->slot_stock_allot_detail_do_add(struct_stock_allot_detail());
                    click(editor, "btn_submit");
                });
    EXPECT_EQ(server.bodies("wms_stock_allot/do_add"),
              QList<QByteArray>{"&warehouse_out=3&warehouse_in=8&operater=4&writer=9"});
    EXPECT_EQ(searches(), QList<QByteArray>{searched("")}) << "a save makes the list search again";
    g_http.current_user = struct_user();
}

TEST_F(allot_rows, an_editor_that_says_so_makes_the_list_search_again) {
    open();
    click_row(table, 0);
    with_editor([this] { click(tab.get(), "btn_view"); },
                [](dlg_stock_allot_add* editor) { emit editor->signal_stock_allot_get_list(); });
    EXPECT_EQ(searches().size(), 1);
    with_editor([this] { click(tab.get(), "btn_add"); }, [](dlg_stock_allot_add*) {});
    EXPECT_EQ(searches().size(), 1) << "leaving it loads nothing";
}

TEST_F(allot_rows, view_edit_and_delete_need_a_row) {
    open();
    const std::function<void()> acts[] = {[this] { click(tab.get(), "btn_view"); },
                                          [this] { click(tab.get(), "btn_delete"); },
                                          [this] { tab->slot_stock_allot_to_edit(); },
                                          [this] { tab->on_tablewidget_doubleClicked(QModelIndex()); }};
    for (const auto& act : acts) {
        act();
        expect_tip(table, QStringLiteral("请先选中行"), QPoint(10, 30));
    }
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    EXPECT_TRUE(server.requests().isEmpty());
}

TEST_F(allot_rows, delete_asks_once_and_walks_backwards) {
    open();
    click_row(table, 0);
    click_row(table, 2, Qt::ShiftModifier);
    remove(QMessageBox::No);
    EXPECT_TRUE(server.requests().isEmpty());
    for (const char* answer : {"1", "0", "1"})
        server.answer(answer);
    remove();
    EXPECT_EQ(deleted(), (QList<QByteArray>{"id=3", "id=2", "id=1"}));
    EXPECT_EQ(server.requests().size(), 3) << "no reload";
    EXPECT_EQ(names(table), QStringList{QStringLiteral("DB-2")}) << "the refused one stays";
    EXPECT_TRUE(shown_tip().isEmpty());
    EXPECT_EQ(child<QLabel>(tab.get(), "lbl_total")->text(), QStringLiteral("共1页/3条记录"));
}

TEST_F(allot_rows, a_selection_from_the_bottom_upward_deletes_by_numbers_that_have_moved) {
    open();
    click_row(table, 2);
    click_row(table, 0, Qt::ControlModifier);
    server.always("wms_stock_allot/do_delete", "1");
    remove();
    EXPECT_EQ(deleted(), (QList<QByteArray>{"id=1", "id="}));
}

TEST_F(allot_rows, the_page_that_is_shown_is_printed) {
    open();
    server.always("wms_stock_allot/get_page", page_body({transfer(2)}));
    search();
    const QTemporaryDir folder;
    const QString file = folder.filePath(QStringLiteral("transfers.pdf"));
    with_preview([this] { click(tab.get(), "btn_print"); },
                 [this](QPrintPreviewDialog* preview) { EXPECT_EQ(preview->parentWidget(), tab.get()); },
                 file);
    tab->slot_print();
    // The last character is the number of the page.
    EXPECT_EQ(paper_texts(file).join(QString()),
              QStringLiteral("库存调拨单号调出仓调入仓经办人制单人备注时间DB-2出仓2入仓2员工2用户2附注2"
                             "2020-04-1212:581"));
}
