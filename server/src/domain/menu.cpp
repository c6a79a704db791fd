#include "domain/menu.h"

#include <functional>
#include <map>
#include <set>
#include <span>
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

using right_list = std::span<const std::string_view>;
// The rights that the service was made with, by kind of page.
constexpr std::array<std::string_view, 8> g_document_rights{
    "search", "add", "view", "delete", "print", "detail_add", "detail_delete", "detail_print"};
constexpr std::array<std::string_view, 4> g_tree_rights{"search", "add_child", "edit", "delete"};
constexpr std::array<std::string_view, 4> g_list_rights{"search", "add", "edit", "delete"};
constexpr std::array<std::string_view, 2> g_summary_rights{"search", "print"};
constexpr std::array<std::string_view, 1> g_search_alone{"search"};

right_list rights_of(std::string_view page) {
    if (page == "stock_summary") return g_summary_rights;
    if (page == "stock_detail" || page == "user") return g_search_alone;
    if (page == "prodcate" || page == "dept") return g_tree_rights;
    const bool moves =
        page.starts_with("instore_") || page.starts_with("outstore_") || page.starts_with("stock_");
    return moves ? right_list(g_document_rights) : right_list(g_list_rights);
}

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

std::vector<std::pair<std::string, std::string>> missing_rights(store::connection& with) {
    std::map<std::int64_t, std::string> pages;
    std::map<std::string, std::set<std::string>, std::less<>> there;
    std::vector<store::menu_record> rights;
    store::each_menu_row(with, [&](const store::menu_record& one) {
        if (one.id > g_last_own_menu_row) return;
        if (one.real_level == 1) {
            pages.emplace(one.id, one.action);
            there[one.action];
        }
        if (one.real_level == 2) rights.push_back(one);
    });
    for (const auto& one : rights) {
        const auto page = pages.find(one.parent);
        if (page != pages.end()) there[page->second].insert(one.action);
    }
    std::vector<std::pair<std::string, std::string>> missing;
    for (const auto& one : g_pages) {
        const auto found = there.find(one.key);
        if (found == there.end()) continue;
        for (const auto right : rights_of(one.key)) {
            const std::string name(right);
            if (!found->second.contains(name)) missing.emplace_back(found->first, name);
        }
    }
    return missing;
}

std::vector<menu_node> whole_menu(store::connection& with) {
    return tree(with, [](const store::menu_record&) { return true; });
}

std::vector<menu_node> visible_menu(store::connection& with, const principal& who) {
    return tree(with, [&](const store::menu_record& one) {
        return one.shown == 1 && (who.administrator || who.menu_rows.contains(one.id));
    });
}

} // namespace tavrok::domain
