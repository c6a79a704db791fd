#pragma once
#include <QPoint>
#include <QString>

class QTableWidget;
class QTableWidgetItem;
class QWidget;

/** Shows a tool tip at a point of `widget`: at a field's top left corner for what is wrong with its text. */
void show_tip(QWidget* widget, const QString& text, QPoint at = QPoint(0, 0));

/** Says something about the rows of a list. */
void tip_in_list(QTableWidget* table, const QString& text);

/** Says that a row has to be selected first. */
void tip_select_row(QTableWidget* table);

/** A cell that is too narrow for its text shows it as its tool tip. */
void tip_whole_text(QTableWidgetItem* item);
