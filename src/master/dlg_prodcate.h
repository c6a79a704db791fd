#pragma once
#include <QDialog>
#include <QPoint>
#include <memory>

#include "model/struct_prodcate.h"
#include "widgets/context_menu.h"

namespace Ui {
class dlg_prodcate;
}

/**
 * The tree of product categories: a page of the main window, or a picker. The rights on the page govern the
 * pickers too: without the search right they are grey and empty.
 */
class dlg_prodcate : public QDialog {
    Q_OBJECT

public:
    /** `mode`: 1 management, 3 choosing a category to assign, 4 choosing a filter. */
    dlg_prodcate(QWidget* parent, int mode);
    ~dlg_prodcate() override;

    /** A page of the main window stays where it is: Escape closes windows alone. */
    void reject() override;

signals:
    /** Only `id` and `name` mean anything; the root is a choice too, with the id "0". */
    void signal_prodcate_selected(struct_prodcate prodcate);
    void signal_prodcate_to_edit(struct_prodcate prodcate);
    void signal_enable_search(bool boolean);
    void signal_enable_add(bool boolean);
    void signal_enable_edit(bool boolean);
    void signal_enable_delete(bool boolean);

public slots:
    void on_btn_ok_clicked();
    void slot_prodcate_to_edit();
    void slot_prodcate_to_add();
    void slot_prodcate_to_delete();
    void on_treeview_customContextMenuRequested(QPoint pos);
    void slot_prodcate_do_add(struct_prodcate prodcate);
    void slot_prodcate_do_edit(struct_prodcate prodcate);
    /** Hands the current node over. */
    void slot_prodcate_selected();

private:
    void load_tree();

    std::unique_ptr<Ui::dlg_prodcate> ui;
    int mode;
    context_menu menu;
};
