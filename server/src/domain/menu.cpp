#include "domain/menu.h"

#include <functional>
#include <map>
#include <utility>

#include "store/records/menu.h"

namespace tavrok::domain {

const std::array<page, 26> g_pages{{
    {"instore_purchase", "采购进货入库"},
    {"instore_production", "生产完成入库"},
    {"instore_sale_return", "销售退货入库"},
    {"instore_receive_return", "领用退回入库"},
    {"instore_borrow_return", "货品借入入库"},
    {"instore_lend_return", "借出返还入库"},
    {"instore_other", "其他入库"},
    {"outstore_purchase_return", "采购退货出库"},
    {"outstore_sale_take", "销售取货出库"},
    {"outstore_receive", "领用出库"},
    {"outstore_lend", "借出出库"},
    {"outstore_borrow_return", "还货出库"},
    {"outstore_other", "其他出库"},
    {"stock_summary", "库存汇总"},
    {"stock_detail", "库存明细"},
    {"stock_taking", "库存盘点"},
    {"stock_allot", "库存调拨"},
    {"prodcate", "货品类别管理"},
    {"product", "货品管理"},
    {"company_supplier", "供应商单位"},
    {"company_client", "客户单位"},
    {"company_other", "其他单位"},
    {"warehouse", "仓库管理"},
    {"dept", "部门管理"},
    {"emp", "员工管理"},
    {"user", "用户管理"},
}};

namespace {

using rows_by_parent = std::multimap<std::int64_t, store::menu_record>;

/** Takes the rows that `wanted` lets through; what stands below one that it does not let through goes with
 * it. */
std::vector<menu_node> below(const rows_by_parent& rows, std::int64_t parent,
                             const std::function<bool(const store::menu_record&)>& wanted) {
    std::vector<menu_node> nodes;
    const auto [first, last] = rows.equal_range(parent);
    for (auto at = first; at != last; ++at) {
        const auto& one = at->second;
        if (!wanted(one)) continue;
        nodes.push_back({one.id, one.name, one.action, std::to_string(one.real_level), one.sort,
                         static_cast<int>(one.shown), below(rows, one.id, wanted)});
    }
    return nodes;
}

std::vector<menu_node> tree(store::connection& with,
                            const std::function<bool(const store::menu_record&)>& wanted) {
    rows_by_parent rows; // keeps siblings in the order in which they come
    store::each_menu_row(with, [&](const store::menu_record& one) { rows.emplace(one.parent, one); });
    return below(rows, 0, wanted);
}

} // namespace

std::vector<menu_node> whole_menu(store::connection& with) {
    return tree(with, [](const store::menu_record&) { return true; });
}

std::vector<menu_node> visible_menu(store::connection& with, const principal& who) {
    return tree(with, [&](const store::menu_record& one) {
        return one.shown == 1 && (who.administrator || who.menu_rows.contains(one.id));
    });
}

} // namespace tavrok::domain
