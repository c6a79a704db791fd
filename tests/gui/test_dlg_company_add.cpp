#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

#include "gui/company_fixture.h"
#include "master/dlg_company_add.h"

class company_dialog : public company_test {
protected:
    void open(int mode, int type = 2) {
        dialog = std::make_unique<dlg_company_add>(nullptr, mode, type);
        added = std::make_unique<QSignalSpy>(dialog.get(), &dlg_company_add::signal_company_do_add);
        edited = std::make_unique<QSignalSpy>(dialog.get(), &dlg_company_add::signal_company_do_edit);
        listed = std::make_unique<QSignalSpy>(dialog.get(), &dlg_company_add::signal_company_list);
        dialog->show();
    }
    void set(const char* field, const QString& text) { child<QLineEdit>(dialog.get(), field)->setText(text); }
    void fill_required() {
        set("txt_name", QStringLiteral("甲"));
        set("txt_address", QStringLiteral("路"));
        set("txt_phone", QStringLiteral("1"));
    }
    QWidget* field(const char* name) { return child<QLineEdit>(dialog.get(), name); }
    void expect_stays() {
        EXPECT_TRUE(dialog->isVisible());
        EXPECT_EQ(added->size() + edited->size(), 0);
    }

    std::unique_ptr<dlg_company_add> dialog;
    std::unique_ptr<QSignalSpy> added;
    std::unique_ptr<QSignalSpy> edited;
    std::unique_ptr<QSignalSpy> listed;
};

const char* const fields_in_order[] = {"txt_name",   "txt_address", "txt_phone",   "txt_fax",   "txt_linkman",
                                       "txt_mobile", "txt_bank",    "txt_account", "txt_remark"};

TEST_F(company_dialog, window) {
    open(0);
    EXPECT_EQ(dialog->windowTitle(), QStringLiteral("添加来往单位"));
    expect_window(dialog.get(), QSize(450, 372), Qt::WindowCloseButtonHint);
}

TEST_F(company_dialog, labels_markers_and_fields_stand_in_rows) {
    open(0);
    expect_form_rows(dialog.get(), {{"name", "名称", true},
                                    {"address", "地址", true},
                                    {"phone", "电话", true},
                                    {"fax", "传真", false},
                                    {"linkman", "联系人", false},
                                    {"mobile", "手机", false},
                                    {"bank", "开户行", false},
                                    {"account", "帐号", false},
                                    {"remark", "备注", false}});
}

TEST_F(company_dialog, buttons) {
    open(0);
    EXPECT_EQ(child<QPushButton>(dialog.get(), "btn_save")->text(), QStringLiteral("保存"));
    EXPECT_EQ(child<QPushButton>(dialog.get(), "btn_cancel")->text(), QStringLiteral("取消"));
    for (const char* name : {"btn_save", "btn_cancel"}) {
        auto* button = child<QPushButton>(dialog.get(), name);
        EXPECT_EQ(button->minimumHeight(), 30);
        EXPECT_GT(button->y(), child<QLineEdit>(dialog.get(), "txt_remark")->y());
    }
}

TEST_F(company_dialog, tab_order_is_top_to_bottom) {
    open(0);
    expect_tab_order(dialog.get(),
                     {"txt_name", "txt_address", "txt_phone", "txt_fax", "txt_linkman", "txt_mobile",
                      "txt_bank", "txt_account", "txt_remark", "btn_save", "btn_cancel"});
}

TEST_F(company_dialog, the_mobile_number_alone_has_a_validator) {
    open(0);
    for (const char* name : fields_in_order)
        EXPECT_EQ(child<QLineEdit>(dialog.get(), name)->validator() != nullptr,
                  QByteArray(name) == "txt_mobile")
            << name;
    type_into(dialog.get(), "txt_mobile", QStringLiteral("12a23800000000099"));
    EXPECT_EQ(child<QLineEdit>(dialog.get(), "txt_mobile")->text(), QStringLiteral("13800000000"));
}

TEST_F(company_dialog, add_hands_over_the_record_and_closes) {
    open(0, 3);
    for (const char* name : fields_in_order)
        set(name, QStringLiteral("  ") + QLatin1String(name) + QStringLiteral(" "));
    set("txt_mobile", QStringLiteral("13800000000"));
    click(dialog.get(), "btn_save");
    ASSERT_EQ(added->size(), 1);
    EXPECT_EQ(edited->size(), 0);
    EXPECT_EQ(listed->size(), 0);
    const auto c = added->first().first().value<struct_company>();
    EXPECT_TRUE(c.id.isEmpty());
    EXPECT_EQ(c.type, 3);
    EXPECT_EQ(c.name, QStringLiteral("txt_name"));
    EXPECT_EQ(c.address, QStringLiteral("txt_address"));
    EXPECT_EQ(c.phone, QStringLiteral("txt_phone"));
    EXPECT_EQ(c.fax, QStringLiteral("txt_fax"));
    EXPECT_EQ(c.linkman, QStringLiteral("txt_linkman"));
    EXPECT_EQ(c.mobile, QStringLiteral("13800000000"));
    EXPECT_EQ(c.bank, QStringLiteral("txt_bank"));
    EXPECT_EQ(c.account, QStringLiteral("txt_account"));
    EXPECT_EQ(c.remark, QStringLiteral("txt_remark"));
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_EQ(dialog->result(), int(QDialog::Accepted));
    EXPECT_TRUE(server.requests().isEmpty()) << "the dialog itself sends nothing";
}

TEST_F(company_dialog, checks_come_in_their_order) {
    open(0);
    set("txt_mobile", QStringLiteral("12"));
    set("txt_name", QStringLiteral("   "));
    click(dialog.get(), "btn_save");
    expect_tip(field("txt_name"), QStringLiteral("名称不能为空"));
    set("txt_name", QStringLiteral("甲"));
    click(dialog.get(), "btn_save");
    expect_tip(field("txt_address"), QStringLiteral("地址不能为空"));
    set("txt_address", QStringLiteral("路"));
    click(dialog.get(), "btn_save");
    expect_tip(field("txt_phone"), QStringLiteral("电话不能为空"));
    set("txt_phone", QStringLiteral("1"));
    click(dialog.get(), "btn_save");
    expect_tip(field("txt_mobile"), QStringLiteral("格式不正确"));
    expect_stays();
    set("txt_mobile", QString());
    click(dialog.get(), "btn_save");
    EXPECT_EQ(added->size(), 1);
}

struct mobile_row {
    const char* text;
    bool accepted;
};
class mobile_check : public company_dialog, public testing::WithParamInterface<mobile_row> {};

TEST_P(mobile_check, decides_about_the_save) {
    open(0);
    fill_required();
    set("txt_mobile", QLatin1String(GetParam().text));
    click(dialog.get(), "btn_save");
    EXPECT_EQ(added->size(), GetParam().accepted ? 1 : 0);
    if (!GetParam().accepted) expect_tip(field("txt_mobile"), QStringLiteral("格式不正确"));
}

INSTANTIATE_TEST_SUITE_P(
    numbers, mobile_check,
    testing::Values(mobile_row{"", true}, mobile_row{"13800000000", true}, mobile_row{"19900000000", true},
                    mobile_row{"12000000000", false}, mobile_row{"16000000000", false},
                    mobile_row{"1380000000", false},
                    // Blanks alone are an empty value; around a number they are not trimmed.
                    mobile_row{"   ", true}, mobile_row{" 13800000000", false}));

TEST_F(company_dialog, edit_shows_and_returns_the_record) {
    open(1, 2);
    struct_company c;
    c.id = QStringLiteral("8");
    c.name = QStringLiteral("n");
    c.address = QStringLiteral("a");
    c.phone = QStringLiteral("p");
    c.fax = QStringLiteral("f");
    c.linkman = QStringLiteral("l");
    c.mobile = QStringLiteral("13800000000");
    c.bank = QStringLiteral("b");
    c.account = QStringLiteral("c");
    c.remark = QStringLiteral("r");
    c.datetime_text = QStringLiteral("then");
    c.type = 1;
    dialog->slot_company_to_edit(c);
    const char* const shown[] = {"n", "a", "p", "f", "l", "13800000000", "b", "c", "r"};
    for (int i = 0; i < 9; ++i)
        EXPECT_EQ(child<QLineEdit>(dialog.get(), fields_in_order[i])->text(), QLatin1String(shown[i]));
    set("txt_remark", QString());
    click(dialog.get(), "btn_save");
    ASSERT_EQ(edited->size(), 1);
    EXPECT_EQ(added->size(), 0);
    const auto back = edited->first().first().value<struct_company>();
    EXPECT_EQ(back.id, QStringLiteral("8"));
    EXPECT_EQ(back.type, 1) << "the record's kind, not the dialog's";
    EXPECT_EQ(back.datetime_text, QStringLiteral("then"));
    EXPECT_TRUE(back.remark.isEmpty());
}

TEST_F(company_dialog, a_stored_mobile_number_that_does_not_fit_blocks_the_save) {
    open(1);
    struct_company c;
    c.name = c.address = c.phone = QStringLiteral("x");
    c.mobile = QStringLiteral("0571-88");
    dialog->slot_company_to_edit(c);
    click(dialog.get(), "btn_save");
    expect_tip(field("txt_mobile"), QStringLiteral("格式不正确"));
    expect_stays();
    set("txt_mobile", QString());
    click(dialog.get(), "btn_save");
    EXPECT_EQ(edited->size(), 1);
}

TEST_F(company_dialog, another_mode_checks_the_fields_and_then_closes) {
    for (int mode : {2, 5, -1}) {
        open(mode);
        click(dialog.get(), "btn_save");
        expect_tip(field("txt_name"), QStringLiteral("名称不能为空"));
        expect_stays();
        fill_required();
        click(dialog.get(), "btn_save");
        EXPECT_FALSE(dialog->isVisible());
        EXPECT_EQ(added->size() + edited->size() + listed->size(), 0);
    }
}

TEST_F(company_dialog, cancel_closes_without_a_word) {
    open(0);
    fill_required();
    click(dialog.get(), "btn_cancel");
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_EQ(dialog->result(), int(QDialog::Rejected));
    EXPECT_EQ(added->size(), 0);
}

TEST_F(company_dialog, return_saves_and_escape_closes_as_in_any_dialog) {
    open(0);
    QTest::keyClick(field("txt_name"), Qt::Key_Return);
    expect_tip(field("txt_name"), QStringLiteral("名称不能为空"));
    QTest::keyClick(dialog.get(), Qt::Key_Escape);
    EXPECT_FALSE(dialog->isVisible());
}
