#pragma once
#include "model/list_table.h"
#include "model/print_text.h"
#include "model/struct_stock_allot.h"

/** The print of a transfer. */
inline QString print_allot(const struct_stock_allot& what) {
    QString text = print_document_head(
        QStringLiteral("调拨明细"),
        {{QStringLiteral("单号："), what.sn},
         {QStringLiteral("调出仓："), what.warehouse_out_name},
         {QStringLiteral("调入仓："), what.warehouse_in_name},
         {QStringLiteral("经办人："), what.operater_name},
         {QStringLiteral("制单人："), what.writer_name},
         {QStringLiteral("备注："), what.remark}},
        {QStringLiteral("货品名称"), QStringLiteral("编码"), QStringLiteral("规格"), QStringLiteral("价格"),
         QStringLiteral("数量"), QStringLiteral("总价"), QStringLiteral("存储位置"), QStringLiteral("备注")});
    for (const auto& line : what.details)
        text += print_row({line.product_name, line.code, line.spec, shown_money(line.price),
                           QString::number(line.amount), shown_money(line.amount * line.price), line.place,
                           line.remark});
    return text + print_document_end();
}
