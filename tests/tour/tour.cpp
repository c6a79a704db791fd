#include "tour/tour.h"

#include <QCursor>
#include <QDateTime>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QMessageBox>
#include <QPushButton>
#include <QTabBar>
#include <QTabWidget>
#include <QTableWidget>
#include <QTest>
#include <QTreeWidget>

#include "access/dlg_user_login.h"
#include "app/dlg_about.h"
#include "app/navigation.h"
#include "app/window.h"
#include "net/http.h"
#include "support/screen.h"
#include "support/tree.h"

namespace {

const QString password = QStringLiteral("Tavrok-2026");

} // namespace

tour::tour(const QString& folder, QSize screen)
    : walk(folder),
      screen_size(screen),
      stamp(QString::number(10000000 + QDateTime::currentMSecsSinceEpoch() % 90000000)) {}

QWidget* tour::front() const {
    return child<QTabWidget>(shell, "main_tab")->currentWidget();
}

QTableWidget* tour::table() const {
    return child<QTableWidget>(front(), "tablewidget");
}

void tour::right_click_row(int row) {
    click_row(table(), row);
    const QPoint point = table()->visualItemRect(table()->item(row, 1)).center();
    QCursor::setPos(table()->viewport()->mapToGlobal(point));
    emit table()->customContextMenuRequested(point);
}

void tour::right_click_node(QTreeView* tree, const QString& name) {
    click_node(tree, name);
    const QPoint point = tree->visualRect(tree_node_named(tree, name)).center();
    QCursor::setPos(tree->viewport()->mapToGlobal(point));
    emit tree->customContextMenuRequested(point);
}

int tour::row_named(const QString& name) const {
    for (int row = 0; row < table()->rowCount(); ++row)
        if (table()->item(row, 1)->text() == name) return row;
    throw std::runtime_error("no row " + name.toStdString());
}

void tour::fill(QWidget* dialog, texts fields) {
    for (const auto& [field, text] : fields)
        child<QLineEdit>(dialog, field)->setText(text);
}

int tour::column_named(const QTableWidget* table, const QString& header) {
    for (int column = 0; column < table->columnCount(); ++column) {
        const QTableWidgetItem* item = table->horizontalHeaderItem(column);
        if (item != nullptr && item->text() == header && !table->isColumnHidden(column)) return column;
    }
    throw std::runtime_error("no column " + header.toStdString());
}

void tour::open_page(const char* key, const QString& title) {
    click_navigation(*shell, QLatin1String(key));
    const auto* tabs = child<QTabWidget>(shell, "main_tab");
    walk.expect(tabs->tabText(tabs->currentIndex()) == title, QStringLiteral("the tab ") + title);
}

void tour::open_dialog(const char* button, const QString& title, const std::function<void(QWidget*)>& look) {
    open_dialog_of(front(), button, title, look);
}

void tour::open_dialog_of(QWidget* owner, const char* button, const QString& title,
                          const std::function<void(QWidget*)>& look) {
    walk.with_modal([&] { click(owner, button); },
                    [&](QWidget* dialog) {
                        walk.expect(dialog->windowTitle() == title, QStringLiteral("the title ") + title);
                        walk.picture();
                        look(dialog);
                    });
}

void tour::open_picker(QWidget* owner, const char* field, const QString& title,
                       const std::function<void(QWidget*)>& look) {
    walk.with_modal([&] { QTest::mouseClick(child<QLineEdit>(owner, field), Qt::LeftButton); },
                    [&](QWidget* picker) {
                        walk.expect(picker->windowTitle() == title, QStringLiteral("the title ") + title);
                        look(picker);
                    });
}

void tour::answer_yes(QWidget* question) {
    auto* box = qobject_cast<QMessageBox*>(question);
    walk.expect(box != nullptr && box->text() == QStringLiteral("确认删除吗？"),
                QStringLiteral("the question"));
    box->button(QMessageBox::Yes)->click();
}

void tour::delete_top_row(const QString& name, int column) {
    walk.expect(table()->item(0, column)->text() == name, QStringLiteral("the row on top"));
    click_row(table(), 0);
    walk.with_modal([&] { click(front(), "btn_delete"); }, [&](QWidget* box) { answer_yes(box); });
    click(front(), "btn_search");
    walk.expect(table()->rowCount() > 0 && table()->item(0, column)->text() != name,
                QStringLiteral("the service has dropped it"));
}

void tour::submit(QWidget* login, const char* name, const QString& typed) {
    child<QLineEdit>(login, "txt_login_name")->setText(QLatin1String(name));
    child<QLineEdit>(login, "txt_login_pass")->setText(typed);
    click(login, "btn_submit");
}

void tour::login_steps(QWidget* login) {
    walk.step("login", [&] {
        walk.settle(login);
        walk.expect(login->windowTitle().contains(QStringLiteral("用户登陆")), QStringLiteral("the title"));
        walk.expect(login->size() == QSize(426, 275), QStringLiteral("the dialog has its size"));
        walk.picture();
    });
    walk.step("login_tip", [&] {
        click(login, "btn_submit");
        walk.expect_tip(QStringLiteral("请输入帐号"));
    });
    sign_up_steps(login);
    walk.step("login_refused", [&] {
        walk.with_modal([&] { submit(login, "demo_admin", QStringLiteral("wrong")); },
                        [&](QWidget* box) {
                            walk.expect(qobject_cast<QMessageBox*>(box) != nullptr &&
                                            qobject_cast<QMessageBox*>(box)->text() ==
                                                QStringLiteral("用户名、密码错误或帐号已停用"),
                                        QStringLiteral("the warning"));
                            walk.picture();
                        });
        walk.expect(login->isVisible(), QStringLiteral("the login is still there"));
    });
    walk.step("login_filled", [&] {
        child<QLineEdit>(login, "txt_login_name")->setText(QStringLiteral("demo_admin"));
        child<QLineEdit>(login, "txt_login_pass")->setText(password);
        walk.picture();
        click(login, "btn_submit");
        walk.expect(!login->isVisible(), QStringLiteral("the login is accepted"));
    });
}

void tour::main_steps(window& shown) {
    shell = &shown;
    shell_steps();
    list_steps();
    add_steps();
    edit_steps();
    other_steps();
    department_steps();
    category_steps();
    product_steps();
    employee_steps();
    warehouse_steps();
    document_steps();
    user_steps();
    grant_steps();
    menu_steps();
    clerk_steps();
    keeper_steps();
    guest_steps();
}

void tour::shell_steps() {
    walk.step("main_window", [&] {
        walk.expect(shell->isMaximized(), QStringLiteral("the window is maximised"));
        // The off-screen platform's screen is small: from here on a usual size.
        shell->showNormal();
        shell->resize(screen_size);
        walk.expect(shell->windowTitle().contains(QStringLiteral("【当前用户：demo_admin用户】")),
                    QStringLiteral("the title names the user"));
        for (const navigation_row& row : navigation_rows())
            walk.expect(navigation_item(*shell, row.key) != nullptr, row.key);
        const auto* tabs = child<QTabWidget>(shell, "main_tab");
        walk.expect(tabs->count() == 1 && tabs->tabText(0) == QStringLiteral("首页"),
                    QStringLiteral("the home tab"));
        walk.picture();
    });
    for (const int index : {0, 1}) {
        walk.step(index == 0 ? "menu_user" : "menu_help", [&] {
            auto* bar = child<QMenuBar>(shell, "menuBar");
            QAction* action = bar->actions().at(index);
            with_popup(
                [&] {
                    QTest::mouseClick(bar, Qt::LeftButton, Qt::NoModifier,
                                      bar->actionGeometry(action).center());
                },
                [&](QMenu* menu) {
                    walk.expect(entries(menu).size() == 3, QStringLiteral("two entries and a separator"));
                    walk.picture();
                });
        });
    }
    walk.step("navigation_folded", [&] {
        click(shell, "btn_navi_show_hide");
        walk.expect(!child<QTreeWidget>(shell, "treewidget")->isVisible(),
                    QStringLiteral("the tree is folded"));
        walk.picture();
        click(shell, "btn_navi_show_hide");
    });
    walk.step("about", [&] {
        walk.with_modal(
            [&] { shell->slot_open_about(); },
            [&](QWidget* about) {
                walk.expect(qobject_cast<dlg_about*>(about) != nullptr, QStringLiteral("the dialog"));
                walk.expect(child<QLabel>(about, "txt_version")->text() == QStringLiteral("1.0.3"),
                            QStringLiteral("the version"));
                walk.picture();
            });
    });
    walk.step("help", [&] {
        shell->slot_open_help();
        walk.expect(web.opened.value(0) == QUrl(g_http.base_url + QStringLiteral("help/wms")),
                    QStringLiteral("the browser gets the manual's address"));
    });
}

void tour::relogin_as(const char* step_name, const char* user) {
    walk.step(step_name, [&] {
        walk.with_modal([&] { shell->slot_relogin(); },
                        [&](QWidget* login) {
                            walk.expect(!shell->isVisible(), QStringLiteral("the window is hidden"));
                            submit(login, user, password);
                        });
        walk.expect(shell->isVisible(), QStringLiteral("the window is back"));
        walk.expect(shell->windowTitle().contains(QLatin1String(user)),
                    QStringLiteral("the title names the user"));
        walk.expect(child<QTabWidget>(shell, "main_tab")->count() == 1,
                    QStringLiteral("the tabs are closed"));
        walk.picture();
    });
}

void tour::clerk_steps() {
    relogin_as("clerk", "demo_clerk");
    walk.step("clerk_supplier_list", [&] {
        click_navigation(*shell, QStringLiteral("company_supplier"));
        walk.expect(table()->rowCount() == 20, QStringLiteral("a page of 20"));
        walk.expect(g_http.rights[QStringLiteral("company_other")] == QStringList{QStringLiteral("search")},
                    QStringLiteral("only search on the other units"));
        with_popup([&] { right_click_row(1); },
                   [&](QMenu* menu) {
                       walk.expect(!menu->actions().last()->isEnabled(), QStringLiteral("delete is grey"));
                       walk.picture();
                   });
    });
}

void tour::guest_steps() {
    relogin_as("guest", "demo_guest");
    walk.step("guest_empty_tree", [&] {
        walk.expect(child<QTreeWidget>(shell, "treewidget")->topLevelItemCount() == 0,
                    QStringLiteral("the navigation is empty"));
    });
}
