#pragma once
#include <QPoint>
#include <QString>
#include <QWidget>
#include <memory>

#include "model/struct_prodcate.h"
#include "model/struct_product.h"
#include "widgets/context_menu.h"

class paging;
namespace Ui {
class tab_product;
}

/** The list of products. */
class tab_product : public QWidget {
    Q_OBJECT

public:
    explicit tab_product(QWidget* parent);
    ~tab_product() override;

signals:
    void signal_send_args(QString args);
    void signal_enable_search(bool boolean);
    void signal_enable_add(bool boolean);
    void signal_enable_edit(bool boolean);
    /** Never emitted. */
    void signal_enable_view(bool boolean);
    void signal_enable_delete(bool boolean);
    void signal_product_to_edit(struct_product product);

public slots:
    void slot_product_to_add();
    void slot_product_to_edit();
    void slot_product_to_delete();
    void slot_product_do_add(struct_product product);
    void slot_product_do_edit(struct_product product);
    /** Takes a category for the next search; does not search. */
    void slot_prodcate_selected(struct_prodcate prodcate);
    void on_btn_search_clicked();
    void on_tablewidget_customContextMenuRequested(QPoint pos);

protected:
    /** A press of the left button on the category opens the tree of categories. */
    bool eventFilter(QObject* object, QEvent* event) override;
    /** Return and Enter search; every other key ends here. */
    void keyPressEvent(QKeyEvent* event) override;

private:
    void enable_by_rights();

    std::unique_ptr<Ui::tab_product> ui;
    /** The search words; the category is kept here alone. */
    struct_product search;
    paging* page_bar;
    context_menu menu;
};
