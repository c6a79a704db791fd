#include "widgets/tips.h"

#include <QTableWidget>
#include <QToolTip>

void show_tip(QWidget* widget, const QString& text, QPoint at) {
    QToolTip::showText(widget->mapToGlobal(at), text, widget);
}

void tip_select_row(QTableWidget* table) {
    show_tip(table, QStringLiteral("请先选中行"), QPoint(10, 30));
}
