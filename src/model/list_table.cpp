#include "model/list_table.h"

#include <QDateTime>
#include <QHeaderView>
#include <QJsonObject>
#include <QTableWidget>

namespace cell {

QString text(const QJsonValue& value, const QString&) {
    return value.toString();
}

QString whole_number(const QJsonValue& value, const QString&) {
    return QString::number(value.toVariant().toInt(), 10);
}

QString money(const QJsonValue& value, const QString&) {
    return shown_money(value.toVariant().toDouble());
}

QString time(const QJsonValue& value, const QString&) {
    return shown_time(value.toVariant().toLongLong());
}

QString carried_time(const QJsonValue& value, const QString& above) {
    const QString shown = time(value, above);
    return shown.isEmpty() ? above : shown;
}

} // namespace cell

namespace {

void set_headers(QTableWidget* table, const std::vector<column>& columns) {
    table->setColumnCount(int(columns.size()));
    for (int i = 0; i < int(columns.size()); ++i) {
        const QString& header = columns[size_t(i)].header;
        if (!header.isNull()) table->setHorizontalHeaderItem(i, new QTableWidgetItem(header));
    }
}

void append_row(QTableWidget* table, const std::vector<column>& columns, const QJsonObject& record) {
    const int row = table->rowCount();
    table->insertRow(row);
    for (int i = 0; i < int(columns.size()); ++i) {
        const column& c = columns[size_t(i)];
        if (c.key.isNull()) continue;
        const QString above = cell_text(table, row - 1, i);
        table->setItem(row, i, new QTableWidgetItem(c.read(record.value(c.key), above)));
    }
}

void set_look(QTableWidget* table, const std::vector<column>& columns) {
    QHeaderView* header = table->horizontalHeader();
    header->setSectionResizeMode(QHeaderView::Stretch);
    table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table->setSelectionBehavior(QAbstractItemView::SelectRows);
    table->verticalHeader()->setVisible(false);
    for (int i = 0; i < int(columns.size()); ++i) {
        const column& c = columns[size_t(i)];
        if (c.fitted) header->setSectionResizeMode(i, QHeaderView::ResizeToContents);
        if (c.hidden) table->hideColumn(i);
    }
}

} // namespace

QString shown_time(qint64 seconds) {
    if (seconds == 0) return QString();
    return QDateTime::fromSecsSinceEpoch(seconds).toString(QStringLiteral("yyyy-MM-dd hh:mm"));
}

QString shown_money(double amount) {
    return QString::number(amount, 'f', 2);
}

void set_up_columns(QTableWidget* table, const std::vector<column>& columns) {
    set_headers(table, columns);
    set_look(table, columns);
}

void fill_list(QTableWidget* table, const std::vector<column>& columns, const QJsonArray& list) {
    for (int row = table->rowCount() - 1; row >= 0; --row)
        table->removeRow(row);
    set_headers(table, columns);
    for (const QJsonValue& record : list)
        append_row(table, columns, record.toObject());
    set_look(table, columns);
    table->setContextMenuPolicy(Qt::CustomContextMenu);
}

void set_cell(QTableWidget* table, int row, int column, const QString& text) {
    if (QTableWidgetItem* item = table->item(row, column))
        item->setText(text);
    else if (table->model()->hasIndex(row, column))
        table->setItem(row, column, new QTableWidgetItem(text));
}

QString cell_text(const QTableWidget* table, int row, int column) {
    const QTableWidgetItem* item = table->item(row, column);
    return item != nullptr ? item->text() : QString();
}
