#include <QSignalSpy>

#include "gui/tab_stock_taking_fixture.h"
#include "stock/dlg_stock_taking_add.h"

// The rows of the list of stocktakings: viewed, added to, deleted.

class taking_rows : public taking_tab {
protected:
    /** Expects the editor to come, lets `drive` see it and closes it. */
    void with_editor(const std::function<void()>& act,
                     const std::function<void(dlg_stock_taking_add*)>& drive) {
        with_modal_of<dlg_stock_taking_add>(act, [&](dlg_stock_taking_add* editor) {
            EXPECT_EQ(editor->parentWidget(), tab.get());
            drive(editor);
            editor->close();
        });
    }
    static QString text_of(const QWidget* editor, const char* name) {
        return child<QLineEdit>(editor, name)->text();
    }
    static void expect_mode_of_a_saved_one(const QWidget* editor, bool writes) {
        EXPECT_EQ(child<QPushButton>(editor, "btn_submit")->isVisible(), writes);
        EXPECT_EQ(child<QPushButton>(editor, "btn_audit")->isVisible(), writes);
        EXPECT_TRUE(child<QLineEdit>(editor, "txt_sn")->isVisible());
    }
};

TEST_F(taking_rows, view_opens_the_current_row_with_its_lines) {
    open();
    click_row(table, 1);
    QSignalSpy emitted(tab.get(), &tab_stock_taking::signal_stock_taking_to_edit);
    with_editor([this] { click(tab.get(), "btn_view"); },
                [](dlg_stock_taking_add* editor) {
                    EXPECT_EQ(editor->windowTitle(), u("查看盘点"));
                    EXPECT_EQ(text_of(editor, "txt_sn"), u("P-2"));
                    EXPECT_EQ(text_of(editor, "txt_operater"), u("员工2"));
                    EXPECT_EQ(text_of(editor, "txt_writer"), u("用户2"));
                    EXPECT_EQ(text_of(editor, "txt_remark"), u("附注2"));
                    EXPECT_EQ(child<QTableWidget>(editor, "tablewidget")->rowCount(), 1);
                    expect_mode_of_a_saved_one(editor, false);
                });
    EXPECT_EQ(server.bodies(path("get_detail")), QList<QByteArray>{"id=2"});
    EXPECT_EQ(server.requests().size(), 1) << "closing the editor loads nothing";
    ASSERT_EQ(emitted.size(), 1);
    const auto record = emitted[0][0].value<struct_stock_taking>();
    EXPECT_EQ(record.id, u("2"));
    EXPECT_EQ(record.operater, u("o-2"));
    EXPECT_EQ(record.writer, u("w-2"));
    EXPECT_EQ(record.profitloss_amount, -2);
    EXPECT_DOUBLE_EQ(record.profitloss_total, -2.25);
    EXPECT_EQ(record.details.size(), 1);
    EXPECT_EQ(record.date_start, 0) << "nothing of the search";
}

TEST_F(taking_rows, a_double_click_views_whatever_the_rights_say) {
    open_with({"search"});
    server.forget();
    EXPECT_FALSE(action("查看")->isEnabled());
    with_editor([this] { double_click(2); },
                [](dlg_stock_taking_add* editor) {
                    EXPECT_EQ(editor->windowTitle(), u("查看盘点"));
                    EXPECT_EQ(text_of(editor, "txt_sn"), u("P-3"));
                    expect_mode_of_a_saved_one(editor, false);
                });
    EXPECT_EQ(server.bodies(path("get_detail")), QList<QByteArray>{"id=3"});
}

TEST_F(taking_rows, its_double_click_takes_the_current_row_and_not_the_index) {
    open();
    click_row(table, 0);
    with_editor([this] { tab->on_tablewidget_doubleClicked(table->model()->index(2, 1)); },
                [](dlg_stock_taking_add* editor) { EXPECT_EQ(text_of(editor, "txt_sn"), u("P-1")); });
}

TEST_F(taking_rows, edit_and_audit_are_there_and_nothing_leads_to_them) {
    open();
    const struct {
        void (tab_stock_taking::*open)();
        const char* title;
    } ways[] = {{&tab_stock_taking::slot_taking_to_edit, "编辑盘点"},
                {&tab_stock_taking::slot_taking_to_audit, "审核盘点"}};
    for (const auto& way : ways) {
        click_row(table, 0);
        with_editor([&] { (tab.get()->*way.open)(); },
                    [&](dlg_stock_taking_add* editor) {
                        EXPECT_EQ(editor->windowTitle(), u(way.title));
                        EXPECT_EQ(text_of(editor, "txt_sn"), u("P-1"));
                        expect_mode_of_a_saved_one(editor, true);
                    });
    }
    EXPECT_EQ(server.bodies(path("get_detail")), (QList<QByteArray>{"id=1", "id=1"}));
    for (const char* text : {"编辑", "审核"})
        EXPECT_FALSE(menu_texts(table).contains(u(text))) << text;
    for (const char* name : {"btn_edit", "btn_audit"})
        EXPECT_EQ(tab->findChild<QPushButton*>(QLatin1String(name)), nullptr) << name;
}

TEST_F(taking_rows, a_viewed_row_does_not_touch_the_search) {
    open();
    click_row(table, 1);
    with_editor([this] { click(tab.get(), "btn_view"); }, [](dlg_stock_taking_add*) {});
    EXPECT_EQ(search(), searched(""));
}

TEST_F(taking_rows, add_opens_an_empty_editor_that_knows_its_writer) {
    server.always("wms_stock_detail/lock_stock", "C1");
    server.always(path("do_add"), R"({"http_state":1,"insert_id":"77"})");
    server.always(path("update_profitloss"), "1");
    open();
    click_row(table, 0);
    g_http.current_user.id = u("9");
    QSignalSpy asked(tab.get(), &tab_stock_taking::signal_set_current_user);
    with_modal_of<dlg_stock_taking_add>([this] { click(tab.get(), "btn_add"); },
                                        [this](dlg_stock_taking_add* editor) {
                                            EXPECT_EQ(editor->windowTitle(), u("添加盘点"));
                                            EXPECT_TRUE(text_of(editor, "txt_remark").isEmpty());
                                            EXPECT_TRUE(server.requests().isEmpty());
                                            struct_emp operater;
                                            operater.id = u("3");
                                            editor->slot_emp_selected(operater);
                                            editor->slot_stock_taking_detail_do_add({});
                                            click(editor, "btn_submit");
                                            EXPECT_FALSE(editor->isVisible());
                                        });
    g_http.current_user = struct_user();
    EXPECT_EQ(asked.size(), 1);
    EXPECT_EQ(server.bodies(path("do_add")), QList<QByteArray>{"&operater=3&writer=9"});
    EXPECT_EQ(searches(), QList<QByteArray>{searched("")}) << "what was saved is searched for";
}

TEST_F(taking_rows, an_editor_that_is_left_loads_nothing_and_one_that_saved_searches_again) {
    open();
    field("txt_sn")->setText(u("s"));
    with_editor([this] { click(tab.get(), "btn_add"); }, [](dlg_stock_taking_add*) {});
    EXPECT_TRUE(server.requests().isEmpty());
    click_row(table, 0);
    with_editor([this] { click(tab.get(), "btn_view"); },
                [this](dlg_stock_taking_add* editor) {
                    emit editor->signal_stock_taking_get_list();
                    EXPECT_EQ(searches(), QList<QByteArray>{searched("&sn=s")});
                });
}

TEST_F(taking_rows, all_that_opens_a_row_and_delete_need_one) {
    open();
    const std::function<void()> ways[] = {
        [this] { click(tab.get(), "btn_view"); }, [this] { click(tab.get(), "btn_delete"); },
        [this] { tab->slot_taking_to_edit(); }, [this] { tab->slot_taking_to_audit(); },
        [this] { tab->on_tablewidget_doubleClicked(QModelIndex()); }};
    for (const auto& way : ways) {
        way();
        expect_tip(table, u("请先选中行"), QPoint(10, 30));
    }
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    EXPECT_TRUE(server.requests().isEmpty());
}

TEST_F(taking_rows, delete_asks_once_and_walks_backwards) {
    open();
    click_row(table, 0);
    click_row(table, 2, Qt::ShiftModifier);
    remove(QMessageBox::No);
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr) << "a second question";
    EXPECT_TRUE(server.requests().isEmpty());
    for (const char* answer : {"1", "0", "1"})
        server.answer(answer);
    remove();
    EXPECT_TRUE(shown_tip().isEmpty()) << "nothing is said afterwards";
    EXPECT_EQ(server.bodies(path("do_delete")), (QList<QByteArray>{"id=3", "id=2", "id=1"}));
    EXPECT_EQ(server.requests().size(), 3) << "no reload";
    EXPECT_EQ(names(table), QStringList{u("P-2")}) << "the refused one stays";
    EXPECT_EQ(child<QLabel>(tab.get(), "lbl_total")->text(), u("共1页/3条记录"));
}

TEST_F(taking_rows, a_failed_deletion_leaves_the_row_without_a_word) {
    open();
    for (const char* body : {"0", "-1", "", "no", "{\"http_state\":1}"}) {
        click_row(table, 1);
        server.answer(body);
        remove();
        EXPECT_EQ(table->rowCount(), 3) << body;
        EXPECT_TRUE(shown_tip().isEmpty());
        EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    }
}

TEST_F(taking_rows, delete_passes_the_id_as_text_without_the_blanks_around_it) {
    open();
    table->item(0, 0)->setText(u(" 007 "));
    click_row(table, 0);
    remove();
    EXPECT_EQ(server.bodies(path("do_delete")), QList<QByteArray>{"id=007"});
}

TEST_F(taking_rows, a_selection_from_the_bottom_upward_deletes_by_numbers_that_have_moved) {
    open();
    click_row(table, 2);
    click_row(table, 0, Qt::ControlModifier);
    server.always(path("do_delete"), "1");
    remove();
    EXPECT_EQ(server.bodies(path("do_delete")), (QList<QByteArray>{"id=1", "id="}));
    EXPECT_EQ(names(table), (QStringList{u("P-2"), u("P-3")}));
}
