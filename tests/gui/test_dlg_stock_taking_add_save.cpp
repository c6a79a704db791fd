#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QTemporaryDir>

#include "gui/taking_fixture.h"
#include "net/constants.h"
#include "stock/taking_print.h"
#include "support/paper.h"

// Saving a stocktaking, auditing one, and viewing and printing a saved one.

class taking_save : public taking_test {
protected:
    void write(std::initializer_list<int> rows) {
        open_with_lines(rows);
        pick_operater();
    }
    void submit() { click(dialog.get(), "btn_submit"); }
};

TEST_F(taking_save, sends_header_lines_and_sums_in_order) {
    open(0);
    dialog->slot_set_current_user();
    pick_operater();
    field("txt_remark")->setText(u("  急用 "));
    add_line(2, 17);
    add_line(3, 31);
    server.forget();
    submit();
    EXPECT_EQ(
        wire(),
        words({"wms_stock_taking/do_add &operater=3&writer=9&remark=急用",
               "wms_stock_taking_detail/do_add main_id=77&product=p2&price=2.50&sys_amount=20"
               "&real_amount=17&profitloss_amount=-3&profitloss_total=-7.00&remark=批2&warehouse=w2"
               "&stock_id=2&place=A2&locked_id=C1",
               "wms_stock_taking_detail/do_add main_id=77&product=p3&price=3.50&sys_amount=30"
               "&real_amount=31&profitloss_amount=1&profitloss_total=3.00&remark=批3&warehouse=w3"
               "&stock_id=3&place=A3&locked_id=C2",
               "wms_stock_taking/update_profitloss id=77&profitloss_amount=-2&profitloss_total=-4.00"}));
    EXPECT_EQ(listed->size(), 1);
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_EQ(dialog->result(), int(QDialog::Accepted));
    dialog.reset();
    EXPECT_TRUE(server.bodies("wms_stock_detail/unlock_stock").isEmpty())
        << "the lines took their claims along";
}

TEST_F(taking_save, two_lines_of_two_units_less_make_four) {
    open(0);
    pick_operater();
    auto row = stock(1);
    row.price = 2.5;
    for (int i = 0; i < 2; ++i)
        add_line(row, 8);
    EXPECT_EQ(column_texts(table, 11), words({"-2", "-2"}));
    EXPECT_EQ(column_texts(table, 12), words({"-5.00", "-5.00"}));
    submit();
    EXPECT_EQ(wire().last(),
              u("wms_stock_taking/update_profitloss id=77&profitloss_amount=-4&profitloss_total=-10.00"));
}

TEST_F(taking_save, needs_the_operator_and_a_line_in_that_order) {
    open(0);
    submit();
    expect_tip(field("txt_operater"), u("请选择经办人"));
    pick_operater();
    submit();
    expect_tip(table, u("请先添加明细再保存"), QPoint(10, 30));
    EXPECT_TRUE(dialog->isVisible());
    EXPECT_TRUE(wire().isEmpty());
}

TEST_F(taking_save, without_a_user_the_writer_goes_out_empty) {
    write({1});
    submit();
    EXPECT_EQ(server.bodies("wms_stock_taking/do_add"), QList<QByteArray>{"&operater=3&writer="})
        << "the list gives the user, the save does not";
}

TEST_F(taking_save, cells_are_sent_without_the_blanks_around_them_and_summed_as_they_are) {
    write({1, 2});
    table->item(0, 1)->setText(u(" w1 "));
    table->item(0, 3)->setText(u("\tA 1 "));
    table->item(0, 4)->setText(u(" p1"));
    table->item(0, 11)->setText(u(" 5 "));
    table->item(0, 12)->setText(u(" 1.25 "));
    table->item(0, 14)->setText(u(" 1"));
    table->item(0, 16)->setText(u(" C1 "));
    submit();
    EXPECT_EQ(wire()[1],
              u("wms_stock_taking_detail/do_add main_id=77&product=p1&price=1.50&sys_amount=10&real_amount=9"
                "&profitloss_amount=5&profitloss_total=1.25&remark=批1&warehouse=w1&stock_id=1&place=A 1"
                "&locked_id=C1"));
    EXPECT_EQ(wire().last(),
              u("wms_stock_taking/update_profitloss id=77&profitloss_amount=4&profitloss_total=-0.75"));
}

TEST_F(taking_save, a_refused_claim_goes_out_as_the_lines_claim) {
    server.always("wms_stock_detail/lock_stock", "0");
    write({1});
    submit();
    EXPECT_TRUE(wire()[1].endsWith(u("&locked_id=0")));
    EXPECT_EQ(listed->size(), 1);
}

TEST_F(taking_save, the_answers_to_lines_are_not_looked_at) {
    for (const char* answer : {"0", "", "refused"}) {
        claims = 0;
        server.always("wms_stock_taking_detail/do_add", answer);
        write({1, 2});
        submit();
        EXPECT_EQ(server.bodies("wms_stock_taking_detail/do_add").size(), 2) << answer;
        EXPECT_EQ(listed->size(), 1) << answer;
    }
}

TEST_F(taking_save, lines_and_sums_of_a_refused_header_go_out_for_no_document) {
    for (const char* answer :
         {"{\"http_state\":0}", "{\"http_state\":2,\"insert_id\":\"5\"}", "", "7", "[]"}) {
        claims = 0;
        write({1});
        server.always("wms_stock_taking/do_add", answer);
        server.always("wms_stock_taking/update_profitloss", "0");
        submit();
        QStringList calls = wire();
        calls.removeAll(u("wms/check_login username=&password="));
        ASSERT_EQ(calls.size(), 3) << answer;
        EXPECT_TRUE(calls[1].startsWith(u("wms_stock_taking_detail/do_add main_id=&product=p1&"))) << answer;
        EXPECT_EQ(calls[2], u("wms_stock_taking/update_profitloss id=&profitloss_amount=-1"
                              "&profitloss_total=-1.00"))
            << answer;
        EXPECT_TRUE(dialog->isVisible());
        EXPECT_TRUE(shown_tip().isEmpty()) << "nothing is said";
        EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
        EXPECT_EQ(listed->size(), 0);
    }
}

TEST_F(taking_save, refused_sums_leave_the_dialog_open_without_a_word) {
    for (const char* answer : {"0", "", "-1", "refused"}) {
        claims = 0;
        write({1});
        server.always("wms_stock_taking/update_profitloss", answer);
        submit();
        EXPECT_TRUE(dialog->isVisible()) << answer;
        EXPECT_TRUE(shown_tip().isEmpty());
        EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
        EXPECT_EQ(listed->size(), 0);
        server.forget();
        // What the service has taken over already is given back once more.
        click(dialog.get(), "btn_cancel");
        EXPECT_EQ(wire(), unlocks({"C1"})) << answer;
    }
}

TEST_F(taking_save, a_second_save_writes_a_second_document) {
    write({1});
    server.always("wms_stock_taking/update_profitloss", "0");
    submit();
    const QStringList first = wire();
    ASSERT_EQ(first.size(), 3);
    server.forget();
    submit();
    EXPECT_EQ(wire(), first);
    server.forget();
    server.always("wms_stock_taking/do_add", R"({"http_state":0})");
    submit();
    EXPECT_TRUE(wire().last().startsWith(u("wms_stock_taking/update_profitloss id=&")))
        << "the id of the first is not used again";
}

TEST_F(taking_save, presses_while_a_save_is_on_its_way_are_ignored) {
    write({1, 2});
    bool picked = true;
    server.always("wms_stock_taking_detail/do_add", [&](const recorded_request&) {
        if (server.requests().size() > 9) return scripted_answer("1");
        submit();
        click(dialog.get(), "btn_cancel");
        dialog->close();
        click(dialog.get(), "btn_delete");
        dialog->on_btn_audit_clicked();
        picked = presses_open_a_picker(dialog.get(), {"txt_operater"});
        EXPECT_TRUE(dialog->isVisible());
        return scripted_answer("1");
    });
    submit();
    EXPECT_EQ(server.paths(),
              (QList<QByteArray>{"wms_stock_taking/do_add", "wms_stock_taking_detail/do_add",
                                 "wms_stock_taking_detail/do_add", "wms_stock_taking/update_profitloss"}));
    EXPECT_EQ(listed->size(), 1);
    EXPECT_FALSE(picked);
    EXPECT_FALSE(dialog->isVisible());
}

TEST_F(taking_save, edit_and_audit_mode_post_nothing_but_sums_for_no_document) {
    for (int mode : {1, 6}) {
        open(mode);
        dialog->slot_stock_taking_to_edit(saved_taking());
        server.forget();
        submit();
        EXPECT_EQ(wire(), words({"wms_stock_taking/update_profitloss id=&profitloss_amount=-2"
                                 "&profitloss_total=-3.00"}))
            << mode;
        EXPECT_FALSE(dialog->isVisible());
    }
}

class taking_audit : public taking_test {
protected:
    void audit(QMessageBox::StandardButton answer) {
        with_question([this] { dialog->on_btn_audit_clicked(); }, u("确认审核"), u("确认审核吗？"), answer);
    }
};

TEST_F(taking_audit, needs_lines) {
    open(6);
    click(dialog.get(), "btn_audit");
    expect_tip(table, u("没有盘点明细可以审核"), QPoint(10, 30));
    EXPECT_TRUE(dialog->isVisible());
    EXPECT_EQ(listed->size(), 0);
}

TEST_F(taking_audit, asks_closes_and_sends_nothing) {
    for (int mode : {1, 6}) {
        open(mode);
        dialog->slot_stock_taking_to_edit(saved_taking());
        audit(QMessageBox::No);
        EXPECT_TRUE(dialog->isVisible());
        EXPECT_EQ(listed->size(), 0);
        audit(QMessageBox::Yes);
        EXPECT_FALSE(dialog->isVisible());
        EXPECT_EQ(dialog->result(), int(QDialog::Rejected)) << "closed as by the close box";
        EXPECT_EQ(listed->size(), 1);
        EXPECT_TRUE(server.requests().isEmpty());
    }
}

TEST_F(taking_audit, of_a_new_document_abandons_it) {
    open_with_lines({1, 2});
    EXPECT_FALSE(child<QPushButton>(dialog.get(), "btn_audit")->isVisible()) << "from code alone";
    audit(QMessageBox::Yes);
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_EQ(wire(), unlocks({"C1", "C2"}));
}

class taking_view : public taking_test {
protected:
    void view() {
        open(5);
        dialog->slot_stock_taking_to_edit(saved_taking());
    }
};

TEST_F(taking_view, shows_header_and_lines) {
    view();
    EXPECT_EQ(field("txt_sn")->text(), u("PD1"));
    EXPECT_EQ(field("txt_operater")->text(), u("李"));
    EXPECT_EQ(field("txt_writer")->text(), u("王"));
    EXPECT_EQ(field("txt_remark")->text(), u("急"));
    ASSERT_EQ(table->rowCount(), 2);
    expect_cells(table, 1,
                 {"L2", "w2", "仓2", "A2", "p2", "货2", "s2", "c2", "2.50", "20", "19", "-1", "-2.00", "批2",
                  "2", "0", "(no cell)"});
    EXPECT_TRUE(wire().isEmpty()) << "no claim is taken";
}

TEST_F(taking_view, its_print_text) {
    auto saved = saved_taking();
    saved.details[0].profitloss_total = -1.5;
    saved.details.removeLast();
    EXPECT_EQ(
        print_taking(saved),
        g_style_detail +
            u("<table width=100% border=1 cellpadding=0 cellspacing=0><tr><td id=title colspan=2>盘点明细"
              "</td></tr><tr><td>单号：PD1</td><td>经办人：李</td></tr><tr><td>调入仓：王</td><td>备注："
              "急</td></tr><tr><td id=td_data colspan=2><table id=table_data width=100% border=1 "
              "cellpadding=0 cellspacing=0><tr class=tr_header><td>仓库</td><td>位置</td><td>货品名称"
              "</td><td>规格</td><td>编码</td><td>价格</td><td>系统数量</td><td>盘点数量</td><td>盈亏数量"
              "</td><td>盈亏金额</td><td>备注</td></tr><tr><td>仓1</td><td>A1</td><td>货1</td><td>s1</td>"
              "<td>c1</td><td>1.50</td><td>10</td><td>9</td><td>-1</td><td>-1.50</td><td>批1</td></tr>"
              "</table></td></tr>"));
}

TEST_F(taking_view, prints_what_came_and_the_writer_under_the_word_for_a_warehouse) {
    view();
    table->item(0, 5)->setText(u("改过"));
    const QTemporaryDir folder;
    const QString file = folder.filePath(QStringLiteral("taking.pdf"));
    for (int i = 0; i < 2; ++i)
        with_preview([this] { click(dialog.get(), "btn_print"); },
                     [this](QPrintPreviewDialog* preview) {
                         EXPECT_TRUE(preview->isMaximized());
                         EXPECT_EQ(preview->parentWidget(), dialog.get());
                         EXPECT_EQ(preview->printer()->pageLayout().pageSize().id(), QPageSize::A4);
                         preview->printer()->setPageSize(QPageSize(QPageSize::Letter));
                     },
                     file);
    dialog->slot_print();
    // The last character is the number of the page.
    EXPECT_EQ(paper_texts(file).join(QString()),
              u("盘点明细单号：PD1经办人：李调入仓：王备注：急仓库位置货品名称规格编码价格系统数量盘点数量"
                "盈亏数量盈亏金额备注仓1A1货1s1c11.50109-1-1.00批1仓2A2货2s2c22.502019-1-2.00批21"));
    EXPECT_TRUE(wire().isEmpty());
}
