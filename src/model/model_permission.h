#pragma once
#include <QJsonArray>
#include <QObject>
#include <QStringList>

#include "model/struct_user.h"

class QTreeWidget;
class QTreeWidgetItem;

/**
 * The grants of one user, as a tree with a check box on every row of the menu table; each change is saved at
 * once. On the service a grant is a flat set of rows: one that is partly checked is granted. Tree columns: 0
 * name with the check box, 1 id, 2 action, 3 parent, 4 sort, 5 show, 6 real_level.
 */
class model_permission : public QObject {
    Q_OBJECT

public:
    /** `mode` 1 puts all rows under one root row with the id 0, 2 puts them at the top. */
    model_permission(QObject* parent, QTreeWidget* tree, struct_user user, int mode);
    /** Mode 2. */
    model_permission(QObject* parent, QTreeWidget* tree, struct_user user);

    /** Asks which rows are granted to a user. */
    void get_permission(QString user_id);
    /** Loads the whole menu table into the tree, with the grants in hand as its check marks. */
    void get_permission_tree();
    /** Grants a row; whether the service did. */
    bool set_checked(QString menu_id);
    /** Revokes a row; whether the service did. */
    bool set_unchecked(QString menu_id);

    /** Carries the state of the row above down to `item` and everything below it. */
    void apply_down(QTreeWidgetItem* item);
    /** Sums `item` and everything above it up from their children. */
    void apply_up(QTreeWidgetItem* item);

private:
    void add_rows(const QJsonArray& rows, QTreeWidgetItem* parent, const QString& parent_id);
    bool save(const QString& path, const QString& menu_id);

    QTreeWidget* tree;
    int mode;
    /** Ids of the rows granted. */
    QStringList granted;
    struct_user user;
    QString args;
};
