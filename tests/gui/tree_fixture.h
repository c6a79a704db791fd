#pragma once
#include <QDialog>
#include <QTreeView>
#include <memory>

#include "support/client_fixture.h"
#include "support/modal.h"
#include "support/pages.h"
#include "support/screen.h"
#include "support/tree.h"

/** Dialogs with a tree of 4 nodes: 甲 (乙 (丙)), 丁, against a scripted service. */
class tree_test : public client_test {
protected:
    tree_test() {
        for (const char* path : {"wms_dept/get_dept", "wms_prodcate/get_prodcate"})
            server.always(
                path,
                R"([{"id":"1","name":"甲","child":[{"id":"2","name":"乙","child":[{"id":"3","name":"丙"}]}]},)"
                R"({"id":"4","name":"丁","child":[]}])");
    }
    ~tree_test() override { clear_tip(); }

    static void grant_all(const char* page) { grant(page, {"search", "add_child", "edit", "delete"}); }

    void show(std::unique_ptr<QDialog> opened) {
        dialog = std::move(opened);
        dialog->show();
        tree = child<QTreeView>(dialog.get(), "treeview");
    }
    void make_current(const QString& name) { tree->setCurrentIndex(tree_node_named(tree, name)); }
    QAction* action(const char* text) { return menu_action(tree, text); }
    void ask_for_menu(const QString& name) {
        const QPoint at = tree->visualRect(tree_node_named(tree, name)).center();
        QTest::mouseClick(tree->viewport(), Qt::RightButton, Qt::NoModifier, at);
        QContextMenuEvent event(QContextMenuEvent::Mouse, at, tree->viewport()->mapToGlobal(at));
        QApplication::sendEvent(tree->viewport(), &event);
    }

    std::unique_ptr<QDialog> dialog;
    QTreeView* tree = nullptr;
};
