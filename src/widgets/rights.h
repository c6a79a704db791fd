#pragma once
#include <QAction>
#include <QList>
#include <QString>
#include <QStringList>
#include <QWidget>
#include <vector>

#include "net/http.h"

/** A right of a page and the signal by which a screen enables what needs it. */
template <class screen>
struct right_signal {
    QString right;
    void (screen::*enable)(bool);
};

/** The rights of a plain list or tree in the order in which they are looked at. */
template <class screen>
std::vector<right_signal<screen>> list_rights(const QString& right_to_add = QStringLiteral("add")) {
    return {{QStringLiteral("search"), &screen::signal_enable_search},
            {right_to_add, &screen::signal_enable_add},
            {QStringLiteral("edit"), &screen::signal_enable_edit},
            {QStringLiteral("delete"), &screen::signal_enable_delete}};
}

/** A right that is lacking hides the button and greys the menu entry. */
template <class screen>
void enable_with(screen* target, void (screen::*enable)(bool), QWidget* button, QAction* entry) {
    QObject::connect(target, enable, button, &QWidget::setVisible);
    QObject::connect(target, enable, entry, &QAction::setEnabled);
}

/** Without the right to search its button is hidden and the whole screen is grey. */
template <class screen>
void enable_search_with(screen* target, QWidget* button) {
    QObject::connect(target, &screen::signal_enable_search, button, &QWidget::setVisible);
    QObject::connect(target, &screen::signal_enable_search, target, &QWidget::setEnabled);
}

/**
 * The rights of a plain list: its form has a button for each (btn_search, btn_add, btn_edit, btn_delete), its
 * menu begins with the entries of the same order.
 */
template <class screen, class form>
void enable_list(screen* target, const form& ui, const QList<QAction*>& entries) {
    enable_search_with(target, ui.btn_search);
    enable_with(target, &screen::signal_enable_add, ui.btn_add, entries[1]);
    enable_with(target, &screen::signal_enable_edit, ui.btn_edit, entries[2]);
    enable_with(target, &screen::signal_enable_delete, ui.btn_delete, entries[3]);
}

/**
 * The rights of a screen that govern the entries of its menu (search, add, edit, delete) and no button.
 * Without the search right the whole screen is grey.
 */
template <class screen>
void enable_entries(screen* target, const QList<QAction*>& entries) {
    QObject::connect(target, &screen::signal_enable_search, target, &QWidget::setEnabled);
    QObject::connect(target, &screen::signal_enable_add, entries[1], &QAction::setEnabled);
    QObject::connect(target, &screen::signal_enable_edit, entries[2], &QAction::setEnabled);
    QObject::connect(target, &screen::signal_enable_delete, entries[3], &QAction::setEnabled);
}

/**
 * One pass over the rights of a page: each right's signal goes out with whether the user has it, in order.
 * `granted` is called with a right that he has, before its signal goes out.
 */
template <class screen, class action>
void emit_rights(screen* target, const QString& page, const std::vector<right_signal<screen>>& rights,
                 const action& granted) {
    const QStringList granted_rights = g_http.rights[page];
    for (const auto& entry : rights) {
        const bool has = granted_rights.contains(entry.right);
        if (has) granted(entry.right);
        emit(target->*entry.enable)(has);
    }
}

/** The same with signals alone. */
template <class screen>
void emit_rights(screen* target, const QString& page, const std::vector<right_signal<screen>>& rights) {
    emit_rights(target, page, rights, [](const QString&) {});
}

/** The same; the right "search" also loads the list, before its signal goes out. */
template <class screen>
void apply_rights(screen* target, const QString& page, void (screen::*search)(),
                  const std::vector<right_signal<screen>>& rights) {
    emit_rights(target, page, rights, [target, search](const QString& right) {
        if (right == QLatin1String("search")) (target->*search)();
    });
}
