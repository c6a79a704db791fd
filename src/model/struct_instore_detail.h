#pragma once
#include <QMetaType>
#include <QString>

/** One line of an inbound document. */
struct struct_instore_detail {
    /** "0" for a line that is not on the server. */
    QString id;
    /** Id of the document. */
    QString main_id;
    QString product;
    QString product_name;
    QString category_name;
    QString category;
    /** Unit price. */
    double price = 0;
    /** Whole units. */
    int amount = 0;
    double total = 0;
    QString warehouse_name;
    QString warehouse;
    QString remark;
    /** Seconds since the epoch. */
    int datetime = 0;
    /** 1 once the line dialog has saved it; never sent. */
    int changed = 0;
    QString spec;
    /** Storage location within the warehouse. */
    QString place;
    QString code;
};
Q_DECLARE_METATYPE(struct_instore_detail)
