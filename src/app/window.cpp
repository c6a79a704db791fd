#include "app/window.h"

#include <QAction>
#include <QCursor>
#include <QDesktopServices>
#include <QMenu>
#include <QTabBar>
#include <QUrl>

#include "access/dlg_menu.h"
#include "access/dlg_user_login.h"
#include "app/dlg_about.h"
#include "app/navigation.h"
#include "model/model_menu.h"
#include "net/constants.h"
#include "net/http.h"
#include "ui_window.h"

window::window() : ui(std::make_unique<Ui::window>()) {
    ui->setupUi(this);
    make_tab_menu();
}

window::~window() = default;

void window::slot_init_info() {
    ui->treewidget->setEditTriggers(QAbstractItemView::NoEditTriggers);
    slot_menu_get_list();
    setWindowTitle(g_app_title + QStringLiteral(" -【当前用户：") + g_http.current_user.username +
                   QStringLiteral("用户】"));
    make_menus();
    show_home();
}

void window::slot_menu_get_list() {
    model_menu menu(nullptr, ui->treewidget, 2);
    menu.get_menu();
}

/** The actions have no parent: those of an earlier login are abandoned, not deleted. */
void window::make_menus() {
    ui->menuBar->clear();
    user_menu = ui->menuBar->addMenu(QStringLiteral("用户"));
    help_menu = ui->menuBar->addMenu(QStringLiteral("帮助"));

    auto* act_relogin = new QAction(QStringLiteral("重新登录"), nullptr);
    auto* act_quit = new QAction(QStringLiteral("退出程序"), nullptr);
    user_menu->addAction(act_relogin);
    user_menu->addSeparator();
    user_menu->addAction(act_quit);
    connect(act_quit, &QAction::triggered, this, &QWidget::close);

    // In no menu: the menu administration has no way in from here, and the connection stays all the same.
    auto* act_menu = new QAction(QStringLiteral("权限设置"), nullptr);
    connect(act_menu, &QAction::triggered, this, &window::slot_open_menu);

    auto* act_help = new QAction(QStringLiteral("使用说明"), nullptr);
    auto* act_about = new QAction(QStringLiteral("关于"), nullptr);
    connect(act_relogin, &QAction::triggered, this, &window::slot_relogin);
    connect(act_help, &QAction::triggered, this, &window::slot_open_help);
    connect(act_about, &QAction::triggered, this, &window::slot_open_about);
    help_menu->addAction(act_help);
    help_menu->addSeparator();
    help_menu->addAction(act_about);
}

void window::show_home() {
    if (ui->main_tab->count() > 0) slot_tabbar_close_all();
    ui->main_tab->addTab(&home, QStringLiteral("首页"));
    ui->main_tab->setTabsClosable(true);
    ui->main_tab->tabBar()->setTabButton(0, QTabBar::RightSide, nullptr);
}

void window::slot_open_help() {
    QDesktopServices::openUrl(QUrl(g_http.base_url + QStringLiteral("help/wms")));
}

void window::slot_open_about() {
    dlg_about about(this);
    about.exec();
}

void window::slot_open_menu() {
    dlg_menu menu(this);
    menu.setWindowTitle(QStringLiteral("编辑导航"));
    menu.exec();
}

void window::slot_relogin() {
    dlg_user_login login;
    hide();
    connect(&login, &dlg_user_login::signal_init_info, this, &window::slot_init_info, Qt::UniqueConnection);
    if (login.exec() == QDialog::Accepted) show();
}

void window::on_btn_navi_show_hide_clicked() {
    const bool fold = ui->treewidget->isVisible();
    ui->treewidget->setVisible(!fold);
    ui->btn_navi_show_hide->setToolTip(fold ? QStringLiteral("点击展开") : QStringLiteral("点击折叠"));
}

void window::on_treewidget_itemClicked(QTreeWidgetItem* item, int) {
    const QString key = item->data(2, Qt::DisplayRole).toString();
    if (open_tabs.contains(key)) {
        ui->main_tab->setCurrentWidget(open_tabs[key]);
        return;
    }
    if (opening.contains(key)) return;
    opening.insert(key);
    open_tab(key);
    opening.remove(key);
}

void window::open_tab(const QString& key) {
    const navigation_row* row = find_navigation_row(key);
    QWidget* tab = row == nullptr ? nullptr : make_screen(*row, this);
    if (tab == nullptr) return;
    tab->setProperty("action", key);
    ui->main_tab->addTab(tab, row->title);
    ui->main_tab->setCurrentWidget(tab);
    QTabBar* bar = ui->main_tab->tabBar();
    bar->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(bar, &QWidget::customContextMenuRequested, this, &window::slot_tabbar_right_menu,
            Qt::UniqueConnection);
    open_tabs[key] = tab;
}
