#pragma once
#include <QDialog>
#include <QString>
#include <memory>

#include "documents/call_flow.h"
#include "model/struct_stock.h"
#include "model/struct_stock_taking_detail.h"

namespace Ui {
class dlg_stock_taking_detail_add;
}

/** Writes one line of a stocktaking: what was counted of one stock row. */
class dlg_stock_taking_detail_add : public QDialog {
    Q_OBJECT

public:
    /** `mode`: 0 add; nothing opens 1, edit. */
    dlg_stock_taking_detail_add(QWidget* parent, int mode);
    ~dlg_stock_taking_detail_add() override;

signals:
    void signal_stock_taking_detail_do_add(struct_stock_taking_detail detail);
    /** Never emitted. */
    void signal_stock_taking_detail_do_edit(struct_stock_taking_detail detail);

public slots:
    void slot_stock_taking_detail_to_edit(struct_stock_taking_detail detail);
    /** Begins the line anew, with no difference. */
    void slot_stock_selected(struct_stock stock);
    void on_btn_cancel_clicked();
    void on_txt_real_amount_textChanged(QString arg1);
    void on_txt_price_textChanged(QString arg1);
    /** In an edit the line is taken and nothing more happens. */
    void on_btn_submit_clicked();

protected:
    /** A press of the left button on the product opens the stock picker. */
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    void show_stock_row();
    void show_profitloss();
    bool lacks_something();
    void read_fields();

    std::unique_ptr<Ui::dlg_stock_taking_detail_add> ui;
    int mode;
    struct_stock_taking_detail detail;
    /** The line is handed over, which takes as long as its claim. */
    call_flow calls;
};
