#pragma once
#include <QHash>
#include <QMainWindow>
#include <QSet>
#include <QString>
#include <memory>

#include "app/tab_main.h"
#include "model/struct_user.h"

class QAction;
class QMenu;
class QTreeWidgetItem;
namespace Ui {
class window;
}

/**
 * The main window: the navigation tree, a grip that folds it away, and a tab for every page that is open. It
 * exists hidden before anybody has logged in; network work begins with slot_init_info.
 */
class window : public QMainWindow {
    Q_OBJECT

public:
    window();
    ~window() override;

signals:
    /** Part of the interface, never emitted. */
    void signal_set_current_user(struct_user user);
    /** Part of the interface, never emitted. */
    void signal_relogin();

public slots:
    /** After a login: navigation, title, menus and home tab for the user who is now in. */
    void slot_init_info();
    void slot_menu_get_list();
    void slot_open_help();
    void slot_open_about();
    void slot_open_menu();
    void slot_relogin();

    /** All of these work on the current tab, wherever the pointer is. */
    void slot_tabbar_right_menu();
    void slot_tabbar_close_this();
    void slot_tabbar_close_left();
    void slot_tabbar_close_right();
    void slot_tabbar_close_other();
    void slot_tabbar_close_all();

    void on_main_tab_tabBarClicked(int index);
    void on_main_tab_tabCloseRequested(int index);
    void on_btn_navi_show_hide_clicked();
    void on_treewidget_itemClicked(QTreeWidgetItem* item, int column);

private:
    void make_tab_menu();
    void make_menus();
    void show_home();
    void open_tab(const QString& key);
    void close_tab(int index);

    std::unique_ptr<Ui::window> ui;
    tab_main home;
    QMenu* user_menu = nullptr;
    QMenu* help_menu = nullptr;
    QMenu* tab_menu = nullptr;
    QAction* act_close = nullptr;
    QAction* act_close_other = nullptr;
    QAction* act_close_left = nullptr;
    QAction* act_close_right = nullptr;
    QAction* act_close_all = nullptr;
    /** Action key to the tab that is open for it. */
    QHash<QString, QWidget*> open_tabs;
    /** Keys whose tab is being made: its first load lets further clicks in. */
    QSet<QString> opening;
};
