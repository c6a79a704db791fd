#include <QValidator>

#include "gui/taking_fixture.h"

class taking_line : public taking_test {
protected:
    void open_line(int mode = 0) {
        using dialog_class = dlg_stock_taking_detail_add;
        line = std::make_unique<dialog_class>(nullptr, mode);
        added = std::make_unique<QSignalSpy>(line.get(), &dialog_class::signal_stock_taking_detail_do_add);
        edited = std::make_unique<QSignalSpy>(line.get(), &dialog_class::signal_stock_taking_detail_do_edit);
        line->show();
    }
    QLineEdit* edit(const char* name) { return child<QLineEdit>(line.get(), name); }
    QTextEdit* remark() { return child<QTextEdit>(line.get(), "txt_remark"); }
    QString text(const char* name) { return edit(name)->text(); }
    void submit() { click(line.get(), "btn_submit"); }
    struct_stock_taking_detail saved() {
        submit();
        if (added->isEmpty()) throw std::runtime_error("the line was not handed over");
        return added->last().first().value<struct_stock_taking_detail>();
    }
    void expect_profitloss(const char* amount, const char* total) {
        EXPECT_EQ(text("txt_profitloss_amount"), u(amount));
        EXPECT_EQ(text("txt_profitloss_total"), u(total));
    }

    std::unique_ptr<dlg_stock_taking_detail_add> line;
    std::unique_ptr<QSignalSpy> added;
    std::unique_ptr<QSignalSpy> edited;
};

TEST_F(taking_line, window_and_widgets) {
    open_line();
    EXPECT_EQ(line->windowTitle(), u("添加盘点明细"));
    expect_window(line.get(), QSize(433, 347), Qt::WindowCloseButtonHint);
    const struct {
        const char* name;
        const char* label;
        const char* text;
        bool read_only;
    } rows[] = {{"txt_product_name", "label", "货品", true},
                {"txt_warehouse_name", "label_11", "仓库", true},
                {"txt_place", "label_13", "存储位置", true},
                {"txt_num", "label_9", "编码", true},
                {"txt_spec", "label_2", "规格", true},
                {"txt_price", "label_3", "参考价", false},
                {"txt_sys_amount", "label_4", "系统数量", true},
                {"txt_real_amount", "label_5", "盘点数量", false},
                {"txt_profitloss_amount", "label_8", "盈亏数量", true},
                {"txt_profitloss_total", "label_6", "盈亏金额", true}};
    for (const auto& r : rows) {
        EXPECT_EQ(child<QLabel>(line.get(), r.label)->buddy(), edit(r.name)) << r.name;
        expect_label_of(line.get(), r.name, r.text);
        EXPECT_EQ(edit(r.name)->isReadOnly(), r.read_only) << r.name;
        EXPECT_EQ(edit(r.name)->placeholderText(),
                  QByteArray(r.name) == "txt_product_name" ? u("点击选择") : QString());
    }
    const struct {
        const char* star;
        const char* label;
        const char* field;
    } stars[] = {{"label_10", "label", "txt_product_name"}, {"label_12", "label_5", "txt_real_amount"}};
    for (const auto& s : stars) {
        const auto* star = child<QLabel>(line.get(), s.star);
        EXPECT_EQ(star->text(), u("*"));
        EXPECT_EQ(star->styleSheet(), u("color:red;"));
        expect_left_to_right(line.get(), {s.label, s.star, s.field});
        EXPECT_EQ(star->geometry().center().y(), edit(s.field)->geometry().center().y());
    }
    EXPECT_EQ(child<QLabel>(line.get(), "label_7")->text(), u("备注"));
    EXPECT_EQ(remark()->maximumHeight(), 100);
    EXPECT_EQ(child<QPushButton>(line.get(), "btn_submit")->text(), u("添加"));
    EXPECT_EQ(child<QPushButton>(line.get(), "btn_cancel")->text(), u("取消"));
    expect_tab_order(line.get(),
                     {"txt_product_name", "txt_warehouse_name", "txt_place", "txt_num", "txt_spec",
                      "txt_price", "txt_sys_amount", "txt_real_amount", "txt_profitloss_amount",
                      "txt_profitloss_total", "txt_remark", "btn_submit", "btn_cancel"});
}

TEST_F(taking_line, validators) {
    open_line();
    for (const char* name : {"txt_price", "txt_profitloss_total"}) {
        const auto* validator = qobject_cast<const QDoubleValidator*>(edit(name)->validator());
        ASSERT_NE(validator, nullptr) << name;
        EXPECT_EQ(validator->bottom(), 0);
        EXPECT_EQ(validator->top(), 99999999);
        EXPECT_EQ(validator->decimals(), 2);
    }
    for (const char* name : {"txt_sys_amount", "txt_real_amount", "txt_profitloss_amount"}) {
        const auto* validator = qobject_cast<const QIntValidator*>(edit(name)->validator());
        ASSERT_NE(validator, nullptr) << name;
        EXPECT_EQ(validator->bottom(), 0);
        EXPECT_EQ(validator->top(), 99999999);
    }
    type_into(line.get(), "txt_price", u("2.9999"));
    EXPECT_EQ(text("txt_price"), u("2.99")) << "more decimals can only be set";
    type_into(line.get(), "txt_real_amount", u("-1,2.3x"));
    EXPECT_EQ(text("txt_real_amount"), u("123"));
}

TEST_F(taking_line, a_left_press_on_the_product_opens_the_stock_picker_over_all_warehouses) {
    open_line();
    QTest::mousePress(edit("txt_product_name"), Qt::RightButton);
    QTest::mousePress(edit("txt_num"), Qt::LeftButton);
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    pick<dlg_search_stock>(line.get(), "txt_product_name", u("选择货品库存"), [](dlg_search_stock* picker) {
        emit picker->signal_stock_selected(stock(2));
        picker->close();
    });
    EXPECT_EQ(text("txt_product_name"), u("货2"));
    ASSERT_FALSE(server.bodies("wms_stock_detail/get_page").isEmpty());
    for (const auto& body : server.bodies("wms_stock_detail/get_page"))
        EXPECT_FALSE(body.contains("warehouse="));
}

TEST_F(taking_line, a_stock_row_begins_the_line_without_a_difference) {
    open_line();
    line->slot_stock_selected(stock(2));
    const struct {
        const char* name;
        const char* text;
    } fields[] = {{"txt_product_name", "货2"}, {"txt_spec", "s2"},           {"txt_num", "c2"},
                  {"txt_price", "2.50"},       {"txt_sys_amount", "20"},     {"txt_real_amount", "20"},
                  {"txt_place", "A2"},         {"txt_warehouse_name", "仓2"}};
    for (const auto& f : fields)
        EXPECT_EQ(text(f.name), u(f.text)) << f.name;
    expect_profitloss("0", "0");
    EXPECT_EQ(remark()->toPlainText(), u("批2"));
    EXPECT_TRUE(wire().isEmpty());
}

TEST_F(taking_line, another_stock_row_takes_the_place_of_the_first_and_its_count) {
    open_line();
    line->slot_stock_selected(stock(2));
    type_into(line.get(), "txt_real_amount", u("1"));
    line->slot_stock_selected(stock(3));
    EXPECT_EQ(text("txt_real_amount"), u("30"));
    expect_profitloss("0", "0");
}

TEST_F(taking_line, added_at_once_shows_no_difference_and_is_refused) {
    open_line();
    line->slot_stock_selected(stock(2));
    submit();
    expect_tip(edit("txt_real_amount"), u("盘点数量没有变化"));
    EXPECT_TRUE(line->isVisible());
    EXPECT_EQ(added->size(), 0);
}

TEST_F(taking_line, checks_the_product_before_the_difference) {
    open_line();
    submit();
    expect_tip(edit("txt_product_name"), u("请先选择货品"));
    auto nameless = stock(2);
    nameless.product_name = u("  ");
    line->slot_stock_selected(nameless);
    type_into(line.get(), "txt_real_amount", u("1"));
    submit();
    expect_tip(edit("txt_product_name"), u("请先选择货品"));
    EXPECT_EQ(added->size(), 0);
    EXPECT_TRUE(line->isVisible());
}

TEST_F(taking_line, the_money_is_truncated_toward_zero) {
    const struct {
        int system;
        const char* price;
        const char* counted;
        const char* amount;
        const char* total;
    } rows[] = {{10, "2.50", "8", "-2", "-5.00"},
                {10, "1.5", "7", "-3", "-4.00"},
                {10, "0.99", "11", "1", "0.00"},
                {10, "0.99", "9", "-1", "0.00"},
                {10, "2.9999", "11", "1", "2.00"},
                {10, "1.5", "13", "3", "4.00"},
                {10, "", "13", "3", "0.00"},
                {10, "2", "", "-10", "-20.00"},
                {0, "99999999", "99999999", "99999999", "9999999800000000.00"}};
    for (const auto& r : rows) {
        open_line();
        auto row = stock(1);
        row.amount = r.system;
        line->slot_stock_selected(row);
        edit("txt_price")->setText(u(r.price));
        edit("txt_real_amount")->setText(u(r.counted));
        expect_profitloss(r.amount, r.total);
    }
}

TEST_F(taking_line, gain_and_loss_follow_price_and_count_as_they_are_typed) {
    open_line();
    line->slot_stock_selected(stock(1));
    type_into(line.get(), "txt_real_amount", u("8"));
    expect_profitloss("-2", "-3.00");
    type_into(line.get(), "txt_price", u("2.75"));
    expect_profitloss("-2", "-5.00");
    type_into(line.get(), "txt_real_amount", u("10"));
    expect_profitloss("0", "0.00");
}

TEST_F(taking_line, without_a_stock_row_what_is_typed_counts_against_nothing) {
    open_line();
    type_into(line.get(), "txt_real_amount", u("3"));
    expect_profitloss("3", "0.00");
    type_into(line.get(), "txt_price", u("2"));
    expect_profitloss("3", "6.00");
}

TEST_F(taking_line, add_hands_over_the_whole_line_and_closes) {
    open_line();
    auto row = stock(2);
    row.place = u(" A 2 ");
    line->slot_stock_selected(row);
    type_into(line.get(), "txt_price", u("2.75"));
    type_into(line.get(), "txt_real_amount", u("17"));
    remark()->setPlainText(u("  一\n二 "));
    const auto d = saved();
    EXPECT_TRUE(d.id.isEmpty() && d.main_id.isEmpty() && d.locked_id.isEmpty());
    EXPECT_EQ(d.stock_id, u("2"));
    EXPECT_EQ(d.product, u("p2"));
    EXPECT_EQ(d.product_name, u("货2"));
    EXPECT_EQ(d.code, u("c2"));
    EXPECT_EQ(d.spec, u("s2"));
    EXPECT_EQ(d.warehouse, u("w2"));
    EXPECT_EQ(d.warehouse_name, u("仓2"));
    EXPECT_EQ(d.place, u("A 2"));
    EXPECT_EQ(d.remark, u("一\n二"));
    EXPECT_DOUBLE_EQ(d.price, 2.75);
    EXPECT_EQ(d.sys_amount, 20);
    EXPECT_EQ(d.real_amount, 17);
    EXPECT_EQ(d.profitloss_amount, -3);
    EXPECT_DOUBLE_EQ(d.profitloss_total, -8) << "of -8.25";
    EXPECT_EQ(d.changed, 1) << "another product than none";
    EXPECT_FALSE(line->isVisible());
    EXPECT_EQ(line->result(), int(QDialog::Accepted));
}

TEST_F(taking_line, a_pick_of_the_same_product_is_no_change) {
    open_line();
    line->slot_stock_selected(stock(2));
    auto elsewhere = stock(2);
    elsewhere.id = u("5");
    line->slot_stock_selected(elsewhere);
    type_into(line.get(), "txt_real_amount", u("1"));
    const auto d = saved();
    EXPECT_EQ(d.changed, 0) << "products are compared, not stock rows";
    EXPECT_EQ(d.stock_id, u("5"));
}

TEST_F(taking_line, an_empty_count_is_0_and_an_empty_price_too) {
    open_line();
    line->slot_stock_selected(stock(2));
    edit("txt_real_amount")->clear();
    edit("txt_price")->clear();
    const auto d = saved();
    EXPECT_EQ(d.real_amount, 0);
    EXPECT_EQ(d.profitloss_amount, -20);
    EXPECT_EQ(d.price, 0);
    EXPECT_EQ(d.profitloss_total, 0);
    open_line();
    auto none_left = stock(2);
    none_left.amount = 0;
    line->slot_stock_selected(none_left);
    edit("txt_real_amount")->clear();
    submit();
    expect_tip(edit("txt_real_amount"), u("盘点数量没有变化"));
}

TEST_F(taking_line, an_edit_takes_the_line_emits_nothing_and_stays_open) {
    open_line(1);
    auto former = counted_line(2);
    former.profitloss_total = -7.5;
    former.locked_id = u("C1");
    line->slot_stock_taking_detail_to_edit(former);
    EXPECT_EQ(text("txt_product_name"), u("货2"));
    EXPECT_EQ(text("txt_num"), u("c2"));
    EXPECT_EQ(text("txt_spec"), u("s2"));
    EXPECT_EQ(text("txt_warehouse_name"), u("仓2"));
    EXPECT_EQ(text("txt_place"), u("A2"));
    EXPECT_EQ(text("txt_price"), u("2.50"));
    EXPECT_EQ(text("txt_sys_amount"), u("20"));
    EXPECT_EQ(text("txt_real_amount"), u("19"));
    EXPECT_EQ(remark()->toPlainText(), u("批2"));
    expect_profitloss("-1", "-7.50");
    type_into(line.get(), "txt_real_amount", u("18"));
    for (int i = 0; i < 2; ++i)
        submit();
    EXPECT_TRUE(line->isVisible());
    EXPECT_TRUE(shown_tip().isEmpty());
    EXPECT_EQ(added->size() + edited->size(), 0);
    type_into(line.get(), "txt_real_amount", u("20"));
    submit();
    expect_tip(edit("txt_real_amount"), u("盘点数量没有变化"));
}

TEST_F(taking_line, cancel_escape_and_the_close_box_hand_nothing_over) {
    const std::function<void()> ways[] = {[this] { click(line.get(), "btn_cancel"); },
                                          [this] { QTest::keyClick(line.get(), Qt::Key_Escape); },
                                          [this] { line->close(); }};
    for (const auto& leave : ways) {
        open_line();
        line->slot_stock_selected(stock(1));
        type_into(line.get(), "txt_real_amount", u("1"));
        leave();
        EXPECT_FALSE(line->isVisible());
        EXPECT_EQ(line->result(), int(QDialog::Rejected));
        EXPECT_EQ(added->size() + edited->size(), 0);
    }
}

TEST_F(taking_line, a_second_press_while_the_first_is_on_its_way_is_ignored) {
    open_line();
    line->slot_stock_selected(stock(1));
    type_into(line.get(), "txt_real_amount", u("1"));
    QObject::connect(line.get(), &dlg_stock_taking_detail_add::signal_stock_taking_detail_do_add, line.get(),
                     [this] {
                         if (added->size() < 3) submit();
                     });
    submit();
    EXPECT_EQ(added->size(), 1);
}
