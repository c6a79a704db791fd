#include "master/tab_warehouse.h"

#include <QCursor>

#include "master/dlg_warehouse_add.h"
#include "master/pick_emp.h"
#include "model/answers.h"
#include "model/model_warehouse.h"
#include "ui_tab_warehouse.h"
#include "widgets/fields.h"
#include "widgets/keys.h"
#include "widgets/list_page.h"
#include "widgets/modes.h"
#include "widgets/rights.h"
#include "widgets/selection.h"

tab_warehouse::tab_warehouse(QWidget* parent) : QWidget(parent), ui(std::make_unique<Ui::tab_warehouse>()) {
    ui->setupUi(this);
    connect(ui->tablewidget, &QTableWidget::customContextMenuRequested, this,
            &tab_warehouse::slot_right_menu);
    connect(ui->btn_add, &QPushButton::clicked, this, &tab_warehouse::slot_warehouse_to_add);
    connect(ui->btn_edit, &QPushButton::clicked, this, &tab_warehouse::slot_warehouse_to_edit);
    connect(ui->btn_delete, &QPushButton::clicked, this, &tab_warehouse::slot_warehouse_to_delete);
    ui->txt_keeper->installEventFilter(this);
    page_bar =
        add_page_bar(this, ui->verticalLayout, ui->tablewidget, QStringLiteral("warehouse"), g_rows_of_a_tab);
    menu = make_context_menu<tab_warehouse>(
        this, ui->tablewidget,
        {{QStringLiteral("查询"), &tab_warehouse::on_btn_search_clicked},
         {QStringLiteral("添加"), &tab_warehouse::slot_warehouse_to_add},
         {QStringLiteral("编辑"), &tab_warehouse::slot_warehouse_to_edit},
         {QStringLiteral("删除"), &tab_warehouse::slot_warehouse_to_delete}});
    enable_by_rights();
}

tab_warehouse::~tab_warehouse() = default;

void tab_warehouse::enable_by_rights() {
    enable_list(this, *ui, menu.actions);
    apply_rights(this, QStringLiteral("warehouse"), &tab_warehouse::on_btn_search_clicked,
                 list_rights<tab_warehouse>());
}

/** The keeper in the search record is the one picked last. */
void tab_warehouse::on_btn_search_clicked() {
    search.name = field_text(ui->txt_name);
    search.phone = field_text(ui->txt_phone);
    search.mobile = field_text(ui->txt_mobile);
    emit signal_send_args(model_warehouse::search_args(search));
    page_bar->page_first();
}

bool tab_warehouse::eventFilter(QObject* object, QEvent* event) {
    if (!is_pick(object, event, ui->txt_keeper)) return QWidget::eventFilter(object, event);
    // Not the keeper's own word, unlike in the dialog: kept on purpose.
    pick_emp(this, QStringLiteral("查询选择经办人"));
    return true;
}

void tab_warehouse::slot_emp_selected(struct_emp emp) {
    search.keeper = emp.id;
    ui->txt_keeper->setText(emp.name);
}

void tab_warehouse::slot_warehouse_to_add() {
    dlg_warehouse_add dialog(this, mode_add);
    connect(&dialog, &dlg_warehouse_add::signal_warehouse_do_add, this,
            &tab_warehouse::slot_warehouse_do_add);
    dialog.exec();
}

void tab_warehouse::slot_warehouse_do_add(struct_warehouse warehouse) {
    model_warehouse model(ui->tablewidget);
    if (take_added(warehouse, model.do_add(warehouse))) model.add_row(warehouse);
}

void tab_warehouse::slot_warehouse_to_edit() {
    if (!has_current_row(ui->tablewidget)) return;
    const auto warehouse =
        read_record(ui->tablewidget, ui->tablewidget->currentRow(), model_warehouse::columns());
    dlg_warehouse_add dialog(this, mode_edit);
    dialog.setWindowTitle(QStringLiteral("编辑仓库"));
    connect(this, &tab_warehouse::signal_warehouse_to_edit, &dialog,
            &dlg_warehouse_add::slot_warehouse_to_edit);
    connect(&dialog, &dlg_warehouse_add::signal_warehouse_do_edit, this,
            &tab_warehouse::slot_warehouse_do_edit);
    emit signal_warehouse_to_edit(warehouse);
    dialog.exec();
}

void tab_warehouse::slot_warehouse_do_edit(struct_warehouse warehouse) {
    model_warehouse(ui->tablewidget).do_edit(warehouse);
}

void tab_warehouse::slot_warehouse_to_delete() {
    model_warehouse model(ui->tablewidget);
    delete_rows(ui->tablewidget, this,
                [&](int row) { return model.do_delete(cell_text(ui->tablewidget, row, 0)); });
}

void tab_warehouse::slot_right_menu() {
    menu.menu->popup(QCursor::pos());
}

void tab_warehouse::keyPressEvent(QKeyEvent* event) {
    if (is_return_key(event)) on_btn_search_clicked();
}
