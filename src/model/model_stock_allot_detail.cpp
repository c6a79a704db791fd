#include "model/model_stock_allot_detail.h"

#include "model/form_body.h"
#include "net/http.h"

model_stock_allot_detail::model_stock_allot_detail() {
    qRegisterMetaType<struct_stock_allot_detail>("struct_stock_allot_detail");
}

void model_stock_allot_detail::do_add(struct_stock_allot_detail detail) {
    args.clear();
    append(args, "main_id=", detail.main_id);
    append(args, "&product=", detail.product);
    append(args, "&price=", shown_money(detail.price));
    append(args, "&amount=", detail.amount);
    append(args, "&total=", shown_money(detail.total));
    append(args, "&remark=", detail.remark);
    append(args, "&stock_id=", detail.stock_id);
    append(args, "&place=", detail.place);
    append(args, "&warehouse=", detail.warehouse);
    append(args, "&locked_id=", detail.locked_id);
    g_http.post_raw(QStringLiteral("wms_stock_allot_detail/do_add"), args);
}

/** The goods are called products here, and here alone. */
const record_columns<struct_stock_allot_detail>& model_stock_allot_detail::columns() {
    using d = struct_stock_allot_detail;
    static const record_columns<d> table = {
        hidden(fitted(text_column(QStringLiteral("id"), QString(), &d::id))),
        text_column(QStringLiteral("产品名称"), QString(), &d::product_name),
        hidden(text_column(QStringLiteral("产品id"), QString(), &d::product)),
        text_column(QStringLiteral("编码"), QString(), &d::code),
        text_column(QStringLiteral("规格"), QString(), &d::spec),
        money_column(QStringLiteral("价格"), QString(), &d::price),
        code_column(QStringLiteral("数量"), QString(), &d::amount),
        product_column(QStringLiteral("总价"), &d::amount, &d::price, &d::total),
        text_column(QStringLiteral("位置"), QString(), &d::place),
        text_column(QStringLiteral("备注"), QString(), &d::remark),
        hidden(text_column(QStringLiteral("stock_id"), QString(), &d::stock_id)),
        hidden(code_column(QStringLiteral("changed"), QString(), &d::changed)),
        hidden(text_column(QStringLiteral("main_id"), QString(), &d::main_id)),
        hidden(later(text_column(QStringLiteral("locked_id"), QString(), &d::locked_id))),
    };
    return table;
}
