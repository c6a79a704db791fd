#pragma once
#include <QDialog>
#include <memory>

#include "model/struct_company.h"

namespace Ui {
class dlg_company_add;
}

/** Edits one trading partner, new or known. Who opened it saves; the dialog closes whatever comes of that. */
class dlg_company_add : public QDialog {
    Q_OBJECT

public:
    /** `mode`: 0 add, 1 edit; any other one checks the fields and closes. `type`: kind of a new partner. */
    dlg_company_add(QWidget* parent, int mode, int type);
    ~dlg_company_add() override;

signals:
    /** Never emitted. */
    void signal_company_list();
    void signal_company_do_add(struct_company company);
    void signal_company_do_edit(struct_company company);

public slots:
    /** Takes the partner to edit, kind included. */
    void slot_company_to_edit(struct_company company);
    void on_btn_cancel_clicked();
    void on_btn_save_clicked();

private:
    void read_fields();
    bool check_fields();

    std::unique_ptr<Ui::dlg_company_add> ui;
    int mode;
    struct_company company;
};
