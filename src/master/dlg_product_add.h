#pragma once
#include <QDialog>
#include <memory>

#include "model/struct_prodcate.h"
#include "model/struct_product.h"

namespace Ui {
class dlg_product_add;
}

/** Edits one product, new or known. Who opened it saves; the dialog closes whatever comes of that. */
class dlg_product_add : public QDialog {
    Q_OBJECT

public:
    /** `mode`: 0 add, 1 edit; any other one checks the fields and closes. */
    dlg_product_add(QWidget* parent, int mode);
    ~dlg_product_add() override;

signals:
    /** Never emitted. */
    void signal_product_list();
    void signal_product_do_add(struct_product product);
    void signal_product_do_edit(struct_product product);

public slots:
    /** Takes the product to edit and makes this the dialog of an edit. */
    void slot_product_to_edit(struct_product product);
    void slot_prodcate_selected(struct_prodcate prodcate);
    void on_btn_cancel_clicked();
    void on_btn_submit_clicked();

protected:
    /** A press of the left button on the category opens the tree of categories. */
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    std::unique_ptr<Ui::dlg_product_add> ui;
    int mode;
    /** Holds the id of the category, of which the field shows the name alone. */
    struct_product product;
};
