#include "model/model_menu.h"

#include <QTreeWidget>

#include "model/form_body.h"
#include "model/struct_menu.h"
#include "net/http.h"

namespace {

constexpr int mode_navigation = 2;
constexpr int ordinary_user = 2;
constexpr int id_column = 1;
constexpr int action_column = 2;

bool may_see(const QJsonObject& row) {
    return g_http.current_user.type != ordinary_user ||
           g_http.permissions.contains(row.value(QLatin1String("id")).toString());
}

} // namespace

model_menu::model_menu(QObject* parent, QTreeWidget* tree_to_fill, int menu_mode)
    : QObject(parent), tree(tree_to_fill), mode(menu_mode) {
    qRegisterMetaType<struct_menu>("struct_menu");
}

void model_menu::get_menu() {
    if (mode != mode_navigation) return;
    tree->clear();
    const QStringList headers = {QStringLiteral("name"),   QStringLiteral("id"),
                                 QStringLiteral("action"), QStringLiteral("real_level"),
                                 QStringLiteral("sort"),   QStringLiteral("show"),
                                 QStringLiteral("parent")};
    tree->setColumnCount(headers.size());
    tree->setHeaderLabels(headers);
    g_http.rights.clear();

    args.clear();
    append(args, "action=", QStringLiteral("list"));
    add_rows(g_http.post_array(QStringLiteral("wms_menu/get_menu"), args), nullptr);

    tree->expandAll();
    tree->setHeaderHidden(true);
    for (int i = id_column; i < headers.size(); ++i)
        tree->setColumnHidden(i, true);
}

void model_menu::add_rows(const QJsonArray& rows, QTreeWidgetItem* parent) {
    const int parent_id = parent != nullptr ? parent->text(id_column).toInt() : 0;
    for (const QJsonValue& value : rows) {
        const QJsonObject row = value.toObject();
        if (!may_see(row)) continue;
        const auto text = [&row](const char* key) { return row.value(QLatin1String(key)).toString(); };
        if (text("real_level") == QLatin1String("2")) {
            g_http.rights[parent != nullptr ? parent->text(action_column) : QString()].append(text("action"));
            continue;
        }
        const QStringList cells = {text("name"),
                                   text("id"),
                                   text("action"),
                                   text("real_level"),
                                   text("sort"),
                                   text("show"),
                                   QString::number(parent_id, 10)};
        auto* item = parent_id != 0 ? new QTreeWidgetItem(parent, cells) : new QTreeWidgetItem(tree, cells);
        add_rows(row.value(QLatin1String("child")).toArray(), item);
    }
}
