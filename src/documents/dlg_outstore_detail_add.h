#pragma once
#include <QDialog>
#include <QString>
#include <memory>

#include "documents/call_flow.h"
#include "model/struct_outstore_detail.h"
#include "model/struct_stock.h"

namespace Ui {
class dlg_outstore_detail_add;
}

/** Writes one line of an outbound document: a quantity of one stock row, at a price of its own. */
class dlg_outstore_detail_add : public QDialog {
    Q_OBJECT

public:
    /** `mode`: 0 add, 1 edit. */
    dlg_outstore_detail_add(QWidget* parent, int mode);
    ~dlg_outstore_detail_add() override;

signals:
    void signal_outstore_detail_do_add(struct_outstore_detail detail);
    void signal_outstore_detail_do_edit(struct_outstore_detail detail);

public slots:
    void on_btn_cancel_clicked();
    void on_btn_save_clicked();
    /** Nothing happens while no stock row is picked. */
    void on_txt_amount_textChanged(QString arg1);
    void on_txt_price_textChanged(QString arg1);
    /** Proposes the whole quantity of the row. */
    void slot_stock_selected(struct_stock stock);
    /** Does nothing: a line is not edited, and starts anew from a stock row. */
    void slot_outstore_detail_to_edit(struct_outstore_detail detail);

protected:
    /** A press of the left button on the product opens the stock picker. */
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    void show_total(int amount, double price);
    bool lacks_something();
    void read_fields();

    std::unique_ptr<Ui::dlg_outstore_detail_add> ui;
    int mode;
    struct_outstore_detail detail;
    /** No more than this can be taken from the stock row. */
    int maximum = 0;
    /** The line is handed over, which takes as long as its claim. */
    call_flow calls;
};
