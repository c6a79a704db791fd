#pragma once
#include <QString>
#include <QWidget>
#include <memory>

#include "model/struct_emp.h"
#include "model/struct_warehouse.h"
#include "widgets/context_menu.h"

class paging;
namespace Ui {
class tab_warehouse;
}

/** The list of the warehouses. */
class tab_warehouse : public QWidget {
    Q_OBJECT

public:
    explicit tab_warehouse(QWidget* parent);
    ~tab_warehouse() override;

signals:
    void signal_send_args(QString args);
    void signal_enable_search(bool boolean);
    void signal_enable_add(bool boolean);
    void signal_enable_edit(bool boolean);
    void signal_enable_delete(bool boolean);
    void signal_warehouse_to_edit(struct_warehouse warehouse);

public slots:
    void slot_warehouse_do_add(struct_warehouse warehouse);
    void slot_right_menu();
    void slot_warehouse_to_add();
    void slot_warehouse_to_edit();
    void slot_warehouse_to_delete();
    void slot_warehouse_do_edit(struct_warehouse warehouse);
    /** The keeper to search for; an empty one lifts the restriction. */
    void slot_emp_selected(struct_emp emp);
    void on_btn_search_clicked();

protected:
    /** A left press on the keeper opens the picker. */
    bool eventFilter(QObject* object, QEvent* event) override;
    /** Return and Enter search; every other key ends here. */
    void keyPressEvent(QKeyEvent* event) override;

private:
    void enable_by_rights();

    std::unique_ptr<Ui::tab_warehouse> ui;
    struct_warehouse search;
    paging* page_bar;
    context_menu menu;
};
