#include "widgets/selection.h"

#include <QMessageBox>
#include <QTableWidget>

#include "widgets/tips.h"

bool has_current_row(QTableWidget* table) {
    if (table->currentIndex().isValid()) return true;
    tip_select_row(table);
    return false;
}

bool confirm_delete(QWidget* asker) {
    return QMessageBox::question(asker, QStringLiteral("确认删除"), QStringLiteral("确认删除吗？"),
                                 QMessageBox::Yes | QMessageBox::No) == QMessageBox::Yes;
}

QList<int> rows_to_delete(QTableWidget* table, QWidget* asker) {
    QList<int> rows;
    const QModelIndexList cells = table->selectionModel()->selectedIndexes();
    for (const QModelIndex& index : cells)
        if (!rows.contains(index.row())) rows.append(index.row());
    if (rows.isEmpty()) {
        tip_select_row(table);
        return {};
    }
    if (!confirm_delete(asker)) return {};
    return QList<int>(rows.rbegin(), rows.rend());
}

void delete_rows(QTableWidget* table, QWidget* asker, const std::function<bool(int row)>& delete_row) {
    for (int row : rows_to_delete(table, asker))
        if (delete_row(row)) table->removeRow(row);
}
