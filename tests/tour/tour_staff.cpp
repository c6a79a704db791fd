// The part of the tour that goes through employees and warehouses.
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QTableWidget>
#include <QTest>

#include "support/screen.h"
#include "tour/tour.h"

void tour::employee_steps() {
    const QString name = QStringLiteral("顾望舒");
    const QString jobnum = QStringLiteral("CK-") + stamp;
    walk.step("employee_list", [&] {
        open_page("emp", QStringLiteral("员工管理"));
        walk.expect(table()->rowCount() == 20, QStringLiteral("a page of 20"));
        walk.expect(child<QLabel>(front(), "lbl_total")->text() == QStringLiteral("共2页/40条记录"),
                    QStringLiteral("forty employees"));
        walk.picture();
    });
    walk.step("employee_add", [&] {
        open_dialog("btn_add", QStringLiteral("添加员工"), [&](QWidget* dialog) {
            walk.step("employee_add_tip", [&] {
                fill(dialog, {{"txt_name", name}});
                click(dialog, "btn_save");
                walk.expect_tip(QStringLiteral("工号不能为空"));
            });
            walk.step("employee_add_filled", [&] {
                fill(dialog, {{"txt_jobnum", jobnum},
                              {"txt_mobile", QStringLiteral("139") + stamp},
                              {"txt_address", QStringLiteral("澜杉市云溪路18号")},
                              {"txt_remark", QStringLiteral("导览中新增")}});
                walk.picture();
                click(dialog, "btn_save");
            });
        });
        walk.expect(table()->item(0, 1)->text() == name, QStringLiteral("the new row is on top"));
    });
    walk.step("employee_edit", [&] {
        click_row(table(), 0);
        open_dialog("btn_edit", QStringLiteral("编辑员工"), [&](QWidget* dialog) {
            walk.expect(child<QLineEdit>(dialog, "txt_mobile")->text() == QStringLiteral("139") + stamp,
                        QStringLiteral("the record"));
            child<QCheckBox>(dialog, "chk_leave")->setChecked(true);
            click(dialog, "btn_save");
        });
        walk.expect(table()->item(0, 10)->text() == QStringLiteral("是"), QStringLiteral("has left now"));
        delete_top_row(jobnum, 3);
    });
}

void tour::warehouse_steps() {
    const QString name = QStringLiteral("云溪备用仓");
    walk.step("warehouse_list", [&] {
        open_page("warehouse", QStringLiteral("仓库管理"));
        walk.expect(table()->rowCount() == 4, QStringLiteral("four warehouses"));
        walk.expect(row_named(QStringLiteral("澜杉中心仓")) >= 0, QStringLiteral("the central one"));
        walk.picture();
    });
    walk.step("warehouse_add", [&] {
        open_dialog("btn_add", QStringLiteral("添加仓库"), [&](QWidget* dialog) {
            choose_keeper(dialog);
            walk.step("warehouse_add_filled", [&] {
                fill(dialog, {{"txt_name", name},
                              {"txt_phone", QStringLiteral("0193-557 1234")},
                              {"txt_mobile", QStringLiteral("13900001234")},
                              {"txt_address", QStringLiteral("澜杉市物流园西区9号")},
                              {"txt_remark", QStringLiteral("导览中新增")}});
                walk.picture();
                click(dialog, "btn_save");
            });
        });
    });
    walk.step("warehouse_edit", [&] {
        walk.expect(table()->item(0, 1)->text() == name, QStringLiteral("the new row is on top"));
        click_row(table(), 0);
        open_dialog("btn_edit", QStringLiteral("编辑仓库"), [&](QWidget* dialog) {
            walk.expect(!child<QLineEdit>(dialog, "txt_keeper")->text().isEmpty(),
                        QStringLiteral("the keeper"));
        });
        delete_top_row(name);
        walk.expect(table()->rowCount() == 4, QStringLiteral("four warehouses again"));
    });
}

void tour::choose_keeper(QWidget* dialog) {
    walk.step("employee_picker", [&] {
        QString wanted;
        open_picker(dialog, "txt_keeper", QStringLiteral("查询选择仓管员"), [&](QWidget* picker) {
            auto* rows = child<QTableWidget>(picker, "tablewidget");
            walk.expect(rows->rowCount() == 10, QStringLiteral("a page of 10"));
            click_row(rows, 3);
            wanted = rows->item(3, 1)->text();
            walk.picture();
            QTest::mouseDClick(rows->viewport(), Qt::LeftButton, Qt::NoModifier,
                               rows->visualItemRect(rows->item(3, 1)).center());
        });
        walk.expect(!wanted.isEmpty() && child<QLineEdit>(dialog, "txt_keeper")->text() == wanted,
                    QStringLiteral("the chosen keeper"));
    });
}
