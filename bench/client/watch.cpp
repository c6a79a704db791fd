#include "client/watch.h"

#include <QApplication>
#include <QEvent>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QTimer>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <string>
#include <utility>

#include "net/http.h"

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

void leave(int code) {
    std::fflush(stdout);
    std::_Exit(code);
}

paint_watch::paint_watch(QObject* watched, std::function<bool(QWidget*)> wanted,
                         std::function<void(QWidget*)> painted)
    : QObject(watched), m_wanted(std::move(wanted)), m_painted(std::move(painted)) {
    watched->installEventFilter(this);
}

bool paint_watch::eventFilter(QObject* object, QEvent* event) {
    if (!m_done && event->type() == QEvent::Paint && object->isWidgetType()) {
        auto* widget = static_cast<QWidget*>(object);
        if (m_wanted(widget)) {
            m_done = true;
            QTimer::singleShot(0, widget, [this, widget] { m_painted(widget); });
        }
    }
    return false;
}

void wait_for_paint(QWidget* widget) {
    bool painted = false;
    paint_watch watch(
        widget, [](QWidget*) { return true; }, [&](QWidget*) { painted = true; });
    while (!painted)
        QApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

answer_counter::answer_counter() {
    connect(g_http.findChild<QNetworkAccessManager*>(), &QNetworkAccessManager::finished, this,
            [this] { ++m_count; });
}
