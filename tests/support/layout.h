#pragma once
#include <qnamespace.h>
#include <QSize>
#include <QStringList>
#include <vector>

class QTableWidget;
class QWidget;

/** The entries of the context menu of a table, "-" for a separator. */
QStringList menu_texts(const QTableWidget* table);

/** Checks that the context menu of a table opens, and where the pointer is. */
void expect_menu_at_pointer(QTableWidget* table);

/** Walks the focus from the first of these widgets and checks that it meets them in that order. */
void expect_tab_order(const QWidget* screen, const std::vector<const char*>& in_order);

/** A row of a form: the field txt_NAME, its label label_NAME and, when required, a marker between them.
 */
struct form_row {
    const char* name;
    const char* text;
    bool required;
};

/** Checks that labels, markers and fields stand in rows, in that order from the top. */
void expect_form_rows(const QWidget* dialog, const std::vector<form_row>& rows);

/** Checks size and flags of a dialog; title and system menu come with any button. */
void expect_window(const QWidget* dialog, QSize size, Qt::WindowFlags buttons);

/** Checks the label of a search field, and that it stands before the field. */
void expect_label_of(const QWidget* screen, const char* field, const char* text);

/** Checks that widgets stand from left to right. */
void expect_left_to_right(const QWidget* screen, const std::vector<const char*>& in_order);

/** Checks that a label takes no more room than its text and stands right before the field. */
void expect_label_at_its_field(const QWidget* screen, const char* label, const char* field);

/** Checks that the row of fields begins where the table below it does. */
void expect_first_label_at_the_table(const QWidget* screen, const char* label);
