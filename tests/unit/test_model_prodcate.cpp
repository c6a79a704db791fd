#include "model/model_prodcate.h"

#include <QTreeView>

#include "support/client_fixture.h"
#include "support/screen.h"
#include "support/tree.h"

class prodcate_model : public client_test {
protected:
    void load(int mode = 1) {
        server.answer(R"([{"id":"1","name":"食品","child":[{"id":"2","name":"茶","child":[]}]}])");
        model_prodcate(&tree, mode).get_tree();
    }
    void make_current(const char* name) {
        tree.setCurrentIndex(tree_node_named(&tree, QString::fromUtf8(name)));
    }
    QStringList lines() { return tree_lines(&tree); }

    QTreeView tree;
};

TEST_F(prodcate_model, loads_the_nested_tree_below_its_root) {
    load();
    EXPECT_EQ(server.last().method, "GET");
    EXPECT_EQ(server.last().path, "wms_prodcate/get_prodcate");
    EXPECT_TRUE(server.last().body.isEmpty());
    EXPECT_EQ(lines(), (QStringList{QStringLiteral("0 【货品分类】/0/"), QStringLiteral("1 食品/1/0"),
                                    QStringLiteral("2 茶/2/1")}));
    EXPECT_TRUE(tree.isColumnHidden(1));
    EXPECT_TRUE(tree.isColumnHidden(2));
    EXPECT_TRUE(tree.isHeaderHidden());
    EXPECT_TRUE(tree.isExpanded(tree_node_named(&tree, QStringLiteral("食品"))));
    EXPECT_NE(QMetaType::type("struct_prodcate"), 0);
}

struct category_root_row {
    int mode;
    const char* name;
};
class prodcate_root : public client_test, public testing::WithParamInterface<category_root_row> {};

TEST_P(prodcate_root, is_named_after_the_mode) {
    QTreeView tree;
    model_prodcate(&tree, GetParam().mode).get_tree();
    EXPECT_EQ(tree_lines(&tree),
              QStringList{QStringLiteral("0 %1/0/").arg(QString::fromUtf8(GetParam().name))});
}

INSTANTIATE_TEST_SUITE_P(modes, prodcate_root,
                         testing::Values(category_root_row{1, "【货品分类】"},
                                         category_root_row{3, "【货品分类】"},
                                         category_root_row{4, "【全部】"}, category_root_row{2, ""},
                                         category_root_row{0, ""}));

TEST_F(prodcate_model, without_a_mode_the_root_has_no_name) {
    model_prodcate(&tree).get_tree();
    EXPECT_EQ(lines(), QStringList{QStringLiteral("0 /0/")});
}

TEST_F(prodcate_model, anything_but_an_array_leaves_the_root_alone) {
    for (const char* body : {"", "{}", "7", "[{", "<html>"}) {
        load();
        server.answer(body);
        model_prodcate(&tree, 4).get_tree();
        EXPECT_EQ(lines(), QStringList{QStringLiteral("0 【全部】/0/")}) << body;
    }
}

TEST_F(prodcate_model, add_sends_the_parent_as_the_tree_holds_it) {
    load();
    make_current("茶");
    server.answer(R"({"http_state":1,"insert_id":"9"})");
    struct_prodcate prodcate;
    prodcate.name = QStringLiteral("绿茶+1%");
    prodcate.parent = QStringLiteral("77");
    model_prodcate(&tree).do_add(prodcate);
    EXPECT_EQ(server.last().path, "wms_prodcate/do_add");
    EXPECT_EQ(server.last().body, QByteArray("name=绿茶+1%&parent=2"));
    EXPECT_EQ(lines().last(), QStringLiteral("3 绿茶+1%/9/2"));
    make_current("【货品分类】");
    model_prodcate(&tree).do_add(prodcate);
    EXPECT_EQ(server.last().body, QByteArray("name=绿茶+1%&parent=0"));
    EXPECT_EQ(lines().size(), 4) << "an empty answer adds nothing";
}

TEST_F(prodcate_model, a_refused_add_changes_nothing) {
    load();
    make_current("茶");
    for (const char* body : {R"({"http_state":0,"insert_id":"9"})", "{}", "", "7", "1", "[]"}) {
        server.answer(body);
        model_prodcate(&tree).do_add(struct_prodcate{QString(), QStringLiteral("x"), QString()});
        EXPECT_EQ(lines().size(), 3) << body;
    }
}

TEST_F(prodcate_model, edit_sends_the_id_first) {
    load();
    make_current("茶");
    server.answer("1");
    model_prodcate(&tree).do_edit({QStringLiteral("2"), QStringLiteral("茶叶"), QStringLiteral("1")});
    EXPECT_EQ(server.last().path, "wms_prodcate/do_edit");
    EXPECT_EQ(server.last().body, QByteArray("id=2&name=茶叶"));
    EXPECT_EQ(lines().last(), QStringLiteral("2 茶叶/2/1"));
    for (const char* body : {"0", "-1", "", "{}"}) {
        server.answer(body);
        model_prodcate(&tree).do_edit({QStringLiteral("2"), QStringLiteral("no"), QString()});
        EXPECT_EQ(lines().last(), QStringLiteral("2 茶叶/2/1")) << body;
    }
}

TEST_F(prodcate_model, delete_reads_the_count_form) {
    for (const char* body : {"0", "", "-1", "x"}) {
        load();
        make_current("食品");
        server.answer(body);
        model_prodcate(&tree).do_delete(QStringLiteral("1"));
        EXPECT_EQ(server.last().path, "wms_prodcate/do_delete");
        EXPECT_EQ(server.last().body, "id=1");
        EXPECT_EQ(lines().size(), 3) << body;
    }
    server.answer("1");
    model_prodcate(&tree).do_delete(QStringLiteral("1"));
    EXPECT_EQ(lines(), QStringList{QStringLiteral("0 【货品分类】/0/")});
}

TEST_F(prodcate_model, nothing_goes_out_without_a_node_or_an_id) {
    load();
    server.forget();
    model_prodcate(&tree).do_add({QString(), QStringLiteral("x"), QString()});
    model_prodcate(&tree).do_edit({QString(), QStringLiteral("x"), QString()});
    model_prodcate(&tree).do_delete(QString());
    EXPECT_TRUE(server.requests().isEmpty());
    EXPECT_EQ(lines().size(), 3);
}
