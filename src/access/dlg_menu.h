#pragma once
#include <QDialog>
#include <memory>

#include "model/struct_menu.h"
#include "widgets/context_menu.h"

namespace Ui {
class dlg_menu;
}

/** Administration of the menu table: the navigation's rows and the rights under them. */
class dlg_menu : public QDialog {
    Q_OBJECT

public:
    explicit dlg_menu(QWidget* parent = nullptr);
    ~dlg_menu() override;

signals:
    void signal_menu_to_edit(struct_menu menu);

public slots:
    /** Adds under the current row. */
    void slot_menu_do_add(struct_menu menu);
    void slot_menu_do_edit(struct_menu menu);
    void slot_right_menu();
    void slot_menu_to_edit();
    void slot_menu_to_add();
    void slot_menu_to_delete();
    void on_btn_close_clicked();
    void on_btn_reload_clicked();

private:
    std::unique_ptr<Ui::dlg_menu> ui;
    context_menu menu;
};
