#include <QDir>
#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QTemporaryDir>

#include "documents/document_print.h"
#include "gui/outstore_fixture.h"
#include "net/constants.h"
#include "support/paper.h"

// Saving an outbound document, and viewing and printing a saved one.

class outstore_save : public outstore_test {
protected:
    void write(std::initializer_list<int> rows) {
        open(0);
        pick_operater();
        for (int n : rows)
            add_line(n, n);
        server.forget();
    }
    void submit() { click(dialog.get(), "btn_submit"); }
};

class outstore_save_kind : public outstore_kind {};

TEST_P(outstore_save_kind, sends_header_lines_and_total_in_order) {
    open(0, GetParam().type);
    pick_people(GetParam());
    field("txt_remark")->setText(QStringLiteral("  急用 "));
    add_line(2, 4);
    add_line(3, 1);
    server.forget();
    click(dialog.get(), "btn_submit");
    const QString header =
        QStringLiteral(
            "wms_outstore/do_add type=%1&company=%2&operater=3&writer=9&total=0.00&dept=%3&remark=急用")
            .arg(GetParam().type)
            .arg(uses("company") ? QStringLiteral("4") : QString(),
                 uses("dept") ? QStringLiteral("4") : QString());
    EXPECT_EQ(wire(),
              QStringList(header) +
                  words({"wms_outstore_detail/do_add main_id=77&product=p2&price=2.50&amount=4&total=10.00"
                         "&warehouse=w2&remark=批2&stock_id=2&place=A2&locked_id=C1",
                         "wms_outstore_detail/do_add main_id=77&product=p3&price=3.50&amount=1&total=3.50"
                         "&warehouse=w3&remark=批3&stock_id=3&place=A3&locked_id=C2",
                         "wms_outstore/update_total id=77&total=13.50"}));
    EXPECT_EQ(listed->size(), 1);
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_EQ(dialog->result(), int(QDialog::Accepted));
}

TEST_P(outstore_save_kind, needs_the_operator_the_partner_and_a_line_in_that_order) {
    open(0, GetParam().type);
    click(dialog.get(), "btn_submit");
    expect_tip(field("txt_operater"), QStringLiteral("请选择经办人"));
    pick_operater();
    if (!uses("")) {
        click(dialog.get(), "btn_submit");
        expect_tip(field((QByteArray("txt_") + GetParam().partner).constData()),
                   QString::fromUtf8(GetParam().missing));
        pick_people(GetParam());
    }
    click(dialog.get(), "btn_submit");
    expect_tip(table, QStringLiteral("请先添加明细再保存"), QPoint(10, 30));
    EXPECT_TRUE(dialog->isVisible());
    EXPECT_TRUE(wire().isEmpty());
}

INSTANTIATE_TEST_SUITE_P(kinds, outstore_save_kind, testing::ValuesIn(outbound_rows),
                         [](const auto& p) { return p.param.word(); });

TEST_F(outstore_save, a_partner_that_a_picker_took_away_is_missing) {
    open(0, 1);
    pick_people(outbound_rows[0]);
    dialog->slot_company_selected(struct_company());
    click(dialog.get(), "btn_submit");
    expect_tip(field("txt_company"), QStringLiteral("请选择供应商"));
}

TEST_F(outstore_save, deleting_all_lines_leaves_nothing_to_save) {
    write({1});
    table->selectRow(0);
    with_question([this] { click(dialog.get(), "btn_delete"); }, QStringLiteral("确认删除"),
                  QStringLiteral("确认删除吗？"), QMessageBox::Yes);
    submit();
    expect_tip(table, QStringLiteral("请先添加明细再保存"), QPoint(10, 30));
}

TEST_F(outstore_save, the_sum_is_of_the_texts_in_column_9) {
    open(0);
    pick_operater();
    auto row = stock(1);
    row.price = 0.333;
    row.amount = 3;
    // Picked and accepted as it is: the dialog's own total is 1.00, the row's is three times 0.33.
    for (int i = 0; i < 2; ++i)
        with_modal_of<dlg_outstore_detail_add>([this] { click(dialog.get(), "btn_add"); },
                                               [&](dlg_outstore_detail_add* line) {
                                                   line->slot_stock_selected(row);
                                                   click(line, "btn_save");
                                               });
    EXPECT_EQ(column_texts(table, 9), words({"0.99", "0.99"}));
    EXPECT_EQ(wire().first(),
              QStringLiteral("wms_stock_detail/lock_stock lock_type=3&id=1&amount=3&total=0.99"))
        << "the claim is of the product too";
    table->item(1, 9)->setText(QStringLiteral(" 5.255 "));
    server.forget();
    submit();
    const auto lines = server.bodies("wms_outstore_detail/do_add");
    ASSERT_EQ(lines.size(), 2);
    EXPECT_TRUE(lines[0].contains("&price=0.33&amount=3&total=0.99&")) << lines[0].toStdString();
    EXPECT_EQ(wire().last(), QStringLiteral("wms_outstore/update_total id=77&total=6.25"));
}

TEST_F(outstore_save, cells_are_sent_without_the_blanks_around_them) {
    open(0);
    pick_operater();
    auto row = stock(1);
    row.product = QStringLiteral(" p1 ");
    row.warehouse = QStringLiteral("w1 ");
    row.place = QStringLiteral("\tA 1 ");
    row.id = QStringLiteral(" 1");
    add_line(row, 1);
    server.forget();
    submit();
    EXPECT_EQ(wire()[1],
              QStringLiteral("wms_outstore_detail/do_add main_id=77&product=p1&price=1.50&amount=1&total=1.50"
                             "&warehouse=w1&remark=批1&stock_id=1&place=A 1&locked_id=C1"));
}

TEST_F(outstore_save, another_price_than_the_stock_rows_leaves_with_the_line) {
    open(0);
    pick_operater();
    with_modal_of<dlg_outstore_detail_add>([this] { click(dialog.get(), "btn_add"); },
                                           [](dlg_outstore_detail_add* line) {
                                               line->slot_stock_selected(stock(1));
                                               type_into(line, "txt_price", QStringLiteral("0"));
                                               click(line, "btn_save");
                                           });
    EXPECT_EQ(wire(), words({"wms_stock_detail/lock_stock lock_type=3&id=1&amount=10"}));
    submit();
    EXPECT_TRUE(
        server.bodies("wms_outstore_detail/do_add").first().contains("&price=0.00&amount=10&total=0.00&"));
}

TEST_F(outstore_save, a_refused_claim_goes_out_as_the_lines_claim) {
    server.always("wms_stock_detail/lock_stock", "0");
    write({1});
    submit();
    EXPECT_TRUE(wire()[1].endsWith(QStringLiteral("&locked_id=0")));
    EXPECT_EQ(listed->size(), 1);
}

TEST_F(outstore_save, a_line_that_the_service_would_not_release_is_saved) {
    write({1});
    server.always("wms_stock_detail/unlock_stock", "0");
    table->selectRow(0);
    with_question([this] { click(dialog.get(), "btn_delete"); }, QStringLiteral("确认删除"),
                  QStringLiteral("确认删除吗？"), QMessageBox::Yes);
    server.forget();
    submit();
    ASSERT_EQ(wire().size(), 3);
    EXPECT_TRUE(wire()[1].endsWith(QStringLiteral("&locked_id=C1")));
}

TEST_F(outstore_save, the_answers_to_lines_are_not_looked_at) {
    for (const char* answer : {"0", "", "refused"}) {
        claims = 0;
        server.always("wms_outstore_detail/do_add", answer);
        write({1, 2});
        submit();
        EXPECT_EQ(server.bodies("wms_outstore_detail/do_add").size(), 2) << answer;
        EXPECT_EQ(listed->size(), 1) << answer;
    }
}

TEST_F(outstore_save, lines_of_a_refused_header_go_out_for_no_document) {
    for (const char* answer :
         {"{\"http_state\":0}", "{\"http_state\":2,\"insert_id\":\"5\"}", "", "7", "[]"}) {
        claims = 0;
        write({1});
        server.always("wms_outstore/do_add", answer);
        server.always("wms_outstore/update_total", "0");
        submit();
        QStringList calls = wire();
        calls.removeAll(QStringLiteral("wms/check_login username=&password="));
        ASSERT_EQ(calls.size(), 3) << answer;
        EXPECT_TRUE(calls[1].startsWith(QStringLiteral("wms_outstore_detail/do_add main_id=&product=p1&")))
            << answer;
        EXPECT_EQ(calls[2], QStringLiteral("wms_outstore/update_total id=&total=1.50")) << answer;
        EXPECT_TRUE(dialog->isVisible());
        EXPECT_TRUE(shown_tip().isEmpty()) << "nothing is said";
        EXPECT_EQ(listed->size(), 0);
    }
}

TEST_F(outstore_save, a_refused_total_leaves_the_dialog_open_without_a_word) {
    for (const char* answer : {"0", "", "-1", "refused"}) {
        claims = 0;
        write({1});
        server.always("wms_outstore/update_total", answer);
        submit();
        EXPECT_TRUE(dialog->isVisible()) << answer;
        EXPECT_TRUE(shown_tip().isEmpty());
        EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
        EXPECT_EQ(listed->size(), 0);
        server.forget();
        // What the service has taken over already is given back once more.
        click(dialog.get(), "btn_cancel");
        EXPECT_EQ(wire(), words({"wms_stock_detail/unlock_stock locked_id=C1&lock_type=3"})) << answer;
    }
}

TEST_F(outstore_save, a_second_save_writes_a_second_document) {
    write({1});
    server.always("wms_outstore/update_total", "0");
    submit();
    const QStringList first = wire();
    server.forget();
    submit();
    EXPECT_EQ(wire(), first);
    server.forget();
    server.always("wms_outstore/do_add", R"({"http_state":0})");
    submit();
    EXPECT_EQ(wire().last(), QStringLiteral("wms_outstore/update_total id=&total=1.50"))
        << "the id of the first is not used again";
    add_line(2, 2);
    EXPECT_EQ(column_texts(table, 16), words({"", "77"})) << "but a new row shows it";
}

TEST_F(outstore_save, a_save_gives_no_claim_back) {
    write({1, 2});
    submit();
    EXPECT_TRUE(server.bodies("wms_stock_detail/unlock_stock").isEmpty());
    dialog.reset();
    EXPECT_TRUE(server.bodies("wms_stock_detail/unlock_stock").isEmpty());
}

TEST_F(outstore_save, presses_while_a_save_is_on_its_way_are_ignored) {
    write({1, 2});
    server.always("wms_outstore_detail/do_add", [this](const recorded_request&) {
        if (server.requests().size() > 9) return scripted_answer("1");
        submit();
        click(dialog.get(), "btn_cancel");
        dialog->close();
        click(dialog.get(), "btn_delete");
        EXPECT_TRUE(dialog->isVisible());
        return scripted_answer("1");
    });
    submit();
    EXPECT_EQ(server.paths(), (QList<QByteArray>{"wms_outstore/do_add", "wms_outstore_detail/do_add",
                                                 "wms_outstore_detail/do_add", "wms_outstore/update_total"}));
    EXPECT_EQ(listed->size(), 1);
    EXPECT_FALSE(dialog->isVisible());
}

TEST_F(outstore_save, no_picker_opens_while_a_save_is_on_its_way) {
    write({1});
    int opened = -1;
    server.always("wms_outstore_detail/do_add", [&](const recorded_request&) {
        opened = presses_open_a_picker(dialog.get(), {"txt_operater", "txt_company", "txt_dept"});
        return scripted_answer("1");
    });
    submit();
    EXPECT_EQ(opened, 0);
    EXPECT_EQ(listed->size(), 1);
}

TEST_F(outstore_save, an_edit_posts_nothing_but_a_total_for_no_document) {
    open(1);
    dialog->slot_outstore_to_edit(saved_document());
    pick_operater();
    submit();
    EXPECT_EQ(wire(), words({"wms_outstore/update_total id=&total=6.50"}));
    open(1);
    dialog->slot_outstore_to_edit(saved_document());
    server.forget();
    click(dialog.get(), "btn_cancel");
    EXPECT_TRUE(wire().isEmpty()) << "nor are claims given back";
}

class outstore_view : public outstore_test {
protected:
    void view() {
        open(5, 3);
        dialog->slot_outstore_to_edit(saved_document());
    }
};

TEST_F(outstore_view, shows_header_and_lines) {
    view();
    const struct {
        const char* name;
        const char* text;
    } fields[] = {{"txt_sn", "CK1"},       {"txt_writer", "王"}, {"txt_operater", "李"},
                  {"txt_company", "单位"}, {"txt_remark", "急"}, {"txt_dept", "部门"}};
    for (const auto& f : fields)
        EXPECT_EQ(field(f.name)->text(), QString::fromUtf8(f.text)) << f.name;
    ASSERT_EQ(table->rowCount(), 2);
    expect_cells(table, 1,
                 {"L2", "p2", "货2", "c2", "5", "类", "s2", "2.50", "2", "5.00", "w2", "仓2", "A2", "批2",
                  "2", "0", "77", "(no cell)"});
    EXPECT_TRUE(wire().isEmpty()) << "no claim is taken";
}

TEST_F(outstore_view, is_left_without_a_call) {
    const std::function<void()> ways[] = {[this] { click(dialog.get(), "btn_cancel"); },
                                          [this] { dialog->close(); },
                                          [this] { QTest::keyClick(dialog.get(), Qt::Key_Escape); }};
    for (const auto& leave : ways) {
        view();
        leave();
        EXPECT_FALSE(dialog->isVisible());
        EXPECT_TRUE(wire().isEmpty());
    }
}

TEST_F(outstore_view, its_print_text) {
    EXPECT_EQ(print_document(QStringLiteral("出库明细"), saved_document()),
              g_style_detail + QStringLiteral("<table width=100% border=1 cellpadding=0 "
                                              "cellspacing=0><tr><td id=title colspan=2>出库明细</td></tr>"
                                              "<tr><td>单号：CK1</td><td>经办人：李</td></"
                                              "tr><tr><td>制单人：王</td><td>供应商：单位</td></tr>"
                                              "<tr><td colspan=2>备注：急</td></tr><tr><td id=td_data "
                                              "colspan=2><table id=table_data width=100% "
                                              "border=1 cellpadding=0 cellspacing=0><tr "
                                              "class=tr_header><td>货品名称</td><td>编码</td><td>类别</td>"
                                              "<td>规格</td><td>单价</td><td>数量</td><td>总价</td><td>仓库</"
                                              "td><td>存储位置</td><td>备注</td></tr>"
                                              "<tr><td>货1</td><td>c1</td><td>类</td><td>s1</td><td>1.50</"
                                              "td><td>1</td><td>1.50</td><td>仓1</td>"
                                              "<td>A1</td><td>批1</td></tr>"
                                              "<tr><td>货2</td><td>c2</td><td>类</td><td>s2</td><td>2.50</"
                                              "td><td>2</td><td>5.00</td><td>仓2</td>"
                                              "<td>A2</td><td>批2</td></tr></table></td></tr>"));
}

TEST_F(outstore_view, prints_what_came_and_not_what_the_table_shows_later) {
    view();
    table->item(0, 2)->setText(QStringLiteral("改过"));
    const QTemporaryDir folder;
    const QString file = folder.filePath(QStringLiteral("out.pdf"));
    with_preview([this] { click(dialog.get(), "btn_print"); },
                 [this](QPrintPreviewDialog* preview) {
                     EXPECT_TRUE(preview->isMaximized());
                     EXPECT_EQ(preview->parentWidget(), dialog.get());
                     EXPECT_EQ(preview->printer()->pageLayout().pageSize().id(), QPageSize::A4);
                     EXPECT_EQ(preview->printer()->resolution(), QPrinter().resolution());
                     preview->printer()->setPageSize(QPageSize(QPageSize::Letter));
                 },
                 file);
    with_preview([this] { click(dialog.get(), "btn_print"); },
                 [](QPrintPreviewDialog* preview) {
                     EXPECT_EQ(preview->printer()->pageLayout().pageSize().id(), QPageSize::A4);
                 },
                 file);
    dialog->slot_print();
    // The last character is the number of the page.
    EXPECT_EQ(
        paper_texts(file).join(QString()),
        QStringLiteral("出库明细单号：CK1经办人：李制单人：王供应商：单位备注：急货品名称编码类别规格单价"
                       "数量总价仓库存储位置备注货1c1类s11.5011.50仓1A1批1货2c2类s22.5025.00仓2A2批21"));
    EXPECT_TRUE(wire().isEmpty());
}
