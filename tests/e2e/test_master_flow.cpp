#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QTableWidget>
#include <QTest>
#include <QTreeView>

#include "app/window.h"
#include "e2e/e2e_fixture.h"
#include "master/dlg_dept.h"
#include "master/dlg_dept_add.h"
#include "master/dlg_emp_add.h"
#include "master/dlg_prodcate.h"
#include "master/dlg_prodcate_add.h"
#include "master/dlg_product_add.h"
#include "master/dlg_search_emp.h"
#include "master/dlg_search_product.h"
#include "master/dlg_warehouse_add.h"
#include "model/model_warehouse.h"
#include "support/modal.h"
#include "support/screen.h"
#include "support/tree.h"

namespace {

/** Each kind of master data through its screens: added, found, paged, edited, deleted, picked. */
class master_flow : public e2e_test {
protected:
    void open(const char* page) {
        serve();
        log_in(shell, QStringLiteral("demo_admin"));
        go(page);
    }

    void go(const char* page) {
        click_navigation(shell, QLatin1String(page));
        tab = front(shell);
    }

    void set(QWidget* dialog, const char* field, const QString& text) {
        child<QLineEdit>(dialog, field)->setText(text);
    }

    void expect_pages() {
        const QStringList first = column(tab, 0);
        ASSERT_EQ(first.size(), 20);
        QTest::mousePress(child<QLabel>(tab, "lbl_next"), Qt::LeftButton);
        const QStringList second = column(tab, 0);
        EXPECT_FALSE(second.isEmpty());
        for (const QString& id : second)
            EXPECT_FALSE(first.contains(id));
        QTest::mousePress(child<QLabel>(tab, "lbl_first"), Qt::LeftButton);
        EXPECT_EQ(column(tab, 0), first);
    }

    void delete_first_row() {
        click_row(table(tab), 0);
        with_question([this] { click(tab, "btn_delete"); }, QStringLiteral("确认删除"),
                      QStringLiteral("确认删除吗？"), QMessageBox::Yes);
    }

    /** Presses a field that opens a picker. */
    static void press(QWidget* owner, const char* field) {
        QTest::mousePress(child<QLineEdit>(owner, field), Qt::LeftButton);
    }

    /** Runs an entry of the tree's context menu. */
    void run_entry(const char* text) {
        for (QAction* action : child<QTreeView>(tab, "treeview")->findChild<QMenu*>()->actions())
            if (action->text() == QString::fromUtf8(text)) action->trigger();
    }

    template <class name_dialog>
    void name_in_dialog(const char* entry, const QString& name) {
        with_modal_of<name_dialog>([&] { run_entry(entry); },
                                   [&](name_dialog* dialog) {
                                       child<QLineEdit>(dialog, "txt_name")->setText(name);
                                       click(dialog, "btn_save");
                                   });
    }

    QStringList lines() { return tree_lines(child<QTreeView>(tab, "treeview")); }

    /** Adds a child, a grandchild and renames, then reloads; the tree says the same before and after. */
    template <class name_dialog>
    void grow_tree(const QString& root) {
        auto* tree = child<QTreeView>(tab, "treeview");
        const int before = lines().size();
        ASSERT_GT(before, 5);
        click_node(tree, root);
        name_in_dialog<name_dialog>("添加子节点", QStringLiteral("枝一"));
        tree->expandAll();
        click_node(tree, QStringLiteral("枝一"));
        name_in_dialog<name_dialog>("添加子节点", QStringLiteral("叶=1&id=7"));
        click_node(tree, QStringLiteral("枝一"));
        name_in_dialog<name_dialog>("编辑", QStringLiteral("大枝"));
        const QStringList grown = lines();
        EXPECT_EQ(grown.size(), before + 2);
        run_entry("查询");
        EXPECT_EQ(lines(), grown);
        click_node(tree, QStringLiteral("大枝"));
        with_question([this] { run_entry("删除"); }, QStringLiteral("确认删除"),
                      QStringLiteral("确认删除吗？"), QMessageBox::Yes);
        EXPECT_EQ(lines().size(), before);
        run_entry("查询");
        EXPECT_EQ(lines().size(), before);
    }

    void expect_sound() {
        EXPECT_EQ(service->stop(), 0);
        EXPECT_EQ(service->check(), 0);
    }

    window shell;
    QWidget* tab = nullptr;
};

} // namespace

TEST_F(master_flow, an_employee) {
    open("emp");
    expect_pages();
    with_modal_of<dlg_emp_add>([this] { click(tab, "btn_add"); },
                               [this](dlg_emp_add* dialog) {
                                   set(dialog, "txt_name", QStringLiteral("甲&jobnum=乙"));
                                   set(dialog, "txt_jobnum", QStringLiteral("E+9%01"));
                                   set(dialog, "txt_mobile", QStringLiteral("15400008001"));
                                   set(dialog, "txt_remark", QStringLiteral("旧"));
                                   child<QCheckBox>(dialog, "chk_default")->setChecked(true);
                                   click(dialog, "btn_save");
                               });
    EXPECT_EQ(table(tab)->rowCount(), 21);
    set(tab, "txt_jobnum", QStringLiteral("e+9%"));
    click(tab, "btn_search");
    ASSERT_EQ(column(tab, 1), QStringList{QStringLiteral("甲&jobnum=乙")});
    EXPECT_EQ(column(tab, 9), QStringList{QStringLiteral("是")});

    click_row(table(tab), 0);
    with_modal_of<dlg_emp_add>([this] { click(tab, "btn_edit"); },
                               [this](dlg_emp_add* dialog) {
                                   set(dialog, "txt_remark", QString());
                                   child<QCheckBox>(dialog, "chk_leave")->setChecked(true);
                                   click(dialog, "btn_save");
                               });
    click(tab, "btn_search");
    EXPECT_EQ(column(tab, 6), QStringList{QString()}) << "an employee's fields can be cleared";
    EXPECT_EQ(column(tab, 10), QStringList{QStringLiteral("是")});

    // The job number is taken, for a second one.
    with_modal_of<dlg_emp_add>([this] { click(tab, "btn_add"); },
                               [this](dlg_emp_add* dialog) {
                                   set(dialog, "txt_name", QStringLiteral("丙"));
                                   set(dialog, "txt_jobnum", QStringLiteral("E+9%01"));
                                   click(dialog, "btn_save");
                                   expect_tip(child<QLineEdit>(dialog, "txt_jobnum"),
                                              QStringLiteral("已存在其他重复的工号"));
                                   click(dialog, "btn_cancel");
                               });
    delete_first_row();
    click(tab, "btn_search");
    EXPECT_EQ(table(tab)->rowCount(), 0);
    expect_sound();
}

TEST_F(master_flow, a_warehouse_and_its_keeper) {
    open("warehouse");
    const int before = table(tab)->rowCount();
    ASSERT_EQ(before, 4);
    QString keeper;
    with_modal_of<dlg_warehouse_add>([this] { click(tab, "btn_add"); },
                                     [&](dlg_warehouse_add* dialog) {
                                         set(dialog, "txt_name", QStringLiteral("新仓&keeper=1"));
                                         // The choose button hands over one character, which the service
                                         // understands.
                                         with_modal_of<dlg_search_emp>(
                                             [dialog] { press(dialog, "txt_keeper"); },
                                             [&](dlg_search_emp* picker) {
                                                 ASSERT_EQ(table(picker)->rowCount(), 10);
                                                 click_row(table(picker), 2);
                                                 keeper = column(picker, 1).value(2);
                                                 click(picker, "btn_choose");
                                             });
                                         EXPECT_EQ(child<QLineEdit>(dialog, "txt_keeper")->text(), keeper);
                                         child<QCheckBox>(dialog, "chk_default")->setChecked(true);
                                         click(dialog, "btn_save");
                                     });
    ASSERT_EQ(table(tab)->rowCount(), before + 1);
    click(tab, "btn_search");
    EXPECT_EQ(column(tab, 1).value(0), QStringLiteral("新仓&keeper=1"));
    EXPECT_EQ(column(tab, 4).value(0), keeper);
    EXPECT_EQ(column(tab, 6).count(QStringLiteral("默认")), 1) << "the former default is one no more";

    // The keeper as a filter, picked by a double click.
    with_modal_of<dlg_search_emp>([this] { press(tab, "txt_keeper"); },
                                  [](dlg_search_emp* picker) {
                                      click_row(table(picker), 2);
                                      emit table(picker)->doubleClicked(table(picker)->currentIndex());
                                  });
    click(tab, "btn_search");
    ASSERT_TRUE(column(tab, 1).contains(QStringLiteral("新仓&keeper=1")));
    for (const QString& name : column(tab, 4))
        EXPECT_EQ(name, keeper);

    QComboBox box;
    model_warehouse options(3);
    options.get_option(&box, 1);
    EXPECT_EQ(box.count(), before + 2);
    EXPECT_EQ(box.currentText(), QStringLiteral("新仓&keeper=1"));
    options.get_option_with_stat(&box);
    EXPECT_EQ(box.count(), before + 2);
    EXPECT_TRUE(box.itemText(box.count() - 1).endsWith(QStringLiteral("\t[库存:0]"))) << "nothing lies there";

    click_row(table(tab), 0);
    with_modal_of<dlg_warehouse_add>([this] { click(tab, "btn_edit"); },
                                     [this](dlg_warehouse_add* dialog) {
                                         set(dialog, "txt_phone", QStringLiteral("0193-1"));
                                         click(dialog, "btn_save");
                                     });
    click(tab, "btn_search");
    EXPECT_EQ(column(tab, 2).value(0), QStringLiteral("0193-1"));
    delete_first_row();
    click(tab, "btn_search");
    EXPECT_FALSE(column(tab, 1).contains(QStringLiteral("新仓&keeper=1")));
    expect_sound();
}

TEST_F(master_flow, departments) {
    open("dept");
    grow_tree<dlg_dept_add>(QStringLiteral("【部门架构】"));
    // Picked, as documents do it.
    dlg_dept picker(&shell, 3);
    struct_dept picked;
    QObject::connect(&picker, &dlg_dept::signal_dept_selected, &picker,
                     [&picked](const struct_dept& dept) { picked = dept; });
    picker.show();
    auto* tree = child<QTreeView>(&picker, "treeview");
    const QModelIndex first = tree->model()->index(0, 0).model()->index(0, 0, tree->model()->index(0, 0));
    double_click_node(tree, first.data().toString());
    EXPECT_EQ(picked.name, first.data().toString());
    EXPECT_GT(picked.id.toInt(), 1000);
    expect_sound();
}

TEST_F(master_flow, categories) {
    open("prodcate");
    grow_tree<dlg_prodcate_add>(QStringLiteral("【货品分类】"));
    expect_sound();
}

TEST_F(master_flow, a_product_in_its_category) {
    open("product");
    expect_pages();
    QString category;
    with_modal_of<dlg_product_add>([this] { click(tab, "btn_add"); },
                                   [&](dlg_product_add* dialog) {
                                       set(dialog, "txt_name", QStringLiteral("螺丝&price=9+1%"));
                                       set(dialog, "txt_code", QStringLiteral("C-1"));
                                       set(dialog, "txt_spec", QStringLiteral("M8×20"));
                                       set(dialog, "txt_price", QStringLiteral("12.5"));
                                       with_modal_of<dlg_prodcate>(
                                           [dialog] { press(dialog, "txt_category"); },
                                           [&](dlg_prodcate* picker) {
                                               auto* tree = child<QTreeView>(picker, "treeview");
                                               const QModelIndex root = tree->model()->index(0, 0);
                                               category = tree->model()->index(0, 0, root).data().toString();
                                               double_click_node(tree, category);
                                           });
                                       click(dialog, "btn_submit");
                                   });
    set(tab, "txt_product", QStringLiteral("price=9"));
    click(tab, "btn_search");
    ASSERT_EQ(column(tab, 2), QStringList{QStringLiteral("螺丝&price=9+1%")});
    EXPECT_EQ(column(tab, 1), QStringList{category});
    EXPECT_EQ(column(tab, 5), QStringList{QStringLiteral("12.50")});

    // A price of 0 is never sent: the service keeps the old one.
    click_row(table(tab), 0);
    with_modal_of<dlg_product_add>([this] { click(tab, "btn_edit"); },
                                   [this](dlg_product_add* dialog) {
                                       set(dialog, "txt_price", QStringLiteral("0"));
                                       set(dialog, "txt_spec", QStringLiteral("M10"));
                                       click(dialog, "btn_submit");
                                   });
    EXPECT_EQ(column(tab, 5), QStringList{QStringLiteral("0.00")});
    click(tab, "btn_search");
    EXPECT_EQ(column(tab, 5), QStringList{QStringLiteral("12.50")});
    EXPECT_EQ(column(tab, 4), QStringList{QStringLiteral("M10")});

    dlg_search_product picker(&shell);
    struct_product picked;
    QObject::connect(&picker, &dlg_search_product::signal_product_selected, &picker,
                     [&picked](const struct_product& product) { picked = product; });
    picker.show();
    ASSERT_EQ(table(&picker)->rowCount(), 10);
    set(&picker, "txt_code", QStringLiteral("C-1"));
    QTest::keyClick(child<QLineEdit>(&picker, "txt_code"), Qt::Key_Return);
    const int row = column(&picker, 2).indexOf(QStringLiteral("螺丝&price=9+1%"));
    ASSERT_GE(row, 0);
    click_row(table(&picker), row);
    emit table(&picker)->doubleClicked(table(&picker)->currentIndex());
    EXPECT_EQ(picked.id, column(tab, 0).value(0));
    EXPECT_EQ(picked.category_name, category);
    EXPECT_DOUBLE_EQ(picked.price, 12.5);

    // Its category is in use and stays.
    go("prodcate");
    auto* tree = child<QTreeView>(tab, "treeview");
    const int nodes = lines().size();
    click_node(tree, category);
    with_question([this] { run_entry("删除"); }, QStringLiteral("确认删除"), QStringLiteral("确认删除吗？"),
                  QMessageBox::Yes);
    EXPECT_EQ(lines().size(), nodes);
    go("product");
    delete_first_row();
    click(tab, "btn_search");
    EXPECT_EQ(table(tab)->rowCount(), 0);
    expect_sound();
}
