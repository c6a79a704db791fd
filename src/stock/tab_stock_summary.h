#pragma once
#include <QPrinter>
#include <QTextDocument>
#include <QWidget>
#include <memory>

#include "widgets/context_menu.h"

class QTableWidgetItem;
class paging;
namespace Ui {
class tab_stock_summary;
}

/** The stock summed up by product, to be read and printed. */
class tab_stock_summary : public QWidget {
    Q_OBJECT

public:
    explicit tab_stock_summary(QWidget* parent);
    ~tab_stock_summary() override;

signals:
    void signal_send_args(QString args);
    void signal_enable_search(bool boolean);
    /** Never emitted. */
    void signal_enable_print(bool boolean);

public slots:
    void slot_right_menu();
    void on_tablewidget_itemEntered(QTableWidgetItem* item);
    void on_btn_search_clicked();
    /** Prints the page that is shown. */
    void slot_print();
    void on_btn_print_clicked();

protected:
    /** Return and Enter search; every other key ends here. */
    void keyPressEvent(QKeyEvent* event) override;

private:
    void enable_by_rights();

    std::unique_ptr<Ui::tab_stock_summary> ui;
    context_menu menu;
    paging* page_bar;
    /** Keeps the user's choice of a printer as long as the tab is open. */
    QPrinter printer;
    QTextDocument document;
};
