#pragma once
#include "gui/product_fixture.h"
#include "master/tab_product.h"

/** A product tab with three products in it. */
class product_tab : public product_test {
protected:
    void open() {
        grant("product", {"search", "add", "edit", "delete"});
        open_with_rights_as_they_are();
        server.forget();
    }
    void open_with_rights_as_they_are() {
        server.always("wms_product/get_page", page_of(3));
        tab = std::make_unique<tab_product>(nullptr);
        tab->show();
        table = child<QTableWidget>(tab.get(), "tablewidget");
    }

    std::unique_ptr<tab_product> tab;
    QTableWidget* table = nullptr;
};
