#include <QAbstractButton>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QTabBar>
#include <QTabWidget>
#include <QTest>
#include <QTimer>
#include <QTreeWidget>

#include "app/window.h"
#include "gui/app/app_fixture.h"
#include "support/screen.h"

namespace {

const QStringList all_entries{QStringLiteral("关闭"), QStringLiteral("关闭其他"),
                              QStringLiteral("关闭左侧 ⏪"), QStringLiteral("关闭右侧 ⏩"),
                              QStringLiteral("关闭所有")};

class window_tabs_test : public app_test {
protected:
    window_tabs_test() {
        serve_menu_and_partners();
        log_in_administrator();
        shell.slot_init_info();
        shell.show();
        tabs = child<QTabWidget>(&shell, "main_tab");
    }

    /** The home tab and the first `count` partner tabs, the one at `current` in front. */
    void open_tabs(int count, int current) {
        const char* const keys[] = {"company_supplier", "company_client", "company_other"};
        for (int i = 0; i < count; ++i)
            click_navigation(shell, QLatin1String(keys[i]));
        tabs->setCurrentIndex(current);
    }

    QStringList titles() const {
        QStringList texts;
        for (int i = 0; i < tabs->count(); ++i)
            texts.append(tabs->tabText(i));
        return texts;
    }

    /** The entries that are disabled when the context menu comes up. */
    QStringList disabled_entries() {
        QStringList texts;
        with_popup([this] { shell.slot_tabbar_right_menu(); },
                   [&texts](QMenu* menu) {
                       const auto actions = menu->actions();
                       for (const QAction* action : actions)
                           if (!action->isSeparator() && !action->isEnabled()) texts.append(action->text());
                   });
        return texts;
    }

    QAction* tab_menu_entry(const QString& text) {
        const auto menus = tabs->tabBar()->findChildren<QMenu*>();
        for (const QMenu* menu : menus) {
            const auto actions = menu->actions();
            for (QAction* action : actions)
                if (action->text() == text) return action;
        }
        throw std::runtime_error("no such entry");
    }

    window shell;
    QTabWidget* tabs;
    const QString home = QStringLiteral("首页");
    const QString supplier = QStringLiteral("供应商单位");
    const QString client = QStringLiteral("客户单位");
    const QString other = QStringLiteral("其他单位");
};

} // namespace

TEST_F(window_tabs_test, a_click_opens_the_page_of_its_row_in_front) {
    const struct {
        const char* key;
        QString title;
        QByteArray kind;
    } pages[] = {
        {"company_supplier", supplier, "1"}, {"company_client", client, "2"}, {"company_other", other, "3"}};
    int count = 1;
    for (const auto& page : pages) {
        server.forget();
        click_navigation(shell, QLatin1String(page.key));
        ASSERT_EQ(tabs->count(), ++count);
        EXPECT_EQ(tabs->currentIndex(), count - 1);
        EXPECT_EQ(tabs->tabText(count - 1), page.title);
        EXPECT_EQ(tabs->currentWidget()->metaObject()->className(), std::string("tab_company"));
        EXPECT_EQ(tabs->currentWidget()->property("action").toString(), QLatin1String(page.key));
        EXPECT_TRUE(server.last().body.startsWith("type=" + page.kind + "&")) << server.last().body.data();
    }
}

TEST_F(window_tabs_test, whichever_column_is_clicked_counts) {
    for (int column = 0; column < 7; ++column) {
        shell.on_treewidget_itemClicked(navigation_item(shell, QStringLiteral("company_client")), column);
        EXPECT_EQ(titles(), (QStringList{home, client})) << column;
        shell.slot_tabbar_close_all();
    }
}

TEST_F(window_tabs_test, rows_that_are_no_page_do_nothing) {
    for (const char* key : {"base", "stock", "page_of_tomorrow"})
        click_navigation(shell, QLatin1String(key));
    EXPECT_EQ(tabs->count(), 1);
    EXPECT_EQ(server.paths(), QList<QByteArray>{"wms_menu/get_menu"});
    EXPECT_EQ(tabs->tabBar()->contextMenuPolicy(), Qt::DefaultContextMenu);
}

TEST_F(window_tabs_test, a_second_click_brings_the_open_tab_to_the_front_as_it_was) {
    server.always("wms_company/get_page", R"({"list":[],"total":50,"page_count":3,"page_num":1})");
    open_tabs(2, 1);
    QWidget* const first = tabs->widget(1);
    child<QLineEdit>(first, "txt_name")->setText(QStringLiteral("青"));
    QTest::mousePress(child<QLabel>(first, "lbl_next"), Qt::LeftButton);
    tabs->setCurrentIndex(2);
    server.forget();
    click_navigation(shell, QStringLiteral("company_supplier"));
    EXPECT_EQ(tabs->count(), 3);
    EXPECT_EQ(tabs->currentWidget(), first);
    EXPECT_EQ(child<QLineEdit>(first, "txt_name")->text(), QStringLiteral("青"));
    EXPECT_EQ(child<QLineEdit>(first, "txt_page_num")->text(), QStringLiteral("2"));
    EXPECT_TRUE(server.requests().isEmpty());
}

TEST_F(window_tabs_test, two_kinds_of_one_screen_are_two_tabs) {
    server.always("wms_menu/get_menu", R"([{"id":"1","name":"入库","action":"instore","child":[
        {"id":"11","name":"采购","action":"instore_purchase","real_level":"1","child":[
         {"id":"12","name":"查询","action":"search","real_level":"2"}]},
        {"id":"13","name":"其他","action":"instore_other","real_level":"1","child":[
         {"id":"14","name":"查询","action":"search","real_level":"2"}]}]}])");
    shell.slot_init_info();
    click_navigation(shell, QStringLiteral("instore_purchase"));
    EXPECT_TRUE(server.last().body.contains("&instore_type=1&")) << server.last().body.data();
    click_navigation(shell, QStringLiteral("instore_other"));
    EXPECT_TRUE(server.last().body.contains("&instore_type=7&")) << server.last().body.data();
    EXPECT_EQ(titles(), (QStringList{home, QStringLiteral("采购进货入库"), QStringLiteral("其他入库")}));
    QWidget* const purchase = tabs->widget(1);
    QWidget* const any_other = tabs->widget(2);
    for (const QWidget* each : {purchase, any_other})
        EXPECT_EQ(each->metaObject()->className(), std::string("tab_instore"));
    EXPECT_FALSE(child<QLineEdit>(purchase, "txt_company")->isHidden());
    EXPECT_TRUE(child<QLineEdit>(any_other, "txt_company")->isHidden());
    server.forget();
    click_navigation(shell, QStringLiteral("instore_purchase"));
    EXPECT_EQ(tabs->currentWidget(), purchase);
    click_navigation(shell, QStringLiteral("instore_other"));
    EXPECT_EQ(tabs->currentWidget(), any_other);
    EXPECT_EQ(tabs->count(), 3);
    EXPECT_TRUE(server.requests().isEmpty());
}

TEST_F(window_tabs_test, a_click_while_the_tab_is_being_made_makes_no_second_one) {
    server.always("wms_company/get_page", scripted_answer::late(50, partner_page));
    bool clicked_again = false;
    QTimer during;
    QObject::connect(&during, &QTimer::timeout, &during, [&] {
        if (server.bodies("wms_company/get_page").isEmpty()) return;
        during.stop();
        clicked_again = true;
        EXPECT_EQ(tabs->count(), 1) << "the first click is still being served";
        click_navigation(shell, QStringLiteral("company_supplier"));
    });
    during.start(1);
    click_navigation(shell, QStringLiteral("company_supplier"));
    EXPECT_TRUE(clicked_again);
    EXPECT_EQ(titles(), (QStringList{home, supplier}));
    EXPECT_EQ(server.bodies("wms_company/get_page").size(), 3);
    shell.slot_tabbar_close_this();
    click_navigation(shell, QStringLiteral("company_supplier"));
    EXPECT_EQ(titles(), (QStringList{home, supplier}));
}

TEST_F(window_tabs_test, a_closed_tab_is_made_anew) {
    open_tabs(1, 1);
    QPointer<QWidget> former = tabs->widget(1);
    child<QLineEdit>(former, "txt_name")->setText(QStringLiteral("青"));
    shell.slot_tabbar_close_this();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(former.isNull());
    server.forget();
    click_navigation(shell, QStringLiteral("company_supplier"));
    ASSERT_EQ(tabs->count(), 2);
    EXPECT_TRUE(child<QLineEdit>(tabs->widget(1), "txt_name")->text().isEmpty());
    EXPECT_EQ(server.last().body, "type=1&page_num=1&page_size=20");
}

TEST_F(window_tabs_test, a_click_on_the_bar_brings_a_tab_to_the_front) {
    open_tabs(3, 3);
    QTest::mouseClick(tabs->tabBar(), Qt::LeftButton, Qt::NoModifier, tabs->tabBar()->tabRect(1).center());
    EXPECT_EQ(tabs->currentIndex(), 1);
    shell.on_main_tab_tabBarClicked(2);
    EXPECT_EQ(tabs->currentIndex(), 2);
}

TEST_F(window_tabs_test, the_close_button_closes_its_tab) {
    open_tabs(3, 3);
    qobject_cast<QAbstractButton*>(tabs->tabBar()->tabButton(1, QTabBar::RightSide))->click();
    EXPECT_EQ(titles(), (QStringList{home, client, other}));
    EXPECT_EQ(tabs->currentIndex(), 2);
}

TEST_F(window_tabs_test, close_this_closes_the_current_tab) {
    open_tabs(3, 2);
    shell.slot_tabbar_close_this();
    EXPECT_EQ(titles(), (QStringList{home, supplier, other}));
}

TEST_F(window_tabs_test, close_left_keeps_home_and_the_current_tab) {
    open_tabs(3, 3);
    shell.slot_tabbar_close_left();
    EXPECT_EQ(titles(), (QStringList{home, other}));
    EXPECT_EQ(tabs->currentIndex(), 1);
}

TEST_F(window_tabs_test, close_left_on_tab_one_or_home_has_nothing_to_do) {
    for (const int current : {0, 1}) {
        open_tabs(3, current);
        shell.slot_tabbar_close_left();
        EXPECT_EQ(titles(), (QStringList{home, supplier, client, other}));
    }
}

TEST_F(window_tabs_test, close_right_keeps_what_is_left_of_the_current_tab) {
    open_tabs(3, 1);
    shell.slot_tabbar_close_right();
    EXPECT_EQ(titles(), (QStringList{home, supplier}));
    open_tabs(3, 0);
    shell.slot_tabbar_close_right();
    EXPECT_EQ(titles(), QStringList{home});
}

TEST_F(window_tabs_test, close_other_keeps_home_and_the_current_tab) {
    open_tabs(3, 2);
    shell.slot_tabbar_close_other();
    EXPECT_EQ(titles(), (QStringList{home, client}));
}

TEST_F(window_tabs_test, close_all_keeps_home) {
    open_tabs(3, 2);
    shell.slot_tabbar_close_all();
    EXPECT_EQ(titles(), QStringList{home});
}

TEST_F(window_tabs_test, home_stays_for_the_life_of_the_window) {
    shell.slot_tabbar_close_this();
    shell.on_main_tab_tabCloseRequested(0);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(titles(), QStringList{home});
    EXPECT_NE(qobject_cast<tab_main*>(tabs->widget(0)), nullptr);
}

TEST_F(window_tabs_test, the_tab_menu_has_its_entries_from_the_start) {
    const auto menus = tabs->tabBar()->findChildren<QMenu*>();
    ASSERT_EQ(menus.size(), 1);
    EXPECT_EQ(entries(menus[0]), all_entries.join(QStringLiteral("\n-\n")).split(QLatin1Char('\n')));
    EXPECT_EQ(menus[0]->parentWidget(), tabs->tabBar());
}

TEST_F(window_tabs_test, entries_run_their_operations) {
    open_tabs(3, 2);
    tab_menu_entry(all_entries[2])->trigger();
    EXPECT_EQ(titles(), (QStringList{home, client, other}));
    tab_menu_entry(all_entries[3])->trigger();
    EXPECT_EQ(titles(), (QStringList{home, client}));
    tab_menu_entry(all_entries[0])->trigger();
    EXPECT_EQ(titles(), QStringList{home});
    open_tabs(3, 2);
    tab_menu_entry(all_entries[1])->trigger();
    EXPECT_EQ(titles(), (QStringList{home, client}));
    tab_menu_entry(all_entries[4])->trigger();
    EXPECT_EQ(titles(), QStringList{home});
}

TEST_F(window_tabs_test, the_bar_gets_its_menu_with_the_first_page_and_only_once) {
    EXPECT_EQ(tabs->tabBar()->contextMenuPolicy(), Qt::DefaultContextMenu);
    open_tabs(3, 2);
    EXPECT_EQ(tabs->tabBar()->contextMenuPolicy(), Qt::CustomContextMenu);
    int shown = 0;
    QObject::connect(tabs->tabBar()->findChild<QMenu*>(), &QMenu::aboutToShow, &shell, [&shown] { ++shown; });
    with_popup([this] { emit tabs->tabBar()->customContextMenuRequested(QPoint(5, 5)); }, [](QMenu*) {});
    EXPECT_EQ(shown, 1);
}

TEST_F(window_tabs_test, home_alone_disables_everything) {
    EXPECT_EQ(disabled_entries(), all_entries);
}

TEST_F(window_tabs_test, home_before_others_disables_close_and_left) {
    open_tabs(2, 0);
    EXPECT_EQ(disabled_entries(), (QStringList{all_entries[0], all_entries[2]}));
}

TEST_F(window_tabs_test, the_only_page_can_be_closed_alone_or_with_all) {
    open_tabs(1, 1);
    EXPECT_EQ(disabled_entries(), (QStringList{all_entries[1], all_entries[2], all_entries[3]}));
}

TEST_F(window_tabs_test, the_first_of_several_pages_has_nothing_on_its_left) {
    open_tabs(2, 1);
    EXPECT_EQ(disabled_entries(), QStringList{all_entries[2]});
}

TEST_F(window_tabs_test, the_last_page_has_nothing_on_its_right) {
    open_tabs(3, 3);
    EXPECT_EQ(disabled_entries(), QStringList{all_entries[3]});
}

TEST_F(window_tabs_test, a_page_in_the_middle_has_everything) {
    open_tabs(3, 2);
    EXPECT_EQ(disabled_entries(), QStringList());
}

TEST_F(window_tabs_test, a_disabled_entry_is_never_enabled_again) {
    open_tabs(1, 1);
    const QStringList once = disabled_entries();
    open_tabs(3, 2);
    EXPECT_EQ(disabled_entries(), once) << "in the middle nothing would be disabled by itself";
    shell.slot_init_info();
    open_tabs(3, 2);
    EXPECT_EQ(disabled_entries(), once) << "a new login enables nothing either";
}

TEST_F(window_tabs_test, the_menu_works_on_the_current_tab_not_on_the_one_under_the_pointer) {
    open_tabs(3, 2);
    const QPoint over_last = tabs->tabBar()->tabRect(3).center();
    with_popup([&] { emit tabs->tabBar()->customContextMenuRequested(over_last); },
               [this](QMenu*) { tab_menu_entry(all_entries[0])->trigger(); });
    EXPECT_EQ(titles(), (QStringList{home, supplier, other}));
}
