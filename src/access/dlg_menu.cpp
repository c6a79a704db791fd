#include "access/dlg_menu.h"

#include <QCursor>
#include <QPersistentModelIndex>

#include "access/dlg_menu_add.h"
#include "model/model_menu.h"
#include "ui_dlg_menu.h"
#include "widgets/modes.h"
#include "widgets/selection.h"

namespace {

constexpr int mode_administration = 1;

QTreeWidgetItem* item_at(const QTreeWidget* tree, const QModelIndex& index) {
    if (!index.isValid()) return nullptr;
    const QTreeWidgetItem* parent = item_at(tree, index.parent());
    return parent == nullptr ? tree->topLevelItem(index.row()) : parent->child(index.row());
}

/** The current row, followed over a request: what is handled meanwhile may load the tree anew. */
class current_row {
public:
    explicit current_row(const QTreeWidget* in) : tree(in), index(in->currentIndex()) {}

    /** Null when there is none, or no longer. */
    QTreeWidgetItem* item() const { return item_at(tree, index); }
    struct_menu record() const { return model_menu::read_row(item()); }

private:
    const QTreeWidget* tree;
    QPersistentModelIndex index;
};

} // namespace

dlg_menu::dlg_menu(QWidget* parent)
    : QDialog(parent, Qt::Dialog | Qt::WindowCloseButtonHint), ui(std::make_unique<Ui::dlg_menu>()) {
    ui->setupUi(this);
    menu = make_context_menu<dlg_menu>(this, ui->treewidget,
                                       {{QStringLiteral("添加子操作"), &dlg_menu::slot_menu_to_add},
                                        {QStringLiteral("编辑"), &dlg_menu::slot_menu_to_edit},
                                        {QStringLiteral("删除"), &dlg_menu::slot_menu_to_delete}});
    connect(ui->treewidget, &QWidget::customContextMenuRequested, this, &dlg_menu::slot_right_menu,
            Qt::UniqueConnection);
    on_btn_reload_clicked();
}

dlg_menu::~dlg_menu() = default;

void dlg_menu::on_btn_reload_clicked() {
    model_menu(nullptr, ui->treewidget, mode_administration).get_menu();
}

void dlg_menu::on_btn_close_clicked() {
    close();
}

void dlg_menu::slot_right_menu() {
    menu.menu->popup(QCursor::pos());
}

void dlg_menu::slot_menu_to_add() {
    if (ui->treewidget->currentItem() == nullptr) return;
    dlg_menu_add dialog(this, mode_add);
    dialog.setWindowTitle(QStringLiteral("添加子操作"));
    connect(&dialog, &dlg_menu_add::signal_menu_do_add, this, &dlg_menu::slot_menu_do_add);
    dialog.exec();
}

void dlg_menu::slot_menu_do_add(struct_menu added) {
    const current_row above(ui->treewidget);
    if (above.item() == nullptr) return;
    added.parent = above.record().id;
    // The answer is the id, whatever it reads.
    added.id = model_menu(nullptr, ui->treewidget, mode_administration).do_add(added);
    if (added.id.isEmpty() || above.item() == nullptr) return;
    model_menu::write_row(new QTreeWidgetItem(above.item()), added);
}

void dlg_menu::slot_menu_to_edit() {
    if (ui->treewidget->currentItem() == nullptr) return;
    dlg_menu_add dialog(this, mode_edit);
    dialog.setWindowTitle(QStringLiteral("编辑"));
    connect(this, &dlg_menu::signal_menu_to_edit, &dialog, &dlg_menu_add::slot_menu_to_edit);
    connect(&dialog, &dlg_menu_add::signal_menu_do_edit, this, &dlg_menu::slot_menu_do_edit);
    emit signal_menu_to_edit(current_row(ui->treewidget).record());
    dialog.exec();
}

void dlg_menu::slot_menu_do_edit(struct_menu edited) {
    const current_row row(ui->treewidget);
    if (row.item() == nullptr) return;
    const int changed = model_menu(nullptr, ui->treewidget, mode_administration).do_edit(edited);
    if (changed > 0 && row.item() != nullptr) model_menu::write_row(row.item(), edited);
}

void dlg_menu::slot_menu_to_delete() {
    // Taken before the question: when the focus comes back, a tree without a current row gets one.
    const current_row row(ui->treewidget);
    if (!confirm_delete(this) || row.item() == nullptr) return;
    if (model_menu(nullptr, ui->treewidget, mode_administration).do_delete(row.record().id))
        delete row.item();
}
