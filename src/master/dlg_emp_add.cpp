#include "master/dlg_emp_add.h"

#include "model/model_emp.h"
#include "ui_dlg_emp_add.h"
#include "widgets/fields.h"
#include "widgets/modes.h"

namespace {

enum { flag_yes = 1, flag_no = 2 };

/** An identity card number, in its form of 15 or of 18 characters. */
const QString g_idnum_pattern = QStringLiteral(
    "^[1-9]\\d{7}((0\\d)|(1[0-2]))(([0|1|2]\\d)|3[0-1])\\d{3}$|"
    "^[1-9]\\d{5}[1-9]\\d{3}((0\\d)|(1[0-2]))(([0|1|2]\\d)|3[0-1])\\d{3}([0-9]|X)$");

} // namespace

dlg_emp_add::dlg_emp_add(QWidget* parent, int dialog_mode, struct_emp to_edit)
    : QDialog(parent, Qt::Dialog | Qt::WindowCloseButtonHint),
      ui(std::make_unique<Ui::dlg_emp_add>()),
      mode(dialog_mode),
      emp(to_edit) {
    ui->setupUi(this);
    set_pattern(ui->txt_idnum, g_idnum_pattern);
    set_pattern(ui->txt_mobile, g_mobile_pattern);
    show_fields();
}

dlg_emp_add::~dlg_emp_add() = default;

void dlg_emp_add::show_fields() {
    ui->txt_name->setText(emp.name);
    ui->txt_idnum->setText(emp.idnum);
    ui->txt_jobnum->setText(emp.jobnum);
    ui->txt_mobile->setText(emp.mobile);
    ui->txt_address->setText(emp.address);
    ui->txt_remark->setText(emp.remark);
    ui->chk_default->setChecked(emp.isdefault == flag_yes);
    ui->chk_leave->setChecked(emp.dimission == flag_yes);
}

void dlg_emp_add::on_btn_cancel_clicked() {
    reject();
}

void dlg_emp_add::on_btn_save_clicked() {
    read_fields();
    if (!check_fields() || !check_unique()) return;
    if (mode == mode_add)
        emit signal_emp_do_add(emp);
    else if (mode == mode_edit)
        emit signal_emp_do_edit(emp);
    accept();
}

void dlg_emp_add::read_fields() {
    emp.name = field_text(ui->txt_name);
    emp.idnum = field_text(ui->txt_idnum);
    emp.jobnum = field_text(ui->txt_jobnum);
    emp.mobile = field_text(ui->txt_mobile);
    emp.address = field_text(ui->txt_address);
    emp.remark = field_text(ui->txt_remark);
    emp.isdefault = ui->chk_default->isChecked() ? flag_yes : flag_no;
    emp.dimission = ui->chk_leave->isChecked() ? flag_yes : flag_no;
}

/** Stops at the first failure and tells the user. The patterns are held against the fields' texts, untrimmed.
 */
bool dlg_emp_add::check_fields() {
    const QString malformed = QStringLiteral("格式不正确");
    return !fails(emp.name.isEmpty(), ui->txt_name, QStringLiteral("姓名不能为空")) &&
           !fails(emp.jobnum.isEmpty(), ui->txt_jobnum, QStringLiteral("工号不能为空")) &&
           !fails(!emp.mobile.isEmpty() && !ui->txt_mobile->hasAcceptableInput(), ui->txt_mobile,
                  malformed) &&
           !fails(!emp.idnum.isEmpty() && !ui->txt_idnum->hasAcceptableInput(), ui->txt_idnum, malformed);
}

/** Asks the service about one number after the other and stops at the first that another employee has. */
bool dlg_emp_add::check_unique() {
    model_emp model;
    const QString own_id = mode == mode_edit ? emp.id : QString();
    return !fails(!emp.idnum.isEmpty() && model.check_idnum_exist(emp.idnum, own_id), ui->txt_idnum,
                  QStringLiteral("已存在其他重复的身份证号")) &&
           !fails(model.check_jobnum_exist(emp.jobnum, own_id), ui->txt_jobnum,
                  QStringLiteral("已存在其他重复的工号")) &&
           !fails(!emp.mobile.isEmpty() && model.check_mobile(emp.mobile, own_id), ui->txt_mobile,
                  QStringLiteral("已存在其他重复的手机号"));
}
