#include "model/model_menu.h"

#include <QTreeWidget>

#include "model/answers.h"
#include "model/form_body.h"
#include "net/http.h"

namespace {

enum { mode_administration = 1, mode_navigation = 2 };
enum { col_name, col_id, col_action, col_real_level, col_sort, col_show, col_parent, column_count };

constexpr int ordinary_user = 2;

/** Headers of the tree, and the keys of a row as the service sends it, which has no parent. */
const char* const column_words[column_count] = {"name", "id",   "action", "real_level",
                                                "sort", "show", "parent"};

QString text(const QJsonObject& row, int column) {
    return row.value(QLatin1String(column_words[column])).toString();
}

QStringList headers() {
    QStringList words;
    for (const char* word : column_words)
        words.append(QLatin1String(word));
    return words;
}

bool may_see(const QJsonObject& row) {
    return g_http.current_user.type != ordinary_user || g_http.permissions.contains(text(row, col_id));
}

void append_menu(QString& args, const struct_menu& menu) {
    append(args, "name=", menu.name);
    append(args, "&parent=", menu.parent);
    append(args, "&action=", menu.action);
    append(args, "&sort=", menu.sort);
    append(args, "&show=", menu.show);
    append(args, "&real_level=", menu.real_level);
}

} // namespace

model_menu::model_menu(QObject* parent, QTreeWidget* tree_to_fill, int menu_mode)
    : QObject(parent), tree(tree_to_fill), mode(menu_mode) {
    qRegisterMetaType<struct_menu>("struct_menu");
}

void model_menu::get_menu() {
    tree->clear();
    tree->setColumnCount(column_count);
    tree->setHeaderLabels(headers());
    if (mode == mode_navigation) g_http.rights.clear();

    args.clear();
    append(args, "action=", mode == mode_administration ? QStringLiteral("edit") : QStringLiteral("list"));
    const QJsonArray rows = g_http.post_array(QStringLiteral("wms_menu/get_menu"), args);

    const QStringList root = {QStringLiteral("权限结构"), QStringLiteral("0")};
    top = mode == mode_administration ? new QTreeWidgetItem(tree, root) : tree->invisibleRootItem();
    add_rows(rows, top);

    tree->expandAll();
    if (mode == mode_navigation) {
        tree->setHeaderHidden(true);
        for (int i = col_id; i < column_count; ++i)
            tree->setColumnHidden(i, true);
    } else {
        for (int i = 0; i < column_count; ++i)
            tree->resizeColumnToContents(i);
    }
}

/** The one walk of both modes: the navigation leaves out what the user may not see, and takes the rights out.
 */
void model_menu::add_rows(const QJsonArray& rows, QTreeWidgetItem* parent) {
    const QString parent_id = id_above(parent);
    for (const QJsonValue& value : rows) {
        const QJsonObject row = value.toObject();
        if (mode == mode_navigation) {
            if (!may_see(row)) continue;
            if (text(row, col_real_level) == QLatin1String("2")) {
                g_http.rights[parent->text(col_action)].append(text(row, col_action));
                continue;
            }
        }
        QStringList cells;
        for (int i = 0; i < col_parent; ++i)
            cells.append(text(row, i));
        cells.append(parent_id);
        auto* item = new QTreeWidgetItem(parent_id == QLatin1String("0") ? top : parent, cells);
        add_rows(row.value(QLatin1String("child")).toArray(), item);
    }
}

/** The parent id of the rows under an item: in the navigation a number, in the administration a text. */
QString model_menu::id_above(const QTreeWidgetItem* parent) const {
    const QString id = parent->text(col_id);
    return mode == mode_navigation ? QString::number(id.toInt(), 10) : id;
}

QString model_menu::do_add(struct_menu menu) {
    args.clear();
    append_menu(args, menu);
    return QString::fromUtf8(g_http.post_raw(QStringLiteral("wms_menu/do_add"), args));
}

int model_menu::do_edit(struct_menu menu) {
    args.clear();
    append_menu(args, menu);
    append(args, "&id=", menu.id);
    return g_http.post_raw(QStringLiteral("wms_menu/do_edit"), args).toInt(nullptr, 10);
}

bool model_menu::do_delete(QString id) {
    args.clear();
    append(args, "id=", id);
    return post_count(QStringLiteral("wms_menu/do_delete"), args);
}

struct_menu model_menu::read_row(const QTreeWidgetItem* item) {
    struct_menu menu;
    menu.id = item->text(col_id);
    menu.name = item->text(col_name);
    menu.sort = item->text(col_sort);
    menu.action = item->text(col_action);
    menu.show = item->text(col_show).toInt();
    menu.real_level = item->text(col_real_level);
    menu.parent = item->text(col_parent);
    return menu;
}

void model_menu::write_row(QTreeWidgetItem* item, const struct_menu& menu) {
    item->setText(col_name, menu.name);
    item->setText(col_id, menu.id);
    item->setText(col_action, menu.action);
    item->setText(col_real_level, menu.real_level);
    item->setText(col_sort, menu.sort);
    item->setText(col_show, QString::number(menu.show, 10));
    item->setText(col_parent, menu.parent);
}
