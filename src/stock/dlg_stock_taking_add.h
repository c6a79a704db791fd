#pragma once
#include <QDialog>
#include <QPrinter>
#include <QString>
#include <QTextDocument>
#include <memory>

#include "documents/call_flow.h"
#include "model/model_stock_detail.h"
#include "model/model_stock_taking.h"
#include "model/struct_emp.h"
#include "model/struct_stock_taking.h"
#include "widgets/context_menu.h"

class QTableWidgetItem;
namespace Ui {
class dlg_stock_taking_add;
}

/**
 * Writes a stocktaking, or shows a saved one. A line has a claim on its whole stock row from the moment it is
 * accepted; the claim goes over to the service with the save and is given back when the line or the document
 * is abandoned.
 */
class dlg_stock_taking_add : public QDialog {
    Q_OBJECT

public:
    /** `mode`: 0 new, 5 view; nothing opens 1, edit, and 6, audit. */
    dlg_stock_taking_add(QWidget* parent, int mode);
    ~dlg_stock_taking_add() override;

signals:
    /** A document was saved: the list is out of date. */
    void signal_stock_taking_get_list();
    void signal_stock_taking_detail_to_edit(struct_stock_taking_detail detail);
    void signal_enable_add(bool boolean);
    void signal_enable_delete(bool boolean);
    /** Never emitted. */
    void signal_enable_print(bool boolean);

public slots:
    /** Makes the user who is logged in the writer of the document. */
    void slot_set_current_user();
    /** Shows a saved document with its lines. */
    void slot_stock_taking_to_edit(struct_stock_taking stock_taking);
    void slot_emp_selected(struct_emp operater);
    /** Rewrites the current row; its claim stays. */
    void slot_stock_taking_detail_do_edit(struct_stock_taking_detail detail);
    /** Takes a line and claims its stock row. */
    void slot_stock_taking_detail_do_add(struct_stock_taking_detail detail);
    void on_btn_cancel_clicked();
    void slot_right_menu();
    void slot_stock_taking_detail_to_add();
    /** Nothing leads here. */
    void slot_stock_taking_detail_to_edit();
    void slot_stock_taking_detail_to_delete();
    void on_btn_add_clicked();
    void on_btn_delete_clicked();
    void on_btn_submit_clicked();
    /** Asks, and closes the window: the service hears nothing of it. */
    void on_btn_audit_clicked();
    void on_tablewidget_itemEntered(QTableWidgetItem* item);
    void on_btn_print_clicked();
    void slot_print();

protected:
    /** The close box abandons the document. */
    void closeEvent(QCloseEvent* event) override;
    /** Escape leaves like the close box. */
    void keyPressEvent(QKeyEvent* event) override;
    /** A press of the left button on the operator opens the picker, while the document is written and no
     * calls are under way. */
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    void apply_mode();
    bool lacks_something();
    void save();
    QString save_header();
    void give_claims_back();

    std::unique_ptr<Ui::dlg_stock_taking_add> ui;
    int mode;
    struct_stock_taking stock_taking;
    context_menu menu;
    model_stock_detail stock_detail;
    model_stock_taking model;
    call_flow calls;
    QPrinter printer;
    QTextDocument document;
    /** What is printed; empty until a saved document is shown. */
    QString print_text;
};
