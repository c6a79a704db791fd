#include "model/print_text.h"

#include "model/list_table.h"
#include "net/constants.h"

#include <QTableWidget>

namespace {

QString cells_of(const QStringList& cells) {
    return QStringLiteral("<td>") + cells.join(QStringLiteral("</td><td>")) + QStringLiteral("</td>");
}

} // namespace

QString print_list_head(const QString& title, int colspan, const QStringList& headers) {
    return g_style_list +
           QStringLiteral("<table width=100% border=1 cellpadding=5 cellspacing=-1><tr><td colspan=") +
           QString::number(colspan) + QStringLiteral(" align=center id=td_title>") + title +
           QStringLiteral("</td></tr><tr id=tr_header>") + cells_of(headers) + QStringLiteral("</tr>");
}

QString print_row(const QStringList& cells) {
    return QStringLiteral("<tr>") + cells_of(cells) + QStringLiteral("</tr>");
}

QString print_rows(const QTableWidget* table, const QList<int>& columns) {
    QString rows;
    for (int row = 0; row < table->rowCount(); ++row) {
        QStringList cells;
        for (const int column : columns)
            cells.append(cell_text(table, row, column));
        rows.append(print_row(cells));
    }
    return rows;
}

QString print_list_end() {
    return QStringLiteral("</table>");
}

QString print_document_head(const QString& title, const QList<QPair<QString, QString>>& fields,
                            const QStringList& headers) {
    QString head = g_style_detail +
                   QStringLiteral(
                       "<table width=100% border=1 cellpadding=0 cellspacing=0><tr><td id=title "
                       "colspan=2>") +
                   title + QStringLiteral("</td></tr>");
    for (int i = 0; i < fields.size(); i += 2) {
        const bool alone = i + 1 == fields.size();
        head += QStringLiteral("<tr><td") + (alone ? QStringLiteral(" colspan=2>") : QStringLiteral(">")) +
                fields[i].first + fields[i].second;
        if (!alone) head += QStringLiteral("</td><td>") + fields[i + 1].first + fields[i + 1].second;
        head += QStringLiteral("</td></tr>");
    }
    return head +
           QStringLiteral(
               "<tr><td id=td_data colspan=2><table id=table_data width=100% border=1 "
               "cellpadding=0 cellspacing=0><tr class=tr_header>") +
           cells_of(headers) + QStringLiteral("</tr>");
}

QString print_document_end() {
    return QStringLiteral("</table></td></tr>");
}
