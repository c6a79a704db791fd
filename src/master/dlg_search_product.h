#pragma once
#include <QDialog>
#include <QModelIndex>
#include <memory>

#include "model/struct_product.h"

class paging;
namespace Ui {
class dlg_search_product;
}

/** Picks a product, by double click alone. The caller sets the title. */
class dlg_search_product : public QDialog {
    Q_OBJECT

public:
    explicit dlg_search_product(QWidget* parent);
    ~dlg_search_product() override;

signals:
    /** The whole record of the row but its add time. */
    void signal_product_selected(struct_product product);
    void signal_send_args(QString args);

public slots:
    void on_btn_close_clicked();
    /** The current row is taken, whatever the index. */
    void on_tablewidget_doubleClicked(QModelIndex index);

protected:
    /** Return and Enter search; every other key ends here, Escape included. */
    void keyPressEvent(QKeyEvent* event) override;

private:
    void search();

    std::unique_ptr<Ui::dlg_search_product> ui;
    paging* page_bar;
};
