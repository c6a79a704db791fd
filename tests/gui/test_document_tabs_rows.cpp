#include "gui/document_tab_fixture.h"

class document_rows : public any_document_tab {
protected:
    /** What the editor asks the list to do after a save. */
    void save(QWidget* editor) {
        QMetaObject::invokeMethod(editor,
                                  kind->inbound ? "signal_instore_get_list" : "signal_outstore_get_list");
    }
    void run(const char* inbound_slot, const char* outbound_slot) {
        QMetaObject::invokeMethod(tab.get(), kind->inbound ? inbound_slot : outbound_slot);
    }
    static QString text_of(QWidget* editor, const char* name) {
        return child<QLineEdit>(editor, name)->text();
    }
};

INSTANTIATE_TEST_SUITE_P(inbound, document_rows, testing::ValuesIn(inbound_rows),
                         [](const auto& p) { return p.param.word(); });
INSTANTIATE_TEST_SUITE_P(outbound, document_rows, testing::ValuesIn(outbound_rows),
                         [](const auto& p) { return p.param.word(); });

TEST_P(document_rows, view_opens_the_current_row_with_its_lines) {
    open();
    click_row(table, 1);
    with_editor([this] { click(tab.get(), "btn_view"); },
                [this](QWidget* editor) {
                    EXPECT_EQ(editor->windowTitle(), u("查看") + u(kind->name));
                    EXPECT_EQ(text_of(editor, "txt_sn"), u("N-2"));
                    EXPECT_EQ(text_of(editor, "txt_operater"), u("员工2"));
                    EXPECT_EQ(text_of(editor, "txt_writer"), u("用户2"));
                    EXPECT_EQ(text_of(editor, "txt_remark"), u("附注2"));
                    EXPECT_EQ(text_of(editor, "txt_company"), kind->has("company") ? u("单位2") : QString());
                    EXPECT_EQ(text_of(editor, "txt_dept"), kind->has("dept") ? u("部门2") : QString());
                });
    EXPECT_EQ(server.bodies(path("get_detail")), QList<QByteArray>{"id=2"});
    EXPECT_TRUE(searches().isEmpty()) << "closing the editor loads nothing";
}

TEST_P(document_rows, a_double_click_views_whatever_the_rights_say) {
    open_with(GetParam(), {"search"});
    server.forget();
    EXPECT_FALSE(action("查看")->isEnabled());
    with_editor([this] { double_click(2); },
                [this](QWidget* editor) {
                    EXPECT_EQ(editor->windowTitle(), u("查看") + u(kind->name));
                    EXPECT_EQ(text_of(editor, "txt_sn"), u("N-3"));
                });
    EXPECT_EQ(server.bodies(path("get_detail")), QList<QByteArray>{"id=3"});
}

TEST_P(document_rows, edit_is_there_and_nothing_leads_to_it) {
    open();
    click_row(table, 0);
    with_editor([this] { run("slot_instore_to_edit", "slot_outstore_to_edit"); },
                [this](QWidget* editor) {
                    EXPECT_EQ(editor->windowTitle(), u("编辑") + u(kind->name));
                    EXPECT_EQ(text_of(editor, "txt_sn"), u("N-1"));
                });
    EXPECT_EQ(server.bodies(path("get_detail")), QList<QByteArray>{"id=1"});
    EXPECT_FALSE(menu_texts(table).contains(u("编辑")));
    EXPECT_EQ(tab->findChild<QPushButton*>(QStringLiteral("btn_edit")), nullptr);
}

TEST_P(document_rows, add_opens_an_empty_editor_under_its_title) {
    open();
    click_row(table, 0);
    QStringList titles;
    with_editor([this] { click(tab.get(), "btn_add"); },
                [&](QWidget* editor) {
                    titles << editor->windowTitle();
                    EXPECT_TRUE(text_of(editor, "txt_remark").isEmpty()) << "nothing of the row";
                });
    EXPECT_EQ(titles, QStringList{u("添加") + u(kind->name)});
    EXPECT_TRUE(server.bodies(path("get_detail")).isEmpty());
    EXPECT_TRUE(searches().isEmpty()) << "closing the editor loads nothing";
}

TEST_P(document_rows, a_saved_document_makes_the_list_search_again) {
    open();
    field("txt_sn")->setText(u("s"));
    int expected = 0;
    with_editor([this] { click(tab.get(), "btn_add"); },
                [&](QWidget* editor) {
                    save(editor);
                    EXPECT_EQ(searches().size(), ++expected);
                });
    click_row(table, 0);
    with_editor([this] { click(tab.get(), "btn_view"); },
                [&](QWidget* editor) {
                    save(editor);
                    EXPECT_EQ(searches().size(), ++expected);
                });
    EXPECT_EQ(searches().first(), searched("&sn=s"));
}

TEST_P(document_rows, view_edit_and_delete_need_a_row) {
    open();
    click(tab.get(), "btn_view");
    expect_tip(table, u("请先选中行"), QPoint(10, 30));
    click(tab.get(), "btn_delete");
    expect_tip(table, u("请先选中行"), QPoint(10, 30));
    run("slot_instore_to_edit", "slot_outstore_to_edit");
    expect_tip(table, u("请先选中行"), QPoint(10, 30));
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    EXPECT_TRUE(server.requests().isEmpty());
}

TEST_P(document_rows, delete_asks_once_and_walks_backwards) {
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
    EXPECT_EQ(server.paths(), (QList<QByteArray>{path("do_delete"), path("do_delete"), path("do_delete")}))
        << "no reload";
    EXPECT_EQ(server.bodies(path("do_delete")), (QList<QByteArray>{"id=3", "id=2", "id=1"}));
    EXPECT_EQ(names(table), QStringList{u("N-2")}) << "the refused one stays";
    EXPECT_EQ(child<QLabel>(tab.get(), "lbl_total")->text(), u("共1页/3条记录"));
}

TEST_P(document_rows, a_failed_deletion_leaves_the_row_without_a_word) {
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

TEST_P(document_rows, delete_passes_the_id_as_text) {
    open();
    table->item(0, 0)->setText(QStringLiteral("007"));
    table->item(1, 0)->setText(QStringLiteral("x"));
    click_row(table, 0);
    click_row(table, 1, Qt::ShiftModifier);
    remove();
    EXPECT_EQ(server.bodies(path("do_delete")), (QList<QByteArray>{"id=x", "id=007"}));
}

TEST_P(document_rows, a_selection_from_the_bottom_upward_deletes_by_numbers_that_have_moved) {
    open();
    click_row(table, 2);
    click_row(table, 0, Qt::ControlModifier);
    server.always(path("do_delete"), "1");
    remove();
    EXPECT_EQ(server.bodies(path("do_delete")), (QList<QByteArray>{"id=1", "id="}));
    EXPECT_EQ(names(table), (QStringList{u("N-2"), u("N-3")}));
}
