#pragma once
#include <QPrinter>
#include <QTextDocument>
#include <QWidget>
#include <memory>

#include "widgets/context_menu.h"

class QTableWidgetItem;
class paging;
namespace Ui {
class tab_stock_detail;
}

/** The list of the stock rows, to be read and printed. */
class tab_stock_detail : public QWidget {
    Q_OBJECT

public:
    explicit tab_stock_detail(QWidget* parent);
    ~tab_stock_detail() override;

signals:
    void signal_send_args(QString args);
    void signal_enable_search(bool boolean);

public slots:
    void slot_right_menu();
    void on_tablewidget_itemEntered(QTableWidgetItem* item);
    void on_btn_search_clicked();
    void on_btn_print_clicked();
    /** Prints the page that is shown. */
    void slot_print();

protected:
    /** Return and Enter search; every other key ends here. */
    void keyPressEvent(QKeyEvent* event) override;

private:
    void enable_by_rights();

    std::unique_ptr<Ui::tab_stock_detail> ui;
    paging* page_bar;
    context_menu menu;
    /** Keeps the user's choice of a printer as long as the tab is open. */
    QPrinter printer;
    QTextDocument document;
};
