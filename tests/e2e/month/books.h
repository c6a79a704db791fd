#pragma once
#include <QHash>
#include <QMap>
#include <QString>
#include <QStringList>

#include "e2e/month/deeds.h"

/**
 * What there ought to be in stock: what a list said at the beginning, and every deed since. Money is in
 * hundredths.
 */
class books {
public:
    /** Takes over what the stock list of the client who is logged in shows now. */
    void open();
    /** Enters a deed. Deeds may come in any order. */
    void enter(const deed& done);

    /** "place product warehouse price amount total" of each row with anything on it, sorted. */
    QStringList rows() const;
    /** "product average amount total" of each product with anything on hand, sorted. */
    QStringList sums() const;
    /** "place amount value" of each row with anything on it, sorted, as the ledger has it. */
    QStringList ledger() const;

    /** The same as rows() as the client's stock list shows it now, all pages of it. */
    static QStringList rows_shown();
    /** The same as sums() as the client's stock summary shows it now. */
    static QStringList sums_shown();

private:
    struct row {
        QString place;
        QString product;
        QString warehouse;
        qint64 cents = 0;
        qint64 amount = 0;
    };
    row& row_of(const row_move& move);

    /** By the id of a row that was there at the beginning, by the place of one that was made since. */
    QMap<QString, row> all;
};

/** An amount in hundredths as lists show it. */
QString shown_cents(qint64 cents);
