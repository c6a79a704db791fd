#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QTemporaryDir>

#include "gui/allot_fixture.h"
#include "net/constants.h"
#include "stock/allot_print.h"
#include "support/paper.h"

// Saving a transfer, and viewing and printing a saved one.

class allot_save : public allot_test {
protected:
    void submit() { click(dialog.get(), "btn_submit"); }
};

TEST_F(allot_save, says_what_is_missing_the_warehouses_before_the_operator) {
    open(0);
    submit();
    expect_tip(source(), QStringLiteral("请选择调出仓"));
    source()->setCurrentIndex(1);
    submit();
    expect_tip(destination(), QStringLiteral("请选择调入仓"));
    destination()->setCurrentIndex(1);
    submit();
    expect_tip(destination(), QStringLiteral("调出仓和调入仓不能相同"));
    destination()->setCurrentIndex(2);
    submit();
    expect_tip(field("txt_operater"), QStringLiteral("请选择经办人"));
    dialog->slot_emp_selected(employee("3", "员工"));
    submit();
    expect_tip(table, QStringLiteral("请先添加明细再保存"), QPoint(10, 30));
    EXPECT_TRUE(dialog->isVisible());
    EXPECT_TRUE(wire().isEmpty());
    EXPECT_EQ(field("txt_operater")->text(), QStringLiteral("员工")) << "what was chosen stays";
}

TEST_F(allot_save, sends_header_and_lines_and_no_closing_call) {
    open(0);
    dialog->slot_set_current_user();
    choose_all();
    field("txt_remark")->setText(QStringLiteral("  急用 "));
    add_line(2, 4);
    add_line(3, 1);
    server.forget();
    submit();
    EXPECT_EQ(wire(),
              words({"wms_stock_allot/do_add &warehouse_out=3&warehouse_in=8&operater=3&writer=9&remark=急用",
                     "wms_stock_allot_detail/do_add main_id=77&product=p2&price=2.50&amount=4&total=10.00"
                     "&remark=批2&stock_id=2&place=A2&warehouse=&locked_id=C1",
                     "wms_stock_allot_detail/do_add main_id=77&product=p3&price=3.50&amount=1&total=3.50"
                     "&remark=批3&stock_id=3&place=A3&warehouse=&locked_id=C2"}));
    EXPECT_EQ(listed->size(), 1);
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_EQ(dialog->result(), int(QDialog::Accepted));
}

TEST_F(allot_save, a_header_that_nobody_is_said_to_write_goes_out_without_a_writer) {
    write({1});
    submit();
    EXPECT_EQ(wire().first(),
              QStringLiteral("wms_stock_allot/do_add &warehouse_out=3&warehouse_in=8&operater=3"));
}

TEST_F(allot_save, another_price_and_place_leave_with_the_line) {
    open(0);
    choose_all();
    with_modal_of<dlg_stock_allot_detail_add>([this] { click(dialog.get(), "btn_add"); },
                                              [](dlg_stock_allot_detail_add* line) {
                                                  line->slot_stock_selected(stock(1));
                                                  type_into(line, "txt_price", QStringLiteral("0"));
                                                  type_into(line, "txt_place", QStringLiteral("B9"));
                                                  click(line, "btn_save");
                                              });
    EXPECT_EQ(wire(), words({"wms_stock_detail/lock_stock lock_type=1&id=1&amount=10"}));
    submit();
    EXPECT_EQ(server.bodies("wms_stock_allot_detail/do_add").first(),
              QByteArray("main_id=77&product=p1&price=0.00&amount=10&total=0.00&remark=批1&stock_id=1"
                         "&place=B9&warehouse=&locked_id=C1"));
}

TEST_F(allot_save, cells_are_sent_without_the_blanks_around_them) {
    open(0);
    choose_all();
    auto row = stock(1);
    row.product = QStringLiteral(" p1 ");
    row.id = QStringLiteral(" 1");
    add_line(row, 1);
    table->item(0, 7)->setText(QStringLiteral(" 5.25 "));
    table->item(0, 9)->setText(QStringLiteral(" r "));
    server.forget();
    submit();
    EXPECT_EQ(wire()[1],
              QStringLiteral("wms_stock_allot_detail/do_add main_id=77&product=p1&price=1.50&amount=1"
                             "&total=5.25&remark=r&stock_id=1&place=A1&warehouse=&locked_id=C1"));
}

TEST_F(allot_save, closes_whatever_the_answers_to_the_lines_were) {
    for (const scripted_answer& answer :
         {scripted_answer("0"), scripted_answer(""), scripted_answer("refused"),
          scripted_answer::with_status(500, "")}) {
        write({1, 2});
        server.always("wms_stock_allot_detail/do_add", answer);
        submit();
        EXPECT_EQ(server.bodies("wms_stock_allot_detail/do_add").size(), 2);
        EXPECT_EQ(listed->size(), 1);
        EXPECT_FALSE(dialog->isVisible());
        EXPECT_EQ(dialog->result(), int(QDialog::Accepted));
        EXPECT_TRUE(shown_tip().isEmpty());
    }
}

TEST_F(allot_save, lines_of_a_refused_header_go_out_for_no_transfer_and_the_dialog_closes) {
    for (const char* answer :
         {"{\"http_state\":0}", "{\"http_state\":2,\"insert_id\":\"5\"}", "", "7", "[]"}) {
        write({1});
        server.always("wms_stock_allot/do_add", answer);
        submit();
        QStringList calls = wire();
        calls.removeAll(QStringLiteral("wms/check_login username=&password="));
        ASSERT_EQ(calls.size(), 2) << answer;
        EXPECT_TRUE(calls[1].startsWith(QStringLiteral("wms_stock_allot_detail/do_add main_id=&product=p1&")))
            << answer;
        EXPECT_FALSE(dialog->isVisible()) << "as if all went well";
        EXPECT_EQ(listed->size(), 1);
        EXPECT_TRUE(shown_tip().isEmpty());
    }
}

TEST_F(allot_save, gives_no_claim_back) {
    write({1, 2});
    submit();
    dialog.reset();
    EXPECT_TRUE(server.bodies("wms_stock_detail/unlock_stock").isEmpty());
}

TEST_F(allot_save, an_edit_has_no_source_to_choose_and_stops_there) {
    open(1);
    dialog->slot_stock_allot_to_edit(saved_transfer());
    submit();
    expect_tip(source(), QStringLiteral("请选择调出仓"));
    EXPECT_TRUE(wire().isEmpty());
    source()->addItem(QStringLiteral("一号仓"), QStringLiteral("3"));
    submit();
    EXPECT_TRUE(wire().isEmpty()) << "an edit posts nothing";
    EXPECT_EQ(listed->size(), 1);
    EXPECT_FALSE(dialog->isVisible());
}

TEST_F(allot_save, presses_while_a_save_is_on_its_way_are_ignored) {
    write({1, 2});
    server.always("wms_stock_allot_detail/do_add", [this](const recorded_request&) {
        if (server.requests().size() > 9) return scripted_answer("1");
        submit();
        click(dialog.get(), "btn_cancel");
        dialog->close();
        click(dialog.get(), "btn_delete");
        EXPECT_TRUE(dialog->isVisible());
        return scripted_answer("1");
    });
    submit();
    EXPECT_EQ(server.paths(), (QList<QByteArray>{"wms_stock_allot/do_add", "wms_stock_allot_detail/do_add",
                                                 "wms_stock_allot_detail/do_add"}));
    EXPECT_EQ(listed->size(), 1);
}

class allot_view : public allot_test {
protected:
    void view(const struct_stock_allot& saved = saved_transfer()) {
        open(5);
        dialog->slot_stock_allot_to_edit(saved);
    }
};

TEST_F(allot_view, shows_header_and_lines) {
    view();
    EXPECT_EQ(field("txt_sn")->text(), QStringLiteral("DB1"));
    EXPECT_EQ(field("txt_writer")->text(), QStringLiteral("王"));
    EXPECT_EQ(field("txt_operater")->text(), QStringLiteral("李"));
    EXPECT_EQ(field("txt_remark")->text(), QStringLiteral("急"));
    EXPECT_EQ(source()->currentText(), QStringLiteral("一号仓"));
    EXPECT_EQ(destination()->currentText(), QStringLiteral("二号仓"));
    ASSERT_EQ(table->rowCount(), 2);
    expect_cells(
        table, 1,
        {"L2", "货2", "p2", "c2", "s2", "2.50", "2", "5.00", "A2", "批2", "2", "0", "77", "(no cell)"});
    EXPECT_TRUE(wire().isEmpty()) << "no claim is taken";
}

TEST_F(allot_view, a_warehouse_that_is_gone_leaves_its_box_empty) {
    auto saved = saved_transfer();
    saved.warehouse_out = QStringLiteral("99");
    view(saved);
    EXPECT_EQ(source()->currentIndex(), -1);
    EXPECT_EQ(destination()->currentText(), QStringLiteral("二号仓"));
}

TEST_F(allot_view, its_print_text) {
    EXPECT_EQ(print_allot(saved_transfer()),
              g_style_detail +
                  QStringLiteral(
                      "<table width=100% border=1 cellpadding=0 cellspacing=0><tr><td id=title "
                      "colspan=2>调拨明细</td></tr>"
                      "<tr><td>单号：DB1</td><td>调出仓：一号仓</td></tr>"
                      "<tr><td>调入仓：二号仓</td><td>经办人：李</td></tr>"
                      "<tr><td>制单人：王</td><td>备注：急</td></tr>"
                      "<tr><td id=td_data colspan=2><table id=table_data width=100% border=1 cellpadding=0 "
                      "cellspacing=0><tr class=tr_header><td>货品名称</td><td>编码</td><td>规格</td>"
                      "<td>价格</td><td>数量</td><td>总价</td><td>存储位置</td><td>备注</td></tr>"
                      "<tr><td>货1</td><td>c1</td><td>s1</td><td>1.50</td><td>1</td><td>1.50</td><td>A1</td>"
                      "<td>批1</td></tr>"
                      "<tr><td>货2</td><td>c2</td><td>s2</td><td>2.50</td><td>2</td><td>5.00</td><td>A2</td>"
                      "<td>批2</td></tr></table></td></tr>"));
}

TEST_F(allot_view, prints_what_came_and_not_what_the_table_shows_later) {
    view();
    table->item(0, 1)->setText(QStringLiteral("改过"));
    const QTemporaryDir folder;
    const QString file = folder.filePath(QStringLiteral("transfer.pdf"));
    with_preview([this] { click(dialog.get(), "btn_print"); },
                 [this](QPrintPreviewDialog* preview) {
                     EXPECT_TRUE(preview->isMaximized());
                     EXPECT_EQ(preview->parentWidget(), dialog.get());
                     EXPECT_EQ(preview->printer()->pageLayout().pageSize().id(), QPageSize::A4);
                 },
                 file);
    dialog->slot_print();
    // The last character is the number of the page.
    EXPECT_EQ(
        paper_texts(file).join(QString()),
        QStringLiteral("调拨明细单号：DB1调出仓：一号仓调入仓：二号仓经办人：李制单人：王备注：急货品名称编码"
                       "规格价格数量总价存储位置备注货1c1s11.5011.50A1批1货2c2s22.5025.00A2批21"));
    EXPECT_TRUE(wire().isEmpty());
}
