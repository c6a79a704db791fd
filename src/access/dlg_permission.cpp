#include "access/dlg_permission.h"

#include "model/model_permission.h"
#include "ui_dlg_permission.h"

namespace {

constexpr int mode_flat = 2;
constexpr int id_column = 1;

} // namespace

dlg_permission::dlg_permission(QWidget* parent, struct_user edited)
    : QDialog(parent, Qt::Dialog | Qt::WindowCloseButtonHint),
      ui(std::make_unique<Ui::dlg_permission>()),
      user(edited) {
    ui->setupUi(this);
    model_permission model(nullptr, ui->treewidget, user, mode_flat);
    model.get_permission(user.id);
    model.get_permission_tree();
}

dlg_permission::~dlg_permission() = default;

/** While the signals of the tree are blocked, no change of a state, and no further click, comes in here. */
void dlg_permission::on_treewidget_itemChanged(QTreeWidgetItem* item, int) {
    ui->treewidget->blockSignals(true);
    model_permission model(nullptr, ui->treewidget, user, mode_flat);
    // The row itself keeps what the click made of it, whatever the service says.
    const QString id = item->text(id_column);
    const Qt::CheckState state = item->checkState(0);
    if (state == Qt::Checked)
        model.set_checked(id);
    else if (state == Qt::Unchecked)
        model.set_unchecked(id);
    for (int i = 0; i < item->childCount(); ++i)
        model.apply_down(item->child(i));
    if (item->parent() != nullptr) model.apply_up(item->parent());
    ui->treewidget->blockSignals(false);
}

void dlg_permission::on_btn_close_clicked() {
    close();
}
