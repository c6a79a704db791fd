#include "access/tab_user.h"

#include <QCursor>

#include "access/dlg_permission.h"
#include "access/dlg_user_add.h"
#include "model/answers.h"
#include "model/model_user.h"
#include "ui_tab_user.h"
#include "widgets/keys.h"
#include "widgets/list_page.h"
#include "widgets/modes.h"
#include "widgets/rights.h"
#include "widgets/selection.h"
#include "widgets/tips.h"

namespace {

constexpr int type_column = 8;

} // namespace

tab_user::tab_user(QWidget* parent) : QWidget(parent), ui(std::make_unique<Ui::tab_user>()) {
    ui->setupUi(this);
    search = {ui->txt_username, ui->txt_realname, ui->comb_type, ui->comb_state};
    search.fill_boxes();
    page_bar =
        add_page_bar(this, ui->verticalLayout, ui->tablewidget, QStringLiteral("user"), g_rows_of_a_tab);
    menu = make_context_menu<tab_user>(this, ui->tablewidget,
                                       {{QStringLiteral("查询"), &tab_user::on_btn_search_clicked},
                                        {QStringLiteral("添加"), &tab_user::slot_user_to_add},
                                        {QStringLiteral("编辑"), &tab_user::slot_user_to_edit},
                                        {QStringLiteral("删除"), &tab_user::slot_user_to_delete},
                                        {QStringLiteral("分配权限"), &tab_user::slot_user_to_grant}});
    connect_rights();
    enable_by_rights();
}

tab_user::~tab_user() = default;

void tab_user::connect_rights() {
    enable_list(this, *ui, menu.actions);
    enable_with(this, &tab_user::signal_enable_grant, ui->btn_grant, menu.actions[4]);
}

/** Accounts are kept by administrators, whatever the rights say; an ordinary user may only look at them. */
void tab_user::enable_by_rights() {
    if (g_http.current_user.type == user_ordinary) {
        const bool may_search = g_http.rights[QStringLiteral("user")].contains(QStringLiteral("search"));
        if (may_search) on_btn_search_clicked();
        enable(may_search, false);
    } else {
        enable(true, true);
        on_btn_search_clicked();
    }
}

void tab_user::enable(bool to_search, bool to_change) {
    emit signal_enable_search(to_search);
    emit signal_enable_add(to_change);
    emit signal_enable_edit(to_change);
    emit signal_enable_delete(to_change);
    emit signal_enable_grant(to_change);
}

/** An administrator can neither be deleted nor be granted anything. */
void tab_user::enable_by_row() {
    if (g_http.current_user.type != user_administrator) return;
    const int type = cell_text(ui->tablewidget, ui->tablewidget->currentRow(), type_column).toInt();
    if (type != user_administrator && type != user_ordinary) return;
    emit signal_enable_delete(type == user_ordinary);
    emit signal_enable_grant(type == user_ordinary);
}

void tab_user::on_btn_search_clicked() {
    emit signal_send_args(search.args());
    page_bar->page_first();
}

void tab_user::on_btn_add_clicked() {
    slot_user_to_add();
}

void tab_user::on_btn_edit_clicked() {
    slot_user_to_edit();
}

void tab_user::on_btn_delete_clicked() {
    slot_user_to_delete();
}

void tab_user::on_btn_grant_clicked() {
    slot_user_to_grant();
}

void tab_user::on_tablewidget_itemClicked(QTableWidgetItem*) {
    enable_by_row();
}

void tab_user::on_tablewidget_customContextMenuRequested(QPoint) {
    if (!has_current_row(ui->tablewidget)) return;
    enable_by_row();
    menu.menu->popup(QCursor::pos());
}

void tab_user::slot_user_to_add() {
    dlg_user_add dialog(this, mode_add);
    dialog.setWindowTitle(QStringLiteral("添加用户"));
    connect(&dialog, &dlg_user_add::signal_user_do_add, this, &tab_user::slot_user_do_add);
    dialog.exec();
}

void tab_user::slot_user_do_add(struct_user user) {
    model_user model(ui->tablewidget);
    const auto added = read_added(model.do_add(user));
    if (!added) return;
    user.id = added->id;
    user.reg_time = QString::number(added->datetime, 10);
    model.add_row(user);
}

void tab_user::slot_user_to_edit() {
    if (!has_current_row(ui->tablewidget)) return;
    dlg_user_add dialog(this, mode_edit);
    dialog.setWindowTitle(QStringLiteral("编辑用户"));
    connect(this, &tab_user::signal_user_to_edit, &dialog, &dlg_user_add::slot_user_to_edit);
    connect(&dialog, &dlg_user_add::signal_user_do_edit, this, &tab_user::slot_user_do_edit);
    emit signal_user_to_edit(user_in_row());
    dialog.exec();
}

void tab_user::slot_user_do_edit(struct_user user) {
    model_user(ui->tablewidget).do_edit(user);
}

void tab_user::slot_user_to_delete() {
    model_user model(ui->tablewidget);
    for (int row : rows_to_delete(ui->tablewidget, this)) {
        // A row that has moved away meanwhile reads as id 0 and type 0.
        const int id = cell_text(ui->tablewidget, row, 0).toInt();
        if (!may_delete(id, cell_text(ui->tablewidget, row, type_column).toInt())) return;
        if (model.do_delete(id)) ui->tablewidget->removeRow(row);
    }
}

/**
 * The guard of one's own account is as narrow as it looks: it takes a current id of one character and
 * compares that character's code. The service has the last word.
 */
bool tab_user::may_delete(int id, int type) {
    const QString& own_id = g_http.current_user.id;
    if (own_id.size() == 1 && own_id.at(0).unicode() == id) {
        tip_in_list(ui->tablewidget, QStringLiteral("当前登录用户不能删除"));
        return false;
    }
    if (type == user_administrator) tip_in_list(ui->tablewidget, QStringLiteral("本司管理员不能删除"));
    return type != user_administrator;
}

void tab_user::slot_user_to_grant() {
    if (!has_current_row(ui->tablewidget)) return;
    const struct_user row = user_in_row();
    struct_user user;
    user.id = row.id;
    user.type = row.type;
    dlg_permission dialog(this, user);
    dialog.setWindowTitle(QStringLiteral("分配权限"));
    dialog.exec();
}

/** The account in the current row. */
struct_user tab_user::user_in_row() const {
    return read_record(ui->tablewidget, ui->tablewidget->currentRow(), model_user::columns());
}

void tab_user::keyPressEvent(QKeyEvent* event) {
    if (is_return_key(event)) on_btn_search_clicked();
}
