// The part of the tour that goes through the inbound documents. What it writes stays until the outbound
// documents have used it; then all of them are deleted.
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPrintPreviewDialog>
#include <QTableWidget>
#include <QTest>
#include <QTextEdit>
#include <QTreeView>

#include "app/window.h"
#include "support/screen.h"
#include "support/tree.h"
#include "tour/tour.h"

namespace {

/** What the tour puts into stock: a product by words to search for and its row in the answer. */
struct goods {
    const char* words;
    int row;
    const char* price;
    const char* amount;
    const char* place;
};

constexpr goods g_goods[] = {{"扳手", 1, "12.50", "40", "A区-03-2层"},
                             {"封箱胶带", 3, "4.80", "360", "B区-11-1层"},
                             {"安全鞋", 2, "96.00", "25", "C区-02-4层"}};

constexpr char g_warehouse[] = "澜杉中心仓";

void choose_warehouse(QWidget* line_dialog) {
    auto* warehouses = child<QComboBox>(line_dialog, "comb_warehouse");
    warehouses->setCurrentIndex(warehouses->findText(QString::fromUtf8(g_warehouse)));
}

} // namespace

void tour::document_steps() {
    document_tabs(inbound_kinds());
    purchase_steps();
    production_steps();
    other_inbound_steps();
    stock_steps();
    document_tabs(outbound_kinds());
    sale_steps();
    receive_steps();
    other_outbound_steps();
    summary_steps();
    taking_steps();
    transfer_steps();
    documents_deleted();
}

void tour::document_tabs(const std::vector<document_kind>& kinds) {
    for (const document_kind& kind : kinds) {
        walk.step(kind.page.toLatin1().constData(), [&] {
            open_page(kind.page.toLatin1().constData(), kind.name);
            walk.expect(child<QLabel>(front(), "label_company")->isVisible() ==
                            (kind.partner == counterparty::company),
                        QStringLiteral("a partner to search for where documents have one"));
            walk.expect(
                child<QLabel>(front(), "label_dept")->isVisible() == (kind.partner == counterparty::dept),
                QStringLiteral("a department to search for where documents have one"));
            walk.expect(column_named(table(), QStringLiteral("单号")) == 1, QStringLiteral("the numbers"));
            walk.picture();
        });
    }
    shell->slot_tabbar_close_other();
}

void tour::write_document(const document_kind& kind, const std::function<void(QWidget*)>& look) {
    open_page(kind.page.toLatin1().constData(), kind.name);
    open_dialog("btn_add", QStringLiteral("添加") + kind.name, look);
}

QString tour::remark_of_documents() const {
    return QStringLiteral("导览") + stamp;
}

void tour::save_document(QWidget* editor) {
    fill(editor, {{"txt_remark", remark_of_documents()}});
    walk.picture();
    click(editor, "btn_submit");
    walk.expect(!editor->isVisible(), QStringLiteral("the document is saved"));
    walk.expect(top_remark() == remark_of_documents(), QStringLiteral("the document is on top of the list"));
}

QString tour::top_remark() const {
    const int column = column_named(table(), QStringLiteral("备注"));
    return table()->rowCount() == 0 ? QString() : table()->item(0, column)->text();
}

void tour::view_document(const document_kind& kind, int lines, const std::function<void(QWidget*)>& look) {
    view_top_document(QStringLiteral("查看") + kind.name, lines, look);
}

void tour::view_top_document(const QString& title, int lines, const std::function<void(QWidget*)>& look) {
    click_row(table(), 0);
    open_dialog("btn_view", title, [&](QWidget* editor) {
        walk.expect(child<QTableWidget>(editor, "tablewidget")->rowCount() == lines,
                    QStringLiteral("all lines"));
        walk.expect(child<QLineEdit>(editor, "txt_sn")->text() == table()->item(0, 1)->text(),
                    QStringLiteral("the number"));
        look(editor);
    });
}

void tour::purchase_steps() {
    const document_kind& kind = inbound_kind(1);
    walk.step("purchase_add", [&] {
        write_document(kind, [&](QWidget* editor) {
            purchase_header(editor);
            first_purchase_line(editor);
            walk.step("purchase_filled", [&] {
                put_lines(editor, 1, 3);
                save_document(editor);
            });
        });
    });
    walk.step("purchase_saved", [&] {
        const int total = column_named(table(), QStringLiteral("总价"));
        walk.expect(table()->item(0, total)->text() == QStringLiteral("4628.00"),
                    QStringLiteral("the service has added the lines up"));
        walk.picture();
        with_popup([&] { right_click_row(0); },
                   [&](QMenu* menu) {
                       walk.expect(entries(menu).size() == 9,
                                   QStringLiteral("five entries, four separators"));
                       walk.picture();
                   });
    });
    walk.step("purchase_view", [&] {
        view_document(kind, 3, [&](QWidget* editor) {
            walk.step("purchase_maximised", [&] { see_maximised(editor); });
            walk.step("purchase_print", [&] { see_preview(editor, QStringLiteral("purchase.pdf")); });
        });
    });
    walk.step("purchase_list_print", [&] { see_preview(front(), QStringLiteral("purchase_list.pdf")); });
}

void tour::purchase_header(QWidget* editor) {
    walk.step("purchase_without_operater", [&] {
        click(editor, "btn_submit");
        walk.expect_tip(QStringLiteral("请选择经办人"));
    });
    walk.step("purchase_operater", [&] {
        const QString picked = pick_row(editor, "txt_operater", QStringLiteral("查询选择经办人"), 2);
        walk.expect(child<QLineEdit>(editor, "txt_operater")->text() == picked,
                    QStringLiteral("the chosen employee"));
    });
    walk.step("purchase_without_supplier", [&] {
        click(editor, "btn_submit");
        walk.expect_tip(QStringLiteral("请选择供应商"));
    });
    walk.step("purchase_supplier", [&] {
        const QString picked = pick_row(editor, "txt_company", QStringLiteral("查询选择供应商"), 4);
        walk.expect(child<QLineEdit>(editor, "txt_company")->text() == picked,
                    QStringLiteral("the chosen supplier"));
    });
    walk.step("purchase_without_lines", [&] {
        click(editor, "btn_submit");
        walk.expect_tip(QStringLiteral("请先添加明细再保存"));
    });
}

void tour::first_purchase_line(QWidget* editor) {
    const auto look = [this](QWidget* line) {
        walk.step("purchase_line_without_product", [&] {
            click(line, "btn_save");
            walk.expect_tip(QStringLiteral("请先选择货品"));
        });
        walk.step("purchase_line_product", [&] { pick_product(line, 0, true); });
        walk.step("purchase_line_without_warehouse", [&] {
            click(line, "btn_save");
            walk.expect_tip(QStringLiteral("请选择仓库"));
        });
        walk.step("purchase_line_without_place", [&] {
            choose_warehouse(line);
            click(line, "btn_save");
            walk.expect_tip(QStringLiteral("请选择位置"));
        });
        walk.step("purchase_line_filled", [&] { finish_line(line, 0, true); });
    };
    walk.step("purchase_line",
              [&] { open_dialog_of(editor, "btn_add", QStringLiteral("添加入库明细"), look); });
}

void tour::put_lines(QWidget* editor, int first, int end) {
    for (int number = first; number < end; ++number) {
        walk.with_modal([&] { click(editor, "btn_add"); },
                        [&](QWidget* line) {
                            pick_product(line, number, false);
                            choose_warehouse(line);
                            finish_line(line, number, false);
                        });
    }
    walk.expect(child<QTableWidget>(editor, "tablewidget")->rowCount() == end, QStringLiteral("the lines"));
}

void tour::pick_product(QWidget* line, int number, bool seen) {
    const goods& wish = g_goods[number];
    open_picker(line, "txt_product_name", QStringLiteral("查询选择货品基础信息"), [&](QWidget* picker) {
        auto* words = child<QLineEdit>(picker, "txt_product_name");
        words->setText(QString::fromUtf8(wish.words));
        QTest::keyClick(words, Qt::Key_Return);
        take_row(picker, wish.row, seen);
    });
    walk.expect(child<QLineEdit>(line, "txt_amount")->text() == QStringLiteral("1"),
                QStringLiteral("one is proposed"));
}

void tour::finish_line(QWidget* line, int number, bool seen) {
    const goods& wish = g_goods[number];
    fill(line, {{"txt_price", QString::fromUtf8(wish.price)},
                {"txt_amount", QString::fromUtf8(wish.amount)},
                {"txt_place", QString::fromUtf8(wish.place)}});
    child<QTextEdit>(line, "txt_remark")->setPlainText(remark_of_documents());
    if (seen) walk.picture();
    click(line, "btn_save");
    walk.expect(!line->isVisible(), QStringLiteral("the line is taken"));
}

void tour::production_steps() {
    const document_kind& kind = inbound_kind(2);
    walk.step("production_add", [&] {
        write_document(kind, [&](QWidget* editor) {
            pick_row(editor, "txt_operater", QStringLiteral("查询选择经办人"), 5, false);
            walk.step("production_without_department", [&] {
                click(editor, "btn_submit");
                walk.expect_tip(QStringLiteral("请选择生产部门"));
            });
            walk.step("production_department",
                      [&] { pick_department(editor, kind.picker_title, QStringLiteral("装配车间")); });
            walk.step("production_filled", [&] {
                put_lines(editor, 0, 2);
                save_document(editor);
            });
        });
    });
    walk.step("production_view", [&] { view_document(kind, 2, [](QWidget*) {}); });
    walk.step("production_list", [&] { walk.picture(); });
}

void tour::other_inbound_steps() {
    const document_kind& kind = inbound_kind(7);
    walk.step("other_inbound_add", [&] {
        write_document(kind, [&](QWidget* editor) {
            pick_row(editor, "txt_operater", QStringLiteral("查询选择经办人"), 0, false);
            walk.step("other_inbound_filled", [&] {
                put_lines(editor, 0, 1);
                save_document(editor);
            });
        });
    });
    walk.step("other_inbound_view", [&] {
        view_document(kind, 1,
                      [&](QWidget* editor) { see_preview(editor, QStringLiteral("other_inbound.pdf")); });
    });
    walk.step("other_inbound_list_print",
              [&] { see_preview(front(), QStringLiteral("other_inbound_list.pdf")); });
}

QString tour::take_row(QWidget* picker, int row, bool seen) {
    auto* rows = child<QTableWidget>(picker, "tablewidget");
    walk.expect(rows->rowCount() > row, QStringLiteral("enough rows to choose from"));
    click_row(rows, row);
    const QString text = rows->item(row, 1)->text();
    if (seen) walk.picture();
    QTest::mouseDClick(rows->viewport(), Qt::LeftButton, Qt::NoModifier,
                       rows->visualItemRect(rows->item(row, 1)).center());
    return text;
}

QString tour::pick_row(QWidget* owner, const char* field, const QString& title, int row, bool seen) {
    QString picked;
    open_picker(owner, field, title, [&](QWidget* picker) { picked = take_row(picker, row, seen); });
    return picked;
}

void tour::pick_department(QWidget* editor, const QString& title, const QString& name) {
    open_picker(editor, "txt_dept", title, [&](QWidget* picker) {
        auto* tree = child<QTreeView>(picker, "treeview");
        click_node(tree, name);
        walk.picture();
        double_click_node(tree, name);
    });
    walk.expect(child<QLineEdit>(editor, "txt_dept")->text() == name, QStringLiteral("the department"));
}

void tour::see_maximised(QWidget* editor) {
    // As large as the main window: the off-screen platform's screen is small.
    const QRect usual = editor->geometry();
    editor->setGeometry(shell->geometry());
    walk.settle(editor);
    walk.picture();
    editor->setGeometry(usual);
}

void tour::see_preview(QWidget* owner, const QString& file) {
    walk.with_modal([&] { click(owner, "btn_print"); },
                    [&](QWidget* shown) {
                        auto* preview = qobject_cast<QPrintPreviewDialog*>(shown);
                        walk.expect(preview != nullptr && shown->isMaximized(),
                                    QStringLiteral("the preview fills the screen"));
                        // The off-screen platform's screen is small.
                        shown->showNormal();
                        shown->setGeometry(shell->geometry());
                        walk.settle(shown);
                        walk.picture();
                        walk.print(*preview, file);
                    });
}

void tour::delete_document(const document_kind& kind, const char* step_name) {
    delete_top_document(kind.page.toLatin1().constData(), kind.name, step_name);
}

void tour::delete_top_document(const char* page, const QString& tab, const char* step_name) {
    walk.step(step_name, [&] {
        open_page(page, tab);
        click(front(), "btn_search");
        walk.expect(top_remark() == remark_of_documents(), QStringLiteral("the document is on top"));
        click_row(table(), 0);
        walk.with_modal([&] { click(front(), "btn_delete"); },
                        [&](QWidget* box) {
                            walk.picture();
                            answer_yes(box);
                        });
        click(front(), "btn_search");
        walk.expect(top_remark() != remark_of_documents(), QStringLiteral("the service has dropped it"));
    });
}

void tour::documents_deleted() {
    delete_top_document("stock_allot", QStringLiteral("库存调拨"), "transfer_deleted");
    delete_top_document("stock_taking", QStringLiteral("库存盘点"), "taking_deleted");
    delete_document(outbound_kind(2), "sale_deleted");
    delete_document(outbound_kind(3), "receive_deleted");
    delete_document(outbound_kind(6), "other_outbound_deleted");
    delete_document(inbound_kind(1), "purchase_deleted");
    delete_document(inbound_kind(2), "production_deleted");
    delete_document(inbound_kind(7), "other_inbound_deleted");
    walk.step("stock_taken_back", [&] {
        open_page("stock_detail", QStringLiteral("库存明细"));
        search_own_stock(front());
        walk.expect(table()->rowCount() == 0, QStringLiteral("nothing is left of the tour"));
    });
    shell->slot_tabbar_close_other();
}
