#pragma once
#include <QPair>
#include <QString>
#include <functional>
#include <initializer_list>

#include "gui/app/shell.h"
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
    explicit tour(const QString& folder);

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

    guide walk;
    browser web;
    window* shell = nullptr;
    /** Eight digits that no other tour has: for names and numbers that have to be new. */
    QString stamp;
    QString partner;
};
