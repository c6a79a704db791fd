#include "access/dlg_user_login.h"

#include <QCoreApplication>
#include <QDesktopServices>
#include <QMessageBox>
#include <QUrl>

#include "access/dlg_user_reg.h"
#include "net/constants.h"
#include "net/md5_hex.h"
#include "ui_dlg_user_login.h"
#include "widgets/banner.h"
#include "widgets/fields.h"
#include "widgets/keys.h"

dlg_user_login::dlg_user_login(QWidget* parent)
    : QDialog(parent), ui(std::make_unique<Ui::dlg_user_login>()) {
    ui->setupUi(this);
    setWindowFlags(Qt::Dialog | Qt::WindowMinimizeButtonHint | Qt::WindowCloseButtonHint);
    setWindowTitle(g_app_title + QStringLiteral(" - 用户登陆"));
    setFixedSize(size());
    show_banner(ui->lbl_img);
}

dlg_user_login::~dlg_user_login() = default;

void dlg_user_login::slot_relogin() {
    exec();
}

void dlg_user_login::on_btn_submit_clicked() {
    const QString name = field_text(ui->txt_login_name);
    const QString password = field_text(ui->txt_login_pass);
    if (fails(name.isEmpty(), ui->txt_login_name, QStringLiteral("请输入帐号")) ||
        fails(password.isEmpty(), ui->txt_login_pass, QStringLiteral("请输入密码")))
        return;
    switch (user.check_login(name, md5_hex(password))) {
        case model_user::logged_in:
            emit signal_init_info();
            accept();
            break;
        case model_user::refused:
            warn(QStringLiteral("用户名、密码错误或帐号已停用"));
            break;
        case model_user::no_contact:
            warn(QStringLiteral("网络无法连接，请检查网络"));
            break;
        default:
            break;
    }
}

/** Yes is this dialog's one button, unlike in every other warning. */
void dlg_user_login::warn(const QString& text) {
    QMessageBox::warning(this, QStringLiteral("提示"), text, QMessageBox::Yes);
}

/** Ends the whole program, at a new login too. */
void dlg_user_login::on_btn_close_clicked() {
    QCoreApplication::exit(0);
}

/** Nobody is logged in by a sign-up: this dialog stays behind it. */
void dlg_user_login::on_btn_reg_clicked() {
    dlg_user_reg dialog(this);
    dialog.exec();
}

/** The label opens its links itself; this stays beside it. */
void dlg_user_login::on_lbl_img_linkActivated(QString link) {
    QDesktopServices::openUrl(QUrl(link));
}

void dlg_user_login::keyPressEvent(QKeyEvent* event) {
    if (is_return_key(event)) emit ui->btn_submit->clicked(false);
}
