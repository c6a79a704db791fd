#pragma once
#include <QDialog>
#include <QPrinter>
#include <QString>
#include <QTextDocument>
#include <memory>

#include "documents/call_flow.h"
#include "model/model_stock_allot_detail.h"
#include "model/model_stock_detail.h"
#include "model/struct_emp.h"
#include "model/struct_stock_allot.h"
#include "widgets/context_menu.h"

class QTableWidgetItem;
namespace Ui {
class dlg_stock_allot_add;
}

/**
 * Writes a transfer, or shows a saved one. A line has a claim on its stock row from the moment it is
 * accepted; the claim goes over to the service with the save and is given back when the line or the transfer
 * is abandoned.
 */
class dlg_stock_allot_add : public QDialog {
    Q_OBJECT

public:
    /** `mode`: 0 new, 1 edit (nothing opens it), 5 view. */
    dlg_stock_allot_add(QWidget* parent, int mode);
    ~dlg_stock_allot_add() override;

signals:
    /** Never emitted. */
    void signal_stock_allot_add_row(struct_stock_allot stock_allot);
    /** Never emitted. */
    void signal_stock_allot_detail_to_edit(struct_stock_allot_detail detail);
    /** A transfer was saved: the list is out of date. */
    void signal_stock_allot_get_list();
    /** The warehouse whose stock the next line takes from. */
    void signal_set_warehouse_out(QString warehouse_id);
    void signal_enable_add(bool boolean);
    void signal_enable_delete(bool boolean);
    /** Never emitted. */
    void signal_enable_print(bool boolean);

public slots:
    /** Makes the user who is logged in the writer, without a name. */
    void slot_set_current_user();
    /** Shows a saved transfer with its lines. */
    void slot_stock_allot_to_edit(struct_stock_allot stock_allot);
    /** Takes a line and claims its quantity. */
    void slot_stock_allot_detail_do_add(struct_stock_allot_detail detail);
    /** Does nothing: a line is deleted and written anew. */
    void slot_stock_allot_detail_do_edit(struct_stock_allot_detail detail);
    void slot_right_menu();
    void slot_stock_allot_detail_to_add();
    /** Does nothing. */
    void slot_stock_allot_detail_to_edit();
    void slot_stock_allot_detail_to_delete();
    /** Abandons a new transfer, its claims first. */
    void on_btn_cancel_clicked();
    void on_btn_submit_clicked();
    void on_tablewidget_itemEntered(QTableWidgetItem* item);
    void slot_emp_selected(struct_emp operater);
    void on_btn_print_clicked();
    void slot_print();

protected:
    /** The close box does what the button to close does. */
    void closeEvent(QCloseEvent* event) override;
    /** Escape leaves like the close box. */
    void keyPressEvent(QKeyEvent* event) override;
    /** A press of the left button on the operator opens the picker while no calls are under way. */
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    void apply_mode();
    void write_new();
    void view_saved();
    bool lacks_something(const QString& warehouse_out, const QString& warehouse_in);
    void save();
    QString save_header();

    std::unique_ptr<Ui::dlg_stock_allot_add> ui;
    int mode;
    struct_stock_allot stock_allot;
    model_stock_detail stock_detail;
    model_stock_allot_detail lines;
    context_menu menu;
    call_flow calls;
    QPrinter printer;
    QTextDocument document;
    /** What is printed; empty until a saved transfer is shown. */
    QString print_text;
};
