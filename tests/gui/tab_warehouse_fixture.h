#pragma once
#include "gui/emp_fixture.h"
#include "master/dlg_search_emp.h"
#include "master/dlg_warehouse_add.h"
#include "master/tab_warehouse.h"

/**
 * A warehouse tab with three warehouses in it and two employees to keep them. Warehouse n has the id n, the
 * name "仓库n" and the keeper n; the first is the default.
 */
class warehouse_tab : public list_tab_test<tab_warehouse, emp_test> {
protected:
    static QJsonObject warehouse(int n) {
        const QString number = QString::number(n);
        return {{QStringLiteral("id"), number},
                {QStringLiteral("name"), QStringLiteral("仓库") + number},
                {QStringLiteral("phone"), QStringLiteral("phone") + number},
                {QStringLiteral("address"), QStringLiteral("address") + number},
                {QStringLiteral("keeper"), number},
                {QStringLiteral("keeper_name"), QStringLiteral("员工") + number},
                {QStringLiteral("mobile"), QStringLiteral("1380000000") + number.right(1)},
                {QStringLiteral("remark"), QStringLiteral("remark") + number},
                {QStringLiteral("isdefault"), n == 1 ? QStringLiteral("1") : QStringLiteral("0")},
                {QStringLiteral("datetime"), 1586696160 + n * 60}};
    }

    void open() {
        open_with({"search", "add", "edit", "delete"});
        server.forget();
    }

    void open_with(const std::vector<const char*>& rights) {
        grant("warehouse", rights);
        server.always("wms_emp/get_page", page_of({65, 200}));
        server.always("wms_warehouse/get_page", page_body({warehouse(1), warehouse(2), warehouse(3)}));
        show(std::make_unique<tab_warehouse>(nullptr));
    }

    /** Picks the employee of a row by a double click on him. */
    static void pick(dlg_search_emp* picker, int row) {
        auto* list = child<QTableWidget>(picker, "tablewidget");
        list->setCurrentCell(row, 1);
        picker->on_tablewidget_doubleClicked(list->currentIndex());
    }
};
