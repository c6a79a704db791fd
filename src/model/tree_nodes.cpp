#include "model/tree_nodes.h"

#include <QJsonObject>
#include <QStandardItemModel>
#include <QTreeView>

#include "model/answers.h"
#include "model/form_body.h"
#include "net/http.h"

namespace {

enum { name_column, id_column, parent_column, column_count };

QList<QStandardItem*> make_row(const tree_node& node) {
    return {new QStandardItem(node.name), new QStandardItem(node.id), new QStandardItem(node.parent)};
}

/** Nodes whose parent id is no number stand below the root, as those of parent 0 do. */
void add_nodes(QStandardItem* root, const QJsonArray& nodes, QStandardItem* parent, qint64 parent_id) {
    for (const QJsonValue& value : nodes) {
        const QJsonObject node = value.toObject();
        const QString id = node.value(QLatin1String("id")).toString();
        const auto row =
            make_row({node.value(QLatin1String("name")).toString(), id, QString::number(parent_id, 10)});
        (parent_id == 0 ? root : parent)->appendRow(row);
        add_nodes(root, node.value(QLatin1String("child")).toArray(), row.first(), id.toLongLong());
    }
}

tree_node read_node(const QModelIndex& at) {
    const auto text = [&at](int column) { return at.siblingAtColumn(column).data().toString(); };
    return {text(name_column), text(id_column), text(parent_column)};
}

/** The item that shows the name of a node of the tree. */
QStandardItem* item_of(const QTreeView* view, const QModelIndex& node) {
    return static_cast<QStandardItemModel*>(view->model())->itemFromIndex(node.siblingAtColumn(name_column));
}

} // namespace

void show_tree(QTreeView* view, const QString& root_name, const QJsonArray& nodes) {
    QAbstractItemModel* former = view->model();
    auto* model = new QStandardItemModel(0, column_count, view);
    const auto root = make_row({root_name, QStringLiteral("0"), QString()});
    model->appendRow(root);
    add_nodes(root.first(), nodes, root.first(), 0);
    view->setModel(model);
    if (former != nullptr) former->deleteLater();
    view->expandAll();
    view->setHeaderHidden(true);
    view->hideColumn(id_column);
    view->hideColumn(parent_column);
}

tree_node current_node(const QTreeView* view) {
    return read_node(view->currentIndex());
}

void add_below_current(QTreeView* view, const QString& path, const QString& name) {
    // The user goes on while the service answers, and may even load the tree anew.
    const QPersistentModelIndex above = view->currentIndex();
    if (!above.isValid()) return;
    const QString parent = read_node(above).id;
    QString args;
    append(args, "name=", name);
    append(args, "&parent=", parent);
    const auto added = read_added(g_http.post_object(path, args));
    if (!added || !above.isValid()) return;
    const auto row = make_row({name, added->id, parent});
    item_of(view, above)->appendRow(row);
    view->expand(row.first()->index());
}

void rename_current(QTreeView* view, const QString& path, const QString& args, const QString& name) {
    const QPersistentModelIndex node = view->currentIndex();
    if (post_count(path, args) && node.isValid()) item_of(view, node)->setText(name);
}

void delete_current(QTreeView* view, const QString& path, const QString& id) {
    const QPersistentModelIndex node = view->currentIndex();
    QString args;
    append(args, "id=", id);
    if (post_count(path, args) && node.isValid()) view->model()->removeRow(node.row(), node.parent());
}
