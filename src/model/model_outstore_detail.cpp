#include "model/model_outstore_detail.h"

#include "model/form_body.h"
#include "net/http.h"

model_outstore_detail::model_outstore_detail() {
    qRegisterMetaType<struct_outstore_detail>("struct_outstore_detail");
}

void model_outstore_detail::do_add(struct_outstore_detail detail) {
    args.clear();
    append(args, "main_id=", detail.main_id);
    append(args, "&product=", detail.product);
    append(args, "&price=", shown_money(detail.price));
    append(args, "&amount=", detail.amount);
    append(args, "&total=", shown_money(detail.total));
    append(args, "&warehouse=", detail.warehouse);
    append(args, "&remark=", detail.remark);
    append(args, "&stock_id=", detail.stock_id);
    append(args, "&place=", detail.place);
    append(args, "&locked_id=", detail.locked_id);
    g_http.post(QStringLiteral("wms_outstore_detail/do_add"), args);
}

const record_columns<struct_outstore_detail>& model_outstore_detail::columns() {
    using d = struct_outstore_detail;
    static const record_columns<d> table = {
        hidden(fitted(text_column(QStringLiteral("id"), QString(), &d::id))),
        hidden(text_column(QStringLiteral("货品id"), QString(), &d::product)),
        text_column(QStringLiteral("货品名称"), QString(), &d::product_name),
        text_column(QStringLiteral("编码"), QString(), &d::code),
        hidden(text_column(QStringLiteral("类别id"), QString(), &d::category)),
        text_column(QStringLiteral("类别"), QString(), &d::category_name),
        text_column(QStringLiteral("规格"), QString(), &d::spec),
        money_column(QStringLiteral("单价"), QString(), &d::price),
        code_column(QStringLiteral("数量"), QString(), &d::amount),
        product_column(QStringLiteral("总价"), &d::amount, &d::price, &d::total),
        hidden(text_column(QStringLiteral("仓库id"), QString(), &d::warehouse)),
        text_column(QStringLiteral("仓库"), QString(), &d::warehouse_name),
        text_column(QStringLiteral("位置"), QString(), &d::place),
        text_column(QStringLiteral("备注"), QString(), &d::remark),
        hidden(text_column(QStringLiteral("库存id"), QString(), &d::stock_id)),
        hidden(code_column(QStringLiteral("是否变更"), QString(), &d::changed)),
        hidden(text_column(QStringLiteral("main_id"), QString(), &d::main_id)),
        hidden(later(text_column(QStringLiteral("locked_id"), QString(), &d::locked_id))),
    };
    return table;
}
