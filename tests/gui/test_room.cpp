#include <QRadioButton>
#include <memory>

#include "access/dlg_menu.h"
#include "access/dlg_menu_add.h"
#include "access/dlg_permission.h"
#include "documents/dlg_instore_add.h"
#include "documents/dlg_instore_detail_add.h"
#include "documents/dlg_search_stock.h"
#include "documents/tab_instore.h"
#include "documents/tab_outstore.h"
#include "gui/list_fixture.h"
#include "master/dlg_company_add.h"
#include "master/dlg_dept.h"
#include "master/dlg_dept_add.h"
#include "master/dlg_emp_add.h"
#include "master/dlg_prodcate.h"
#include "master/dlg_prodcate_add.h"
#include "master/dlg_product_add.h"
#include "master/dlg_search_company.h"
#include "master/dlg_search_emp.h"
#include "master/dlg_search_product.h"
#include "master/dlg_warehouse_add.h"
#include "master/tab_company.h"
#include "master/tab_emp.h"
#include "master/tab_product.h"
#include "master/tab_warehouse.h"
#include "stock/dlg_stock_allot_add.h"
#include "stock/dlg_stock_allot_detail_add.h"
#include "stock/dlg_stock_taking_add.h"
#include "stock/dlg_stock_taking_detail_add.h"
#include "stock/tab_stock_allot.h"
#include "stock/tab_stock_detail.h"
#include "stock/tab_stock_summary.h"
#include "stock/tab_stock_taking.h"

// That every part of a screen has the room that it needs with the style sheet that the program has. (The
// screens of accounts are looked at where they are tested.)

namespace {

struct made_screen {
    const char* name;
    QWidget* (*make)();
};

/** A screen made from numbers, such as a mode. */
template <class screen, int... numbers>
QWidget* make() {
    return new screen(nullptr, numbers...);
}

QWidget* make_custom_menu_row() {
    auto* dialog = new dlg_menu_add(nullptr, 0);
    child<QRadioButton>(dialog, "radio_custom")->click();
    return dialog;
}

const made_screen made_screens[] = {
    {"dlg_menu", make<dlg_menu>},
    {"dlg_menu_add", make<dlg_menu_add, 0>},
    {"dlg_menu_add_custom", make_custom_menu_row},
    {"dlg_permission", []() -> QWidget* { return new dlg_permission(nullptr, struct_user()); }},
    {"dlg_company_add", make<dlg_company_add, 0, 1>},
    {"dlg_dept_page", make<dlg_dept, 1>},
    {"dlg_dept_picker", make<dlg_dept, 3>},
    {"dlg_dept_add", make<dlg_dept_add, 0>},
    {"dlg_emp_add", []() -> QWidget* { return new dlg_emp_add(nullptr, 0, struct_emp()); }},
    {"dlg_instore_new_supplier", make<dlg_instore_add, 0, 1>},
    {"dlg_instore_new_department", make<dlg_instore_add, 0, 2>},
    {"dlg_instore_edit", make<dlg_instore_add, 1, 5>},
    {"dlg_instore_view_department", make<dlg_instore_add, 5, 4>},
    {"dlg_instore_view_other", make<dlg_instore_add, 5, 7>},
    {"dlg_instore_detail_add", make<dlg_instore_detail_add, 0>},
    {"dlg_prodcate_page", make<dlg_prodcate, 1>},
    {"dlg_prodcate_picker", make<dlg_prodcate, 3>},
    {"dlg_prodcate_add", make<dlg_prodcate_add, 0>},
    {"dlg_product_add", make<dlg_product_add, 0>},
    {"dlg_search_company", make<dlg_search_company, 1, 3>},
    {"dlg_search_emp", make<dlg_search_emp>},
    {"dlg_search_product", make<dlg_search_product>},
    {"dlg_warehouse_add", make<dlg_warehouse_add, 0>},
    {"tab_company", make<tab_company, 1>},
    {"tab_emp", make<tab_emp>},
    {"tab_instore", make<tab_instore, 5>},
    {"tab_outstore", make<tab_outstore, 4>},
    {"tab_product", make<tab_product>},
    {"tab_warehouse", make<tab_warehouse>},
    {"dlg_search_stock", []() -> QWidget* { return new dlg_search_stock(nullptr, QString()); }},
    {"dlg_stock_allot_new", make<dlg_stock_allot_add, 0>},
    {"dlg_stock_allot_edit", make<dlg_stock_allot_add, 1>},
    {"dlg_stock_allot_view", make<dlg_stock_allot_add, 5>},
    {"dlg_stock_allot_detail_add", make<dlg_stock_allot_detail_add, 0>},
    {"tab_stock_allot", make<tab_stock_allot>},
    {"tab_stock_detail", make<tab_stock_detail>},
    {"tab_stock_summary", make<tab_stock_summary>},
    {"tab_stock_taking", make<tab_stock_taking>},
    {"dlg_stock_taking_new", make<dlg_stock_taking_add, 0>},
    {"dlg_stock_taking_edit", make<dlg_stock_taking_add, 1>},
    {"dlg_stock_taking_view", make<dlg_stock_taking_add, 5>},
    {"dlg_stock_taking_detail_add", make<dlg_stock_taking_detail_add, 0>}};

} // namespace

class room : public list_test, public testing::WithParamInterface<made_screen> {
protected:
    room() {
        for (const char* page :
             {"company_other", "dept", "emp", "prodcate", "product", "warehouse", "stock_detail",
              "instore_borrow_return", "outstore_lend", "stock_allot", "stock_summary", "stock_taking"})
            grant(page, {"search", "add", "add_child", "edit", "delete", "view", "print", "detail_add",
                         "detail_print"});
        for (const char* path : {"wms_dept/get_dept", "wms_prodcate/get_prodcate"})
            server.always(path, R"([{"id":"1","name":"甲","child":[{"id":"2","name":"乙"}]}])");
        for (const char* path : {"wms_menu/get_menu", "wms_permission/get_permission"})
            server.always(path, R"([{"id":"1","name":"甲","action":"a","real_level":"1","child":[]}])");
    }
};

TEST_P(room, is_there_with_the_style_sheet) {
    const std::unique_ptr<QWidget> screen(GetParam().make());
    expect_fits_with_the_style_sheet(screen.get());
}

INSTANTIATE_TEST_SUITE_P(screens, room, testing::ValuesIn(made_screens),
                         [](const auto& p) { return std::string(p.param.name); });
