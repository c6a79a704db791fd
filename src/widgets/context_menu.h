#pragma once
#include <QAction>
#include <QList>
#include <QMenu>
#include <QString>
#include <QStringList>
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

/** A menu on `owner` with a separator between each two entries, which run nothing yet. */
inline context_menu make_context_menu(QWidget* owner, const QStringList& texts) {
    context_menu made{new QMenu(owner), {}};
    for (const QString& text : texts) {
        if (!made.actions.isEmpty()) made.menu->addSeparator();
        made.actions.append(made.menu->addAction(text));
    }
    return made;
}

/** The same with what the entries run. */
template <class screen>
context_menu make_context_menu(screen* target, QWidget* owner,
                               std::initializer_list<menu_entry<screen>> entries) {
    QStringList texts;
    for (const auto& entry : entries)
        texts.append(entry.text);
    context_menu made = make_context_menu(owner, texts);
    int i = 0;
    for (const auto& entry : entries)
        QObject::connect(made.actions[i++], &QAction::triggered, target, entry.run);
    return made;
}
