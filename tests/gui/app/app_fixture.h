#pragma once
#include <QByteArray>
#include <QString>
#include <QStringList>

#include "gui/app/shell.h"
#include "support/client_fixture.h"

/** A menu table with one group, the three partner pages with all rights, and a page without a screen. */
extern const char* const menu_table;

/** A page of one partner. */
extern const char* const partner_page;

/** A test of the shell: a scripted service, a browser that only notes, and a logged-in user on demand. */
class app_test : public client_test {
protected:
    app_test();
    ~app_test() override;

    /** The session state of an administrator of that name. */
    static void log_in_administrator(const QString& name = QStringLiteral("boss"));
    /** The session state of an ordinary user with these menu rows. */
    static void log_in_clerk(const QStringList& granted_rows);
    /** Answers to the menu table and to every list of partners. */
    void serve_menu_and_partners();
    /** The body of a login answer. */
    static QByteArray login_answer(const char* name, int type = 1, const char* permissions = "[]");

    browser web;
};
