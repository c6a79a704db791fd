#pragma once
#include <QContextMenuEvent>
#include <QTextEdit>

#include "documents/dlg_outstore_add.h"
#include "documents/dlg_outstore_detail_add.h"
#include "documents/dlg_search_stock.h"
#include "gui/claims_fixture.h"
#include "model/model_outstore_detail.h"
#include "support/kinds.h"

/**
 * Outbound documents against a scripted service. Stock row n has the id n, the product pn with the name
 * "货n", costs n and a half and has n times 10 units; it lies at place An of the warehouse wn. Claims get the
 * ids C1, C2 and so on.
 */
class outstore_test : public claims_test {
protected:
    outstore_test() {
        server.always("wms_outstore/do_add", R"({"http_state":1,"insert_id":"77"})");
        server.always("wms_outstore/update_total", "1");
    }

    void open(int mode, int type = 6) {
        dialog = std::make_unique<dlg_outstore_add>(nullptr, mode, type);
        listed = std::make_unique<QSignalSpy>(dialog.get(), &dlg_outstore_add::signal_outstore_get_list);
        dialog->show();
        table = child<QTableWidget>(dialog.get(), "tablewidget");
    }

    QLineEdit* field(const char* name) { return child<QLineEdit>(dialog.get(), name); }

    /** Picks the operator 3 and, as far as the kind has one, the partner 4. */
    void pick_people(const known_kind& kind) {
        struct_emp operater;
        operater.id = QStringLiteral("3");
        operater.name = QStringLiteral("员工");
        dialog->slot_emp_selected(operater);
        if (kind.has("company")) {
            struct_company company;
            company.id = QStringLiteral("4");
            company.name = QStringLiteral("单位");
            dialog->slot_company_selected(company);
        } else if (kind.has("dept")) {
            dialog->slot_dept_selected(dept());
        }
    }
    void pick_operater() { pick_people(outbound_rows[5]); }

    /** Writes a line with the line dialog: so many units of a stock row. */
    void add_line(const struct_stock& row, int amount) {
        with_modal_of<dlg_outstore_detail_add>([this] { click(dialog.get(), "btn_add"); },
                                               [&](dlg_outstore_detail_add* line) {
                                                   line->slot_stock_selected(row);
                                                   type_into(line, "txt_amount", QString::number(amount));
                                                   click(line, "btn_save");
                                               });
    }
    void add_line(int n, int amount) { add_line(stock(n), amount); }

    std::unique_ptr<dlg_outstore_add> dialog;
    std::unique_ptr<QSignalSpy> listed;
    QTableWidget* table = nullptr;
};

/** The same for each kind. */
class outstore_kind : public outstore_test, public testing::WithParamInterface<known_kind> {
protected:
    bool uses(const char* partner) const { return GetParam().has(partner); }
};
