#include <QComboBox>
#include <QValidator>

#include "gui/outstore_fixture.h"

class outstore_line : public outstore_test {
protected:
    void open_line(int mode = 0) {
        line = std::make_unique<dlg_outstore_detail_add>(nullptr, mode);
        added =
            std::make_unique<QSignalSpy>(line.get(), &dlg_outstore_detail_add::signal_outstore_detail_do_add);
        edited = std::make_unique<QSignalSpy>(line.get(),
                                              &dlg_outstore_detail_add::signal_outstore_detail_do_edit);
        line->show();
    }
    QLineEdit* edit(const char* name) { return child<QLineEdit>(line.get(), name); }
    QString text(const char* name) { return edit(name)->text(); }
    struct_outstore_detail saved() {
        click(line.get(), "btn_save");
        auto& spy = added->isEmpty() ? edited : added;
        if (spy->size() != 1) throw std::runtime_error("the line was not handed over");
        return spy->first().first().value<struct_outstore_detail>();
    }

    std::unique_ptr<dlg_outstore_detail_add> line;
    std::unique_ptr<QSignalSpy> added;
    std::unique_ptr<QSignalSpy> edited;
};

TEST_F(outstore_line, window_and_widgets) {
    open_line();
    EXPECT_EQ(line->windowTitle(), QStringLiteral("添加出库明细"));
    expect_window(line.get(), QSize(450, 333), Qt::WindowCloseButtonHint);
    const struct {
        const char* name;
        const char* text;
        bool required;
        bool read_only;
    } rows[] = {{"product_name", "货品", true, true}, {"code", "编码", false, true},
                {"spec", "规格", false, true},        {"warehouse", "仓库", false, true},
                {"place", "位置", false, true},       {"price", "单价", true, false},
                {"amount", "数量", true, false},      {"total", "总价", false, true}};
    for (const auto& r : rows) {
        const QByteArray name = r.name;
        auto* f = edit(("txt_" + name).constData());
        expect_label_of(line.get(), ("txt_" + name).constData(), r.text);
        EXPECT_EQ(f->isReadOnly(), r.read_only) << r.name;
        EXPECT_EQ(f->placeholderText(), name == "product_name" ? QStringLiteral("点击选择库存") : QString());
        auto* marker = line->findChild<QLabel*>(QLatin1String("label_" + name + "_required"));
        ASSERT_EQ(marker != nullptr, r.required) << r.name;
        if (marker == nullptr) continue;
        EXPECT_EQ(marker->text(), QStringLiteral("*"));
        EXPECT_EQ(marker->styleSheet(), QStringLiteral("color:red"));
        EXPECT_LT(marker->x(), f->x());
    }
    auto* remark = child<QTextEdit>(line.get(), "txt_remark");
    EXPECT_EQ(child<QLabel>(line.get(), "label_remark")->text(), QStringLiteral("备注"));
    EXPECT_GT(remark->y(), edit("txt_total")->y());
    EXPECT_EQ(child<QPushButton>(line.get(), "btn_save")->text(), QStringLiteral("保存"));
    EXPECT_EQ(child<QPushButton>(line.get(), "btn_cancel")->text(), QStringLiteral("取消"));
    EXPECT_TRUE(line->findChildren<QComboBox*>().isEmpty()) << "the warehouse comes with the stock row";
    expect_tab_order(line.get(),
                     {"txt_product_name", "txt_code", "txt_spec", "txt_warehouse", "txt_place", "txt_price",
                      "txt_amount", "txt_total", "txt_remark", "btn_save", "btn_cancel"});
}

TEST_F(outstore_line, has_room_with_the_style_sheet) {
    open_line();
    expect_fits_with_the_style_sheet(line.get());
}

TEST_F(outstore_line, validators) {
    open_line();
    const auto* price = qobject_cast<const QDoubleValidator*>(edit("txt_price")->validator());
    const auto* amount = qobject_cast<const QIntValidator*>(edit("txt_amount")->validator());
    const auto* total = qobject_cast<const QDoubleValidator*>(edit("txt_total")->validator());
    ASSERT_TRUE(price != nullptr && amount != nullptr && total != nullptr);
    EXPECT_EQ(price->bottom(), 0.0);
    EXPECT_EQ(price->top(), 99999999.0);
    EXPECT_EQ(price->decimals(), 2);
    EXPECT_EQ(amount->bottom(), 0);
    EXPECT_EQ(amount->top(), 99999999);
    EXPECT_EQ(total->bottom(), 0.0);
    EXPECT_EQ(total->top(), 1e16);
    EXPECT_EQ(total->decimals(), 2);
}

TEST_F(outstore_line, an_amount_is_typed_in_digits_alone_in_any_locale) {
    const QLocale former;
    for (const auto& locale :
         {QLocale(QLocale::Chinese), QLocale(QLocale::German), QLocale(QLocale::English)}) {
        QLocale::setDefault(locale);
        open_line();
        type_into(line.get(), "txt_amount", QStringLiteral("1,2.3-4 x5"));
        EXPECT_EQ(text("txt_amount"), QStringLiteral("12345"));
    }
    QLocale::setDefault(former);
}

TEST_F(outstore_line, a_left_press_on_the_product_opens_the_stock_picker_without_a_warehouse) {
    open_line();
    QTest::mousePress(edit("txt_product_name"), Qt::RightButton);
    QTest::mousePress(edit("txt_code"), Qt::LeftButton);
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    with_modal_of<dlg_search_stock>([this] { QTest::mousePress(edit("txt_product_name"), Qt::LeftButton); },
                                    [](dlg_search_stock* picker) {
                                        EXPECT_EQ(picker->windowTitle(), QStringLiteral("查询选择库存"));
                                        emit picker->signal_stock_selected(stock(2));
                                        picker->close();
                                    });
    EXPECT_EQ(text("txt_product_name"), QStringLiteral("货2"));
    for (const auto& body : server.bodies("wms_stock_detail/get_page"))
        EXPECT_FALSE(body.contains("warehouse="));
}

TEST_F(outstore_line, a_stock_row_fills_the_line_with_its_whole_quantity) {
    open_line();
    line->slot_stock_selected(stock(2));
    const struct {
        const char* name;
        const char* text;
    } fields[] = {{"txt_product_name", "货2"}, {"txt_code", "c2"},    {"txt_spec", "s2"},
                  {"txt_warehouse", "仓2"},    {"txt_place", "A2"},   {"txt_price", "2.50"},
                  {"txt_amount", "20"},        {"txt_total", "50.00"}};
    for (const auto& f : fields)
        EXPECT_EQ(text(f.name), QString::fromUtf8(f.text)) << f.name;
    EXPECT_EQ(child<QTextEdit>(line.get(), "txt_remark")->toPlainText(), QStringLiteral("批2"));
    EXPECT_TRUE(shown_tip().isEmpty());
    EXPECT_TRUE(wire().isEmpty());
}

TEST_F(outstore_line, another_stock_row_takes_the_place_of_the_first) {
    open_line();
    line->slot_stock_selected(stock(3));
    line->slot_stock_selected(stock(1));
    EXPECT_EQ(text("txt_amount"), QStringLiteral("10"));
    EXPECT_EQ(text("txt_total"), QStringLiteral("15.00"));
    EXPECT_TRUE(shown_tip().isEmpty()) << "the quantity of the first is no overdraft of the second";
    type_into(line.get(), "txt_amount", QStringLiteral("11"));
    expect_tip(edit("txt_amount"), QStringLiteral("不能超过当前最大库存：10"));
    EXPECT_EQ(saved().stock_id, QStringLiteral("1"));
}

TEST_F(outstore_line, the_total_follows_price_and_amount) {
    open_line();
    line->slot_stock_selected(stock(2));
    type_into(line.get(), "txt_amount", QStringLiteral("3"));
    EXPECT_EQ(text("txt_total"), QStringLiteral("7.50"));
    type_into(line.get(), "txt_price", QStringLiteral("1.25"));
    EXPECT_EQ(text("txt_total"), QStringLiteral("3.75"));
    type_into(line.get(), "txt_amount", QString());
    EXPECT_EQ(text("txt_total"), QStringLiteral("0.00"));
    type_into(line.get(), "txt_amount", QStringLiteral("2"));
    type_into(line.get(), "txt_price", QString());
    EXPECT_EQ(text("txt_total"), QStringLiteral("0.00"));
}

TEST_F(outstore_line, without_a_stock_row_the_amount_does_nothing_and_the_price_does) {
    open_line();
    type_into(line.get(), "txt_amount", QStringLiteral("3"));
    EXPECT_TRUE(text("txt_total").isEmpty());
    type_into(line.get(), "txt_price", QStringLiteral("2"));
    EXPECT_EQ(text("txt_total"), QStringLiteral("6.00"));
    type_into(line.get(), "txt_amount", QStringLiteral("99999999"));
    EXPECT_EQ(text("txt_total"), QStringLiteral("6.00"));
    EXPECT_TRUE(shown_tip().isEmpty());
}

TEST_F(outstore_line, no_more_than_the_stock_row_has_can_be_taken) {
    open_line();
    line->slot_stock_selected(stock(2));
    type_into(line.get(), "txt_price", QStringLiteral("1.50"));
    type_into(line.get(), "txt_amount", QStringLiteral("20"));
    EXPECT_TRUE(shown_tip().isEmpty());
    edit("txt_amount")->setText(QStringLiteral("21"));
    expect_tip(edit("txt_amount"), QStringLiteral("不能超过当前最大库存：20"));
    EXPECT_EQ(text("txt_amount"), QStringLiteral("20"));
    EXPECT_EQ(text("txt_total"), QStringLiteral("30.00")) << "of the price typed in";
}

TEST_F(outstore_line, a_stock_row_without_units_gives_a_line_without_units) {
    open_line();
    auto row = stock(2);
    row.amount = 0;
    line->slot_stock_selected(row);
    type_into(line.get(), "txt_amount", QStringLiteral("1"));
    expect_tip(edit("txt_amount"), QStringLiteral("不能超过当前最大库存：0"));
    EXPECT_EQ(text("txt_amount"), QStringLiteral("0"));
    const auto detail = saved();
    EXPECT_EQ(detail.amount, 0);
    EXPECT_EQ(detail.stock_id, QStringLiteral("2"));
    EXPECT_FALSE(line->isVisible());
}

TEST_F(outstore_line, checks_come_in_their_order) {
    open_line();
    click(line.get(), "btn_save");
    expect_tip(edit("txt_product_name"), QStringLiteral("请先选择库存"));
    auto row = stock(2);
    row.product_name = QStringLiteral("  ");
    line->slot_stock_selected(row);
    click(line.get(), "btn_save");
    expect_tip(edit("txt_product_name"), QStringLiteral("请先选择库存"));
    row = stock(2);
    row.warehouse.clear();
    row.warehouse_name.clear();
    row.place.clear();
    line->slot_stock_selected(row);
    edit("txt_price")->setText(QStringLiteral(" "));
    edit("txt_amount")->setText(QString());
    click(line.get(), "btn_save");
    expect_tip(edit("txt_price"), QStringLiteral("请填写单价"));
    edit("txt_price")->setText(QStringLiteral("0"));
    click(line.get(), "btn_save");
    expect_tip(edit("txt_amount"), QStringLiteral("请填写数量"));
    EXPECT_TRUE(line->isVisible());
    EXPECT_EQ(added->size(), 0);
    edit("txt_amount")->setText(QStringLiteral("0"));
    EXPECT_EQ(saved().warehouse, QString())
        << "warehouse and place are not checked, 0 is a price and an amount";
}

TEST_F(outstore_line, add_hands_over_the_whole_line_and_closes) {
    open_line();
    line->slot_stock_selected(stock(2));
    type_into(line.get(), "txt_price", QStringLiteral("9.75"));
    type_into(line.get(), "txt_amount", QStringLiteral("4"));
    child<QTextEdit>(line.get(), "txt_remark")->setPlainText(QStringLiteral("  一\n二 "));
    const auto d = saved();
    EXPECT_TRUE(d.id.isEmpty() && d.main_id.isEmpty() && d.locked_id.isEmpty());
    EXPECT_EQ(d.stock_id, QStringLiteral("2"));
    EXPECT_EQ(d.product, QStringLiteral("p2"));
    EXPECT_EQ(d.product_name, QStringLiteral("货2"));
    EXPECT_EQ(d.category, QStringLiteral("5"));
    EXPECT_EQ(d.category_name, QStringLiteral("类"));
    EXPECT_EQ(d.warehouse, QStringLiteral("w2"));
    EXPECT_EQ(d.warehouse_name, QStringLiteral("仓2"));
    EXPECT_EQ(d.code, QStringLiteral("c2"));
    EXPECT_EQ(d.spec, QStringLiteral("s2"));
    EXPECT_EQ(d.place, QStringLiteral("A2"));
    EXPECT_EQ(d.remark, QStringLiteral("一\n二"));
    EXPECT_DOUBLE_EQ(d.price, 9.75) << "another price than the stock row's";
    EXPECT_EQ(d.amount, 4);
    EXPECT_DOUBLE_EQ(d.total, 39);
    EXPECT_EQ(d.changed, 0) << "only an edit notes a change";
    EXPECT_EQ(edited->size(), 0);
    EXPECT_FALSE(line->isVisible());
    EXPECT_EQ(line->result(), int(QDialog::Accepted));
}

TEST_F(outstore_line, the_total_of_a_pick_is_of_the_price_before_it_is_rounded) {
    open_line();
    auto row = stock(1);
    row.price = 0.333;
    row.amount = 3;
    line->slot_stock_selected(row);
    EXPECT_EQ(text("txt_price"), QStringLiteral("0.33"));
    EXPECT_EQ(text("txt_total"), QStringLiteral("1.00"));
    const auto d = saved();
    EXPECT_DOUBLE_EQ(d.price, 0.33);
    EXPECT_DOUBLE_EQ(d.total, 1);
}

TEST_F(outstore_line, an_edit_starts_empty_and_notes_another_stock_row) {
    open_line(1);
    struct_outstore_detail former = saved_line(1);
    former.id = QStringLiteral("8");
    line->slot_outstore_detail_to_edit(former);
    EXPECT_TRUE(text("txt_product_name").isEmpty() && text("txt_amount").isEmpty());
    line->slot_stock_selected(stock(1));
    const auto d = saved();
    EXPECT_EQ(added->size(), 0);
    EXPECT_EQ(edited->size(), 1);
    EXPECT_EQ(d.changed, 1) << "the line to edit was not taken over, so any stock row is another one";
    EXPECT_TRUE(d.id.isEmpty());
    EXPECT_EQ(line->result(), int(QDialog::Accepted));
}

TEST_F(outstore_line, an_edit_without_another_stock_row_is_no_change) {
    open_line(1);
    auto nameless = stock(1);
    nameless.id.clear();
    line->slot_stock_selected(nameless);
    EXPECT_EQ(saved().changed, 0) << "the id of the row is compared";
}

TEST_F(outstore_line, cancel_escape_and_the_close_box_hand_nothing_over) {
    const std::function<void()> ways[] = {[this] { click(line.get(), "btn_cancel"); },
                                          [this] { QTest::keyClick(line.get(), Qt::Key_Escape); },
                                          [this] { line->close(); }};
    for (const auto& leave : ways) {
        open_line();
        line->slot_stock_selected(stock(1));
        leave();
        EXPECT_FALSE(line->isVisible());
        EXPECT_EQ(line->result(), int(QDialog::Rejected));
        EXPECT_EQ(added->size() + edited->size(), 0);
    }
}

TEST_F(outstore_line, a_second_press_while_the_first_is_on_its_way_is_ignored) {
    open_line();
    line->slot_stock_selected(stock(1));
    QObject::connect(line.get(), &dlg_outstore_detail_add::signal_outstore_detail_do_add, line.get(), [this] {
        if (added->size() < 3) click(line.get(), "btn_save");
    });
    click(line.get(), "btn_save");
    EXPECT_EQ(added->size(), 1);
}
