#pragma once

class QTreeView;
struct context_menu;

/**
 * Opens the menu of a tree (search, add a child, edit, delete) at the cursor. The root can be neither edited
 * nor deleted; every other node can, whatever the rights have said about it before: kept on purpose.
 */
void open_tree_menu(const context_menu& menu, const QTreeView* tree);
