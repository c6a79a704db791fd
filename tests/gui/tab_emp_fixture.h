#pragma once
#include "gui/emp_fixture.h"
#include "master/dlg_emp_add.h"
#include "master/tab_emp.h"

/** An employee tab with three employees in it. */
class emp_tab : public list_tab_test<tab_emp, emp_test> {
protected:
    void open() {
        open_with({"search", "add", "edit", "delete"});
        server.forget();
    }

    void open_with(const std::vector<const char*>& rights) {
        grant("emp", rights);
        server.always("wms_emp/get_page", page_of({1, 2, 3}));
        show(std::make_unique<tab_emp>(nullptr));
    }
};
