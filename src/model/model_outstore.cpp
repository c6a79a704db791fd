#include "model/model_outstore.h"

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
 * the row above it. A document without partner has neither headers nor cells of one. */
std::vector<column> columns_of(const document_kind& kind) {
    const bool dept = kind.partner == counterparty::dept;
    const bool none = kind.partner == counterparty::none;
    const QString id_header = none ? QString() : kind.header + QStringLiteral("id");
    const QString id_key = none ? QString() : dept ? QStringLiteral("dept") : QStringLiteral("company");
    const QString name_key = none ? QString() : id_key + QStringLiteral("_name");
    return {
        {QStringLiteral("id"), QStringLiteral("id"), cell::text, true, true},
        {QStringLiteral("单号"), QStringLiteral("sn"), cell::text, false, true},
        {kind.header, name_key, cell::text, none},
        {QStringLiteral("经办人"), QStringLiteral("operater_name")},
        {QStringLiteral("制单人"), QStringLiteral("writer_name")},
        {QStringLiteral("总价"), QStringLiteral("total")},
        {QStringLiteral("备注"), QStringLiteral("remark")},
        {id_header, id_key, cell::text, true},
        {QStringLiteral("经办人id"), QStringLiteral("operater"), cell::text, true},
        {QStringLiteral("制单人id"), QStringLiteral("writer"), cell::text, true},
        {QStringLiteral("时间"), QStringLiteral("datetime"), cell::carried_time},
    };
}

QString print_page(const QTableWidget* table, const document_kind& kind) {
    QStringList headers{QStringLiteral("单号")};
    QList<int> cells{1};
    if (kind.partner != counterparty::none) {
        headers << kind.header;
        cells << 2;
    }
    headers << QStringLiteral("经办人") << QStringLiteral("制单人") << QStringLiteral("总价")
            << QStringLiteral("备注") << QStringLiteral("时间");
    cells << 3 << 4 << 5 << 6 << 10;
    return print_list_head(QStringLiteral("出库记录"), 7, headers) + print_rows(table, cells) +
           print_list_end();
}

struct_outstore_detail line_of(const QJsonObject& from) {
    auto line = line_from<struct_outstore_detail>(from);
    line.stock_id = from.value(QLatin1String("stock_id")).toString();
    return line;
}

} // namespace

/** The department that a record holds is shown and not searched for. */
QString model_outstore::search_args(const struct_outstore& search) {
    QString args;
    append(args, "outstore_type=", search.type);
    if (search.date_start != 0) append(args, "&date_start=", search.date_start);
    if (search.date_end != 0) append(args, "&date_end=", search.date_end);
    append_if(args, "&sn=", search.sn);
    append_if(args, "&company=", search.company);
    append_if(args, "&operater=", search.operater);
    append_if(args, "&writer=", search.writer);
    append_if(args, "&remark=", search.remark);
    return args;
}

model_outstore::model_outstore() : model_outstore(nullptr, 0) {}

model_outstore::model_outstore(QTableWidget* table_to_fill) : model_outstore(table_to_fill, 0) {}

model_outstore::model_outstore(int kind) : model_outstore(nullptr, kind) {}

model_outstore::model_outstore(QTableWidget* table_to_fill, int kind) : table(table_to_fill), type(kind) {
    qRegisterMetaType<struct_outstore>("struct_outstore");
}

QHash<QString, QVariant> model_outstore::get_page(QString search, int page_num, int page_size) {
    type = QUrlQuery(search).queryItemValue(QStringLiteral("outstore_type")).toInt();
    page_answer page = request_page(QStringLiteral("wms_outstore/get_page"), search, page_num, page_size);
    const document_kind& kind = outbound_kind(type);
    fill_list(table, columns_of(kind), page.list);
    page.info[QStringLiteral("html")] = print_page(table, kind);
    return page.info;
}

QList<struct_outstore_detail> model_outstore::get_detail(QString id) {
    return load_lines(QStringLiteral("wms_outstore/get_detail"), id, line_of);
}

bool model_outstore::do_delete(QString id) {
    args.clear();
    append(args, "id=", id);
    return post_count(QStringLiteral("wms_outstore/do_delete"), args);
}

/** Every key goes out, whether it has a value or not. */
QJsonObject model_outstore::do_add(struct_outstore outstore) {
    args.clear();
    append(args, "type=", outstore.type);
    append(args, "&company=", outstore.company);
    append(args, "&operater=", outstore.operater);
    append(args, "&writer=", outstore.writer);
    append(args, "&total=", shown_money(outstore.total));
    append(args, "&dept=", outstore.dept);
    append(args, "&remark=", outstore.remark);
    return g_http.post_object(QStringLiteral("wms_outstore/do_add"), args);
}

bool model_outstore::update_total(QString id, double total) {
    args.clear();
    append(args, "id=", id);
    append(args, "&total=", shown_money(total));
    return post_count(QStringLiteral("wms_outstore/update_total"), args);
}
