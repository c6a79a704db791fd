#pragma once
#include <QComboBox>
#include <QContextMenuEvent>
#include <QSignalSpy>
#include <QTextEdit>

#include "documents/dlg_search_stock.h"
#include "gui/allot_samples.h"
#include "gui/list_fixture.h"
#include "stock/dlg_stock_allot_add.h"
#include "stock/dlg_stock_allot_detail_add.h"
#include "support/pick.h"

/**
 * The editor of transfers against a scripted service with the warehouses 一号仓 (id 3) and 二号仓 (id 8, the
 * default one). Claims get the ids C1, C2 and so on; the user has all rights.
 */
class allot_test : public list_test, protected allot_records {
protected:
    allot_test() {
        server.always(
            "wms_warehouse/get_option",
            R"([{"id":"3","name":"一号仓","isdefault":"0"},{"id":"8","name":"二号仓","isdefault":"1"}])");
        server.always(
            "wms_warehouse/get_option_with_stat",
            R"([{"id":"3","name":"一号仓","sum_amount":"40"},{"id":"8","name":"二号仓","sum_amount":"5"}])");
        server.always("wms_stock_detail/get_page", page_body({}));
        server.always("wms_stock_detail/lock_stock", [this](const recorded_request&) {
            return scripted_answer("C" + QByteArray::number(++claims));
        });
        server.always("wms_stock_detail/unlock_stock", "1");
        server.always("wms_stock_allot/do_add", R"({"http_state":1,"insert_id":"77"})");
        grant("stock_allot", {"detail_add", "detail_delete", "detail_print"});
        g_http.current_user.id = QStringLiteral("9");
        g_http.current_user.realname = QStringLiteral("王");
    }
    ~allot_test() override { g_http.current_user = struct_user(); }

    void open(int mode) {
        dialog = std::make_unique<dlg_stock_allot_add>(nullptr, mode);
        listed =
            std::make_unique<QSignalSpy>(dialog.get(), &dlg_stock_allot_add::signal_stock_allot_get_list);
        dialog->show();
        table = child<QTableWidget>(dialog.get(), "tablewidget");
    }

    QLineEdit* field(const char* name) { return child<QLineEdit>(dialog.get(), name); }
    QComboBox* source() { return child<QComboBox>(dialog.get(), "comb_warehouse_out"); }
    QComboBox* destination() { return child<QComboBox>(dialog.get(), "comb_warehouse_in"); }

    /** Goods go from 一号仓 to 二号仓, handled by the employee 3. */
    void choose_all() {
        source()->setCurrentIndex(1);
        destination()->setCurrentIndex(2);
        dialog->slot_emp_selected(employee("3", "员工"));
    }

    /** Writes a line with the line dialog: so many units of a stock row. */
    void add_line(const struct_stock& row, int amount) {
        with_modal_of<dlg_stock_allot_detail_add>([this] { click(dialog.get(), "btn_add"); },
                                                  [&](dlg_stock_allot_detail_add* line) {
                                                      line->slot_stock_selected(row);
                                                      type_into(line, "txt_amount", QString::number(amount));
                                                      click(line, "btn_save");
                                                  });
    }
    void add_line(int n, int amount) { add_line(stock(n), amount); }

    /** A new transfer with a line of n units of each of these stock rows n. */
    void write(std::initializer_list<int> rows) {
        claims = 0;
        open(0);
        choose_all();
        for (int n : rows)
            add_line(n, n);
        server.forget();
    }

    void remove(QMessageBox::StandardButton answer = QMessageBox::Yes) {
        with_question([this] { click(dialog.get(), "btn_delete"); }, QStringLiteral("确认删除"),
                      QStringLiteral("确认删除吗？"), answer);
    }

    /** What went over the wire, but for what boxes and pickers ask when they open. */
    QStringList wire() const {
        QStringList calls;
        for (const auto& request : server.requests())
            if (!request.path.startsWith("wms_warehouse/") && request.path != "wms_stock_detail/get_page")
                calls.append(QString::fromUtf8(request.path + ' ' + request.body));
        return calls;
    }

    static QStringList unlocks(std::initializer_list<const char*> ids) {
        QStringList calls;
        for (const char* id : ids)
            calls.append(QStringLiteral("wms_stock_detail/unlock_stock locked_id=") + QString::fromUtf8(id) +
                         QStringLiteral("&lock_type=1"));
        return calls;
    }

    int claims = 0;
    std::unique_ptr<dlg_stock_allot_add> dialog;
    std::unique_ptr<QSignalSpy> listed;
    QTableWidget* table = nullptr;
};
