#include "access/dlg_search_user.h"

#include "model/model_user.h"
#include "ui_dlg_search_user.h"
#include "widgets/keys.h"
#include "widgets/list_page.h"
#include "widgets/selection.h"

dlg_search_user::dlg_search_user(QWidget* parent)
    : QDialog(parent, Qt::Dialog | Qt::WindowMaximizeButtonHint | Qt::WindowCloseButtonHint),
      ui(std::make_unique<Ui::dlg_search_user>()) {
    ui->setupUi(this);
    search = {ui->txt_username, ui->txt_realname, ui->comb_type, ui->comb_state};
    search.fill_boxes();
    page_bar =
        add_page_bar(this, ui->layout_table, ui->tablewidget, QStringLiteral("user"), g_rows_of_a_picker);
    page_bar->page_first();
}

dlg_search_user::~dlg_search_user() = default;

void dlg_search_user::on_btn_search_clicked() {
    emit signal_send_args(search.args());
    page_bar->page_first();
}

void dlg_search_user::on_btn_choose_clicked() {
    if (!has_current_row(ui->tablewidget)) return;
    on_tablewidget_doubleClicked(ui->tablewidget->currentIndex());
}

void dlg_search_user::on_tablewidget_doubleClicked(QModelIndex) {
    hand_over(read_record(ui->tablewidget, ui->tablewidget->currentRow(), model_user::columns()));
}

void dlg_search_user::on_btn_all_clicked() {
    hand_over(struct_user());
}

void dlg_search_user::on_btn_close_clicked() {
    reject();
}

void dlg_search_user::keyPressEvent(QKeyEvent* event) {
    if (is_return_key(event)) on_btn_search_clicked();
}

void dlg_search_user::hand_over(const struct_user& user) {
    emit signal_user_selected(user);
    accept();
}
