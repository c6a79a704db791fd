#pragma once
#include <QDialog>
#include <QPoint>
#include <QPrinter>
#include <QString>
#include <QTextDocument>
#include <memory>

#include "documents/call_flow.h"
#include "model/document_kinds.h"
#include "model/model_stock_detail.h"
#include "model/struct_company.h"
#include "model/struct_dept.h"
#include "model/struct_emp.h"
#include "model/struct_outstore.h"
#include "widgets/context_menu.h"

class QTableWidgetItem;
namespace Ui {
class dlg_outstore_add;
}

/**
 * Writes an outbound document, or shows a saved one. A line has a claim on its stock row from the moment it
 * is accepted; the claim goes over to the service with the save and is given back when the line or the
 * document is abandoned.
 */
class dlg_outstore_add : public QDialog {
    Q_OBJECT

public:
    /** `mode`: 0 new, 1 edit (nothing opens it), 5 view; `type` is the kind. */
    dlg_outstore_add(QWidget* parent, int mode, int type);
    ~dlg_outstore_add() override;

signals:
    /** A document was saved: the list is out of date. */
    void signal_outstore_get_list();
    void signal_outstore_detail_to_edit(struct_outstore_detail detail);
    void signal_enable_add(bool boolean);
    void signal_enable_delete(bool boolean);
    /** Never emitted. */
    void signal_enable_print(bool boolean);

public slots:
    /** Shows a saved document with its lines. */
    void slot_outstore_to_edit(struct_outstore outstore);
    void slot_company_selected(struct_company client);
    void slot_emp_selected(struct_emp operater);
    void slot_dept_selected(struct_dept dept);
    void on_btn_add_clicked();
    void on_btn_cancel_clicked();
    void on_btn_submit_clicked();
    void slot_outstore_detail_to_add();
    void slot_outstore_detail_to_delete();
    /** Takes a line and claims its quantity. */
    void slot_outstore_detail_do_add(struct_outstore_detail detail);
    /** Nothing leads here. */
    void slot_outstore_detail_to_edit();
    /** Rewrites the current row; its id, document and claim stay. */
    void slot_outstore_detail_do_edit(struct_outstore_detail detail);
    void on_btn_delete_clicked();
    void slot_set_window_title(QString title);
    void on_tablewidget_itemEntered(QTableWidgetItem* item);
    void on_btn_print_clicked();
    void slot_print();
    void on_tablewidget_customContextMenuRequested(QPoint pos);

protected:
    /** The close box abandons the document. */
    void closeEvent(QCloseEvent* event) override;
    /** Escape leaves like the close box. */
    void keyPressEvent(QKeyEvent* event) override;
    /** A press of the left button on a picker field opens its picker, while the document is written
     * and no calls are under way. */
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    void apply_mode();
    bool lacks_something();
    void save();
    QString save_header();
    void give_claims_back();

    std::unique_ptr<Ui::dlg_outstore_add> ui;
    int mode;
    int type;
    const document_kind& kind;
    /** Its type is unset until the document is saved. */
    struct_outstore outstore{};
    model_stock_detail stock_detail;
    context_menu menu;
    call_flow calls;
    QPrinter printer;
    QTextDocument document;
    /** What is printed; empty until a saved document is shown. */
    QString print_text;
};
