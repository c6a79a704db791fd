#include "model/answers.h"

#include "model/form_body.h"
#include "net/http.h"

bool post_count(const QString& path, const QString& args) {
    return g_http.post_raw(path, args).toInt(nullptr, 10) > 0;
}

bool is_taken(const QString& path, const char* key, const QString& value, const QString& id) {
    QString args;
    append(args, key, value);
    append_if(args, "&id=", id);
    return post_count(path, args);
}

std::optional<added_record> read_added(const QJsonObject& answer) {
    if (answer.value(QLatin1String("http_state")).toVariant().toInt() != 1) return std::nullopt;
    return added_record{answer.value(QLatin1String("insert_id")).toString(),
                        answer.value(QLatin1String("datetime")).toVariant().toInt()};
}
