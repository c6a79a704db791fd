#pragma once
#include <QList>
#include <QMetaType>
#include <QString>

#include "model/struct_stock_allot_detail.h"

/** The header of a transfer; also what its list is searched for. */
struct struct_stock_allot {
    /** Search only: bounds of the time, seconds since the epoch. */
    int date_start = 0;
    int date_end = 0;
    /** Empty in a transfer not yet saved. */
    QString id;
    /** Document number, given by the server. */
    QString sn;
    /** Id of the employee who handled the goods. */
    QString operater;
    QString operater_name;
    /** Id of the user who wrote the transfer. */
    QString writer;
    QString writer_name;
    /** Id of the source warehouse. */
    QString warehouse_out;
    QString warehouse_out_name;
    /** Id of the destination. */
    QString warehouse_in;
    QString warehouse_in_name;
    QString remark;
    QList<struct_stock_allot_detail> details;
};
Q_DECLARE_METATYPE(struct_stock_allot)
