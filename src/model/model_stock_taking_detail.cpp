#include "model/model_stock_taking_detail.h"

#include "model/answers.h"
#include "model/form_body.h"

model_stock_taking_detail::model_stock_taking_detail() {
    qRegisterMetaType<struct_stock_taking_detail>("struct_stock_taking_detail");
}

/** Every key goes out, whether it has a value or not. */
bool model_stock_taking_detail::do_add(struct_stock_taking_detail detail) {
    args.clear();
    append(args, "main_id=", detail.main_id);
    append(args, "&product=", detail.product);
    append(args, "&price=", shown_money(detail.price));
    append(args, "&sys_amount=", detail.sys_amount);
    append(args, "&real_amount=", detail.real_amount);
    append(args, "&profitloss_amount=", detail.profitloss_amount);
    append(args, "&profitloss_total=", shown_money(detail.profitloss_total));
    append(args, "&remark=", detail.remark);
    append(args, "&warehouse=", detail.warehouse);
    append(args, "&stock_id=", detail.stock_id);
    append(args, "&place=", detail.place);
    append(args, "&locked_id=", detail.locked_id);
    return post_count(QStringLiteral("wms_stock_taking_detail/do_add"), args);
}

const record_columns<struct_stock_taking_detail>& model_stock_taking_detail::columns() {
    using d = struct_stock_taking_detail;
    static const record_columns<d> table = {
        hidden(fitted(text_column(QStringLiteral("id"), QString(), &d::id))),
        hidden(text_column(QStringLiteral("仓库id"), QString(), &d::warehouse)),
        text_column(QStringLiteral("仓库"), QString(), &d::warehouse_name),
        text_column(QStringLiteral("位置"), QString(), &d::place),
        hidden(text_column(QStringLiteral("货品id"), QString(), &d::product)),
        text_column(QStringLiteral("货品名称"), QString(), &d::product_name),
        text_column(QStringLiteral("规格"), QString(), &d::spec),
        text_column(QStringLiteral("编码"), QString(), &d::code),
        money_column(QStringLiteral("价格"), QString(), &d::price),
        code_column(QStringLiteral("系统数量"), QString(), &d::sys_amount),
        code_column(QStringLiteral("盘点数量"), QString(), &d::real_amount),
        code_column(QStringLiteral("盈亏数量"), QString(), &d::profitloss_amount),
        money_column(QStringLiteral("盈亏金额"), QString(), &d::profitloss_total),
        text_column(QStringLiteral("备注"), QString(), &d::remark),
        hidden(text_column(QStringLiteral("stock_id"), QString(), &d::stock_id)),
        hidden(code_column(QStringLiteral("changed"), QString(), &d::changed)),
        hidden(later(text_column(QStringLiteral("locked_id"), QString(), &d::locked_id))),
    };
    return table;
}
