#include "widgets/context_menu.h"

#include <QMenu>

QMenu* make_context_menu(QWidget* owner, const QList<QAction*>& actions) {
    auto* menu = new QMenu(owner);
    for (QAction* action : actions) {
        if (!menu->isEmpty()) menu->addSeparator();
        menu->addAction(action);
    }
    return menu;
}
