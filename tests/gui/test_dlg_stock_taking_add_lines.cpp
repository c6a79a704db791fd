#include "gui/taking_fixture.h"

// The lines of the stocktaking editor and their claims: taken when a line is accepted, given back when it is
// deleted or the document abandoned.

class taking_lines : public taking_test {};

TEST_F(taking_lines, an_accepted_line_is_shown_and_its_whole_stock_row_claimed) {
    open(0);
    add_line(2, 17);
    EXPECT_EQ(wire(), words({"wms_stock_detail/lock_stock lock_type=2&id=2"})) << "without a quantity";
    ASSERT_EQ(table->rowCount(), 1);
    expect_cells(table, 0,
                 {"0", "w2", "仓2", "A2", "p2", "货2", "s2", "c2", "2.50", "20", "17", "-3", "-7.00", "批2",
                  "2", "1", "C1"});
}

TEST_F(taking_lines, the_line_stands_in_the_table_before_its_claim_goes_out) {
    open(0);
    QString seen;
    server.always("wms_stock_detail/lock_stock", [&](const recorded_request&) {
        seen = QString::number(table->rowCount()) +
               (table->item(0, 16) == nullptr ? QStringLiteral(" open") : QStringLiteral(" claimed"));
        return scripted_answer("C1");
    });
    add_line(1, 1);
    EXPECT_EQ(seen, QStringLiteral("1 open"));
}

TEST_F(taking_lines, a_new_line_sets_the_widths_of_the_columns_anew) {
    open(0);
    const auto expect_widths = [this] {
        const auto* header = table->horizontalHeader();
        for (int i = 0; i < header->count(); ++i)
            EXPECT_EQ(header->sectionResizeMode(i),
                      i == 0 ? QHeaderView::ResizeToContents : QHeaderView::Stretch);
    };
    table->horizontalHeader()->setSectionResizeMode(QHeaderView::Interactive);
    add_line(1, 1);
    expect_widths();
    open(5);
    table->horizontalHeader()->setSectionResizeMode(QHeaderView::Interactive);
    dialog->slot_stock_taking_to_edit(saved_taking());
    expect_widths();
}

TEST_F(taking_lines, the_line_dialog_that_is_cancelled_adds_nothing) {
    open(0);
    with_modal_of<dlg_stock_taking_detail_add>([this] { click(dialog.get(), "btn_add"); },
                                               [](dlg_stock_taking_detail_add* line) {
                                                   EXPECT_EQ(line->windowTitle(), u("添加盘点明细"));
                                                   line->slot_stock_selected(stock(1));
                                                   click(line, "btn_cancel");
                                               });
    EXPECT_EQ(table->rowCount(), 0);
    EXPECT_TRUE(wire().isEmpty());
}

TEST_F(taking_lines, one_stock_row_for_two_lines_has_two_claims) {
    open(0);
    add_line(2, 4);
    add_line(2, 21);
    EXPECT_EQ(wire(), words({"wms_stock_detail/lock_stock lock_type=2&id=2",
                             "wms_stock_detail/lock_stock lock_type=2&id=2"}));
    EXPECT_EQ(column_texts(table, 14), words({"2", "2"}));
    EXPECT_EQ(column_texts(table, 16), words({"C1", "C2"}));
}

TEST_F(taking_lines, any_answer_to_a_claim_is_kept_as_its_id_without_a_word) {
    for (const scripted_answer& answer :
         {scripted_answer("0"), scripted_answer(""), scripted_answer("refused"),
          scripted_answer("{\"http_state\":0}")}) {
        open(0);
        server.always("wms_stock_detail/lock_stock", answer);
        add_line(1, 1);
        ASSERT_EQ(table->rowCount(), 1);
        ASSERT_NE(table->item(0, 16), nullptr);
        EXPECT_EQ(cell_text(table, 0, 16), QString::fromUtf8(answer.body));
        EXPECT_TRUE(shown_tip().isEmpty());
        EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    }
}

TEST_F(taking_lines, a_claim_that_is_lost_on_its_way_leaves_a_line_without_one) {
    open(0);
    server.always("wms_stock_detail/lock_stock", scripted_answer::dropped());
    add_line(1, 1);
    EXPECT_EQ(table->rowCount(), 1);
    EXPECT_EQ(cell_text(table, 0, 16), QString());
}

TEST_F(taking_lines, deletion_needs_a_selection_and_a_yes) {
    open_with_lines({1});
    table->clearSelection();
    table->setCurrentCell(-1, -1);
    click(dialog.get(), "btn_delete");
    expect_tip(table, u("请先选中行"), QPoint(10, 30));
    table->selectRow(0);
    remove(QMessageBox::No);
    EXPECT_EQ(table->rowCount(), 1);
    EXPECT_TRUE(wire().isEmpty());
}

TEST_F(taking_lines, deletion_gives_claims_back_from_the_last_row_to_the_first) {
    open_with_lines({1, 2, 3});
    table->setSelectionMode(QAbstractItemView::MultiSelection);
    table->selectRow(0);
    table->selectRow(2);
    remove();
    EXPECT_EQ(wire(), unlocks({"C3", "C1"}));
    EXPECT_EQ(column_texts(table, 16), words({"C2"}));
}

TEST_F(taking_lines, a_row_goes_though_its_claim_could_not_be_given_back) {
    for (const char* refusal : {"0", "", "-1", "no"}) {
        claims = 0;
        open_with_lines({1, 2});
        server.always("wms_stock_detail/unlock_stock", refusal);
        table->selectAll();
        remove();
        EXPECT_EQ(wire(), unlocks({"C2", "C1"})) << refusal;
        EXPECT_EQ(table->rowCount(), 0);
        EXPECT_TRUE(shown_tip().isEmpty()) << "silently";
    }
    open_with_lines({1});
    server.always("wms_stock_detail/unlock_stock", scripted_answer::dropped());
    table->selectRow(0);
    remove();
    EXPECT_EQ(table->rowCount(), 0) << "nor without an answer";
}

TEST_F(taking_lines, a_row_without_an_id_stays_and_nothing_goes_out_for_it) {
    open_with_lines({1, 2, 3});
    table->item(1, 0)->setText(QString());
    table->selectAll();
    remove();
    EXPECT_EQ(wire(), unlocks({"C3", "C1"}));
    EXPECT_EQ(column_texts(table, 16), words({"C2"}));
}

TEST_F(taking_lines, a_selection_from_the_bottom_upward_deletes_by_numbers_that_have_moved) {
    open_with_lines({1, 2, 3});
    for (int row : {2, 0})
        table->selectionModel()->select(table->model()->index(row, 2),
                                        QItemSelectionModel::Select | QItemSelectionModel::Rows);
    remove();
    EXPECT_EQ(wire(), unlocks({"C1"})) << "there is no third row any more";
    EXPECT_EQ(column_texts(table, 16), words({"C2", "C3"}));
}

TEST_F(taking_lines, the_button_gives_all_claims_back_once_and_rejects) {
    open_with_lines({1, 2, 3});
    int while_open = 0;
    server.always("wms_stock_detail/unlock_stock", [&](const recorded_request&) {
        while_open += dialog->isVisible() ? 1 : 0;
        return scripted_answer("0");
    });
    click(dialog.get(), "btn_cancel");
    EXPECT_EQ(wire(), unlocks({"C1", "C2", "C3"})) << "whatever the service answers";
    EXPECT_EQ(while_open, 3) << "first the claims, then the dialog";
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_EQ(dialog->result(), int(QDialog::Rejected));
    EXPECT_EQ(listed->size(), 0);
}

TEST_F(taking_lines, the_close_box_and_escape_give_all_claims_back_once) {
    const std::function<void()> ways[] = {[this] { dialog->close(); },
                                          [this] { QTest::keyClick(dialog.get(), Qt::Key_Escape); },
                                          [this] { QTest::keyClick(table, Qt::Key_Escape); }};
    for (const auto& leave : ways) {
        claims = 0;
        open_with_lines({1, 2, 3});
        leave();
        EXPECT_EQ(wire(), unlocks({"C1", "C2", "C3"}));
        EXPECT_FALSE(dialog->isVisible());
        EXPECT_EQ(dialog->result(), int(QDialog::Rejected));
        EXPECT_EQ(listed->size(), 0);
    }
}

TEST_F(taking_lines, every_way_out_ends_a_modal_run) {
    const std::function<void()> ways[] = {[this] { click(dialog.get(), "btn_cancel"); },
                                          [this] { dialog->close(); },
                                          [this] { QTest::keyClick(dialog.get(), Qt::Key_Escape); }};
    for (const auto& leave : ways) {
        claims = 0;
        open_with_lines({1});
        dialog->hide();
        with_modal([this] { dialog->exec(); }, [&](QWidget*) { leave(); });
        dialog.reset();
        EXPECT_EQ(wire(), unlocks({"C1"}));
    }
}

TEST_F(taking_lines, leaving_anything_but_a_new_document_gives_nothing_back) {
    const std::function<void()> ways[] = {[this] { click(dialog.get(), "btn_cancel"); },
                                          [this] { dialog->close(); },
                                          [this] { QTest::keyClick(dialog.get(), Qt::Key_Escape); }};
    for (int mode : {1, 5, 6})
        for (const auto& leave : ways) {
            open(mode);
            dialog->slot_stock_taking_to_edit(saved_taking());
            leave();
            EXPECT_FALSE(dialog->isVisible());
            EXPECT_TRUE(wire().isEmpty()) << mode;
        }
}

TEST_F(taking_lines, presses_while_claims_are_given_back_do_not_give_them_back_twice) {
    open_with_lines({1, 2});
    server.always("wms_stock_detail/unlock_stock", [this](const recorded_request&) {
        if (server.requests().size() > 4) return scripted_answer("1");
        click(dialog.get(), "btn_cancel");
        dialog->close();
        QTest::keyClick(dialog.get(), Qt::Key_Escape);
        dialog->on_btn_audit_clicked();
        EXPECT_TRUE(dialog->isVisible());
        return scripted_answer("1");
    });
    click(dialog.get(), "btn_cancel");
    EXPECT_EQ(wire(), unlocks({"C1", "C2"}));
    EXPECT_FALSE(dialog->isVisible());
}

TEST_F(taking_lines, no_line_is_begun_and_no_picker_opens_while_calls_are_under_way) {
    open_with_lines({1});
    bool begun = true;
    bool picked = true;
    server.always("wms_stock_detail/unlock_stock", [&](const recorded_request&) {
        begun = opens_modal([this] { click(dialog.get(), "btn_add"); });
        picked = presses_open_a_picker(dialog.get(), {"txt_operater"});
        return scripted_answer("1");
    });
    table->selectRow(0);
    remove();
    EXPECT_FALSE(begun || picked);
    EXPECT_EQ(table->rowCount(), 0);
}

TEST_F(taking_lines, a_second_press_while_the_claim_is_on_its_way_adds_no_second_line) {
    open(0);
    server.always("wms_stock_detail/lock_stock", [this](const recorded_request&) {
        if (claims == 0) click(QApplication::activeModalWidget(), "btn_submit");
        return scripted_answer("C" + QByteArray::number(++claims));
    });
    add_line(1, 1);
    EXPECT_EQ(table->rowCount(), 1);
    EXPECT_EQ(wire().size(), 1);
}

TEST_F(taking_lines, a_line_of_a_picked_stock_row_is_claimed) {
    const QJsonObject row{{QStringLiteral("id"), u("88")},
                          {QStringLiteral("product"), u("p8")},
                          {QStringLiteral("product_name"), u("钉")},
                          {QStringLiteral("warehouse"), u("w8")},
                          {QStringLiteral("warehouse_name"), u("库")},
                          {QStringLiteral("place"), u("A8")},
                          {QStringLiteral("price"), u("2.5")},
                          {QStringLiteral("amount"), u("7")}};
    server.always("wms_stock_detail/get_page", page_body({row}));
    open(0);
    with_modal_of<dlg_stock_taking_detail_add>(
        [this] { click(dialog.get(), "btn_add"); },
        [](dlg_stock_taking_detail_add* line) {
            pick<dlg_search_stock>(line, "txt_product_name", u("选择货品库存"), double_click_first);
            EXPECT_EQ(child<QLineEdit>(line, "txt_sys_amount")->text(), u("7"));
            type_into(line, "txt_real_amount", u("10"));
            click(line, "btn_submit");
        });
    EXPECT_EQ(wire(), words({"wms_stock_detail/lock_stock lock_type=2&id=88"}));
    expect_cells(
        table, 0,
        {"0", "w8", "库", "A8", "p8", "钉", "", "", "2.50", "7", "10", "3", "7.00", "", "88", "1", "C1"});
}

class taking_line_edit : public taking_test {
protected:
    void edit(const std::function<void(dlg_stock_taking_detail_add*)>& drive) {
        with_modal_of<dlg_stock_taking_detail_add>([this] { dialog->slot_stock_taking_detail_to_edit(); },
                                                   drive);
    }
};

TEST_F(taking_line_edit, asks_for_a_row) {
    open(0);
    dialog->slot_stock_taking_detail_to_edit();
    expect_tip(table, u("请先选择行"), QPoint(10, 30));
}

TEST_F(taking_line_edit, opens_the_row_and_comes_to_nothing) {
    open_with_lines({2});
    table->setCurrentCell(0, 2);
    QSignalSpy to_edit(dialog.get(), &dlg_stock_taking_add::signal_stock_taking_detail_to_edit);
    edit([](dlg_stock_taking_detail_add* line) {
        EXPECT_EQ(line->windowTitle(), u("编辑货品明细"));
        EXPECT_EQ(child<QLineEdit>(line, "txt_product_name")->text(), u("货2"));
        type_into(line, "txt_real_amount", u("5"));
        click(line, "btn_submit");
        EXPECT_TRUE(line->isVisible());
        line->close();
    });
    ASSERT_EQ(to_edit.size(), 1);
    const auto line = to_edit.first().first().value<struct_stock_taking_detail>();
    EXPECT_EQ(line.id, u("0"));
    EXPECT_EQ(line.stock_id, u("2"));
    EXPECT_EQ(line.real_amount, 19);
    EXPECT_EQ(line.locked_id, u("C1"));
    EXPECT_EQ(cell_text(table, 0, 10), u("19")) << "the row is as before";
    EXPECT_TRUE(wire().isEmpty());
}

TEST_F(taking_line_edit, rewrites_the_row_but_its_claim) {
    open_with_lines({1, 2});
    table->setCurrentCell(1, 2);
    auto edited = counted_line(3);
    edited.changed = 1;
    edited.locked_id = u("other");
    dialog->slot_stock_taking_detail_do_edit(edited);
    expect_cells(table, 1,
                 {"L3", "w3", "仓3", "A3", "p3", "货3", "s3", "c3", "3.50", "30", "29", "-1", "-3.00", "批3",
                  "3", "1", "C2"});
    EXPECT_EQ(cell_text(table, 0, 5), u("货1"));
}
