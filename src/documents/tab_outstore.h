#pragma once
#include <QModelIndex>
#include <QPrinter>
#include <QString>
#include <QTextDocument>
#include <QWidget>
#include <memory>

#include "model/struct_company.h"
#include "model/struct_dept.h"
#include "model/struct_emp.h"
#include "model/struct_outstore.h"
#include "model/struct_user.h"
#include "widgets/context_menu.h"

class QTableWidgetItem;
class paging;
struct document_kind;
namespace Ui {
class tab_outstore;
}

/** The list of the outbound documents of one kind. A saved document can be viewed, deleted and printed. */
class tab_outstore : public QWidget {
    Q_OBJECT

public:
    tab_outstore(QWidget* parent, int type);
    ~tab_outstore() override;

signals:
    void signal_outstore_to_edit(struct_outstore outstore);
    void signal_send_args(QString args);
    void signal_enable_search(bool boolean);
    void signal_enable_add(bool boolean);
    void signal_enable_view(bool boolean);
    void signal_enable_delete(bool boolean);
    void signal_enable_print(bool boolean);
    void signal_set_window_title(QString title);

public slots:
    /** Searches. */
    void slot_outstore_get_list();
    // A criterion for the next search. An empty record lifts the restriction.
    /** Shown alone: no search is narrowed by a department. */
    void slot_dept_selected(struct_dept dept);
    void slot_emp_selected(struct_emp operater);
    void slot_writer_selected(struct_user writer);
    void slot_company_selected(struct_company company);
    void slot_right_menu();
    void slot_outstore_to_add();
    /** Nothing in the interface leads here: the way in for editing saved documents. */
    void slot_outstore_to_edit();
    void slot_outstore_to_delete();
    void slot_outstore_to_view();
    /** Views the document, whether the user has the right to view or not. */
    void on_tablewidget_doubleClicked(QModelIndex index);
    void on_tablewidget_itemEntered(QTableWidgetItem* item);
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
    void read_current_row();
    void open_current(int mode);

    std::unique_ptr<Ui::tab_outstore> ui;
    const document_kind& kind;
    /** What is searched for and the row that was opened last, in one record: opening a row changes what the
     * next search is narrowed by, while the fields keep their texts. */
    struct_outstore outstore;
    paging* page_bar;
    context_menu menu;
    QPrinter printer;
    QTextDocument document;
};
