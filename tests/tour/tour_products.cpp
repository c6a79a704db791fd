// The part of the tour that goes through the products.
#include <QLabel>
#include <QLineEdit>
#include <QTableWidget>
#include <QTest>
#include <QTreeView>

#include "app/window.h"
#include "master/dlg_search_product.h"
#include "support/screen.h"
#include "support/tree.h"
#include "tour/tour.h"

void tour::product_steps() {
    walk.step("product_list", [&] {
        open_page("product", QStringLiteral("货品管理"));
        walk.expect(table()->rowCount() == 20, QStringLiteral("a page of 20"));
        walk.expect(child<QLabel>(front(), "lbl_total")->text().startsWith(QStringLiteral("共10页/")),
                    QStringLiteral("ten pages"));
        walk.picture();
    });
    walk.step("product_menu", [&] {
        with_popup([&] { right_click_row(3); },
                   [&](QMenu* menu) {
                       walk.expect(entries(menu).size() == 7,
                                   QStringLiteral("four entries, three separators"));
                       walk.picture();
                   });
    });
    new_product();
    product_filter();
    product_picker();
}

void tour::new_product() {
    const QString name = QStringLiteral("管子扳手");
    walk.step("product_add", [&] {
        open_dialog("btn_add", QStringLiteral("添加货品"), [&](QWidget* dialog) {
            walk.step("product_category_picker", [&] {
                open_picker(dialog, "txt_category", QStringLiteral("选择类别"), [&](QWidget* picker) {
                    auto* tree = child<QTreeView>(picker, "treeview");
                    click_node(tree, QStringLiteral("扳手"));
                    walk.picture();
                    double_click_node(tree, QStringLiteral("扳手"));
                });
                walk.expect(child<QLineEdit>(dialog, "txt_category")->text() == QStringLiteral("扳手"),
                            QStringLiteral("the category"));
            });
            walk.step("product_add_filled", [&] {
                fill(dialog, {{"txt_name", name},
                              {"txt_code", QStringLiteral("WJ1-") + stamp},
                              {"txt_spec", QStringLiteral("18寸")},
                              {"txt_price", QStringLiteral("36.80")}});
                walk.picture();
                click(dialog, "btn_submit");
            });
        });
        walk.expect(table()->item(0, column_named(table(), QStringLiteral("名称")))->text() == name,
                    QStringLiteral("the new row is on top"));
    });
    walk.step("product_edit", [&] {
        click_row(table(), 0);
        open_dialog("btn_edit", QStringLiteral("编辑货品"), [&](QWidget* dialog) {
            walk.expect(child<QLineEdit>(dialog, "txt_price")->text() == QStringLiteral("36.80"),
                        QStringLiteral("the price"));
            fill(dialog, {{"txt_spec", QStringLiteral("20寸")}});
            click(dialog, "btn_submit");
        });
    });
    walk.step("product_edited", [&] {
        click(front(), "btn_search");
        const int spec = column_named(table(), QStringLiteral("规格"));
        walk.expect(table()->item(0, spec)->text() == QStringLiteral("20寸"),
                    QStringLiteral("the service has the change"));
        walk.picture();
        delete_top_row(name, column_named(table(), QStringLiteral("名称")));
    });
}

void tour::product_filter() {
    walk.step("product_filter_picker", [&] {
        open_picker(front(), "txt_prodcate", QStringLiteral("选择货品类别"), [&](QWidget* picker) {
            auto* tree = child<QTreeView>(picker, "treeview");
            click_node(tree, QStringLiteral("手套"));
            walk.picture();
            double_click_node(tree, QStringLiteral("手套"));
        });
    });
    walk.step("product_filtered", [&] {
        click(front(), "btn_search");
        const int category = column_named(table(), QStringLiteral("类别"));
        walk.expect(table()->rowCount() >= 10, QStringLiteral("ten kinds of gloves"));
        for (int row = 0; row < table()->rowCount(); ++row)
            walk.expect(table()->item(row, category)->text() == QStringLiteral("手套"),
                        QStringLiteral("gloves alone"));
        walk.picture();
    });
}

void tour::product_picker() {
    walk.step("product_picker", [&] {
        dlg_search_product picker(shell);
        picker.setWindowTitle(QStringLiteral("查询选择货品基础信息"));
        QString picked;
        QObject::connect(&picker, &dlg_search_product::signal_product_selected, &picker,
                         [&picked](const struct_product& product) { picked = product.code; });
        QString wanted;
        walk.with_modal([&] { picker.exec(); },
                        [&](QWidget* shown) {
                            auto* rows = child<QTableWidget>(shown, "tablewidget");
                            walk.expect(rows->rowCount() == 10, QStringLiteral("a page of 10"));
                            child<QLineEdit>(shown, "txt_product_name")->setText(QStringLiteral("扳手"));
                            QTest::keyClick(child<QLineEdit>(shown, "txt_product_name"), Qt::Key_Return);
                            walk.expect(rows->rowCount() == 10, QStringLiteral("ten kinds of spanners"));
                            click_row(rows, 2);
                            wanted = rows->item(2, column_named(rows, QStringLiteral("编码")))->text();
                            walk.picture();
                            QTest::mouseDClick(rows->viewport(), Qt::LeftButton, Qt::NoModifier,
                                               rows->visualItemRect(rows->item(2, 1)).center());
                        });
        walk.expect(!wanted.isEmpty() && picked == wanted, QStringLiteral("the chosen row is handed over"));
    });
}
