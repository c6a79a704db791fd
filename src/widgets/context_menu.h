#pragma once
#include <QAction>
#include <QList>
#include <QMenu>
#include <QString>
#include <initializer_list>

/** An entry of a context menu and what it runs. */
template <class screen>
struct menu_entry {
    QString text;
    void (screen::*run)();
};

/** A context menu with its actions in their order, separators not among them. */
struct context_menu {
    QMenu* menu = nullptr;
    QList<QAction*> actions;
};

/** A menu on `owner` with a separator between each two entries. */
template <class screen>
context_menu make_context_menu(screen* target, QWidget* owner,
                               std::initializer_list<menu_entry<screen>> entries) {
    context_menu made{new QMenu(owner), {}};
    for (const auto& entry : entries) {
        if (!made.actions.isEmpty()) made.menu->addSeparator();
        QAction* action = made.menu->addAction(entry.text);
        QObject::connect(action, &QAction::triggered, target, entry.run);
        made.actions.append(action);
    }
    return made;
}
