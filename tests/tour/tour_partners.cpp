// The part of the tour that goes through the trading partners.
#include <QCursor>
#include <QLabel>
#include <QLineEdit>
#include <QTabBar>
#include <QTabWidget>
#include <QTableWidget>
#include <QTest>

#include "app/window.h"
#include "master/dlg_company_add.h"
#include "master/dlg_search_company.h"
#include "support/screen.h"
#include "tour/tour.h"

void tour::list_steps() {
    walk.step("supplier_list", [&] {
        click_navigation(*shell, QStringLiteral("company_supplier"));
        walk.expect(child<QTabWidget>(shell, "main_tab")->count() == 2, QStringLiteral("the tab is open"));
        walk.expect(table()->rowCount() == 20, QStringLiteral("a page of 20"));
        walk.picture();
    });
    walk.step("second_page", [&] {
        const QString first = table()->item(0, 0)->text();
        QTest::mousePress(child<QLabel>(front(), "lbl_next"), Qt::LeftButton);
        walk.expect(child<QLineEdit>(front(), "txt_page_num")->text() == QStringLiteral("2"),
                    QStringLiteral("the bar shows page 2"));
        walk.expect(table()->rowCount() > 0 && table()->item(0, 0)->text() != first,
                    QStringLiteral("other rows"));
        walk.picture();
    });
    walk.step("search", [&] {
        const QString wanted = table()->item(0, 1)->text().left(2);
        child<QLineEdit>(front(), "txt_name")->setText(wanted);
        QTest::keyClick(child<QLineEdit>(front(), "txt_name"), Qt::Key_Return);
        walk.expect(table()->rowCount() > 0, QStringLiteral("something is found"));
        for (int row = 0; row < table()->rowCount(); ++row)
            walk.expect(table()->item(row, 1)->text().contains(wanted), QStringLiteral("every row fits"));
        walk.picture();
    });
    walk.step("nothing_found", [&] {
        child<QLineEdit>(front(), "txt_name")->setText(QStringLiteral("没有这样的单位"));
        click(front(), "btn_search");
        walk.expect(table()->rowCount() == 0, QStringLiteral("no row"));
        walk.expect(child<QLabel>(front(), "lbl_total")->text() == QStringLiteral("共0页/0条记录"),
                    QStringLiteral("the bar counts nothing"));
        walk.picture();
        child<QLineEdit>(front(), "txt_name")->clear();
        click(front(), "btn_search");
    });
    walk.step("select_a_row_first", [&] {
        click(front(), "btn_edit");
        walk.expect_tip(QStringLiteral("请先选中行"));
    });
}

void tour::add_steps() {
    partner = QStringLiteral("导览供应商") + stamp;
    const auto fill_in = [this](QWidget* dialog) {
        walk.step("add_tip", [&] {
            child<QLineEdit>(dialog, "txt_name")->setText(partner);
            click(dialog, "btn_save");
            walk.expect_tip(QStringLiteral("地址不能为空"));
        });
        walk.step("add_filled", [&] {
            fill(dialog, {{"txt_address", QStringLiteral("明州市云溪路18号")},
                          {"txt_phone", QStringLiteral("0571-8800 1234")},
                          {"txt_fax", QStringLiteral("0571-8800 1235")},
                          {"txt_linkman", QStringLiteral("沈清和")},
                          {"txt_mobile", QStringLiteral("13900001234")},
                          {"txt_bank", QStringLiteral("明州农商银行")},
                          {"txt_account", QStringLiteral("6222 0000 1234")},
                          {"txt_remark", QStringLiteral("导览中新增")}});
            walk.picture();
            click(dialog, "btn_save");
        });
    };
    walk.step("add", [&] {
        walk.with_modal([&] { click(front(), "btn_add"); },
                        [&](QWidget* dialog) {
                            walk.expect(dialog->windowTitle() == QStringLiteral("添加来往单位"),
                                        QStringLiteral("the title"));
                            walk.picture();
                            fill_in(dialog);
                        });
    });
    walk.step("added", [&] {
        walk.expect(table()->item(0, 1)->text() == partner, QStringLiteral("the new row is on top"));
        walk.picture();
    });
}

void tour::edit_steps() {
    walk.step("edit", [&] {
        click_row(table(), 0);
        walk.with_modal([&] { click(front(), "btn_edit"); },
                        [&](QWidget* dialog) {
                            walk.expect(dialog->windowTitle() == QStringLiteral("编辑供应商"),
                                        QStringLiteral("the title"));
                            walk.expect(child<QLineEdit>(dialog, "txt_name")->text() == partner,
                                        QStringLiteral("the record"));
                            walk.picture();
                            child<QLineEdit>(dialog, "txt_linkman")->setText(QStringLiteral("顾望舒"));
                            click(dialog, "btn_save");
                        });
    });
    walk.step("edited", [&] {
        walk.expect(table()->item(0, 3)->text() == QStringLiteral("顾望舒"),
                    QStringLiteral("the row is patched"));
        walk.picture();
    });
    walk.step("context_menu", [&] {
        with_popup([&] { right_click_row(0); },
                   [&](QMenu* menu) {
                       walk.expect(entries(menu).size() == 7,
                                   QStringLiteral("four entries, three separators"));
                       walk.picture();
                   });
    });
    walk.step("delete_question", [&] {
        click_row(table(), 0);
        walk.with_modal([&] { click(front(), "btn_delete"); },
                        [&](QWidget* box) {
                            walk.picture();
                            answer_yes(box);
                        });
    });
    walk.step("deleted", [&] {
        walk.expect(table()->item(0, 1)->text() != partner, QStringLiteral("the row is gone"));
        click(front(), "btn_search");
        walk.expect(table()->item(0, 1)->text() != partner, QStringLiteral("the service has dropped it"));
    });
}

void tour::other_steps() {
    const QPair<const char*, const char*> pages[] = {{"client_list", "company_client"},
                                                     {"other_list", "company_other"}};
    for (const auto& [name, key] : pages) {
        walk.step(name, [&, page = QLatin1String(key)] {
            click_navigation(*shell, page);
            walk.expect(table()->rowCount() == 20, QStringLiteral("a page of 20"));
            walk.picture();
        });
    }
    walk.step("tab_menu", [&] {
        auto* tabs = child<QTabWidget>(shell, "main_tab");
        tabs->setCurrentIndex(2);
        QCursor::setPos(tabs->tabBar()->mapToGlobal(tabs->tabBar()->tabRect(2).center()));
        with_popup([&] { shell->slot_tabbar_right_menu(); },
                   [&](QMenu* menu) {
                       walk.expect(entries(menu).size() == 9,
                                   QStringLiteral("five entries, four separators"));
                       walk.picture();
                   });
    });
    walk.step("picker", [&] {
        dlg_search_company picker(shell, 1, 3);
        picker.setWindowTitle(QStringLiteral("选择供应商"));
        QString picked;
        QObject::connect(&picker, &dlg_search_company::signal_company_selected, &picker,
                         [&picked](const struct_company& company) { picked = company.name; });
        walk.with_modal([&] { picker.exec(); },
                        [&](QWidget* shown) {
                            auto* rows = child<QTableWidget>(shown, "tablewidget");
                            walk.expect(rows->rowCount() == 10, QStringLiteral("a page of 10"));
                            click_row(rows, 2);
                            walk.picture();
                            const QString wanted = rows->item(2, 1)->text();
                            click(shown, "btn_choose");
                            walk.expect(picked == wanted, QStringLiteral("the chosen row is handed over"));
                        });
    });
    walk.step("close_others", [&] {
        shell->slot_tabbar_close_other();
        walk.expect(child<QTabWidget>(shell, "main_tab")->count() == 2,
                    QStringLiteral("home and one tab are left"));
    });
}
