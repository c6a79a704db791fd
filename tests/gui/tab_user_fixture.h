#pragma once
#include <memory>

#include "access/tab_user.h"
#include "gui/user_fixture.h"

/** The tab with the users 1 (enabled), 2 (disabled) and 3 (enabled). */
class user_tab : public user_test {
protected:
    /** As an administrator. */
    void open() {
        g_http.current_user.type = 1;
        open_as_is();
    }

    void open_as_is() {
        server.always("user/get_page", page_of({1, 2, 3}));
        tab = std::make_unique<tab_user>();
        tab->show();
        table = child<QTableWidget>(tab.get(), "tablewidget");
    }

    QAction* action(const char* text) { return menu_action(table, text); }

    std::unique_ptr<tab_user> tab;
    QTableWidget* table = nullptr;
};
