#pragma once
#include <QList>
#include <QMetaType>
#include <QString>

#include "model/struct_instore_detail.h"

/** The header of an inbound document; also what its list is searched for. */
struct struct_instore {
    /** Search only: bounds of the time, seconds since the epoch. */
    int date_start = 0;
    int date_end = 0;
    /** Empty in a document not yet saved. */
    QString id;
    /** Document number, given by the server. */
    QString sn;
    /** Id of the employee who handled the goods. */
    QString operater;
    QString operater_name;
    /** Id of the user who wrote the document. */
    QString writer;
    QString writer_name;
    /** Id of the trading partner, for the kinds that have one. */
    QString company;
    QString company_name;
    /** Id of the department, for the kinds that have one. */
    QString dept;
    QString dept_name;
    /** Sum of the line totals. */
    double total = 0;
    /** The kind; whoever makes the record sets it. */
    int type;
    QString remark;
    QList<struct_instore_detail> details;
};
Q_DECLARE_METATYPE(struct_instore)
