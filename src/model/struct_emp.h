#pragma once
#include <QMetaType>
#include <QString>

/** An employee. Both flags are 1 for yes and 2 for no, never 0. */
struct struct_emp {
    /** Empty in a record not yet saved. */
    QString id;
    QString name;
    QString mobile;
    QString address;
    /** Number of the identity card. */
    QString idnum;
    /** Job number; no two employees share one. */
    QString jobnum;
    QString remark;
    /** Whether documents are handled by him unless said otherwise. */
    int isdefault = 2;
    /** Whether he has left the company. */
    int dimission = 2;
    /** Time added, seconds since the epoch; 0 is unknown. */
    int datetime = 0;
    /** The add time as the list shows it, taken back from there for an edit. */
    QString datetime_text;
};
Q_DECLARE_METATYPE(struct_emp)
