#pragma once
#include <QString>

class QEvent;
class QLineEdit;
class QObject;
class QWidget;

/** What a mobile number looks like. */
extern const QString g_mobile_pattern;

/** What an e-mail address looks like. */
extern const QString g_email_pattern;

/** Lets only texts be typed that can become one of the pattern, letter case included. */
void set_pattern(QLineEdit* field, const QString& pattern);

/**
 * Lets only amounts within these bounds be typed, written with a point and without separators of thousands
 * whatever the user's locale: a plain conversion to a number reads the text.
 */
void set_amount(QLineEdit* field, double lowest, double highest, int decimals);

/** Lets only whole numbers within these bounds be typed, written likewise. */
void set_whole_number(QLineEdit* field, int lowest, int highest);

/** The text of a field without the blanks around it. */
QString field_text(const QLineEdit* field);

/** Says `tip` at `field` when something is wrong with it; gives whether it is. */
bool fails(bool wrong, QWidget* field, const QString& tip);

/** Says `tip` at both fields, at the first one first, when their texts differ; gives whether they do. */
bool differ(QLineEdit* first, QLineEdit* second, const QString& tip);

/** Whether the event is the press of the left mouse button on a field that opens a picker. */
bool is_pick(const QObject* object, const QEvent* event, const QWidget* field);
