#include "model/model_stock_summary.h"

#include <QTableWidget>

#include "model/form_body.h"
#include "model/list_table.h"
#include "model/page_answer.h"
#include "model/print_text.h"

namespace {

/** All values are shown as they came. The first column is one to read, so none takes the width of its
 * contents. */
std::vector<column> list_columns() {
    return {
        {QStringLiteral("货品名称"), QStringLiteral("product_name")},
        {QStringLiteral("货品id"), QStringLiteral("product"), cell::text, true},
        {QStringLiteral("类别"), QStringLiteral("category_name")},
        {QStringLiteral("货品类别id"), QStringLiteral("category"), cell::text, true},
        {QStringLiteral("编码"), QStringLiteral("code")},
        {QStringLiteral("规格"), QStringLiteral("spec")},
        {QStringLiteral("平均价格"), QStringLiteral("avg_price")},
        {QStringLiteral("数量"), QStringLiteral("sum_amount")},
        {QStringLiteral("总价"), QStringLiteral("sum_total")},
    };
}

} // namespace

/** The code goes before the specification, unlike in the search for stock rows. */
QString model_stock_summary::search_args(const struct_stock& search) {
    QString args;
    if (search.date_start != 0) append(args, "&date_start=", search.date_start);
    if (search.date_end != 0) append(args, "&date_end=", search.date_end);
    append_if(args, "&product_name=", search.product_name);
    append_if(args, "&code=", search.code);
    append_if(args, "&spec=", search.spec);
    return args;
}

model_stock_summary::model_stock_summary(QTableWidget* table_to_fill) : table(table_to_fill) {}

QHash<QString, QVariant> model_stock_summary::get_page(QString args, int page_num, int page_size) {
    page_answer page = request_page(QStringLiteral("wms_stock_summary/get_page"), args, page_num, page_size);
    fill_list(table, list_columns(), page.list);
    const QStringList headers{QStringLiteral("货品名称"), QStringLiteral("类别"),     QStringLiteral("编码"),
                              QStringLiteral("规格"),     QStringLiteral("平均价格"), QStringLiteral("数量"),
                              QStringLiteral("总价")};
    page.info[QStringLiteral("html")] = print_list_head(QStringLiteral("库存汇总"), 7, headers) +
                                        print_rows(table, {0, 2, 4, 5, 6, 7, 8}) + print_list_end();
    return page.info;
}
