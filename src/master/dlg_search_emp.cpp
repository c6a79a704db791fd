#include "master/dlg_search_emp.h"

#include <QCursor>

#include "model/model_emp.h"
#include "ui_dlg_search_emp.h"
#include "widgets/fields.h"
#include "widgets/list_page.h"
#include "widgets/selection.h"

dlg_search_emp::dlg_search_emp(QWidget* parent)
    : QDialog(parent, Qt::Dialog | Qt::WindowMaximizeButtonHint | Qt::WindowCloseButtonHint),
      ui(std::make_unique<Ui::dlg_search_emp>()) {
    ui->setupUi(this);
    page_bar =
        add_page_bar(this, ui->layout_table, ui->tablewidget, QStringLiteral("emp"), g_rows_of_a_picker);
    menu =
        make_context_menu<dlg_search_emp>(this, ui->tablewidget,
                                          {{QStringLiteral("查询"), &dlg_search_emp::on_btn_search_clicked},
                                           {QStringLiteral("全部"), &dlg_search_emp::on_btn_all_clicked}});
    page_bar->page_first();
}

dlg_search_emp::~dlg_search_emp() = default;

void dlg_search_emp::on_btn_search_clicked() {
    emp.name = field_text(ui->txt_name);
    emp.idnum = field_text(ui->txt_idnum);
    emp.jobnum = field_text(ui->txt_jobnum);
    emp.mobile = field_text(ui->txt_mobile);
    emit signal_send_args(model_emp::search_args(emp));
    page_bar->page_first();
}

void dlg_search_emp::on_btn_choose_clicked() {
    if (!has_current_row(ui->tablewidget)) return;
    const int row = ui->tablewidget->currentRow();
    // One character with the number's low 8 bits as its code: kept on purpose, receivers know it.
    const QChar id(cell_text(ui->tablewidget, row, 0).toInt() & 0xff);
    hand_over(id, cell_text(ui->tablewidget, row, 1));
}

void dlg_search_emp::on_tablewidget_doubleClicked(QModelIndex) {
    const int row = ui->tablewidget->currentRow();
    hand_over(cell_text(ui->tablewidget, row, 0), cell_text(ui->tablewidget, row, 1));
}

void dlg_search_emp::on_btn_all_clicked() {
    hand_over(QString(), QString());
}

void dlg_search_emp::on_btn_close_clicked() {
    reject();
}

void dlg_search_emp::on_tablewidget_customContextMenuRequested(QPoint) {
    menu.menu->popup(QCursor::pos());
}

/** The record keeps the search words in its other fields: a receiver takes these two alone. */
void dlg_search_emp::hand_over(const QString& id, const QString& name) {
    emp.id = id;
    emp.name = name;
    emit signal_emp_selected(emp);
    accept();
}
