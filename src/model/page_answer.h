#pragma once
#include <QHash>
#include <QJsonArray>
#include <QString>
#include <QVariant>

/** One page of a list as the service gave it. */
struct page_answer {
    /** `total`, `page_count` and `page_num` as text, whether sent as numbers or as text. */
    QHash<QString, QVariant> info;
    QJsonArray list;
};

/** Asks `path` for a page; `args` are the search arguments alone. */
page_answer request_page(const QString& path, QString args, int page_num, int page_size);
