#pragma once
#include <QDialog>
#include <memory>

#include "model/model_user.h"

namespace Ui {
class dlg_user_add;
}

/** Edits one account, new or known. Who opened it saves; the dialog closes whatever comes of that. */
class dlg_user_add : public QDialog {
    Q_OBJECT

public:
    /** `mode`: 0 add, 1 edit. */
    dlg_user_add(QWidget* parent, int mode);
    ~dlg_user_add() override;

signals:
    void signal_user_do_add(struct_user user);
    void signal_user_do_edit(struct_user user);

public slots:
    void on_btn_cancel_clicked();
    void on_btn_submit_clicked();
    /** Takes the account to edit. An administrator cannot be disabled. */
    void slot_user_to_edit(struct_user user);

private:
    void read_fields();
    bool check_fields();
    bool check_unique();

    std::unique_ptr<Ui::dlg_user_add> ui;
    int mode;
    model_user accounts;
    struct_user user;
};
