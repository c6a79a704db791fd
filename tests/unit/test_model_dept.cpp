#include "model/model_dept.h"

#include <QPointer>
#include <QTimer>
#include <QTreeView>

#include "model/tree_nodes.h"
#include "support/client_fixture.h"
#include "support/screen.h"
#include "support/tree.h"

namespace {

const char* const departments =
    R"([{"id":"1","name":"总部","child":[{"id":"2","name":"仓储","child":[{"id":"3","name":"夜班"}]},)"
    R"({"id":"4","name":"采购","child":[]}]},{"id":"5","name":"分部"}])";

} // namespace

class dept_model : public client_test {
protected:
    dept_model() : model(&tree, 1) {}
    void load(const QByteArray& answer = departments) {
        server.answer(answer);
        model.get_tree();
        server.forget();
    }
    void make_current(const char* name, int column = 0) {
        tree.setCurrentIndex(tree_node_named(&tree, QString::fromUtf8(name)).siblingAtColumn(column));
    }
    QStringList lines() { return tree_lines(&tree); }
    static struct_dept named(const char* name, const char* id = "") {
        struct_dept dept;
        dept.name = QString::fromUtf8(name);
        dept.id = QLatin1String(id);
        return dept;
    }

    QTreeView tree;
    model_dept model;
};

TEST_F(dept_model, a_record_is_empty_until_it_is_filled) {
    const struct_dept dept;
    EXPECT_TRUE(dept.id.isEmpty() && dept.parent.isEmpty() && dept.datetime_text.isEmpty());
    EXPECT_EQ(dept.datetime, 0);
    EXPECT_NE(QMetaType::type("struct_dept"), 0) << "it travels in queued signals too";
}

TEST_F(dept_model, the_tree_is_asked_for_without_arguments) {
    server.answer(departments);
    model.get_tree();
    ASSERT_EQ(server.requests().size(), 1);
    EXPECT_EQ(server.last().method, "GET");
    EXPECT_EQ(server.last().path, "wms_dept/get_dept");
    EXPECT_TRUE(server.last().body.isEmpty());
}

TEST_F(dept_model, the_nodes_hang_below_a_root_of_the_clients_own) {
    load();
    EXPECT_EQ(lines(), (QStringList{QStringLiteral("0 【部门架构】/0/"), QStringLiteral("1 总部/1/0"),
                                    QStringLiteral("2 仓储/2/1"), QStringLiteral("3 夜班/3/2"),
                                    QStringLiteral("2 采购/4/1"), QStringLiteral("1 分部/5/0")}));
}

TEST_F(dept_model, look) {
    load();
    EXPECT_EQ(tree.model()->columnCount(), 3);
    EXPECT_TRUE(tree.isHeaderHidden());
    EXPECT_FALSE(tree.isColumnHidden(0));
    EXPECT_TRUE(tree.isColumnHidden(1));
    EXPECT_TRUE(tree.isColumnHidden(2));
    for (const char* name : {"【部门架构】", "总部", "仓储"})
        EXPECT_TRUE(tree.isExpanded(tree_node_named(&tree, QString::fromUtf8(name)))) << name;
}

struct root_row {
    int mode;
    const char* name;
};
class dept_root : public client_test, public testing::WithParamInterface<root_row> {};

TEST_P(dept_root, is_named_after_the_mode) {
    QTreeView tree;
    server.answer("[]");
    model_dept(&tree, GetParam().mode).get_tree();
    EXPECT_EQ(tree_lines(&tree),
              QStringList{QStringLiteral("0 %1/0/").arg(QString::fromUtf8(GetParam().name))});
}

INSTANTIATE_TEST_SUITE_P(modes, dept_root,
                         testing::Values(root_row{3, "【全部】"}, root_row{1, "【部门架构】"},
                                         root_row{0, "【部门架构】"}, root_row{4, "【部门架构】"}));

TEST_F(dept_model, without_a_mode_the_root_is_the_managements) {
    server.answer("[]");
    model_dept(&tree).get_tree();
    EXPECT_EQ(lines(), QStringList{QStringLiteral("0 【部门架构】/0/")});
}

TEST_F(dept_model, anything_but_an_array_leaves_the_root_alone) {
    for (const char* body : {"", "{}", "{\"list\":[]}", "null", "[", "<html>", "7"}) {
        load();
        load(body);
        EXPECT_EQ(lines(), QStringList{QStringLiteral("0 【部门架构】/0/")}) << body;
    }
}

TEST_F(dept_model, nodes_of_a_wrong_form_are_empty) {
    load(R"([{"id":7,"name":8,"child":[{"id":"9","name":"a"}]},3,null,{"child":"x","id":"2","name":"b"}])");
    EXPECT_EQ(lines(), (QStringList{QStringLiteral("0 【部门架构】/0/"), QStringLiteral("1 //0"),
                                    QStringLiteral("1 a/9/0"), QStringLiteral("1 //0"),
                                    QStringLiteral("1 //0"), QStringLiteral("1 b/2/0")}))
        << "what hangs below a node without a number stands below the root";
}

TEST_F(dept_model, the_root_is_made_once_whatever_the_ids_are) {
    load(R"([{"id":"x","name":"a","child":[{"id":"0","name":"b","child":[{"id":"1","name":"c"}]}]}])");
    EXPECT_EQ(lines(), (QStringList{QStringLiteral("0 【部门架构】/0/"), QStringLiteral("1 a/x/0"),
                                    QStringLiteral("1 b/0/0"), QStringLiteral("1 c/1/0")}));
}

TEST_F(dept_model, nesting_may_be_deep) {
    QByteArray nested = "[]";
    for (int level = 60; level > 0; --level)
        nested = "[{\"id\":\"" + QByteArray::number(level) + "\",\"name\":\"n\",\"child\":" + nested + "}]";
    load(nested);
    const QStringList shown = lines();
    ASSERT_EQ(shown.size(), 61);
    EXPECT_EQ(shown[1], QStringLiteral("1 n/1/0"));
    EXPECT_EQ(shown[60], QStringLiteral("60 n/60/59"));
}

TEST_F(dept_model, a_reload_replaces_the_tree) {
    load();
    const QPointer<QAbstractItemModel> former = tree.model();
    make_current("采购");
    load(R"([{"id":"8","name":"新"}])");
    EXPECT_EQ(lines(), (QStringList{QStringLiteral("0 【部门架构】/0/"), QStringLiteral("1 新/8/0")}));
    EXPECT_FALSE(tree.currentIndex().isValid());
    EXPECT_EQ(tree.model()->parent(), &tree);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(former.isNull());
}

TEST_F(dept_model, the_current_node_reads_the_same_from_any_column) {
    load();
    for (int column : {0, 1, 2}) {
        make_current("夜班", column);
        const tree_node node = current_node(&tree);
        EXPECT_EQ(node.name, QStringLiteral("夜班"));
        EXPECT_EQ(node.id, QStringLiteral("3"));
        EXPECT_EQ(node.parent, QStringLiteral("2"));
    }
    tree.setCurrentIndex(QModelIndex());
    EXPECT_TRUE(current_node(&tree).id.isEmpty());
}

TEST_F(dept_model, add_sends_name_and_parent_and_appends_a_node) {
    load();
    for (int column : {0, 1}) {
        make_current("仓储", column);
        server.answer(R"({"http_state":1,"insert_id":"30","datetime":1586696219})");
        model.do_add(named("A&B"));
        EXPECT_EQ(server.last().method, "POST");
        EXPECT_EQ(server.last().path, "wms_dept/do_add");
        EXPECT_EQ(server.last().body, "name=A&B&parent=2");
    }
    EXPECT_EQ(lines().mid(2, 4), (QStringList{QStringLiteral("2 仓储/2/1"), QStringLiteral("3 夜班/3/2"),
                                              QStringLiteral("3 A&B/30/2"), QStringLiteral("3 A&B/30/2")}));
}

TEST_F(dept_model, add_below_the_root_sends_the_parent_0) {
    load();
    make_current("【部门架构】");
    server.answer(R"({"http_state":"1","insert_id":"6"})");
    model.do_add(named("新"));
    EXPECT_EQ(server.last().body, QByteArray("name=新&parent=0"));
    EXPECT_EQ(lines().last(), QStringLiteral("1 新/6/0"));
}

TEST_F(dept_model, the_parent_is_the_current_nodes_and_not_the_records) {
    load();
    make_current("总部");
    struct_dept dept = named("新");
    dept.parent = QStringLiteral("99");
    model.do_add(dept);
    EXPECT_EQ(server.last().body, QByteArray("name=新&parent=1"));
}

TEST_F(dept_model, the_new_nodes_own_index_is_expanded_and_not_its_parent) {
    load();
    const QModelIndex store = tree_node_named(&tree, QStringLiteral("仓储"));
    const QModelIndex leaf = tree_node_named(&tree, QStringLiteral("分部"));
    tree.collapse(store);
    for (const QModelIndex& above : {store, leaf}) {
        tree.setCurrentIndex(above);
        tree.collapse(above);
        server.answer(R"({"http_state":1,"insert_id":"30"})");
        model.do_add(named("新"));
        EXPECT_FALSE(tree.isExpanded(above));
        const QModelIndex added = tree.model()->index(tree.model()->rowCount(above) - 1, 0, above);
        EXPECT_EQ(added.data().toString(), QStringLiteral("新"));
        EXPECT_TRUE(tree.isExpanded(added));
        EXPECT_EQ(tree.currentIndex(), above) << "the current node stays";
    }
}

TEST_F(dept_model, a_refused_add_changes_nothing) {
    load();
    const QStringList before = lines();
    make_current("总部");
    for (const char* body : {R"({"http_state":0})", R"({"http_state":2,"insert_id":"9"})", "{}", "", "[1]",
                             "1", "7", "<html>"}) {
        server.answer(body);
        model.do_add(named("新"));
        EXPECT_EQ(lines(), before) << body;
    }
}

TEST_F(dept_model, a_numeric_insert_id_reads_as_empty) {
    load();
    make_current("分部");
    server.answer(R"({"http_state":1,"insert_id":9})");
    model.do_add(named("新"));
    EXPECT_EQ(lines().last(), QStringLiteral("2 新//5"));
}

TEST_F(dept_model, without_a_current_node_nothing_is_added_and_nothing_sent) {
    load();
    const QStringList before = lines();
    model.do_add(named("新"));
    QTreeView bare;
    model_dept(&bare).do_add(named("新"));
    EXPECT_TRUE(server.requests().isEmpty());
    EXPECT_EQ(lines(), before);
}

TEST_F(dept_model, a_tree_loaded_anew_during_an_add_is_left_as_it_is) {
    load();
    make_current("总部");
    server.answer(scripted_answer::late(30, R"({"http_state":1,"insert_id":"9"})"));
    QTimer::singleShot(5, &tree, [this] { show_tree(&tree, QStringLiteral("root"), QJsonArray()); });
    model.do_add(named("新"));
    EXPECT_EQ(lines(), QStringList{QStringLiteral("0 root/0/")});
}

TEST_F(dept_model, edit_sends_the_name_first_and_renames_in_place) {
    load();
    make_current("仓储");
    server.answer("1");
    model.do_edit(named("仓库", "2"));
    EXPECT_EQ(server.last().path, "wms_dept/do_edit");
    EXPECT_EQ(server.last().body, QByteArray("name=仓库&id=2"));
    EXPECT_EQ(lines().mid(1, 4), (QStringList{QStringLiteral("1 总部/1/0"), QStringLiteral("2 仓库/2/1"),
                                              QStringLiteral("3 夜班/3/2"), QStringLiteral("2 采购/4/1")}))
        << "no sorting";
}

TEST_F(dept_model, a_refused_edit_leaves_the_name) {
    load();
    make_current("仓储");
    for (const char* body : {"0", "-1", "", "no", R"({"http_state":1})"}) {
        server.answer(body);
        model.do_edit(named("仓库", "2"));
        EXPECT_EQ(lines()[2], QStringLiteral("2 仓储/2/1")) << body;
    }
}

TEST_F(dept_model, an_edit_without_an_id_is_not_sent) {
    load();
    model.do_edit(named("仓库"));
    EXPECT_TRUE(server.requests().isEmpty());
    server.answer("1");
    model.do_edit(named("仓库", "2"));
    EXPECT_EQ(server.last().body, QByteArray("name=仓库&id=2")) << "no current node: sent, nothing renamed";
    EXPECT_FALSE(lines().join(QString()).contains(QStringLiteral("仓库")));
}

TEST_F(dept_model, delete_takes_the_subtree_along_without_a_reload) {
    load();
    make_current("总部");
    server.answer("2");
    model.do_delete(QStringLiteral("1"));
    EXPECT_EQ(server.paths(), QList<QByteArray>{"wms_dept/do_delete"});
    EXPECT_EQ(server.last().body, "id=1");
    EXPECT_EQ(lines(), (QStringList{QStringLiteral("0 【部门架构】/0/"), QStringLiteral("1 分部/5/0")}));
}

TEST_F(dept_model, a_refused_delete_leaves_the_node) {
    load();
    const QStringList before = lines();
    make_current("分部");
    for (const char* body : {"0", "-2", "", "x", "{}"}) {
        server.answer(body);
        model.do_delete(QStringLiteral("5"));
        EXPECT_EQ(lines(), before) << body;
    }
}

TEST_F(dept_model, nothing_is_deleted_without_an_id) {
    load();
    make_current("分部");
    model.do_delete(QString());
    EXPECT_TRUE(server.requests().isEmpty());
    tree.setCurrentIndex(QModelIndex());
    server.answer("1");
    model.do_delete(QStringLiteral("5"));
    EXPECT_EQ(lines().size(), 6) << "agreed to, but there is no current node to remove";
}
