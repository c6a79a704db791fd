#include <QApplication>
#include <QLineEdit>
#include <QPushButton>
#include <cstdio>
#include <string>

#include "app/startup.h"
#include "client/watch.h"
#include "net/http.h"

// The client as the user starts it, watched from inside: client_probe start|session|masters|documents|stock
// BASE_URL. Prints "name value" lines and ends the process as soon as it knows what it was asked for.

namespace {

/** What is measured once the main window stands; none where the start was all. */
void (*measure)() = nullptr;

void on_login_painted(QWidget* dialog) {
    if (measure == nullptr) {
        std::printf("dialog_ms %.3f\n", since_start_ms());
        leave(0);
    }
    child<QLineEdit>(dialog, "txt_login_name")->setText(QStringLiteral("demo_admin"));
    child<QLineEdit>(dialog, "txt_login_pass")->setText(QStringLiteral("Tavrok-2026"));
    new paint_watch(
        qApp, [](QWidget* widget) { return widget->inherits("window"); },
        [](QWidget*) {
            measure();
            leave(0);
        });
    child<QPushButton>(dialog, "btn_submit")->click();
}

} // namespace

int main(int count, char** words) {
    if (count != 3) {
        std::fputs("usage: client_probe start|session|masters|documents|stock BASE_URL\n", stderr);
        return 2;
    }
    const std::string mode = words[1];
    if (mode == "session") measure = measure_pages;
    if (mode == "masters") measure = measure_masters;
    if (mode == "documents") measure = measure_documents;
    if (mode == "stock") measure = measure_stock;
    g_http.base_url = QString::fromUtf8(words[2]);
    QApplication application(count, words);
    new paint_watch(
        &application, [](QWidget* widget) { return widget->inherits("dlg_user_login"); }, on_login_painted);
    return startup(application);
}
