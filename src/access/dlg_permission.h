#pragma once
#include <QDialog>
#include <memory>

#include "model/struct_user.h"

class QTreeWidgetItem;
namespace Ui {
class dlg_permission;
}

/** The grants of one user as check marks on the menu tree; each click is saved at once, so there is no OK. */
class dlg_permission : public QDialog {
    Q_OBJECT

public:
    dlg_permission(QWidget* parent, struct_user user);
    ~dlg_permission() override;

public slots:
    /** A click on a check mark: saves it, then what it means for the rows below and above. */
    void on_treewidget_itemChanged(QTreeWidgetItem* item, int column);
    void on_btn_close_clicked();

private:
    std::unique_ptr<Ui::dlg_permission> ui;
    struct_user user;
};
