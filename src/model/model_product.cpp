#include "model/model_product.h"

#include <QTableWidget>
#include <cmath>

#include "model/answers.h"
#include "model/form_body.h"
#include "model/record_page.h"
#include "net/http.h"

namespace {

constexpr double no_price = 1e-12;

} // namespace

const record_columns<struct_product>& model_product::columns() {
    using p = struct_product;
    static const record_columns<p> table = {
        hidden(fitted(text_column(QStringLiteral("id"), QStringLiteral("id"), &p::id))),
        text_column(QStringLiteral("类别"), QStringLiteral("category_name"), &p::category_name),
        text_column(QStringLiteral("名称"), QStringLiteral("name"), &p::name),
        text_column(QStringLiteral("编码"), QStringLiteral("code"), &p::code),
        text_column(QStringLiteral("规格"), QStringLiteral("spec"), &p::spec),
        money_column(QStringLiteral("参考价"), QStringLiteral("price"), &p::price),
        hidden(text_column(QStringLiteral("类别id"), QStringLiteral("category"), &p::category)),
        time_column(QStringLiteral("添加时间"), QStringLiteral("datetime"), &p::datetime, &p::datetime_text),
    };
    return table;
}

QString model_product::search_args(const struct_product& search) {
    QString args;
    append_if(args, "&category=", search.category);
    append_if(args, "&name=", search.name);
    append_if(args, "&code=", search.code);
    append_if(args, "&spec=", search.spec);
    return args;
}

model_product::model_product(QTableWidget* table_to_fill) : table(table_to_fill) {
    qRegisterMetaType<struct_product>("struct_product");
}

QHash<QString, QVariant> model_product::get_page(QString search, int page_num, int page_size) {
    return load_page(table, QStringLiteral("wms_product/get_page"), columns(), search, page_num, page_size);
}

QJsonObject model_product::do_add(struct_product product) {
    args.clear();
    append_if(args, "name=", product.name);
    append_if(args, "&code=", product.code);
    append_if(args, "&spec=", product.spec);
    append_category_and_price(product);
    return g_http.post_object(QStringLiteral("wms_product/do_add"), args);
}

void model_product::do_edit(struct_product product) {
    args.clear();
    append_if(args, "id=", product.id);
    append_if(args, "&name=", product.name);
    append_if(args, "&code=", product.code);
    append_if(args, "&spec=", product.spec);
    append_category_and_price(product);
    if (!post_count(QStringLiteral("wms_product/do_edit"), args)) return;
    patch_record(table, table->currentRow(), columns(), product);
}

bool model_product::do_delete(QString id) {
    args.clear();
    append(args, "id=", id);
    return post_count(QStringLiteral("wms_product/do_delete"), args);
}

void model_product::add_row(struct_product product) {
    insert_record(table, columns(), product);
}

/** A price of 0 is never sent: an edit down to 0 leaves the service's old price. */
void model_product::append_category_and_price(const struct_product& product) {
    append_if(args, "&category=", product.category);
    if (std::abs(product.price) > no_price) append(args, "&price=", shown_money(product.price));
}
