#pragma once
#include <QDialog>
#include <QString>
#include <limits>
#include <memory>

#include "documents/call_flow.h"
#include "model/struct_stock.h"
#include "model/struct_stock_allot_detail.h"

namespace Ui {
class dlg_stock_allot_detail_add;
}

/** Writes one line of a transfer: a quantity of one stock row of the source warehouse, and where it will lie
 * at the destination. */
class dlg_stock_allot_detail_add : public QDialog {
    Q_OBJECT

public:
    /** `mode`: 0 add, 1 edit (nothing opens it). */
    dlg_stock_allot_detail_add(QWidget* parent, int mode);
    ~dlg_stock_allot_detail_add() override;

signals:
    void signal_stock_allot_detail_do_add(struct_stock_allot_detail detail);
    void signal_stock_allot_detail_do_edit(struct_stock_allot_detail detail);

public slots:
    /** Nothing leads here. */
    void slot_stock_allot_detail_to_edit(struct_stock_allot_detail detail);
    /** Proposes the whole quantity of the row, its price, its place and its own total. */
    void slot_stock_selected(struct_stock stock);
    /** The picker shows the stock of this warehouse alone. */
    void slot_set_warehouse_out(QString warehouse_id);
    void on_btn_cancel_clicked();
    void on_btn_save_clicked();
    /** Nothing happens while no stock row is picked. */
    void on_txt_amount_textChanged(QString arg1);
    void on_txt_price_textChanged(QString arg1);

protected:
    /** A press of the left button on the product opens the stock picker. */
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    void show_total(int amount, double price);
    bool lacks_something();
    void read_fields();

    std::unique_ptr<Ui::dlg_stock_allot_detail_add> ui;
    int mode;
    struct_stock_allot_detail detail;
    QString warehouse_out;
    /** No more than this can be taken from the stock row; unbounded for a line whose row is not known. */
    int maximum = std::numeric_limits<int>::max();
    /** The line is handed over, which takes as long as its claim. */
    call_flow calls;
};
