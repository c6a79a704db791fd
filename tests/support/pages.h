#pragma once
#include <QAction>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMenu>
#include <QTableWidget>
#include <stdexcept>
#include <vector>

#include "model/list_table.h"
#include "net/http.h"

// What tests of lists and trees share.

/** Grants rights on one page; without any the page stays unknown. */
inline void grant(const char* page, const std::vector<const char*>& rights) {
    if (rights.empty()) return;
    QStringList& granted = g_http.rights[QLatin1String(page)];
    for (const char* right : rights)
        granted.append(QLatin1String(right));
}

/** The answer with one page of a list. */
inline QByteArray page_body(const QJsonArray& list, int page_count = 1, int page_num = 1) {
    return QJsonDocument(QJsonObject{{QStringLiteral("list"), list},
                                     {QStringLiteral("total"), list.size()},
                                     {QStringLiteral("page_count"), page_count},
                                     {QStringLiteral("page_num"), page_num}})
        .toJson(QJsonDocument::Compact);
}

/** The cells of a column, top to bottom. */
inline QStringList column_texts(const QTableWidget* table, int column) {
    QStringList result;
    for (int row = 0; row < table->rowCount(); ++row)
        result.append(cell_text(table, row, column));
    return result;
}

/** The cells of a row, left to right. */
inline QStringList row_texts(const QTableWidget* table, int row) {
    QStringList result;
    for (int column = 0; column < table->columnCount(); ++column)
        result.append(cell_text(table, row, column));
    return result;
}

/** What a menu shows, separators as "-". */
inline QStringList menu_texts(const QMenu* menu) {
    QStringList result;
    for (const QAction* a : menu->actions())
        result.append(a->isSeparator() ? QStringLiteral("-") : a->text());
    return result;
}

/** The entry of the context menu of a widget. */
inline QAction* menu_action(const QWidget* owner, const char* text) {
    for (QAction* a : owner->findChild<QMenu*>()->actions())
        if (a->text() == QString::fromUtf8(text)) return a;
    throw std::runtime_error(std::string("no menu entry ") + text);
}
