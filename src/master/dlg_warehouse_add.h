#pragma once
#include <QDialog>
#include <memory>

#include "model/struct_emp.h"
#include "model/struct_warehouse.h"

namespace Ui {
class dlg_warehouse_add;
}

/** Edits one warehouse, new or known. Who opened it saves; the dialog closes whatever comes of that. */
class dlg_warehouse_add : public QDialog {
    Q_OBJECT

public:
    /** `mode`: 0 add, 1 edit; any other one checks the fields and closes. */
    dlg_warehouse_add(QWidget* parent, int mode);
    ~dlg_warehouse_add() override;

signals:
    /** Never emitted. */
    void signal_warehouse_list();
    /** Never emitted. */
    void signal_keeper_selected(struct_emp operater);
    void signal_warehouse_do_add(struct_warehouse warehouse);
    void signal_warehouse_do_edit(struct_warehouse warehouse);

public slots:
    void on_btn_cancel_clicked();
    void on_btn_save_clicked();
    /** Takes the warehouse to edit. */
    void slot_warehouse_to_edit(struct_warehouse warehouse);
    /** Takes the keeper. */
    void slot_emp_selected(struct_emp emp);

protected:
    /** A left press on the keeper opens the picker. */
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    void read_fields();
    bool check_fields();

    std::unique_ptr<Ui::dlg_warehouse_add> ui;
    int mode;
    struct_warehouse warehouse;
};
