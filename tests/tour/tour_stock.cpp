// The part of the tour that goes through the stock and the outbound documents that take from it: what the
// inbound documents of the tour have brought.
#include <QComboBox>
#include <QLineEdit>
#include <QTableWidget>
#include <QTest>

#include "support/screen.h"
#include "tour/tour.h"

namespace {

/** The whole quantity of the stock row that the line dialog has. */
QString amount_in(const QWidget* line) {
    return child<QLineEdit>(line, "txt_amount")->text();
}

} // namespace

void tour::search_own_stock(QWidget* where) {
    child<QLineEdit>(where, "txt_remark")->setText(remark_of_documents());
    QTest::keyClick(child<QLineEdit>(where, "txt_remark"), Qt::Key_Return);
}

void tour::stock_steps() {
    walk.step("stock_list", [&] {
        open_page("stock_detail", QStringLiteral("库存明细"));
        walk.expect(table()->rowCount() >= 6, QStringLiteral("what the documents have brought"));
        walk.picture();
    });
    walk.step("stock_search", [&] {
        auto* warehouses = child<QComboBox>(front(), "comb_warehouse");
        warehouses->setCurrentIndex(warehouses->findText(QStringLiteral("澜杉中心仓")));
        search_own_stock(front());
        walk.expect(table()->rowCount() == 6, QStringLiteral("a row for each line of the three documents"));
        const int place = column_named(table(), QStringLiteral("存储位置"));
        walk.expect(table()->item(0, place)->text().endsWith(QStringLiteral("层")),
                    QStringLiteral("where the goods lie"));
        walk.picture();
    });
    walk.step("stock_menu", [&] {
        with_popup([&] { right_click_row(2); },
                   [&](QMenu* menu) {
                       walk.expect(entries(menu).size() == 3, QStringLiteral("two entries and a separator"));
                       walk.picture();
                   });
    });
    walk.step("stock_print", [&] { see_preview(front(), QStringLiteral("stock.pdf")); });
}

void tour::take_own_stock(QWidget* line, const QString& title, int rows, int row, bool seen) {
    open_picker(line, "txt_product_name", title, [&](QWidget* picker) {
        if (seen) walk.picture();
        search_own_stock(picker);
        walk.expect(child<QTableWidget>(picker, "tablewidget")->rowCount() == rows,
                    QStringLiteral("the rows of the tour"));
        take_row(picker, row, seen);
    });
}

void tour::take_stock(QWidget* line, int row, bool seen) {
    take_own_stock(line, QStringLiteral("查询选择库存"), 6, row, seen);
    walk.expect(!child<QLineEdit>(line, "txt_code")->text().isEmpty(), QStringLiteral("the goods"));
}

void tour::put_stock_line(QWidget* editor, int row, const QString& amount) {
    walk.with_modal([&] { click(editor, "btn_add"); },
                    [&](QWidget* line) {
                        take_stock(line, row, false);
                        if (!amount.isEmpty()) fill(line, {{"txt_amount", amount}});
                        click(line, "btn_save");
                        walk.expect(!line->isVisible(), QStringLiteral("the line is taken"));
                    });
}

void tour::sale_steps() {
    const document_kind& kind = outbound_kind(2);
    walk.step("sale_add", [&] {
        write_document(kind, [&](QWidget* editor) {
            walk.step("sale_operater",
                      [&] { pick_row(editor, "txt_operater", QStringLiteral("查询选择经办人"), 7); });
            walk.step("sale_without_client", [&] {
                click(editor, "btn_submit");
                walk.expect_tip(QStringLiteral("请选择客户"));
            });
            walk.step("sale_client", [&] { pick_row(editor, "txt_company", kind.picker_title, 1); });
            first_sale_line(editor);
            walk.step("sale_filled", [&] {
                put_stock_line(editor, 1, QStringLiteral("15"));
                walk.expect(child<QTableWidget>(editor, "tablewidget")->rowCount() == 2,
                            QStringLiteral("two lines"));
                save_document(editor);
            });
        });
    });
    walk.step("sale_saved", [&] { walk.picture(); });
    walk.step("sale_view", [&] {
        view_document(kind, 2, [&](QWidget* editor) {
            walk.step("sale_maximised", [&] { see_maximised(editor); });
            walk.step("sale_print", [&] { see_preview(editor, QStringLiteral("sale.pdf")); });
        });
    });
    walk.step("sale_list_print", [&] { see_preview(front(), QStringLiteral("sale_list.pdf")); });
    abandoned_sale();
}

void tour::first_sale_line(QWidget* editor) {
    const auto look = [this](QWidget* line) {
        walk.step("sale_line_without_stock", [&] {
            click(line, "btn_save");
            walk.expect_tip(QStringLiteral("请先选择库存"));
        });
        walk.step("sale_line_stock", [&] { take_stock(line, 0, true); });
        walk.step("sale_line_too_much", [&] {
            const QString most = amount_in(line);
            auto* amount = child<QLineEdit>(line, "txt_amount");
            amount->setText(most + QLatin1Char('0'));
            walk.expect_tip(QStringLiteral("不能超过当前最大库存：") + most);
            walk.expect(amount_in(line) == most, QStringLiteral("all there is"));
        });
        walk.step("sale_line_filled", [&] {
            fill(line, {{"txt_amount", QStringLiteral("10")}, {"txt_price", QStringLiteral("128.80")}});
            walk.expect(child<QLineEdit>(line, "txt_total")->text() == QStringLiteral("1288.00"),
                        QStringLiteral("the total"));
            walk.picture();
            click(line, "btn_save");
        });
    };
    walk.step("sale_line", [&] { open_dialog_of(editor, "btn_add", QStringLiteral("添加出库明细"), look); });
}

/** While a document is written nobody else gets what it takes; leaving it gives everything back. */
void tour::abandoned_sale() {
    walk.step("sale_abandoned", [&] {
        write_document(outbound_kind(2), [&](QWidget* editor) {
            put_stock_line(editor, 2, QString());
            walk.step("sale_claims_all", [&] {
                walk.with_modal([&] { click(editor, "btn_add"); },
                                [&](QWidget* line) {
                                    take_stock(line, 2, true);
                                    walk.expect(amount_in(line) == QStringLiteral("0"),
                                                QStringLiteral("nothing is left of that row"));
                                });
            });
            walk.picture();
            click(editor, "btn_cancel");
        });
        open_page("stock_detail", QStringLiteral("库存明细"));
        search_own_stock(front());
        const int amount = column_named(table(), QStringLiteral("数量"));
        walk.expect(table()->item(2, amount)->text() != QStringLiteral("0"),
                    QStringLiteral("all of it is back"));
        walk.picture();
    });
}

void tour::receive_steps() {
    const document_kind& kind = outbound_kind(3);
    walk.step("receive_add", [&] {
        write_document(kind, [&](QWidget* editor) {
            pick_row(editor, "txt_operater", QStringLiteral("查询选择经办人"), 3, false);
            walk.step("receive_without_department", [&] {
                click(editor, "btn_submit");
                walk.expect_tip(QStringLiteral("请选择领用部门"));
            });
            walk.step("receive_department",
                      [&] { pick_department(editor, kind.picker_title, QStringLiteral("拣货组")); });
            walk.step("receive_filled", [&] {
                put_stock_line(editor, 3, QStringLiteral("6"));
                save_document(editor);
            });
        });
    });
    walk.step("receive_view", [&] { view_document(kind, 1, [](QWidget*) {}); });
    walk.step("receive_list", [&] { walk.picture(); });
}

void tour::other_outbound_steps() {
    const document_kind& kind = outbound_kind(6);
    walk.step("other_outbound_add", [&] {
        write_document(kind, [&](QWidget* editor) {
            pick_row(editor, "txt_operater", QStringLiteral("查询选择经办人"), 1, false);
            walk.step("other_outbound_filled", [&] {
                put_stock_line(editor, 4, QStringLiteral("2"));
                save_document(editor);
            });
        });
    });
    walk.step("other_outbound_view", [&] { view_document(kind, 1, [](QWidget*) {}); });
    walk.step("other_outbound_list", [&] { walk.picture(); });
}
