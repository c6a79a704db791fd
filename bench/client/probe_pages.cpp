#include <QApplication>
#include <QLabel>
#include <QMouseEvent>
#include <QPushButton>
#include <QTableWidget>

#include "client/watch.h"
#include "master/tab_company.h"

namespace {

constexpr int warm_up = 20;
constexpr int turns = 300;
constexpr int repaints = 100;
constexpr int requests_for_growth = 1000;

void press(QWidget* label) {
    QMouseEvent event(QEvent::MouseButtonPress, QPointF(2, 2), label->mapToGlobal(QPoint(2, 2)),
                      Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(label, &event);
}

struct turn {
    double filled_ms;  /**< press to the table filled with the answer */
    double painted_ms; /**< press to the table painted */
};

/** Presses "next" and waits for the table to be painted with what came. */
turn turn_page(QWidget* next, QTableWidget* table) {
    const double begin = now_ms();
    press(next);
    const double filled = now_ms();
    wait_for_paint(table->viewport());
    const double end = now_ms();
    if (table->rowCount() != 20) {
        std::printf("rows %d instead of 20\n", table->rowCount());
        leave(1);
    }
    return {filled - begin, end - begin};
}

} // namespace

void turn_pages(QWidget* page, const char* name) {
    page->resize(1300, 900);
    page->show();
    child<QPushButton>(page, "btn_search")->click();
    auto* table = child<QTableWidget>(page, "tablewidget");
    auto* next = child<QLabel>(page, "lbl_next");
    for (int at = 0; at < warm_up; ++at)
        turn_page(next, table);
    for (int at = 0; at < turns; ++at) {
        const turn one = turn_page(next, table);
        std::printf("%sfilled_ms %.4f\n%spainted_ms %.4f\n", name, one.filled_ms, name, one.painted_ms);
    }
}

void measure_pages() {
    std::printf("memory_kib %.0f\n", resident_kib());
    tab_company partners(nullptr, 1);
    turn_pages(&partners, "");
    // The toolkit's share: the same cells painted again with nothing changed.
    auto* table = child<QTableWidget>(&partners, "tablewidget");
    for (int at = 0; at < repaints; ++at) {
        const double begin = now_ms();
        table->viewport()->repaint();
        std::printf("repaint_ms %.4f\n", now_ms() - begin);
    }
    auto* next = child<QLabel>(&partners, "lbl_next");
    const double before = resident_kib();
    for (int at = 0; at < requests_for_growth; ++at)
        turn_page(next, table);
    std::printf("growth_kib %.0f\n", resident_kib() - before);
}
