#pragma once
#include <QTextEdit>

#include "documents/dlg_search_stock.h"
#include "gui/claims_fixture.h"
#include "stock/dlg_stock_taking_add.h"
#include "stock/dlg_stock_taking_detail_add.h"

/** The stocktaking editor with all rights on lines. Stock rows are those of outstore_records. */
class taking_test : public claims_test {
protected:
    taking_test() {
        server.always("wms_stock_taking/do_add", R"({"http_state":1,"insert_id":"77"})");
        server.always("wms_stock_taking/update_profitloss", "1");
        grant("stock_taking", {"detail_add", "detail_delete", "detail_print"});
    }

    static QString u(const char* text) { return QString::fromUtf8(text); }

    void open(int mode) {
        dialog = std::make_unique<dlg_stock_taking_add>(nullptr, mode);
        listed =
            std::make_unique<QSignalSpy>(dialog.get(), &dlg_stock_taking_add::signal_stock_taking_get_list);
        dialog->show();
        table = child<QTableWidget>(dialog.get(), "tablewidget");
    }

    /** Opens a new document with a line each of these stock rows; a unit is missing of each. */
    void open_with_lines(std::initializer_list<int> rows) {
        open(0);
        for (int n : rows)
            add_line(n, n * 10 - 1);
        server.forget();
    }

    QLineEdit* field(const char* name) { return child<QLineEdit>(dialog.get(), name); }

    void pick_operater() {
        struct_emp operater;
        operater.id = QStringLiteral("3");
        operater.name = QStringLiteral("员工");
        dialog->slot_emp_selected(operater);
    }

    /** Writes a line with the line dialog: so many units of a stock row are counted. */
    void add_line(const struct_stock& row, int counted) {
        with_modal_of<dlg_stock_taking_detail_add>([this] { click(dialog.get(), "btn_add"); },
                                                   [&](dlg_stock_taking_detail_add* line) {
                                                       line->slot_stock_selected(row);
                                                       type_into(line, "txt_real_amount",
                                                                 QString::number(counted));
                                                       click(line, "btn_submit");
                                                   });
    }
    void add_line(int n, int counted) { add_line(stock(n), counted); }

    /** Presses the button that deletes lines, and answers the question. */
    void remove(QMessageBox::StandardButton answer = QMessageBox::Yes) {
        with_question([this] { click(dialog.get(), "btn_delete"); }, QStringLiteral("确认删除"),
                      QStringLiteral("确认删除吗？"), answer);
    }

    /** The calls that give these claims back. */
    static QStringList unlocks(std::initializer_list<const char*> ids) {
        QStringList calls;
        for (const char* id : ids)
            calls.append(QStringLiteral("wms_stock_detail/unlock_stock locked_id=") + QString::fromUtf8(id) +
                         QStringLiteral("&lock_type=2"));
        return calls;
    }

    /** A line that the service gave with a saved document: a unit of stock row n is missing. */
    static struct_stock_taking_detail counted_line(int n) {
        const struct_stock row = stock(n);
        struct_stock_taking_detail line;
        line.id = QStringLiteral("L") + row.id;
        line.stock_id = row.id;
        line.main_id = QStringLiteral("77");
        line.product = row.product;
        line.product_name = row.product_name;
        line.code = row.code;
        line.price = row.price;
        line.sys_amount = row.amount;
        line.real_amount = row.amount - 1;
        line.remark = row.remark;
        line.spec = row.spec;
        line.profitloss_amount = -1;
        line.profitloss_total = -n;
        line.warehouse = row.warehouse;
        line.warehouse_name = row.warehouse_name;
        line.place = row.place;
        return line;
    }

    static struct_stock_taking saved_taking() {
        struct_stock_taking saved;
        saved.id = QStringLiteral("77");
        saved.sn = QStringLiteral("PD1");
        saved.operater = QStringLiteral("3");
        saved.operater_name = QStringLiteral("李");
        saved.writer = QStringLiteral("8");
        saved.writer_name = QStringLiteral("王");
        saved.remark = QStringLiteral("急");
        saved.details = {counted_line(1), counted_line(2)};
        return saved;
    }

    std::unique_ptr<dlg_stock_taking_add> dialog;
    std::unique_ptr<QSignalSpy> listed;
    QTableWidget* table = nullptr;
};
