#include "model/model_version.h"

#include "model/form_body.h"
#include "net/constants.h"
#include "net/http.h"

QJsonObject version_check() {
    QString args;
    append(args, "version_time=", g_version_time);
    return g_http.post_object(QStringLiteral("version/wms_check"), args);
}
