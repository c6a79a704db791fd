// The guided tour: the client as it ships, on the off-screen platform, against the service named on the
// command line; through every screen, with a picture of each, in a main window of the usual or of a given
// size. Status 1 when a screen did not show what it
// should.
#include <QApplication>
#include <QFontDatabase>
#include <QSize>
#include <QStringList>
#include <QTimer>
#include <cstdio>

#include "access/dlg_user_login.h"
#include "app/startup.h"
#include "app/window.h"
#include "net/http.h"
#include "tour/tour.h"

namespace {

/** Leads the tour when its two stages come up: the login that the start opens, and the main window. */
class tourist : public QObject {
public:
    explicit tourist(tour& chosen) : way(chosen) {
        connect(&timer, &QTimer::timeout, this, [this] { look(); });
        timer.start(1);
    }

    bool done = false;

private:
    void look() {
        auto* login = qobject_cast<dlg_user_login*>(QApplication::activeModalWidget());
        if (stage == 0 && login != nullptr) {
            stage = 1;
            way.login_steps(login);
            return;
        }
        if (stage != 1) return;
        const auto windows = QApplication::topLevelWidgets();
        for (QWidget* shown : windows) {
            auto* shell = qobject_cast<window*>(shown);
            if (shell == nullptr || !shell->isVisible()) continue;
            stage = 2;
            way.main_steps(*shell);
            done = true;
            QCoreApplication::exit(0);
        }
    }

    tour& way;
    QTimer timer;
    int stage = 0;
};

/** "1920x1080"; empty when it is not of that form. */
QSize size_of(const char* text) {
    const QStringList sides = QString::fromLocal8Bit(text).split(QLatin1Char('x'));
    return sides.size() == 2 ? QSize(sides[0].toInt(), sides[1].toInt()) : QSize();
}

/** The off-screen platform says of each window what it cannot do; everything else is worth reading. */
void say(QtMsgType, const QMessageLogContext&, const QString& text) {
    if (text.startsWith(QLatin1String("This plugin does not support"))) return;
    std::fprintf(stderr, "%s\n", qPrintable(text));
}

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qInstallMessageHandler(say);
    QApplication application(argc, argv);
    const QSize screen = argc == 4 ? size_of(argv[3]) : QSize(1366, 768);
    if (argc < 3 || argc > 4 || screen.isEmpty()) {
        std::fputs("usage: wms_tour BASE_URL FOLDER [WIDTHxHEIGHT]\n", stderr);
        return 2;
    }
    if (QFontDatabase().families(QFontDatabase::SimplifiedChinese).isEmpty()) {
        std::fputs("tour: no font with Chinese characters is installed\n", stderr);
        return 1;
    }
    g_http.base_url = QString::fromLocal8Bit(argv[1]);
    tour way(QString::fromLocal8Bit(argv[2]), screen);
    tourist person(way);
    startup(application);
    if (!person.done) {
        std::fputs("tour: the program ended before the main window was seen\n", stderr);
        return 1;
    }
    std::printf("%d steps, pictures in %s\n", way.steps(), argv[2]);
    return 0;
}
