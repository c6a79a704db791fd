#include "gui/app/shell.h"

#include <QApplication>
#include <QDesktopServices>
#include <QTest>
#include <QTimer>
#include <QTreeWidget>
#include <stdexcept>

#include "app/window.h"
#include "support/screen.h"

browser::browser() {
    QDesktopServices::setUrlHandler(QStringLiteral("http"), this, "open");
    QDesktopServices::setUrlHandler(QStringLiteral("https"), this, "open");
}

browser::~browser() {
    QDesktopServices::unsetUrlHandler(QStringLiteral("http"));
    QDesktopServices::unsetUrlHandler(QStringLiteral("https"));
}

void browser::open(const QUrl& url) {
    opened.append(url);
}

QTreeWidgetItem* navigation_item(const window& shell, const QString& key) {
    const auto found =
        child<QTreeWidget>(&shell, "treewidget")->findItems(key, Qt::MatchExactly | Qt::MatchRecursive, 2);
    if (found.isEmpty()) throw std::runtime_error("no navigation row " + key.toStdString());
    return found.first();
}

void click_navigation(window& shell, const QString& key) {
    auto* tree = child<QTreeWidget>(&shell, "treewidget");
    QTreeWidgetItem* item = navigation_item(shell, key);
    tree->scrollToItem(item);
    QTest::mouseClick(tree->viewport(), Qt::LeftButton, Qt::NoModifier, tree->visualItemRect(item).center());
}

void open_partner_tabs(window& shell) {
    for (const char* key : {"company_supplier", "company_client", "company_other"})
        click_navigation(shell, QLatin1String(key));
}

void with_popup(const std::function<void()>& act, const std::function<void(QMenu*)>& drive) {
    bool driven = false;
    std::exception_ptr failure;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &timer, [&] {
        auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        if (menu == nullptr) return;
        if (!driven) {
            driven = true;
            try {
                drive(menu);
            } catch (...) {
                failure = std::current_exception();
            }
        }
        menu->close();
    });
    timer.start(1);
    act();
    // A menu of the menu bar pops up and returns at once.
    const bool seen =
        QTest::qWaitFor([&driven] { return driven && QApplication::activePopupWidget() == nullptr; });
    timer.stop();
    if (failure) std::rethrow_exception(failure);
    if (!seen) throw std::runtime_error("no menu popped up");
}

QStringList entries(const QMenu* menu) {
    QStringList texts;
    const auto actions = menu->actions();
    for (const QAction* action : actions)
        texts.append(action->isSeparator() ? QStringLiteral("-") : action->text());
    return texts;
}

bool modal_shown() {
    return QApplication::activeModalWidget() != nullptr;
}
