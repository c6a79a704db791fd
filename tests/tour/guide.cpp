#include "tour/guide.h"

#include <QApplication>
#include <QFileInfo>
#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QTest>
#include <QWidget>
#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "support/screen.h"

namespace {

constexpr int step_deadline_ms = 20000;

/** The off-screen platform's screen is small and keeps windows at its left: where a usual screen has them. */
void put_over_its_parent(QWidget* shown) {
    if (shown->parentWidget() == nullptr) return;
    const QPoint middle = shown->parentWidget()->window()->geometry().center();
    const QPoint corner = middle - shown->rect().center();
    shown->move(corner.x(), std::max(corner.y(), 0));
}

} // namespace

guide::guide(const QString& folder) : pictures(folder) {
    deadline.setSingleShot(true);
    QObject::connect(&deadline, &QTimer::timeout, &deadline,
                     [this] { fail(QStringLiteral("took longer than 20 s")); });
    if (!pictures.usable()) fail(QStringLiteral("the folder for the pictures cannot be made"));
}

void guide::step(const char* name, const std::function<void()>& action) {
    const QString outer = current;
    current = QLatin1String(name);
    ++count;
    std::printf("%3d %s\n", count, name);
    std::fflush(stdout);
    deadline.start(step_deadline_ms);
    guarded(action);
    deadline.start(step_deadline_ms);
    current = outer;
}

void guide::guarded(const std::function<void()>& action) {
    try {
        action();
    } catch (const std::exception& problem) {
        fail(QString::fromUtf8(problem.what()));
    }
}

void guide::expect(bool holds, const QString& what) {
    if (!holds) fail(QStringLiteral("this does not hold: ") + what);
}

void guide::picture() {
    if (!pictures.take(current)) fail(QStringLiteral("the picture cannot be saved"));
}

void guide::print(QPrintPreviewDialog& preview, const QString& name) {
    const QString file = pictures.path(name);
    preview.printer()->setOutputFormat(QPrinter::PdfFormat);
    preview.printer()->setOutputFileName(file);
    emit preview.paintRequested(preview.printer());
    expect(QFileInfo(file).size() > 0, QStringLiteral("the printed file ") + file);
}

void guide::with_modal(const std::function<void()>& act, const std::function<void(QWidget*)>& look) {
    const QWidget* before = QApplication::activeModalWidget();
    bool looked = false;
    QTimer watch;
    QObject::connect(&watch, &QTimer::timeout, &watch, [&] {
        QWidget* shown = QApplication::activeModalWidget();
        if (shown == nullptr || shown == before || looked) return;
        looked = true;
        watch.stop();
        guarded([&] {
            put_over_its_parent(shown);
            settle(shown);
            look(shown);
        });
        if (QApplication::activeModalWidget() == shown) shown->close();
    });
    watch.start(1);
    act();
    expect(looked, QStringLiteral("a dialog comes up"));
}

void guide::settle(QWidget* shown) {
    expect(QTest::qWaitForWindowActive(shown), QStringLiteral("the window gets the input"));
    QCoreApplication::processEvents();
}

void guide::expect_tip(const QString& text) {
    QCoreApplication::sendPostedEvents();
    expect(shown_tip() == text, QStringLiteral("the tip ") + text);
    picture();
    clear_tip();
}

void guide::fail(const QString& why) {
    std::fprintf(stderr, "tour: step %s: %s\n", qUtf8Printable(current), qUtf8Printable(why));
    pictures.take(current + QStringLiteral("_failed"));
    std::fflush(nullptr);
    // Out of whatever event loops are running, at once.
    std::_Exit(1);
}
