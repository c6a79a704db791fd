#include "master/dlg_company_add.h"

#include "ui_dlg_company_add.h"
#include "widgets/fields.h"
#include "widgets/modes.h"

dlg_company_add::dlg_company_add(QWidget* parent, int dialog_mode, int type)
    : QDialog(parent, Qt::Dialog | Qt::WindowCloseButtonHint),
      ui(std::make_unique<Ui::dlg_company_add>()),
      mode(dialog_mode) {
    ui->setupUi(this);
    company.type = type;
    set_pattern(ui->txt_mobile, g_mobile_pattern);
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
    company.name = field_text(ui->txt_name);
    company.address = field_text(ui->txt_address);
    company.phone = field_text(ui->txt_phone);
    company.fax = field_text(ui->txt_fax);
    company.linkman = field_text(ui->txt_linkman);
    company.mobile = field_text(ui->txt_mobile);
    company.bank = field_text(ui->txt_bank);
    company.account = field_text(ui->txt_account);
    company.remark = field_text(ui->txt_remark);
}

/** Stops at the first failure and tells the user. The pattern is held against the field's text, untrimmed. */
bool dlg_company_add::check_fields() {
    return !fails(company.name.isEmpty(), ui->txt_name, QStringLiteral("名称不能为空")) &&
           !fails(company.address.isEmpty(), ui->txt_address, QStringLiteral("地址不能为空")) &&
           !fails(company.phone.isEmpty(), ui->txt_phone, QStringLiteral("电话不能为空")) &&
           !fails(!company.mobile.isEmpty() && !ui->txt_mobile->hasAcceptableInput(), ui->txt_mobile,
                  QStringLiteral("格式不正确"));
}
