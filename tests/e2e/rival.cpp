#include "e2e/rival.h"

#include <QJsonArray>
#include <stdexcept>

#include "e2e/service_process.h"
#include "net/md5_hex.h"

rival::rival(const QString& base_url, const QString& name) {
    door.base_url = base_url;
    const QJsonObject answer = door.post_object(
        QStringLiteral("login/check_login"),
        QStringLiteral("username=") + name + QStringLiteral("&password=") + md5_hex(demo_password));
    if (answer.value(QLatin1String("user")).toObject().value(QLatin1String("username")).toString() != name)
        throw std::runtime_error("the rival was not let in");
}

QJsonObject rival::row_at(const QString& place) {
    const QJsonObject page =
        door.post_object(QStringLiteral("wms_stock_detail/get_page"),
                         QStringLiteral("&place=") + place + QStringLiteral("&page_num=1&page_size=10"));
    return page.value(QLatin1String("list")).toArray().first().toObject();
}

int rival::free_at(const QString& place) {
    return row_at(place).value(QLatin1String("amount")).toString().toInt();
}

QString rival::claim(const QString& stock, int amount) {
    return QString::fromUtf8(door.post_raw(
        QStringLiteral("wms_stock_detail/lock_stock"),
        QStringLiteral("lock_type=3&id=%1&amount=%2&total=1").arg(stock, QString::number(amount))));
}

void rival::give_back(const QString& claim) {
    door.post_raw(QStringLiteral("wms_stock_detail/unlock_stock"),
                  QStringLiteral("locked_id=") + claim + QStringLiteral("&lock_type=3"));
}

bool rival::take_out(const QString& operater, const QJsonObject& row, int amount, const QString& claim) {
    const auto text = [&row](const char* key) { return row.value(QLatin1String(key)).toString(); };
    const QString id =
        door.post_object(QStringLiteral("wms_outstore/do_add"),
                         QStringLiteral("type=%1&company=&operater=%2&writer=&total=0.00&dept=&remark=")
                             .arg(QString::number(g_kind_other_out), operater))
            .value(QLatin1String("insert_id"))
            .toString();
    const QString total = QString::number(amount) + QStringLiteral(".00");
    door.post_raw(QStringLiteral("wms_outstore_detail/do_add"),
                  QStringLiteral("main_id=%1&product=%2&price=1.00&amount=%3&total=%4&warehouse=%5&remark="
                                 "&stock_id=%6&place=%7&locked_id=%8")
                      .arg(id, text("product"), QString::number(amount), total, text("warehouse"), text("id"),
                           text("place"), claim));
    return door.post_raw(QStringLiteral("wms_outstore/update_total"),
                         QStringLiteral("id=%1&total=%2").arg(id, total)) == "1";
}
