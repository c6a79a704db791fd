#include "tour/camera.h"

#include <QApplication>
#include <QPainter>
#include <QPixmap>
#include <QWidget>
#include <algorithm>

namespace {

constexpr int title_height = 30;

bool has_title(const QWidget* shown) {
    return shown->windowType() == Qt::Window || shown->windowType() == Qt::Dialog;
}

/** Where the window is, with the title bar that a window manager would draw. */
QRect outline(const QWidget* shown) {
    const QRect area(shown->mapToGlobal(QPoint(0, 0)), shown->size());
    return has_title(shown) ? area.adjusted(-1, -title_height, 1, 1) : area;
}

/** From the bottom up: main window, dialogs each above the one that opened it, then menus and tool tips. */
int layer(const QWidget* shown) {
    if (shown->windowType() == Qt::ToolTip) return 1001;
    if (shown->windowType() == Qt::Popup) return 1000;
    if (shown == QApplication::activeModalWidget()) return 999;
    int above = 0;
    for (const QWidget* each = shown->parentWidget(); each != nullptr; each = each->window()->parentWidget())
        ++above;
    return above;
}

QList<QWidget*> windows() {
    QList<QWidget*> shown;
    const auto all = QApplication::topLevelWidgets();
    for (QWidget* each : all)
        if (each->isVisible() && each->windowType() != Qt::Desktop) shown.append(each);
    std::stable_sort(shown.begin(), shown.end(),
                     [](const QWidget* a, const QWidget* b) { return layer(a) < layer(b); });
    return shown;
}

void draw(QPainter& painter, QWidget* shown) {
    const QRect area = outline(shown);
    if (has_title(shown)) {
        painter.fillRect(area, QColor(0x00, 0x4e, 0xa1));
        painter.setPen(Qt::white);
        painter.drawText(area.adjusted(10, 0, -10, 0).translated(0, (title_height - area.height()) / 2),
                         Qt::AlignVCenter | Qt::AlignLeft, shown->windowTitle());
    }
    painter.drawPixmap(shown->mapToGlobal(QPoint(0, 0)), shown->grab());
}

} // namespace

camera::camera(const QString& path) : folder(path) {
    folder.mkpath(QStringLiteral("."));
}

bool camera::usable() const {
    return folder.exists();
}

bool camera::take(const QString& name) {
    QCoreApplication::sendPostedEvents();
    const QList<QWidget*> shown = windows();
    QRect area;
    for (const QWidget* each : shown)
        area |= outline(each);
    area.adjust(-8, -8, 8, 8);
    QPixmap picture(area.size());
    picture.fill(QColor(0xd8, 0xdd, 0xe3));
    QPainter painter(&picture);
    painter.translate(-area.topLeft());
    for (QWidget* each : shown)
        draw(painter, each);
    painter.end();
    const QString file = QStringLiteral("%1_%2.png").arg(++count, 3, 10, QLatin1Char('0')).arg(name);
    return picture.save(folder.filePath(file));
}
