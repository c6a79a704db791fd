#pragma once
#include <QIntValidator>
#include <QLineEdit>
#include <QLocale>
#include <QScopedValueRollback>
#include <QString>
#include <QTableWidget>

#include "model/document_kinds.h"
#include "model/record_columns.h"
#include "widgets/context_menu.h"
#include "widgets/fields.h"

/** Parts that document editors and their line dialogs are made of. */

/** Lets only whole numbers within these bounds be typed, in digits alone whatever the user's locale. */
inline void set_whole_number(QLineEdit* field, int lowest, int highest) {
    auto* validator = new QIntValidator(lowest, highest, field);
    QLocale plain = QLocale::c();
    plain.setNumberOptions(QLocale::RejectGroupSeparator);
    validator->setLocale(plain);
    field->setValidator(validator);
}

/** The menu of a table of lines: add, delete, print. What an entry runs is for the mode to say. */
inline context_menu make_line_menu(QWidget* table) {
    context_menu made{new QMenu(table), {}};
    for (const QString& text : {QStringLiteral("添加"), QStringLiteral("删除"), QStringLiteral("打印")}) {
        if (!made.actions.isEmpty()) made.menu->addSeparator();
        made.actions.append(made.menu->addAction(text));
    }
    return made;
}

/** Names the field of the partner as the kind calls it, and hides what the kind has no use for. */
template <class form>
void show_partner(const form& ui, const document_kind& kind) {
    const bool company = kind.partner == counterparty::company;
    const bool dept = kind.partner == counterparty::dept;
    for (QWidget* part :
         {static_cast<QWidget*>(ui.label_company), static_cast<QWidget*>(ui.label_company_star),
          static_cast<QWidget*>(ui.txt_company)})
        part->setVisible(company);
    for (QWidget* part : {static_cast<QWidget*>(ui.label_dept), static_cast<QWidget*>(ui.label_dept_star),
                          static_cast<QWidget*>(ui.txt_dept)})
        part->setVisible(dept);
    if (company) ui.label_company->setText(kind.label);
    if (dept) ui.label_dept->setText(kind.label);
}

/** Says what the document lacks of the partner that its kind asks for; gives whether it lacks it. */
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

/**
 * The calls of an editor, one flow of them at a time: while one waits for its answers the user may go on
 * pressing buttons, and a second flow in the middle of the first would take its answers away.
 */
class call_flow {
public:
    /** Runs the calls unless others are under way; gives whether it did. */
    template <class calls>
    bool run(const calls& make_them) {
        if (running) return false;
        const QScopedValueRollback<bool> until_answered(running, true);
        make_them();
        return true;
    }

    bool under_way() const { return running; }

private:
    bool running = false;
};
