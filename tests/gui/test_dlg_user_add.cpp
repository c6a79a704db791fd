#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QRegExpValidator>
#include <QSignalSpy>
#include <QTest>

#include "access/dlg_user_add.h"
#include "gui/user_fixture.h"

class user_dialog : public user_test {
protected:
    void open(int mode) {
        dialog = std::make_unique<dlg_user_add>(nullptr, mode);
        added = std::make_unique<QSignalSpy>(dialog.get(), &dlg_user_add::signal_user_do_add);
        edited = std::make_unique<QSignalSpy>(dialog.get(), &dlg_user_add::signal_user_do_edit);
        dialog->show();
    }
    QLineEdit* field(const char* name) { return child<QLineEdit>(dialog.get(), name); }
    QRadioButton* radio(const char* name) { return child<QRadioButton>(dialog.get(), name); }
    void set(const char* name, const QString& text) { field(name)->setText(text); }
    void fill() {
        set("txt_username", QStringLiteral("amy"));
        set("txt_password", QStringLiteral("pw"));
        set("txt_password2", QStringLiteral("pw"));
        set("txt_email", QStringLiteral("a@b.cn"));
    }
    void open_to_edit(int type = 2, int state = 1) {
        open(1);
        dialog->slot_user_to_edit(known(type, state));
    }
    static struct_user known(int type, int state) {
        struct_user u;
        u.id = QStringLiteral("31");
        u.username = QStringLiteral("amy");
        u.realname = QStringLiteral("艾米");
        u.mobile = QStringLiteral("13800000000");
        u.email = QStringLiteral("a@b.cn");
        u.type = type;
        u.state = state;
        u.last_login_time = QStringLiteral("then");
        u.reg_time = QStringLiteral("once");
        return u;
    }
    void expect_refused(const char* at, const char* tip) {
        click(dialog.get(), "btn_submit");
        expect_tip(field(at), QString::fromUtf8(tip));
        EXPECT_TRUE(dialog->isVisible());
        EXPECT_EQ(added->size() + edited->size(), 0);
    }
    static struct_user record(const QSignalSpy& spy) { return spy.first().first().value<struct_user>(); }

    std::unique_ptr<dlg_user_add> dialog;
    std::unique_ptr<QSignalSpy> added;
    std::unique_ptr<QSignalSpy> edited;
};

TEST_F(user_dialog, window) {
    open(0);
    EXPECT_EQ(dialog->size(), QSize(390, 297));
    // Title and system menu come with any button.
    EXPECT_EQ(dialog->windowFlags(),
              Qt::Dialog | Qt::WindowTitleHint | Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint);
    EXPECT_EQ(child<QPushButton>(dialog.get(), "btn_submit")->text(), QStringLiteral("保存"));
    EXPECT_EQ(child<QPushButton>(dialog.get(), "btn_cancel")->text(), QStringLiteral("取消"));
}

TEST_F(user_dialog, labels_markers_and_fields_stand_in_rows) {
    open(0);
    const struct {
        const char* name;
        const char* text;
        bool required;
        bool secret;
    } rows[] = {{"username", "用户名", true, false}, {"realname", "姓名", false, false},
                {"password", "密码", true, true},    {"password2", "重复密码", true, true},
                {"mobile", "手机", false, false},    {"email", "邮箱", true, false}};
    int above = -1;
    for (const auto& r : rows) {
        const QByteArray name = r.name;
        auto* label = child<QLabel>(dialog.get(), ("label_" + name).constData());
        auto* edit = field(("txt_" + name).constData());
        EXPECT_EQ(label->text(), QString::fromUtf8(r.text));
        EXPECT_EQ(edit->echoMode(), r.secret ? QLineEdit::Password : QLineEdit::Normal);
        EXPECT_GT(edit->y(), above);
        above = edit->y();
        auto* marker = dialog->findChild<QLabel*>(QLatin1String("label_" + name + "_required"));
        ASSERT_EQ(marker != nullptr, r.required) << r.name;
        if (marker == nullptr) continue;
        EXPECT_EQ(marker->text(), QStringLiteral("*"));
        EXPECT_EQ(marker->styleSheet(), QStringLiteral("color:red"));
        EXPECT_TRUE(marker->x() > label->x() && marker->x() < edit->x());
    }
    EXPECT_EQ(child<QLabel>(dialog.get(), "label_state")->text(), QStringLiteral("状态"));
    EXPECT_EQ(radio("radio_on")->text(), QStringLiteral("启用"));
    EXPECT_EQ(radio("radio_off")->text(), QStringLiteral("停用"));
    EXPECT_GT(radio("radio_on")->y(), above);
}

TEST_F(user_dialog, nothing_is_cut_off_with_the_style_sheet) {
    open(0);
    expect_fits_with_the_style_sheet(dialog.get());
    EXPECT_EQ(dialog->size(), QSize(390, 297));
}

TEST_F(user_dialog, tab_goes_from_top_to_bottom) {
    open(0);
    EXPECT_EQ(tab_order(field("txt_username"), 10),
              (QStringList{QStringLiteral("txt_username"), QStringLiteral("txt_realname"),
                           QStringLiteral("txt_password"), QStringLiteral("txt_password2"),
                           QStringLiteral("txt_mobile"), QStringLiteral("txt_email"),
                           QStringLiteral("radio_on"), QStringLiteral("radio_off"),
                           QStringLiteral("btn_submit"), QStringLiteral("btn_cancel")}));
}

TEST_F(user_dialog, mobile_number_and_address_alone_have_validators) {
    open(0);
    for (const char* name : {"txt_username", "txt_realname", "txt_password", "txt_password2"})
        EXPECT_EQ(field(name)->validator(), nullptr) << name;
    type_into(dialog.get(), "txt_mobile", QStringLiteral("12a23800000000099"));
    EXPECT_EQ(field("txt_mobile")->text(), QStringLiteral("13800000000"));
    type_into(dialog.get(), "txt_email", QStringLiteral("-a-@@b..cnnnn"));
    EXPECT_EQ(field("txt_email")->text(), QStringLiteral("a@b.cnnnn"));
}

TEST_F(user_dialog, patterns) {
    open(0);
    for (const auto& r : mobile_rows) {
        set("txt_mobile", QString::fromUtf8(r.text));
        EXPECT_EQ(field("txt_mobile")->hasAcceptableInput(), r.accepted) << r.text;
    }
    for (const auto& r : email_rows) {
        set("txt_email", QString::fromUtf8(r.text));
        EXPECT_EQ(field("txt_email")->hasAcceptableInput(), r.accepted) << r.text;
    }
}

TEST_F(user_dialog, add_starts_enabled_and_hands_over_the_record) {
    open(0);
    EXPECT_TRUE(radio("radio_on")->isChecked());
    EXPECT_TRUE(field("txt_password")->placeholderText().isEmpty());
    EXPECT_FALSE(field("txt_username")->isReadOnly());
    set("txt_username", QStringLiteral(" amy "));
    set("txt_realname", QStringLiteral(" 艾米"));
    set("txt_password", QStringLiteral(" p w "));
    set("txt_password2", QStringLiteral("p w"));
    set("txt_mobile", QStringLiteral("13800000000"));
    set("txt_email", QStringLiteral("a@b.cn"));
    radio("radio_off")->click();
    click(dialog.get(), "btn_submit");
    EXPECT_EQ(server.paths(),
              (QList<QByteArray>{"user/check_username", "user/check_mobile", "user/check_email"}));
    EXPECT_EQ(server.bodies("user/check_username"), QList<QByteArray>{"username=amy"});
    EXPECT_EQ(server.bodies("user/check_mobile"), QList<QByteArray>{"mobile=13800000000"});
    EXPECT_EQ(server.bodies("user/check_email"), QList<QByteArray>{"email=a@b.cn"});
    ASSERT_EQ(added->size(), 1);
    EXPECT_EQ(edited->size(), 0);
    const struct_user u = record(*added);
    EXPECT_TRUE(u.id.isEmpty());
    EXPECT_EQ(u.username, QStringLiteral("amy"));
    EXPECT_EQ(u.realname, QStringLiteral("艾米"));
    EXPECT_EQ(u.password, QStringLiteral("p w"));
    EXPECT_EQ(u.mobile, QStringLiteral("13800000000"));
    EXPECT_EQ(u.email, QStringLiteral("a@b.cn"));
    EXPECT_EQ(u.type, 2);
    EXPECT_EQ(u.state, 2);
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_EQ(dialog->result(), int(QDialog::Accepted));
}

TEST_F(user_dialog, the_record_goes_out_while_the_dialog_is_up) {
    open(0);
    fill();
    bool up = false;
    QObject::connect(dialog.get(), &dlg_user_add::signal_user_do_add, dialog.get(),
                     [&] { up = dialog->isVisible(); });
    click(dialog.get(), "btn_submit");
    EXPECT_TRUE(up);
}

TEST_F(user_dialog, checks_come_in_their_order) {
    open(0);
    set("txt_username", QStringLiteral("  "));
    set("txt_password2", QStringLiteral("x"));
    expect_refused("txt_username", "登录名不能为空");
    set("txt_username", QStringLiteral("amy"));
    set("txt_password", QStringLiteral("  "));
    expect_refused("txt_password", "密码不能为空");
    set("txt_password", QStringLiteral("pw"));
    expect_refused("txt_password2", "密码不一致");
    set("txt_password2", QStringLiteral(" pw "));
    expect_refused("txt_email", "邮箱不能为空");
    set("txt_email", QStringLiteral("a@b"));
    expect_refused("txt_email", "格式不正确");
    // The pattern is held against the text as it stands.
    set("txt_email", QStringLiteral(" a@b.cn"));
    expect_refused("txt_email", "格式不正确");
    EXPECT_TRUE(server.requests().isEmpty());
    set("txt_email", QStringLiteral("a@b.cn"));
    click(dialog.get(), "btn_submit");
    EXPECT_EQ(added->size(), 1);
}

TEST_F(user_dialog, different_passwords_are_told_at_both_fields_the_first_one_first) {
    open(0);
    fill();
    set("txt_password2", QStringLiteral("PW"));
    const QString tip = QStringLiteral("密码不一致");
    const auto places = tip_places([this] { click(dialog.get(), "btn_submit"); });
    EXPECT_EQ(shown_tip(), tip);
    EXPECT_EQ(places, (QList<QPoint>{tip_place_at(field("txt_password"), tip),
                                     tip_place_at(field("txt_password2"), tip)}));
}

TEST_F(user_dialog, the_user_name_is_held_against_a_validator_that_it_does_not_have) {
    open(0);
    fill();
    field("txt_username")
        ->setValidator(new QRegExpValidator(QRegExp(QStringLiteral("b.*")), field("txt_username")));
    expect_refused("txt_username", "格式不正确");
    EXPECT_TRUE(server.requests().isEmpty());
}

TEST_F(user_dialog, the_mobile_number_is_not_tested_at_the_save) {
    for (const char* number : {"0571-88", "138", ""}) {
        open(0);
        fill();
        set("txt_mobile", QLatin1String(number));
        server.forget();
        click(dialog.get(), "btn_submit");
        ASSERT_EQ(added->size(), 1) << number;
        EXPECT_EQ(record(*added).mobile, QLatin1String(number));
        EXPECT_EQ(server.bodies("user/check_mobile"), QList<QByteArray>{QByteArray("mobile=") + number});
    }
}

TEST_F(user_dialog, what_another_account_has_is_refused_in_order) {
    open(0);
    fill();
    for (const char* path : {"user/check_username", "user/check_mobile", "user/check_email"})
        server.always(path, "1");
    expect_refused("txt_username", "已存在其他重复的登录名");
    EXPECT_EQ(server.paths(), QList<QByteArray>{"user/check_username"});
    server.always("user/check_username", "0");
    expect_refused("txt_mobile", "已存在其他重复的手机号码");
    server.always("user/check_mobile", "");
    expect_refused("txt_email", "已存在其他重复的电子邮箱");
    server.always("user/check_email", "-1");
    click(dialog.get(), "btn_submit");
    EXPECT_EQ(added->size(), 1);
}

TEST_F(user_dialog, edit_shows_the_record_and_returns_it) {
    open_to_edit();
    EXPECT_EQ(field("txt_username")->text(), QStringLiteral("amy"));
    EXPECT_TRUE(field("txt_username")->isReadOnly());
    EXPECT_EQ(field("txt_realname")->text(), QStringLiteral("艾米"));
    EXPECT_EQ(field("txt_mobile")->text(), QStringLiteral("13800000000"));
    EXPECT_EQ(field("txt_email")->text(), QStringLiteral("a@b.cn"));
    EXPECT_TRUE(field("txt_password")->text().isEmpty());
    EXPECT_EQ(field("txt_password")->placeholderText(), QStringLiteral("不填写则不修改"));
    EXPECT_TRUE(field("txt_password2")->placeholderText().isEmpty());
    set("txt_realname", QString());
    click(dialog.get(), "btn_submit");
    EXPECT_EQ(server.bodies("user/check_username"), QList<QByteArray>{"username=amy&id=31"});
    EXPECT_EQ(server.bodies("user/check_mobile"), QList<QByteArray>{"mobile=13800000000&id=31"});
    EXPECT_EQ(server.bodies("user/check_email"), QList<QByteArray>{"email=a@b.cn&id=31"});
    ASSERT_EQ(edited->size(), 1);
    EXPECT_EQ(added->size(), 0);
    const struct_user u = record(*edited);
    EXPECT_EQ(u.id, QStringLiteral("31"));
    EXPECT_TRUE(u.realname.isEmpty());
    EXPECT_TRUE(u.password.isEmpty()) << "an edit needs no password";
    EXPECT_EQ(u.last_login_time, QStringLiteral("then"));
    EXPECT_EQ(u.reg_time, QStringLiteral("once"));
}

TEST_F(user_dialog, an_edit_tests_a_new_password_against_its_repetition_alone) {
    open_to_edit();
    set("txt_password", QStringLiteral("pw"));
    expect_refused("txt_password2", "密码不一致");
    set("txt_password2", QStringLiteral("pw"));
    click(dialog.get(), "btn_submit");
    ASSERT_EQ(edited->size(), 1);
    EXPECT_EQ(record(*edited).password, QStringLiteral("pw"));
}

TEST_F(user_dialog, the_state_of_an_ordinary_user_is_shown_and_may_change) {
    for (int state : {1, 2, 0}) {
        open_to_edit(2, state);
        EXPECT_EQ(radio("radio_on")->isChecked(), state == 1);
        EXPECT_EQ(radio("radio_off")->isChecked(), state != 1);
        EXPECT_TRUE(radio("radio_off")->isVisible());
        radio(state == 1 ? "radio_off" : "radio_on")->click();
        click(dialog.get(), "btn_submit");
        ASSERT_EQ(edited->size(), 1);
        EXPECT_EQ(record(*edited).state, state == 1 ? 2 : 1);
    }
}

TEST_F(user_dialog, an_administrator_cannot_be_disabled_and_leaves_as_an_ordinary_user) {
    for (int state : {1, 2}) {
        open_to_edit(1, state);
        EXPECT_TRUE(radio("radio_on")->isChecked());
        EXPECT_FALSE(radio("radio_off")->isVisible());
        click(dialog.get(), "btn_submit");
        ASSERT_EQ(edited->size(), 1);
        EXPECT_EQ(record(*edited).type, 2);
        EXPECT_EQ(record(*edited).state, 1);
    }
}

TEST_F(user_dialog, an_account_of_no_known_type_has_no_state_chosen) {
    open_to_edit(0, 1);
    EXPECT_FALSE(radio("radio_on")->isChecked());
    EXPECT_FALSE(radio("radio_off")->isChecked());
    EXPECT_TRUE(radio("radio_off")->isVisible());
}

TEST_F(user_dialog, another_mode_closes_without_a_word) {
    open(2);
    EXPECT_FALSE(radio("radio_on")->isChecked());
    fill();
    click(dialog.get(), "btn_submit");
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_EQ(added->size() + edited->size(), 0);
}

TEST_F(user_dialog, cancel_closes_without_a_word) {
    open(0);
    fill();
    click(dialog.get(), "btn_cancel");
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_EQ(dialog->result(), int(QDialog::Rejected));
    EXPECT_EQ(added->size(), 0);
    EXPECT_TRUE(server.requests().isEmpty());
}

TEST_F(user_dialog, return_saves_and_escape_closes_as_in_any_dialog) {
    open(0);
    QTest::keyClick(field("txt_username"), Qt::Key_Return);
    expect_tip(field("txt_username"), QStringLiteral("登录名不能为空"));
    QTest::keyClick(dialog.get(), Qt::Key_Escape);
    EXPECT_FALSE(dialog->isVisible());
}
