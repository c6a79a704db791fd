#pragma once

#include <QJsonArray>
#include <QString>

#include "client/watch.h"

// What the parts of the probe that write documents share.

/** Ends the process with these words. */
[[noreturn]] void give_up(const char* what);

/** The newest records of a list, as the service tells them; `criteria` is empty or ends with '&'. There must
 * be that many. */
QJsonArray records(const QString& path, const QString& criteria, int count);
QString text_of(const QJsonValue& record, const char* key);
QString first_id(const QString& path, const QString& criteria = {});

/** Prints what a save took: from `begin` to now in all, from `closing` on for its last request, and how many
 * requests it was. */
void tell(const char* name, double begin, double closing, const answer_counter& answers);
