#include "model/answers.h"

#include "net/http.h"

bool post_count(const QString& path, const QString& args) {
    return g_http.post_raw(path, args).toInt(nullptr, 10) > 0;
}

std::optional<added_record> read_added(const QJsonObject& answer) {
    if (answer.value(QLatin1String("http_state")).toVariant().toInt() != 1) return std::nullopt;
    return added_record{answer.value(QLatin1String("insert_id")).toString(),
                        answer.value(QLatin1String("datetime")).toVariant().toInt()};
}
