#pragma once
#include <QDialog>
#include <memory>

#include "model/struct_dept.h"

namespace Ui {
class dlg_dept_add;
}

/** Names one department, new or known. Who opened it saves; the dialog closes whatever comes of that. */
class dlg_dept_add : public QDialog {
    Q_OBJECT

public:
    /** `mode`: 0 add, 1 edit; any other one checks the name and closes. */
    dlg_dept_add(QWidget* parent, int mode);
    ~dlg_dept_add() override;

signals:
    void signal_dept_do_add(struct_dept dept);
    void signal_dept_do_edit(struct_dept dept);

public slots:
    /** Takes the department to edit. */
    void slot_dept_to_edit(struct_dept dept);
    void on_btn_save_clicked();
    void on_btn_close_clicked();

private:
    std::unique_ptr<Ui::dlg_dept_add> ui;
    int mode;
    struct_dept dept;
};
