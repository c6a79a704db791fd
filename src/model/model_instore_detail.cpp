#include "model/model_instore_detail.h"

#include "model/answers.h"
#include "model/form_body.h"
#include "net/http.h"

model_instore_detail::model_instore_detail() {
    qRegisterMetaType<struct_instore_detail>("struct_instore_detail");
}

const record_columns<struct_instore_detail>& model_instore_detail::columns() {
    using d = struct_instore_detail;
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
        text_column(QStringLiteral("存储位置"), QString(), &d::place),
        text_column(QStringLiteral("备注"), QString(), &d::remark),
        hidden(code_column(QStringLiteral("是否变更"), QString(), &d::changed)),
        hidden(text_column(QStringLiteral("main_id"), QString(), &d::main_id)),
    };
    return table;
}

void model_instore_detail::do_add(struct_instore_detail detail) {
    args.clear();
    append(args, "main_id=", detail.main_id);
    append(args, "&product=", detail.product);
    append(args, "&price=", shown_money(detail.price));
    append(args, "&amount=", detail.amount);
    append(args, "&total=", shown_money(detail.total));
    append(args, "&warehouse=", detail.warehouse);
    append(args, "&remark=", detail.remark);
    append(args, "&place=", detail.place);
    g_http.post(QStringLiteral("wms_instore_detail/do_add"), args);
}

bool model_instore_detail::do_delete(QString id) {
    args.clear();
    append(args, "id=", id);
    return post_count(QStringLiteral("wms_instore_detail/do_delete"), args);
}
