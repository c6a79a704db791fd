#include "stock/tab_stock_allot.h"

#include <QCursor>

#include "documents/document_list.h"
#include "documents/pickers.h"
#include "documents/stock_search.h"
#include "model/model_stock_allot.h"
#include "stock/dlg_stock_allot_add.h"
#include "ui_tab_stock_allot.h"
#include "widgets/keys.h"
#include "widgets/list_page.h"
#include "widgets/print_preview.h"
#include "widgets/selection.h"
#include "widgets/tips.h"

tab_stock_allot::tab_stock_allot(QWidget* parent)
    : QWidget(parent), ui(std::make_unique<Ui::tab_stock_allot>()) {
    ui->setupUi(this);
    connect(ui->btn_view, &QPushButton::clicked, this, &tab_stock_allot::slot_stock_allot_to_view);
    connect(ui->btn_add, &QPushButton::clicked, this, &tab_stock_allot::slot_stock_allot_to_add);
    connect(ui->btn_delete, &QPushButton::clicked, this, &tab_stock_allot::slot_stock_allot_to_delete);
    connect(ui->tablewidget, &QTableWidget::customContextMenuRequested, this,
            &tab_stock_allot::slot_right_menu);
    slot_text_filter(true);
    set_up_date_range(ui->date_start, ui->date_end);
    offer_warehouses(ui->comb_warehouse_out);
    offer_warehouses(ui->comb_warehouse_in);
    menu = make_context_menu<tab_stock_allot>(
        this, ui->tablewidget,
        {{QStringLiteral("查询"), &tab_stock_allot::slot_stock_allot_get_list},
         {QStringLiteral("查看"), &tab_stock_allot::slot_stock_allot_to_view},
         {QStringLiteral("添加"), &tab_stock_allot::slot_stock_allot_to_add},
         {QStringLiteral("删除"), &tab_stock_allot::slot_stock_allot_to_delete},
         {QStringLiteral("打印"), &tab_stock_allot::on_btn_print_clicked}});
    page_bar = add_page_bar(this, ui->verticalLayout, ui->tablewidget, QStringLiteral("stock_allot"),
                            g_rows_of_a_tab);
    enable_by_rights();
}

tab_stock_allot::~tab_stock_allot() = default;

void tab_stock_allot::enable_by_rights() {
    enable_document_list(this, *ui, menu.actions);
    apply_rights(this, QStringLiteral("stock_allot"), &tab_stock_allot::slot_stock_allot_get_list,
                 document_rights<tab_stock_allot>());
}

void tab_stock_allot::slot_stock_allot_get_list() {
    search.date_start = first_second_of(ui->date_start);
    search.date_end = last_second_of(ui->date_end);
    search.sn = field_text(ui->txt_sn);
    search.remark = field_text(ui->txt_main_remark);
    search.warehouse_in = ui->comb_warehouse_in->currentData().toString();
    search.warehouse_out = ui->comb_warehouse_out->currentData().toString();
    emit signal_send_args(model_stock_allot::search_args(search));
    page_bar->page_first();
}

void tab_stock_allot::on_btn_search_clicked() {
    slot_stock_allot_get_list();
}

void tab_stock_allot::slot_emp_selected(struct_emp operater) {
    take_criterion(search.operater, ui->txt_operater, operater.name.isEmpty(), operater.id, operater.name);
}

void tab_stock_allot::slot_writer_selected(struct_user writer) {
    take_criterion(search.writer, ui->txt_writer, writer.realname.isEmpty(), writer.id, writer.realname);
}

void tab_stock_allot::slot_right_menu() {
    menu.menu->popup(QCursor::pos());
}

void tab_stock_allot::slot_stock_allot_to_add() {
    dlg_stock_allot_add dialog(this, document_new);
    connect(&dialog, &dlg_stock_allot_add::signal_stock_allot_get_list, this,
            &tab_stock_allot::slot_stock_allot_get_list);
    connect(this, &tab_stock_allot::signal_set_current_user, &dialog,
            &dlg_stock_allot_add::slot_set_current_user);
    emit signal_set_current_user();
    dialog.exec();
}

void tab_stock_allot::slot_stock_allot_to_view() {
    open_current(document_view);
}

void tab_stock_allot::slot_stock_allot_to_edit() {
    open_current(document_edit);
}

void tab_stock_allot::on_tablewidget_doubleClicked(QModelIndex) {
    open_current(document_view);
}

/** The title is one word, without the name of the document. */
void tab_stock_allot::open_current(int mode) {
    if (!has_current_row(ui->tablewidget)) return;
    auto record = read_record(ui->tablewidget, ui->tablewidget->currentRow(), model_stock_allot::columns());
    record.details = model_stock_allot().get_detail(record.id);
    dlg_stock_allot_add dialog(this, mode);
    connect(this, &tab_stock_allot::signal_stock_allot_to_edit, &dialog,
            &dlg_stock_allot_add::slot_stock_allot_to_edit);
    connect(&dialog, &dlg_stock_allot_add::signal_stock_allot_get_list, this,
            &tab_stock_allot::slot_stock_allot_get_list);
    dialog.setWindowTitle(mode == document_view ? QStringLiteral("查看") : QStringLiteral("编辑"));
    emit signal_stock_allot_to_edit(record);
    dialog.exec();
}

void tab_stock_allot::slot_stock_allot_to_delete() {
    model_stock_allot model;
    delete_rows(ui->tablewidget, this,
                [&](int row) { return model.do_delete(cell_text(ui->tablewidget, row, 0)); });
}

void tab_stock_allot::on_tablewidget_itemEntered(QTableWidgetItem* item) {
    tip_whole_text(item);
}

void tab_stock_allot::slot_text_filter(bool boolean) {
    watch_fields(this, {ui->txt_operater, ui->txt_writer}, boolean);
}

void tab_stock_allot::on_btn_print_clicked() {
    show_print_preview(this, printer);
}

void tab_stock_allot::slot_print() {
    print_html(document, printer, page_bar->html);
}

bool tab_stock_allot::eventFilter(QObject* object, QEvent* event) {
    if (is_pick(object, event, ui->txt_operater))
        pick_operater(this, &tab_stock_allot::slot_emp_selected);
    else if (is_pick(object, event, ui->txt_writer))
        pick_writer(this, &tab_stock_allot::slot_writer_selected);
    else
        return QWidget::eventFilter(object, event);
    return true;
}

void tab_stock_allot::keyPressEvent(QKeyEvent* event) {
    if (is_return_key(event)) slot_stock_allot_get_list();
}
