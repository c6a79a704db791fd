#pragma once
#include <QList>
#include <QPair>
#include <QString>
#include <QStringList>

class QTableWidget;

/** What is printed is assembled as HTML while a table is filled. Nothing is escaped: what a value holds is
 * read as HTML. */

/** The head of a list: its style, the title over `colspan` columns, and the header cells. */
QString print_list_head(const QString& title, int colspan, const QStringList& headers);
/** A row of a list or of a document. */
QString print_row(const QStringList& cells);
/** The rows of a filled table, each with the cells of these columns. */
QString print_rows(const QTableWidget* table, const QList<int>& columns);
/** What closes a list. */
QString print_list_end();

/** The head of a document: its style, the title, the label-and-value cells two in a row (an odd last one
 * spans both columns), and the header cells of the lines. */
QString print_document_head(const QString& title, const QList<QPair<QString, QString>>& fields,
                            const QStringList& headers);
/** What closes a document. The outer table stays open. */
QString print_document_end();
