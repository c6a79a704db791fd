#include "widgets/date_range.h"

#include <QDate>
#include <QDateEdit>
#include <QDateTime>

namespace {

int seconds_of(const QDateEdit* day, const QString& time) {
    const QString text = day->date().toString(Qt::ISODate) + QLatin1Char(' ') + time;
    return int(QDateTime::fromString(text, QStringLiteral("yyyy-MM-dd hh:mm:ss")).toSecsSinceEpoch());
}

} // namespace

void set_up_date_range(QDateEdit* start, QDateEdit* end) {
    for (QDateEdit* day : {start, end}) {
        day->setCalendarPopup(true);
        // As lists show their times, whatever the user's locale.
        day->setDisplayFormat(QStringLiteral("yyyy-MM-dd"));
    }
    const QDate today = QDate::currentDate();
    start->setDate(QDate(today.year(), 1, 1));
    end->setDate(today);
}

int first_second_of(const QDateEdit* day) {
    return seconds_of(day, QStringLiteral("00:00:00"));
}

int last_second_of(const QDateEdit* day) {
    return seconds_of(day, QStringLiteral("23:59:59"));
}
