#include "model/model_dept.h"

#include "model/form_body.h"
#include "model/tree_nodes.h"
#include "net/http.h"

namespace {

constexpr int mode_pick = 3;

} // namespace

model_dept::model_dept(QTreeView* tree_to_fill, int tree_mode) : mode(tree_mode), tree(tree_to_fill) {
    qRegisterMetaType<struct_dept>("struct_dept");
}

void model_dept::get_tree() {
    show_tree(tree, mode == mode_pick ? QStringLiteral("【全部】") : QStringLiteral("【部门架构】"),
              g_http.get_array(QStringLiteral("wms_dept/get_dept")));
}

void model_dept::do_add(struct_dept dept) {
    add_below_current(tree, QStringLiteral("wms_dept/do_add"), dept.name);
}

/** The name goes first here. */
void model_dept::do_edit(struct_dept dept) {
    if (dept.id.isEmpty()) return;
    QString args;
    append(args, "name=", dept.name);
    append(args, "&id=", dept.id);
    rename_current(tree, QStringLiteral("wms_dept/do_edit"), args, dept.name);
}

void model_dept::do_delete(QString id) {
    if (!id.isEmpty()) delete_current(tree, QStringLiteral("wms_dept/do_delete"), id);
}
