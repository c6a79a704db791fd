#include "widgets/fields.h"

#include <QLineEdit>
#include <QMouseEvent>
#include <QRegExpValidator>

#include "widgets/tips.h"

const QString g_mobile_pattern = QStringLiteral("^1[345789]\\d{9}$");

void set_pattern(QLineEdit* field, const QString& pattern) {
    field->setValidator(new QRegExpValidator(QRegExp(pattern, Qt::CaseSensitive), field));
}

QString field_text(const QLineEdit* field) {
    return field->text().trimmed();
}

bool fails(bool wrong, QWidget* field, const QString& tip) {
    if (wrong) show_tip(field, tip);
    return wrong;
}

bool is_pick(const QObject* object, const QEvent* event, const QWidget* field) {
    return object == field && event->type() == QEvent::MouseButtonPress &&
           static_cast<const QMouseEvent*>(event)->button() == Qt::LeftButton;
}
