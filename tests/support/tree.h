#pragma once
#include <QStringList>
#include <QTest>
#include <QTreeView>
#include <stdexcept>

/** The rows of a tree from the top down, each as "depth name/id/parent". */
inline QStringList tree_lines(const QTreeView* tree, const QModelIndex& above = QModelIndex(),
                              int depth = 0) {
    QStringList lines;
    if (tree->model() == nullptr) return lines;
    for (int row = 0; row < tree->model()->rowCount(above); ++row) {
        const QModelIndex at = tree->model()->index(row, 0, above);
        const auto text = [&at](int column) { return at.siblingAtColumn(column).data().toString(); };
        lines.append(QStringLiteral("%1 %2/%3/%4").arg(QString::number(depth), text(0), text(1), text(2)));
        lines += tree_lines(tree, at, depth + 1);
    }
    return lines;
}

/** The node of that name. */
inline QModelIndex tree_node_named(const QTreeView* tree, const QString& name) {
    const auto found = tree->model()->match(tree->model()->index(0, 0), Qt::DisplayRole, name, 1,
                                            Qt::MatchExactly | Qt::MatchRecursive);
    if (found.isEmpty()) throw std::runtime_error("no node " + name.toStdString());
    return found.first();
}

/** Clicks on the node of that name, scrolled to if need be. */
inline void click_node(QTreeView* tree, const QString& name) {
    tree->scrollTo(tree_node_named(tree, name));
    QTest::mouseClick(tree->viewport(), Qt::LeftButton, Qt::NoModifier,
                      tree->visualRect(tree_node_named(tree, name)).center());
}

/** Clicks twice on the node of that name. */
inline void double_click_node(QTreeView* tree, const QString& name) {
    click_node(tree, name);
    QTest::mouseDClick(tree->viewport(), Qt::LeftButton, Qt::NoModifier,
                       tree->visualRect(tree_node_named(tree, name)).center());
}
