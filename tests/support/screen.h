#pragma once
#include <QList>
#include <QObject>
#include <QPoint>
#include <QString>
#include <QStringList>
#include <functional>
#include <initializer_list>
#include <ostream>
#include <stdexcept>

class QTableWidget;
class QWidget;

/** So that a failed comparison shows the text. */
void PrintTo(const QString& text, std::ostream* out);

namespace screen_detail {
std::string names_below(const QObject* parent);
}

/** The child of that class and object name; throws, telling what there is, when there is none. */
template <class kind>
kind* child(const QObject* parent, const char* name) {
    auto* found = parent->findChild<kind*>(QLatin1String(name));
    if (found == nullptr)
        throw std::runtime_error(std::string("no child \"") + name +
                                 "\" of that class; there are:" + screen_detail::names_below(parent));
    return found;
}

/** Types a text into a line edit as a user would, replacing what was there. */
void type_into(const QObject* parent, const char* line_edit, const QString& text);

/** Presses the push button of that name. */
void click(const QObject* parent, const char* button);

/** The text of the tool tip on the screen; empty if there is none. */
QString shown_tip();

/** Takes away a tool tip that is still showing. */
void clear_tip();

/** Checks that a tool tip with that text stands at that point of the widget, and takes it away. */
void expect_tip(QWidget* widget, const QString& text, QPoint at = QPoint(0, 0));

/** The places at which tool tips stood while `act` ran, in order; a tip that moves counts at each place. */
QList<QPoint> tip_places(const std::function<void()>& act);

/** The place at which a tool tip of that text stands when it is shown at the top left corner of the widget.
 */
QPoint tip_place_at(QWidget* widget, const QString& text);

/** Checks that every named part of a window lies within its parent and has the room that it needs. */
void expect_nothing_cut(const QWidget* shown);

/** Names of the parts that Tab goes to, from the first one on; parts of the toolkit's own are not counted. */
QStringList tab_order(const QWidget* first, int count);

/** Selects one whole row as a click on it does. */
void click_row(QTableWidget* table, int row, Qt::KeyboardModifiers with = Qt::NoModifier);

/** Checks all cells of a row, hidden ones included. */
void expect_cells(const QTableWidget* table, int row, std::initializer_list<const char*> texts);
