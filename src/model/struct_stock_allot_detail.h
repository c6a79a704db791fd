#pragma once
#include <QMetaType>
#include <QString>

/** One line of a transfer: a quantity of one stock row of the source warehouse. */
struct struct_stock_allot_detail {
    /** "0" for a line that is not on the server. */
    QString id;
    /** Id of the transfer. */
    QString main_id;
    QString product;
    QString product_name;
    /** Held in the line dialog only. */
    QString category_name;
    QString category;
    QString code;
    QString spec;
    /** Where the goods will lie at the destination. */
    QString place;
    /** Unit price; it may differ from the stock row's. */
    double price = 0;
    /** Whole units. */
    int amount = 0;
    double total = 0;
    QString remark;
    /** 1 when another product than the line's was picked; never sent. */
    int changed = 0;
    /** The stock row that the line takes from. */
    QString stock_id;
    /** Sent and always empty: the warehouses are the header's. */
    QString warehouse;
    /** The lock of the line, opaque. */
    QString locked_id;
};
Q_DECLARE_METATYPE(struct_stock_allot_detail)
