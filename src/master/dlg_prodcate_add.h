#pragma once
#include <QDialog>
#include <memory>

#include "model/struct_prodcate.h"

namespace Ui {
class dlg_prodcate_add;
}

/** Names one category, new or known. Who opened it saves; the dialog closes whatever comes of that. */
class dlg_prodcate_add : public QDialog {
    Q_OBJECT

public:
    /** `mode`: 0 add, 1 edit; any other one checks the name and closes. */
    dlg_prodcate_add(QWidget* parent, int mode);
    ~dlg_prodcate_add() override;

signals:
    void signal_prodcate_do_add(struct_prodcate prodcate);
    void signal_prodcate_do_edit(struct_prodcate prodcate);

public slots:
    /** Takes the category to edit. */
    void slot_prodcate_to_edit(struct_prodcate prodcate);
    void on_btn_save_clicked();
    void on_btn_close_clicked();

private:
    std::unique_ptr<Ui::dlg_prodcate_add> ui;
    int mode;
    struct_prodcate prodcate;
};
