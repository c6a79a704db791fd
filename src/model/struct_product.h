#pragma once
#include <QMetaType>
#include <QString>

/** A product. */
struct struct_product {
    /** Empty in a record not yet saved. */
    QString id;
    QString name;
    QString code;
    /** Id of its category. */
    QString category;
    /** Comes from the service and never goes there. */
    QString category_name;
    /** Reference price. */
    double price = 0;
    QString spec;
    /** The add time as the list shows it, taken back from there for an edit. */
    QString datetime_text;
    /** Time added, seconds since the epoch; 0 is unknown. */
    int datetime = 0;
};
Q_DECLARE_METATYPE(struct_product)
