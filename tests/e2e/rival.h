#pragma once
#include <QJsonObject>
#include <QString>
#include <QStringList>

#include "net/http.h"

/**
 * A second client: another user with a session and a connection of his own, who speaks the protocol by hand.
 * It may be used while g_http waits for an answer: both requests are under way then.
 */
class rival {
public:
    /** Logs in; throws when that is refused. */
    rival(const QString& base_url, const QString& name);

    /** The stock row at that place, as pages have it; empty when there is none. */
    QJsonObject row_at(const QString& place);
    /** What is free of it, as the picker shows it. */
    int free_at(const QString& place);
    /** Claims a quantity of a stock row; gives what the service answered. */
    QString claim(const QString& stock, int amount);
    void give_back(const QString& claim);
    /** Writes an outbound document of the kind without partner with one line; gives whether it was made. */
    bool take_out(const QString& operater, const QJsonObject& row, int amount, const QString& claim);

    /** The way to the service, for whatever else it may be asked. */
    http door;
};

/** The last kind of outbound documents: without a partner. */
constexpr int g_kind_other_out = 6;
