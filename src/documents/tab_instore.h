#pragma once
#include <QPrinter>
#include <QString>
#include <QTextDocument>
#include <QWidget>
#include <memory>

#include "model/struct_company.h"
#include "model/struct_dept.h"
#include "model/struct_emp.h"
#include "model/struct_instore.h"
#include "model/struct_user.h"
#include "widgets/context_menu.h"

class QTableWidgetItem;
class paging;
struct document_kind;
namespace Ui {
class tab_instore;
}

/** The list of the inbound documents of one kind. A saved document can be viewed, deleted and printed. */
class tab_instore : public QWidget {
    Q_OBJECT

public:
    tab_instore(QWidget* parent, int type);
    ~tab_instore() override;

signals:
    void signal_instore_to_edit(struct_instore instore);
    void signal_send_args(QString args);
    void signal_enable_search(bool boolean);
    void signal_enable_add(bool boolean);
    void signal_enable_view(bool boolean);
    void signal_enable_delete(bool boolean);
    void signal_enable_print(bool boolean);
    void signal_set_window_title(QString title);

public slots:
    void slot_right_menu();
    void slot_instore_to_add();
    /** Nothing in the interface leads here: the way in for editing saved documents. */
    void slot_instore_to_edit();
    void slot_instore_to_delete();
    void slot_instore_to_view();
    void on_btn_search_clicked();
    void on_btn_delete_clicked();
    /** Views the document, whether the user has the right to view or not. */
    void on_tablewidget_cellDoubleClicked(int row, int column);
    void on_tablewidget_itemEntered(QTableWidgetItem* item);
    /** Whether the fields that are picked open their pickers. */
    void slot_text_filter(bool boolean);
    void on_btn_print_clicked();
    /** Prints the page of the list that was loaded last. */
    void slot_print();
    // A criterion for the next search. An empty record lifts the restriction.
    void slot_company_selected(struct_company company);
    void slot_operater_selected(struct_emp operater);
    void slot_writer_selected(struct_user writer);
    void slot_instore_get_list();
    void slot_dept_selected(struct_dept dept);

protected:
    /** A left press on a field that is picked opens its picker. */
    bool eventFilter(QObject* object, QEvent* event) override;
    /** Return and Enter search; every other key ends here. */
    void keyPressEvent(QKeyEvent* event) override;

private:
    void enable_by_rights();
    struct_instore current_record() const;
    void open_current(int mode);

    std::unique_ptr<Ui::tab_instore> ui;
    const document_kind& kind;
    /** What is searched for; what the pickers gave is kept here alone. */
    struct_instore search;
    paging* page_bar;
    context_menu menu;
    QPrinter printer;
    QTextDocument document;
};
