#include "widgets/tips.h"

#include <QTableWidget>
#include <QToolTip>

void show_tip(QWidget* widget, const QString& text, QPoint at) {
    QToolTip::showText(widget->mapToGlobal(at), text, widget);
}

void tip_in_list(QTableWidget* table, const QString& text) {
    show_tip(table, text, QPoint(10, 30));
}

void tip_select_row(QTableWidget* table) {
    tip_in_list(table, QStringLiteral("请先选中行"));
}

void tip_whole_text(QTableWidgetItem* item) {
    item->setToolTip(item->text());
}
