#pragma once
#include <QLabel>
#include <QLineEdit>
#include <QList>
#include <QWidget>

#include "model/document_kinds.h"

/** Where a form has one kind of partner: a label, a field to pick it in, and what else belongs to them. */
struct partner_field {
    counterparty partner;
    QLabel* label;
    QLineEdit* field;
    QList<QWidget*> others;
};

/** Shows the field of the partner that documents of this kind have, under the kind's label; the fields of the
 * others are hidden as the form has them. */
inline void show_partner(const document_kind& kind, const QList<partner_field>& fields) {
    for (const partner_field& each : fields) {
        const bool shown = each.partner == kind.partner;
        if (shown) {
            each.label->setText(kind.label);
            each.field->setPlaceholderText(QStringLiteral("点击选择"));
        }
        for (QWidget* part : QList<QWidget*>{each.label, each.field} + each.others)
            part->setVisible(shown);
    }
}
