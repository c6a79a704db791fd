#include "widgets/tree_page.h"

#include <QCursor>
#include <QTreeView>

#include "model/tree_nodes.h"
#include "widgets/context_menu.h"

void open_tree_menu(const context_menu& menu, const QTreeView* tree) {
    const bool is_root = current_node(tree).id == QLatin1String("0");
    menu.actions[2]->setEnabled(!is_root);
    menu.actions[3]->setEnabled(!is_root);
    menu.menu->popup(QCursor::pos());
}
