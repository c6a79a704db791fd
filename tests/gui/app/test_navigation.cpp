#include <QHeaderView>
#include <QTabWidget>
#include <QTreeWidget>
#include <memory>

#include "app/navigation.h"
#include "app/window.h"
#include "gui/app/app_fixture.h"
#include "net/http.h"
#include "support/screen.h"

namespace {

struct expected_row {
    const char* key;
    const char* screen;
    int kind;
    QString title;
};

const expected_row expected_rows[] = {
    {"instore_purchase", "tab_instore", 1, QStringLiteral("采购进货入库")},
    {"instore_production", "tab_instore", 2, QStringLiteral("生产完成入库")},
    {"instore_sale_return", "tab_instore", 3, QStringLiteral("销售退货入库")},
    {"instore_receive_return", "tab_instore", 4, QStringLiteral("领用退回入库")},
    {"instore_borrow_return", "tab_instore", 5, QStringLiteral("货品借入入库")},
    {"instore_lend_return", "tab_instore", 6, QStringLiteral("借出返还入库")},
    {"instore_other", "tab_instore", 7, QStringLiteral("其他入库")},
    {"outstore_purchase_return", "tab_outstore", 1, QStringLiteral("采购退货出库")},
    {"outstore_sale_take", "tab_outstore", 2, QStringLiteral("销售取货出库")},
    {"outstore_receive", "tab_outstore", 3, QStringLiteral("领用出库")},
    {"outstore_lend", "tab_outstore", 4, QStringLiteral("借出出库")},
    {"outstore_borrow_return", "tab_outstore", 5, QStringLiteral("还货出库")},
    {"outstore_other", "tab_outstore", 6, QStringLiteral("其他出库")},
    {"prodcate", "dlg_prodcate", 1, QStringLiteral("货品类别管理")},
    {"product", "tab_product", 0, QStringLiteral("货品管理")},
    {"company_supplier", "tab_company", 1, QStringLiteral("供应商单位")},
    {"company_client", "tab_company", 2, QStringLiteral("客户单位")},
    {"company_other", "tab_company", 3, QStringLiteral("其他单位")},
    {"warehouse", "tab_warehouse", 0, QStringLiteral("仓库管理")},
    {"dept", "dlg_dept", 1, QStringLiteral("部门管理")},
    {"emp", "tab_emp", 0, QStringLiteral("员工管理")},
    {"stock_summary", "tab_stock_summary", 0, QStringLiteral("库存汇总")},
    {"stock_detail", "tab_stock_detail", 0, QStringLiteral("库存明细")},
    {"stock_taking", "tab_stock_taking", 0, QStringLiteral("库存盘点")},
    {"stock_allot", "tab_stock_allot", 0, QStringLiteral("库存调拨")},
    {"user", "tab_user", 0, QStringLiteral("用户管理")},
};

class navigation_test : public app_test {
protected:
    navigation_test() { serve_menu_and_partners(); }

    /** Names of the rows in tree order. */
    static QStringList names(const window& shell) {
        QStringList texts;
        for (QTreeWidgetItemIterator it(child<QTreeWidget>(&shell, "treewidget")); *it != nullptr; ++it)
            texts.append((*it)->text(0));
        return texts;
    }
};

} // namespace

TEST_F(navigation_test, the_table_knows_every_key) {
    ASSERT_EQ(navigation_rows().size(), std::size(expected_rows));
    for (const expected_row& expected : expected_rows) {
        const navigation_row* row = find_navigation_row(QLatin1String(expected.key));
        ASSERT_NE(row, nullptr) << expected.key;
        EXPECT_EQ(row->screen, QLatin1String(expected.screen)) << expected.key;
        EXPECT_EQ(row->kind, expected.kind) << expected.key;
        EXPECT_EQ(row->title, expected.title) << expected.key;
    }
    EXPECT_EQ(find_navigation_row(QStringLiteral("base")), nullptr);
    EXPECT_EQ(find_navigation_row(QString()), nullptr);
    EXPECT_EQ(find_navigation_row(QStringLiteral("Company_Client")), nullptr);
}

TEST_F(navigation_test, every_row_makes_its_screen) {
    log_in_administrator();
    for (const navigation_row& row : navigation_rows()) {
        const std::unique_ptr<QWidget> screen(make_screen(row, nullptr));
        ASSERT_NE(screen, nullptr) << row.key.toStdString();
        EXPECT_EQ(QLatin1String(screen->metaObject()->className()), row.screen);
    }
}

TEST_F(navigation_test, a_key_that_is_no_page_does_nothing_when_clicked) {
    window shell;
    for (const char* key : {"", "stock", "stock_allot2", "tab_stock_allot"}) {
        QTreeWidgetItem item;
        item.setText(2, QLatin1String(key));
        shell.on_treewidget_itemClicked(&item, 0);
        EXPECT_EQ(child<QTabWidget>(&shell, "main_tab")->count(), 0) << key;
    }
    EXPECT_TRUE(server.requests().isEmpty());
}

TEST_F(navigation_test, the_tree_shows_names_only_and_is_open) {
    log_in_administrator();
    window shell;
    shell.slot_init_info();
    const auto* tree = child<QTreeWidget>(&shell, "treewidget");
    EXPECT_TRUE(tree->isHeaderHidden());
    ASSERT_EQ(tree->columnCount(), 7);
    const QStringList words{QStringLiteral("name"),       QStringLiteral("id"),   QStringLiteral("action"),
                            QStringLiteral("real_level"), QStringLiteral("sort"), QStringLiteral("show"),
                            QStringLiteral("parent")};
    for (int column = 0; column < 7; ++column) {
        EXPECT_EQ(tree->headerItem()->text(column), words[column]);
        EXPECT_EQ(tree->isColumnHidden(column), column > 0);
    }
    const QTreeWidgetItem* item = navigation_item(shell, QStringLiteral("company_client"));
    const QStringList cells{
        QStringLiteral("客户单位"), QStringLiteral("120"), QStringLiteral("company_client"),
        QStringLiteral("1"),        QStringLiteral("2"),   QStringLiteral("1"),
        QStringLiteral("100")};
    for (int column = 0; column < 7; ++column)
        EXPECT_EQ(item->text(column), cells[column]);
    EXPECT_TRUE(item->parent()->isExpanded());
}

TEST_F(navigation_test, an_administrator_has_every_row_and_right_without_any_grant) {
    log_in_administrator();
    window shell;
    shell.slot_init_info();
    EXPECT_EQ(names(shell), (QStringList{QStringLiteral("基础信息"), QStringLiteral("供应商单位"),
                                         QStringLiteral("客户单位"), QStringLiteral("其他单位"),
                                         QStringLiteral("库存管理"), QStringLiteral("未知页面")}));
    const QString search = QStringLiteral("search");
    const QString add = QStringLiteral("add");
    EXPECT_EQ(g_http.rights[QStringLiteral("company_supplier")],
              (QStringList{search, add, QStringLiteral("edit"), QStringLiteral("delete")}));
    EXPECT_EQ(g_http.rights[QStringLiteral("company_client")], QStringList{search});
    EXPECT_EQ(g_http.rights[QStringLiteral("company_other")], (QStringList{search, add}));
}

TEST_F(navigation_test, an_ordinary_user_has_what_is_granted) {
    log_in_clerk({QStringLiteral("100"), QStringLiteral("110"), QStringLiteral("111"), QStringLiteral("113"),
                  QStringLiteral("130")});
    window shell;
    shell.slot_init_info();
    EXPECT_EQ(names(shell), (QStringList{QStringLiteral("基础信息"), QStringLiteral("供应商单位"),
                                         QStringLiteral("其他单位")}));
    EXPECT_EQ(g_http.rights[QStringLiteral("company_supplier")],
              (QStringList{QStringLiteral("search"), QStringLiteral("edit")}));
    EXPECT_TRUE(g_http.rights[QStringLiteral("company_other")].isEmpty());
}

TEST_F(navigation_test, a_row_that_is_skipped_takes_everything_below_with_it) {
    log_in_clerk(
        {QStringLiteral("100"), QStringLiteral("111"), QStringLiteral("112"), QStringLiteral("210")});
    window shell;
    shell.slot_init_info();
    EXPECT_EQ(names(shell), QStringList{QStringLiteral("基础信息")});
    EXPECT_TRUE(g_http.rights[QStringLiteral("company_supplier")].isEmpty());
}

TEST_F(navigation_test, no_grants_no_tree_no_tab) {
    log_in_clerk({});
    window shell;
    shell.slot_init_info();
    EXPECT_TRUE(names(shell).isEmpty());
    EXPECT_TRUE(g_http.rights.isEmpty());
    EXPECT_EQ(child<QTabWidget>(&shell, "main_tab")->count(), 1);
}

TEST_F(navigation_test, a_page_without_search_is_disabled_and_loads_nothing) {
    log_in_clerk({QStringLiteral("100"), QStringLiteral("130"), QStringLiteral("132")});
    window shell;
    shell.slot_init_info();
    shell.show();
    click_navigation(shell, QStringLiteral("company_other"));
    const auto* tabs = child<QTabWidget>(&shell, "main_tab");
    ASSERT_EQ(tabs->count(), 2);
    EXPECT_FALSE(tabs->widget(1)->isEnabled());
    EXPECT_EQ(server.paths(), QList<QByteArray>{"wms_menu/get_menu"});
}

TEST_F(navigation_test, an_open_tab_does_not_follow_a_change_of_rights) {
    log_in_administrator();
    window shell;
    shell.slot_init_info();
    shell.show();
    click_navigation(shell, QStringLiteral("company_other"));
    log_in_clerk({});
    shell.slot_menu_get_list();
    EXPECT_TRUE(g_http.rights.isEmpty());
    EXPECT_TRUE(child<QTabWidget>(&shell, "main_tab")->widget(1)->isEnabled());
}
