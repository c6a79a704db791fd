#include <QApplication>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPushButton>
#include <QTableWidget>
#include <QTimer>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <functional>
#include <string>
#include <utility>

#include "app/startup.h"
#include "master/tab_company.h"
#include "net/http.h"

// The client as the user starts it, watched from inside: client_probe start|session BASE_URL. Prints
// "name value" lines and ends the process as soon as it knows what it was asked for.

namespace {

constexpr int turns = 300;
constexpr int repaints = 100;
constexpr int requests_for_growth = 1000;

double now_ms() {
    timespec time{};
    clock_gettime(CLOCK_MONOTONIC, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

double since_start_ms() {
    const char* start = std::getenv("TAVROK_BENCH_START");
    return start == nullptr ? 0 : now_ms() - std::strtod(start, nullptr) / 1e6;
}

double resident_kib() {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.rfind("VmRSS:", 0) == 0) return std::strtod(line.c_str() + 6, nullptr);
    return 0;
}

[[noreturn]] void leave(int code) {
    std::fflush(stdout);
    std::_Exit(code);
}

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
    paint_watch(QObject* watched, std::function<bool(QWidget*)> wanted, std::function<void(QWidget*)> painted)
        : QObject(watched), m_wanted(std::move(wanted)), m_painted(std::move(painted)) {
        watched->installEventFilter(this);
    }

protected:
    bool eventFilter(QObject* object, QEvent* event) override {
        if (!m_done && event->type() == QEvent::Paint && object->isWidgetType()) {
            auto* widget = static_cast<QWidget*>(object);
            if (m_wanted(widget)) {
                m_done = true;
                QTimer::singleShot(0, widget, [this, widget] { m_painted(widget); });
            }
        }
        return false;
    }

private:
    std::function<bool(QWidget*)> m_wanted;
    std::function<void(QWidget*)> m_painted;
    bool m_done = false;
};

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
    bool painted = false;
    paint_watch watch(
        table->viewport(), [](QWidget*) { return true; }, [&](QWidget*) { painted = true; });
    while (!painted)
        QApplication::processEvents(QEventLoop::WaitForMoreEvents);
    const double end = now_ms();
    if (table->rowCount() != 20) {
        std::printf("rows %d instead of 20\n", table->rowCount());
        leave(1);
    }
    return {filled - begin, end - begin};
}

void measure_session() {
    std::printf("memory_kib %.0f\n", resident_kib());
    tab_company partners(nullptr, 1);
    partners.resize(1300, 900);
    partners.show();
    partners.on_btn_search_clicked();
    auto* table = child<QTableWidget>(&partners, "tablewidget");
    auto* next = child<QLabel>(&partners, "lbl_next");
    for (int at = 0; at < 20; ++at)
        turn_page(next, table);
    for (int at = 0; at < turns; ++at) {
        const turn one = turn_page(next, table);
        std::printf("filled_ms %.4f\npainted_ms %.4f\n", one.filled_ms, one.painted_ms);
    }
    // The toolkit's share: the same cells painted again with nothing changed.
    for (int at = 0; at < repaints; ++at) {
        const double begin = now_ms();
        table->viewport()->repaint();
        std::printf("repaint_ms %.4f\n", now_ms() - begin);
    }
    const double before = resident_kib();
    for (int at = 0; at < requests_for_growth; ++at)
        turn_page(next, table);
    std::printf("growth_kib %.0f\n", resident_kib() - before);
    leave(0);
}

bool started_for_session = false;

void on_login_painted(QWidget* dialog) {
    if (!started_for_session) {
        std::printf("dialog_ms %.3f\n", since_start_ms());
        leave(0);
    }
    child<QLineEdit>(dialog, "txt_login_name")->setText(QStringLiteral("demo_admin"));
    child<QLineEdit>(dialog, "txt_login_pass")->setText(QStringLiteral("Tavrok-2026"));
    new paint_watch(
        qApp, [](QWidget* widget) { return widget->inherits("window"); },
        [](QWidget*) { measure_session(); });
    child<QPushButton>(dialog, "btn_submit")->click();
}

} // namespace

int main(int count, char** words) {
    if (count != 3) {
        std::fputs("usage: client_probe start|session BASE_URL\n", stderr);
        return 2;
    }
    started_for_session = std::string(words[1]) == "session";
    g_http.base_url = QString::fromUtf8(words[2]);
    QApplication application(count, words);
    new paint_watch(
        &application, [](QWidget* widget) { return widget->inherits("dlg_user_login"); }, on_login_painted);
    return startup(application);
}
