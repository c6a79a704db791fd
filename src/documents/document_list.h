#pragma once
#include <QLineEdit>
#include <QPushButton>
#include <QString>

#include "documents/partner_field.h"
#include "model/document_kinds.h"
#include "widgets/modes.h"
#include "widgets/rights.h"

// What the lists of documents share.

/** The rights of a list of documents in the order in which they are looked at. */
template <class screen>
std::vector<right_signal<screen>> document_rights() {
    return {{QStringLiteral("search"), &screen::signal_enable_search},
            {QStringLiteral("add"), &screen::signal_enable_add},
            {QStringLiteral("view"), &screen::signal_enable_view},
            {QStringLiteral("delete"), &screen::signal_enable_delete},
            {QStringLiteral("print"), &screen::signal_enable_print}};
}

/**
 * The rights of a list of documents: its form has a button for each, its menu the entries search, view, add,
 * delete and print. Without the right to search its fields open no picker either.
 */
template <class screen, class form>
void enable_document_list(screen* target, const form& ui, const QList<QAction*>& entries) {
    enable_search_with(target, ui.btn_search);
    QObject::connect(target, &screen::signal_enable_search, target, &screen::slot_text_filter);
    enable_with(target, &screen::signal_enable_view, ui.btn_view, entries[1]);
    enable_with(target, &screen::signal_enable_add, ui.btn_add, entries[2]);
    enable_with(target, &screen::signal_enable_delete, ui.btn_delete, entries[3]);
    enable_with(target, &screen::signal_enable_print, ui.btn_print, entries[4]);
}

/** Makes the watcher see the events of these fields, or see them no longer. */
inline void watch_fields(QObject* watcher, std::initializer_list<QWidget*> fields, bool on) {
    for (QWidget* field : fields)
        if (on)
            field->installEventFilter(watcher);
        else
            field->removeEventFilter(watcher);
}

/** Shows of the criteria company and dept the one that documents of this kind have. */
template <class form>
void show_partner_criterion(const form& ui, const document_kind& kind) {
    show_partner(kind, {{counterparty::company, ui.label_company, ui.txt_company, {}},
                        {counterparty::dept, ui.label_dept, ui.txt_dept, {}}});
}

/** Takes what a picker handed over as a criterion for the next searches; `nothing` lifts the restriction. */
inline void take_criterion(QString& criterion, QLineEdit* field, bool nothing, const QString& id,
                           const QString& name) {
    criterion = nothing ? QString() : id;
    field->setText(nothing ? QStringLiteral("【全部】") : name);
}

/** The window title of the editor of a saved document. */
inline QString title_of_saved(const document_kind& kind, int mode) {
    return (mode == document_edit ? QStringLiteral("编辑") : QStringLiteral("查看")) + kind.name;
}

/** The window title of the editor of a new document. */
inline QString title_of_new(const document_kind& kind) {
    return QStringLiteral("添加") + kind.name;
}
