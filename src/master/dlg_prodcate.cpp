#include "master/dlg_prodcate.h"

#include <QMessageBox>

#include "master/dlg_prodcate_add.h"
#include "model/model_prodcate.h"
#include "model/tree_nodes.h"
#include "ui_dlg_prodcate.h"
#include "widgets/modes.h"
#include "widgets/rights.h"
#include "widgets/selection.h"
#include "widgets/tree_page.h"

namespace {

enum { mode_manage = 1, mode_assign = 3, mode_filter = 4 };

} // namespace

dlg_prodcate::dlg_prodcate(QWidget* parent, int dialog_mode)
    : QDialog(parent), ui(std::make_unique<Ui::dlg_prodcate>()), mode(dialog_mode) {
    ui->setupUi(this);
    if (mode == mode_manage) {
        ui->treeview->setToolTip(QStringLiteral("右键操作"));
        ui->btn_ok->hide();
        ui->treeview->setContextMenuPolicy(Qt::CustomContextMenu);
        ui->treeview->setExpandsOnDoubleClick(false);
    } else if (mode == mode_assign || mode == mode_filter) {
        // The double click still expands or collapses the node that it chooses.
        ui->treeview->setToolTip(QStringLiteral("双击选择"));
        connect(ui->treeview, &QTreeView::doubleClicked, this, &dlg_prodcate::slot_prodcate_selected);
    }
    menu =
        make_context_menu<dlg_prodcate>(this, ui->treeview,
                                        {{QStringLiteral("查询"), &dlg_prodcate::load_tree},
                                         {QStringLiteral("添加子节点"), &dlg_prodcate::slot_prodcate_to_add},
                                         {QStringLiteral("编辑"), &dlg_prodcate::slot_prodcate_to_edit},
                                         {QStringLiteral("删除"), &dlg_prodcate::slot_prodcate_to_delete}});
    // In every mode: who may not search categories cannot choose one either.
    enable_entries(this, menu.actions);
    apply_rights(this, QStringLiteral("prodcate"), &dlg_prodcate::load_tree,
                 list_rights<dlg_prodcate>(QStringLiteral("add_child")));
}

dlg_prodcate::~dlg_prodcate() = default;

void dlg_prodcate::reject() {
    if (isWindow()) QDialog::reject();
}

void dlg_prodcate::load_tree() {
    model_prodcate(ui->treeview, mode).get_tree();
}

void dlg_prodcate::on_treeview_customContextMenuRequested(QPoint) {
    if (mode == mode_manage) open_tree_menu(menu, ui->treeview);
}

void dlg_prodcate::slot_prodcate_to_add() {
    if (!ui->treeview->currentIndex().isValid()) return;
    dlg_prodcate_add dialog(this, mode_add);
    connect(&dialog, &dlg_prodcate_add::signal_prodcate_do_add, this, &dlg_prodcate::slot_prodcate_do_add);
    dialog.exec();
}

void dlg_prodcate::slot_prodcate_do_add(struct_prodcate prodcate) {
    model_prodcate(ui->treeview).do_add(prodcate);
}

void dlg_prodcate::slot_prodcate_to_edit() {
    if (!ui->treeview->currentIndex().isValid()) return;
    const tree_node node = current_node(ui->treeview);
    dlg_prodcate_add dialog(this, mode_edit);
    connect(this, &dlg_prodcate::signal_prodcate_to_edit, &dialog, &dlg_prodcate_add::slot_prodcate_to_edit);
    connect(&dialog, &dlg_prodcate_add::signal_prodcate_do_edit, this, &dlg_prodcate::slot_prodcate_do_edit);
    dialog.setWindowTitle(QStringLiteral("编辑货品类别"));
    emit signal_prodcate_to_edit({node.id, node.name, node.parent});
    dialog.exec();
}

void dlg_prodcate::slot_prodcate_do_edit(struct_prodcate prodcate) {
    model_prodcate(ui->treeview).do_edit(prodcate);
}

void dlg_prodcate::slot_prodcate_to_delete() {
    // Looked at before the question: when the focus comes back, a tree without a current node gets one.
    const QString id = current_node(ui->treeview).id;
    if (confirm_delete(this)) model_prodcate(ui->treeview).do_delete(id);
}

/** The warning is about an empty id alone: the root, of id "0", is handed over as any category is. */
void dlg_prodcate::slot_prodcate_selected() {
    const tree_node node = current_node(ui->treeview);
    if (mode == mode_assign && node.id.isEmpty()) {
        QMessageBox::warning(this, QStringLiteral("提示"), QStringLiteral("请选择货品分类以下类别"),
                             QMessageBox::Ok);
        return;
    }
    emit signal_prodcate_selected({node.id, node.name, QString()});
    reject();
}

void dlg_prodcate::on_btn_ok_clicked() {
    accept();
}
