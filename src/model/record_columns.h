#pragma once
#include <QTableWidget>
#include <functional>
#include <vector>

#include "model/list_table.h"

/**
 * A column of a list whose rows are taken back as records: beside its face, how a record becomes its cell and
 * how the cell becomes part of a record. The row is the only copy of the record.
 */
template <class record>
struct record_column {
    column face;
    /** The cell of a record just added. */
    std::function<QString(const record&)> added;
    /** The cell of a record just edited. */
    std::function<QString(const record&)> edited;
    /** Takes the cell back into a record. */
    std::function<void(record&, const QString&)> take;
};

template <class record>
using record_columns = std::vector<record_column<record>>;

/** A text, sent, kept and shown as it is. */
template <class record>
record_column<record> text_column(QString header, QString key, QString record::*field) {
    const auto shown = [field](const record& r) { return r.*field; };
    return {{header, key}, shown, shown, [field](record& r, const QString& text) { r.*field = text; }};
}

/** A code that is sent as text and kept as a number. */
template <class record>
record_column<record> code_column(QString header, QString key, int record::*field) {
    const auto shown = [field](const record& r) { return QString::number(r.*field, 10); };
    return {
        {header, key}, shown, shown, [field](record& r, const QString& text) { r.*field = text.toInt(); }};
}

/** An amount, sent as a number or as text, shown with two decimals and taken back from there. */
template <class record>
record_column<record> money_column(QString header, QString key, double record::*field) {
    const auto shown = [field](const record& r) { return shown_money(r.*field); };
    return {{header, key, cell::money}, shown, shown, [field](record& r, const QString& text) {
                r.*field = text.toDouble();
            }};
}

/** Quantity times price, with two decimals. What is taken back is the text, not the product. */
template <class record>
record_column<record> product_column(QString header, int record::*amount, double record::*price,
                                     double record::*total) {
    const auto shown = [amount, price](const record& r) { return shown_money(r.*amount * r.*price); };
    return {{header, QString()}, shown, shown, [total](record& r, const QString& text) {
                r.*total = text.toDouble();
            }};
}

/**
 * The word for a code, as `word` gives it (empty for a code without one). It is there to be read by the user:
 * the code itself comes back from a column of its own, mostly a hidden code_column.
 */
template <QString (*word)(int code), class record>
record_column<record> word_column(QString header, QString key, int record::*field) {
    const auto shown = [field](const record& r) { return word(r.*field); };
    return {{header, key, cell::word_for<word>}, shown, shown, [](record&, const QString&) {}};
}

/** A time: seconds when the service gives it, and from then on the text that the list shows. */
template <class record>
record_column<record> time_column(QString header, QString key, int record::*seconds, QString record::*text) {
    return {{header, key, cell::time},
            [seconds](const record& r) { return shown_time(r.*seconds); },
            [text](const record& r) { return r.*text; },
            [text](record& r, const QString& shown) { r.*text = shown; }};
}

template <class record>
record_column<record> hidden(record_column<record> c) {
    c.face.hidden = true;
    return c;
}

template <class record>
record_column<record> fitted(record_column<record> c) {
    c.face.fitted = true;
    return c;
}

/** A cell that a new row does not have yet. */
template <class record>
record_column<record> later(record_column<record> c) {
    c.added = nullptr;
    return c;
}

template <class record>
std::vector<column> faces(const record_columns<record>& columns) {
    std::vector<column> result;
    result.reserve(columns.size());
    for (const auto& c : columns)
        result.push_back(c.face);
    return result;
}

/** A saved record as a new first row. */
template <class record>
void insert_record(QTableWidget* table, const record_columns<record>& columns, const record& added) {
    table->insertRow(0);
    for (int i = 0; i < int(columns.size()); ++i)
        set_cell(table, 0, i, columns[size_t(i)].added(added));
}

/** A record as a new last row. A column that says nothing of added records gets no item. */
template <class record>
void append_record(QTableWidget* table, const record_columns<record>& columns, const record& added) {
    const int row = table->rowCount();
    table->insertRow(row);
    for (int i = 0; i < int(columns.size()); ++i)
        if (columns[size_t(i)].added) set_cell(table, row, i, columns[size_t(i)].added(added));
}

/** Rewrites the cells `first` to `last` of a row after an edit. */
template <class record>
void patch_record(QTableWidget* table, int row, const record_columns<record>& columns, const record& edited,
                  int first, int last) {
    for (int i = first; i <= last; ++i)
        set_cell(table, row, i, columns[size_t(i)].edited(edited));
}

/** Rewrites a whole row after an edit. */
template <class record>
void patch_record(QTableWidget* table, int row, const record_columns<record>& columns, const record& edited) {
    patch_record(table, row, columns, edited, 0, int(columns.size()) - 1);
}

/** The record that a row shows, hidden columns included. */
template <class record>
record read_record(const QTableWidget* table, int row, const record_columns<record>& columns) {
    record result;
    for (int i = 0; i < int(columns.size()); ++i)
        columns[size_t(i)].take(result, cell_text(table, row, i));
    return result;
}
