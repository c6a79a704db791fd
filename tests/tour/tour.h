#pragma once
#include <QPair>
#include <QSize>
#include <QString>
#include <functional>
#include <initializer_list>
#include <vector>

#include "gui/app/shell.h"
#include "model/document_kinds.h"
#include "tour/guide.h"

class QTableWidget;
class QTreeView;
class window;

/**
 * The steps, in the order in which a person would go: as an administrator, a clerk, a keeper and a guest.
 * What they add they delete again: the next tour finds the data as this one did.
 */
class tour {
public:
    /** `screen`: how large the main window is. */
    tour(const QString& folder, QSize screen);

    /** To be called with the login dialog that the start of the program has opened; logs in. */
    void login_steps(QWidget* login);
    /** To be called with the main window that is up; returns when everything has been seen. */
    void main_steps(window& shown);
    int steps() const { return walk.steps(); }

private:
    void shell_steps();
    void list_steps();
    void edit_steps();
    void add_steps();
    void other_steps();
    void department_steps();
    void new_department(QWidget* page);
    void department_picker();
    void category_steps();
    void product_steps();
    void new_product();
    void product_filter();
    void product_picker();
    void employee_steps();
    void warehouse_steps();
    void choose_keeper(QWidget* dialog);
    void document_steps();
    void document_tabs(const std::vector<document_kind>& kinds);
    void purchase_steps();
    void purchase_header(QWidget* editor);
    void first_purchase_line(QWidget* editor);
    void production_steps();
    void other_inbound_steps();
    void stock_steps();
    void sale_steps();
    void first_sale_line(QWidget* editor);
    void abandoned_sale();
    void receive_steps();
    void other_outbound_steps();
    void summary_steps();
    void taking_steps();
    void taking_lines(QWidget* editor);
    void transfer_steps();
    void transfer_header(QWidget* editor);
    void transfer_line(QWidget* editor);
    void documents_deleted();
    void user_steps();
    void new_user();
    void grant_steps();
    void open_grants(const char* user, const std::function<void(QWidget*)>& look);
    void menu_steps();
    void menu_dialogs(QWidget* administration);
    void sign_up_steps(QWidget* login);
    void clerk_steps();
    void keeper_steps();
    void guest_steps();

    void submit(QWidget* login, const char* name, const QString& password);
    void relogin_as(const char* step_name, const char* user);
    void open_page(const char* key, const QString& title);
    /** Opens the dialog that the button of the page in front opens, with the picture of it. */
    void open_dialog(const char* button, const QString& title, const std::function<void(QWidget*)>& look);
    /** Opens the picker behind a field; for what `look` leaves open the tour closes the picker. */
    void open_picker(QWidget* owner, const char* field, const QString& title,
                     const std::function<void(QWidget*)>& look);
    /** As open_dialog, for a button of a dialog. */
    void open_dialog_of(QWidget* owner, const char* button, const QString& title,
                        const std::function<void(QWidget*)>& look);
    /** Takes a row of a picker with a table, with the picture if it is to be `seen`; gives its first text. */
    QString take_row(QWidget* picker, int row, bool seen);
    /** Opens the picker behind a field and takes a row of it. */
    QString pick_row(QWidget* owner, const char* field, const QString& title, int row, bool seen = true);
    void pick_department(QWidget* editor, const QString& title, const QString& name);

    /** Opens the editor of a new document of that kind, with the picture of it. */
    void write_document(const document_kind& kind, const std::function<void(QWidget*)>& look);
    /** Presses "保存" in an editor, with the picture of it, and finds the document on top of the list. */
    void save_document(QWidget* editor);
    /** Opens the document on top of the list, which has so many lines, with the picture of it. */
    void view_document(const document_kind& kind, int lines, const std::function<void(QWidget*)>& look);
    /** The same under a title that no kind gives. */
    void view_top_document(const QString& title, int lines, const std::function<void(QWidget*)>& look);
    void delete_document(const document_kind& kind, const char* step_name);
    /** The same for the documents of a page that have no kinds. */
    void delete_top_document(const char* page, const QString& tab, const char* step_name);
    /** Writes the lines of an inbound document from that one on to before the other one. */
    void put_lines(QWidget* editor, int first, int end);
    void pick_product(QWidget* line, int number, bool seen);
    void finish_line(QWidget* line, int number, bool seen);
    /** Writes a line of an outbound document: so many of that stock row; without an amount all of it. */
    void put_stock_line(QWidget* editor, int row, const QString& amount);
    void take_stock(QWidget* line, int row, bool seen);
    /** Takes a stock row of the tour in a picker of that title, which shows so many of them. */
    void take_own_stock(QWidget* line, const QString& title, int rows, int row, bool seen);
    /** Finds the stock that the documents of this tour have made, in the list or in the picker. */
    void search_own_stock(QWidget* where);
    /** What all documents of this tour and their lines have as their remark. */
    QString remark_of_documents() const;
    QString top_remark() const;
    void see_maximised(QWidget* editor);
    /** Opens the print preview, with the picture of it, and prints to a file beside the pictures. */
    void see_preview(QWidget* owner, const QString& file);

    /** Deletes the row on top, which has to have that text in that column. */
    void delete_top_row(const QString& name, int column = 1);
    void answer_yes(QWidget* question);
    void right_click_row(int row);
    void right_click_node(QTreeView* tree, const QString& name);
    int row_named(const QString& name) const;
    QWidget* front() const;
    QTableWidget* table() const;

    using texts = std::initializer_list<QPair<const char*, QString>>;
    static void fill(QWidget* dialog, texts fields);
    /** Where a list has what, by its header. */
    static int column_named(const QTableWidget* table, const QString& header);

    guide walk;
    QSize screen_size;
    browser web;
    window* shell = nullptr;
    /** Eight digits that no other tour has: for names and numbers that have to be new. */
    QString stamp;
    QString partner;
};
