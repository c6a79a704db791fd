#pragma once

class QDateEdit;

/** The range of dates in a search bar: from 1 January of this year to today, with a calendar each. */
void set_up_date_range(QDateEdit* start, QDateEdit* end);

/** The first and the last second of the day in local time, seconds since the epoch. */
int first_second_of(const QDateEdit* day);
int last_second_of(const QDateEdit* day);
