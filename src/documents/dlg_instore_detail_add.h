#pragma once
#include <QDialog>
#include <QString>
#include <memory>

#include "model/struct_instore_detail.h"
#include "model/struct_product.h"

namespace Ui {
class dlg_instore_detail_add;
}

/** Writes one line of an inbound document, new or known. Who opened it takes the line. */
class dlg_instore_detail_add : public QDialog {
    Q_OBJECT

public:
    /** `mode`: 0 add, 1 edit. */
    dlg_instore_detail_add(QWidget* parent, int mode);
    ~dlg_instore_detail_add() override;

signals:
    void signal_instore_detail_do_add(struct_instore_detail detail);
    void signal_instore_detail_do_edit(struct_instore_detail detail);

public slots:
    void slot_product_selected(struct_product product);
    /** Takes the line to edit. */
    void slot_instore_detail_to_edit(struct_instore_detail detail);
    void on_btn_cancel_clicked();
    void on_btn_save_clicked();
    void on_txt_amount_textChanged(QString arg1);
    void on_txt_price_textChanged(QString arg1);

protected:
    /** A press of the left button on the product opens its picker. */
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    void show_total();
    bool lacks_something();
    void read_fields();

    std::unique_ptr<Ui::dlg_instore_detail_add> ui;
    int mode;
    struct_instore_detail detail;
};
