#include <QPushButton>
#include <QSignalSpy>

#include "gui/tree_fixture.h"
#include "master/dlg_dept.h"

class dept_dialog : public tree_test {
protected:
    void open(int mode) {
        show(std::make_unique<dlg_dept>(nullptr, mode));
        chosen = std::make_unique<QSignalSpy>(dialog.get(), SIGNAL(signal_dept_selected(struct_dept)));
    }
    void expect_chosen(const char* id, const QString& name) {
        ASSERT_EQ(chosen->size(), 1);
        const auto dept = chosen->first().first().value<struct_dept>();
        EXPECT_EQ(dept.id, QLatin1String(id));
        EXPECT_EQ(dept.name, name);
        EXPECT_TRUE(dept.parent.isEmpty());
        EXPECT_EQ(dept.datetime, 0);
        EXPECT_FALSE(dialog->isVisible());
        EXPECT_EQ(dialog->result(), int(QDialog::Accepted));
    }

    std::unique_ptr<QSignalSpy> chosen;
};

TEST_F(dept_dialog, window) {
    open(3);
    EXPECT_EQ(dialog->size(), QSize(600, 255));
    auto* close = child<QPushButton>(dialog.get(), "btn_close");
    EXPECT_EQ(close->text(), QStringLiteral("关闭"));
    EXPECT_EQ(close->minimumSize(), QSize(200, 30));
    EXPECT_GT(close->y(), tree->geometry().bottom());
    EXPECT_EQ(tree->verticalScrollBarPolicy(), Qt::ScrollBarAsNeeded);
    EXPECT_EQ(tab_order(tree, 2), (QStringList{QStringLiteral("treeview"), QStringLiteral("btn_close")}));
}

TEST_F(dept_dialog, a_page_hides_the_button_and_keeps_the_expansion_by_double_click) {
    grant_all("dept");
    open(1);
    EXPECT_TRUE(child<QPushButton>(dialog.get(), "btn_close")->isHidden());
    EXPECT_LT(dialog->minimumHeight(), 255);
    EXPECT_TRUE(tree->isExpanded(tree_node_named(tree, QStringLiteral("甲"))));
    double_click_node(tree, QStringLiteral("甲"));
    EXPECT_FALSE(tree->isExpanded(tree_node_named(tree, QStringLiteral("甲"))));
    EXPECT_EQ(chosen->size(), 0) << "and nothing is chosen";
    EXPECT_TRUE(dialog->isVisible());
}

TEST_F(dept_dialog, a_picker_has_no_tool_tip_and_a_fixed_minimum_height) {
    open(3);
    EXPECT_TRUE(tree->toolTip().isEmpty());
    EXPECT_EQ(dialog->minimumHeight(), 255);
    EXPECT_FALSE(child<QPushButton>(dialog.get(), "btn_close")->isHidden());
}

TEST_F(dept_dialog, a_picker_is_open_to_anybody) {
    open(3);
    EXPECT_EQ(server.paths(), QList<QByteArray>{"wms_dept/get_dept"});
    EXPECT_TRUE(dialog->isEnabled());
    EXPECT_EQ(tree_lines(tree).first(), QStringLiteral("0 【全部】/0/"));
    EXPECT_EQ(tree_lines(tree).size(), 5);
    for (const char* entry : {"添加子节点", "编辑", "删除"})
        EXPECT_TRUE(action(entry)->isEnabled()) << "rights are not even looked at";
}

TEST_F(dept_dialog, a_double_click_chooses_without_collapsing) {
    open(3);
    double_click_node(tree, QStringLiteral("乙"));
    expect_chosen("2", QStringLiteral("乙"));
    EXPECT_TRUE(tree->isExpanded(tree_node_named(tree, QStringLiteral("乙"))));
}

TEST_F(dept_dialog, the_root_is_a_choice) {
    open(3);
    double_click_node(tree, QStringLiteral("【全部】"));
    expect_chosen("0", QStringLiteral("【全部】"));
}

TEST_F(dept_dialog, the_current_node_is_chosen_and_not_the_index) {
    open(3);
    make_current(QStringLiteral("丁"));
    static_cast<dlg_dept*>(dialog.get())
        ->on_treeview_doubleClicked(tree_node_named(tree, QStringLiteral("甲")));
    expect_chosen("4", QStringLiteral("丁"));
}

TEST_F(dept_dialog, close_says_nothing) {
    open(3);
    make_current(QStringLiteral("丁"));
    click(dialog.get(), "btn_close");
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_EQ(chosen->size(), 0);
    EXPECT_EQ(dialog->result(), int(QDialog::Rejected));
}

TEST_F(dept_dialog, an_edit_hands_over_the_whole_node) {
    grant_all("dept");
    open(1);
    QSignalSpy to_edit(dialog.get(), SIGNAL(signal_dept_to_edit(struct_dept)));
    make_current(QStringLiteral("丙"));
    with_modal([this] { action("编辑")->trigger(); }, [](QWidget* d) { d->close(); });
    ASSERT_EQ(to_edit.size(), 1);
    const auto dept = to_edit.first().first().value<struct_dept>();
    EXPECT_EQ(dept.id, QStringLiteral("3"));
    EXPECT_EQ(dept.name, QStringLiteral("丙"));
    EXPECT_EQ(dept.parent, QStringLiteral("2"));
}
