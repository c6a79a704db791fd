#pragma once
#include <QMetaType>
#include <QString>

/** A stock row: one batch of a product at one place of a warehouse; also what its list is searched for. */
struct struct_stock {
    /** Search only: bounds of the time, seconds since the epoch. */
    int date_start = 0;
    int date_end = 0;
    QString id;
    QString product;
    QString product_name;
    QString category;
    QString category_name;
    /** Unit price of the batch. */
    double price = 0;
    /** Whole units. */
    int amount = 0;
    double total = 0;
    QString warehouse;
    QString warehouse_name;
    QString remark;
    QString spec;
    /** Storage place inside the warehouse. */
    QString place;
    QString code;
};
Q_DECLARE_METATYPE(struct_stock)
