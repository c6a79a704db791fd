#pragma once
#include <QList>
#include <functional>

class QTableWidget;
class QWidget;

/** Whether the table has a current row; says so to the user if it has none. */
bool has_current_row(QTableWidget* table);

/** Asks whether to delete. */
bool confirm_delete(QWidget* asker);

/**
 * The rows of the selection after the user has confirmed their deletion, in the order in which to delete
 * them; empty when nothing is selected (the user is told) or the user does not confirm.
 *
 * The order is that of the selection, backwards: not sorted, and row numbers are not followed when earlier
 * deletions move rows.
 */
QList<int> rows_to_delete(QTableWidget* table, QWidget* asker);

/** Deletes the rows that rows_to_delete gives, one by one: `delete_row` tells the service and gives whether
 * it agreed; only then the row goes. */
void delete_rows(QTableWidget* table, QWidget* asker, const std::function<bool(int row)>& delete_row);
