#pragma once
#include <QDialog>
#include <QModelIndex>
#include <QPoint>
#include <memory>

#include "model/struct_stock.h"
#include "widgets/context_menu.h"

class QTableWidgetItem;
class paging;
namespace Ui {
class dlg_search_stock;
}

/** Picks a stock row, by double click alone. The caller sets the title. */
class dlg_search_stock : public QDialog {
    Q_OBJECT

public:
    /** With an empty `warehouse` the user chooses one; else only stock of that one is listed. */
    dlg_search_stock(QWidget* parent, QString warehouse);
    ~dlg_search_stock() override;

signals:
    /** The whole record of the row but its time. */
    void signal_stock_selected(struct_stock stock);
    void signal_send_args(QString args);

public slots:
    void on_btn_close_clicked();
    /** The current row is taken, whatever the index. */
    void on_tablewidget_doubleClicked(QModelIndex index);
    void on_tablewidget_itemEntered(QTableWidgetItem* item);
    void on_btn_search_clicked();
    void on_tablewidget_customContextMenuRequested(QPoint pos);

protected:
    /** Return and Enter search; every other key ends here, Escape too. */
    void keyPressEvent(QKeyEvent* event) override;

private:
    std::unique_ptr<Ui::dlg_search_stock> ui;
    struct_stock search;
    const bool fixed_warehouse;
    paging* page_bar;
    context_menu menu;
};
