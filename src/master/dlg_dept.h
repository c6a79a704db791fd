#pragma once
#include <QDialog>
#include <QModelIndex>
#include <QPoint>
#include <memory>

#include "model/struct_dept.h"
#include "widgets/context_menu.h"

namespace Ui {
class dlg_dept;
}

/** The tree of departments: a page of the main window, or a picker that anybody may use. */
class dlg_dept : public QDialog {
    Q_OBJECT

public:
    /** `mode`: 1 management, 3 picking. */
    dlg_dept(QWidget* parent, int mode);
    ~dlg_dept() override;

    /** A page of the main window stays where it is: Escape closes windows alone. */
    void reject() override;

signals:
    void signal_dept_to_edit(struct_dept dept);
    /** Only `id` and `name` mean anything; the root is a choice too, with the id "0". */
    void signal_dept_selected(struct_dept dept);
    void signal_enable_search(bool boolean);
    void signal_enable_add(bool boolean);
    void signal_enable_edit(bool boolean);
    /** Never emitted. */
    void signal_enable_view(bool boolean);
    void signal_enable_delete(bool boolean);

public slots:
    void slot_dept_do_add(struct_dept dept);
    void slot_dept_do_edit(struct_dept dept);
    void slot_dept_to_add();
    void slot_dept_to_edit();
    void slot_dept_to_delete();
    /** Takes the current node, whatever the index. */
    void on_treeview_doubleClicked(QModelIndex _index);
    void on_btn_close_clicked();
    void on_treeview_customContextMenuRequested(QPoint pos);

private:
    void load_tree();
    void enable_by_rights();

    std::unique_ptr<Ui::dlg_dept> ui;
    int mode;
    context_menu menu;
};
