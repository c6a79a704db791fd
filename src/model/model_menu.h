#pragma once
#include <QJsonArray>
#include <QObject>
#include <QString>

class QTreeWidget;
class QTreeWidgetItem;

/**
 * The menu table as a tree. Tree columns: 0 name, 1 id, 2 action, 3 real_level, 4 sort, 5 show, 6 the
 * parent's id.
 */
class model_menu : public QObject {
    Q_OBJECT

public:
    /** `mode` 2 fills the navigation tree and rebuilds g_http.rights. */
    model_menu(QObject* parent, QTreeWidget* tree, int mode);

    /** Loads the menu table into the tree. */
    void get_menu();

private:
    void add_rows(const QJsonArray& rows, QTreeWidgetItem* parent);

    QTreeWidget* tree;
    int mode;
    QString args;
};
