#pragma once
#include "model/list_table.h"
#include "model/print_text.h"
#include "model/struct_stock_taking.h"

/**
 * The print of a stocktaking. Its writer stands under the word for a warehouse that it does not have: kept on
 * purpose.
 */
inline QString print_taking(const struct_stock_taking& what) {
    QString text =
        print_document_head(QStringLiteral("盘点明细"),
                            {{QStringLiteral("单号："), what.sn},
                             {QStringLiteral("经办人："), what.operater_name},
                             {QStringLiteral("调入仓："), what.writer_name},
                             {QStringLiteral("备注："), what.remark}},
                            {QStringLiteral("仓库"), QStringLiteral("位置"), QStringLiteral("货品名称"),
                             QStringLiteral("规格"), QStringLiteral("编码"), QStringLiteral("价格"),
                             QStringLiteral("系统数量"), QStringLiteral("盘点数量"),
                             QStringLiteral("盈亏数量"), QStringLiteral("盈亏金额"), QStringLiteral("备注")});
    for (const auto& line : what.details)
        text += print_row({line.warehouse_name, line.place, line.product_name, line.spec, line.code,
                           shown_money(line.price), QString::number(line.sys_amount),
                           QString::number(line.real_amount), QString::number(line.profitloss_amount),
                           shown_money(line.profitloss_total), line.remark});
    return text + print_document_end();
}
