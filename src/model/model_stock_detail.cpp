#include "model/model_stock_detail.h"

#include <QTableWidget>

#include "model/answers.h"
#include "model/form_body.h"
#include "model/print_text.h"
#include "model/record_page.h"
#include "net/http.h"

namespace {

using s = struct_stock;

/** A number that the service sends as text; it is shown as it came. Rows come from the service alone. */
template <class number>
record_column<s> as_it_came(QString header, QString key, number s::*field, number (*read)(const QString&)) {
    return {
        {header, key}, nullptr, nullptr, [field, read](s& r, const QString& text) { r.*field = read(text); }};
}

/** The time of the batch, which goes into no field. */
record_column<s> batch_time() {
    return {{QStringLiteral("时间"), QStringLiteral("datetime"), cell::carried_time},
            nullptr,
            nullptr,
            [](s&, const QString&) {}};
}

double read_double(const QString& text) {
    return text.toDouble();
}

int read_int(const QString& text) {
    return text.toInt();
}

} // namespace

const record_columns<struct_stock>& model_stock_detail::columns() {
    static const record_columns<s> table = {
        hidden(fitted(text_column(QStringLiteral("id"), QStringLiteral("id"), &s::id))),
        text_column(QStringLiteral("仓库"), QStringLiteral("warehouse_name"), &s::warehouse_name),
        hidden(text_column(QStringLiteral("仓库id"), QStringLiteral("warehouse"), &s::warehouse)),
        text_column(QStringLiteral("存储位置"), QStringLiteral("place"), &s::place),
        text_column(QStringLiteral("货品名称"), QStringLiteral("product_name"), &s::product_name),
        hidden(text_column(QStringLiteral("货品id"), QStringLiteral("product"), &s::product)),
        text_column(QStringLiteral("货品类别"), QStringLiteral("category_name"), &s::category_name),
        hidden(text_column(QStringLiteral("货品类别id"), QStringLiteral("category"), &s::category)),
        text_column(QStringLiteral("货品编码"), QStringLiteral("code"), &s::code),
        text_column(QStringLiteral("规格"), QStringLiteral("spec"), &s::spec),
        as_it_came(QStringLiteral("价格"), QStringLiteral("price"), &s::price, read_double),
        as_it_came(QStringLiteral("数量"), QStringLiteral("amount"), &s::amount, read_int),
        as_it_came(QStringLiteral("总价"), QStringLiteral("total"), &s::total, read_double),
        text_column(QStringLiteral("备注"), QStringLiteral("remark"), &s::remark),
        batch_time(),
    };
    return table;
}

QString model_stock_detail::search_args(const struct_stock& search) {
    QString args;
    if (search.date_start != 0) append(args, "&date_start=", search.date_start);
    if (search.date_end != 0) append(args, "&date_end=", search.date_end);
    append_if(args, "&warehouse=", search.warehouse);
    append_if(args, "&product_name=", search.product_name);
    append_if(args, "&spec=", search.spec);
    append_if(args, "&code=", search.code);
    append_if(args, "&place=", search.place);
    append_if(args, "&remark=", search.remark);
    return args;
}

model_stock_detail::model_stock_detail() : model_stock_detail(nullptr, 0) {}

model_stock_detail::model_stock_detail(QTableWidget* table_to_fill, int use)
    : table(table_to_fill), mode(use) {
    qRegisterMetaType<struct_stock>("struct_stock");
}

QHash<QString, QVariant> model_stock_detail::get_page(QString search, int page_num, int page_size) {
    auto info =
        load_page(table, QStringLiteral("wms_stock_detail/get_page"), columns(), search, page_num, page_size);
    const QStringList headers{QStringLiteral("仓库"), QStringLiteral("存储位置"), QStringLiteral("货品名称"),
                              QStringLiteral("类别"), QStringLiteral("编码"),     QStringLiteral("规格"),
                              QStringLiteral("价格"), QStringLiteral("数量"),     QStringLiteral("总价"),
                              QStringLiteral("备注"), QStringLiteral("时间")};
    info[QStringLiteral("html")] = print_list_head(QStringLiteral("库存明细"), 11, headers) +
                                   print_rows(table, {1, 3, 4, 6, 8, 9, 10, 11, 12, 13, 14}) +
                                   print_list_end();
    return info;
}

QString model_stock_detail::do_add(struct_stock stock) {
    args.clear();
    append(args, "product=", stock.product);
    append(args, "&price=", shown_money(stock.price));
    append(args, "&amount=", stock.amount);
    append(args, "&total=", shown_money(stock.total));
    append(args, "&warehouse=", stock.warehouse);
    append(args, "&remark=", stock.remark);
    append(args, "&place=", stock.place);
    return QString::fromUtf8(g_http.post_raw(QStringLiteral("wms_stock_detail/do_add"), args));
}

/** Unlike everywhere else the total goes out with six significant digits. */
QString model_stock_detail::lock_stock(struct_stock stock, int lock_type) {
    args.clear();
    append(args, "lock_type=", lock_type);
    append(args, "&id=", stock.id);
    if (stock.amount != 0) append(args, "&amount=", stock.amount);
    if (!qFuzzyIsNull(stock.total)) append(args, "&total=", QString::number(stock.total, 'g', 6));
    return QString::fromUtf8(g_http.post_raw(QStringLiteral("wms_stock_detail/lock_stock"), args));
}

bool model_stock_detail::unlock_stock(QString locked_id, int lock_type) {
    args.clear();
    append(args, "locked_id=", locked_id);
    append(args, "&lock_type=", lock_type);
    return post_count(QStringLiteral("wms_stock_detail/unlock_stock"), args);
}
