#pragma once
#include <QDialog>
#include <QPoint>
#include <QPrinter>
#include <QString>
#include <QTextDocument>
#include <memory>

#include "documents/call_flow.h"
#include "model/document_kinds.h"
#include "model/struct_company.h"
#include "model/struct_dept.h"
#include "model/struct_emp.h"
#include "model/struct_instore.h"
#include "widgets/context_menu.h"

class QTableWidgetItem;
namespace Ui {
class dlg_instore_add;
}

/**
 * Writes a new inbound document, or shows a saved one. Until "保存" a new document is nothing but text in
 * this dialog; what leaves it otherwise, Escape and the close box included, drops it without a word. A saved
 * one cannot be changed.
 */
class dlg_instore_add : public QDialog {
    Q_OBJECT

public:
    /** `mode`: 0 new, 1 edit (no control leads there), 5 view. `type`: the kind. */
    dlg_instore_add(QWidget* parent, int mode, int type);
    ~dlg_instore_add() override;

    void reject() override;

signals:
    /** A document was saved. */
    void signal_instore_get_list();
    void signal_instore_detail_to_edit(struct_instore_detail detail);
    void signal_enable_add(bool boolean);
    void signal_enable_delete(bool boolean);
    /** Never emitted. */
    void signal_enable_print(bool boolean);

public slots:
    /** Shows a saved document and makes its print. */
    void slot_instore_to_edit(struct_instore instore);
    void slot_company_selected(struct_company company);
    void slot_emp_selected(struct_emp operater);
    void slot_dept_selected(struct_dept dept);
    void on_btn_add_clicked();
    void on_btn_cancel_clicked();
    void on_btn_submit_clicked();
    void slot_instore_detail_to_add();
    void slot_instore_detail_to_delete();
    void slot_instore_detail_do_add(struct_instore_detail detail);
    /** Edits the current line; nothing is connected to it. */
    void slot_instore_detail_to_edit();
    void slot_instore_detail_do_edit(struct_instore_detail detail);
    void on_btn_delete_clicked();
    void slot_set_window_title(QString title);
    void on_tablewidget_itemEntered(QTableWidgetItem* item);
    void on_btn_print_clicked();
    void slot_print();
    void on_tablewidget_customContextMenuRequested(QPoint pos);

protected:
    /** A press of the left button on a field to pick opens its picker, while a document is written and no
     * calls are under way. */
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    void apply_mode();
    bool lacks_something();
    void save();
    QString save_header();
    void save_line(const struct_instore_detail& line);
    struct_instore_detail line_at(int row) const;

    std::unique_ptr<Ui::dlg_instore_add> ui;
    int mode;
    int type;
    const document_kind& kind;
    /** Its kind is 0 until a save. */
    struct_instore instore{};
    context_menu menu;
    QPrinter printer;
    QTextDocument document;
    QString print_text;
    call_flow calls;
};
