#pragma once
#include <QObject>
#include <QString>

#include "model/struct_dept.h"

class QTreeView;

/** The departments module. Everything is done at the tree's current node. */
class model_dept : public QObject {
    Q_OBJECT

public:
    /** `mode` 3 names the root as a picker does, any other one as the management page. */
    explicit model_dept(QTreeView* tree, int mode = 0);

    /** Loads all departments into the tree. */
    void get_tree();
    /** Adds a department below the current node; without one nothing is sent. */
    void do_add(struct_dept dept);
    /** Renames the current node when the service agrees. A record without an id is not sent. */
    void do_edit(struct_dept dept);
    /** Removes the current node and its subtree when the service agrees. Nothing is sent without an id. */
    void do_delete(QString id);

private:
    int mode;
    QTreeView* tree;
};
