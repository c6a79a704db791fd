#pragma once
#include <QMetaType>
#include <QString>

/** A product category. */
struct struct_prodcate {
    /** "0" is the artificial root. */
    QString id;
    QString name;
    QString parent;
};
Q_DECLARE_METATYPE(struct_prodcate)
