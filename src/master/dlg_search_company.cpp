#include "master/dlg_search_company.h"

#include "model/model_company.h"
#include "ui_dlg_search_company.h"
#include "widgets/fields.h"
#include "widgets/keys.h"
#include "widgets/list_page.h"
#include "widgets/selection.h"

namespace {

constexpr int mode_no_all = 4;

} // namespace

dlg_search_company::dlg_search_company(QWidget* parent, int type, int picking_mode)
    : QDialog(parent, Qt::Dialog | Qt::WindowMaximizeButtonHint | Qt::WindowCloseButtonHint),
      ui(std::make_unique<Ui::dlg_search_company>()),
      mode(picking_mode) {
    ui->setupUi(this);
    company.type = type;
    if (mode == mode_no_all) {
        ui->tablewidget->setToolTip(QStringLiteral("双击选择"));
        ui->btn_all->hide();
    }
    page_bar =
        add_page_bar(this, ui->layout_table, ui->tablewidget, QStringLiteral("company"), g_rows_of_a_picker);
    emit signal_send_args(model_company::search_args(company));
    page_bar->page_first();
}

dlg_search_company::~dlg_search_company() = default;

void dlg_search_company::on_btn_search_clicked() {
    company.name = field_text(ui->txt_name);
    company.bank = field_text(ui->txt_bank);
    company.account = field_text(ui->txt_account);
    company.address = field_text(ui->txt_address);
    company.remark = field_text(ui->txt_remark);
    emit signal_send_args(model_company::search_args(company));
    page_bar->page_first();
}

void dlg_search_company::on_btn_choose_clicked() {
    if (!has_current_row(ui->tablewidget)) return;
    on_tablewidget_doubleClicked(ui->tablewidget->currentIndex());
}

void dlg_search_company::on_tablewidget_doubleClicked(QModelIndex) {
    const int row = ui->tablewidget->currentRow();
    hand_over(cell_text(ui->tablewidget, row, 0), cell_text(ui->tablewidget, row, 1));
}

void dlg_search_company::on_btn_all_clicked() {
    hand_over(QString(), QString());
}

void dlg_search_company::on_btn_close_clicked() {
    reject();
}

void dlg_search_company::keyPressEvent(QKeyEvent* event) {
    if (is_return_key(event)) on_btn_search_clicked();
}

/** The record keeps the search words in its other fields: a receiver takes these two alone. */
void dlg_search_company::hand_over(const QString& id, const QString& name) {
    company.id = id;
    company.name = name;
    emit signal_company_selected(company);
    accept();
}
