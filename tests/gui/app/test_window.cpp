#include <QAction>
#include <QLabel>
#include <QLayout>
#include <QLineEdit>
#include <QMenuBar>
#include <QPointer>
#include <QPushButton>
#include <QSignalSpy>
#include <QTabBar>
#include <QTest>
#include <QTreeWidget>

#include "access/dlg_menu.h"
#include "access/dlg_user_login.h"
#include "app/dlg_about.h"
#include "app/window.h"
#include "gui/app/app_fixture.h"
#include "net/http.h"
#include "support/modal.h"
#include "support/screen.h"

namespace {

class window_test : public app_test {
protected:
    window_test() {
        serve_menu_and_partners();
        log_in_administrator();
    }

    static QMenu* menu(const window& shell, int index) {
        return child<QMenuBar>(&shell, "menuBar")->actions().at(index)->menu();
    }

    static QAction* entry(const window& shell, int menu_index, const QString& text) {
        const auto actions = menu(shell, menu_index)->actions();
        for (QAction* action : actions)
            if (action->text() == text) return action;
        throw std::runtime_error("no such entry");
    }

    void log_in(QWidget* login, const char* name, int type = 1) {
        server.answer(login_answer(name, type));
        child<QLineEdit>(login, "txt_login_name")->setText(QLatin1String(name));
        child<QLineEdit>(login, "txt_login_pass")->setText(QStringLiteral("pw"));
        click(login, "btn_submit");
    }
};

} // namespace

TEST_F(window_test, frame_is_as_stated_before_anybody_has_logged_in) {
    const window shell;
    EXPECT_EQ(shell.parent(), nullptr);
    EXPECT_EQ(shell.size(), QSize(1366, 768));
    EXPECT_TRUE(shell.isHidden());
    const auto* central = child<QWidget>(&shell, "centralWidget");
    EXPECT_EQ(shell.centralWidget(), central);
    EXPECT_EQ(central->layout()->objectName(), QStringLiteral("horizontalLayout_2"));
    EXPECT_EQ(central->layout()->spacing(), 6);
    EXPECT_EQ(central->layout()->contentsMargins(), QMargins(11, 11, 11, 11));

    const auto* tree = child<QTreeWidget>(&shell, "treewidget");
    EXPECT_EQ(tree->sizePolicy().horizontalPolicy(), QSizePolicy::Fixed);
    EXPECT_EQ(tree->sizePolicy().verticalPolicy(), QSizePolicy::Expanding);
    EXPECT_EQ(tree->topLevelItemCount(), 0);

    const auto* grip = child<QPushButton>(&shell, "btn_navi_show_hide");
    EXPECT_EQ(grip->text(), QStringLiteral("::\n::\n::\n::"));
    EXPECT_EQ(grip->sizePolicy().horizontalPolicy(), QSizePolicy::Fixed);
    EXPECT_EQ(grip->sizePolicy().verticalPolicy(), QSizePolicy::Fixed);
    EXPECT_EQ(grip->minimumHeight(), 150);
    EXPECT_EQ(grip->maximumWidth(), 9);
    EXPECT_EQ(child<QLayout>(&shell, "verticalLayout")->itemAt(0)->widget(), grip);

    const auto* tabs = child<QTabWidget>(&shell, "main_tab");
    EXPECT_EQ(tabs->currentIndex(), -1);
    EXPECT_EQ(tabs->count(), 0);
    EXPECT_TRUE(child<QMenuBar>(&shell, "menuBar")->actions().isEmpty());
    EXPECT_EQ(shell.menuBar(), child<QMenuBar>(&shell, "menuBar"));
    EXPECT_TRUE(server.requests().isEmpty());
}

TEST_F(window_test, a_login_loads_the_navigation_once) {
    window shell;
    child<QTreeWidget>(&shell, "treewidget")->setEditTriggers(QAbstractItemView::AllEditTriggers);
    shell.slot_init_info();
    EXPECT_EQ(server.paths(), QList<QByteArray>{"wms_menu/get_menu"});
    EXPECT_EQ(server.last().body, "action=list");
    EXPECT_EQ(child<QTreeWidget>(&shell, "treewidget")->editTriggers(), QAbstractItemView::NoEditTriggers);
    EXPECT_EQ(child<QTreeWidget>(&shell, "treewidget")->topLevelItemCount(), 2);
}

TEST_F(window_test, menu_list_slot_loads_and_leaves_the_edit_triggers_alone) {
    window shell;
    auto* tree = child<QTreeWidget>(&shell, "treewidget");
    tree->setEditTriggers(QAbstractItemView::AllEditTriggers);
    shell.slot_menu_get_list();
    EXPECT_EQ(server.paths(), QList<QByteArray>{"wms_menu/get_menu"});
    EXPECT_EQ(tree->topLevelItemCount(), 2);
    EXPECT_EQ(tree->editTriggers(), QAbstractItemView::AllEditTriggers);
    EXPECT_EQ(child<QTabWidget>(&shell, "main_tab")->count(), 0);
}

TEST_F(window_test, the_title_names_the_user) {
    window shell;
    shell.slot_init_info();
    EXPECT_EQ(shell.windowTitle(), QStringLiteral("Tavrok仓储管理系统(Tavrok_WMS) -【当前用户：boss用户】"));
}

TEST_F(window_test, menus_have_the_stated_entries) {
    window shell;
    shell.slot_init_info();
    const auto menus = child<QMenuBar>(&shell, "menuBar")->actions();
    ASSERT_EQ(menus.size(), 2);
    EXPECT_EQ(menus[0]->text(), QStringLiteral("用户"));
    EXPECT_EQ(menus[1]->text(), QStringLiteral("帮助"));
    EXPECT_EQ(entries(menu(shell, 0)),
              (QStringList{QStringLiteral("重新登录"), QStringLiteral("-"), QStringLiteral("退出程序")}));
    EXPECT_EQ(entries(menu(shell, 1)),
              (QStringList{QStringLiteral("使用说明"), QStringLiteral("-"), QStringLiteral("关于")}));
}

TEST_F(window_test, menus_and_actions_are_made_anew_at_each_login) {
    window shell;
    shell.slot_init_info();
    QPointer<QAction> former = entry(shell, 0, QStringLiteral("重新登录"));
    EXPECT_EQ(former->parent(), nullptr);
    shell.slot_init_info();
    EXPECT_EQ(child<QMenuBar>(&shell, "menuBar")->actions().size(), 2);
    EXPECT_NE(entry(shell, 0, QStringLiteral("重新登录")), former);
    EXPECT_FALSE(former.isNull()) << "abandoned, not deleted";
}

TEST_F(window_test, menu_administration_has_no_way_in) {
    window shell;
    shell.slot_init_info();
    const auto menus = shell.findChildren<QMenu*>();
    for (const QMenu* each : menus)
        EXPECT_FALSE(entries(each).contains(QStringLiteral("权限设置")));
    EXPECT_NE(shell.metaObject()->indexOfSlot("slot_open_menu()"), -1);
}

TEST_F(window_test, the_slot_runs_the_menu_administration) {
    window shell;
    shell.slot_init_info();
    server.forget();
    with_modal_of<dlg_menu>([&shell] { shell.slot_open_menu(); },
                            [&](dlg_menu* menu) {
                                EXPECT_EQ(menu->windowTitle(), QStringLiteral("编辑导航"));
                                EXPECT_EQ(menu->parent(), &shell);
                                EXPECT_EQ(server.bodies("wms_menu/get_menu"),
                                          QList<QByteArray>{"action=edit"});
                                click(menu, "btn_close");
                            });
    EXPECT_FALSE(modal_shown());
}

TEST_F(window_test, home_is_the_one_tab_and_has_no_close_button) {
    window shell;
    shell.slot_init_info();
    const auto* tabs = child<QTabWidget>(&shell, "main_tab");
    ASSERT_EQ(tabs->count(), 1);
    EXPECT_EQ(tabs->tabText(0), QStringLiteral("首页"));
    EXPECT_NE(qobject_cast<tab_main*>(tabs->widget(0)), nullptr);
    EXPECT_TRUE(tabs->tabsClosable());
    EXPECT_EQ(tabs->tabBar()->tabButton(0, QTabBar::RightSide), nullptr);
}

TEST_F(window_test, a_new_login_closes_all_tabs_but_the_first) {
    window shell;
    shell.slot_init_info();
    shell.show();
    open_partner_tabs(shell);
    const auto* tabs = child<QTabWidget>(&shell, "main_tab");
    ASSERT_EQ(tabs->count(), 4);
    QWidget* const home = tabs->widget(0);
    shell.slot_init_info();
    ASSERT_EQ(tabs->count(), 1);
    EXPECT_EQ(tabs->widget(0), home);
    EXPECT_EQ(tabs->tabText(0), QStringLiteral("首页"));
    EXPECT_EQ(tabs->tabBar()->tabButton(0, QTabBar::RightSide), nullptr);
    click_navigation(shell, QStringLiteral("company_client"));
    EXPECT_EQ(tabs->count(), 2);
}

TEST_F(window_test, quit_closes_the_window) {
    window shell;
    shell.slot_init_info();
    shell.show();
    entry(shell, 0, QStringLiteral("退出程序"))->trigger();
    EXPECT_FALSE(shell.isVisible());
}

TEST_F(window_test, help_opens_the_manual_in_the_browser) {
    window shell;
    shell.slot_init_info();
    entry(shell, 1, QStringLiteral("使用说明"))->trigger();
    EXPECT_EQ(web.opened, QList<QUrl>{QUrl(server.base_url() + QStringLiteral("help/wms"))});
}

TEST_F(window_test, about_opens_over_the_window) {
    window shell;
    shell.slot_init_info();
    shell.show();
    with_modal_of<dlg_about>([&] { entry(shell, 1, QStringLiteral("关于"))->trigger(); },
                             [&](dlg_about* about) {
                                 EXPECT_EQ(about->parentWidget(), &shell);
                                 click(about, "btn_close");
                             });
}

TEST_F(window_test, relogin_hides_the_window_until_somebody_is_in) {
    window shell;
    shell.slot_init_info();
    shell.show();
    open_partner_tabs(shell);
    log_in_clerk({QStringLiteral("77")});
    with_modal_of<dlg_user_login>([&] { entry(shell, 0, QStringLiteral("重新登录"))->trigger(); },
                                  [&](dlg_user_login* login) {
                                      EXPECT_FALSE(shell.isVisible());
                                      EXPECT_EQ(login->parent(), nullptr);
                                      log_in(login, "second");
                                  });
    EXPECT_TRUE(shell.isVisible());
    EXPECT_EQ(shell.windowTitle(),
              QStringLiteral("Tavrok仓储管理系统(Tavrok_WMS) -【当前用户：second用户】"));
    EXPECT_EQ(child<QTabWidget>(&shell, "main_tab")->count(), 1);
    EXPECT_TRUE(g_http.permissions.isEmpty());
    EXPECT_EQ(child<QTreeWidget>(&shell, "treewidget")->topLevelItemCount(), 2);
}

TEST_F(window_test, relogin_as_a_user_without_grants_empties_tree_and_rights) {
    window shell;
    shell.slot_init_info();
    shell.show();
    with_modal([&] { shell.slot_relogin(); }, [&](QWidget* login) { log_in(login, "guest", 2); });
    EXPECT_TRUE(shell.isVisible());
    EXPECT_EQ(child<QTreeWidget>(&shell, "treewidget")->topLevelItemCount(), 0);
    EXPECT_TRUE(g_http.rights.isEmpty());
}

TEST_F(window_test, an_abandoned_relogin_leaves_the_window_hidden) {
    window shell;
    shell.slot_init_info();
    shell.show();
    with_modal([&] { shell.slot_relogin(); },
               [](QWidget* login) { qobject_cast<QDialog*>(login)->reject(); });
    EXPECT_FALSE(shell.isVisible());
    EXPECT_EQ(g_http.current_user.username, QStringLiteral("boss"));
}

TEST_F(window_test, the_grip_folds_the_navigation) {
    window shell;
    shell.slot_init_info();
    shell.show();
    const auto* tree = child<QTreeWidget>(&shell, "treewidget");
    const auto* grip = child<QPushButton>(&shell, "btn_navi_show_hide");
    click(&shell, "btn_navi_show_hide");
    EXPECT_FALSE(tree->isVisible());
    EXPECT_EQ(grip->toolTip(), QStringLiteral("点击展开"));
    click(&shell, "btn_navi_show_hide");
    EXPECT_TRUE(tree->isVisible());
    EXPECT_EQ(grip->toolTip(), QStringLiteral("点击折叠"));
}

TEST_F(window_test, the_fold_is_not_kept) {
    {
        window first;
        first.slot_init_info();
        first.show();
        click(&first, "btn_navi_show_hide");
    }
    window second;
    second.slot_init_info();
    second.show();
    EXPECT_TRUE(child<QTreeWidget>(&second, "treewidget")->isVisible());
}

TEST_F(window_test, two_signals_are_declared_and_never_emitted) {
    window shell;
    QSignalSpy user(&shell, &window::signal_set_current_user);
    QSignalSpy again(&shell, &window::signal_relogin);
    shell.slot_init_info();
    shell.show();
    with_modal([&] { shell.slot_relogin(); }, [&](QWidget* login) { log_in(login, "second"); });
    EXPECT_TRUE(user.isValid());
    EXPECT_EQ(user.count(), 0);
    EXPECT_EQ(again.count(), 0);
}

TEST_F(window_test, a_failed_menu_load_leaves_an_empty_tree_and_a_usable_window) {
    server.always("wms_menu/get_menu", scripted_answer::dropped());
    window shell;
    g_http.rights[QStringLiteral("company_other")] = QStringList{QStringLiteral("search")};
    shell.slot_init_info();
    shell.show();
    EXPECT_EQ(child<QTreeWidget>(&shell, "treewidget")->topLevelItemCount(), 0);
    EXPECT_TRUE(g_http.rights.isEmpty());
    EXPECT_FALSE(modal_shown());
    EXPECT_EQ(shown_tip(), QString());
    EXPECT_EQ(child<QTabWidget>(&shell, "main_tab")->count(), 1);
    serve_menu_and_partners();
    with_modal([&] { entry(shell, 0, QStringLiteral("重新登录"))->trigger(); },
               [&](QWidget* login) { log_in(login, "boss"); });
    EXPECT_EQ(child<QTreeWidget>(&shell, "treewidget")->topLevelItemCount(), 2);
}
