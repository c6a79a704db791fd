#pragma once
#include <QJsonArray>
#include <QString>

class QTreeView;

/**
 * A row of a tree of departments or categories. The tree shows the name in column 0 and keeps the ids in the
 * hidden columns 1 and 2; it is the only copy of the data.
 */
struct tree_node {
    QString name;
    QString id;
    QString parent;
};

/**
 * Shows `nodes`, nested in one another by their key `child` as the service sends them, all expanded, below an
 * artificial root of id "0". What the view showed before is replaced.
 */
void show_tree(QTreeView* view, const QString& root_name, const QJsonArray& nodes);

/** The node that is current in a tree; all empty when none is. */
tree_node current_node(const QTreeView* view);

/**
 * Adds a node below the current one. When the service agrees, the new node becomes the last one there and its
 * own index is expanded; the one above is left as it is, so that below a collapsed one the new node stays out
 * of sight. Without a current node nothing is sent.
 */
void add_below_current(QTreeView* view, const QString& path, const QString& name);

/** Sends `args`, the changed record. When the service agrees, the current node gets its new name in place. */
void rename_current(QTreeView* view, const QString& path, const QString& args, const QString& name);

/** Deletes the current node, whose id is given; when the service agrees, it goes with everything below it. */
void delete_current(QTreeView* view, const QString& path, const QString& id);
