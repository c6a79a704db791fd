#include "client/probe_calls.h"

#include "net/http.h"

void give_up(const char* what) {
    std::printf("%s\n", what);
    leave(1);
}

QJsonArray records(const QString& path, const QString& criteria, int count) {
    constexpr int at_once = 100;
    QJsonArray all;
    for (int page = 1; all.size() < count; ++page) {
        const QString paging = QStringLiteral("page_num=%1&page_size=%2").arg(page).arg(at_once);
        const QJsonArray list =
            g_http.post_object(path, criteria + paging).value(QLatin1String("list")).toArray();
        for (const QJsonValue& one : list) {
            if (all.size() < count) all.append(one);
        }
        if (list.size() < at_once && all.size() < count)
            give_up(qPrintable(QStringLiteral("too few records in ") + path));
    }
    return all;
}

QString text_of(const QJsonValue& record, const char* key) {
    return record.toObject().value(QLatin1String(key)).toString();
}

QString first_id(const QString& path, const QString& criteria) {
    return text_of(records(path, criteria, 1).first(), "id");
}

void tell(const char* name, double begin, double closing, const answer_counter& answers) {
    const double end = now_ms();
    std::printf("%s_ms %.4f\n%s_close_ms %.4f\n%s_requests %d\n", name, end - begin, name, end - closing,
                name, answers.count());
}
