#include "access/dlg_user_add.h"

#include "ui_dlg_user_add.h"
#include "widgets/fields.h"
#include "widgets/modes.h"

dlg_user_add::dlg_user_add(QWidget* parent, int dialog_mode)
    : QDialog(parent, Qt::Dialog | Qt::WindowCloseButtonHint),
      ui(std::make_unique<Ui::dlg_user_add>()),
      mode(dialog_mode) {
    ui->setupUi(this);
    set_pattern(ui->txt_mobile, g_mobile_pattern);
    set_pattern(ui->txt_email, g_email_pattern);
    if (mode == mode_add) ui->radio_on->setChecked(true);
}

dlg_user_add::~dlg_user_add() = default;

void dlg_user_add::slot_user_to_edit(struct_user to_edit) {
    user = to_edit;
    ui->txt_username->setReadOnly(true);
    ui->txt_username->setText(user.username);
    ui->txt_realname->setText(user.realname);
    ui->txt_mobile->setText(user.mobile);
    ui->txt_email->setText(user.email);
    if (user.type == user_ordinary) {
        (user.state == user_enabled ? ui->radio_on : ui->radio_off)->setChecked(true);
    } else if (user.type == user_administrator) {
        ui->radio_on->setChecked(true);
        ui->radio_off->hide();
    }
    ui->txt_password->setPlaceholderText(QStringLiteral("不填写则不修改"));
}

void dlg_user_add::on_btn_cancel_clicked() {
    reject();
}

void dlg_user_add::on_btn_submit_clicked() {
    read_fields();
    if (!check_fields() || !check_unique()) return;
    if (mode == mode_add)
        emit signal_user_do_add(user);
    else if (mode == mode_edit)
        emit signal_user_do_edit(user);
    accept();
}

/** Whoever is saved here is an ordinary user, an edited administrator included. */
void dlg_user_add::read_fields() {
    user.username = field_text(ui->txt_username);
    user.realname = field_text(ui->txt_realname);
    user.password = field_text(ui->txt_password);
    user.mobile = field_text(ui->txt_mobile);
    user.email = field_text(ui->txt_email);
    user.type = user_ordinary;
    user.state = ui->radio_on->isChecked() ? user_enabled : user_disabled;
}

/** Stops at the first failure and tells the user. The mobile number's pattern acts while typing only. */
bool dlg_user_add::check_fields() {
    const QString malformed = QStringLiteral("格式不正确");
    return !fails(user.username.isEmpty(), ui->txt_username, QStringLiteral("登录名不能为空")) &&
           !fails(!ui->txt_username->hasAcceptableInput(), ui->txt_username, malformed) &&
           !fails(mode == mode_add && user.password.isEmpty(), ui->txt_password,
                  QStringLiteral("密码不能为空")) &&
           !differ(ui->txt_password, ui->txt_password2, QStringLiteral("密码不一致")) &&
           !fails(user.email.isEmpty(), ui->txt_email, QStringLiteral("邮箱不能为空")) &&
           !fails(!ui->txt_email->hasAcceptableInput(), ui->txt_email, malformed);
}

/** Asks the service, which leaves the edited account itself out. A new account has no id yet. */
bool dlg_user_add::check_unique() {
    return !fails(accounts.check_username(user.username, user.id), ui->txt_username,
                  QStringLiteral("已存在其他重复的登录名")) &&
           !fails(accounts.check_mobile(user.mobile, user.id), ui->txt_mobile,
                  QStringLiteral("已存在其他重复的手机号码")) &&
           !fails(accounts.check_email(user.email, user.id), ui->txt_email,
                  QStringLiteral("已存在其他重复的电子邮箱"));
}
