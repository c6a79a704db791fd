#pragma once
#include <QHash>
#include <QString>
#include <QVariant>

#include "model/page_answer.h"
#include "model/record_columns.h"

/** Asks `path` for a page and shows it in the table; gives the page's information. */
template <class record>
QHash<QString, QVariant> load_page(QTableWidget* table, const QString& path,
                                   const record_columns<record>& columns, const QString& args, int page_num,
                                   int page_size) {
    const page_answer page = request_page(path, args, page_num, page_size);
    fill_list(table, faces(columns), page.list);
    return page.info;
}
