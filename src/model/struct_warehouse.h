#pragma once
#include <QMetaType>
#include <QString>

/** A warehouse. */
struct struct_warehouse {
    /** Empty in a record not yet saved. */
    QString id;
    QString name;
    QString phone;
    QString address;
    QString mobile;
    /** Id of the employee who keeps it. */
    QString keeper;
    /** Comes from the service or from the picker and is never sent. */
    QString keeper_name;
    QString remark;
    /** 1 for the default warehouse, else 0. */
    int isdefault = 0;
    /** Time added, seconds since the epoch; 0 is unknown. */
    int datetime = 0;
    /** The add time as the list shows it, taken back from there for an edit. */
    QString datetime_text;
};
Q_DECLARE_METATYPE(struct_warehouse)
