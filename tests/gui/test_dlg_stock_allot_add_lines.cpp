#include "gui/allot_fixture.h"

// The lines of a transfer and their claims: taken when a line is accepted, given back when it is deleted or
// the transfer abandoned.

class allot_lines : public allot_test {};

TEST_F(allot_lines, a_line_needs_a_source_first) {
    open(0);
    destination()->setCurrentIndex(2);
    server.forget();
    EXPECT_FALSE(opens_modal([this] { click(dialog.get(), "btn_add"); }));
    expect_tip(source(), QStringLiteral("请先选择调出仓库"));
    EXPECT_TRUE(server.requests().isEmpty());
}

TEST_F(allot_lines, the_picker_of_a_line_shows_the_stock_of_the_source_alone) {
    open(0);
    QSignalSpy told(dialog.get(), &dlg_stock_allot_add::signal_set_warehouse_out);
    for (int i : {1, 2}) {
        source()->setCurrentIndex(i);
        const QByteArray id = i == 1 ? "3" : "8";
        with_modal_of<dlg_stock_allot_detail_add>(
            [this] { click(dialog.get(), "btn_add"); },
            [&](dlg_stock_allot_detail_add* line) {
                EXPECT_EQ(line->parentWidget(), dialog.get());
                pick<dlg_search_stock>(line, "txt_product_name", QStringLiteral("选择货品库存"),
                                       [](dlg_search_stock* picker) { picker->close(); });
                line->close();
            });
        EXPECT_TRUE(server.bodies("wms_stock_detail/get_page").last().contains("&warehouse=" + id + "&"));
        EXPECT_EQ(told.last().first().toString().toLatin1(), id);
    }
}

TEST_F(allot_lines, an_accepted_line_is_shown_and_claimed) {
    open(0);
    source()->setCurrentIndex(1);
    add_line(2, 4);
    EXPECT_EQ(wire(), words({"wms_stock_detail/lock_stock lock_type=1&id=2&amount=4&total=10"}));
    ASSERT_EQ(table->rowCount(), 1);
    expect_cells(table, 0,
                 {"0", "货2", "p2", "c2", "s2", "2.50", "4", "10.00", "A2", "批2", "2", "1", "0", "C1"});
}

TEST_F(allot_lines, two_lines_of_three_units_claim_three_units_each) {
    open(0);
    source()->setCurrentIndex(1);
    add_line(1, 3);
    add_line(1, 3);
    EXPECT_EQ(wire(), words({"wms_stock_detail/lock_stock lock_type=1&id=1&amount=3&total=4.5",
                             "wms_stock_detail/lock_stock lock_type=1&id=1&amount=3&total=4.5"}));
    EXPECT_EQ(column_texts(table, 13), words({"C1", "C2"}));
}

TEST_F(allot_lines, a_line_without_units_is_claimed_without_amount_and_total) {
    open(0);
    source()->setCurrentIndex(1);
    add_line(1, 0);
    EXPECT_EQ(wire(), words({"wms_stock_detail/lock_stock lock_type=1&id=1"}));
    EXPECT_EQ(cell_text(table, 0, 7), QStringLiteral("0.00"));
}

TEST_F(allot_lines, the_total_is_amount_times_price_whatever_the_stock_rows_says) {
    open(0);
    source()->setCurrentIndex(1);
    auto row = stock(1);
    row.price = 1234.56;
    row.amount = 1001;
    row.total = 7;
    with_modal_of<dlg_stock_allot_detail_add>([this] { click(dialog.get(), "btn_add"); },
                                              [&](dlg_stock_allot_detail_add* line) {
                                                  line->slot_stock_selected(row);
                                                  click(line, "btn_save");
                                              });
    EXPECT_EQ(cell_text(table, 0, 7), QStringLiteral("1235794.56"));
    EXPECT_EQ(wire(), words({"wms_stock_detail/lock_stock lock_type=1&id=1&amount=1001&total=1.23579e+06"}));
}

TEST_F(allot_lines, the_line_stands_in_the_table_before_its_claim_goes_out) {
    open(0);
    source()->setCurrentIndex(1);
    QString seen;
    server.always("wms_stock_detail/lock_stock", [&](const recorded_request&) {
        seen = QString::number(table->rowCount()) +
               (table->item(0, 13) == nullptr ? QStringLiteral(" open") : QStringLiteral(" claimed"));
        return scripted_answer("C1");
    });
    add_line(1, 1);
    EXPECT_EQ(seen, QStringLiteral("1 open"));
}

TEST_F(allot_lines, any_answer_to_a_claim_is_kept_as_its_id_without_a_word) {
    for (const char* answer : {"0", "", "7", "refused", "{\"http_state\":0}"}) {
        open(0);
        source()->setCurrentIndex(1);
        server.always("wms_stock_detail/lock_stock", answer);
        add_line(1, 1);
        ASSERT_EQ(table->rowCount(), 1) << answer;
        ASSERT_NE(table->item(0, 13), nullptr);
        EXPECT_EQ(cell_text(table, 0, 13), QString::fromUtf8(answer));
        EXPECT_TRUE(shown_tip().isEmpty());
        EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    }
}

TEST_F(allot_lines, the_line_dialog_that_is_cancelled_adds_nothing) {
    open(0);
    source()->setCurrentIndex(1);
    with_modal_of<dlg_stock_allot_detail_add>([this] { click(dialog.get(), "btn_add"); },
                                              [](dlg_stock_allot_detail_add* line) {
                                                  line->slot_stock_selected(stock(1));
                                                  click(line, "btn_cancel");
                                              });
    EXPECT_EQ(table->rowCount(), 0);
    EXPECT_TRUE(wire().isEmpty());
}

TEST_F(allot_lines, lines_stay_when_the_source_is_changed_and_the_later_choice_goes_out) {
    write({1});
    source()->setCurrentIndex(2);
    destination()->setCurrentIndex(1);
    EXPECT_EQ(column_texts(table, 13), words({"C1"}));
    EXPECT_TRUE(wire().isEmpty());
    click(dialog.get(), "btn_submit");
    EXPECT_TRUE(
        server.bodies("wms_stock_allot/do_add").first().startsWith("&warehouse_out=8&warehouse_in=3"));
    EXPECT_TRUE(server.bodies("wms_stock_allot_detail/do_add").first().contains("&stock_id=1&"));
}

TEST_F(allot_lines, a_line_cannot_be_edited) {
    write({1});
    const QSignalSpy to_edit(dialog.get(), &dlg_stock_allot_add::signal_stock_allot_detail_to_edit);
    const QSignalSpy row_added(dialog.get(), &dlg_stock_allot_add::signal_stock_allot_add_row);
    table->setCurrentCell(0, 1);
    const QStringList before = row_texts(table, 0);
    EXPECT_FALSE(opens_modal([this] {
        dialog->slot_stock_allot_detail_to_edit();
        dialog->slot_stock_allot_detail_do_edit(transfer_line(2));
        QTest::mouseDClick(table->viewport(), Qt::LeftButton, Qt::NoModifier,
                           table->visualItemRect(table->item(0, 1)).center());
    })) << "both slots are empty";
    table->setCurrentCell(-1, -1);
    dialog->slot_stock_allot_detail_to_edit();
    EXPECT_TRUE(shown_tip().isEmpty());
    EXPECT_EQ(row_texts(table, 0), before);
    EXPECT_TRUE(wire().isEmpty());
    click(dialog.get(), "btn_submit");
    EXPECT_EQ(to_edit.size() + row_added.size(), 0) << "declared and never emitted";
}

TEST_F(allot_lines, deletion_needs_a_selection_and_a_yes) {
    write({1});
    table->clearSelection();
    table->setCurrentCell(-1, -1);
    click(dialog.get(), "btn_delete");
    expect_tip(table, QStringLiteral("请先选中行"), QPoint(10, 30));
    table->selectRow(0);
    remove(QMessageBox::No);
    EXPECT_EQ(table->rowCount(), 1);
    EXPECT_TRUE(wire().isEmpty());
}

TEST_F(allot_lines, deletion_gives_claims_back_from_the_last_row_to_the_first) {
    write({1, 2, 3});
    table->setSelectionMode(QAbstractItemView::MultiSelection);
    table->selectRow(0);
    table->selectRow(2);
    remove();
    EXPECT_EQ(wire(), unlocks({"C3", "C1"}));
    EXPECT_EQ(column_texts(table, 13), words({"C2"}));
}

TEST_F(allot_lines, a_selection_from_the_bottom_upward_deletes_by_numbers_that_have_moved) {
    write({1, 2, 3});
    click_row(table, 2);
    click_row(table, 0, Qt::ControlModifier);
    remove();
    EXPECT_EQ(wire(), unlocks({"C1", ""})) << "as in the lists";
    EXPECT_EQ(column_texts(table, 13), words({"C2", "C3"}));
}

TEST_F(allot_lines, a_row_whose_claim_is_not_taken_back_stays_and_the_walk_goes_on) {
    for (const char* refusal : {"0", "", "-1", "no"}) {
        write({1, 2, 3});
        server.always("wms_stock_detail/unlock_stock", [refusal](const recorded_request& request) {
            return scripted_answer(request.body.startsWith("locked_id=C2&") ? refusal : "1");
        });
        table->selectAll();
        remove();
        EXPECT_EQ(wire(), unlocks({"C3", "C2", "C1"})) << refusal;
        EXPECT_EQ(column_texts(table, 13), words({"C2"})) << refusal;
        EXPECT_TRUE(shown_tip().isEmpty()) << "silently";
    }
}

TEST_F(allot_lines, every_way_out_gives_all_claims_back_once_and_rejects) {
    const std::function<void()> ways[] = {[this] { click(dialog.get(), "btn_cancel"); },
                                          [this] { dialog->close(); },
                                          [this] { QTest::keyClick(dialog.get(), Qt::Key_Escape); },
                                          [this] { QTest::keyClick(table, Qt::Key_Escape); }};
    for (const auto& leave : ways) {
        write({1, 2});
        int while_open = 0;
        server.always("wms_stock_detail/unlock_stock", [&](const recorded_request&) {
            while_open += dialog->isVisible() ? 1 : 0;
            return scripted_answer("0");
        });
        leave();
        EXPECT_EQ(wire(), unlocks({"C1", "C2"})) << "whatever the service answers";
        EXPECT_EQ(while_open, 2) << "first the claims, then the dialog";
        EXPECT_FALSE(dialog->isVisible());
        EXPECT_EQ(dialog->result(), int(QDialog::Rejected));
        EXPECT_EQ(listed->size(), 0);
        dialog.reset();
        EXPECT_EQ(wire(), unlocks({"C1", "C2"}));
    }
}

TEST_F(allot_lines, every_way_out_ends_a_modal_run) {
    const std::function<void()> ways[] = {[this] { click(dialog.get(), "btn_cancel"); },
                                          [this] { dialog->close(); },
                                          [this] { QTest::keyClick(dialog.get(), Qt::Key_Escape); }};
    for (const auto& leave : ways) {
        write({1});
        const QSignalSpy rejected(dialog.get(), &QDialog::rejected);
        dialog->hide();
        with_modal([this] { dialog->exec(); }, [&](QWidget*) { leave(); });
        EXPECT_EQ(wire(), unlocks({"C1"}));
        EXPECT_EQ(rejected.size(), 1);
    }
}

TEST_F(allot_lines, nothing_goes_out_when_a_transfer_without_lines_or_a_saved_one_is_left) {
    const std::function<void()> ways[] = {[this] { click(dialog.get(), "btn_cancel"); },
                                          [this] { dialog->close(); },
                                          [this] { QTest::keyClick(dialog.get(), Qt::Key_Escape); }};
    for (int mode : {0, 1, 5})
        for (const auto& leave : ways) {
            open(mode);
            if (mode != 0) dialog->slot_stock_allot_to_edit(saved_transfer());
            leave();
            EXPECT_FALSE(dialog->isVisible());
            EXPECT_EQ(dialog->result(), int(QDialog::Rejected));
            EXPECT_TRUE(wire().isEmpty()) << mode;
        }
}

TEST_F(allot_lines, presses_while_claims_are_given_back_do_not_give_them_back_twice) {
    write({1, 2});
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

TEST_F(allot_lines, nothing_opens_while_calls_are_under_way) {
    write({1});
    bool opened = false;
    server.always("wms_stock_detail/unlock_stock", [&](const recorded_request&) {
        opened = opens_modal([this] { click(dialog.get(), "btn_add"); }) ||
                 presses_open_a_picker(dialog.get(), {"txt_operater"});
        return scripted_answer("1");
    });
    table->selectRow(0);
    remove();
    EXPECT_FALSE(opened);
    EXPECT_EQ(table->rowCount(), 0);
    EXPECT_TRUE(presses_open_a_picker(dialog.get(), {"txt_operater"})) << "afterwards it does again";
}

TEST_F(allot_lines, a_second_press_while_the_claim_is_on_its_way_adds_no_second_line) {
    open(0);
    source()->setCurrentIndex(1);
    server.always("wms_stock_detail/lock_stock", [this](const recorded_request&) {
        if (claims == 0) click(QApplication::activeModalWidget(), "btn_save");
        return scripted_answer("C" + QByteArray::number(++claims));
    });
    add_line(1, 1);
    EXPECT_EQ(table->rowCount(), 1);
    EXPECT_EQ(wire().size(), 1);
}
