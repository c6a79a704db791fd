// The tabs of the main window: the tab bar's context menu and every way to close.
#include <QAction>
#include <QCursor>
#include <QMenu>
#include <QTabBar>

#include "app/window.h"
#include "ui_window.h"

void window::make_tab_menu() {
    tab_menu = new QMenu(ui->main_tab->tabBar());
    const auto add = [this](const QString& text, void (window::*slot)()) {
        if (!tab_menu->isEmpty()) tab_menu->addSeparator();
        QAction* action = tab_menu->addAction(text);
        connect(action, &QAction::triggered, this, slot, Qt::UniqueConnection);
        return action;
    };
    act_close = add(QStringLiteral("关闭"), &window::slot_tabbar_close_this);
    act_close_other = add(QStringLiteral("关闭其他"), &window::slot_tabbar_close_other);
    act_close_left = add(QStringLiteral("关闭左侧 ⏪"), &window::slot_tabbar_close_left);
    act_close_right = add(QStringLiteral("关闭右侧 ⏩"), &window::slot_tabbar_close_right);
    act_close_all = add(QStringLiteral("关闭所有"), &window::slot_tabbar_close_all);
}

/** An entry that was once disabled stays so until the program ends: nothing here enables one again, on
 * purpose. */
void window::slot_tabbar_right_menu() {
    const int current = ui->main_tab->currentIndex();
    const int count = ui->main_tab->count();
    QList<QAction*> disabled;
    if (current == 0 && count == 1) {
        disabled = {act_close, act_close_other, act_close_left, act_close_right, act_close_all};
    } else if (current == 0) {
        disabled = {act_close, act_close_left};
    } else if (current == 1 && count == 2) {
        disabled = {act_close_other, act_close_left, act_close_right};
    } else if (current == 1) {
        disabled = {act_close_left};
    } else if (current + 1 == count) {
        disabled = {act_close_right};
    }
    for (QAction* action : qAsConst(disabled))
        action->setEnabled(false);
    tab_menu->exec(QCursor::pos());
}

void window::on_main_tab_tabBarClicked(int index) {
    ui->main_tab->setCurrentIndex(index);
}

void window::on_main_tab_tabCloseRequested(int index) {
    close_tab(index);
}

void window::slot_tabbar_close_this() {
    close_tab(ui->main_tab->currentIndex());
}

void window::slot_tabbar_close_left() {
    while (ui->main_tab->currentIndex() > 1)
        close_tab(ui->main_tab->currentIndex() - 1);
}

void window::slot_tabbar_close_right() {
    while (ui->main_tab->currentIndex() + 1 < ui->main_tab->count()) {
        close_tab(ui->main_tab->currentIndex() + 1);
    }
}

void window::slot_tabbar_close_other() {
    slot_tabbar_close_right();
    slot_tabbar_close_left();
}

void window::slot_tabbar_close_all() {
    while (ui->main_tab->count() > 1)
        close_tab(1);
}

/** Tab 0 is the home page, which is part of this window and stays as long as it. */
void window::close_tab(int index) {
    if (index < 1) return;
    QWidget* tab = ui->main_tab->widget(index);
    const QString key = tab->property("action").toString();
    ui->main_tab->removeTab(index);
    open_tabs.remove(key);
    tab->deleteLater();
}
