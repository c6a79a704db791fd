#include "model/model_instore.h"

#include <QTableWidget>
#include <QUrlQuery>

#include "model/answers.h"
#include "model/document_kinds.h"
#include "model/document_lines.h"
#include "model/form_body.h"
#include "model/list_table.h"
#include "model/page_answer.h"
#include "model/print_text.h"
#include "net/http.h"

namespace {

/** The list's columns. All but the time are shown as they came; a row without a time goes on with the time of
 * the row above it. */
std::vector<column> columns_of(const document_kind& kind) {
    const bool dept = kind.partner == counterparty::dept;
    const bool none = kind.partner == counterparty::none;
    // A document without partner has the cells of a company all the same, under no header.
    const QString id_header = none ? QString() : kind.header + QStringLiteral("id");
    std::vector<column> columns{
        {QStringLiteral("id"), QStringLiteral("id"), cell::text, true, true},
        {QStringLiteral("单号"), QStringLiteral("sn"), cell::text, false, true},
        {id_header, dept ? QStringLiteral("dept") : QStringLiteral("company"), cell::text, true},
        {QStringLiteral("经办人"), QStringLiteral("operater"), cell::text, true},
        {QStringLiteral("制单人"), QStringLiteral("writer"), cell::text, true},
        {kind.header, dept ? QStringLiteral("dept_name") : QStringLiteral("company_name"), cell::text, none},
        {QStringLiteral("经办人"), QStringLiteral("operater_name")},
        {QStringLiteral("制单人"), QStringLiteral("writer_name")},
        {QStringLiteral("总价"), QStringLiteral("total")},
        {QStringLiteral("备注"), QStringLiteral("remark")},
        {QStringLiteral("时间"), QStringLiteral("datetime"), cell::carried_time},
    };
    return columns;
}

/** The header leaves a missing partner out, the rows do not: kind 7 prints a cell more than it has headers.
 */
QString print_page(const QTableWidget* table, const document_kind& kind) {
    QStringList headers{QStringLiteral("单号")};
    if (kind.partner != counterparty::none) headers << kind.header;
    headers << QStringLiteral("经办人") << QStringLiteral("制单人") << QStringLiteral("总价")
            << QStringLiteral("备注") << QStringLiteral("时间");
    return print_list_head(QStringLiteral("入库记录"), 7, headers) +
           print_rows(table, {1, 5, 6, 7, 8, 9, 10}) + print_list_end();
}

} // namespace

QString model_instore::search_args(const struct_instore& search) {
    QString args;
    if (search.date_start != 0) append(args, "date_start=", search.date_start);
    if (search.date_end != 0) append(args, "&date_end=", search.date_end);
    append_if(args, "&sn=", search.sn);
    append_if(args, "&company=", search.company);
    append_if(args, "&operater=", search.operater);
    append_if(args, "&writer=", search.writer);
    append_if(args, "&remark=", search.remark);
    append_if(args, "&dept=", search.dept);
    append(args, "&instore_type=", search.type);
    return args;
}

model_instore::model_instore() : model_instore(nullptr, 0) {}

model_instore::model_instore(QTableWidget* table_to_fill) : model_instore(table_to_fill, 0) {}

model_instore::model_instore(int kind) : model_instore(nullptr, kind) {}

model_instore::model_instore(QTableWidget* table_to_fill, int kind) : table(table_to_fill), type(kind) {
    qRegisterMetaType<struct_instore>("struct_instore");
}

QHash<QString, QVariant> model_instore::get_page(QString search, int page_num, int page_size) {
    type = QUrlQuery(search).queryItemValue(QStringLiteral("instore_type")).toInt();
    page_answer page = request_page(QStringLiteral("wms_instore/get_page"), search, page_num, page_size);
    const document_kind& kind = inbound_kind(type);
    fill_list(table, columns_of(kind), page.list);
    page.info[QStringLiteral("html")] = print_page(table, kind);
    return page.info;
}

QList<struct_instore_detail> model_instore::get_detail(QString id) {
    return load_lines(QStringLiteral("wms_instore/get_detail"), id, line_from<struct_instore_detail>);
}

bool model_instore::do_delete(QString id) {
    args.clear();
    append(args, "id=", id);
    return post_count(QStringLiteral("wms_instore/do_delete"), args);
}

/** Only what has a value goes out. */
QJsonObject model_instore::do_add(struct_instore instore) {
    args.clear();
    append(args, "type=", type);
    append_if(args, "&company=", instore.company);
    append_if(args, "&operater=", instore.operater);
    append_if(args, "&writer=", instore.writer);
    if (instore.total > 0) append(args, "&total=", shown_money(instore.total));
    append_if(args, "&remark=", instore.remark);
    append_if(args, "&dept=", instore.dept);
    return g_http.post_object(QStringLiteral("wms_instore/do_add"), args);
}

bool model_instore::update_total(QString id, double total) {
    args.clear();
    append(args, "id=", id);
    append(args, "&total=", shown_money(total));
    return post_count(QStringLiteral("wms_instore/update_total"), args);
}
