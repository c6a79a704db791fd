#pragma once
#include <QJsonArray>
#include <QJsonValue>
#include <QString>
#include <QVariant>
#include <vector>

class QTableWidget;

/**
 * How a list reads one value of a page into a cell. `above` is what the same column shows in the row above
 * (empty in the first row).
 */
using cell_reader = QString (*)(const QJsonValue& value, const QString& above);

namespace cell {

/** A JSON string; anything else reads as empty. */
QString text(const QJsonValue& value, const QString& above);
/** A whole number, sent as a number or as text. */
QString whole_number(const QJsonValue& value, const QString& above);
/** An amount with two decimals, sent as a number or as text. */
QString money(const QJsonValue& value, const QString& above);
/** Seconds since the epoch as local time; 0 is empty. */
QString time(const QJsonValue& value, const QString& above);
/** As time, but a 0 repeats the row above. */
QString carried_time(const QJsonValue& value, const QString& above);
/** The word for a code, sent as a number or as text. */
template <QString (*word)(int code)>
QString word_for(const QJsonValue& value, const QString&) {
    return word(value.toVariant().toInt());
}

} // namespace cell

/** Seconds since the epoch as local time "yyyy-MM-dd hh:mm"; 0 is empty. */
QString shown_time(qint64 seconds);

/** An amount with two decimals. */
QString shown_money(double amount);

/** One column of a list. Its place in the list's table is the contract for every later read of a row. */
struct column {
    /** A null text sets no header. */
    QString header;
    /** Key of the value in a record of the page; a null text fills no cell. */
    QString key;
    cell_reader read = cell::text;
    bool hidden = false;
    /** Takes the width of its contents; the others share what is left evenly. */
    bool fitted = false;
};

/** Sets headers, widths and the look of a table that is filled row by row: whole rows are selected, nothing
 * is edited in place. */
void set_up_columns(QTableWidget* table, const std::vector<column>& columns);

/** Replaces all rows of `table` with the records of `list`, sets the headers and the look that all lists
 * have. */
void fill_list(QTableWidget* table, const std::vector<column>& columns, const QJsonArray& list);

/** Writes a cell, and makes its item if there is none yet. A cell outside the table is left alone. */
void set_cell(QTableWidget* table, int row, int column, const QString& text);

/** The text of a cell; empty for one that is not there. */
QString cell_text(const QTableWidget* table, int row, int column);
