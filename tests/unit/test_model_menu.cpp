#include <QFontMetrics>
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

class menu_administration : public navigation_menu {
protected:
    QTreeWidgetItem* load_all(const char* answer = menu_table) {
        server.answer(answer);
        model_menu(nullptr, &tree, 1).get_menu();
        return tree.topLevelItem(0);
    }
    static struct_menu row() {
        struct_menu menu;
        menu.id = QStringLiteral("31");
        menu.name = QStringLiteral(" 查 & 询 ");
        menu.sort = QStringLiteral("4");
        menu.action = QStringLiteral("search");
        menu.show = 1;
        menu.real_level = QStringLiteral("2");
        menu.parent = QStringLiteral("11");
        return menu;
    }
    model_menu model{nullptr, &tree, 1};
};

TEST_F(menu_administration, request) {
    load_all();
    ASSERT_EQ(server.requests().size(), 1);
    EXPECT_EQ(server.last().path, "wms_menu/get_menu");
    EXPECT_EQ(server.last().body, "action=edit");
}

TEST_F(menu_administration, all_rows_and_rights_stand_under_one_root) {
    const QTreeWidgetItem* root = load_all();
    ASSERT_EQ(tree.topLevelItemCount(), 1);
    EXPECT_EQ(root->text(0), QStringLiteral("权限结构"));
    EXPECT_EQ(root->text(1), QStringLiteral("0"));
    for (int i = 2; i < 7; ++i)
        EXPECT_TRUE(root->text(i).isEmpty()) << i;
    ASSERT_EQ(root->childCount(), 2);
    const QTreeWidgetItem* base = root->child(0);
    EXPECT_EQ(base->text(6), QStringLiteral("0"));
    ASSERT_EQ(base->childCount(), 2);
    ASSERT_EQ(base->child(0)->childCount(), 2);
    const char* const right[] = {"查询", "12", "search", "2", "", "", "11"};
    for (int i = 0; i < 7; ++i)
        EXPECT_EQ(base->child(0)->child(0)->text(i), QString::fromUtf8(right[i])) << i;
}

TEST_F(menu_administration, looks_at_no_grants_and_leaves_the_rights_alone) {
    grant({});
    g_http.rights[QStringLiteral("emp")] = QStringList{QStringLiteral("search")};
    EXPECT_EQ(load_all()->childCount(), 2);
    EXPECT_EQ(g_http.rights.size(), 1);
}

TEST_F(menu_administration, shows_headers_and_all_columns_in_the_width_of_their_contents) {
    const QString name(60, QChar(0x4e2d));
    load_all(("[{\"id\":\"1\",\"action\":\"a\",\"name\":\"" + name.toUtf8() + "\"}]").constData());
    const char* const headers[] = {"name", "id", "action", "real_level", "sort", "show", "parent"};
    ASSERT_EQ(tree.columnCount(), 7);
    for (int i = 0; i < 7; ++i) {
        EXPECT_EQ(tree.headerItem()->text(i), QLatin1String(headers[i]));
        EXPECT_FALSE(tree.isColumnHidden(i)) << i;
    }
    EXPECT_FALSE(tree.isHeaderHidden());
    EXPECT_GT(tree.columnWidth(0), QFontMetrics(tree.font()).horizontalAdvance(name));
    EXPECT_LT(tree.columnWidth(1), 100) << "the width that a column has when nobody sets it";
    EXPECT_TRUE(tree.topLevelItem(0)->isExpanded());
}

TEST_F(menu_administration, a_parent_id_is_compared_as_text_with_0) {
    const QTreeWidgetItem* root = load_all(
        "[{\"id\":\"x\",\"name\":\"a\",\"child\":[{\"id\":\"2\",\"name\":\"b\"}]},"
        "{\"id\":\"00\",\"name\":\"c\",\"child\":[{\"id\":\"3\",\"name\":\"d\"}]},"
        "{\"id\":\"0\",\"name\":\"e\",\"child\":[{\"id\":\"4\",\"name\":\"f\"}]}]");
    ASSERT_EQ(root->childCount(), 4);
    EXPECT_EQ(root->child(0)->child(0)->text(6), QStringLiteral("x"));
    EXPECT_EQ(root->child(1)->child(0)->text(6), QStringLiteral("00"));
    EXPECT_EQ(root->child(2)->childCount(), 0);
    EXPECT_EQ(root->child(3)->text(0), QStringLiteral("f"));
}

TEST_F(menu_administration, a_new_load_replaces_the_tree_and_a_failed_one_leaves_the_root) {
    for (const char* answer : {menu_table, menu_table, "", "{}", "7", "<html>"}) {
        const QTreeWidgetItem* root = load_all(answer);
        ASSERT_EQ(tree.topLevelItemCount(), 1) << answer;
        EXPECT_EQ(root->childCount(), answer == menu_table ? 2 : 0) << answer;
    }
}

TEST_F(menu_administration, add_sends_the_row_as_it_stands_and_takes_the_whole_answer_for_the_id) {
    const struct {
        const char* answer;
        const char* id;
    } forms[] = {{"20031", "20031"}, {" 12\r\n", "12"}, {"", ""},         {"0", "0"},
                 {"7", "7"},         {"{}", "{}"},      {"错误", "错误"}, {"<html>", "<html>"}};
    for (const auto& form : forms) {
        server.forget();
        server.answer(form.answer);
        EXPECT_EQ(model.do_add(row()), QString::fromUtf8(form.id));
        EXPECT_EQ(server.requests().first().path, "wms_menu/do_add");
        EXPECT_EQ(server.requests().first().body,
                  "name= 查 & 询 &parent=11&action=search&sort=4&show=1&real_level=2");
    }
}

TEST_F(menu_administration, an_empty_row_is_sent_with_all_its_keys) {
    model.do_add(struct_menu());
    EXPECT_EQ(server.last().body, "name=&parent=&action=&sort=&show=0&real_level=");
}

TEST_F(menu_administration, edit_sends_the_id_last_and_gives_the_count) {
    const struct {
        const char* answer;
        int count;
    } forms[] = {{"1", 1}, {"3", 3}, {"0", 0}, {"", 0}, {"7", 7}, {"-1", -1}, {"x", 0}, {"{}", 0}};
    for (const auto& form : forms) {
        server.forget();
        server.answer(form.answer);
        EXPECT_EQ(model.do_edit(row()), form.count) << form.answer;
        EXPECT_EQ(server.requests().first().path, "wms_menu/do_edit");
        EXPECT_EQ(server.requests().first().body,
                  "name= 查 & 询 &parent=11&action=search&sort=4&show=1&real_level=2&id=31");
    }
}

TEST_F(menu_administration, delete_reads_the_count_form) {
    const struct {
        const char* answer;
        bool deleted;
    } forms[] = {{"1", true}, {"12", true},  {"7", true}, {"0", false},
                 {"", false}, {"-1", false}, {"x", false}};
    for (const auto& form : forms) {
        server.forget();
        server.answer(form.answer);
        EXPECT_EQ(model.do_delete(QStringLiteral("31")), form.deleted) << form.answer;
        EXPECT_EQ(server.requests().first().path, "wms_menu/do_delete");
        EXPECT_EQ(server.requests().first().body, "id=31");
    }
}

TEST_F(menu_administration, a_row_of_the_tree_is_the_record) {
    QTreeWidgetItem item;
    model_menu::write_row(&item, row());
    const char* const cells[] = {" 查 & 询 ", "31", "search", "2", "4", "1", "11"};
    for (int i = 0; i < 7; ++i)
        EXPECT_EQ(item.text(i), QString::fromUtf8(cells[i])) << i;
    const struct_menu back = model_menu::read_row(&item);
    EXPECT_EQ(back.id, row().id);
    EXPECT_EQ(back.name, row().name);
    EXPECT_EQ(back.sort, row().sort);
    EXPECT_EQ(back.action, row().action);
    EXPECT_EQ(back.show, 1);
    EXPECT_EQ(back.real_level, row().real_level);
    EXPECT_EQ(back.parent, row().parent);
}
