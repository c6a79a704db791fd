#pragma once
#include <QJsonObject>
#include <QString>
#include <optional>

/** Posts a request that is answered by a count; whether anything was done. */
bool post_count(const QString& path, const QString& args);

/**
 * Asks whether another record than that of `id` (empty: any) has a value: `key` names it, with its "=". A
 * question that fails counts as no.
 */
bool is_taken(const QString& path, const char* key, const QString& value, const QString& id);

/** What the service gave a new record. */
struct added_record {
    QString id;
    /** Time added, seconds since the epoch. */
    int datetime = 0;
};

/** Reads the answer to an addition; nothing when it was refused. */
std::optional<added_record> read_added(const QJsonObject& answer);

/** Gives a record that was sent what the service made of it; whether the service took it. */
template <class record>
bool take_added(record& sent, const QJsonObject& answer) {
    const auto added = read_added(answer);
    if (!added) return false;
    sent.id = added->id;
    sent.datetime = added->datetime;
    return true;
}
