#pragma once
#include "gui/stock_fixture.h"
#include "stock/tab_stock_detail.h"

/** A stock tab with three rows in it. */
class stock_tab : public list_tab_test<tab_stock_detail, stock_test> {
protected:
    void open() {
        open_with({"search"});
        server.forget();
    }
    void open_with(const std::vector<const char*>& rights) {
        grant("stock_detail", rights);
        server.always("wms_stock_detail/get_page", stock_page(1, 3));
        show(std::make_unique<tab_stock_detail>(nullptr));
    }
};
