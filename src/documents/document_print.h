#pragma once
#include "model/list_table.h"
#include "model/print_text.h"

/**
 * The print of an inbound or outbound document. The label of the partner is the same for every kind, and a
 * department is not printed.
 */
template <class document>
QString print_document(const QString& title, const document& what) {
    QString text = print_document_head(
        title,
        {{QStringLiteral("单号："), what.sn},
         {QStringLiteral("经办人："), what.operater_name},
         {QStringLiteral("制单人："), what.writer_name},
         {QStringLiteral("供应商："), what.company_name},
         {QStringLiteral("备注："), what.remark}},
        {QStringLiteral("货品名称"), QStringLiteral("编码"), QStringLiteral("类别"), QStringLiteral("规格"),
         QStringLiteral("单价"), QStringLiteral("数量"), QStringLiteral("总价"), QStringLiteral("仓库"),
         QStringLiteral("存储位置"), QStringLiteral("备注")});
    for (const auto& line : what.details)
        text +=
            print_row({line.product_name, line.code, line.category_name, line.spec, shown_money(line.price),
                       QString::number(line.amount), shown_money(line.amount * line.price),
                       line.warehouse_name, line.place, line.remark});
    return text + print_document_end();
}
