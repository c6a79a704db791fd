#include "model/document_kinds.h"

#include <algorithm>

namespace {

const document_kind& find(const std::vector<document_kind>& kinds, int type) {
    static const document_kind no_kind;
    const auto found = std::find_if(kinds.begin(), kinds.end(),
                                    [type](const document_kind& kind) { return kind.type == type; });
    return found == kinds.end() ? no_kind : *found;
}

} // namespace

// Kind 4 goes by the title of kind 2: every department picker of inbound documents has that one title.
const std::vector<document_kind>& inbound_kinds() {
    static const std::vector<document_kind> kinds{
        {1, QStringLiteral("instore_purchase"), counterparty::company, QStringLiteral("供应商"),
         QStringLiteral("供应商"), 1, QStringLiteral("查询选择供应商"), QStringLiteral("请选择供应商"),
         QStringLiteral("采购进货入库")},
        {2, QStringLiteral("instore_production"), counterparty::dept, QStringLiteral("生产部门"),
         QStringLiteral("生产部门"), 0, QStringLiteral("选择生产部门"), QStringLiteral("请选择生产部门"),
         QStringLiteral("生产完成入库")},
        {3, QStringLiteral("instore_sale_return"), counterparty::company, QStringLiteral("客户"),
         QStringLiteral("客户"), 2, QStringLiteral("查询选择客户"), QStringLiteral("请选择客户"),
         QStringLiteral("销售退货入库")},
        {4, QStringLiteral("instore_receive_return"), counterparty::dept, QStringLiteral("领用部门"),
         QStringLiteral("领用部门"), 0, QStringLiteral("选择生产部门"), QStringLiteral("请选择领用部门"),
         QStringLiteral("领用退回入库")},
        {5, QStringLiteral("instore_borrow_return"), counterparty::company, QStringLiteral("对方单位"),
         QStringLiteral("借入单位"), 4, QStringLiteral("查询选择借入单位"), QStringLiteral("请选择借入单位"),
         QStringLiteral("货品借入入库")},
        {6, QStringLiteral("instore_lend_return"), counterparty::company, QStringLiteral("对方单位"),
         QStringLiteral("借出单位"), 4, QStringLiteral("查询选择借出单位"), QStringLiteral("请选择借出单位"),
         QStringLiteral("借出返还入库")},
        {7, QStringLiteral("instore_other"), counterparty::none, QString(), QString(), 0, QString(),
         QString(), QStringLiteral("其他入库")},
    };
    return kinds;
}

const std::vector<document_kind>& outbound_kinds() {
    static const std::vector<document_kind> kinds{
        {1, QStringLiteral("outstore_purchase_return"), counterparty::company, QStringLiteral("供应商"),
         QStringLiteral("供应商"), 1, QStringLiteral("查询选择供应商"), QStringLiteral("请选择供应商"),
         QStringLiteral("采购退货出库")},
        {2, QStringLiteral("outstore_sale_take"), counterparty::company, QStringLiteral("客户"),
         QStringLiteral("客户"), 2, QStringLiteral("查询选择客户"), QStringLiteral("请选择客户"),
         QStringLiteral("销售取货出库")},
        {3, QStringLiteral("outstore_receive"), counterparty::dept, QStringLiteral("领用部门"),
         QStringLiteral("领用部门"), 0, QStringLiteral("查询选择领用部门"), QStringLiteral("请选择领用部门"),
         QStringLiteral("领用出库")},
        {4, QStringLiteral("outstore_lend"), counterparty::company, QStringLiteral("对方单位"),
         QStringLiteral("来往单位"), 4, QStringLiteral("查询选择借出单位"), QStringLiteral("请选择对方单位"),
         QStringLiteral("借出出库")},
        {5, QStringLiteral("outstore_borrow_return"), counterparty::company, QStringLiteral("对方单位"),
         QStringLiteral("来往单位"), 4, QStringLiteral("查询选择借入单位"), QStringLiteral("请选择对方单位"),
         QStringLiteral("还货出库")},
        {6, QStringLiteral("outstore_other"), counterparty::none, QString(), QString(), 0, QString(),
         QString(), QStringLiteral("其他出库")},
    };
    return kinds;
}

const document_kind& inbound_kind(int type) {
    return find(inbound_kinds(), type);
}

const document_kind& outbound_kind(int type) {
    return find(outbound_kinds(), type);
}
