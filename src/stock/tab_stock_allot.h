#pragma once
#include <QModelIndex>
#include <QPrinter>
#include <QTextDocument>
#include <QWidget>
#include <memory>

#include "model/struct_emp.h"
#include "model/struct_stock_allot.h"
#include "model/struct_user.h"
#include "widgets/context_menu.h"

class QTableWidgetItem;
class paging;
namespace Ui {
class tab_stock_allot;
}

/** The list of the transfers. A saved transfer can be viewed, deleted and printed. */
class tab_stock_allot : public QWidget {
    Q_OBJECT

public:
    explicit tab_stock_allot(QWidget* parent);
    ~tab_stock_allot() override;

signals:
    void signal_set_current_user();
    void signal_stock_allot_to_edit(struct_stock_allot stock_allot);
    void signal_send_args(QString args);
    void signal_enable_search(bool boolean);
    void signal_enable_add(bool boolean);
    void signal_enable_view(bool boolean);
    void signal_enable_delete(bool boolean);
    void signal_enable_print(bool boolean);

public slots:
    // A criterion for the next search. An empty record lifts the restriction.
    void slot_emp_selected(struct_emp operater);
    void slot_writer_selected(struct_user writer);
    /** Searches. */
    void slot_stock_allot_get_list();
    void slot_right_menu();
    void slot_stock_allot_to_add();
    void slot_stock_allot_to_view();
    /** Nothing in the interface leads here. */
    void slot_stock_allot_to_edit();
    void slot_stock_allot_to_delete();
    /** Views the transfer, whether the user has the right to view or not. */
    void on_tablewidget_doubleClicked(QModelIndex index);
    void on_tablewidget_itemEntered(QTableWidgetItem* item);
    /** The button is wired by this name alone: one click, one search. */
    void on_btn_search_clicked();
    /** Whether the fields that are picked open their pickers. */
    void slot_text_filter(bool boolean);
    void on_btn_print_clicked();
    /** Prints the page of the list that was loaded last. */
    void slot_print();

protected:
    /** A left press on a field that is picked opens its picker. */
    bool eventFilter(QObject* object, QEvent* event) override;
    /** Return and Enter search; every other key ends here. */
    void keyPressEvent(QKeyEvent* event) override;

private:
    void enable_by_rights();
    void open_current(int mode);

    std::unique_ptr<Ui::tab_stock_allot> ui;
    /** What is searched for. */
    struct_stock_allot search;
    paging* page_bar;
    context_menu menu;
    QPrinter printer;
    QTextDocument document;
};
