#include "master/dlg_dept_add.h"

#include "ui_dlg_dept_add.h"
#include "widgets/fields.h"
#include "widgets/modes.h"

dlg_dept_add::dlg_dept_add(QWidget* parent, int dialog_mode)
    : QDialog(parent, Qt::Dialog | Qt::WindowCloseButtonHint),
      ui(std::make_unique<Ui::dlg_dept_add>()),
      mode(dialog_mode) {
    ui->setupUi(this);
}

dlg_dept_add::~dlg_dept_add() = default;

void dlg_dept_add::slot_dept_to_edit(struct_dept to_edit) {
    dept = to_edit;
    ui->txt_name->setText(dept.name);
}

/** Ends as a closed dialog does, not as an accepted one. */
void dlg_dept_add::on_btn_save_clicked() {
    dept.name = field_text(ui->txt_name);
    if (fails(dept.name.isEmpty(), ui->txt_name, QStringLiteral("名称不能为空"))) return;
    if (mode == mode_add)
        emit signal_dept_do_add(dept);
    else if (mode == mode_edit)
        emit signal_dept_do_edit(dept);
    close();
}

void dlg_dept_add::on_btn_close_clicked() {
    close();
}
