#include <QSignalSpy>

#include "gui/dlg_instore_fixture.h"

// What a save sends, and what comes of it.

class instore_submit : public instore_editor {
protected:
    instore_submit() {
        server.always("wms_instore/do_add", R"({"http_state":1,"insert_id":"12","datetime":1586696219})");
        server.always("wms_instore/update_total", "1");
    }
    void watch() {
        saved = std::make_unique<QSignalSpy>(editor.get(), &dlg_instore_add::signal_instore_get_list);
    }
    /** All requests, each as "path body". */
    QList<QByteArray> wire() const {
        QList<QByteArray> lines;
        for (const auto& r : server.requests())
            lines.append(r.path + ' ' + r.body);
        return lines;
    }
    void expect_open() {
        EXPECT_TRUE(editor->isVisible());
        EXPECT_TRUE(editor->isEnabled());
        EXPECT_EQ(saved->size(), 0);
        EXPECT_TRUE(shown_tip().isEmpty()) << "no message";
        EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    }

    std::unique_ptr<QSignalSpy> saved;
};

class instore_submit_kind : public instore_submit, public testing::WithParamInterface<known_kind> {};

TEST_P(instore_submit_kind, sends_header_lines_with_their_stock_and_total) {
    open_filled(GetParam().type, {"9", "10"});
    // The partner that is no concern of the kind is not there, as nobody can pick it.
    const std::string partner = GetParam().partner;
    if (partner != "company") editor->slot_company_selected({});
    if (partner != "dept") editor->slot_dept_selected({});
    field("txt_remark")->setText(QStringLiteral(" 急 "));
    watch();
    click(editor.get(), "btn_submit");
    const QByteArray company = partner == "company" ? "&company=31" : "";
    const QByteArray dept = partner == "dept" ? "&dept=4" : "";
    const QByteArray rest = "&price=3.46&amount=2&total=6.91&warehouse=1&remark=轻放&place=A-1";
    EXPECT_EQ(wire(), QList<QByteArray>({"wms_instore/do_add type=" + QByteArray::number(GetParam().type) +
                                             company + "&operater=65&writer=3&remark=急" + dept,
                                         "wms_instore_detail/do_add main_id=12&product=9" + rest,
                                         "wms_stock_detail/do_add product=9" + rest,
                                         "wms_instore_detail/do_add main_id=12&product=10" + rest,
                                         "wms_stock_detail/do_add product=10" + rest,
                                         "wms_instore/update_total id=12&total=13.82"}));
    EXPECT_EQ(saved->size(), 1);
    EXPECT_FALSE(editor->isVisible());
    EXPECT_EQ(editor->result(), int(QDialog::Accepted));
}

TEST_P(instore_submit_kind, checks_operater_partner_and_lines_in_that_order) {
    open(0, GetParam().type);
    watch();
    click(editor.get(), "btn_submit");
    expect_tip(field("txt_operater"), QStringLiteral("请选择经办人"));
    choose_operater();
    const std::string partner = GetParam().partner;
    if (!partner.empty()) {
        click(editor.get(), "btn_submit");
        expect_tip(field("txt_" + partner), QString::fromUtf8(GetParam().missing));
        // The other partner does not help.
        choose_partner();
        if (partner == "company")
            editor->slot_company_selected({});
        else
            editor->slot_dept_selected({});
        click(editor.get(), "btn_submit");
        expect_tip(field("txt_" + partner), QString::fromUtf8(GetParam().missing));
        choose_partner();
    }
    click(editor.get(), "btn_submit");
    expect_tip(table, QStringLiteral("请先添加明细再保存"), QPoint(10, 30));
    expect_open();
    EXPECT_TRUE(server.requests().isEmpty());
    editor->slot_instore_detail_do_add(line_of("9"));
    click(editor.get(), "btn_submit");
    EXPECT_FALSE(editor->isVisible());
}

INSTANTIATE_TEST_SUITE_P(kinds, instore_submit_kind, testing::ValuesIn(inbound_rows),
                         [](const auto& p) { return std::string(p.param.page); });

TEST_F(instore_submit, missing_input_takes_nothing_away) {
    open(0, 1);
    watch();
    editor->slot_instore_detail_do_add(line_of("9"));
    editor->slot_instore_detail_do_add(line_of("10"));
    field("txt_remark")->setText(QStringLiteral(" 急 "));
    server.forget();
    const QStringList lines = row_texts(table, 0) + row_texts(table, 1);
    click(editor.get(), "btn_submit");
    expect_tip(field("txt_operater"), QStringLiteral("请选择经办人"));
    choose_operater();
    click(editor.get(), "btn_submit");
    expect_tip(field("txt_company"), QStringLiteral("请选择供应商"));
    expect_open();
    EXPECT_EQ(field("txt_operater")->text(), QStringLiteral("张三"));
    EXPECT_EQ(field("txt_remark")->text(), QStringLiteral(" 急 "));
    EXPECT_EQ(row_texts(table, 0) + row_texts(table, 1), lines);
    EXPECT_TRUE(server.requests().isEmpty());
    choose_partner();
    click(editor.get(), "btn_submit");
    EXPECT_EQ(server.bodies("wms_instore_detail/do_add").size(), 2);
    EXPECT_EQ(saved->size(), 1);
}

TEST_F(instore_submit, deleting_all_lines_asks_for_lines_again) {
    open_filled(7, {"9"});
    table->selectRow(0);
    with_question([this] { click(editor.get(), "btn_delete"); }, QStringLiteral("确认删除"),
                  QStringLiteral("确认删除吗？"), QMessageBox::Yes);
    click(editor.get(), "btn_submit");
    expect_tip(table, QStringLiteral("请先添加明细再保存"), QPoint(10, 30));
    EXPECT_TRUE(server.requests().isEmpty());
}

TEST_F(instore_submit, a_header_without_writer_and_remark_leaves_them_out) {
    g_http.current_user.id.clear();
    open_filled(7, {"9"});
    editor->slot_company_selected({});
    editor->slot_dept_selected({});
    field("txt_remark")->setText(QStringLiteral("  "));
    click(editor.get(), "btn_submit");
    EXPECT_EQ(server.requests().first().body, "type=7&operater=65");
}

TEST_F(instore_submit, the_sum_is_that_of_the_texts) {
    open_filled(7, {});
    auto line = line_of("9");
    line.amount = 1;
    line.price = 0.004;
    for (int i = 0; i < 3; ++i)
        editor->slot_instore_detail_do_add(line);
    line.price = 1.005;
    line.amount = 3;
    editor->slot_instore_detail_do_add(line);
    click(editor.get(), "btn_submit");
    // Rounded one by one to 0.00, 0.00, 0.00 and 3.01 (3.015 is a little less in binary).
    const QStringList totals = column_texts(table, 9);
    EXPECT_EQ(totals[0], QStringLiteral("0.00"));
    EXPECT_EQ(server.bodies("wms_instore/update_total"),
              QList<QByteArray>{"id=12&total=" + totals[3].toUtf8()});
}

TEST_F(instore_submit, the_table_is_what_is_saved_with_its_cells_trimmed) {
    open_filled(7, {"9"});
    const struct {
        int column;
        const char* text;
    } cells[] = {{1, " 8 "},  {7, " 1.50 "}, {8, " 4 "}, {9, " 100.00 "},
                 {10, " 2 "}, {12, " B "},   {13, " r "}};
    for (const auto& c : cells)
        table->item(0, c.column)->setText(QLatin1String(c.text));
    click(editor.get(), "btn_submit");
    EXPECT_EQ(server.bodies("wms_instore_detail/do_add"),
              QList<QByteArray>{
                  "main_id=12&product=8&price=1.50&amount=4&total=100.00&warehouse=2&remark=r&place=B"});
    EXPECT_EQ(server.bodies("wms_stock_detail/do_add"),
              QList<QByteArray>{"product=8&price=1.50&amount=4&total=100.00&warehouse=2&remark=r&place=B"});
    EXPECT_EQ(server.bodies("wms_instore/update_total"), QList<QByteArray>{"id=12&total=100.00"});
}

TEST_F(instore_submit, zeros_and_texts_go_out_as_they_are) {
    open_filled(7, {});
    auto line = line_of("9");
    line.amount = 0;
    line.price = 0;
    line.remark = QStringLiteral("a&b=c\n<d>");
    editor->slot_instore_detail_do_add(line);
    click(editor.get(), "btn_submit");
    EXPECT_EQ(server.bodies("wms_stock_detail/do_add"),
              QList<QByteArray>{
                  "product=9&price=0.00&amount=0&total=0.00&warehouse=1&remark=a&b=c\n<d>&place=A-1"});
    EXPECT_EQ(server.bodies("wms_instore/update_total"), QList<QByteArray>{"id=12&total=0.00"});
}

TEST_F(instore_submit, a_refused_header_does_not_stop_the_lines) {
    for (const char* body :
         {R"({"http_state":0,"insert_id":"12"})", R"({"insert_id":"12"})", "", "[]", "garbage"}) {
        open_filled(7, {"9"});
        server.answer(body);
        watch();
        click(editor.get(), "btn_submit");
        EXPECT_EQ(server.bodies("wms_instore_detail/do_add").value(0).left(18), "main_id=&product=9") << body;
        EXPECT_EQ(server.bodies("wms_stock_detail/do_add").size(), 1) << body;
        EXPECT_EQ(server.bodies("wms_instore/update_total"), QList<QByteArray>{"id=&total=6.91"}) << body;
        EXPECT_EQ(saved->size(), 1) << "the last answer alone decides";
        EXPECT_TRUE(shown_tip().isEmpty()) << "no message";
        EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    }
}

TEST_F(instore_submit, an_expired_session_is_renewed_on_the_way) {
    open_filled(7, {"9"});
    server.answer("7");
    click(editor.get(), "btn_submit");
    EXPECT_EQ(server.paths(),
              QList<QByteArray>({"wms_instore/do_add", "wms/check_login", "wms_instore_detail/do_add",
                                 "wms_stock_detail/do_add", "wms_instore/update_total"}));
    EXPECT_EQ(server.bodies("wms_instore/update_total"), QList<QByteArray>{"id=&total=6.91"});
}

TEST_F(instore_submit, answers_to_lines_and_stock_are_not_looked_at) {
    for (const char* body : {"0", "-1", "", "garbage"}) {
        server.always("wms_instore_detail/do_add", body);
        server.always("wms_stock_detail/do_add", body);
        open_filled(7, {"9", "10"});
        watch();
        click(editor.get(), "btn_submit");
        EXPECT_EQ(server.requests().size(), 6) << body;
        EXPECT_EQ(saved->size(), 1) << body;
    }
}

TEST_F(instore_submit, a_failed_total_keeps_the_dialog_open_without_a_word) {
    for (const char* body : {"0", "-1", "", "x", R"({"http_state":1})"}) {
        server.always("wms_instore/update_total", body);
        open_filled(7, {"9"});
        watch();
        click(editor.get(), "btn_submit");
        expect_open();
        EXPECT_EQ(table->rowCount(), 1);
    }
}

TEST_F(instore_submit, a_second_save_after_a_failed_total_makes_a_second_document) {
    open_filled(1, {"9"});
    watch();
    server.always("wms_instore/update_total", "0");
    click(editor.get(), "btn_submit");
    const auto first = wire();
    ASSERT_EQ(first.size(), 4);
    // A line added now shows the id that the first save brought.
    editor->slot_instore_detail_do_add(line_of("10"));
    EXPECT_EQ(column_texts(table, 15), QStringList({QString(), QStringLiteral("12")}));
    server.forget();
    server.always("wms_instore/do_add", R"({"http_state":1,"insert_id":"13"})");
    server.always("wms_instore/update_total", "1");
    click(editor.get(), "btn_submit");
    const auto second = wire();
    ASSERT_EQ(second.size(), 6);
    EXPECT_EQ(second[0], first[0]) << "without a total, as ever";
    EXPECT_EQ(second[1].left(43), "wms_instore_detail/do_add main_id=13&produc");
    EXPECT_EQ(second[2], first[2]) << "the stock once more";
    EXPECT_EQ(second[5], "wms_instore/update_total id=13&total=13.82");
    EXPECT_EQ(saved->size(), 1);
}

TEST_F(instore_submit, a_second_save_whose_header_is_refused_has_no_id) {
    open_filled(7, {"9"});
    server.always("wms_instore/update_total", "0");
    click(editor.get(), "btn_submit");
    server.always("wms_instore/do_add", R"({"http_state":0})");
    click(editor.get(), "btn_submit");
    EXPECT_EQ(server.bodies("wms_instore/update_total"),
              QList<QByteArray>({"id=12&total=6.91", "id=&total=6.91"}))
        << "not the id of the first document";
}

TEST_F(instore_submit, an_edit_posts_a_total_of_nothing_and_nothing_else) {
    open(1, 7);
    struct_instore document{};
    document.id = QStringLiteral("12");
    document.operater = QStringLiteral("65");
    document.details = {line_of("9"), line_of("10")};
    editor->slot_instore_to_edit(document);
    watch();
    click(editor.get(), "btn_submit");
    EXPECT_EQ(wire(), QList<QByteArray>{"wms_instore/update_total id=&total=13.82"});
    EXPECT_EQ(saved->size(), 1);
    EXPECT_FALSE(editor->isVisible());
}

TEST_F(instore_submit, takes_no_input_while_it_waits) {
    open_filled(7, {"9"});
    int pressed = 0;
    server.always("wms_instore_detail/do_add", [&](const recorded_request&) {
        ++pressed;
        click(editor.get(), "btn_submit");
        click(editor.get(), "btn_add");
        click(editor.get(), "btn_cancel");
        return scripted_answer("1");
    });
    watch();
    click(editor.get(), "btn_submit");
    EXPECT_EQ(pressed, 1);
    EXPECT_EQ(server.requests().size(), 4) << "one document";
    EXPECT_EQ(saved->size(), 1);
}

TEST_F(instore_submit, no_picker_opens_while_it_waits) {
    open_filled(7, {"9"});
    int opened = -1;
    server.always("wms_instore_detail/do_add", [&](const recorded_request&) {
        opened = presses_open_a_picker(editor.get(), {"txt_operater", "txt_company", "txt_dept"});
        return scripted_answer("1");
    });
    watch();
    click(editor.get(), "btn_submit");
    EXPECT_EQ(opened, 0);
    EXPECT_EQ(saved->size(), 1);
}

TEST_F(instore_submit, closing_the_window_on_the_way_does_not_cut_the_document_short) {
    open_filled(7, {"9", "10"});
    bool closed = false;
    server.always("wms_instore_detail/do_add", [&](const recorded_request&) {
        if (!closed) editor->close();
        closed = true;
        return scripted_answer("1");
    });
    watch();
    click(editor.get(), "btn_submit");
    EXPECT_EQ(server.requests().size(), 6);
    EXPECT_EQ(saved->size(), 1);
    EXPECT_EQ(editor->result(), int(QDialog::Accepted));
}

TEST_F(instore_submit, after_a_failure_the_keyboard_is_where_it_was) {
    open_filled(7, {"9"});
    server.always("wms_instore/update_total", "0");
    auto* button = child<QPushButton>(editor.get(), "btn_submit");
    button->setFocus();
    click(editor.get(), "btn_submit");
    EXPECT_EQ(editor->focusWidget(), button);
}

TEST_F(instore_submit, leaving_a_new_document_drops_it_without_a_call) {
    const struct {
        std::function<void()> leave;
        int result;
    } ways[] = {{[this] { click(editor.get(), "btn_cancel"); }, QDialog::Accepted},
                {[this] { QTest::keyClick(editor.get(), Qt::Key_Escape); }, QDialog::Rejected},
                {[this] { QTest::keyClick(table, Qt::Key_Escape); }, QDialog::Rejected},
                {[this] { editor->close(); }, QDialog::Rejected}};
    for (const auto& way : ways) {
        open_filled(1, {"9", "10"});
        watch();
        way.leave();
        EXPECT_FALSE(editor->isVisible());
        EXPECT_EQ(editor->result(), way.result);
        EXPECT_EQ(saved->size(), 0) << "the list is not loaded anew";
        EXPECT_TRUE(server.requests().isEmpty());
    }
}
