#include <QComboBox>
#include <QValidator>

#include "gui/allot_fixture.h"

class allot_line : public allot_test {
protected:
    void open_line(int mode = 0) {
        line = std::make_unique<dlg_stock_allot_detail_add>(nullptr, mode);
        added = std::make_unique<QSignalSpy>(line.get(),
                                             &dlg_stock_allot_detail_add::signal_stock_allot_detail_do_add);
        edited = std::make_unique<QSignalSpy>(line.get(),
                                              &dlg_stock_allot_detail_add::signal_stock_allot_detail_do_edit);
        line->show();
    }
    QLineEdit* edit(const char* name) { return child<QLineEdit>(line.get(), name); }
    QString text(const char* name) { return edit(name)->text(); }
    QTextEdit* remark() { return child<QTextEdit>(line.get(), "txt_remark"); }
    struct_stock_allot_detail saved() {
        click(line.get(), "btn_save");
        auto& spy = added->isEmpty() ? edited : added;
        if (spy->size() != 1) throw std::runtime_error("the line was not handed over");
        return spy->first().first().value<struct_stock_allot_detail>();
    }

    std::unique_ptr<dlg_stock_allot_detail_add> line;
    std::unique_ptr<QSignalSpy> added;
    std::unique_ptr<QSignalSpy> edited;
};

TEST_F(allot_line, window_and_widgets) {
    open_line();
    EXPECT_EQ(line->windowTitle(), QStringLiteral("添加调拨明细"));
    expect_window(line.get(), QSize(450, 319), Qt::WindowCloseButtonHint);
    const struct {
        const char* name;
        const char* text;
        int row;
        bool required;
        bool read_only;
    } fields[] = {{"product_name", "货品", 0, true, true},   {"place", "位置", 0, false, false},
                  {"category_name", "类别", 1, false, true}, {"num", "编码", 1, false, true},
                  {"spec", "规格", 2, false, true},          {"price", "单价", 2, true, false},
                  {"amount", "数量", 3, true, false},        {"total", "金额", 3, false, true}};
    int above = -1;
    for (const auto& f : fields) {
        const QByteArray name = f.name;
        auto* field = edit(("txt_" + name).constData());
        expect_label_of(line.get(), ("txt_" + name).constData(), f.text);
        EXPECT_EQ(field->isReadOnly(), f.read_only) << f.name;
        EXPECT_EQ(field->placeholderText(), name == "product_name" ? QStringLiteral("点击选择") : QString());
        auto* star = line->findChild<QLabel*>(QLatin1String("label_" + name + "_required"));
        ASSERT_EQ(star != nullptr, f.required) << f.name << ": the place is wanted and has no star";
        if (star != nullptr) {
            EXPECT_EQ(star->text(), QStringLiteral("*"));
            EXPECT_EQ(star->styleSheet(), QStringLiteral("color:red;"));
            EXPECT_LT(star->x(), field->x());
        }
        const auto* left = edit("txt_product_name");
        const bool first_of_row = &f - fields == f.row * 2;
        EXPECT_EQ(field->x() == left->x(), first_of_row) << f.name;
        EXPECT_EQ(field->y() > above, first_of_row) << f.name << ": two fields a row";
        above = field->y();
    }
    EXPECT_EQ(child<QLabel>(line.get(), "label_remark")->text(), QStringLiteral("备注"));
    EXPECT_EQ(remark()->maximumHeight(), 120);
    EXPECT_GT(remark()->y(), above);
    const struct {
        const char* name;
        const char* text;
    } buttons[] = {{"btn_save", "保存"}, {"btn_cancel", "取消"}};
    for (const auto& b : buttons) {
        EXPECT_EQ(child<QPushButton>(line.get(), b.name)->text(), QString::fromUtf8(b.text));
        EXPECT_EQ(child<QPushButton>(line.get(), b.name)->minimumWidth(), 200);
    }
    expect_left_to_right(line.get(), {"btn_save", "btn_cancel"});
    EXPECT_TRUE(line->findChildren<QComboBox*>().isEmpty()) << "the warehouse is the transfer's";
    expect_tab_order(
        line.get(), {"txt_product_name", "txt_place", "txt_category_name", "txt_num", "txt_spec", "txt_price",
                     "txt_amount", "txt_total", "txt_remark", "btn_save", "btn_cancel"});
}

TEST_F(allot_line, has_room_with_the_style_sheet) {
    open_line();
    expect_fits_with_the_style_sheet(line.get());
}

TEST_F(allot_line, validators) {
    open_line();
    const auto* price = qobject_cast<const QDoubleValidator*>(edit("txt_price")->validator());
    const auto* amount = qobject_cast<const QIntValidator*>(edit("txt_amount")->validator());
    const auto* total = qobject_cast<const QDoubleValidator*>(edit("txt_total")->validator());
    ASSERT_TRUE(price != nullptr && amount != nullptr && total != nullptr);
    for (const auto* money : {price, total}) {
        EXPECT_EQ(money->bottom(), 0.0);
        EXPECT_EQ(money->top(), 99999999.0);
        EXPECT_EQ(money->decimals(), 2);
    }
    EXPECT_EQ(amount->bottom(), 0);
    EXPECT_EQ(amount->top(), 99999999);
}

TEST_F(allot_line, a_left_press_on_the_product_opens_the_stock_picker_of_the_source) {
    open_line();
    line->slot_set_warehouse_out(QStringLiteral("8"));
    QTest::mousePress(edit("txt_product_name"), Qt::RightButton);
    QTest::mousePress(edit("txt_place"), Qt::LeftButton);
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    pick<dlg_search_stock>(line.get(), "txt_product_name", QStringLiteral("选择货品库存"),
                           [](dlg_search_stock* picker) {
                               EXPECT_FALSE(child<QComboBox>(picker, "comb_warehouse")->isVisible());
                               emit picker->signal_stock_selected(stock(2));
                               picker->close();
                           });
    EXPECT_TRUE(server.bodies("wms_stock_detail/get_page").first().contains("&warehouse=8&"));
    EXPECT_EQ(text("txt_product_name"), QStringLiteral("货2"));
}

TEST_F(allot_line, a_stock_row_fills_the_line_with_its_whole_quantity_and_its_own_total) {
    open_line();
    auto row = stock(2);
    row.total = 49.999;
    line->slot_stock_selected(row);
    const struct {
        const char* name;
        const char* text;
    } fields[] = {{"txt_product_name", "货2"}, {"txt_place", "A2"},   {"txt_category_name", "类"},
                  {"txt_num", "c2"},           {"txt_spec", "s2"},    {"txt_price", "2.50"},
                  {"txt_amount", "20"},        {"txt_total", "50.00"}};
    for (const auto& f : fields)
        EXPECT_EQ(text(f.name), QString::fromUtf8(f.text)) << f.name;
    EXPECT_EQ(remark()->toPlainText(), QStringLiteral("批2"));
    row.total = 7;
    line->slot_stock_selected(row);
    EXPECT_EQ(text("txt_total"), QStringLiteral("7.00")) << "not 20 times 2.50";
    EXPECT_TRUE(shown_tip().isEmpty());
    EXPECT_TRUE(wire().isEmpty());
    EXPECT_DOUBLE_EQ(saved().total, 7);
}

TEST_F(allot_line, another_stock_row_takes_the_place_of_the_first) {
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

TEST_F(allot_line, the_total_follows_price_and_amount) {
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

TEST_F(allot_line, without_a_stock_row_the_amount_does_nothing_and_the_price_does) {
    open_line();
    type_into(line.get(), "txt_amount", QStringLiteral("3"));
    EXPECT_TRUE(text("txt_total").isEmpty());
    edit("txt_price")->setText(QStringLiteral(" 2 "));
    EXPECT_EQ(text("txt_total"), QStringLiteral("6.00"));
    type_into(line.get(), "txt_amount", QStringLiteral("99999999"));
    EXPECT_EQ(text("txt_total"), QStringLiteral("6.00"));
    EXPECT_TRUE(shown_tip().isEmpty());
}

TEST_F(allot_line, no_more_than_the_picked_stock_row_has_can_be_moved) {
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

TEST_F(allot_line, checks_come_in_their_order) {
    open_line();
    click(line.get(), "btn_save");
    expect_tip(edit("txt_product_name"), QStringLiteral("请先选择货品"));
    auto row = stock(2);
    row.place = QStringLiteral("  ");
    line->slot_stock_selected(row);
    edit("txt_price")->setText(QStringLiteral(" "));
    edit("txt_amount")->setText(QString());
    click(line.get(), "btn_save");
    expect_tip(edit("txt_place"), QStringLiteral("请填写存储位置"));
    edit("txt_place")->setText(QStringLiteral("B1"));
    click(line.get(), "btn_save");
    expect_tip(edit("txt_price"), QStringLiteral("请填写单价"));
    edit("txt_price")->setText(QStringLiteral("0"));
    click(line.get(), "btn_save");
    expect_tip(edit("txt_amount"), QStringLiteral("请填写数量"));
    EXPECT_TRUE(line->isVisible());
    EXPECT_EQ(added->size(), 0);
    edit("txt_amount")->setText(QStringLiteral("0"));
    EXPECT_EQ(saved().amount, 0) << "0 is a price and an amount";
}

TEST_F(allot_line, add_hands_over_the_line_and_closes) {
    open_line();
    line->slot_stock_selected(stock(2));
    type_into(line.get(), "txt_price", QStringLiteral("9.75"));
    type_into(line.get(), "txt_amount", QStringLiteral("4"));
    edit("txt_place")->setText(QStringLiteral(" B 7 "));
    remark()->setPlainText(QStringLiteral("  一\n二 "));
    const auto d = saved();
    EXPECT_TRUE(d.id.isEmpty() && d.main_id.isEmpty() && d.locked_id.isEmpty());
    EXPECT_TRUE(d.warehouse.isEmpty()) << "the stock row's warehouse is not the line's";
    EXPECT_EQ(d.stock_id, QStringLiteral("2"));
    EXPECT_EQ(d.product, QStringLiteral("p2"));
    EXPECT_EQ(d.product_name, QStringLiteral("货2"));
    EXPECT_EQ(d.category, QStringLiteral("5"));
    EXPECT_EQ(d.category_name, QStringLiteral("类"));
    EXPECT_EQ(d.code, QStringLiteral("c2"));
    EXPECT_EQ(d.spec, QStringLiteral("s2"));
    EXPECT_EQ(d.place, QStringLiteral("B 7")) << "where the goods will lie";
    EXPECT_EQ(d.remark, QStringLiteral("一\n二"));
    EXPECT_DOUBLE_EQ(d.price, 9.75);
    EXPECT_EQ(d.amount, 4);
    EXPECT_DOUBLE_EQ(d.total, 39);
    EXPECT_EQ(edited->size(), 0);
    EXPECT_FALSE(line->isVisible());
    EXPECT_EQ(line->result(), int(QDialog::Accepted));
}

TEST_F(allot_line, changed_says_whether_the_last_pick_brought_another_product) {
    open_line();
    line->slot_stock_selected(stock(2));
    EXPECT_EQ(saved().changed, 1) << "the line had none";
    open_line();
    line->slot_stock_selected(stock(2));
    auto same = stock(3);
    same.product = QStringLiteral("p2");
    line->slot_stock_selected(same);
    EXPECT_EQ(saved().changed, 0) << "another row of the same product";
}

TEST_F(allot_line, an_edit_shows_the_line_with_its_own_total) {
    open_line(1);
    line->slot_stock_allot_detail_to_edit(transfer_line(2));
    EXPECT_EQ(text("txt_product_name"), QStringLiteral("货2"));
    EXPECT_EQ(text("txt_amount"), QStringLiteral("2"));
    EXPECT_EQ(text("txt_price"), QStringLiteral("2.50"));
    EXPECT_EQ(text("txt_total"), QStringLiteral("1000.00"));
    EXPECT_EQ(text("txt_place"), QStringLiteral("A2"));
    EXPECT_EQ(remark()->toPlainText(), QStringLiteral("批2"));
    EXPECT_TRUE(text("txt_num").isEmpty() && text("txt_spec").isEmpty() &&
                text("txt_category_name").isEmpty());
    EXPECT_TRUE(shown_tip().isEmpty()) << "no stock row is picked that could set a maximum";
}

TEST_F(allot_line, an_edit_notes_another_price_amount_or_remark_and_no_other_place) {
    const struct {
        const char* field;
        const char* text;
        int changed;
    } rows[] = {{"txt_place", "B9", 0},
                {"txt_price", "2.5", 0},
                {"txt_price", "3", 1},
                {"txt_amount", "1", 1},
                {"txt_remark", "别", 1}};
    for (const auto& r : rows) {
        open_line(1);
        auto former = transfer_line(2);
        former.changed = 0;
        line->slot_stock_allot_detail_to_edit(former);
        if (QLatin1String(r.field) == QLatin1String("txt_remark"))
            remark()->setPlainText(QString::fromUtf8(r.text));
        else
            edit(r.field)->setText(QString::fromUtf8(r.text));
        const auto d = saved();
        EXPECT_EQ(d.changed, r.changed) << r.field << ' ' << r.text;
        EXPECT_EQ(d.id, QStringLiteral("L2"));
        EXPECT_EQ(d.stock_id, QStringLiteral("2"));
        EXPECT_EQ(added->size(), 0);
        EXPECT_EQ(line->result(), int(QDialog::Accepted));
    }
}

TEST_F(allot_line, cancel_escape_and_the_close_box_hand_nothing_over) {
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

TEST_F(allot_line, a_second_press_while_the_first_is_on_its_way_is_ignored) {
    open_line();
    line->slot_stock_selected(stock(1));
    QObject::connect(line.get(), &dlg_stock_allot_detail_add::signal_stock_allot_detail_do_add, line.get(),
                     [this] {
                         if (added->size() < 3) click(line.get(), "btn_save");
                     });
    click(line.get(), "btn_save");
    EXPECT_EQ(added->size(), 1);
}
