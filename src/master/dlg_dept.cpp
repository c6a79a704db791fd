#include "master/dlg_dept.h"

#include "master/dlg_dept_add.h"
#include "model/model_dept.h"
#include "model/tree_nodes.h"
#include "ui_dlg_dept.h"
#include "widgets/modes.h"
#include "widgets/rights.h"
#include "widgets/selection.h"
#include "widgets/tree_page.h"

namespace {

enum { mode_manage = 1, mode_pick = 3 };

} // namespace

dlg_dept::dlg_dept(QWidget* parent, int dialog_mode)
    : QDialog(parent), ui(std::make_unique<Ui::dlg_dept>()), mode(dialog_mode) {
    ui->setupUi(this);
    if (mode == mode_manage) {
        ui->treeview->setToolTip(QStringLiteral("右键操作"));
        ui->btn_close->hide();
        ui->treeview->setContextMenuPolicy(Qt::CustomContextMenu);
    } else if (mode == mode_pick) {
        // A double click chooses and does nothing else.
        ui->treeview->setExpandsOnDoubleClick(false);
    }
    menu = make_context_menu<dlg_dept>(this, ui->treeview,
                                       {{QStringLiteral("查询"), &dlg_dept::load_tree},
                                        {QStringLiteral("添加子节点"), &dlg_dept::slot_dept_to_add},
                                        {QStringLiteral("编辑"), &dlg_dept::slot_dept_to_edit},
                                        {QStringLiteral("删除"), &dlg_dept::slot_dept_to_delete}});
    if (mode == mode_pick) setMinimumHeight(height());
    enable_by_rights();
}

dlg_dept::~dlg_dept() = default;

void dlg_dept::reject() {
    if (isWindow()) QDialog::reject();
}

/** Picking is open to anybody who may open the document that asks for it. */
void dlg_dept::enable_by_rights() {
    if (mode == mode_pick) {
        load_tree();
        return;
    }
    enable_entries(this, menu.actions);
    apply_rights(this, QStringLiteral("dept"), &dlg_dept::load_tree,
                 list_rights<dlg_dept>(QStringLiteral("add_child")));
}

void dlg_dept::load_tree() {
    model_dept(ui->treeview, mode).get_tree();
}

void dlg_dept::on_treeview_customContextMenuRequested(QPoint) {
    if (mode == mode_manage) open_tree_menu(menu, ui->treeview);
}

void dlg_dept::slot_dept_to_add() {
    if (!ui->treeview->currentIndex().isValid()) return;
    dlg_dept_add dialog(this, mode_add);
    connect(&dialog, &dlg_dept_add::signal_dept_do_add, this, &dlg_dept::slot_dept_do_add);
    dialog.exec();
}

void dlg_dept::slot_dept_do_add(struct_dept dept) {
    model_dept(ui->treeview).do_add(dept);
}

void dlg_dept::slot_dept_to_edit() {
    if (!ui->treeview->currentIndex().isValid()) return;
    const tree_node node = current_node(ui->treeview);
    struct_dept dept;
    dept.id = node.id;
    dept.name = node.name;
    dept.parent = node.parent;
    dlg_dept_add dialog(this, mode_edit);
    connect(this, &dlg_dept::signal_dept_to_edit, &dialog, &dlg_dept_add::slot_dept_to_edit);
    connect(&dialog, &dlg_dept_add::signal_dept_do_edit, this, &dlg_dept::slot_dept_do_edit);
    dialog.setWindowTitle(QStringLiteral("编辑部门"));
    emit signal_dept_to_edit(dept);
    dialog.exec();
}

void dlg_dept::slot_dept_do_edit(struct_dept dept) {
    model_dept(ui->treeview).do_edit(dept);
}

void dlg_dept::slot_dept_to_delete() {
    // Looked at before the question: when the focus comes back, a tree without a current node gets one.
    const QString id = current_node(ui->treeview).id;
    if (confirm_delete(this)) model_dept(ui->treeview).do_delete(id);
}

void dlg_dept::on_treeview_doubleClicked(QModelIndex) {
    if (mode == mode_manage) return;
    const tree_node node = current_node(ui->treeview);
    struct_dept dept;
    dept.id = node.id;
    dept.name = node.name;
    emit signal_dept_selected(dept);
    accept();
}

void dlg_dept::on_btn_close_clicked() {
    close();
}
