#include <QTreeWidget>

#include "model/model_permission.h"
#include "net/http.h"
#include "support/client_fixture.h"
#include "support/screen.h"

namespace {

const char* const menu_rows = R"([
 {"id":"65","name":"入库","action":"instore","real_level":"0","sort":"1","show":"1","child":[
  {"id":"66","name":"采购","action":"purchase","real_level":"1","sort":"2","show":"0","child":[
   {"id":"70","name":"查询","action":"search","real_level":"2","sort":"3","show":"1","child":[]},
   {"id":"71","name":"添加","action":"add","real_level":"2","sort":"4","show":"1"}]},
  {"id":"67","name":"生产","action":"production","real_level":"1","sort":"5","show":"1","child":[]}]},
 {"id":"300","name":"库存","action":"stock","real_level":"0","sort":"6","show":"1","child":[
  {"id":"301","name":"汇总","action":"summary","real_level":"1","sort":"7","show":"1","child":[]}]}
])";

struct_user clerk() {
    struct_user user;
    user.id = QStringLiteral("44");
    return user;
}

} // namespace

class permission_model : public client_test {
protected:
    void load(const char* granted, const char* rows = menu_rows) { load(model, granted, rows); }
    void load(model_permission& with, const char* granted, const char* rows = menu_rows) {
        server.answer(granted);
        with.get_permission(QStringLiteral("44"));
        server.answer(rows);
        with.get_permission_tree();
    }

    QTreeWidgetItem* item(const char* id) {
        const auto found = tree.findItems(QLatin1String(id), Qt::MatchExactly | Qt::MatchRecursive, 1);
        if (found.size() != 1) throw std::runtime_error(std::string("no single row ") + id);
        return found.first();
    }
    int state(const char* id) { return item(id)->data(0, Qt::CheckStateRole).toInt(); }
    void set_state(const char* id, int state) { item(id)->setCheckState(0, Qt::CheckState(state)); }

    QTreeWidget tree;
    model_permission model{nullptr, &tree, clerk(), 2};
};

TEST_F(permission_model, requests_of_the_load) {
    EXPECT_TRUE(server.requests().isEmpty()) << "being made asks nothing";
    load("[]");
    ASSERT_EQ(server.requests().size(), 2);
    EXPECT_EQ(server.requests()[0].method, "POST");
    EXPECT_EQ(server.requests()[0].path, "wms_permission/get_permission");
    EXPECT_EQ(server.requests()[0].body, "user=44");
    EXPECT_EQ(server.requests()[1].method, "GET");
    EXPECT_EQ(server.requests()[1].path, "wms_permission/get_permission_tree");
    EXPECT_TRUE(server.requests()[1].body.isEmpty());
}

TEST_F(permission_model, columns_headers_and_look) {
    load("[]");
    const char* const headers[] = {"name", "id", "action", "parent", "sort", "show", "real_level"};
    ASSERT_EQ(tree.columnCount(), 7);
    for (int i = 0; i < 7; ++i) {
        EXPECT_EQ(tree.headerItem()->text(i), QLatin1String(headers[i]));
        EXPECT_EQ(tree.isColumnHidden(i), i > 0) << i;
    }
    EXPECT_TRUE(tree.isHeaderHidden());
    ASSERT_EQ(tree.topLevelItemCount(), 2);
    // 65 is the character code of A.
    const char* const cells[] = {"采购", "66", "purchase", "A", "2", "0", "1"};
    for (int i = 0; i < 7; ++i)
        EXPECT_EQ(item("66")->text(i), QString::fromUtf8(cells[i])) << i;
}

TEST_F(permission_model, the_parent_column_is_one_character_of_the_parents_id) {
    load("[]");
    EXPECT_EQ(item("65")->text(3), QString(QChar(0)));
    EXPECT_EQ(item("70")->text(3), QStringLiteral("B"));
    EXPECT_EQ(item("301")->text(3), QString(QChar(300)));
}

TEST_F(permission_model, every_row_has_a_mark_by_the_grants) {
    load(R"([{"menu":"300"},{"menu":"301"},{"menu":"300"},{"menu":"9999"}])");
    for (const char* id : {"65", "66", "70", "71", "67"})
        EXPECT_EQ(state(id), 0) << id;
    EXPECT_EQ(state("300"), 2);
    EXPECT_EQ(state("301"), 2);
    const auto all = tree.findItems(QString(), Qt::MatchContains | Qt::MatchRecursive, 0);
    EXPECT_EQ(all.size(), 7);
    for (const QTreeWidgetItem* each : all)
        EXPECT_TRUE(each->data(0, Qt::CheckStateRole).isValid()) << "a box even where nothing is granted";
}

TEST_F(permission_model, one_right_of_several_marks_what_is_above_it_as_partly_granted) {
    load(R"([{"menu":"65"},{"menu":"66"},{"menu":"70"}])");
    EXPECT_EQ(state("70"), 2);
    EXPECT_EQ(state("71"), 0);
    EXPECT_EQ(state("66"), 1);
    EXPECT_EQ(state("65"), 1);
    EXPECT_EQ(state("300"), 0);
}

TEST_F(permission_model, a_part_that_is_not_granted_itself_is_marked_too) {
    load(R"([{"menu":"71"}])");
    EXPECT_EQ(state("66"), 1);
    EXPECT_EQ(state("65"), 1);
}

TEST_F(permission_model, none_or_all_of_the_children_leave_the_mark_of_the_grant) {
    load(R"([{"menu":"66"},{"menu":"67"},{"menu":"301"}])");
    EXPECT_EQ(state("66"), 2) << "granted, none of its rights";
    EXPECT_EQ(state("65"), 0) << "not granted, all of its pages";
    EXPECT_EQ(state("300"), 0);
    EXPECT_EQ(state("301"), 2);
}

TEST_F(permission_model, a_row_is_granted_by_its_id_as_text) {
    load(R"([{"menu":300},{"menu":null},{},7,{"menu":"0301"}])");
    EXPECT_EQ(state("300"), 0);
    EXPECT_EQ(state("301"), 0);
}

TEST_F(permission_model, failed_requests_leave_no_grants_and_no_rows) {
    for (const char* answer : {"", "{}", "0", "<html>"}) {
        tree.clear();
        load(answer);
        EXPECT_EQ(state("65"), 0) << answer;
        tree.clear();
        load("[]", answer);
        EXPECT_EQ(tree.topLevelItemCount(), 0) << answer;
        EXPECT_TRUE(tree.isHeaderHidden());
    }
}

TEST_F(permission_model, filling_the_tree_tells_nobody) {
    int changes = 0;
    QObject::connect(&tree, &QTreeWidget::itemChanged, &tree, [&changes] { ++changes; });
    load(R"([{"menu":"70"}])");
    EXPECT_EQ(changes, 0);
    EXPECT_FALSE(tree.signalsBlocked());
}

TEST_F(permission_model, mode_1_puts_everything_under_one_root) {
    model_permission rooted(nullptr, &tree, clerk(), 1);
    load(rooted, R"([{"menu":"300"},{"menu":"301"}])");
    ASSERT_EQ(tree.topLevelItemCount(), 1);
    const QTreeWidgetItem* root = tree.topLevelItem(0);
    EXPECT_EQ(root->text(0), QStringLiteral("权限结构"));
    EXPECT_EQ(root->text(1), QStringLiteral("0"));
    EXPECT_EQ(root->childCount(), 2);
    EXPECT_EQ(root->checkState(0), Qt::PartiallyChecked);
    EXPECT_EQ(root->child(0)->text(3), QString(QChar(0)));
}

TEST_F(permission_model, without_a_mode_it_is_2) {
    model_permission plain(nullptr, &tree, clerk());
    load(plain, "[]");
    EXPECT_EQ(tree.topLevelItemCount(), 2);
}

TEST_F(permission_model, grant_and_revoke_read_the_count_form) {
    const struct {
        const char* answer;
        bool done;
    } forms[] = {{"1", true}, {"2", true},   {"7", true}, {"0", false},
                 {"", false}, {"-1", false}, {"x", false}};
    for (const auto& form : forms) {
        server.forget();
        server.answer(form.answer);
        EXPECT_EQ(model.set_checked(QStringLiteral("66")), form.done) << form.answer;
        EXPECT_EQ(server.requests().first().path, "wms_permission/set_checked");
        EXPECT_EQ(server.requests().first().body, "user=44&menu=66");
        server.forget();
        server.answer(form.answer);
        EXPECT_EQ(model.set_unchecked(QStringLiteral("66")), form.done) << form.answer;
        EXPECT_EQ(server.requests().first().path, "wms_permission/set_unchecked");
        EXPECT_EQ(server.requests().first().body, "user=44&menu=66");
    }
}

TEST_F(permission_model, a_session_code_counts_as_granted_and_renews_the_session) {
    server.answer("7");
    EXPECT_TRUE(model.set_checked(QStringLiteral("66")));
    EXPECT_EQ(server.paths(), QList<QByteArray>({"wms_permission/set_checked", "wms/check_login"}));
}

struct sum_row {
    const char* what;
    int first;
    int second;
    const char* call;
    int state;
};

class permission_sum : public permission_model, public testing::WithParamInterface<sum_row> {};

TEST_P(permission_sum, of_the_children) {
    const sum_row& row = GetParam();
    for (const bool agreed : {true, false}) {
        for (int before = 0; before < 3; ++before) {
            tree.clear();
            load("[]");
            set_state("70", row.first);
            set_state("71", row.second);
            set_state("66", before);
            server.forget();
            server.answer(agreed ? "1" : "0");
            server.answer("0");
            model.apply_up(item("66"));
            ASSERT_EQ(server.requests().size(), 2) << "itself and the row above, whatever the service said";
            EXPECT_EQ(server.requests()[0].path, QByteArray("wms_permission/") + row.call);
            EXPECT_EQ(server.requests()[0].body, "user=44&menu=66");
            EXPECT_EQ(server.requests()[1].body, "user=44&menu=65");
            EXPECT_EQ(state("66"), agreed ? row.state : before);
            EXPECT_EQ(state("65"), 0);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(cases, permission_sum,
                         testing::Values(sum_row{"none", 0, 0, "set_unchecked", 0},
                                         sum_row{"one", 0, 2, "set_checked", 1},
                                         sum_row{"all", 2, 2, "set_checked", 2},
                                         sum_row{"partly", 1, 0, "set_checked", 1},
                                         sum_row{"partly_beside_all", 1, 2, "set_checked", 1},
                                         sum_row{"all_partly", 1, 1, "set_checked", 1}),
                         [](const auto& p) { return std::string(p.param.what); });

TEST_F(permission_model, a_row_without_children_sums_up_to_nothing) {
    load("[]");
    set_state("67", 2);
    server.forget();
    server.answer("1");
    model.apply_up(item("67"));
    EXPECT_EQ(server.requests()[0].path, "wms_permission/set_unchecked");
    EXPECT_EQ(server.requests()[0].body, "user=44&menu=67");
    EXPECT_EQ(state("67"), 0);
}

TEST_F(permission_model, under_a_partly_granted_row_a_row_is_granted_and_keeps_its_mark) {
    load("[]");
    set_state("65", 1);
    server.forget();
    server.answer("1");
    model.apply_down(item("67"));
    EXPECT_EQ(server.paths(), QList<QByteArray>{"wms_permission/set_checked"});
    EXPECT_EQ(state("67"), 0);
}
