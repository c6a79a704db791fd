#include "access/dlg_user_reg.h"

#include <QDateTime>
#include <QEvent>
#include <QMessageBox>
#include <QPixmap>
#include <QToolTip>

#include "model/form_body.h"
#include "net/http.h"
#include "net/md5_hex.h"
#include "ui_dlg_user_reg.h"
#include "widgets/banner.h"
#include "widgets/fields.h"
#include "widgets/tips.h"

namespace {

const QString phone_pattern = QStringLiteral("^(\\+\\d{2}-)?0\\d{2,3}-\\d{7,8}$");

bool is_blank(const QLineEdit* field) {
    return field_text(field).isEmpty();
}

bool missing(QLineEdit* field, const QString& tip) {
    return fails(is_blank(field), field, tip);
}

bool malformed(QLineEdit* field, const QString& tip) {
    return fails(!field->hasAcceptableInput(), field, tip);
}

} // namespace

dlg_user_reg::dlg_user_reg(QDialog* login)
    : QDialog(login), ui(std::make_unique<Ui::dlg_user_reg>()), parent_dialog(login) {
    ui->setupUi(this);
    setFixedSize(size());
    show_banner(ui->lbl_img);
    set_pattern(ui->txt_phone, phone_pattern);
    set_pattern(ui->txt_mobile, g_mobile_pattern);
    set_pattern(ui->txt_email, g_email_pattern);
    ui->lbl_captcha->installEventFilter(this);
    load_captcha();
}

dlg_user_reg::~dlg_user_reg() = default;

/** The service remembers what the picture shows for the session that fetched it. */
void dlg_user_reg::load_captcha() {
    QPixmap picture;
    picture.loadFromData(g_http.get_raw(QStringLiteral("user_reg/captcha_data")));
    ui->lbl_captcha->setPixmap(picture);
}

bool dlg_user_reg::eventFilter(QObject* object, QEvent* event) {
    if (object == ui->lbl_captcha) {
        if (event->type() == QEvent::MouseButtonPress) load_captcha();
        if (event->type() == QEvent::ToolTip) show_tip(ui->lbl_captcha, QStringLiteral("点击刷新"));
        if (event->type() == QEvent::Leave) QToolTip::hideText();
    }
    return QDialog::eventFilter(object, event);
}

void dlg_user_reg::on_btn_cancel_clicked() {
    accept();
    parent_dialog->show();
}

void dlg_user_reg::on_btn_submit_clicked() {
    if (!check_fields()) return;
    const QString args = form_body();
    if (!check_free(args)) return;
    tell(accounts.do_reg(args).value(QLatin1String("state")).toVariant().toInt());
}

/** Stops at the first failure and tells the user. A missing confirmation is told at the password itself. */
bool dlg_user_reg::check_fields() {
    const QString wrong_form = QStringLiteral("格式错误");
    return !missing(ui->txt_company, QStringLiteral("请填写公司名称")) &&
           (is_blank(ui->txt_phone) || !malformed(ui->txt_phone, QStringLiteral("电话格式错误"))) &&
           !missing(ui->txt_username, QStringLiteral("请填写用户名")) &&
           !missing(ui->txt_password, QStringLiteral("请填写密码")) &&
           !fails(is_blank(ui->txt_password2), ui->txt_password, QStringLiteral("请填写确认密码")) &&
           !differ(ui->txt_password, ui->txt_password2, QStringLiteral("前后密码不一致")) &&
           !missing(ui->txt_realname, QStringLiteral("请填写姓名")) &&
           !missing(ui->txt_mobile, QStringLiteral("请填写手机")) && !malformed(ui->txt_mobile, wrong_form) &&
           !missing(ui->txt_email, QStringLiteral("请填写电子邮件")) &&
           !malformed(ui->txt_email, wrong_form) && !missing(ui->txt_captcha, QStringLiteral("请填写验证码"));
}

/** Without a network every count reads 0, and the captcha's 0 says that it is wrong. */
bool dlg_user_reg::check_free(const QString& args) {
    const QJsonObject found = accounts.check_reg_exist(args);
    const auto count = [&found](const char* key) {
        return found.value(QLatin1String(key)).toVariant().toInt();
    };
    return !fails(count("company") > 0, ui->txt_company, QStringLiteral("公司名称已存在")) &&
           !fails(count("username") > 0, ui->txt_username, QStringLiteral("用户名已存在")) &&
           !fails(count("mobile") > 0, ui->txt_mobile, QStringLiteral("联系人手机已存在")) &&
           !fails(count("email") > 0, ui->txt_email, QStringLiteral("邮箱已存在")) &&
           !fails(count("captcha") == 0, ui->lbl_captcha, QStringLiteral("验证码错误"));
}

QString dlg_user_reg::form_body() const {
    QString args;
    append(args, "company=", field_text(ui->txt_company));
    append(args, "&phone=", field_text(ui->txt_phone));
    append(args, "&address=", field_text(ui->txt_address));
    append(args, "&username=", field_text(ui->txt_username));
    append(args, "&password=", md5_hex(field_text(ui->txt_password)));
    append(args, "&realname=", field_text(ui->txt_realname));
    append(args, "&mobile=", field_text(ui->txt_mobile));
    append(args, "&email=", field_text(ui->txt_email));
    append(args, "&reg_time=", QString::number(QDateTime::currentSecsSinceEpoch(), 10));
    append(args, "&captcha=", field_text(ui->txt_captcha));
    return args;
}

/** What came of the sign-up; a state that is not known says nothing. */
void dlg_user_reg::tell(int state) {
    switch (state) {
        case model_user::reg_same_name:
            show_tip(ui->txt_username, QStringLiteral("用户名已存在"));
            break;
        case model_user::reg_wrong_captcha:
            show_tip(ui->lbl_captcha, QStringLiteral("验证码错误"));
            break;
        case model_user::reg_repeated:
            show_tip(ui->lbl_msg, QStringLiteral("已存在相同的注册信息"), QPoint(100, -12));
            break;
        case model_user::reg_done:
            warn(QStringLiteral("注册成功，请使用帐号进行登录"));
            accept();
            break;
        case model_user::reg_failed:
            warn(QStringLiteral("注册失败"));
            break;
        default:
            break;
    }
}

void dlg_user_reg::warn(const QString& text) {
    QMessageBox::warning(this, QStringLiteral("提示"), text, QMessageBox::Ok);
}
