#include "master/dlg_prodcate_add.h"

#include "ui_dlg_prodcate_add.h"
#include "widgets/fields.h"
#include "widgets/modes.h"

dlg_prodcate_add::dlg_prodcate_add(QWidget* parent, int dialog_mode)
    : QDialog(parent, Qt::Dialog | Qt::WindowCloseButtonHint),
      ui(std::make_unique<Ui::dlg_prodcate_add>()),
      mode(dialog_mode) {
    ui->setupUi(this);
}

dlg_prodcate_add::~dlg_prodcate_add() = default;

void dlg_prodcate_add::slot_prodcate_to_edit(struct_prodcate to_edit) {
    prodcate = to_edit;
    ui->txt_name->setText(prodcate.name);
}

/** Ends as an accepted dialog does. */
void dlg_prodcate_add::on_btn_save_clicked() {
    prodcate.name = field_text(ui->txt_name);
    if (fails(prodcate.name.isEmpty(), ui->txt_name, QStringLiteral("名称不能为空"))) return;
    if (mode == mode_add)
        emit signal_prodcate_do_add(prodcate);
    else if (mode == mode_edit)
        emit signal_prodcate_do_edit(prodcate);
    accept();
}

void dlg_prodcate_add::on_btn_close_clicked() {
    close();
}
