#pragma once
#include <QString>
#include <QTableWidget>
#include <QWidget>

#include "documents/partner_field.h"
#include "documents/pickers.h"
#include "model/document_kinds.h"
#include "model/record_columns.h"
#include "widgets/context_menu.h"
#include "widgets/fields.h"
#include "widgets/rights.h"

/** What the editors of documents share. Parts alone: each editor spells out its own steps. */

/** The id of a line that the service does not have yet. */
inline const QString g_id_of_a_new_line = QStringLiteral("0");

/** Shows of the fields company and dept the one that documents of this kind have. */
template <class form>
void show_partner_field(const form& ui, const document_kind& kind) {
    show_partner(kind, {{counterparty::company, ui.label_company, ui.txt_company, {ui.label_company_star}},
                        {counterparty::dept, ui.label_dept, ui.txt_dept, {ui.label_dept_star}}});
}

/** Opens the picker of the field that the event presses; gives whether it presses one. */
template <class editor, class form>
bool opens_picker(editor* asker, const form& ui, const document_kind& kind, QObject* object, QEvent* event) {
    if (is_pick(object, event, ui.txt_operater))
        pick_operater(asker, &editor::slot_emp_selected);
    else if (is_pick(object, event, ui.txt_company))
        pick_company(asker, kind.company_type, kind.picker_title, &editor::slot_company_selected);
    else if (is_pick(object, event, ui.txt_dept))
        pick_dept(asker, kind.picker_title, &editor::slot_dept_selected);
    else
        return false;
    return true;
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
 * delete says, and overrules it.
 */
template <class editor>
void apply_line_rights(editor* target, const QString& page) {
    emit_rights<editor>(target, page,
                        {{QStringLiteral("detail_add"), &editor::signal_enable_add},
                         {QStringLiteral("detail_delete"), &editor::signal_enable_delete},
                         {QStringLiteral("detail_print"), &editor::signal_enable_delete}});
}

/** The same for documents of a kind. Of no kind there are no rights, and nothing goes out. */
template <class editor>
void apply_line_rights(editor* target, const document_kind& kind) {
    if (!kind.page.isEmpty()) apply_line_rights(target, kind.page);
}
