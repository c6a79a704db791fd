#pragma once
#include <QString>

#include "gui/app/shell.h"
#include "tour/guide.h"

class QTableWidget;
class window;

/** The steps, in the order in which a person would go: as an administrator, a clerk and a guest. */
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
    void clerk_steps();
    void guest_steps();

    void submit(QWidget* login, const char* name, const QString& password);
    void relogin_as(const char* step_name, const char* user);
    void right_click_row(int row);
    QWidget* front() const;
    QTableWidget* table() const;

    guide walk;
    browser web;
    window* shell = nullptr;
    QString partner;
};
