#pragma once
#include "gui/company_fixture.h"
#include "master/tab_company.h"

/** A partner tab with three partners in it. */
class company_tab : public list_tab_test<tab_company, company_test> {
protected:
    void open(int type = 1) {
        grant("company_other", {"search", "add", "edit", "delete"});
        open_with_rights_as_they_are(type);
    }

    void open_with_rights_as_they_are(int type) {
        server.always("wms_company/get_page", page_of(1, 3));
        show(std::make_unique<tab_company>(nullptr, type));
    }
};
