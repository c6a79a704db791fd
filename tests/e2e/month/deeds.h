#pragma once
#include <QByteArray>
#include <QList>
#include <QString>

/** What one document did to one stock row. */
struct row_move {
    /** Where the row lies: no two rows made during the month share a place. */
    QString place;
    /** The row's id where the clerk knows it; a row that his document made has none yet. */
    QString stock;
    /** Of a row that the document made; else empty and 0. */
    QString product;
    QString warehouse;
    qint64 cents = 0;
    /** Units that came, less than 0 for those that went. */
    int amount = 0;
};

/** A document that the service agreed to. */
struct deed {
    /** "in1" to "in7", "out1" to "out6", "taking", "allot"; with "undo " before it when it was deleted. */
    QString kind;
    QList<row_move> moves;
};

/** A deed as a line of text, and back. */
QByteArray line_of(const deed& done);
deed deed_of(const QByteArray& line);
