#pragma once
#include <QMetaType>
#include <QString>

/** A row of the menu table: a page of the navigation, or a right on a page. */
struct struct_menu {
    QString id;
    QString name;
    QString sort;
    /** Navigation key or right key. */
    QString action;
    /** 1 shown, 0 hidden. */
    int show = 0;
    /** "2" for a right row. */
    QString real_level;
    /** The parent's id, "0" for the top. */
    QString parent;
};
Q_DECLARE_METATYPE(struct_menu)
