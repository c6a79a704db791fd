#include "model/model_prodcate.h"

#include <QHash>

#include "model/form_body.h"
#include "model/tree_nodes.h"
#include "net/http.h"

namespace {

QString root_name(int mode) {
    static const QHash<int, QString> names = {{1, QStringLiteral("【货品分类】")},
                                              {3, QStringLiteral("【货品分类】")},
                                              {4, QStringLiteral("【全部】")}};
    return names.value(mode);
}

} // namespace

model_prodcate::model_prodcate(QTreeView* tree_to_fill, int tree_mode) : mode(tree_mode), tree(tree_to_fill) {
    qRegisterMetaType<struct_prodcate>("struct_prodcate");
}

void model_prodcate::get_tree() {
    show_tree(tree, root_name(mode), g_http.get_array(QStringLiteral("wms_prodcate/get_prodcate")));
}

void model_prodcate::do_add(struct_prodcate prodcate) {
    add_below_current(tree, QStringLiteral("wms_prodcate/do_add"), prodcate.name);
}

/** The id goes first here. */
void model_prodcate::do_edit(struct_prodcate prodcate) {
    if (prodcate.id.isEmpty()) return;
    QString args;
    append(args, "id=", prodcate.id);
    append(args, "&name=", prodcate.name);
    rename_current(tree, QStringLiteral("wms_prodcate/do_edit"), args, prodcate.name);
}

void model_prodcate::do_delete(QString id) {
    if (!id.isEmpty()) delete_current(tree, QStringLiteral("wms_prodcate/do_delete"), id);
}
