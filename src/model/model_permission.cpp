#include "model/model_permission.h"

#include <QTreeWidget>

#include "model/answers.h"
#include "model/form_body.h"
#include "net/http.h"

namespace {

enum { mode_one_root = 1, mode_flat = 2 };

constexpr int id_column = 1;

struct child_states {
    int all = 0;
    int partly = 0;
    int checked = 0;
};

child_states count_children(const QTreeWidgetItem* item) {
    child_states counted;
    counted.all = item->childCount();
    for (int i = 0; i < counted.all; ++i) {
        const Qt::CheckState state = item->child(i)->checkState(0);
        if (state == Qt::PartiallyChecked) ++counted.partly;
        if (state == Qt::Checked) ++counted.checked;
    }
    return counted;
}

/** Marks the rows between none and all, from the top down, whose grants the service keeps flat. */
void fix_partial(QTreeWidgetItem* item) {
    const child_states below = count_children(item);
    if (below.all == 0) return;
    if (below.partly > 0 || (below.checked > 0 && below.checked < below.all))
        for (QTreeWidgetItem* each = item; each != nullptr; each = each->parent())
            each->setCheckState(0, Qt::PartiallyChecked);
    for (int i = 0; i < below.all; ++i)
        fix_partial(item->child(i));
}

} // namespace

model_permission::model_permission(QObject* parent, QTreeWidget* tree_to_fill, struct_user edited,
                                   int tree_mode)
    : QObject(parent), tree(tree_to_fill), mode(tree_mode), user(edited) {}

model_permission::model_permission(QObject* parent, QTreeWidget* tree_to_fill, struct_user edited)
    : model_permission(parent, tree_to_fill, edited, mode_flat) {}

void model_permission::get_permission(QString user_id) {
    args.clear();
    append(args, "user=", user_id);
    const QJsonArray rows = g_http.post_array(QStringLiteral("wms_permission/get_permission"), args);
    for (const QJsonValue& value : rows)
        granted.append(value.toObject().value(QLatin1String("menu")).toString());
    granted.removeDuplicates();
}

void model_permission::get_permission_tree() {
    const QStringList headers = {
        QStringLiteral("name"), QStringLiteral("id"),   QStringLiteral("action"),    QStringLiteral("parent"),
        QStringLiteral("sort"), QStringLiteral("show"), QStringLiteral("real_level")};
    tree->setColumnCount(headers.size());
    tree->setHeaderLabels(headers);
    const QJsonArray rows = g_http.get_array(QStringLiteral("wms_permission/get_permission_tree"));

    tree->blockSignals(true);
    const QString top_id = QStringLiteral("0");
    QTreeWidgetItem* top = tree->invisibleRootItem();
    if (mode == mode_one_root) {
        top = new QTreeWidgetItem(tree, {QStringLiteral("权限结构"), top_id});
        top->setCheckState(0, Qt::Unchecked);
    }
    add_rows(rows, top, top_id);
    for (int i = 0; i < tree->topLevelItemCount(); ++i)
        fix_partial(tree->topLevelItem(i));
    tree->blockSignals(false);

    // To 7, one more than there are.
    for (int i = id_column; i <= headers.size(); ++i)
        tree->setColumnHidden(i, true);
    tree->setHeaderHidden(true);
}

void model_permission::add_rows(const QJsonArray& rows, QTreeWidgetItem* parent, const QString& parent_id) {
    for (const QJsonValue& value : rows) {
        const QJsonObject row = value.toObject();
        const auto text = [&row](const char* key) { return row.value(QLatin1String(key)).toString(); };
        const QString id = text("id");
        // The parent's id goes in as a character code, on purpose; nobody reads it.
        const QString parent_cell = QChar(ushort(parent_id.toInt()));
        auto* item = new QTreeWidgetItem(parent, {text("name"), id, text("action"), parent_cell, text("sort"),
                                                  text("show"), text("real_level")});
        item->setCheckState(0, granted.contains(id) ? Qt::Checked : Qt::Unchecked);
        add_rows(row.value(QLatin1String("child")).toArray(), item, id);
    }
}

bool model_permission::save(const QString& path, const QString& menu_id) {
    args.clear();
    append(args, "user=", user.id);
    append(args, "&menu=", menu_id);
    return post_count(path, args);
}

bool model_permission::set_checked(QString menu_id) {
    return save(QStringLiteral("wms_permission/set_checked"), menu_id);
}

bool model_permission::set_unchecked(QString menu_id) {
    return save(QStringLiteral("wms_permission/set_unchecked"), menu_id);
}

/** Grants first, always, also what it then revokes: the order is kept. */
void model_permission::apply_down(QTreeWidgetItem* item) {
    const QString id = item->text(id_column);
    if (!set_checked(id)) return;
    const Qt::CheckState above = item->parent()->checkState(0);
    if (above == Qt::Checked) {
        if (set_checked(id)) item->setCheckState(0, Qt::Checked);
    } else if (above == Qt::Unchecked) {
        if (set_unchecked(id)) item->setCheckState(0, Qt::Unchecked);
    }
    for (int i = 0; i < item->childCount(); ++i)
        apply_down(item->child(i));
}

void model_permission::apply_up(QTreeWidgetItem* item) {
    const child_states below = count_children(item);
    const QString id = item->text(id_column);
    if (below.partly == 0 && below.checked == 0) {
        if (set_unchecked(id)) item->setCheckState(0, Qt::Unchecked);
    } else {
        const bool whole = below.checked == below.all;
        if (set_checked(id)) item->setCheckState(0, whole ? Qt::Checked : Qt::PartiallyChecked);
    }
    if (item->parent() != nullptr) apply_up(item->parent());
}
