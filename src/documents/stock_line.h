#pragma once
#include <QLineEdit>
#include <QString>

#include "widgets/tips.h"

/** The amount of a line for which `field` has a new text: no more than its stock row has. More is told to the
 * user and taken back to the maximum. */
inline int amount_within(QLineEdit* field, const QString& typed, int maximum) {
    const int amount = typed.toInt();
    if (amount <= maximum) return amount;
    show_tip(field, QStringLiteral("不能超过当前最大库存：") + QString::number(maximum));
    field->setText(QString::number(maximum));
    return maximum;
}
