#include "master/dlg_warehouse_add.h"

#include "master/pick_emp.h"
#include "ui_dlg_warehouse_add.h"
#include "widgets/fields.h"
#include "widgets/modes.h"

dlg_warehouse_add::dlg_warehouse_add(QWidget* parent, int dialog_mode)
    : QDialog(parent, Qt::Dialog | Qt::WindowCloseButtonHint),
      ui(std::make_unique<Ui::dlg_warehouse_add>()),
      mode(dialog_mode) {
    ui->setupUi(this);
    set_pattern(ui->txt_mobile, g_mobile_pattern);
    ui->txt_keeper->installEventFilter(this);
}

dlg_warehouse_add::~dlg_warehouse_add() = default;

void dlg_warehouse_add::slot_warehouse_to_edit(struct_warehouse to_edit) {
    warehouse = to_edit;
    ui->txt_name->setText(warehouse.name);
    ui->txt_keeper->setText(warehouse.keeper_name);
    ui->txt_mobile->setText(warehouse.mobile);
    ui->txt_phone->setText(warehouse.phone);
    ui->txt_address->setText(warehouse.address);
    ui->txt_remark->setText(warehouse.remark);
    ui->chk_default->setChecked(warehouse.isdefault == 1);
}

bool dlg_warehouse_add::eventFilter(QObject* object, QEvent* event) {
    if (!is_pick(object, event, ui->txt_keeper)) return QDialog::eventFilter(object, event);
    pick_emp(this, QStringLiteral("查询选择仓管员"));
    return true;
}

void dlg_warehouse_add::slot_emp_selected(struct_emp emp) {
    warehouse.keeper = emp.id;
    warehouse.keeper_name = emp.name;
    ui->txt_keeper->setText(emp.name);
}

void dlg_warehouse_add::on_btn_cancel_clicked() {
    reject();
}

void dlg_warehouse_add::on_btn_save_clicked() {
    read_fields();
    if (!check_fields()) return;
    if (mode == mode_add)
        emit signal_warehouse_do_add(warehouse);
    else if (mode == mode_edit)
        emit signal_warehouse_do_edit(warehouse);
    accept();
}

/** All but the keeper, who comes from the picker. */
void dlg_warehouse_add::read_fields() {
    warehouse.address = field_text(ui->txt_address);
    warehouse.mobile = field_text(ui->txt_mobile);
    warehouse.phone = field_text(ui->txt_phone);
    warehouse.remark = field_text(ui->txt_remark);
    warehouse.name = field_text(ui->txt_name);
    warehouse.isdefault = ui->chk_default->isChecked() ? 1 : 0;
}

/** Stops at the first failure and tells the user. The pattern is held against the field's text, untrimmed. */
bool dlg_warehouse_add::check_fields() {
    return !fails(warehouse.name.isEmpty(), ui->txt_name, QStringLiteral("名称不能为空")) &&
           !fails(warehouse.keeper.isEmpty(), ui->txt_keeper, QStringLiteral("仓管员不能为空")) &&
           !fails(!warehouse.mobile.isEmpty() && !ui->txt_mobile->hasAcceptableInput(), ui->txt_mobile,
                  QStringLiteral("手机格式不正确"));
}
