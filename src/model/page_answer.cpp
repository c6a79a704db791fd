#include "model/page_answer.h"

#include "model/form_body.h"
#include "net/http.h"

page_answer request_page(const QString& path, QString args, int page_num, int page_size) {
    append(args, "&page_num=", page_num);
    append(args, "&page_size=", page_size);
    const QJsonObject answer = g_http.post_object(path, args);

    page_answer page;
    page.list = answer.value(QLatin1String("list")).toArray();
    for (const QString& key :
         {QStringLiteral("total"), QStringLiteral("page_count"), QStringLiteral("page_num")})
        page.info[key] = answer.value(key).toVariant().toString();
    return page;
}
