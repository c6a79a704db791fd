#include "access/dlg_menu_add.h"

#include "ui_dlg_menu_add.h"
#include "widgets/modes.h"

namespace {

const struct {
    const char* name;
    const char* action;
} templates[] = {
    {"查询", "search"},
    {"查看", "view"},
    {"添加", "add"},
    {"编辑", "edit"},
    {"删除", "delete"},
    {"打印", "print"},
    {"添加明细", "detail_add"},
    {"删除明细", "detail_delete"},
    {"打印明细", "detail_print"},
    {"添加子节点", "add_child"},
};

} // namespace

dlg_menu_add::dlg_menu_add(QWidget* parent, int dialog_mode)
    : QDialog(parent, Qt::Dialog | Qt::WindowCloseButtonHint),
      ui(std::make_unique<Ui::dlg_menu_add>()),
      mode(dialog_mode) {
    ui->setupUi(this);
    for (const auto& each : templates)
        ui->combo_name->addItem(QString::fromUtf8(each.name), QLatin1String(each.action));
    on_radio_template_clicked();
}

dlg_menu_add::~dlg_menu_add() = default;

/** A row whose action is in the template gets the name that the template has for it. */
void dlg_menu_add::slot_menu_to_edit(struct_menu to_edit) {
    menu = to_edit;
    const int found = ui->combo_name->findData(menu.action);
    if (found >= 0) {
        ui->radio_template->setChecked(true);
        ui->combo_name->setCurrentIndex(found);
        on_radio_template_clicked();
    } else {
        ui->radio_custom->setChecked(true);
        ui->txt_name->setText(menu.name);
        ui->txt_action->setText(menu.action);
        on_radio_custom_clicked();
    }
    ui->txt_sort->setText(menu.sort);
    ui->txt_real_level->setText(menu.real_level);
    ui->radio_show->setChecked(menu.show == 1);
    ui->radio_hide->setChecked(menu.show != 1);
}

void dlg_menu_add::on_radio_template_clicked() {
    show_custom_fields(false);
}

void dlg_menu_add::on_radio_custom_clicked() {
    show_custom_fields(true);
}

void dlg_menu_add::show_custom_fields(bool shown) {
    ui->combo_name->setVisible(!shown);
    ui->txt_name->setVisible(shown);
    ui->label_action->setVisible(shown);
    ui->txt_action->setVisible(shown);
}

void dlg_menu_add::on_btn_submit_clicked() {
    if (ui->radio_template->isChecked()) {
        menu.name = ui->combo_name->currentText();
        menu.action = ui->combo_name->currentData().toString();
    } else {
        menu.name = ui->txt_name->text();
        menu.action = ui->txt_action->text();
    }
    menu.sort = ui->txt_sort->text();
    menu.real_level = ui->txt_real_level->text();
    menu.show = ui->radio_show->isChecked() ? 1 : 0;
    if (mode == mode_add)
        emit signal_menu_do_add(menu);
    else
        emit signal_menu_do_edit(menu);
    accept();
}

void dlg_menu_add::on_btn_close_clicked() {
    reject();
}
