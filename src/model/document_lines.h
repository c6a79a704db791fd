#pragma once
#include <QJsonArray>
#include <QJsonObject>
#include <QList>
#include <QString>

#include "model/form_body.h"
#include "net/http.h"

/** What the lines of inbound and outbound documents have in common. `amount`, `total` and `datetime` have to
 * come as text, a number there reads as 0; `price` may be either. */
template <class document_line>
document_line line_from(const QJsonObject& from) {
    const auto text = [&from](const char* key) { return from.value(QLatin1String(key)).toString(); };
    document_line line;
    line.id = text("id");
    line.main_id = text("main_id");
    line.product = text("product");
    line.product_name = text("product_name");
    line.category_name = text("category_name");
    line.category = text("category");
    line.price = from.value(QLatin1String("price")).toVariant().toDouble();
    line.amount = text("amount").toInt();
    line.total = text("total").toDouble();
    line.warehouse_name = text("warehouse_name");
    line.warehouse = text("warehouse");
    line.remark = text("remark");
    line.datetime = text("datetime").toInt();
    line.spec = text("spec");
    line.place = text("place");
    line.code = text("code");
    return line;
}

/** Asks `path` for the lines of a document; `read` makes a record of each. */
template <class document_line>
QList<document_line> load_lines(const QString& path, const QString& id,
                                document_line (*read)(const QJsonObject& from)) {
    QString args;
    append(args, "id=", id);
    QList<document_line> lines;
    const QJsonArray answer = g_http.post_array(path, args);
    for (const QJsonValue& line : answer)
        lines.append(read(line.toObject()));
    return lines;
}
