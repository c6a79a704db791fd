#include <QSignalSpy>
#include <QValidator>

#include "gui/dlg_instore_fixture.h"
#include "master/dlg_search_product.h"

class instore_line_dialog : public instore_records {
protected:
    void open(int mode) {
        dialog = std::make_unique<dlg_instore_detail_add>(nullptr, mode);
        added =
            std::make_unique<QSignalSpy>(dialog.get(), &dlg_instore_detail_add::signal_instore_detail_do_add);
        edited = std::make_unique<QSignalSpy>(dialog.get(),
                                              &dlg_instore_detail_add::signal_instore_detail_do_edit);
        dialog->show();
        warehouses = child<QComboBox>(dialog.get(), "comb_warehouse");
        remark = child<QTextEdit>(dialog.get(), "txt_remark");
    }
    QLineEdit* field(const char* name) { return child<QLineEdit>(dialog.get(), name); }
    QString text(const char* name) { return field(name)->text(); }
    static struct_product product(double price = 12.5) {
        struct_product p;
        p.id = QStringLiteral("9");
        p.name = QStringLiteral("扳手");
        p.code = QStringLiteral("A1");
        p.category = QStringLiteral("5");
        p.category_name = QStringLiteral("工具");
        p.spec = QStringLiteral(" 9件");
        p.price = price;
        return p;
    }
    /** A line that lacks nothing. */
    void fill() {
        dialog->slot_product_selected(product());
        warehouses->setCurrentIndex(2);
        field("txt_place")->setText(QStringLiteral(" A-1 "));
    }
    struct_instore_detail saved() {
        click(dialog.get(), "btn_save");
        return added->value(0).value(0).value<struct_instore_detail>();
    }

    std::unique_ptr<dlg_instore_detail_add> dialog;
    std::unique_ptr<QSignalSpy> added;
    std::unique_ptr<QSignalSpy> edited;
    QComboBox* warehouses = nullptr;
    QTextEdit* remark = nullptr;
};

TEST_F(instore_line_dialog, window_and_widgets) {
    open(0);
    EXPECT_EQ(dialog->windowTitle(), QStringLiteral("添加入库明细"));
    expect_window(dialog.get(), QSize(450, 367), Qt::WindowCloseButtonHint);
    const struct {
        const char* name;
        const char* label;
        const char* label_text;
        bool required;
        const char* placeholder;
        bool read_only;
        /** What can be typed at most; 0 for any text. */
        double top;
    } rows[] = {{"txt_product_name", "label_product_name", "货品", true, "点击选择", true, 0},
                {"txt_code", "label_code", "编码", false, "", true, 0},
                {"txt_category", "label_category", "类别", false, "", true, 0},
                {"txt_spec", "label_spec", "规格", false, "", true, 0},
                {"txt_price", "label_price", "单价", true, "", false, 99999999.0},
                {"txt_amount", "label_amount", "数量", true, "", false, 99999999.0},
                {"txt_total", "label_total", "总价", false, "", true, 999999999999999.0},
                {"comb_warehouse", "label_warehouse", "仓库", true, nullptr, false, 0},
                {"txt_place", "label_place", "位置", true, "填写存储位置", false, 0},
                {"txt_remark", "label_remark", "备注", false, nullptr, false, 0}};
    for (const auto& r : rows) {
        auto* part = child<QWidget>(dialog.get(), r.name);
        auto* label = child<QLabel>(dialog.get(), r.label);
        EXPECT_EQ(label->text(), QString::fromUtf8(r.label_text));
        EXPECT_EQ(label->buddy(), part);
        EXPECT_LT(label->x(), part->x()) << r.name;
        auto* star = dialog->findChild<QLabel*>(QLatin1String(r.label) + QLatin1String("_required"));
        ASSERT_EQ(star != nullptr, r.required) << r.name;
        if (star != nullptr) {
            EXPECT_EQ(star->text(), QStringLiteral("*"));
            EXPECT_EQ(star->styleSheet(), QStringLiteral("color:red"));
            EXPECT_TRUE(label->x() < star->x() && star->x() < part->x()) << r.name;
        }
        if (r.placeholder == nullptr) continue;
        EXPECT_EQ(field(r.name)->placeholderText(), QString::fromUtf8(r.placeholder));
        EXPECT_EQ(field(r.name)->isReadOnly(), r.read_only) << r.name;
        const QValidator* bounds = field(r.name)->validator();
        ASSERT_EQ(bounds != nullptr, r.top > 0) << r.name;
        if (bounds == nullptr) continue;
        EXPECT_EQ(bounds->property("bottom").toDouble(), 0.0) << r.name;
        EXPECT_EQ(bounds->property("top").toDouble(), r.top) << r.name;
        EXPECT_EQ(bounds->property("decimals").toInt(), qobject_cast<const QIntValidator*>(bounds) ? 0 : 2);
    }
    EXPECT_FALSE(remark->isReadOnly());
    auto* save = child<QPushButton>(dialog.get(), "btn_save");
    EXPECT_EQ(save->text(), QStringLiteral("保存"));
    EXPECT_EQ(save->minimumHeight(), 30);
    EXPECT_EQ(child<QPushButton>(dialog.get(), "btn_cancel")->text(), QStringLiteral("取消"));
    expect_tab_order(dialog.get(),
                     {"txt_product_name", "txt_code", "txt_category", "txt_spec", "txt_price", "txt_amount",
                      "txt_total", "comb_warehouse", "txt_place", "txt_remark", "btn_save", "btn_cancel"});
}

TEST_F(instore_line_dialog, asks_for_a_warehouse_and_proposes_none) {
    open(0);
    ASSERT_EQ(server.paths(), QList<QByteArray>{"wms_warehouse/get_option"});
    EXPECT_EQ(server.last().method, "GET");
    ASSERT_EQ(warehouses->count(), 3);
    EXPECT_EQ(warehouses->itemText(0), QStringLiteral("【选择仓库】"));
    EXPECT_EQ(warehouses->itemData(0).toString(), QString());
    EXPECT_EQ(warehouses->itemText(1), QStringLiteral("主仓"));
    EXPECT_EQ(warehouses->itemData(1).toString(), QStringLiteral("1"));
    EXPECT_EQ(warehouses->itemData(2).toString(), QStringLiteral("2"));
    EXPECT_EQ(warehouses->currentIndex(), 0) << "the default warehouse neither";
}

TEST_F(instore_line_dialog, without_warehouses_nothing_can_be_saved) {
    for (const char* body : {"", "[]", "7", "{}"}) {
        server.answer(body);
        open(0);
        EXPECT_EQ(warehouses->count(), 1) << body;
        dialog->slot_product_selected(product());
        field("txt_place")->setText(QStringLiteral("A"));
        click(dialog.get(), "btn_save");
        expect_tip(warehouses, QStringLiteral("请选择仓库"));
    }
}

TEST_F(instore_line_dialog, numbers_are_typed_in_one_way_in_any_locale) {
    const struct {
        const char* name;
        const char* text;
        QValidator::State state;
    } rows[] = {{"txt_price", "0", QValidator::Acceptable},
                {"txt_price", "99999999", QValidator::Acceptable},
                {"txt_price", "12.34", QValidator::Acceptable},
                {"txt_price", "12.345", QValidator::Invalid},
                {"txt_price", "1,5", QValidator::Invalid},
                {"txt_price", "1,000", QValidator::Invalid},
                {"txt_price", "-1", QValidator::Invalid},
                {"txt_price", "999999990", QValidator::Intermediate},
                {"txt_amount", "0", QValidator::Acceptable},
                {"txt_amount", "99999999", QValidator::Acceptable},
                {"txt_amount", "100000000", QValidator::Invalid},
                {"txt_amount", "1.5", QValidator::Invalid},
                {"txt_amount", "1,000", QValidator::Invalid},
                {"txt_amount", "1.000", QValidator::Invalid},
                {"txt_amount", "-1", QValidator::Invalid},
                {"txt_amount", "", QValidator::Intermediate},
                {"txt_total", "999999999999999.00", QValidator::Acceptable},
                {"txt_total", "9999999999999990", QValidator::Intermediate},
                {"txt_total", "1.234", QValidator::Invalid}};
    const QLocale former;
    for (const auto& locale :
         {QLocale(QLocale::Chinese), QLocale(QLocale::German), QLocale(QLocale::English)}) {
        QLocale::setDefault(locale);
        open(0);
        for (const auto& r : rows) {
            QString typed = QLatin1String(r.text);
            int position = 0;
            EXPECT_EQ(field(r.name)->validator()->validate(typed, position), r.state)
                << r.name << ' ' << r.text << ' ' << locale.name().toStdString();
        }
    }
    QLocale::setDefault(former);
}

TEST_F(instore_line_dialog, what_is_no_number_cannot_be_typed) {
    open(0);
    type_into(dialog.get(), "txt_price", QStringLiteral("1,5"));
    EXPECT_EQ(text("txt_price"), QStringLiteral("15"));
    type_into(dialog.get(), "txt_price", QStringLiteral("12.3456"));
    EXPECT_EQ(text("txt_price"), QStringLiteral("12.34"));
    type_into(dialog.get(), "txt_amount", QStringLiteral("1,000"));
    EXPECT_EQ(text("txt_amount"), QStringLiteral("1000"));
    type_into(dialog.get(), "txt_amount", QStringLiteral("2.5"));
    EXPECT_EQ(text("txt_amount"), QStringLiteral("25"));
}

TEST_F(instore_line_dialog, a_left_press_picks_the_product) {
    open(0);
    QTest::mousePress(field("txt_product_name"), Qt::RightButton);
    QTest::mouseRelease(field("txt_product_name"), Qt::LeftButton);
    QTest::mousePress(field("txt_code"), Qt::LeftButton);
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    pick<dlg_search_product>(dialog.get(), "txt_product_name", QStringLiteral("查询选择货品基础信息"),
                             double_click_first);
    EXPECT_EQ(text("txt_product_name"), QStringLiteral("扳手"));
    EXPECT_EQ(text("txt_category"), QStringLiteral("工具"));
    EXPECT_EQ(text("txt_spec"), QStringLiteral("9件"));
    EXPECT_EQ(text("txt_code"), QStringLiteral("A1"));
    EXPECT_EQ(text("txt_price"), QStringLiteral("12.50"));
    EXPECT_EQ(text("txt_amount"), QStringLiteral("1"));
    EXPECT_EQ(text("txt_total"), QStringLiteral("12.50"));
    EXPECT_EQ(warehouses->currentIndex(), 0);
}

TEST_F(instore_line_dialog, a_press_on_the_product_goes_no_further) {
    open(0);
    with_modal(
        [this] {
            QMouseEvent press(QEvent::MouseButtonPress, QPointF(3, 3), Qt::LeftButton, Qt::LeftButton,
                              Qt::NoModifier);
            press.setAccepted(false);
            EXPECT_TRUE(QApplication::sendEvent(field("txt_product_name"), &press));
        },
        [](QWidget* picker) { picker->close(); });
    EXPECT_TRUE(text("txt_product_name").isEmpty());
}

TEST_F(instore_line_dialog, a_picked_price_shows_two_decimals_and_amount_one) {
    open(0);
    field("txt_amount")->setText(QStringLiteral("7"));
    dialog->slot_product_selected(product(3.456));
    EXPECT_EQ(text("txt_price"), QStringLiteral("3.46"));
    EXPECT_EQ(text("txt_amount"), QStringLiteral("1")) << "whatever was there";
    EXPECT_EQ(text("txt_total"), QStringLiteral("3.46"));
    dialog->slot_product_selected(product(0));
    EXPECT_EQ(text("txt_price"), QStringLiteral("0.00"));
}

TEST_F(instore_line_dialog, the_total_follows_amount_and_price) {
    open(0);
    EXPECT_TRUE(text("txt_total").isEmpty());
    const struct {
        const char* price;
        const char* amount;
        const char* total;
    } rows[] = {{"2.5", "3", "7.50"},
                {"", "3", "0.00"},
                {"2.5", "", "0.00"},
                {"0.01", "99999999", "999999.99"},
                {"99999999", "99999999", "9999999800000000.00"},
                {"1.", "2", "2.00"},
                {"1,5", "2", "0.00"},
                {"2.5", "1,000", "0.00"}};
    for (const auto& r : rows) {
        field("txt_price")->setText(QLatin1String(r.price));
        field("txt_amount")->setText(QLatin1String(r.amount));
        EXPECT_EQ(text("txt_total"), QLatin1String(r.total)) << r.price << " x " << r.amount;
    }
    type_into(dialog.get(), "txt_amount", QStringLiteral("4"));
    type_into(dialog.get(), "txt_price", QStringLiteral("1.25"));
    EXPECT_EQ(text("txt_total"), QStringLiteral("5.00"));
    type_into(dialog.get(), "txt_amount", QString());
    EXPECT_EQ(text("txt_total"), QStringLiteral("0.00"));
}

TEST_F(instore_line_dialog, checks_come_in_their_order) {
    open(0);
    const auto refused_at = [this](QWidget* part, const char* tip) {
        click(dialog.get(), "btn_save");
        expect_tip(part, QString::fromUtf8(tip));
        EXPECT_TRUE(dialog->isVisible());
    };
    field("txt_product_name")->setText(QStringLiteral("  "));
    refused_at(field("txt_product_name"), "请先选择货品");
    field("txt_product_name")->setText(QStringLiteral("n"));
    field("txt_price")->setText(QStringLiteral(" "));
    refused_at(field("txt_price"), "请填写单价");
    field("txt_price")->setText(QStringLiteral("1"));
    field("txt_amount")->setText(QStringLiteral(" "));
    refused_at(field("txt_amount"), "请填写数量");
    field("txt_amount")->setText(QStringLiteral("1"));
    refused_at(warehouses, "请选择仓库");
    warehouses->setCurrentIndex(1);
    field("txt_place")->setText(QStringLiteral(" "));
    refused_at(field("txt_place"), "请选择位置");
    EXPECT_EQ(added->size() + edited->size(), 0);
    field("txt_place")->setText(QStringLiteral("A"));
    click(dialog.get(), "btn_save");
    EXPECT_EQ(added->size(), 1);
}

TEST_F(instore_line_dialog, save_hands_the_line_over_and_closes) {
    open(0);
    fill();
    field("txt_price")->setText(QStringLiteral("2.5"));
    field("txt_amount")->setText(QStringLiteral("3"));
    remark->setPlainText(QStringLiteral(" 轻放\n易碎 "));
    server.forget();
    const auto line = saved();
    ASSERT_EQ(added->size(), 1);
    EXPECT_EQ(edited->size(), 0);
    EXPECT_EQ(dialog->result(), int(QDialog::Accepted));
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_TRUE(server.requests().isEmpty());
    EXPECT_TRUE(line.id.isEmpty());
    EXPECT_EQ(line.product, QStringLiteral("9"));
    EXPECT_EQ(line.product_name, QStringLiteral("扳手"));
    EXPECT_EQ(line.category, QStringLiteral("5"));
    EXPECT_EQ(line.category_name, QStringLiteral("工具"));
    EXPECT_EQ(line.code, QStringLiteral("A1"));
    EXPECT_EQ(line.spec, QStringLiteral(" 9件"));
    EXPECT_DOUBLE_EQ(line.price, 2.5);
    EXPECT_EQ(line.amount, 3);
    EXPECT_DOUBLE_EQ(line.total, 7.5);
    EXPECT_EQ(line.warehouse, QStringLiteral("2"));
    EXPECT_EQ(line.warehouse_name, QStringLiteral("副仓"));
    EXPECT_EQ(line.place, QStringLiteral("A-1"));
    EXPECT_EQ(line.remark, QStringLiteral("轻放\n易碎"));
    EXPECT_EQ(line.changed, 1);
}

TEST_F(instore_line_dialog, zeros_pass) {
    open(0);
    fill();
    field("txt_price")->setText(QStringLiteral("0"));
    field("txt_amount")->setText(QStringLiteral("0"));
    const auto line = saved();
    ASSERT_EQ(added->size(), 1);
    EXPECT_DOUBLE_EQ(line.price, 0);
    EXPECT_EQ(line.amount, 0);
    EXPECT_DOUBLE_EQ(line.total, 0);
}

TEST_F(instore_line_dialog, a_price_above_the_bound_can_be_typed_and_is_saved) {
    open(0);
    fill();
    type_into(dialog.get(), "txt_price", QStringLiteral("999999990"));
    EXPECT_DOUBLE_EQ(saved().price, 999999990) << "the checks look for empty fields alone";
}

TEST_F(instore_line_dialog, edit_shows_the_line_but_its_code_and_with_its_own_total) {
    open(1);
    EXPECT_EQ(dialog->windowTitle(), QStringLiteral("添加入库明细")) << "who opens it for an edit says so";
    auto line = line_of("9");
    line.id = QStringLiteral("77");
    line.main_id = QStringLiteral("12");
    line.datetime = 5;
    line.changed = 0;
    dialog->slot_instore_detail_to_edit(line);
    EXPECT_EQ(text("txt_product_name"), QStringLiteral("扳手"));
    EXPECT_EQ(warehouses->currentIndex(), 1);
    EXPECT_EQ(text("txt_category"), QStringLiteral("工具"));
    EXPECT_EQ(text("txt_amount"), QStringLiteral("2"));
    EXPECT_EQ(text("txt_price"), QStringLiteral("3.46"));
    EXPECT_EQ(text("txt_total"), QStringLiteral("99.00")) << "not what amount and price make";
    EXPECT_EQ(remark->toPlainText(), QStringLiteral("轻放"));
    EXPECT_EQ(text("txt_spec"), QStringLiteral("9件"));
    EXPECT_EQ(text("txt_place"), QStringLiteral("A-1"));
    EXPECT_EQ(text("txt_code"), QString());
    click(dialog.get(), "btn_save");
    ASSERT_EQ(edited->size(), 1);
    EXPECT_EQ(added->size(), 0);
    const auto back = edited->first().first().value<struct_instore_detail>();
    EXPECT_EQ(back.id, QStringLiteral("77"));
    EXPECT_EQ(back.main_id, QStringLiteral("12"));
    EXPECT_EQ(back.product, QStringLiteral("9"));
    EXPECT_EQ(back.code, QStringLiteral("A1")) << "kept";
    EXPECT_EQ(back.datetime, 5);
    EXPECT_DOUBLE_EQ(back.price, 3.46) << "the text";
    EXPECT_DOUBLE_EQ(back.total, 99);
    EXPECT_EQ(back.changed, 1);
}

TEST_F(instore_line_dialog, a_remark_is_text_and_no_markup) {
    open(1);
    auto line = line_of("9");
    line.remark = QStringLiteral("<b>x</b> & y");
    dialog->slot_instore_detail_to_edit(line);
    EXPECT_EQ(remark->toPlainText(), line.remark);
}

TEST_F(instore_line_dialog, a_warehouse_that_is_gone_has_to_be_chosen_anew) {
    open(1);
    auto line = line_of("9");
    line.warehouse = QStringLiteral("404");
    dialog->slot_instore_detail_to_edit(line);
    EXPECT_EQ(warehouses->currentIndex(), -1);
    click(dialog.get(), "btn_save");
    expect_tip(warehouses, QStringLiteral("请选择仓库"));
}

TEST_F(instore_line_dialog, cancel_escape_and_close_box_hand_nothing_over) {
    const std::function<void()> ways[] = {[this] { click(dialog.get(), "btn_cancel"); },
                                          [this] { QTest::keyClick(dialog.get(), Qt::Key_Escape); },
                                          [this] { dialog->close(); }};
    for (const auto& leave : ways) {
        open(0);
        fill();
        leave();
        EXPECT_FALSE(dialog->isVisible());
        EXPECT_EQ(dialog->result(), int(QDialog::Rejected));
        EXPECT_EQ(added->size() + edited->size(), 0);
    }
}

TEST_F(instore_line_dialog, tab_leaves_the_remark) {
    open(0);
    remark->setFocus();
    QTest::keyClick(remark, Qt::Key_Tab);
    EXPECT_EQ(dialog->focusWidget(), child<QPushButton>(dialog.get(), "btn_save"));
    EXPECT_TRUE(remark->toPlainText().isEmpty());
}
