#include "master/dlg_company_add.h"

#include <QRegExpValidator>

#include "ui_dlg_company_add.h"
#include "widgets/tips.h"

namespace {

enum { mode_add = 0, mode_edit = 1 };

} // namespace

dlg_company_add::dlg_company_add(QWidget* parent, int dialog_mode, int type)
    : QDialog(parent, Qt::Dialog | Qt::WindowCloseButtonHint),
      ui(std::make_unique<Ui::dlg_company_add>()),
      mode(dialog_mode) {
    ui->setupUi(this);
    company.type = type;
    ui->txt_mobile->setValidator(new QRegExpValidator(
        QRegExp(QStringLiteral("^1[345789]\\d{9}$"), Qt::CaseSensitive), ui->txt_mobile));
}

dlg_company_add::~dlg_company_add() = default;

void dlg_company_add::slot_company_to_edit(struct_company to_edit) {
    company = to_edit;
    ui->txt_name->setText(company.name);
    ui->txt_address->setText(company.address);
    ui->txt_phone->setText(company.phone);
    ui->txt_fax->setText(company.fax);
    ui->txt_linkman->setText(company.linkman);
    ui->txt_mobile->setText(company.mobile);
    ui->txt_bank->setText(company.bank);
    ui->txt_account->setText(company.account);
    ui->txt_remark->setText(company.remark);
}

void dlg_company_add::on_btn_cancel_clicked() {
    reject();
}

void dlg_company_add::on_btn_save_clicked() {
    read_fields();
    if (!check_fields()) return;
    if (mode == mode_add)
        emit signal_company_do_add(company);
    else if (mode == mode_edit)
        emit signal_company_do_edit(company);
    accept();
}

void dlg_company_add::read_fields() {
    company.name = ui->txt_name->text().trimmed();
    company.address = ui->txt_address->text().trimmed();
    company.phone = ui->txt_phone->text().trimmed();
    company.fax = ui->txt_fax->text().trimmed();
    company.linkman = ui->txt_linkman->text().trimmed();
    company.mobile = ui->txt_mobile->text().trimmed();
    company.bank = ui->txt_bank->text().trimmed();
    company.account = ui->txt_account->text().trimmed();
    company.remark = ui->txt_remark->text().trimmed();
}

/** Stops at the first failure and tells the user. The pattern is held against the field's text, untrimmed. */
bool dlg_company_add::check_fields() {
    if (company.name.isEmpty())
        show_tip(ui->txt_name, QStringLiteral("名称不能为空"));
    else if (company.address.isEmpty())
        show_tip(ui->txt_address, QStringLiteral("地址不能为空"));
    else if (company.phone.isEmpty())
        show_tip(ui->txt_phone, QStringLiteral("电话不能为空"));
    else if (!company.mobile.isEmpty() && !ui->txt_mobile->hasAcceptableInput())
        show_tip(ui->txt_mobile, QStringLiteral("格式不正确"));
    else
        return true;
    return false;
}
