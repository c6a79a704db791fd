#include <QBuffer>
#include <QDateTime>
#include <QHelpEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

#include "access/dlg_user_reg.h"
#include "gui/user_fixture.h"
#include "net/md5_hex.h"

class sign_up : public user_test {
protected:
    sign_up() {
        server.always("user_reg/captcha_data", picture(Qt::red));
        server.always("user_reg/check_reg_exist",
                      R"({"company":0,"username":0,"mobile":0,"email":0,"captcha":1})");
        dialog = std::make_unique<dlg_user_reg>(&login);
        dialog->show();
    }

    static QByteArray picture(const QColor& colour) {
        QImage image(130, 50, QImage::Format_RGB32);
        image.fill(colour);
        QByteArray bytes;
        QBuffer buffer(&bytes);
        buffer.open(QIODevice::WriteOnly);
        image.save(&buffer, "PNG");
        return bytes;
    }
    QColor shown_colour() { return captcha()->pixmap(Qt::ReturnByValue).toImage().pixelColor(5, 5); }
    QLabel* captcha() { return child<QLabel>(dialog.get(), "lbl_captcha"); }
    QWidget* part(const char* name) { return child<QWidget>(dialog.get(), name); }
    QLineEdit* field(const char* name) { return child<QLineEdit>(dialog.get(), name); }
    void set(const char* name, const QString& text) { field(name)->setText(text); }
    void fill() {
        set("txt_company", QStringLiteral(" 甲公司 "));
        set("txt_phone", QStringLiteral("0755-12345678"));
        set("txt_address", QStringLiteral(" 路1号"));
        set("txt_username", QStringLiteral("boss "));
        set("txt_password", QStringLiteral(" p w "));
        set("txt_password2", QStringLiteral("p w"));
        set("txt_realname", QStringLiteral("王 "));
        set("txt_mobile", QStringLiteral("13800000000"));
        set("txt_email", QStringLiteral("a@b.cn"));
        set("txt_captcha", QStringLiteral(" x7 "));
    }
    void expect_refused(const char* at, const char* tip) {
        click(dialog.get(), "btn_submit");
        expect_tip(part(at), QString::fromUtf8(tip));
        EXPECT_TRUE(dialog->isVisible());
    }
    int sign_ups() const { return server.bodies("user_reg/do_reg").size(); }

    QDialog login;
    std::unique_ptr<dlg_user_reg> dialog;
};

TEST_F(sign_up, window_has_the_size_of_its_form) {
    EXPECT_EQ(dialog->minimumSize(), dialog->size());
    EXPECT_EQ(dialog->maximumSize(), dialog->size());
    EXPECT_EQ(dialog->windowTitle(), QStringLiteral("用户注册"));
    EXPECT_EQ(child<QPushButton>(dialog.get(), "btn_submit")->text(), QStringLiteral("注册"));
    EXPECT_EQ(child<QPushButton>(dialog.get(), "btn_cancel")->text(), QStringLiteral("取消"));
    const auto* banner = child<QLabel>(dialog.get(), "lbl_img");
    EXPECT_EQ(banner->text(),
              QStringLiteral("<a href='%1'><img src=':/img/logo.jpg'></a>").arg(server.base_url()));
    EXPECT_TRUE(banner->hasScaledContents());
    EXPECT_TRUE(banner->openExternalLinks());
}

TEST_F(sign_up, labels_markers_and_fields_stand_in_rows) {
    const struct {
        const char* name;
        const char* text;
        bool required;
        bool secret;
    } rows[] = {{"company", "公司名称", true, false},  {"phone", "公司电话", false, false},
                {"address", "公司地址", false, false}, {"username", "用户名", true, false},
                {"password", "密码", true, true},      {"password2", "确认密码", true, true},
                {"realname", "姓名", true, false},     {"mobile", "手机", true, false},
                {"email", "邮箱", true, false},        {"captcha", "验证码", true, false}};
    int above = child<QLabel>(dialog.get(), "lbl_img")->y();
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
    EXPECT_EQ(field("txt_phone")->placeholderText(), QStringLiteral("格式：010-12345678 或 0755-12345678"));
    EXPECT_EQ(captcha()->cursor().shape(), Qt::PointingHandCursor);
    EXPECT_GT(captcha()->x(), field("txt_captcha")->geometry().right());
}

TEST_F(sign_up, nothing_is_cut_off_with_the_style_sheet) {
    const QSize before = dialog->size();
    expect_fits_with_the_style_sheet(dialog.get());
    EXPECT_EQ(dialog->size(), before);
    EXPECT_GE(captcha()->width(), 130);
    EXPECT_GE(captcha()->height(), 50);
    const auto* phone = field("txt_phone");
    EXPECT_GT(phone->width() - 14, phone->fontMetrics().horizontalAdvance(phone->placeholderText()));
}

TEST_F(sign_up, tab_goes_from_top_to_bottom) {
    EXPECT_EQ(
        tab_order(field("txt_company"), 12),
        (QStringList{
            QStringLiteral("txt_company"), QStringLiteral("txt_phone"), QStringLiteral("txt_address"),
            QStringLiteral("txt_username"), QStringLiteral("txt_password"), QStringLiteral("txt_password2"),
            QStringLiteral("txt_realname"), QStringLiteral("txt_mobile"), QStringLiteral("txt_email"),
            QStringLiteral("txt_captcha"), QStringLiteral("btn_submit"), QStringLiteral("btn_cancel")}));
}

TEST_F(sign_up, phone_mobile_number_and_address_alone_have_validators) {
    for (const char* name : {"txt_company", "txt_address", "txt_username", "txt_password", "txt_password2",
                             "txt_realname", "txt_captcha"})
        EXPECT_EQ(field(name)->validator(), nullptr) << name;
    type_into(dialog.get(), "txt_phone", QStringLiteral("a10b10-12c345678901"));
    EXPECT_EQ(field("txt_phone")->text(), QStringLiteral("010-12345678"));
}

TEST_F(sign_up, patterns) {
    const pattern_row phone_rows[] = {
        {"010-12345678", true},     {"010-1234567", true},      {"0755-12345678", true},
        {"0755-1234567", true},     {"+86-010-12345678", true}, {"10-12345678", false},
        {"01-12345678", false},     {"07555-1234567", false},   {"0755-123456", false},
        {"0755-123456789", false},  {"07551234567", false},     {"86-010-12345678", false},
        {"+8-010-12345678", false}, {"+86010-12345678", false}, {"010-12345678 ", false},
        {"010-1234567a", false}};
    for (const auto& r : phone_rows) {
        set("txt_phone", QLatin1String(r.text));
        EXPECT_EQ(field("txt_phone")->hasAcceptableInput(), r.accepted) << r.text;
    }
    for (const auto& r : mobile_rows) {
        set("txt_mobile", QString::fromUtf8(r.text));
        EXPECT_EQ(field("txt_mobile")->hasAcceptableInput(), r.accepted) << r.text;
    }
    for (const auto& r : email_rows) {
        set("txt_email", QString::fromUtf8(r.text));
        EXPECT_EQ(field("txt_email")->hasAcceptableInput(), r.accepted) << r.text;
    }
}

TEST_F(sign_up, the_captcha_comes_with_the_dialog_and_anew_with_every_press) {
    ASSERT_EQ(server.requests().size(), 1);
    EXPECT_EQ(server.last().method, "GET");
    EXPECT_EQ(server.last().path, "user_reg/captcha_data");
    EXPECT_EQ(shown_colour(), QColor(Qt::red));
    int expected = 1;
    for (Qt::MouseButton button : {Qt::LeftButton, Qt::RightButton}) {
        const QColor next = button == Qt::LeftButton ? Qt::blue : Qt::green;
        server.always("user_reg/captcha_data", picture(next));
        QTest::mousePress(captcha(), button);
        EXPECT_EQ(server.requests().size(), ++expected);
        EXPECT_EQ(shown_colour(), next);
        QTest::mouseRelease(captcha(), button);
        EXPECT_EQ(server.requests().size(), expected);
    }
}

TEST_F(sign_up, without_a_picture_there_is_none) {
    for (const char* body : {"", "no picture"}) {
        server.always("user_reg/captcha_data", body);
        QTest::mousePress(captcha(), Qt::LeftButton);
        EXPECT_TRUE(captcha()->pixmap(Qt::ReturnByValue).isNull()) << body;
        EXPECT_TRUE(dialog->isVisible());
    }
}

TEST_F(sign_up, the_captcha_tells_that_it_can_be_pressed) {
    QHelpEvent ask(QEvent::ToolTip, QPoint(20, 20), captcha()->mapToGlobal(QPoint(20, 20)));
    QApplication::sendEvent(captcha(), &ask);
    expect_tip(captcha(), QStringLiteral("点击刷新"));
    QApplication::sendEvent(captcha(), &ask);
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(captcha(), &leave);
    EXPECT_TRUE(QTest::qWaitFor([] { return shown_tip().isEmpty(); }));
    EXPECT_EQ(server.requests().size(), 1);
}

TEST_F(sign_up, checks_come_in_their_order) {
    set("txt_phone", QStringLiteral("0755"));
    const struct {
        const char* at;
        const char* tip;
        const char* field;
        const char* next;
    } steps[] = {{"txt_company", "请填写公司名称", "txt_company", "甲"},
                 {"txt_phone", "电话格式错误", "txt_phone", "010-12345678"},
                 {"txt_username", "请填写用户名", "txt_username", "boss"},
                 {"txt_password", "请填写密码", "txt_password", "pw"},
                 // The message of the empty confirmation stands at the password on purpose.
                 {"txt_password", "请填写确认密码", "txt_password2", "other"},
                 {"txt_password2", "前后密码不一致", "txt_password2", " pw "},
                 {"txt_realname", "请填写姓名", "txt_realname", "王"},
                 {"txt_mobile", "请填写手机", "txt_mobile", "138"},
                 {"txt_mobile", "格式错误", "txt_mobile", "13800000000"},
                 {"txt_email", "请填写电子邮件", "txt_email", "a@b"},
                 {"txt_email", "格式错误", "txt_email", "a@b.cn"},
                 {"txt_captcha", "请填写验证码", "txt_captcha", "x7"}};
    for (const auto& s : steps) {
        expect_refused(s.at, s.tip);
        set(s.field, QString::fromUtf8(s.next));
    }
    EXPECT_EQ(server.requests().size(), 1) << "nothing but the captcha";
    click(dialog.get(), "btn_submit");
    EXPECT_EQ(sign_ups(), 1);
}

TEST_F(sign_up, blanks_do_not_fill_a_field) {
    for (const char* name : {"txt_company", "txt_username", "txt_password", "txt_realname", "txt_captcha"}) {
        fill();
        set(name, QStringLiteral(" \t"));
        click(dialog.get(), "btn_submit");
        EXPECT_TRUE(shown_tip().startsWith(QStringLiteral("请填写"))) << name;
        clear_tip();
    }
    EXPECT_EQ(server.requests().size(), 1);
}

TEST_F(sign_up, different_passwords_are_told_at_both_fields_the_first_one_first) {
    fill();
    set("txt_password2", QStringLiteral("P W"));
    const QString tip = QStringLiteral("前后密码不一致");
    const auto places = tip_places([this] { click(dialog.get(), "btn_submit"); });
    EXPECT_EQ(shown_tip(), tip);
    EXPECT_EQ(places, (QList<QPoint>{tip_place_at(field("txt_password"), tip),
                                     tip_place_at(field("txt_password2"), tip)}));
}

TEST_F(sign_up, both_calls_send_the_same_body) {
    fill();
    const qint64 before = QDateTime::currentSecsSinceEpoch();
    click(dialog.get(), "btn_submit");
    const qint64 after = QDateTime::currentSecsSinceEpoch();
    ASSERT_EQ(server.paths(),
              (QList<QByteArray>{"user_reg/captcha_data", "user_reg/check_reg_exist", "user_reg/do_reg"}));
    const QByteArray body = server.last().body;
    EXPECT_EQ(server.bodies("user_reg/check_reg_exist"), QList<QByteArray>{body});
    const QByteArray head = "company=甲公司&phone=0755-12345678&address=路1号&username=boss&password=" +
                            md5_hex(QStringLiteral("p w")).toLatin1() +
                            "&realname=王&mobile=13800000000&email=a@b.cn&reg_time=";
    const QByteArray tail = "&captcha=x7";
    ASSERT_TRUE(body.startsWith(head)) << body.toStdString();
    ASSERT_TRUE(body.endsWith(tail)) << body.toStdString();
    const QByteArray time = body.mid(head.size(), body.size() - head.size() - tail.size());
    EXPECT_EQ(time, QByteArray::number(time.toLongLong()));
    EXPECT_TRUE(time.toLongLong() >= before && time.toLongLong() <= after) << time.toStdString();
}

TEST_F(sign_up, a_blank_phone_and_address_pass_and_go_out_empty) {
    fill();
    set("txt_phone", QString());
    set("txt_address", QStringLiteral("  "));
    click(dialog.get(), "btn_submit");
    ASSERT_EQ(sign_ups(), 1);
    EXPECT_TRUE(server.last().body.startsWith(QByteArray("company=甲公司&phone=&address=&username=boss&")));
}

TEST_F(sign_up, what_exists_is_told_in_order) {
    fill();
    const struct {
        const char* answer;
        const char* at;
        const char* tip;
    } rows[] = {
        {R"({"company":1,"username":1,"mobile":1,"email":1,"captcha":0})", "txt_company", "公司名称已存在"},
        {R"({"company":0,"username":"2","mobile":1,"email":1,"captcha":0})", "txt_username", "用户名已存在"},
        {R"({"company":"0","username":0,"mobile":1,"email":1,"captcha":0})", "txt_mobile",
         "联系人手机已存在"},
        {R"({"company":-1,"username":0,"mobile":0,"email":3,"captcha":0})", "txt_email", "邮箱已存在"},
        {R"({"company":0,"username":0,"mobile":0,"email":0,"captcha":0})", "lbl_captcha", "验证码错误"},
        {R"({"captcha":"0"})", "lbl_captcha", "验证码错误"}};
    for (const auto& r : rows) {
        server.always("user_reg/check_reg_exist", r.answer);
        expect_refused(r.at, r.tip);
    }
    EXPECT_EQ(sign_ups(), 0);
    EXPECT_EQ(server.bodies("user_reg/captcha_data").size(), 1) << "the captcha stays as it is";
    server.always("user_reg/check_reg_exist", R"({"captcha":"1"})");
    click(dialog.get(), "btn_submit");
    EXPECT_EQ(sign_ups(), 1);
}

TEST_F(sign_up, without_a_network_the_captcha_is_called_wrong) {
    fill();
    for (const scripted_answer& failure :
         {scripted_answer::dropped(), scripted_answer(""), scripted_answer("7"), scripted_answer("[1]"),
          scripted_answer("<html>"), scripted_answer::with_status(500, "oops")}) {
        server.always("user_reg/check_reg_exist", failure);
        expect_refused("lbl_captcha", "验证码错误");
    }
    EXPECT_EQ(sign_ups(), 0);
}

TEST_F(sign_up, states_with_a_tip) {
    fill();
    const struct {
        const char* answer;
        const char* at;
        const char* tip;
        QPoint offset;
    } rows[] = {{R"({"state":2})", "txt_username", "用户名已存在", QPoint(0, 0)},
                {R"({"state":"3"})", "lbl_captcha", "验证码错误", QPoint(0, 0)},
                {R"({"state":4})", "lbl_msg", "已存在相同的注册信息", QPoint(100, -12)}};
    for (const auto& r : rows) {
        server.always("user_reg/do_reg", r.answer);
        click(dialog.get(), "btn_submit");
        expect_tip(part(r.at), QString::fromUtf8(r.tip), r.offset);
        EXPECT_TRUE(dialog->isVisible());
    }
    EXPECT_EQ(server.bodies("user_reg/captcha_data").size(), 1) << "the captcha stays as it is";
}

TEST_F(sign_up, states_with_a_box) {
    fill();
    const struct {
        const char* answer;
        const char* text;
        bool stays;
    } rows[] = {{R"({"state":6})", "注册失败", true},
                {R"({"state":"5"})", "注册成功，请使用帐号进行登录", false}};
    for (const auto& r : rows) {
        server.always("user_reg/do_reg", r.answer);
        with_modal_of<QMessageBox>([this] { click(dialog.get(), "btn_submit"); },
                                   [&](QMessageBox* box) {
                                       EXPECT_EQ(box->windowTitle(), QStringLiteral("提示"));
                                       EXPECT_EQ(box->text(), QString::fromUtf8(r.text));
                                       EXPECT_EQ(box->icon(), QMessageBox::Warning);
                                       EXPECT_EQ(box->standardButtons(),
                                                 QMessageBox::StandardButtons(QMessageBox::Ok));
                                       EXPECT_TRUE(dialog->isVisible());
                                       box->button(QMessageBox::Ok)->click();
                                   });
        EXPECT_EQ(dialog->isVisible(), r.stays);
    }
    EXPECT_EQ(dialog->result(), int(QDialog::Accepted));
    EXPECT_FALSE(login.isVisible()) << "the login is shown by a cancel alone";
    EXPECT_TRUE(g_http.current_user.username.isEmpty()) << "nobody is logged in";
}

TEST_F(sign_up, any_other_state_says_nothing) {
    fill();
    for (const char* answer : {R"({"state":0})", R"({"state":1})", R"({"state":7})", R"({"state":"x"})",
                               R"({"http_state":5})", "{}", "", "7", "[5]", "5"}) {
        server.always("user_reg/do_reg", answer);
        click(dialog.get(), "btn_submit");
        EXPECT_TRUE(shown_tip().isEmpty()) << answer;
        EXPECT_EQ(QApplication::activeModalWidget(), nullptr) << answer;
        EXPECT_TRUE(dialog->isVisible()) << answer;
    }
}

TEST_F(sign_up, cancel_accepts_and_shows_the_login) {
    ASSERT_FALSE(login.isVisible());
    bool login_shown_first = true;
    QObject::connect(dialog.get(), &QDialog::accepted, &login,
                     [&] { login_shown_first = login.isVisible(); });
    click(dialog.get(), "btn_cancel");
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_EQ(dialog->result(), int(QDialog::Accepted));
    EXPECT_TRUE(login.isVisible());
    EXPECT_FALSE(login_shown_first);
    EXPECT_EQ(server.requests().size(), 1);
}
