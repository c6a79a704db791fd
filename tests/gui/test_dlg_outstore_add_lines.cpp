#include "gui/outstore_fixture.h"

// The lines of the outbound editor and their claims: taken when a line is accepted, given back when it is
// deleted or the document abandoned.

class outstore_lines : public outstore_test {
protected:
    void open_with_lines(std::initializer_list<int> rows) {
        open(0);
        for (int n : rows)
            add_line(n, n);
        server.forget();
    }
    void remove(QMessageBox::StandardButton answer = QMessageBox::Yes) {
        with_question([this] { click(dialog.get(), "btn_delete"); }, QStringLiteral("确认删除"),
                      QStringLiteral("确认删除吗？"), answer);
    }
    static QStringList unlocks(std::initializer_list<const char*> ids) {
        QStringList calls;
        for (const char* id : ids)
            calls.append(QStringLiteral("wms_stock_detail/unlock_stock locked_id=") + QString::fromUtf8(id) +
                         QStringLiteral("&lock_type=3"));
        return calls;
    }
};

TEST_F(outstore_lines, an_accepted_line_is_shown_and_claimed) {
    open(0);
    add_line(2, 4);
    EXPECT_EQ(wire(), words({"wms_stock_detail/lock_stock lock_type=3&id=2&amount=4&total=10"}));
    ASSERT_EQ(table->rowCount(), 1);
    expect_cells(table, 0,
                 {"0", "p2", "货2", "c2", "5", "类", "s2", "2.50", "4", "10.00", "w2", "仓2", "A2", "批2",
                  "2", "0", "", "C1"});
}

TEST_F(outstore_lines, the_line_stands_in_the_table_before_its_claim_goes_out) {
    open(0);
    QString seen;
    server.always("wms_stock_detail/lock_stock", [&](const recorded_request&) {
        seen = QString::number(table->rowCount()) +
               (table->item(0, 17) == nullptr ? QStringLiteral(" open") : QStringLiteral(" claimed"));
        return scripted_answer("C1");
    });
    add_line(1, 1);
    EXPECT_EQ(seen, QStringLiteral("1 open"));
}

TEST_F(outstore_lines, the_line_dialog_that_is_cancelled_adds_nothing) {
    open(0);
    with_modal_of<dlg_outstore_detail_add>([this] { click(dialog.get(), "btn_add"); },
                                           [](dlg_outstore_detail_add* line) {
                                               line->slot_stock_selected(stock(1));
                                               click(line, "btn_cancel");
                                           });
    EXPECT_EQ(table->rowCount(), 0);
    EXPECT_TRUE(wire().isEmpty());
}

TEST_F(outstore_lines, the_claim_is_of_what_column_9_shows_before_it_is_rounded_in_six_digits) {
    open(0);
    auto row = stock(1);
    row.price = 1234.56;
    row.amount = 1001;
    add_line(row, 1001);
    EXPECT_EQ(wire(), words({"wms_stock_detail/lock_stock lock_type=3&id=1&amount=1001&total=1.23579e+06"}));
    EXPECT_EQ(cell_text(table, 0, 9), QStringLiteral("1235794.56"));
}

TEST_F(outstore_lines, a_line_without_units_is_claimed_without_amount_and_total) {
    open(0);
    add_line(1, 0);
    EXPECT_EQ(wire(), words({"wms_stock_detail/lock_stock lock_type=3&id=1"}));
    EXPECT_EQ(cell_text(table, 0, 9), QStringLiteral("0.00"));
}

TEST_F(outstore_lines, one_stock_row_for_two_lines_has_two_claims) {
    open(0);
    add_line(2, 4);
    add_line(2, 20);
    EXPECT_EQ(wire(), words({"wms_stock_detail/lock_stock lock_type=3&id=2&amount=4&total=10",
                             "wms_stock_detail/lock_stock lock_type=3&id=2&amount=20&total=50"}));
    EXPECT_EQ(column_texts(table, 14), words({"2", "2"}));
    EXPECT_EQ(column_texts(table, 17), words({"C1", "C2"}));
}

TEST_F(outstore_lines, any_answer_to_a_claim_is_kept_as_its_id) {
    for (const char* answer : {"0", "", "7", "refused", "{\"http_state\":0}"}) {
        open(0);
        server.always("wms_stock_detail/lock_stock", answer);
        add_line(1, 1);
        ASSERT_EQ(table->rowCount(), 1) << answer;
        ASSERT_NE(table->item(0, 17), nullptr);
        EXPECT_EQ(cell_text(table, 0, 17), QString::fromUtf8(answer));
    }
}

TEST_F(outstore_lines, a_claim_that_is_lost_on_its_way_leaves_a_line_without_one) {
    open(0);
    server.always("wms_stock_detail/lock_stock", scripted_answer::dropped());
    add_line(1, 1);
    EXPECT_EQ(table->rowCount(), 1);
    EXPECT_EQ(cell_text(table, 0, 17), QString());
}

TEST_F(outstore_lines, a_second_press_while_the_claim_is_on_its_way_adds_no_second_line) {
    open(0);
    server.always("wms_stock_detail/lock_stock", [this](const recorded_request&) {
        if (claims == 0) click(QApplication::activeModalWidget(), "btn_save");
        return scripted_answer("C" + QByteArray::number(++claims));
    });
    add_line(1, 1);
    EXPECT_EQ(table->rowCount(), 1);
    EXPECT_EQ(wire().size(), 1);
    EXPECT_EQ(cell_text(table, 0, 17), QStringLiteral("C1"));
}

TEST_F(outstore_lines, deletion_needs_a_selection_and_a_yes) {
    open_with_lines({1});
    table->clearSelection();
    table->setCurrentCell(-1, -1);
    click(dialog.get(), "btn_delete");
    expect_tip(table, QStringLiteral("请先选中行"), QPoint(10, 30));
    table->selectRow(0);
    remove(QMessageBox::No);
    EXPECT_EQ(table->rowCount(), 1);
    EXPECT_TRUE(wire().isEmpty());
}

TEST_F(outstore_lines, deletion_gives_claims_back_from_the_last_row_to_the_first) {
    open_with_lines({1, 2, 3});
    table->setSelectionMode(QAbstractItemView::MultiSelection);
    table->selectRow(0);
    table->selectRow(2);
    remove();
    EXPECT_EQ(wire(), unlocks({"C3", "C1"}));
    EXPECT_EQ(column_texts(table, 17), words({"C2"}));
}

TEST_F(outstore_lines, a_row_goes_only_if_the_service_agrees) {
    for (const char* refusal : {"0", "", "-1", "no"}) {
        claims = 0;
        open_with_lines({1, 2, 3});
        server.always("wms_stock_detail/unlock_stock", [refusal](const recorded_request& request) {
            return scripted_answer(request.body.startsWith("locked_id=C2&") ? refusal : "1");
        });
        table->selectAll();
        remove();
        EXPECT_EQ(wire(), unlocks({"C3", "C2", "C1"})) << refusal;
        EXPECT_EQ(column_texts(table, 17), words({"C2"})) << refusal;
        EXPECT_TRUE(shown_tip().isEmpty()) << "silently";
    }
}

TEST_F(outstore_lines, the_id_of_a_line_is_not_looked_at_when_it_is_deleted) {
    open_with_lines({1});
    table->item(0, 0)->setText(QStringLiteral("15"));
    table->selectRow(0);
    remove();
    EXPECT_EQ(wire(), unlocks({"C1"})) << "lines have no call of their own to delete them";
    EXPECT_EQ(table->rowCount(), 0);
}

TEST_F(outstore_lines, the_button_gives_all_claims_back_once_and_closes) {
    open_with_lines({1, 2});
    int while_open = 0;
    server.always("wms_stock_detail/unlock_stock", [&](const recorded_request&) {
        while_open += dialog->isVisible() ? 1 : 0;
        return scripted_answer("0");
    });
    click(dialog.get(), "btn_cancel");
    EXPECT_EQ(wire(), unlocks({"C1", "C2"})) << "whatever the service answers";
    EXPECT_EQ(while_open, 2) << "first the claims, then the dialog";
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_EQ(dialog->result(), int(QDialog::Accepted));
    EXPECT_EQ(listed->size(), 0);
}

TEST_F(outstore_lines, the_close_box_and_escape_give_all_claims_back_once) {
    const std::function<void()> ways[] = {[this] { dialog->close(); },
                                          [this] { QTest::keyClick(dialog.get(), Qt::Key_Escape); },
                                          [this] { QTest::keyClick(table, Qt::Key_Escape); }};
    for (const auto& leave : ways) {
        claims = 0;
        open_with_lines({1, 2});
        leave();
        EXPECT_EQ(wire(), unlocks({"C1", "C2"}));
        EXPECT_FALSE(dialog->isVisible());
        EXPECT_EQ(dialog->result(), int(QDialog::Rejected));
        EXPECT_EQ(listed->size(), 0);
    }
}

TEST_F(outstore_lines, every_way_out_ends_a_modal_run) {
    const std::function<void()> ways[] = {[this] { click(dialog.get(), "btn_cancel"); },
                                          [this] { dialog->close(); },
                                          [this] { QTest::keyClick(dialog.get(), Qt::Key_Escape); }};
    for (const auto& leave : ways) {
        claims = 0;
        open_with_lines({1});
        dialog->hide();
        with_modal([this] { dialog->exec(); }, [&](QWidget*) { leave(); });
        EXPECT_EQ(wire(), unlocks({"C1"}));
        dialog.reset();
        EXPECT_EQ(wire(), unlocks({"C1"}));
    }
}

TEST_F(outstore_lines, nothing_is_asked_when_a_document_without_lines_is_left) {
    open(0);
    click(dialog.get(), "btn_cancel");
    EXPECT_TRUE(wire().isEmpty());
}

TEST_F(outstore_lines, presses_while_claims_are_given_back_do_not_give_them_back_twice) {
    open_with_lines({1, 2});
    server.always("wms_stock_detail/unlock_stock", [this](const recorded_request&) {
        if (server.requests().size() > 4) return scripted_answer("1");
        click(dialog.get(), "btn_cancel");
        dialog->close();
        QTest::keyClick(dialog.get(), Qt::Key_Escape);
        EXPECT_TRUE(dialog->isVisible());
        return scripted_answer("1");
    });
    click(dialog.get(), "btn_cancel");
    EXPECT_EQ(wire(), unlocks({"C1", "C2"}));
    EXPECT_FALSE(dialog->isVisible());
}

TEST_F(outstore_lines, no_line_is_begun_while_others_are_deleted) {
    open_with_lines({1});
    bool opened = false;
    server.always("wms_stock_detail/unlock_stock", [&](const recorded_request&) {
        opened = opens_modal([this] { click(dialog.get(), "btn_add"); });
        return scripted_answer("1");
    });
    table->selectRow(0);
    remove();
    EXPECT_FALSE(opened);
    EXPECT_EQ(table->rowCount(), 0);
}

TEST_F(outstore_lines, no_picker_opens_while_a_claim_is_on_its_way) {
    open(1);
    int opened = -1;
    server.always("wms_stock_detail/lock_stock", [&](const recorded_request&) {
        opened = presses_open_a_picker(dialog.get(), {"txt_operater", "txt_company", "txt_dept"});
        return scripted_answer("C1");
    });
    dialog->slot_outstore_detail_do_add(saved_line(1));
    EXPECT_EQ(opened, 0);
    EXPECT_TRUE(presses_open_a_picker(dialog.get(), {"txt_operater"})) << "afterwards it does again";
}

TEST_F(outstore_lines, a_line_of_a_picked_stock_row_is_claimed) {
    QJsonObject row{{QStringLiteral("id"), QStringLiteral("88")},
                    {QStringLiteral("product"), QStringLiteral("p8")},
                    {QStringLiteral("product_name"), QStringLiteral("钉")},
                    {QStringLiteral("warehouse"), QStringLiteral("w8")},
                    {QStringLiteral("warehouse_name"), QStringLiteral("库")},
                    {QStringLiteral("place"), QStringLiteral("A8")},
                    {QStringLiteral("price"), QStringLiteral("2.5")},
                    {QStringLiteral("amount"), QStringLiteral("7")}};
    server.always("wms_stock_detail/get_page", page_body({row}));
    open(0);
    with_modal_of<dlg_outstore_detail_add>(
        [this] { click(dialog.get(), "btn_add"); },
        [](dlg_outstore_detail_add* line) {
            pick<dlg_search_stock>(line, "txt_product_name", QStringLiteral("查询选择库存"),
                                   double_click_first);
            EXPECT_EQ(child<QLineEdit>(line, "txt_amount")->text(), QStringLiteral("7"));
            type_into(line, "txt_amount", QStringLiteral("3"));
            click(line, "btn_save");
        });
    EXPECT_EQ(wire(), words({"wms_stock_detail/lock_stock lock_type=3&id=88&amount=3&total=7.5"}));
    expect_cells(
        table, 0,
        {"0", "p8", "钉", "", "", "", "", "2.50", "3", "7.50", "w8", "库", "A8", "", "88", "0", "", "C1"});
}

class outstore_line_edit : public outstore_test {
protected:
    void edit(const std::function<void(dlg_outstore_detail_add*)>& drive) {
        with_modal_of<dlg_outstore_detail_add>([this] { dialog->slot_outstore_detail_to_edit(); }, drive);
    }
};

TEST_F(outstore_line_edit, asks_for_a_row) {
    open(0);
    dialog->slot_outstore_detail_to_edit();
    expect_tip(table, QStringLiteral("请先选择行"), QPoint(10, 30));
}

TEST_F(outstore_line_edit, opens_an_empty_line_and_emits_the_row) {
    open(0);
    add_line(2, 4);
    table->setCurrentCell(0, 2);
    QSignalSpy to_edit(dialog.get(), &dlg_outstore_add::signal_outstore_detail_to_edit);
    edit([](dlg_outstore_detail_add* line) {
        EXPECT_EQ(line->windowTitle(), QStringLiteral("编辑出库明细"));
        EXPECT_TRUE(child<QLineEdit>(line, "txt_product_name")->text().isEmpty());
        line->close();
    });
    ASSERT_EQ(to_edit.size(), 1);
    const auto line = to_edit.first().first().value<struct_outstore_detail>();
    EXPECT_EQ(line.id, QStringLiteral("0"));
    EXPECT_EQ(line.stock_id, QStringLiteral("2"));
    EXPECT_EQ(line.locked_id, QStringLiteral("C1"));
    EXPECT_EQ(line.amount, 4);
    EXPECT_DOUBLE_EQ(line.total, 10);
}

TEST_F(outstore_line_edit, rewrites_the_row_but_its_id_its_document_and_its_claim) {
    open(0);
    add_line(2, 4);
    table->setCurrentCell(0, 2);
    server.forget();
    edit([](dlg_outstore_detail_add* line) {
        line->slot_stock_selected(stock(1));
        click(line, "btn_save");
    });
    expect_cells(table, 0,
                 {"0", "p1", "货1", "c1", "5", "类", "s1", "1.50", "10", "15.00", "w1", "仓1", "A1", "批1",
                  "1", "1", "", "C1"});
    EXPECT_TRUE(wire().isEmpty());
}
