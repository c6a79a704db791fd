#include "app/navigation.h"

#include <algorithm>

#include "access/tab_user.h"
#include "documents/tab_instore.h"
#include "documents/tab_outstore.h"
#include "master/dlg_dept.h"
#include "master/dlg_prodcate.h"
#include "master/tab_company.h"
#include "master/tab_emp.h"
#include "master/tab_product.h"
#include "master/tab_warehouse.h"
#include "stock/tab_stock_allot.h"
#include "stock/tab_stock_detail.h"
#include "stock/tab_stock_summary.h"
#include "stock/tab_stock_taking.h"

namespace {

/** How a screen is made, by the name of its class. A screen that is not here cannot be opened. */
struct screen_row {
    QString screen;
    QWidget* (*make)(QWidget* parent, int kind);
};

template <class screen>
QWidget* make_with_kind(QWidget* parent, int kind) {
    return new screen(parent, kind);
}

template <class screen>
QWidget* make_plain(QWidget* parent, int) {
    return new screen(parent);
}

const std::vector<screen_row>& screen_rows() {
    static const std::vector<screen_row> rows{
        {QStringLiteral("dlg_dept"), make_with_kind<dlg_dept>},
        {QStringLiteral("dlg_prodcate"), make_with_kind<dlg_prodcate>},
        {QStringLiteral("tab_company"), make_with_kind<tab_company>},
        {QStringLiteral("tab_product"), make_plain<tab_product>},
        {QStringLiteral("tab_emp"), make_plain<tab_emp>},
        {QStringLiteral("tab_warehouse"), make_plain<tab_warehouse>},
        {QStringLiteral("tab_user"), make_plain<tab_user>},
        {QStringLiteral("tab_stock_allot"), make_plain<tab_stock_allot>},
        {QStringLiteral("tab_stock_detail"), make_plain<tab_stock_detail>},
        {QStringLiteral("tab_stock_summary"), make_plain<tab_stock_summary>},
        {QStringLiteral("tab_stock_taking"), make_plain<tab_stock_taking>},
        {QStringLiteral("tab_instore"), make_with_kind<tab_instore>},
        {QStringLiteral("tab_outstore"), make_with_kind<tab_outstore>},
    };
    return rows;
}

} // namespace

const std::vector<navigation_row>& navigation_rows() {
    static const QString tab_instore = QStringLiteral("tab_instore");
    static const QString tab_outstore = QStringLiteral("tab_outstore");
    static const QString tab_company = QStringLiteral("tab_company");
    static const std::vector<navigation_row> rows{
        {QStringLiteral("instore_purchase"), tab_instore, 1, QStringLiteral("采购进货入库")},
        {QStringLiteral("instore_production"), tab_instore, 2, QStringLiteral("生产完成入库")},
        {QStringLiteral("instore_sale_return"), tab_instore, 3, QStringLiteral("销售退货入库")},
        {QStringLiteral("instore_receive_return"), tab_instore, 4, QStringLiteral("领用退回入库")},
        {QStringLiteral("instore_borrow_return"), tab_instore, 5, QStringLiteral("货品借入入库")},
        {QStringLiteral("instore_lend_return"), tab_instore, 6, QStringLiteral("借出返还入库")},
        {QStringLiteral("instore_other"), tab_instore, 7, QStringLiteral("其他入库")},
        {QStringLiteral("outstore_purchase_return"), tab_outstore, 1, QStringLiteral("采购退货出库")},
        {QStringLiteral("outstore_sale_take"), tab_outstore, 2, QStringLiteral("销售取货出库")},
        {QStringLiteral("outstore_receive"), tab_outstore, 3, QStringLiteral("领用出库")},
        {QStringLiteral("outstore_lend"), tab_outstore, 4, QStringLiteral("借出出库")},
        {QStringLiteral("outstore_borrow_return"), tab_outstore, 5, QStringLiteral("还货出库")},
        {QStringLiteral("outstore_other"), tab_outstore, 6, QStringLiteral("其他出库")},
        {QStringLiteral("prodcate"), QStringLiteral("dlg_prodcate"), 1, QStringLiteral("货品类别管理")},
        {QStringLiteral("product"), QStringLiteral("tab_product"), 0, QStringLiteral("货品管理")},
        {QStringLiteral("company_supplier"), tab_company, 1, QStringLiteral("供应商单位")},
        {QStringLiteral("company_client"), tab_company, 2, QStringLiteral("客户单位")},
        {QStringLiteral("company_other"), tab_company, 3, QStringLiteral("其他单位")},
        {QStringLiteral("warehouse"), QStringLiteral("tab_warehouse"), 0, QStringLiteral("仓库管理")},
        {QStringLiteral("dept"), QStringLiteral("dlg_dept"), 1, QStringLiteral("部门管理")},
        {QStringLiteral("emp"), QStringLiteral("tab_emp"), 0, QStringLiteral("员工管理")},
        {QStringLiteral("stock_summary"), QStringLiteral("tab_stock_summary"), 0, QStringLiteral("库存汇总")},
        {QStringLiteral("stock_detail"), QStringLiteral("tab_stock_detail"), 0, QStringLiteral("库存明细")},
        {QStringLiteral("stock_taking"), QStringLiteral("tab_stock_taking"), 0, QStringLiteral("库存盘点")},
        {QStringLiteral("stock_allot"), QStringLiteral("tab_stock_allot"), 0, QStringLiteral("库存调拨")},
        {QStringLiteral("user"), QStringLiteral("tab_user"), 0, QStringLiteral("用户管理")},
    };
    return rows;
}

const navigation_row* find_navigation_row(const QString& key) {
    const auto& rows = navigation_rows();
    const auto found =
        std::find_if(rows.begin(), rows.end(), [&key](const navigation_row& row) { return row.key == key; });
    return found == rows.end() ? nullptr : &*found;
}

QWidget* make_screen(const navigation_row& row, QWidget* parent) {
    const auto& screens = screen_rows();
    const auto found = std::find_if(screens.begin(), screens.end(),
                                    [&row](const screen_row& screen) { return screen.screen == row.screen; });
    return found == screens.end() ? nullptr : found->make(parent, row.kind);
}
