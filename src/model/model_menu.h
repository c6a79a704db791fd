#pragma once
#include <QJsonArray>
#include <QObject>
#include <QString>

#include "model/struct_menu.h"

class QTreeWidget;
class QTreeWidgetItem;

/**
 * The menu table as a tree, for the navigation and for its administration. Tree columns: 0 name, 1 id,
 * 2 action, 3 real_level, 4 sort, 5 show, 6 the parent's id.
 */
class model_menu : public QObject {
    Q_OBJECT

public:
    /**
     * `mode` 1 is the administration: every row, rights too, under one root row with the id 0. 2 is the
     * navigation: what the current user may see, without the rights, which go into g_http.rights.
     */
    model_menu(QObject* parent, QTreeWidget* tree, int mode);

    /** Loads the menu table into the tree. */
    void get_menu();

    /** Returns the service's whole answer, which is the new row's id; empty when it failed. */
    QString do_add(struct_menu menu);
    /** Returns the number of rows changed. */
    int do_edit(struct_menu menu);
    /** Whether the row was deleted. */
    bool do_delete(QString id);

    /** The record that a row of the tree shows. */
    static struct_menu read_row(const QTreeWidgetItem* item);
    static void write_row(QTreeWidgetItem* item, const struct_menu& menu);

private:
    void add_rows(const QJsonArray& rows, QTreeWidgetItem* parent);
    QString id_above(const QTreeWidgetItem* parent) const;

    QTreeWidget* tree;
    int mode;
    /** Holds the rows whose parent id is 0. */
    QTreeWidgetItem* top = nullptr;
    QString args;
};
