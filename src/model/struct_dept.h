#pragma once
#include <QMetaType>
#include <QString>

/** A department. */
struct struct_dept {
    /** "0" is the artificial root: all departments. */
    QString id;
    QString name;
    QString parent;
    /** The add time as text; departments do not show it. */
    QString datetime_text;
    /** Time added, seconds since the epoch; 0 is unknown. */
    int datetime = 0;
};
Q_DECLARE_METATYPE(struct_dept)
