#pragma once
#include <QModelIndex>
#include <QPrinter>
#include <QString>
#include <QTextDocument>
#include <QWidget>
#include <memory>

#include "model/struct_emp.h"
#include "model/struct_stock_taking.h"
#include "model/struct_user.h"
#include "widgets/context_menu.h"

class QTableWidgetItem;
class paging;
namespace Ui {
class tab_stock_taking;
}

/** The list of the stocktakings. A saved one can be viewed, deleted and printed. */
class tab_stock_taking : public QWidget {
    Q_OBJECT

public:
    explicit tab_stock_taking(QWidget* parent);
    ~tab_stock_taking() override;

signals:
    /** A new document is opened: it takes the user who is logged in for its writer. */
    void signal_set_current_user();
    void signal_stock_taking_to_edit(struct_stock_taking stock_taking);
    void signal_send_args(QString args);
    void signal_enable_search(bool boolean);
    void signal_enable_add(bool boolean);
    void signal_enable_view(bool boolean);
    void signal_enable_delete(bool boolean);
    void signal_enable_print(bool boolean);

public slots:
    void slot_taking_to_add();
    /** Nothing in the interface leads here: the way in for editing saved documents. */
    void slot_taking_to_edit();
    void slot_taking_to_delete();
    void slot_right_menu();
    void slot_taking_to_view();
    /** Nothing in the interface leads here: the way in for auditing. */
    void slot_taking_to_audit();
    /** Views the document, whether the user has the right to view or not. */
    void on_tablewidget_doubleClicked(QModelIndex index);
    void on_tablewidget_itemEntered(QTableWidgetItem* item);
    void on_btn_search_clicked();
    /** Whether the fields that are picked open their pickers. */
    void slot_text_filter(bool boolean);
    void on_btn_print_clicked();
    /** Prints the page of the list that was loaded last. */
    void slot_print();
    // A criterion for the next search. An empty record lifts the restriction.
    void slot_emp_selected(struct_emp operater);
    void slot_writer_selected(struct_user writer);
    /** Searches. */
    void slot_stock_taking_get_list();

protected:
    /** A left press on a field that is picked opens its picker. */
    bool eventFilter(QObject* object, QEvent* event) override;
    /** Return and Enter search; every other key ends here. */
    void keyPressEvent(QKeyEvent* event) override;

private:
    void enable_by_rights();
    struct_stock_taking current_record() const;
    void open_current(int mode);

    std::unique_ptr<Ui::tab_stock_taking> ui;
    struct_stock_taking search;
    paging* page_bar;
    context_menu menu;
    QPrinter printer;
    QTextDocument document;
};
