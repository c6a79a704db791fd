#pragma once
#include <QMetaType>
#include <QString>

/** One line of an outbound document: a quantity of one stock row. */
struct struct_outstore_detail {
    /** "0" for a line that is not on the server. */
    QString id;
    /** Id of the document. */
    QString main_id;
    QString product;
    QString product_name;
    QString category_name;
    QString category;
    /** Unit price; it may differ from the stock row's. */
    double price = 0;
    /** Whole units. */
    int amount = 0;
    double total = 0;
    QString remark;
    /** Seconds since the epoch. */
    int datetime = 0;
    QString warehouse;
    QString warehouse_name;
    /** The stock row that the line takes from. */
    QString stock_id;
    /** 1 once the line dialog has changed it; never sent. */
    int changed = 0;
    QString code;
    QString spec;
    QString place;
    /** The lock of the line, opaque. */
    QString locked_id;
};
Q_DECLARE_METATYPE(struct_outstore_detail)
