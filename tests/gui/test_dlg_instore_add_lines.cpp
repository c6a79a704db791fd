#include "gui/dlg_instore_fixture.h"
#include "master/dlg_dept.h"
#include "master/dlg_search_company.h"
#include "master/dlg_search_emp.h"
#include "master/dlg_search_product.h"
#include "support/tree.h"

// What the user puts into a document: people, partners, lines.

class instore_editor_lines : public instore_editor {
protected:
    /** A document as it would stand on the server, in the mode of an edit. */
    void open_saved(std::initializer_list<const char*> line_ids) {
        open(1);
        struct_instore saved{};
        saved.id = QStringLiteral("12");
        for (const char* id : line_ids) {
            auto line = line_of(id);
            line.id = QLatin1String(id);
            line.main_id = QStringLiteral("m");
            saved.details.append(line);
        }
        editor->slot_instore_to_edit(saved);
    }
    void remove(QMessageBox::StandardButton answer = QMessageBox::Yes) {
        with_question([this] { click(editor.get(), "btn_delete"); }, QStringLiteral("确认删除"),
                      QStringLiteral("确认删除吗？"), answer);
    }
    void click_line(int row, Qt::KeyboardModifiers with = Qt::NoModifier) {
        QTest::mouseClick(table->viewport(), Qt::LeftButton, with,
                          table->visualItemRect(table->item(row, 2)).center());
    }
    QStringList products() { return column_texts(table, 1); }
    static QStringList words(std::initializer_list<const char*> texts) {
        QStringList result;
        for (const char* text : texts)
            result.append(QString::fromUtf8(text));
        return result;
    }
};

TEST_F(instore_editor_lines, operater_is_picked) {
    open(0);
    pick<dlg_search_emp>(editor.get(), "txt_operater", QStringLiteral("查询选择经办人"), double_click_first);
    EXPECT_EQ(field("txt_operater")->text(), QStringLiteral("张三"));
    pick<dlg_search_emp>(editor.get(), "txt_operater", QStringLiteral("查询选择经办人"),
                         [](dlg_search_emp* picker) { click(picker, "btn_close"); });
    EXPECT_EQ(field("txt_operater")->text(), QStringLiteral("张三")) << "closing changes nothing";
}

TEST_F(instore_editor_lines, all_in_a_picker_takes_the_choice_back) {
    open_filled(1, {"9"});
    pick<dlg_search_emp>(editor.get(), "txt_operater", QStringLiteral("查询选择经办人"),
                         [](dlg_search_emp* picker) { click(picker, "btn_all"); });
    EXPECT_EQ(field("txt_operater")->text(), QString()) << "without the word that lists have for it";
    click(editor.get(), "btn_submit");
    expect_tip(field("txt_operater"), QStringLiteral("请选择经办人"));
    choose_operater();
    pick<dlg_search_company>(editor.get(), "txt_company", QStringLiteral("查询选择供应商"),
                             [](dlg_search_company* picker) { click(picker, "btn_all"); });
    EXPECT_EQ(field("txt_company")->text(), QString());
    click(editor.get(), "btn_submit");
    expect_tip(field("txt_company"), QStringLiteral("请选择供应商"));
}

class instore_editor_partner : public instore_editor_lines, public testing::WithParamInterface<known_kind> {};

TEST_P(instore_editor_partner, is_picked_as_the_kind_says) {
    const QString title = QString::fromUtf8(GetParam().picker_title);
    for (int mode : {0, 1}) {
        open(mode, GetParam().type);
        server.forget();
        if (QLatin1String(GetParam().partner) == QLatin1String("company")) {
            pick<dlg_search_company>(editor.get(), "txt_company", title, [](dlg_search_company* picker) {
                EXPECT_TRUE(child<QPushButton>(picker, "btn_all")->isVisible());
                double_click_first(picker);
            });
            EXPECT_EQ(server.requests().first().body,
                      "type=" + QByteArray::number(GetParam().company_type) + "&page_num=1&page_size=10");
            EXPECT_EQ(field("txt_company")->text(), QStringLiteral("甲单位"));
        } else {
            pick<dlg_dept>(editor.get(), "txt_dept", title, [](dlg_dept* picker) {
                double_click_node(child<QTreeView>(picker, "treeview"), QStringLiteral("一车间"));
            });
            EXPECT_EQ(field("txt_dept")->text(), QStringLiteral("一车间"));
        }
    }
}

INSTANTIATE_TEST_SUITE_P(kinds, instore_editor_partner, testing::ValuesIn(inbound_rows, inbound_rows + 6),
                         [](const auto& p) { return std::string(p.param.page); });

TEST_F(instore_editor_lines, only_a_left_press_picks_and_it_goes_no_further) {
    open(0);
    for (const char* name : {"txt_operater", "txt_company"}) {
        QTest::mousePress(field(name), Qt::RightButton);
        QTest::mouseRelease(field(name), Qt::LeftButton);
        EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
        with_modal(
            [this, name] {
                QMouseEvent press(QEvent::MouseButtonPress, QPointF(3, 3), Qt::LeftButton, Qt::LeftButton,
                                  Qt::NoModifier);
                press.setAccepted(false);
                EXPECT_TRUE(QApplication::sendEvent(field(name), &press));
            },
            [](QWidget* picker) { picker->close(); });
    }
}

TEST_F(instore_editor_lines, a_saved_document_opens_no_picker) {
    for (int type : {1, 2}) {
        open(5, type);
        for (const char* name : {"txt_operater", "txt_company", "txt_dept"})
            QTest::mousePress(field(name), Qt::LeftButton);
        EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
        EXPECT_TRUE(server.requests().isEmpty());
    }
}

TEST_F(instore_editor_lines, a_line_is_added_by_its_dialog_and_the_service_hears_nothing) {
    open(0);
    server.forget();
    with_modal_of<dlg_instore_detail_add>(
        [this] { click(editor.get(), "btn_add"); },
        [this](dlg_instore_detail_add* dialog) {
            EXPECT_EQ(dialog->windowTitle(), QStringLiteral("添加入库明细"));
            EXPECT_EQ(dialog->parentWidget(), editor.get());
            pick<dlg_search_product>(dialog, "txt_product_name", QStringLiteral("查询选择货品基础信息"),
                                     double_click_first);
            type_into(dialog, "txt_amount", QStringLiteral("3"));
            child<QComboBox>(dialog, "comb_warehouse")->setCurrentIndex(2);
            type_into(dialog, "txt_place", QStringLiteral("B-2"));
            child<QTextEdit>(dialog, "txt_remark")->setPlainText(QStringLiteral("轻放"));
            click(dialog, "btn_save");
        });
    ASSERT_EQ(table->rowCount(), 1);
    expect_cells(table, 0,
                 {"0", "9", "扳手", "A1", "5", "工具", "9件", "12.50", "3", "37.50", "2", "副仓", "B-2",
                  "轻放", "1", ""});
    EXPECT_EQ(server.paths(), QList<QByteArray>({"wms_warehouse/get_option", "wms_product/get_page"}));
}

TEST_F(instore_editor_lines, a_cancelled_line_adds_no_row) {
    open(0);
    with_modal_of<dlg_instore_detail_add>([this] { click(editor.get(), "btn_add"); },
                                          [](dlg_instore_detail_add* line) { click(line, "btn_cancel"); });
    EXPECT_EQ(table->rowCount(), 0);
}

TEST_F(instore_editor_lines, a_row_shows_amount_times_price_and_is_new_whatever_the_line_says) {
    open(0);
    auto line = line_of("9");
    line.id = QStringLiteral("55");
    line.main_id = QStringLiteral("66");
    editor->slot_instore_detail_do_add(line);
    expect_cells(table, 0,
                 {"0", "9", "扳手", "A1", "5", "工具", "9件", "3.46", "2", "6.91", "1", "主仓", "A-1", "轻放",
                  "1", ""});
}

TEST_F(instore_editor_lines, deleting_needs_a_selection_and_a_yes) {
    open_filled(1, {"1", "2"});
    table->clearSelection();
    click(editor.get(), "btn_delete");
    expect_tip(table, QStringLiteral("请先选中行"), QPoint(10, 30));
    click_line(0);
    remove(QMessageBox::No);
    EXPECT_EQ(table->rowCount(), 2);
    remove();
    EXPECT_EQ(products(), words({"2"}));
    click_line(0);
    with_question([this] { action("删除")->trigger(); }, QStringLiteral("确认删除"),
                  QStringLiteral("确认删除吗？"), QMessageBox::Yes);
    EXPECT_EQ(table->rowCount(), 0);
    EXPECT_TRUE(server.requests().isEmpty()) << "new lines go without a call";
}

TEST_F(instore_editor_lines, saved_lines_are_deleted_from_the_last_to_the_first) {
    open_saved({"31", "0", "32", "33"});
    click_line(0);
    for (int row : {1, 2, 3})
        click_line(row, Qt::ControlModifier);
    server.answer("1");
    server.answer("0");
    server.answer("1");
    remove();
    EXPECT_EQ(server.paths(),
              QList<QByteArray>({"wms_instore_detail/do_delete", "wms_instore_detail/do_delete",
                                 "wms_instore_detail/do_delete"}));
    EXPECT_EQ(server.bodies("wms_instore_detail/do_delete"), QList<QByteArray>({"id=33", "id=32", "id=31"}));
    EXPECT_EQ(products(), words({"32"})) << "a refused row stays, silently, and the walk goes on";
    EXPECT_TRUE(shown_tip().isEmpty());
}

TEST_F(instore_editor_lines, a_deletion_without_an_answer_leaves_the_row) {
    for (const char* body : {"", "-1", "x", R"({"http_state":1})"}) {
        open_saved({"31"});
        click_line(0);
        server.answer(body);
        remove();
        EXPECT_EQ(table->rowCount(), 1) << body;
    }
}

TEST_F(instore_editor_lines, the_edit_of_a_line_has_no_way_in) {
    open(1);
    editor->slot_instore_detail_to_edit();
    expect_tip(table, QStringLiteral("请先选择行"), QPoint(10, 30));
    open_filled(1, {"9"});
    click_line(0);
    QTest::mouseDClick(table->viewport(), Qt::LeftButton, Qt::NoModifier,
                       table->visualItemRect(table->item(0, 2)).center());
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
}

TEST_F(instore_editor_lines, the_edit_of_a_line_rewrites_its_row) {
    open_saved({"31", "32"});
    table->setCurrentCell(1, 2);
    with_modal_of<dlg_instore_detail_add>(
        [this] { editor->slot_instore_detail_to_edit(); },
        [this](dlg_instore_detail_add* dialog) {
            EXPECT_EQ(dialog->windowTitle(), QStringLiteral("编辑货品明细"));
            EXPECT_EQ(dialog->parentWidget(), editor.get());
            EXPECT_EQ(child<QLineEdit>(dialog, "txt_total")->text(), QStringLiteral("6.91")) << "as shown";
            EXPECT_EQ(child<QComboBox>(dialog, "comb_warehouse")->currentIndex(), 1);
            type_into(dialog, "txt_amount", QStringLiteral("5"));
            type_into(dialog, "txt_place", QStringLiteral("C"));
            click(dialog, "btn_save");
        });
    expect_cells(table, 1,
                 {"32", "32", "扳手", "A1", "5", "工具", "9件", "3.46", "5", "17.30", "1", "主仓", "C",
                  "轻放", "1", "m"});
    expect_cells(table, 0,
                 {"31", "31", "扳手", "A1", "5", "工具", "9件", "3.46", "2", "6.91", "1", "主仓", "A-1",
                  "轻放", "1", "m"});
    EXPECT_EQ(server.paths(), QList<QByteArray>{"wms_warehouse/get_option"});
}
