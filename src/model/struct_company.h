#pragma once
#include <QMetaType>
#include <QString>

/** A trading partner. */
struct struct_company {
    /** Empty in a record not yet saved. */
    QString id;
    QString name;
    QString linkman;
    QString phone;
    QString mobile;
    QString fax;
    QString address;
    QString remark;
    QString bank;
    QString account;
    /** Time added, seconds since the epoch; 0 is unknown. */
    int datetime = 0;
    /** The add time as the list shows it, taken back from there for an edit. */
    QString datetime_text;
    /** 1 supplier, 2 client, 3 other unit; 4 until it is set. */
    int type = 4;
};
Q_DECLARE_METATYPE(struct_company)
