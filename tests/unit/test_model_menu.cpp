#include <QTreeWidget>

#include "model/model_menu.h"
#include "net/http.h"
#include "support/client_fixture.h"
#include "support/screen.h"

namespace {

const char* const menu_table =
    "[{\"id\":\"10\",\"name\":\"基础资料\",\"action\":\"base\",\"real_level\":\"0\",\"sort\":\"1\",\"show\":"
    "\"1\",\"child\":["
    "{\"id\":\"11\",\"name\":\"货品\",\"action\":\"product\",\"real_level\":\"1\",\"sort\":\"2\",\"show\":"
    "\"1\","
    "\"child\":["
    "{\"id\":\"12\",\"name\":\"查询\",\"action\":\"search\",\"real_level\":\"2\",\"child\":[]},"
    "{\"id\":\"13\",\"name\":\"添加\",\"action\":\"add\",\"real_level\":\"2\"}]},"
    "{\"id\":\"14\",\"name\":\"仓库\",\"action\":\"warehouse\",\"real_level\":\"1\",\"child\":["
    "{\"id\":\"15\",\"name\":\"查询\",\"action\":\"search\",\"real_level\":\"2\"}]}]},"
    "{\"id\":\"20\",\"name\":\"库存\",\"action\":\"stock\",\"real_level\":\"0\",\"child\":[]}]";

} // namespace

class navigation_menu : public client_test {
protected:
    void load(const char* answer = menu_table) {
        server.answer(answer);
        model_menu(nullptr, &tree, 2).get_menu();
    }
    void grant(std::initializer_list<const char*> ids) {
        g_http.current_user.type = 2;
        for (const char* id : ids)
            g_http.permissions.insert(QLatin1String(id), QStringLiteral("any"));
    }
    QTreeWidget tree;
};

TEST_F(navigation_menu, request) {
    load();
    ASSERT_EQ(server.requests().size(), 1);
    EXPECT_EQ(server.last().path, "wms_menu/get_menu");
    EXPECT_EQ(server.last().body, "action=list");
}

TEST_F(navigation_menu, an_administrator_has_every_row_and_every_right) {
    g_http.current_user.type = 1;
    load();
    ASSERT_EQ(tree.topLevelItemCount(), 2);
    EXPECT_EQ(tree.topLevelItem(0)->childCount(), 2);
    EXPECT_EQ(g_http.rights.value(QStringLiteral("product")),
              QStringList({QStringLiteral("search"), QStringLiteral("add")}));
    EXPECT_EQ(g_http.rights.value(QStringLiteral("warehouse")), QStringList({QStringLiteral("search")}));
    EXPECT_EQ(g_http.rights.size(), 2);
}

TEST_F(navigation_menu, columns_of_a_row) {
    load();
    const QTreeWidgetItem* base = tree.topLevelItem(0);
    const QTreeWidgetItem* product = base->child(0);
    const char* const expected[] = {"货品", "11", "product", "1", "2", "1", "10"};
    for (int i = 0; i < 7; ++i)
        EXPECT_EQ(product->text(i), QString::fromUtf8(expected[i])) << i;
    EXPECT_EQ(base->text(6), QStringLiteral("0"));
    const char* const headers[] = {"name", "id", "action", "real_level", "sort", "show", "parent"};
    ASSERT_EQ(tree.columnCount(), 7);
    for (int i = 0; i < 7; ++i) {
        EXPECT_EQ(tree.headerItem()->text(i), QLatin1String(headers[i]));
        EXPECT_EQ(tree.isColumnHidden(i), i >= 1) << i;
    }
    EXPECT_TRUE(tree.isHeaderHidden());
    EXPECT_TRUE(base->isExpanded());
}

TEST_F(navigation_menu, an_ordinary_user_has_what_is_granted) {
    grant({"10", "11", "12"});
    load();
    ASSERT_EQ(tree.topLevelItemCount(), 1);
    EXPECT_EQ(tree.topLevelItem(0)->childCount(), 1);
    EXPECT_EQ(g_http.rights.value(QStringLiteral("product")), QStringList({QStringLiteral("search")}));
}

TEST_F(navigation_menu, a_skipped_row_takes_everything_under_it_along) {
    grant({"10", "12", "13", "15"});
    load();
    EXPECT_EQ(tree.topLevelItem(0)->childCount(), 0);
    EXPECT_TRUE(g_http.rights.isEmpty());
}

TEST_F(navigation_menu, without_grants_the_tree_is_empty) {
    grant({});
    load();
    EXPECT_EQ(tree.topLevelItemCount(), 0);
}

TEST_F(navigation_menu, grants_do_not_matter_to_other_user_types) {
    g_http.current_user.type = 3;
    load();
    EXPECT_EQ(tree.topLevelItemCount(), 2);
}

TEST_F(navigation_menu, a_new_load_replaces_tree_and_rights) {
    load();
    grant({"20"});
    load();
    ASSERT_EQ(tree.topLevelItemCount(), 1);
    EXPECT_EQ(tree.topLevelItem(0)->text(2), QStringLiteral("stock"));
    EXPECT_TRUE(g_http.rights.isEmpty());
}

TEST_F(navigation_menu, a_failed_load_leaves_everything_empty) {
    load();
    for (const char* answer : {"", "{}", "7", "<html>"}) {
        load(answer);
        EXPECT_EQ(tree.topLevelItemCount(), 0) << answer;
        EXPECT_TRUE(g_http.rights.isEmpty()) << answer;
    }
}

TEST_F(navigation_menu, children_of_a_row_whose_id_is_no_number_stand_at_the_top) {
    load(
        "[{\"id\":\"x\",\"name\":\"a\",\"action\":\"a\",\"real_level\":\"0\",\"child\":["
        "{\"id\":\"2\",\"name\":\"b\",\"action\":\"b\",\"real_level\":\"1\"}]}]");
    EXPECT_EQ(tree.topLevelItemCount(), 2);
}
