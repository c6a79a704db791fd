// The part of the tour that goes through the summary of stock, stocktakings and transfers: what they change
// is the stock that the tour's own documents have brought, and they are deleted before those.
#include <QComboBox>
#include <QLineEdit>
#include <QTableWidget>
#include <QTest>
#include <QTextEdit>

#include "support/screen.h"
#include "tour/tour.h"

namespace {

const QString picker_title = QStringLiteral("选择货品库存");

/** Chooses an entry of a box by the words that it begins with. */
void choose(QWidget* owner, const char* box, const QString& words) {
    auto* entries = child<QComboBox>(owner, box);
    entries->setCurrentIndex(entries->findText(words, Qt::MatchStartsWith));
}

} // namespace

void tour::summary_steps() {
    walk.step("summary_list", [&] {
        open_page("stock_summary", QStringLiteral("库存汇总"));
        walk.expect(table()->rowCount() == 20, QStringLiteral("a page of 20"));
        walk.picture();
    });
    walk.step("summary_search", [&] {
        fill(front(), {{"txt_product_name", QStringLiteral("扳手")}});
        QTest::keyClick(child<QLineEdit>(front(), "txt_product_name"), Qt::Key_Return);
        walk.expect(table()->rowCount() > 0, QStringLiteral("what the documents have brought"));
        const int name = column_named(table(), QStringLiteral("货品名称"));
        for (int row = 0; row < table()->rowCount(); ++row)
            walk.expect(table()->item(row, name)->text().contains(QStringLiteral("扳手")),
                        QStringLiteral("nothing else"));
        walk.picture();
    });
    walk.step("summary_menu", [&] {
        with_popup([&] { right_click_row(0); },
                   [&](QMenu* menu) {
                       walk.expect(entries(menu).size() == 3, QStringLiteral("two entries and a separator"));
                       walk.picture();
                   });
    });
    walk.step("summary_print", [&] { see_preview(front(), QStringLiteral("summary.pdf")); });
}

void tour::taking_steps() {
    walk.step("taking_list", [&] {
        open_page("stock_taking", QStringLiteral("库存盘点"));
        walk.picture();
    });
    walk.step("taking_add", [&] {
        open_dialog("btn_add", QStringLiteral("添加盘点"), [&](QWidget* editor) {
            walk.step("taking_without_operater", [&] {
                click(editor, "btn_submit");
                walk.expect_tip(QStringLiteral("请选择经办人"));
            });
            walk.step("taking_operater",
                      [&] { pick_row(editor, "txt_operater", QStringLiteral("查询选择经办人"), 4); });
            walk.step("taking_without_lines", [&] {
                click(editor, "btn_submit");
                walk.expect_tip(QStringLiteral("请先添加明细再保存"));
            });
            taking_lines(editor);
            walk.step("taking_filled", [&] { save_document(editor); });
        });
    });
    walk.step("taking_saved", [&] {
        const int gain = column_named(table(), QStringLiteral("盈亏数量"));
        walk.expect(table()->item(0, gain)->text() == QStringLiteral("-1"),
                    QStringLiteral("two more of one and three less of the other"));
        walk.picture();
        with_popup([&] { right_click_row(0); },
                   [&](QMenu* menu) {
                       walk.expect(entries(menu).size() == 9,
                                   QStringLiteral("five entries, four separators"));
                       walk.picture();
                   });
    });
    walk.step("taking_view", [&] {
        view_top_document(QStringLiteral("查看盘点"), 2, [&](QWidget* editor) {
            walk.step("taking_maximised", [&] { see_maximised(editor); });
            walk.step("taking_print", [&] { see_preview(editor, QStringLiteral("taking.pdf")); });
        });
    });
    walk.step("taking_list_print", [&] { see_preview(front(), QStringLiteral("taking_list.pdf")); });
}

void tour::taking_lines(QWidget* editor) {
    const auto count = [this](QWidget* line, int row, int more, bool seen) {
        take_own_stock(line, picker_title, 6, row, seen);
        const int there = child<QLineEdit>(line, "txt_sys_amount")->text().toInt();
        fill(line, {{"txt_real_amount", QString::number(there + more)}});
        walk.expect(child<QLineEdit>(line, "txt_profitloss_amount")->text() == QString::number(more),
                    QStringLiteral("gain or loss"));
        child<QTextEdit>(line, "txt_remark")->setPlainText(remark_of_documents());
    };
    const auto look = [&](QWidget* line) {
        walk.step("taking_line_without_stock", [&] {
            click(line, "btn_submit");
            walk.expect_tip(QStringLiteral("请先选择货品"));
        });
        walk.step("taking_line_stock", [&] { take_own_stock(line, picker_title, 6, 0, true); });
        walk.step("taking_line_unchanged", [&] {
            click(line, "btn_submit");
            walk.expect_tip(QStringLiteral("盘点数量没有变化"));
        });
        walk.step("taking_line_filled", [&] {
            count(line, 0, 2, false);
            walk.picture();
            click(line, "btn_submit");
        });
    };
    walk.step("taking_line",
              [&] { open_dialog_of(editor, "btn_add", QStringLiteral("添加盘点明细"), look); });
    walk.with_modal([&] { click(editor, "btn_add"); },
                    [&](QWidget* line) {
                        count(line, 1, -3, false);
                        click(line, "btn_submit");
                    });
    walk.expect(child<QTableWidget>(editor, "tablewidget")->rowCount() == 2, QStringLiteral("two lines"));
}

void tour::transfer_steps() {
    walk.step("transfer_list", [&] {
        open_page("stock_allot", QStringLiteral("库存调拨"));
        walk.picture();
    });
    walk.step("transfer_add", [&] {
        open_dialog("btn_add", QStringLiteral("添加调拨"), [&](QWidget* editor) {
            transfer_header(editor);
            transfer_line(editor);
            walk.step("transfer_filled", [&] { save_document(editor); });
        });
    });
    walk.step("transfer_saved", [&] {
        walk.picture();
        with_popup([&] { right_click_row(0); },
                   [&](QMenu* menu) {
                       walk.expect(entries(menu).size() == 9,
                                   QStringLiteral("five entries, four separators"));
                       walk.picture();
                   });
    });
    walk.step("transfer_view", [&] {
        view_top_document(QStringLiteral("查看"), 1, [&](QWidget* editor) {
            walk.step("transfer_maximised", [&] { see_maximised(editor); });
            walk.step("transfer_print", [&] { see_preview(editor, QStringLiteral("transfer.pdf")); });
        });
    });
    walk.step("transfer_list_print", [&] { see_preview(front(), QStringLiteral("transfer_list.pdf")); });
}

void tour::transfer_header(QWidget* editor) {
    walk.step("transfer_without_source", [&] {
        click(editor, "btn_add");
        walk.expect_tip(QStringLiteral("请先选择调出仓库"));
    });
    walk.step("transfer_to_itself", [&] {
        choose(editor, "comb_warehouse_out", QStringLiteral("澜杉中心仓"));
        choose(editor, "comb_warehouse_in", QStringLiteral("澜杉中心仓"));
        click(editor, "btn_submit");
        walk.expect_tip(QStringLiteral("调出仓和调入仓不能相同"));
    });
    walk.step("transfer_without_operater", [&] {
        child<QComboBox>(editor, "comb_warehouse_in")->setCurrentIndex(2);
        click(editor, "btn_submit");
        walk.expect_tip(QStringLiteral("请选择经办人"));
    });
    pick_row(editor, "txt_operater", QStringLiteral("查询选择经办人"), 6, false);
}

void tour::transfer_line(QWidget* editor) {
    const auto look = [&](QWidget* line) {
        walk.step("transfer_line_without_stock", [&] {
            click(line, "btn_save");
            walk.expect_tip(QStringLiteral("请先选择货品"));
        });
        walk.step("transfer_line_stock", [&] { take_own_stock(line, picker_title, 6, 0, true); });
        walk.step("transfer_line_too_much", [&] {
            auto* amount = child<QLineEdit>(line, "txt_amount");
            const QString most = amount->text();
            amount->setText(most + QLatin1Char('0'));
            walk.expect_tip(QStringLiteral("不能超过当前最大库存：") + most);
        });
        walk.step("transfer_line_filled", [&] {
            fill(line, {{"txt_amount", QStringLiteral("5")}, {"txt_place", QStringLiteral("D区-01-1层")}});
            child<QTextEdit>(line, "txt_remark")->setPlainText(remark_of_documents());
            walk.picture();
            click(line, "btn_save");
        });
    };
    walk.step("transfer_line",
              [&] { open_dialog_of(editor, "btn_add", QStringLiteral("添加调拨明细"), look); });
    walk.expect(child<QTableWidget>(editor, "tablewidget")->rowCount() == 1, QStringLiteral("the line"));
}
