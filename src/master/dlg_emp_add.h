#pragma once
#include <QDialog>
#include <memory>

#include "model/struct_emp.h"

namespace Ui {
class dlg_emp_add;
}

/**
 * Edits one employee, new or known, and asks the service whether his numbers are free. Who opened it saves;
 * the dialog closes whatever comes of that.
 */
class dlg_emp_add : public QDialog {
    Q_OBJECT

public:
    /** `mode`: 0 add, 1 edit; any other one checks the fields and closes. `emp`: empty for a new one. */
    dlg_emp_add(QWidget* parent, int mode, struct_emp emp);
    ~dlg_emp_add() override;

signals:
    void signal_emp_do_add(struct_emp emp);
    void signal_emp_do_edit(struct_emp emp);

public slots:
    void on_btn_cancel_clicked();
    void on_btn_save_clicked();

private:
    void show_fields();
    void read_fields();
    bool check_fields();
    bool check_unique();

    std::unique_ptr<Ui::dlg_emp_add> ui;
    int mode;
    struct_emp emp;
};
