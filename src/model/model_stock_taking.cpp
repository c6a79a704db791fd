#include "model/model_stock_taking.h"

#include <QTableWidget>

#include "model/answers.h"
#include "model/document_lines.h"
#include "model/form_body.h"
#include "model/list_table.h"
#include "model/page_answer.h"
#include "model/print_text.h"
#include "net/http.h"

namespace {

/** The list's columns. All but the time are shown as they came; a row without a time goes on with the time of
 * the row above it. */
const std::vector<column>& columns() {
    static const std::vector<column> table = {
        {QStringLiteral("id"), QStringLiteral("id"), cell::text, true, true},
        {QStringLiteral("单号"), QStringLiteral("sn")},
        {QStringLiteral("经办人id"), QStringLiteral("operater"), cell::text, true},
        {QStringLiteral("经办人"), QStringLiteral("operater_name")},
        {QStringLiteral("制单人id"), QStringLiteral("writer"), cell::text, true},
        {QStringLiteral("制单人"), QStringLiteral("writer_name")},
        {QStringLiteral("盈亏数量"), QStringLiteral("profitloss_amount")},
        {QStringLiteral("盈亏金额"), QStringLiteral("profitloss_total")},
        {QStringLiteral("备注"), QStringLiteral("remark")},
        {QStringLiteral("时间"), QStringLiteral("datetime"), cell::carried_time},
    };
    return table;
}

QString print_page(const QTableWidget* table) {
    const QStringList headers{QStringLiteral("单号"),     QStringLiteral("经办人"),
                              QStringLiteral("制单人"),   QStringLiteral("盈亏数量"),
                              QStringLiteral("盈亏金额"), QStringLiteral("备注"),
                              QStringLiteral("时间")};
    return print_list_head(QStringLiteral("盘点记录"), 7, headers) +
           print_rows(table, {1, 3, 5, 6, 7, 8, 9}) + print_list_end();
}

/** Price, quantities and gain or loss may come as numbers or as text. */
struct_stock_taking_detail line_of(const QJsonObject& from) {
    const auto text = [&from](const char* key) { return from.value(QLatin1String(key)).toString(); };
    const auto number = [&from](const char* key) { return from.value(QLatin1String(key)).toVariant(); };
    struct_stock_taking_detail line;
    line.id = text("id");
    line.stock_id = text("stock_id");
    line.main_id = text("main_id");
    line.product = text("product");
    line.product_name = text("product_name");
    line.code = text("code");
    line.price = number("price").toDouble();
    line.sys_amount = number("sys_amount").toInt();
    line.real_amount = number("real_amount").toInt();
    line.remark = text("remark");
    line.spec = text("spec");
    line.profitloss_amount = number("profitloss_amount").toInt();
    line.profitloss_total = number("profitloss_total").toDouble();
    line.warehouse = text("warehouse");
    line.warehouse_name = text("warehouse_name");
    line.place = text("place");
    return line;
}

} // namespace

QString model_stock_taking::search_args(const struct_stock_taking& search) {
    QString args;
    if (search.date_start != 0) append(args, "&date_start=", search.date_start);
    if (search.date_end != 0) append(args, "&date_end=", search.date_end);
    append_if(args, "&operater=", search.operater);
    append_if(args, "&writer=", search.writer);
    append_if(args, "&sn=", search.sn);
    append_if(args, "&remark=", search.remark);
    return args;
}

model_stock_taking::model_stock_taking() : model_stock_taking(nullptr) {}

model_stock_taking::model_stock_taking(QTableWidget* table_to_fill) : table(table_to_fill) {
    qRegisterMetaType<struct_stock_taking>("struct_stock_taking");
}

QHash<QString, QVariant> model_stock_taking::get_page(QString search, int page_num, int page_size) {
    page_answer page = request_page(QStringLiteral("wms_stock_taking/get_page"), search, page_num, page_size);
    fill_list(table, columns(), page.list);
    page.info[QStringLiteral("html")] = print_page(table);
    return page.info;
}

/** The user who writes goes out always, the rest only if there is something. */
QJsonObject model_stock_taking::do_add(struct_stock_taking stock_taking) {
    args.clear();
    append_if(args, "&operater=", stock_taking.operater);
    append(args, "&writer=", stock_taking.writer);
    append_if(args, "&remark=", stock_taking.remark);
    return g_http.post_object(QStringLiteral("wms_stock_taking/do_add"), args);
}

bool model_stock_taking::do_delete(QString id) {
    args.clear();
    append(args, "id=", id);
    return post_count(QStringLiteral("wms_stock_taking/do_delete"), args);
}

bool model_stock_taking::update_profitloss(struct_stock_taking stock_taking) {
    args.clear();
    append(args, "id=", stock_taking.id);
    append(args, "&profitloss_amount=", stock_taking.profitloss_amount);
    append(args, "&profitloss_total=", shown_money(stock_taking.profitloss_total));
    return post_count(QStringLiteral("wms_stock_taking/update_profitloss"), args);
}

QList<struct_stock_taking_detail> model_stock_taking::get_detail(QString id) {
    return load_lines(QStringLiteral("wms_stock_taking/get_detail"), id, line_of);
}

void model_stock_taking::do_audit(QString) {}
