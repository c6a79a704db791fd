#pragma once

#include <QObject>
#include <QWidget>
#include <cstdio>
#include <functional>

// What the probe's parts share: they watch the client from inside and print "name value" lines.

/** Milliseconds of the monotonic clock. */
double now_ms();

/** Milliseconds since the bench started this process; 0 where it did not. */
double since_start_ms();

/** Resident memory of this process. */
double resident_kib();

/** Ends the process at once, with what was printed. */
[[noreturn]] void leave(int code);

/** The child of that name; ends the process where there is none. */
template <class widget>
widget* child(QWidget* parent, const char* name) {
    widget* found = parent->findChild<widget*>(QLatin1String(name));
    if (found == nullptr) {
        std::printf("missing %s\n", name);
        leave(1);
    }
    return found;
}

/** Calls back once, after the first paint of a window that the test accepts: when that round of events is
 * over. */
class paint_watch : public QObject {
public:
    paint_watch(QObject* watched, std::function<bool(QWidget*)> wanted,
                std::function<void(QWidget*)> painted);

protected:
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    std::function<bool(QWidget*)> m_wanted;
    std::function<void(QWidget*)> m_painted;
    bool m_done = false;
};

/** Handles events until the widget has been painted, and that round of events is over. */
void wait_for_paint(QWidget* widget);

/** How many answers the service has given since this object was made. */
class answer_counter : public QObject {
public:
    answer_counter();
    int count() const { return m_count; }

private:
    int m_count = 0;
};

/** Turns the pages of the partners, and what a long session does to the memory. */
void measure_pages();

/** The products' pages, the grants of a user and the box of employees. */
void measure_masters();

/** Saves of documents of a hundred lines, inbound and outbound in turn, and the claims before the latter. */
void measure_documents();

/** Stocktakings of 500 lines and transfers of 100, and the claims before them. */
void measure_stock();

/** Shows a list page, searches and turns 320 pages; prints NAMEfilled_ms and NAMEpainted_ms of the last 300.
 */
void turn_pages(QWidget* page, const char* name);
