#pragma once
#include <QObject>
#include <QString>

#include "model/struct_prodcate.h"

class QTreeView;

/** The product categories module. Everything is done at the tree's current node. */
class model_prodcate : public QObject {
    Q_OBJECT

public:
    /** The root's name goes by `mode`: 1 management, 3 to assign, 4 to filter; in any other it has none. */
    explicit model_prodcate(QTreeView* tree, int mode = 0);

    /** Loads all categories into the tree. */
    void get_tree();
    /** Adds a category below the current node; without one nothing is sent. */
    void do_add(struct_prodcate prodcate);
    /** Renames the current node when the service agrees. A record without an id is not sent. */
    void do_edit(struct_prodcate prodcate);
    /** Removes the current node and its subtree when the service agrees. Nothing is sent without an id. */
    void do_delete(QString id);

private:
    int mode;
    QTreeView* tree;
};
