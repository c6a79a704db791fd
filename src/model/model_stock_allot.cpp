#include "model/model_stock_allot.h"

#include <QTableWidget>

#include "model/answers.h"
#include "model/document_lines.h"
#include "model/form_body.h"
#include "model/print_text.h"
#include "model/record_page.h"
#include "net/http.h"

namespace {

/** Price and amount may come as numbers or as text. */
struct_stock_allot_detail line_of(const QJsonObject& from) {
    const auto text = [&from](const char* key) { return from.value(QLatin1String(key)).toString(); };
    struct_stock_allot_detail line;
    line.id = text("id");
    line.main_id = text("main_id");
    line.product = text("product");
    line.product_name = text("product_name");
    line.code = text("code");
    line.spec = text("spec");
    line.place = text("place");
    line.price = from.value(QLatin1String("price")).toVariant().toDouble();
    line.amount = from.value(QLatin1String("amount")).toVariant().toInt();
    line.remark = text("remark");
    line.stock_id = text("stock_id");
    return line;
}

/** The time of a transfer, which goes into no field; a row without one goes on with that of the row above. */
record_column<struct_stock_allot> entry_time() {
    return {{QStringLiteral("时间"), QStringLiteral("datetime"), cell::carried_time},
            nullptr,
            nullptr,
            [](struct_stock_allot&, const QString&) {}};
}

} // namespace

const record_columns<struct_stock_allot>& model_stock_allot::columns() {
    using a = struct_stock_allot;
    static const record_columns<a> table = {
        hidden(fitted(text_column(QStringLiteral("id"), QStringLiteral("id"), &a::id))),
        text_column(QStringLiteral("单号"), QStringLiteral("sn"), &a::sn),
        text_column(QStringLiteral("调出仓"), QStringLiteral("warehouse_out_name"), &a::warehouse_out_name),
        hidden(text_column(QStringLiteral("调出仓id"), QStringLiteral("warehouse_out"), &a::warehouse_out)),
        text_column(QStringLiteral("调入仓"), QStringLiteral("warehouse_in_name"), &a::warehouse_in_name),
        hidden(text_column(QStringLiteral("调入仓id"), QStringLiteral("warehouse_in"), &a::warehouse_in)),
        text_column(QStringLiteral("经办人"), QStringLiteral("operater_name"), &a::operater_name),
        hidden(text_column(QStringLiteral("经办人id"), QStringLiteral("operater"), &a::operater)),
        text_column(QStringLiteral("制单人"), QStringLiteral("writer_name"), &a::writer_name),
        hidden(text_column(QStringLiteral("制单人id"), QStringLiteral("writer"), &a::writer)),
        text_column(QStringLiteral("备注"), QStringLiteral("remark"), &a::remark),
        entry_time(),
    };
    return table;
}

/** The destination goes before the source here, and behind it in an addition. */
QString model_stock_allot::search_args(const struct_stock_allot& search) {
    QString args;
    if (search.date_start != 0) append(args, "date_start=", search.date_start);
    if (search.date_end != 0) append(args, "&date_end=", search.date_end);
    append_if(args, "&operater=", search.operater);
    append_if(args, "&writer=", search.writer);
    append_if(args, "&sn=", search.sn);
    append_if(args, "&warehouse_in=", search.warehouse_in);
    append_if(args, "&warehouse_out=", search.warehouse_out);
    append_if(args, "&remark=", search.remark);
    return args;
}

model_stock_allot::model_stock_allot(QTableWidget* table_to_fill) : table(table_to_fill) {
    qRegisterMetaType<struct_stock_allot>("struct_stock_allot");
}

QHash<QString, QVariant> model_stock_allot::get_page(QString search, int page_num, int page_size) {
    auto info =
        load_page(table, QStringLiteral("wms_stock_allot/get_page"), columns(), search, page_num, page_size);
    const QStringList headers{QStringLiteral("单号"),   QStringLiteral("调出仓"), QStringLiteral("调入仓"),
                              QStringLiteral("经办人"), QStringLiteral("制单人"), QStringLiteral("备注"),
                              QStringLiteral("时间")};
    info[QStringLiteral("html")] = print_list_head(QStringLiteral("库存调拨"), 7, headers) +
                                   print_rows(table, {1, 2, 4, 6, 8, 10, 11}) + print_list_end();
    return info;
}

QJsonObject model_stock_allot::do_add(struct_stock_allot stock_allot) {
    args.clear();
    append_if(args, "&warehouse_out=", stock_allot.warehouse_out);
    append_if(args, "&warehouse_in=", stock_allot.warehouse_in);
    append_if(args, "&operater=", stock_allot.operater);
    append_if(args, "&writer=", stock_allot.writer);
    append_if(args, "&remark=", stock_allot.remark);
    return g_http.post_object(QStringLiteral("wms_stock_allot/do_add"), args);
}

bool model_stock_allot::do_delete(QString id) {
    args.clear();
    append(args, "id=", id);
    return post_count(QStringLiteral("wms_stock_allot/do_delete"), args);
}

QList<struct_stock_allot_detail> model_stock_allot::get_detail(QString id) {
    return load_lines(QStringLiteral("wms_stock_allot/get_detail"), id, line_of);
}
