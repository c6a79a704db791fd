#pragma once
#include <QString>
#include <vector>

class QWidget;

/** One row of the navigation: what a click on the tree row with this action key opens. */
struct navigation_row {
    QString key;
    /** The screen's class, by its name in the screen table. */
    QString screen;
    /** Document, partner or tree kind that the screen is made with; 0 where it takes none. */
    int kind;
    QString title;
};

/** Every action key that the menu table may carry for a page, in the order of the menu. */
const std::vector<navigation_row>& navigation_rows();

/** The row of an action key; null for a key that names no page, such as a group heading. */
const navigation_row* find_navigation_row(const QString& key);

/** Makes the row's screen; null where the client has no such screen. */
QWidget* make_screen(const navigation_row& row, QWidget* parent);
