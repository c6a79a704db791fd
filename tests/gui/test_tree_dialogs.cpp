#include <QLineEdit>
#include <QTabWidget>

#include "gui/tree_fixture.h"
#include "master/dlg_dept.h"
#include "master/dlg_prodcate.h"

// What the trees of departments and of categories have in common as pages of the main window.

struct tree_kind {
    const char* page;
    QDialog* (*make)(QWidget* parent, int mode);
    const char* load;
    const char* root;
    const char* edit_body;
    const char* add_title;
    const char* edit_title;
};

namespace {

template <class dialog>
QDialog* make(QWidget* parent, int mode) {
    return new dialog(parent, mode);
}

const tree_kind kinds[] = {
    {"dept", make<dlg_dept>, "wms_dept/get_dept", "【部门架构】", "name=新&id=2", "添加下级部门", "编辑部门"},
    {"prodcate", make<dlg_prodcate>, "wms_prodcate/get_prodcate", "【货品分类】", "id=2&name=新",
     "添加货品类别", "编辑货品类别"}};

} // namespace

class tree_page : public tree_test, public testing::WithParamInterface<tree_kind> {
protected:
    void open(const std::vector<const char*>& rights = {"search", "add_child", "edit", "delete"}) {
        grant(GetParam().page, rights);
        show(std::unique_ptr<QDialog>(GetParam().make(nullptr, 1)));
        server.forget();
    }
    QByteArray path(const char* operation) { return QByteArray("wms_") + GetParam().page + "/" + operation; }
    QString root() { return QString::fromUtf8(GetParam().root); }
    /** Runs a menu entry and saves a name in the dialog that it opens. */
    void save_name(const char* entry, const QString& name) {
        with_modal([&] { action(entry)->trigger(); },
                   [&](QWidget* d) {
                       child<QLineEdit>(d, "txt_name")->setText(name);
                       click(d, "btn_save");
                   });
    }
    void remove(QMessageBox::StandardButton answer) {
        with_question([this] { action("删除")->trigger(); }, QStringLiteral("确认删除"),
                      QStringLiteral("确认删除吗？"), answer);
    }
};

INSTANTIATE_TEST_SUITE_P(trees, tree_page, testing::ValuesIn(kinds),
                         [](const auto& p) { return std::string(p.param.page); });

TEST_P(tree_page, shows_the_whole_tree_open) {
    open();
    EXPECT_EQ(tree_lines(tree), (QStringList{QStringLiteral("0 %1/0/").arg(root()),
                                             QStringLiteral("1 甲/1/0"), QStringLiteral("2 乙/2/1"),
                                             QStringLiteral("3 丙/3/2"), QStringLiteral("1 丁/4/0")}));
    EXPECT_TRUE(tree->isExpanded(tree_node_named(tree, QStringLiteral("乙"))));
    EXPECT_TRUE(tree->isHeaderHidden());
    EXPECT_TRUE(tree->isColumnHidden(1));
    EXPECT_TRUE(tree->isColumnHidden(2));
    EXPECT_EQ(tree->editTriggers(), QAbstractItemView::NoEditTriggers);
    EXPECT_EQ(tree->toolTip(), QStringLiteral("右键操作"));
    EXPECT_EQ(tree->contextMenuPolicy(), Qt::CustomContextMenu);
}

TEST_P(tree_page, menu_has_the_four_entries_with_separators) {
    open();
    EXPECT_EQ(menu_texts(tree->findChild<QMenu*>()),
              (QStringList{QStringLiteral("查询"), QStringLiteral("-"), QStringLiteral("添加子节点"),
                           QStringLiteral("-"), QStringLiteral("编辑"), QStringLiteral("-"),
                           QStringLiteral("删除")}));
}

TEST_P(tree_page, menu_opens_at_the_cursor) {
    open();
    QCursor::setPos(QPoint(120, 70));
    ask_for_menu(QStringLiteral("乙"));
    auto* menu = tree->findChild<QMenu*>();
    EXPECT_TRUE(menu->isVisible());
    EXPECT_EQ(menu->pos(), QCursor::pos());
    menu->close();
}

TEST_P(tree_page, search_in_the_menu_loads_the_tree_anew) {
    open();
    server.answer(R"([{"id":"8","name":"新"}])");
    action("查询")->trigger();
    EXPECT_EQ(server.paths(), QList<QByteArray>{GetParam().load});
    EXPECT_EQ(server.last().method, "GET");
    EXPECT_EQ(tree_lines(tree),
              (QStringList{QStringLiteral("0 %1/0/").arg(root()), QStringLiteral("1 新/8/0")}));
}

struct tree_rights_row {
    const char* what;
    std::vector<const char*> rights;
    int loads;
    bool enabled;
    bool add;
    bool edit;
    bool remove;
};

const tree_rights_row tree_rights_rows[] = {
    {"nothing", {}, 0, false, false, false, false},
    {"everything", {"search", "add_child", "edit", "delete"}, 1, true, true, true, true},
    {"add is another right than add_child", {"search", "add", "edit"}, 1, true, false, true, false},
    {"no search", {"add_child", "edit", "delete"}, 0, false, true, true, true},
    {"search alone", {"search"}, 1, true, false, false, false}};

TEST_P(tree_page, rights_enable_the_entries_and_the_page) {
    for (const auto& row : tree_rights_rows) {
        g_http.rights.clear();
        grant(GetParam().page, row.rights);
        server.forget();
        show(std::unique_ptr<QDialog>(GetParam().make(nullptr, 1)));
        EXPECT_EQ(server.paths().size(), row.loads) << row.what;
        EXPECT_EQ(tree_lines(tree).size(), row.loads * 5) << row.what;
        EXPECT_EQ(dialog->isEnabled(), row.enabled) << row.what;
        EXPECT_TRUE(action("查询")->isEnabled()) << row.what;
        EXPECT_EQ(action("添加子节点")->isEnabled(), row.add) << row.what;
        EXPECT_EQ(action("编辑")->isEnabled(), row.edit) << row.what;
        EXPECT_EQ(action("删除")->isEnabled(), row.remove) << row.what;
    }
}

TEST_P(tree_page, opening_the_menu_overrides_the_rights) {
    open({"search"});
    const auto state = [this] {
        tree->findChild<QMenu*>()->close();
        return std::make_pair(action("编辑")->isEnabled(), action("删除")->isEnabled());
    };
    EXPECT_EQ(state(), std::make_pair(false, false));
    ask_for_menu(QStringLiteral("乙"));
    EXPECT_EQ(state(), std::make_pair(true, true)) << "a real node enables both, granted or not";
    ask_for_menu(root());
    EXPECT_EQ(state(), std::make_pair(false, false));
    EXPECT_FALSE(action("添加子节点")->isEnabled()) << "stays as the rights left it";
    tree->setCurrentIndex(QModelIndex());
    emit tree->customContextMenuRequested(QPoint(1, 1));
    EXPECT_EQ(state(), std::make_pair(true, true)) << "only the id 0 disables them";
}

TEST_P(tree_page, the_root_can_have_children_but_not_be_changed_by_the_menu) {
    open();
    ask_for_menu(root());
    tree->findChild<QMenu*>()->close();
    EXPECT_TRUE(action("添加子节点")->isEnabled());
    EXPECT_FALSE(action("编辑")->isEnabled());
    EXPECT_FALSE(action("删除")->isEnabled());
    server.answer(R"({"http_state":1,"insert_id":"9","datetime":1})");
    save_name("添加子节点", QStringLiteral(" 新 "));
    EXPECT_EQ(server.paths(), QList<QByteArray>{path("do_add")});
    EXPECT_EQ(server.last().body, QByteArray("name=新&parent=0"));
    EXPECT_EQ(tree_lines(tree).last(), QStringLiteral("1 新/9/0"));
}

TEST_P(tree_page, a_new_child_of_a_collapsed_node_stays_out_of_sight) {
    open();
    make_current(QStringLiteral("乙"));
    const QPersistentModelIndex above = tree->currentIndex();
    tree->collapse(above);
    server.answer(R"({"http_state":1,"insert_id":"9"})");
    save_name("添加子节点", QStringLiteral("新"));
    EXPECT_EQ(server.last().body, QByteArray("name=新&parent=2"));
    const QModelIndex added = tree_node_named(tree, QStringLiteral("新"));
    EXPECT_EQ(added.parent(), QModelIndex(above));
    EXPECT_FALSE(tree->isExpanded(above)) << "the parent is not opened";
    EXPECT_TRUE(tree->isExpanded(added)) << "the new node itself is";
    EXPECT_TRUE(tree->visualRect(added).isEmpty());
    tree->expand(above);
    EXPECT_FALSE(tree->visualRect(added).isEmpty());
}

TEST_P(tree_page, a_new_child_of_a_childless_node_stays_out_of_sight_too) {
    open();
    make_current(QStringLiteral("丙"));
    tree->collapse(tree->currentIndex());
    server.answer(R"({"http_state":1,"insert_id":"9"})");
    save_name("添加子节点", QStringLiteral("新"));
    EXPECT_FALSE(tree->isExpanded(tree_node_named(tree, QStringLiteral("丙"))));
    EXPECT_TRUE(tree->isExpanded(tree_node_named(tree, QStringLiteral("新"))));
}

TEST_P(tree_page, edit_renames_in_place) {
    open();
    make_current(QStringLiteral("乙"));
    server.answer("1");
    with_modal([&] { action("编辑")->trigger(); },
               [&](QWidget* d) {
                   EXPECT_EQ(d->windowTitle(), QString::fromUtf8(GetParam().edit_title));
                   EXPECT_EQ(child<QLineEdit>(d, "txt_name")->text(), QStringLiteral("乙"));
                   child<QLineEdit>(d, "txt_name")->setText(QStringLiteral("新"));
                   click(d, "btn_save");
               });
    EXPECT_EQ(server.paths(), QList<QByteArray>{path("do_edit")});
    EXPECT_EQ(server.last().body, QByteArray(GetParam().edit_body));
    EXPECT_EQ(tree_lines(tree)[2], QStringLiteral("2 新/2/1"));
}

TEST_P(tree_page, add_has_its_own_title) {
    open();
    make_current(QStringLiteral("丁"));
    with_modal([&] { action("添加子节点")->trigger(); },
               [&](QWidget* d) {
                   EXPECT_EQ(d->windowTitle(), QString::fromUtf8(GetParam().add_title));
                   EXPECT_TRUE(child<QLineEdit>(d, "txt_name")->text().isEmpty());
                   click(d, "btn_close");
               });
    EXPECT_TRUE(server.requests().isEmpty());
}

TEST_P(tree_page, refusals_show_nothing_and_change_nothing) {
    open();
    const QStringList before = tree_lines(tree);
    for (const char* body : {"0", "", "{\"http_state\":0}", "<html>"}) {
        make_current(QStringLiteral("乙"));
        for (int i = 0; i < 3; ++i)
            server.answer(body);
        save_name("添加子节点", QStringLiteral("新"));
        save_name("编辑", QStringLiteral("新"));
        remove(QMessageBox::Yes);
        EXPECT_EQ(tree_lines(tree), before) << body;
        EXPECT_TRUE(shown_tip().isEmpty());
        EXPECT_EQ(QApplication::activeModalWidget(), nullptr) << "the dialog is gone";
    }
    EXPECT_EQ(server.requests().size(), 12);
}

TEST_P(tree_page, delete_asks_and_takes_the_subtree_along) {
    open();
    make_current(QStringLiteral("甲"));
    remove(QMessageBox::No);
    EXPECT_TRUE(server.requests().isEmpty());
    server.answer("1");
    remove(QMessageBox::Yes);
    EXPECT_EQ(server.paths(), QList<QByteArray>{path("do_delete")}) << "no reload";
    EXPECT_EQ(server.last().body, "id=1");
    EXPECT_EQ(tree_lines(tree).mid(1), QStringList{QStringLiteral("1 丁/4/0")});
}

TEST_P(tree_page, without_a_current_node_nothing_goes_out) {
    open();
    EXPECT_FALSE(tree->currentIndex().isValid());
    action("添加子节点")->trigger();
    action("编辑")->trigger();
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    remove(QMessageBox::Yes);
    EXPECT_TRUE(server.requests().isEmpty());
    EXPECT_EQ(tree_lines(tree).size(), 5);
}

TEST_P(tree_page, without_a_tree_nothing_goes_out_either) {
    open({"add_child", "edit", "delete"});
    action("添加子节点")->trigger();
    action("编辑")->trigger();
    remove(QMessageBox::Yes);
    EXPECT_TRUE(server.requests().isEmpty());
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
}

TEST_P(tree_page, escape_does_not_blank_a_page) {
    grant_all(GetParam().page);
    QTabWidget tabs;
    QDialog* page = GetParam().make(&tabs, 1);
    tabs.addTab(page, QStringLiteral("page"));
    tabs.show();
    QTest::keyClick(child<QTreeView>(page, "treeview"), Qt::Key_Escape);
    EXPECT_TRUE(page->isVisible());
}

TEST_P(tree_page, escape_closes_a_picker) {
    grant_all(GetParam().page);
    show(std::unique_ptr<QDialog>(GetParam().make(nullptr, 3)));
    QTest::keyClick(tree, Qt::Key_Escape);
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_EQ(dialog->result(), int(QDialog::Rejected));
}

TEST_P(tree_page, a_picker_has_no_menu_to_open) {
    grant_all(GetParam().page);
    show(std::unique_ptr<QDialog>(GetParam().make(nullptr, 3)));
    EXPECT_EQ(tree->contextMenuPolicy(), Qt::DefaultContextMenu);
    ask_for_menu(QStringLiteral("乙"));
    emit tree->customContextMenuRequested(QPoint(1, 1));
    EXPECT_FALSE(tree->findChild<QMenu*>()->isVisible());
    EXPECT_EQ(menu_texts(tree->findChild<QMenu*>()).size(), 7) << "made all the same";
}
