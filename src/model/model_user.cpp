#include "model/model_user.h"

#include "model/form_body.h"
#include "net/http.h"

model_user::model_user() {
    qRegisterMetaType<struct_user>("struct_user");
}

int model_user::check_login(QString username, QString password_md5) {
    args.clear();
    append(args, "username=", username);
    append(args, "&password=", password_md5);
    const QJsonObject answer = g_http.post_object(QStringLiteral("login/check_login"), args);
    if (answer.isEmpty()) return no_contact;

    // The answer has no status: it is accepted when it is about the very name that was sent.
    const QJsonObject user = answer.value(QLatin1String("user")).toObject();
    if (user.value(QLatin1String("username")).toString() != username) return refused;

    g_http.permissions.clear();
    const QJsonArray granted = answer.value(QLatin1String("wms_permission")).toArray();
    for (const QJsonValue& value : granted) {
        const QJsonObject row = value.toObject();
        g_http.permissions[row.value(QLatin1String("id")).toString()] =
            row.value(QLatin1String("action")).toString();
    }
    struct_user& current = g_http.current_user;
    current.username = user.value(QLatin1String("username")).toString();
    current.password = user.value(QLatin1String("password")).toString();
    current.id = user.value(QLatin1String("user_id")).toString();
    current.realname = user.value(QLatin1String("realname")).toString();
    current.type = user.value(QLatin1String("type")).toVariant().toInt();
    return logged_in;
}
