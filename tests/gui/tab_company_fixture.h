#pragma once
#include <QAction>
#include <QMenu>
#include <memory>

#include "gui/company_fixture.h"
#include "master/tab_company.h"

/** A partner tab with three partners in it. */
class company_tab : public company_test {
protected:
    void open(int type = 1) {
        grant("company_other", {"search", "add", "edit", "delete"});
        open_with_rights_as_they_are(type);
    }

    void open_with_rights_as_they_are(int type) {
        server.always("wms_company/get_page", page_of(1, 3));
        tab = std::make_unique<tab_company>(nullptr, type);
        tab->show();
        table = child<QTableWidget>(tab.get(), "tablewidget");
    }

    QAction* action(const char* text) {
        for (QAction* a : child<QTableWidget>(tab.get(), "tablewidget")->findChild<QMenu*>()->actions())
            if (a->text() == QString::fromUtf8(text)) return a;
        throw std::runtime_error(std::string("no menu entry ") + text);
    }

    std::unique_ptr<tab_company> tab;
    QTableWidget* table = nullptr;
};
