#pragma once
#include <QList>
#include <QMetaType>
#include <QString>

#include "model/struct_stock_taking_detail.h"

/** The header of a stocktaking; also what the list of them is searched for. */
struct struct_stock_taking {
    /** Search only: bounds of the time, seconds since the epoch. */
    int date_start = 0;
    int date_end = 0;
    /** Empty in a document not yet saved. */
    QString id;
    /** Document number, given by the server. */
    QString sn;
    /** Id of the employee who counted. */
    QString operater;
    QString operater_name;
    /** Id of the user who wrote the document. */
    QString writer;
    QString writer_name;
    /** What the lines make more or less, in units and in money. */
    int profitloss_amount = 0;
    double profitloss_total = 0;
    QString remark;
    QList<struct_stock_taking_detail> details;
};
Q_DECLARE_METATYPE(struct_stock_taking)
