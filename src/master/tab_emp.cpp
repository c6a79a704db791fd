#include "master/tab_emp.h"

#include <QCursor>

#include "master/dlg_emp_add.h"
#include "model/answers.h"
#include "model/model_emp.h"
#include "ui_tab_emp.h"
#include "widgets/fields.h"
#include "widgets/keys.h"
#include "widgets/list_page.h"
#include "widgets/modes.h"
#include "widgets/rights.h"
#include "widgets/selection.h"

tab_emp::tab_emp(QWidget* parent) : QWidget(parent), ui(std::make_unique<Ui::tab_emp>()) {
    ui->setupUi(this);
    connect(ui->tablewidget, &QTableWidget::customContextMenuRequested, this, &tab_emp::slot_right_menu);
    connect(ui->btn_add, &QPushButton::clicked, this, &tab_emp::slot_emp_to_add);
    connect(ui->btn_edit, &QPushButton::clicked, this, &tab_emp::slot_emp_to_edit);
    connect(ui->btn_delete, &QPushButton::clicked, this, &tab_emp::slot_emp_to_delete);
    page_bar =
        add_page_bar(this, ui->verticalLayout, ui->tablewidget, QStringLiteral("emp"), g_rows_of_a_tab);
    menu = make_context_menu<tab_emp>(this, ui->tablewidget,
                                      {{QStringLiteral("查询"), &tab_emp::on_btn_search_clicked},
                                       {QStringLiteral("添加"), &tab_emp::slot_emp_to_add},
                                       {QStringLiteral("编辑"), &tab_emp::slot_emp_to_edit},
                                       {QStringLiteral("删除"), &tab_emp::slot_emp_to_delete}});
    enable_by_rights();
}

tab_emp::~tab_emp() = default;

void tab_emp::enable_by_rights() {
    enable_list(this, *ui, menu.actions);
    apply_rights(this, QStringLiteral("emp"), &tab_emp::on_btn_search_clicked, list_rights<tab_emp>());
}

void tab_emp::on_btn_search_clicked() {
    search.name = field_text(ui->txt_name);
    search.idnum = field_text(ui->txt_idnum);
    search.jobnum = field_text(ui->txt_jobnum);
    search.mobile = field_text(ui->txt_mobile);
    emit signal_send_args(model_emp::search_args(search));
    page_bar->page_first();
}

void tab_emp::slot_emp_to_add() {
    dlg_emp_add dialog(this, mode_add, struct_emp());
    connect(&dialog, &dlg_emp_add::signal_emp_do_add, this, &tab_emp::slot_emp_do_add);
    dialog.exec();
}

void tab_emp::slot_emp_do_add(struct_emp emp) {
    model_emp model(ui->tablewidget);
    if (take_added(emp, model.do_add(emp))) model.add_row(emp);
}

void tab_emp::slot_emp_to_edit() {
    if (!has_current_row(ui->tablewidget)) return;
    const int row = ui->tablewidget->currentRow();
    dlg_emp_add dialog(this, mode_edit, read_record(ui->tablewidget, row, model_emp::columns()));
    dialog.setWindowTitle(QStringLiteral("编辑员工"));
    connect(&dialog, &dlg_emp_add::signal_emp_do_edit, this, &tab_emp::slot_emp_do_edit);
    dialog.exec();
}

void tab_emp::slot_emp_do_edit(struct_emp emp) {
    model_emp(ui->tablewidget).do_edit(emp);
}

void tab_emp::slot_emp_to_delete() {
    model_emp model(ui->tablewidget);
    delete_rows(ui->tablewidget, this,
                [&](int row) { return model.do_delete(cell_text(ui->tablewidget, row, 0).toInt()); });
}

void tab_emp::slot_right_menu() {
    menu.menu->popup(QCursor::pos());
}

void tab_emp::on_tablewidget_itemEntered(QTableWidgetItem* item) {
    item->setToolTip(item->text());
}

void tab_emp::keyPressEvent(QKeyEvent* event) {
    if (is_return_key(event)) on_btn_search_clicked();
}
