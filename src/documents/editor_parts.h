#pragma once
#include <QLabel>
#include <QLineEdit>
#include <QString>
#include <QTableWidget>
#include <QWidget>

#include "model/document_kinds.h"
#include "model/record_columns.h"
#include "widgets/context_menu.h"
#include "widgets/fields.h"
#include "widgets/rights.h"

/** What the editors of documents share. Parts alone: each editor spells out its own steps. */

/** Shows the field of the partner that documents of this kind have, under the kind's label, and no other. */
template <class form>
void show_partner(const form& ui, const document_kind& kind) {
    const auto show = [&kind](bool shown, QLabel* label, QLabel* star, QLineEdit* field) {
        if (shown) label->setText(kind.label);
        for (QWidget* part :
             {static_cast<QWidget*>(label), static_cast<QWidget*>(star), static_cast<QWidget*>(field)})
            part->setVisible(shown);
    };
    show(kind.partner == counterparty::company, ui.label_company, ui.label_company_star, ui.txt_company);
    show(kind.partner == counterparty::dept, ui.label_dept, ui.label_dept_star, ui.txt_dept);
}

/** Says which partner the document lacks of those that its kind asks for; gives whether it lacks one. */
template <class form, class document>
bool lacks_partner(const form& ui, const document_kind& kind, const document& written) {
    if (kind.partner == counterparty::company)
        return fails(written.company.isEmpty(), ui.txt_company, kind.missing);
    return fails(kind.partner == counterparty::dept && written.dept.isEmpty(), ui.txt_dept, kind.missing);
}

/** The record that a row shows, hidden columns included, without the blanks around its texts. */
template <class record>
record read_trimmed(const QTableWidget* table, int row, const record_columns<record>& columns) {
    record result;
    for (int i = 0; i < int(columns.size()); ++i)
        columns[size_t(i)].take(result, cell_text(table, row, i).trimmed());
    return result;
}

/** The menu of a table of lines. What an entry runs is for the mode to say. */
inline context_menu make_line_menu(QWidget* table) {
    return make_context_menu(table, {QStringLiteral("添加"), QStringLiteral("删除"), QStringLiteral("打印")});
}

/** Shows the header of a saved document. */
template <class form, class document>
void show_header(const form& ui, const document& saved) {
    ui.txt_sn->setText(saved.sn);
    ui.txt_writer->setText(saved.writer_name);
    ui.txt_operater->setText(saved.operater_name);
    ui.txt_company->setText(saved.company_name);
    ui.txt_remark->setText(saved.remark);
    ui.txt_dept->setText(saved.dept_name);
}

/** Hides what a document that is being written does not have yet. `first` is the label that then begins the
 * row and needs no distance from what is before it. */
template <class form>
void hide_what_saving_brings(const form& ui, QLabel* first) {
    first->setIndent(0);
    for (QWidget* part : {static_cast<QWidget*>(ui.btn_print), static_cast<QWidget*>(ui.label_sn),
                          static_cast<QWidget*>(ui.txt_sn), static_cast<QWidget*>(ui.label_writer),
                          static_cast<QWidget*>(ui.txt_writer)})
        part->hide();
}

/** Hides what writes: a saved document is only read. */
template <class form>
void hide_what_writes(const form& ui) {
    ui.txt_remark->setReadOnly(true);
    for (QWidget* part : {ui.btn_add, ui.btn_delete, ui.btn_submit})
        part->hide();
}

/** Shows or hides the buttons of an editor, and greys the entries of its menu, by its signals. */
template <class editor, class form>
void enable_lines(editor* target, const form& ui, const QList<QAction*>& entries) {
    enable_with(target, &editor::signal_enable_add, ui.btn_add, entries[0]);
    enable_with(target, &editor::signal_enable_delete, ui.btn_delete, entries[1]);
    enable_with(target, &editor::signal_enable_print, ui.btn_print, entries[2]);
}

/**
 * The rights pass of an editor. Kept on purpose: what the right to print says goes out as what the right to
 * delete says, and overrules it. Of no kind there are no rights, and nothing goes out.
 */
template <class editor>
void apply_line_rights(editor* target, const document_kind& kind) {
    if (kind.page.isEmpty()) return;
    apply_rights<editor>(target, kind.page, nullptr,
                         {{QStringLiteral("detail_add"), &editor::signal_enable_add},
                          {QStringLiteral("detail_delete"), &editor::signal_enable_delete},
                          {QStringLiteral("detail_print"), &editor::signal_enable_delete}});
}
