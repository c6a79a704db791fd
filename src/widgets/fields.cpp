#include "widgets/fields.h"

#include <QDoubleValidator>
#include <QIntValidator>
#include <QLineEdit>
#include <QLocale>
#include <QMouseEvent>
#include <QRegExpValidator>

#include "widgets/tips.h"

const QString g_mobile_pattern = QStringLiteral("^1[345789]\\d{9}$");
const QString g_email_pattern = QStringLiteral(
    "^^([a-zA-Z0-9]+[_|\\_|\\.]?)*[a-zA-Z0-9]+@([a-zA-Z0-9]+[_|\\_|\\.]?)*[a-zA-Z0-9]+\\.[a-zA-Z]{2,3}$");

void set_pattern(QLineEdit* field, const QString& pattern) {
    field->setValidator(new QRegExpValidator(QRegExp(pattern, Qt::CaseSensitive), field));
}

namespace {

/** Numbers as a plain conversion reads them. */
QLocale plain_numbers() {
    QLocale plain = QLocale::c();
    plain.setNumberOptions(QLocale::RejectGroupSeparator);
    return plain;
}

} // namespace

void set_amount(QLineEdit* field, double lowest, double highest, int decimals) {
    auto* validator = new QDoubleValidator(lowest, highest, decimals, field);
    validator->setLocale(plain_numbers());
    field->setValidator(validator);
}

void set_whole_number(QLineEdit* field, int lowest, int highest) {
    auto* validator = new QIntValidator(lowest, highest, field);
    validator->setLocale(plain_numbers());
    field->setValidator(validator);
}

QString field_text(const QLineEdit* field) {
    return field->text().trimmed();
}

bool fails(bool wrong, QWidget* field, const QString& tip) {
    if (wrong) show_tip(field, tip);
    return wrong;
}

bool differ(QLineEdit* first, QLineEdit* second, const QString& tip) {
    const bool different = field_text(first) != field_text(second);
    return fails(different, first, tip) && fails(different, second, tip);
}

bool is_pick(const QObject* object, const QEvent* event, const QWidget* field) {
    return object == field && event->type() == QEvent::MouseButtonPress &&
           static_cast<const QMouseEvent*>(event)->button() == Qt::LeftButton;
}
