#pragma once
#include <QDialog>
#include <memory>

#include "model/struct_menu.h"

namespace Ui {
class dlg_menu_add;
}

/**
 * Edits one row of the menu table, new or known: name and action come from a template of usual rights or are
 * typed. Nothing is checked. Who opened it saves.
 */
class dlg_menu_add : public QDialog {
    Q_OBJECT

public:
    /** `mode`: 0 add, 1 edit. */
    dlg_menu_add(QWidget* parent, int mode);
    ~dlg_menu_add() override;

signals:
    void signal_menu_do_add(struct_menu menu);
    void signal_menu_do_edit(struct_menu menu);

public slots:
    /** Takes the row to edit. */
    void slot_menu_to_edit(struct_menu menu);
    void on_btn_submit_clicked();
    void on_btn_close_clicked();
    void on_radio_template_clicked();
    void on_radio_custom_clicked();

private:
    void show_custom_fields(bool shown);

    std::unique_ptr<Ui::dlg_menu_add> ui;
    int mode;
    struct_menu menu;
};
