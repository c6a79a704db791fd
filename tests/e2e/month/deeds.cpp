#include "e2e/month/deeds.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace {

const QLatin1String kind_key("kind");
const QLatin1String moves_key("moves");
const QLatin1String place_key("place");
const QLatin1String stock_key("stock");
const QLatin1String product_key("product");
const QLatin1String warehouse_key("warehouse");
const QLatin1String cents_key("cents");
const QLatin1String amount_key("amount");

} // namespace

QByteArray line_of(const deed& done) {
    QJsonArray moves;
    for (const row_move& one : done.moves)
        moves.append(QJsonObject{{place_key, one.place},
                                 {stock_key, one.stock},
                                 {product_key, one.product},
                                 {warehouse_key, one.warehouse},
                                 {cents_key, one.cents},
                                 {amount_key, one.amount}});
    return QJsonDocument(QJsonObject{{kind_key, done.kind}, {moves_key, moves}})
        .toJson(QJsonDocument::Compact);
}

deed deed_of(const QByteArray& line) {
    const QJsonObject object = QJsonDocument::fromJson(line).object();
    deed done;
    done.kind = object.value(kind_key).toString();
    for (const QJsonValue& value : object.value(moves_key).toArray()) {
        const QJsonObject from = value.toObject();
        row_move move;
        move.place = from.value(place_key).toString();
        move.stock = from.value(stock_key).toString();
        move.product = from.value(product_key).toString();
        move.warehouse = from.value(warehouse_key).toString();
        move.cents = qint64(from.value(cents_key).toDouble());
        move.amount = from.value(amount_key).toInt();
        done.moves.append(move);
    }
    return done;
}
