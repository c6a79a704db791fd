// The part of the tour that goes through sign-up, users, grants and the menu, and looks through a keeper's
// eyes.
#include <QAction>
#include <QLabel>
#include <QLineEdit>
#include <QPixmap>
#include <QPushButton>
#include <QRadioButton>
#include <QTableWidget>
#include <QTest>
#include <QTreeWidget>

#include "access/dlg_menu.h"
#include "access/dlg_user_reg.h"
#include "app/window.h"
#include "support/screen.h"
#include "support/tree.h"
#include "tour/tour.h"

namespace {

QTreeWidgetItem* item_named(const QTreeWidget* tree, const QString& name) {
    const auto found = tree->findItems(name, Qt::MatchExactly | Qt::MatchRecursive);
    if (found.isEmpty()) throw std::runtime_error("no row " + name.toStdString());
    return found.first();
}

} // namespace

void tour::sign_up_steps(QWidget* login) {
    const auto look = [this](QWidget* dialog) {
        auto* captcha = child<QLabel>(dialog, "lbl_captcha");
        const auto shown = [captcha] { return captcha->pixmap(Qt::ReturnByValue).toImage(); };
        walk.expect(qobject_cast<dlg_user_reg*>(dialog) != nullptr, QStringLiteral("the dialog"));
        walk.expect(!shown().isNull(), QStringLiteral("the captcha"));
        walk.picture();
        walk.step("sign_up_captcha", [&] {
            const QImage first = shown();
            QTest::mouseClick(captcha, Qt::LeftButton);
            walk.expect(!shown().isNull() && shown() != first, QStringLiteral("another captcha"));
        });
        walk.step("sign_up_tip", [&] {
            fill(dialog, {{"txt_company", QStringLiteral("云枬市导览商贸有限公司")},
                          {"txt_phone", QStringLiteral("0193-5550123")},
                          {"txt_address", QStringLiteral("云枬市栖枬路18号")},
                          {"txt_username", QStringLiteral("tour") + stamp},
                          {"txt_password", QStringLiteral("Tavrok-2026")},
                          {"txt_password2", QStringLiteral("Tavrok-2026")},
                          {"txt_realname", QStringLiteral("顾望舒")},
                          {"txt_mobile", QStringLiteral("139") + stamp}});
            click(dialog, "btn_submit");
            walk.expect_tip(QStringLiteral("请填写电子邮件"));
        });
        click(dialog, "btn_cancel");
    };
    walk.step("sign_up", [&] {
        walk.with_modal([&] { click(login, "btn_reg"); }, look);
        walk.expect(login->isVisible(), QStringLiteral("back at the login"));
    });
}

void tour::user_steps() {
    walk.step("user_list", [&] {
        open_page("user", QStringLiteral("用户管理"));
        child<QLineEdit>(front(), "txt_username")->setText(QStringLiteral("demo_"));
        click(front(), "btn_search");
        walk.expect(table()->rowCount() == 6, QStringLiteral("the six demo accounts"));
        walk.picture();
    });
    for (const bool admin : {false, true}) {
        walk.step(admin ? "user_menu_of_admin" : "user_menu", [&] {
            const QString whose = admin ? QStringLiteral("demo_admin") : QStringLiteral("demo_clerk");
            with_popup([&] { right_click_row(row_named(whose)); },
                       [&](QMenu* menu) {
                           walk.expect(entries(menu).size() == 9,
                                       QStringLiteral("five entries, four separators"));
                           walk.expect(menu->actions().last()->isEnabled() != admin,
                                       QStringLiteral("ordinary users alone are granted rights"));
                           walk.picture();
                       });
        });
    }
    new_user();
}

void tour::new_user() {
    const QString name = QStringLiteral("tour") + stamp;
    walk.step("user_add", [&] {
        open_dialog("btn_add", QStringLiteral("添加用户"), [&](QWidget* dialog) {
            walk.step("user_add_tip", [&] {
                fill(dialog, {{"txt_username", QStringLiteral("demo_clerk")},
                              {"txt_realname", QStringLiteral("顾望舒")},
                              {"txt_password", QStringLiteral("Tavrok-2026")},
                              {"txt_password2", QStringLiteral("Tavrok-2026")},
                              {"txt_mobile", QStringLiteral("139") + stamp},
                              {"txt_email", name + QStringLiteral("@example.com")}});
                click(dialog, "btn_submit");
                walk.expect_tip(QStringLiteral("已存在其他重复的登录名"));
            });
            fill(dialog, {{"txt_username", name}});
            click(dialog, "btn_submit");
        });
        walk.expect(table()->item(0, 1)->text() == name, QStringLiteral("the new row is on top"));
    });
    walk.step("user_edit", [&] {
        click_row(table(), 0);
        open_dialog("btn_edit", QStringLiteral("编辑用户"), [&](QWidget* dialog) {
            walk.expect(child<QLineEdit>(dialog, "txt_username")->isReadOnly(),
                        QStringLiteral("the name stays"));
            child<QRadioButton>(dialog, "radio_off")->setChecked(true);
            click(dialog, "btn_submit");
        });
    });
    walk.step("user_edited", [&] {
        walk.expect(table()->item(0, 6)->text() == QStringLiteral("停用"), QStringLiteral("is disabled now"));
        walk.picture();
        delete_top_row(name);
    });
}

void tour::open_grants(const char* user, const std::function<void(QWidget*)>& look) {
    click_row(table(), row_named(QLatin1String(user)));
    walk.with_modal([&] { click(front(), "btn_grant"); },
                    [&](QWidget* dialog) {
                        walk.expect(dialog->windowTitle() == QStringLiteral("分配权限"),
                                    QStringLiteral("the title"));
                        look(dialog);
                    });
}

void tour::grant_steps() {
    const auto expect_state = [this](const QTreeWidget* tree, const QString& name, Qt::CheckState state) {
        walk.expect(item_named(tree, name)->checkState(0) == state, QStringLiteral("the mark at ") + name);
    };
    walk.step("grants", [&] {
        open_grants("demo_keeper", [&](QWidget* dialog) {
            auto* tree = child<QTreeWidget>(dialog, "treewidget");
            expect_state(tree, QStringLiteral("采购进货入库"), Qt::Unchecked);
            expect_state(tree, QStringLiteral("入库管理"), Qt::PartiallyChecked);
            expect_state(tree, QStringLiteral("基础信息"), Qt::PartiallyChecked);
            expect_state(tree, QStringLiteral("仓库管理"), Qt::Checked);
            expect_state(tree, QStringLiteral("部门管理"), Qt::PartiallyChecked);
            for (const char* name : {"基础信息", "仓库管理", "部门管理"})
                item_named(tree, QString::fromUtf8(name))->setExpanded(true);
            walk.picture();
        });
    });
    const QString page = QStringLiteral("员工管理");
    const auto press_space = [&page](QWidget* dialog) {
        auto* tree = child<QTreeWidget>(dialog, "treewidget");
        item_named(tree, page)->parent()->setExpanded(true);
        item_named(tree, page)->setExpanded(true);
        tree->setCurrentItem(item_named(tree, page));
        QTest::keyClick(tree, Qt::Key_Space);
    };
    walk.step("grants_given", [&] {
        open_grants("demo_guest", [&](QWidget* dialog) {
            auto* tree = child<QTreeWidget>(dialog, "treewidget");
            expect_state(tree, page, Qt::Unchecked);
            press_space(dialog);
            expect_state(tree, page, Qt::Checked);
            expect_state(tree, QStringLiteral("基础信息"), Qt::PartiallyChecked);
            walk.picture();
        });
    });
    walk.step("grants_taken", [&] {
        open_grants("demo_guest", [&](QWidget* dialog) {
            auto* tree = child<QTreeWidget>(dialog, "treewidget");
            expect_state(tree, page, Qt::Checked);
            press_space(dialog);
            expect_state(tree, page, Qt::Unchecked);
            expect_state(tree, QStringLiteral("基础信息"), Qt::Unchecked);
        });
    });
}

void tour::menu_steps() {
    walk.step("menu_administration", [&] {
        walk.with_modal(
            [&] { shell->slot_open_menu(); },
            [&](QWidget* dialog) {
                walk.expect(dialog->windowTitle() == QStringLiteral("编辑导航"), QStringLiteral("the title"));
                const auto* tree = child<QTreeWidget>(dialog, "treewidget");
                walk.expect(tree->topLevelItemCount() == 1 && tree->topLevelItem(0)->childCount() == 5,
                            QStringLiteral("five groups below the root"));
                walk.picture();
                menu_dialogs(dialog);
            });
    });
}

void tour::menu_dialogs(QWidget* administration) {
    auto* menus = qobject_cast<dlg_menu*>(administration);
    auto* tree = child<QTreeWidget>(administration, "treewidget");
    const int rows = tree_lines(tree).size();
    walk.step("menu_administration_menu", [&] {
        with_popup([&] { right_click_node(tree, QStringLiteral("生产完成入库")); },
                   [&](QMenu* menu) {
                       walk.expect(entries(menu).size() == 5,
                                   QStringLiteral("three entries, two separators"));
                       walk.picture();
                   });
    });
    walk.step("menu_add", [&] {
        walk.with_modal([&] { menus->slot_menu_to_add(); },
                        [&](QWidget* dialog) {
                            walk.expect(dialog->windowTitle() == QStringLiteral("添加子操作"),
                                        QStringLiteral("the title"));
                            walk.picture();
                            click(dialog, "btn_close");
                        });
        walk.expect(tree_lines(tree).size() == rows, QStringLiteral("nothing is added"));
    });
    walk.step("menu_edit", [&] {
        walk.with_modal([&] { menus->slot_menu_to_edit(); },
                        [&](QWidget* dialog) {
                            walk.expect(child<QRadioButton>(dialog, "radio_custom")->isChecked() &&
                                            child<QLineEdit>(dialog, "txt_name")->text() ==
                                                QStringLiteral("生产完成入库"),
                                        QStringLiteral("the row"));
                            walk.picture();
                            click(dialog, "btn_close");
                        });
    });
}

void tour::keeper_steps() {
    relogin_as("keeper", "demo_keeper");
    walk.step("keeper_employee_list", [&] {
        const auto* navigation = child<QTreeWidget>(shell, "treewidget");
        walk.expect(navigation->topLevelItemCount() == 4,
                    QStringLiteral("documents, stock and master data, no users"));
        open_page("emp", QStringLiteral("员工管理"));
        walk.expect(table()->rowCount() == 20, QStringLiteral("a page of 20"));
        walk.expect(child<QPushButton>(front(), "btn_search")->isVisible(), QStringLiteral("may search"));
        for (const char* button : {"btn_add", "btn_edit", "btn_delete"})
            walk.expect(child<QPushButton>(front(), button)->isHidden(), QLatin1String(button));
        walk.picture();
    });
    walk.step("keeper_department_menu", [&] {
        open_page("dept", QStringLiteral("部门管理"));
        with_popup([&] { right_click_node(child<QTreeView>(front(), "treeview"), QStringLiteral("仓储部")); },
                   [&](QMenu* menu) {
                       walk.expect(!menu->actions().at(2)->isEnabled(),
                                   QStringLiteral("may not add a department"));
                       walk.picture();
                   });
    });
}
