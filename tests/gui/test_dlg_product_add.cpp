#include <QClipboard>
#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QValidator>

#include "gui/product_fixture.h"
#include "master/dlg_product_add.h"
#include "model/model_product.h"

class product_dialog : public product_test {
protected:
    void open(int mode) {
        dialog = std::make_unique<dlg_product_add>(nullptr, mode);
        added = std::make_unique<QSignalSpy>(dialog.get(), &dlg_product_add::signal_product_do_add);
        edited = std::make_unique<QSignalSpy>(dialog.get(), &dlg_product_add::signal_product_do_edit);
        listed = std::make_unique<QSignalSpy>(dialog.get(), &dlg_product_add::signal_product_list);
        dialog->show();
    }
    QLineEdit* field(const char* name) { return child<QLineEdit>(dialog.get(), name); }
    struct_product handed_over() { return added->first().first().value<struct_product>(); }
    void choose() { dialog->slot_prodcate_selected({QStringLiteral("2"), QStringLiteral("茶"), QString()}); }

    std::unique_ptr<dlg_product_add> dialog;
    std::unique_ptr<QSignalSpy> added;
    std::unique_ptr<QSignalSpy> edited;
    std::unique_ptr<QSignalSpy> listed;
};

TEST_F(product_dialog, window) {
    open(0);
    EXPECT_EQ(dialog->windowTitle(), QStringLiteral("添加货品"));
    EXPECT_EQ(dialog->size(), QSize(400, 244));
    // Title and system menu come with any button.
    const auto titled = Qt::Dialog | Qt::WindowTitleHint | Qt::WindowSystemMenuHint;
    EXPECT_EQ(dialog->windowFlags(), titled | Qt::WindowCloseButtonHint);
    EXPECT_EQ(dialog->focusWidget(), field("txt_name"));
    EXPECT_EQ(child<QPushButton>(dialog.get(), "btn_submit")->text(), QStringLiteral("保存"));
    EXPECT_EQ(child<QPushButton>(dialog.get(), "btn_cancel")->text(), QStringLiteral("取消"));
    EXPECT_EQ(tab_order(field("txt_name"), 7), words({"txt_name", "txt_category", "txt_code", "txt_spec",
                                                      "txt_price", "btn_submit", "btn_cancel"}));
}

TEST_F(product_dialog, every_row_has_the_red_marker) {
    open(0);
    const struct {
        const char* name;
        const char* text;
    } rows[] = {
        {"name", "名称"}, {"category", "类别"}, {"code", "编码"}, {"spec", "规格"}, {"price", "参考价"}};
    int above = -1;
    for (const auto& r : rows) {
        const QByteArray name = r.name;
        auto* label = child<QLabel>(dialog.get(), ("label_" + name).constData());
        auto* marker = child<QLabel>(dialog.get(), ("label_" + name + "_required").constData());
        auto* edit = field(("txt_" + name).constData());
        EXPECT_EQ(label->text(), QString::fromUtf8(r.text));
        EXPECT_EQ(marker->text(), QStringLiteral("*"));
        EXPECT_EQ(marker->styleSheet(), QStringLiteral("color:red;"));
        EXPECT_TRUE(label->x() < marker->x() && marker->x() < edit->x());
        EXPECT_GT(edit->y(), above);
        above = edit->y();
        EXPECT_EQ(edit->isReadOnly(), name == "category");
        EXPECT_EQ(edit->placeholderText(), name == "category" ? QStringLiteral("点击选择类别") : QString());
        EXPECT_EQ(edit->validator() != nullptr, name == "price");
    }
}

struct price_sample {
    const char* text;
    QValidator::State state;
};
class price_field : public product_dialog, public testing::WithParamInterface<price_sample> {};

TEST_P(price_field, takes_amounts_with_two_decimals_in_any_locale) {
    const QLocale former;
    for (const auto& locale : {QLocale(QLocale::Chinese), QLocale(QLocale::German)}) {
        QLocale::setDefault(locale);
        open(0);
        QString text = QLatin1String(GetParam().text);
        int position = 0;
        EXPECT_EQ(field("txt_price")->validator()->validate(text, position), GetParam().state);
    }
    QLocale::setDefault(former);
}

INSTANTIATE_TEST_SUITE_P(
    samples, price_field,
    testing::Values(price_sample{"0", QValidator::Acceptable}, price_sample{"12.34", QValidator::Acceptable},
                    price_sample{"99999999", QValidator::Acceptable},
                    price_sample{"99999999.00", QValidator::Acceptable},
                    price_sample{"", QValidator::Intermediate}, price_sample{"12.", QValidator::Acceptable},
                    price_sample{"12.345", QValidator::Invalid}, price_sample{"-1", QValidator::Invalid},
                    price_sample{"1,000", QValidator::Invalid}, price_sample{"1,5", QValidator::Invalid},
                    price_sample{"abc", QValidator::Invalid}, price_sample{"1 2", QValidator::Invalid}));

TEST_F(product_dialog, a_third_decimal_cannot_be_typed) {
    open(0);
    type_into(dialog.get(), "txt_price", QStringLiteral("12.3456"));
    EXPECT_EQ(field("txt_price")->text(), QStringLiteral("12.34"));
}

TEST_F(product_dialog, a_pasted_value_is_rounded_at_sending) {
    open(0);
    field("txt_name")->setText(QStringLiteral("n"));
    choose();
    QApplication::clipboard()->setText(QStringLiteral("12346e-3"));
    field("txt_price")->paste();
    click(dialog.get(), "btn_submit");
    ASSERT_EQ(added->size(), 1);
    EXPECT_DOUBLE_EQ(handed_over().price, 12.346);
    QTableWidget table;
    model_product(&table).do_add(handed_over());
    EXPECT_EQ(server.last().body, "name=n&category=2&price=12.35");
}

TEST_F(product_dialog, checks_come_in_their_order) {
    open(0);
    field("txt_name")->setText(QStringLiteral("  "));
    click(dialog.get(), "btn_submit");
    expect_tip(field("txt_name"), QStringLiteral("名称不能为空"));
    field("txt_name")->setText(QStringLiteral("n"));
    click(dialog.get(), "btn_submit");
    expect_tip(field("txt_category"), QStringLiteral("类别不能为空"));
    EXPECT_TRUE(dialog->isVisible());
    EXPECT_EQ(added->size(), 0);
    choose();
    click(dialog.get(), "btn_submit");
    EXPECT_EQ(added->size(), 1) << "the rest may stay empty, markers or not";
}

TEST_F(product_dialog, add_hands_over_the_record_and_closes) {
    open(0);
    set_texts(dialog.get(), {{"txt_name", QStringLiteral(" 扳手 ")},
                             {"txt_code", QStringLiteral(" c ")},
                             {"txt_spec", QStringLiteral(" s")},
                             {"txt_price", QStringLiteral(" 1.5 ")}});
    pick_category(dialog.get(), "txt_category", QStringLiteral("茶"), QStringLiteral("选择类别"));
    click(dialog.get(), "btn_submit");
    ASSERT_EQ(added->size(), 1);
    const auto p = handed_over();
    EXPECT_TRUE(p.id.isEmpty());
    EXPECT_EQ(p.name, QStringLiteral("扳手"));
    EXPECT_EQ(p.code, QStringLiteral("c"));
    EXPECT_EQ(p.spec, QStringLiteral("s"));
    EXPECT_EQ(p.category, QStringLiteral("2"));
    EXPECT_EQ(p.category_name, QStringLiteral("茶"));
    EXPECT_DOUBLE_EQ(p.price, 1.5);
    EXPECT_EQ(edited->size() + listed->size(), 0);
    EXPECT_EQ(dialog->result(), int(QDialog::Accepted));
    EXPECT_EQ(server.paths(), QList<QByteArray>{"wms_prodcate/get_prodcate"});
}

TEST_F(product_dialog, the_validator_is_not_asked_at_the_save) {
    const struct {
        const char* text;
        double price;
    } rows[] = {{"", 0}, {"x", 0}, {"-3", -3}, {"123456789012", 123456789012.0}, {"1,5", 0}};
    for (const auto& r : rows) {
        open(0);
        choose();
        set_texts(dialog.get(), {{"txt_name", QStringLiteral("n")}, {"txt_price", QLatin1String(r.text)}});
        click(dialog.get(), "btn_submit");
        ASSERT_EQ(added->size(), 1) << r.text;
        EXPECT_DOUBLE_EQ(handed_over().price, r.price) << r.text;
    }
}

TEST_F(product_dialog, edit_shows_and_returns_the_record) {
    open(1);
    EXPECT_EQ(dialog->windowTitle(), QStringLiteral("添加货品")) << "until the record comes";
    EXPECT_TRUE(field("txt_category")->toolTip().isEmpty());
    struct_product p;
    p.id = QStringLiteral("8");
    p.name = QStringLiteral("n");
    p.category = QStringLiteral("5");
    p.category_name = QStringLiteral("类");
    p.code = QStringLiteral("c");
    p.spec = QStringLiteral("s");
    p.price = 2;
    p.datetime_text = QStringLiteral("then");
    dialog->slot_product_to_edit(p);
    EXPECT_EQ(dialog->windowTitle(), QStringLiteral("编辑货品"));
    EXPECT_EQ(field("txt_category")->toolTip(), QStringLiteral("点击选择"));
    EXPECT_EQ(field("txt_name")->text(), QStringLiteral("n"));
    EXPECT_EQ(field("txt_category")->text(), QStringLiteral("类"));
    EXPECT_EQ(field("txt_code")->text(), QStringLiteral("c"));
    EXPECT_EQ(field("txt_spec")->text(), QStringLiteral("s"));
    EXPECT_EQ(field("txt_price")->text(), QStringLiteral("2.00"));
    click(dialog.get(), "btn_submit");
    ASSERT_EQ(edited->size(), 1);
    EXPECT_EQ(added->size(), 0);
    const auto back = edited->first().first().value<struct_product>();
    EXPECT_EQ(back.id, QStringLiteral("8"));
    EXPECT_EQ(back.category, QStringLiteral("5"));
    EXPECT_EQ(back.category_name, QStringLiteral("类"));
    EXPECT_EQ(back.datetime_text, QStringLiteral("then"));
    EXPECT_DOUBLE_EQ(back.price, 2);
}

TEST_F(product_dialog, a_left_press_on_the_category_is_consumed) {
    open(0);
    expect_left_press_alone_picks(field("txt_category"));
}

TEST_F(product_dialog, without_the_right_to_search_categories_none_can_be_assigned) {
    g_http.rights.clear();
    open(0);
    with_modal([this] { QTest::mousePress(field("txt_category"), Qt::LeftButton); },
               [](QWidget* picker) {
                   EXPECT_FALSE(picker->isEnabled());
                   EXPECT_TRUE(tree_lines(child<QTreeView>(picker, "treeview")).isEmpty());
                   picker->close();
               });
    EXPECT_TRUE(server.requests().isEmpty());
}

TEST_F(product_dialog, another_mode_checks_the_fields_and_then_closes) {
    open(2);
    click(dialog.get(), "btn_submit");
    expect_tip(field("txt_name"), QStringLiteral("名称不能为空"));
    field("txt_name")->setText(QStringLiteral("n"));
    choose();
    click(dialog.get(), "btn_submit");
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_EQ(added->size() + edited->size() + listed->size(), 0);
}

TEST_F(product_dialog, cancel_closes_without_a_word) {
    open(0);
    field("txt_name")->setText(QStringLiteral("n"));
    choose();
    click(dialog.get(), "btn_cancel");
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_EQ(dialog->result(), int(QDialog::Rejected));
    EXPECT_EQ(added->size(), 0);
}
