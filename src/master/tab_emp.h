#pragma once
#include <QString>
#include <QWidget>
#include <memory>

#include "model/struct_emp.h"
#include "widgets/context_menu.h"

class QTableWidgetItem;
class paging;
namespace Ui {
class tab_emp;
}

/** The list of the employees. */
class tab_emp : public QWidget {
    Q_OBJECT

public:
    explicit tab_emp(QWidget* parent);
    ~tab_emp() override;

signals:
    void signal_send_args(QString args);
    void signal_enable_search(bool boolean);
    void signal_enable_add(bool boolean);
    void signal_enable_edit(bool boolean);
    /** Never emitted. */
    void signal_enable_view(bool boolean);
    void signal_enable_delete(bool boolean);

public slots:
    void slot_emp_do_add(struct_emp emp);
    void slot_emp_do_edit(struct_emp emp);
    void slot_emp_to_add();
    void slot_emp_to_edit();
    void slot_emp_to_delete();
    void slot_right_menu();
    void on_btn_search_clicked();
    /** A cell under the pointer shows its whole text as a tool tip. */
    void on_tablewidget_itemEntered(QTableWidgetItem* item);

protected:
    /** Return and Enter search; every other key ends here. */
    void keyPressEvent(QKeyEvent* event) override;

private:
    void enable_by_rights();

    std::unique_ptr<Ui::tab_emp> ui;
    struct_emp search;
    paging* page_bar;
    context_menu menu;
};
