// The part of the tour that goes through the trees: departments and categories.
#include <QAction>
#include <QLineEdit>
#include <QTest>
#include <QTreeView>

#include "app/window.h"
#include "master/dlg_dept.h"
#include "master/dlg_prodcate.h"
#include "support/screen.h"
#include "support/tree.h"
#include "tour/tour.h"

namespace {

QTreeView* tree_of(const QWidget* page) {
    return child<QTreeView>(page, "treeview");
}

/** How many nodes of a tree have that depth; 0 is the artificial root. */
int nodes_at(const QTreeView* tree, int depth) {
    return tree_lines(tree).filter(QString::number(depth) + QLatin1Char(' ')).size();
}

} // namespace

void tour::department_steps() {
    walk.step("department_page", [&] {
        open_page("dept", QStringLiteral("部门管理"));
        walk.expect(nodes_at(tree_of(front()), 1) >= 5, QStringLiteral("five departments"));
        walk.expect(nodes_at(tree_of(front()), 2) >= 12, QStringLiteral("with their groups"));
        click_node(tree_of(front()), QStringLiteral("销售部"));
        walk.picture();
    });
    for (const bool is_root : {false, true}) {
        walk.step(is_root ? "department_menu_of_root" : "department_menu", [&] {
            const QString at = is_root ? QStringLiteral("【部门架构】") : QStringLiteral("仓储部");
            with_popup([&] { right_click_node(tree_of(front()), at); },
                       [&](QMenu* menu) {
                           walk.expect(entries(menu).size() == 7,
                                       QStringLiteral("four entries, three separators"));
                           walk.expect(menu->actions().last()->isEnabled() != is_root,
                                       QStringLiteral("all but the root can be deleted"));
                           walk.picture();
                       });
        });
    }
    new_department(front());
    department_picker();
}

void tour::new_department(QWidget* page) {
    auto* departments = qobject_cast<dlg_dept*>(page);
    QTreeView* tree = tree_of(page);
    const QString name = QStringLiteral("退货组");
    const QString renamed = QStringLiteral("退换货组");
    walk.step("department_add", [&] {
        click_node(tree, QStringLiteral("仓储部"));
        walk.with_modal([&] { departments->slot_dept_to_add(); },
                        [&](QWidget* dialog) {
                            click(dialog, "btn_save");
                            walk.expect_tip(QStringLiteral("名称不能为空"));
                            fill(dialog, {{"txt_name", name}});
                            click(dialog, "btn_save");
                        });
        walk.expect(tree_node_named(tree, name).parent() == tree_node_named(tree, QStringLiteral("仓储部")),
                    QStringLiteral("the new one stands below its department"));
    });
    walk.step("department_edit", [&] {
        click_node(tree, name);
        walk.with_modal(
            [&] { departments->slot_dept_to_edit(); },
            [&](QWidget* dialog) {
                walk.expect(dialog->windowTitle() == QStringLiteral("编辑部门"), QStringLiteral("the title"));
                walk.expect(child<QLineEdit>(dialog, "txt_name")->text() == name, QStringLiteral("the name"));
                walk.picture();
                fill(dialog, {{"txt_name", renamed}});
                click(dialog, "btn_save");
            });
        walk.expect(tree_node_named(tree, renamed).isValid(), QStringLiteral("the new name"));
    });
    walk.step("department_deleted", [&] {
        click_node(tree, renamed);
        walk.with_modal([&] { departments->slot_dept_to_delete(); }, [&](QWidget* box) { answer_yes(box); });
        with_popup([&] { right_click_node(tree, QStringLiteral("仓储部")); },
                   [](QMenu* menu) { menu->actions().first()->trigger(); });
        walk.expect(tree_lines(tree).filter(renamed).isEmpty(), QStringLiteral("the service has dropped it"));
    });
}

void tour::department_picker() {
    walk.step("department_picker", [&] {
        dlg_dept picker(shell, 3);
        picker.setWindowTitle(QStringLiteral("选择生产部门"));
        QString picked;
        QObject::connect(&picker, &dlg_dept::signal_dept_selected, &picker,
                         [&picked](const struct_dept& dept) { picked = dept.name; });
        walk.with_modal([&] { picker.exec(); },
                        [&](QWidget* shown) {
                            click_node(tree_of(shown), QStringLiteral("盘点组"));
                            walk.picture();
                            double_click_node(tree_of(shown), QStringLiteral("盘点组"));
                        });
        walk.expect(picked == QStringLiteral("盘点组"), QStringLiteral("the chosen one is handed over"));
    });
}

void tour::category_steps() {
    walk.step("category_page", [&] {
        open_page("prodcate", QStringLiteral("货品类别管理"));
        walk.expect(nodes_at(tree_of(front()), 3) >= 20, QStringLiteral("twenty categories at the bottom"));
        click_node(tree_of(front()), QStringLiteral("手动工具"));
        walk.picture();
    });
    walk.step("category_menu", [&] {
        with_popup([&] { right_click_node(tree_of(front()), QStringLiteral("扳手")); },
                   [&](QMenu* menu) {
                       walk.expect(entries(menu).size() == 7,
                                   QStringLiteral("four entries, three separators"));
                       walk.picture();
                   });
    });
    walk.step("category_add", [&] {
        auto* categories = qobject_cast<dlg_prodcate*>(front());
        walk.with_modal([&] { categories->slot_prodcate_to_add(); },
                        [&](QWidget* dialog) {
                            fill(dialog, {{"txt_name", QStringLiteral("扭力扳手")}});
                            walk.picture();
                            click(dialog, "btn_close");
                        });
        walk.expect(tree_lines(tree_of(front())).filter(QStringLiteral("扭力扳手")).isEmpty(),
                    QStringLiteral("nothing is added"));
    });
}
