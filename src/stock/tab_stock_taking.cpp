#include "stock/tab_stock_taking.h"

#include <QCursor>

#include "documents/document_list.h"
#include "documents/pickers.h"
#include "model/list_table.h"
#include "model/model_stock_taking.h"
#include "stock/dlg_stock_taking_add.h"
#include "ui_tab_stock_taking.h"
#include "widgets/date_range.h"
#include "widgets/fields.h"
#include "widgets/keys.h"
#include "widgets/list_page.h"
#include "widgets/print_preview.h"
#include "widgets/selection.h"
#include "widgets/tips.h"

namespace {

/** The window title of the editor of a saved stocktaking. */
QString title_of_saved(int mode) {
    if (mode == document_view) return QStringLiteral("查看盘点");
    return mode == document_audit ? QStringLiteral("审核盘点") : QStringLiteral("编辑盘点");
}

} // namespace

tab_stock_taking::tab_stock_taking(QWidget* parent)
    : QWidget(parent), ui(std::make_unique<Ui::tab_stock_taking>()) {
    ui->setupUi(this);
    connect(ui->btn_view, &QPushButton::clicked, this, &tab_stock_taking::slot_taking_to_view);
    connect(ui->btn_add, &QPushButton::clicked, this, &tab_stock_taking::slot_taking_to_add);
    connect(ui->btn_delete, &QPushButton::clicked, this, &tab_stock_taking::slot_taking_to_delete);
    connect(ui->tablewidget, &QTableWidget::customContextMenuRequested, this,
            &tab_stock_taking::slot_right_menu);
    slot_text_filter(true);
    set_up_date_range(ui->date_start, ui->date_end);
    menu = make_context_menu<tab_stock_taking>(
        this, ui->tablewidget,
        {{QStringLiteral("查询"), &tab_stock_taking::on_btn_search_clicked},
         {QStringLiteral("查看"), &tab_stock_taking::slot_taking_to_view},
         {QStringLiteral("添加"), &tab_stock_taking::slot_taking_to_add},
         {QStringLiteral("删除"), &tab_stock_taking::slot_taking_to_delete},
         {QStringLiteral("打印"), &tab_stock_taking::on_btn_print_clicked}});
    page_bar = add_page_bar(this, ui->verticalLayout, ui->tablewidget, QStringLiteral("stock_taking"),
                            g_rows_of_a_tab);
    enable_by_rights();
}

tab_stock_taking::~tab_stock_taking() = default;

/** "查询" in the menu follows no right. */
void tab_stock_taking::enable_by_rights() {
    enable_document_list(this, *ui, menu.actions);
    apply_rights(this, QStringLiteral("stock_taking"), &tab_stock_taking::on_btn_search_clicked,
                 document_rights<tab_stock_taking>());
}

void tab_stock_taking::slot_taking_to_add() {
    dlg_stock_taking_add dialog(this, document_new);
    connect(&dialog, &dlg_stock_taking_add::signal_stock_taking_get_list, this,
            &tab_stock_taking::slot_stock_taking_get_list);
    connect(this, &tab_stock_taking::signal_set_current_user, &dialog,
            &dlg_stock_taking_add::slot_set_current_user);
    emit signal_set_current_user();
    dialog.exec();
}

void tab_stock_taking::slot_taking_to_edit() {
    open_current(document_edit);
}

void tab_stock_taking::slot_taking_to_delete() {
    model_stock_taking model(ui->tablewidget);
    delete_rows(ui->tablewidget, this,
                [&](int row) { return model.do_delete(cell_text(ui->tablewidget, row, 0).trimmed()); });
}

void tab_stock_taking::slot_right_menu() {
    menu.menu->popup(QCursor::pos());
}

void tab_stock_taking::slot_taking_to_view() {
    open_current(document_view);
}

void tab_stock_taking::slot_taking_to_audit() {
    open_current(document_audit);
}

void tab_stock_taking::on_tablewidget_doubleClicked(QModelIndex) {
    open_current(document_view);
}

/** A fresh record with what the current row shows, hidden columns included. */
struct_stock_taking tab_stock_taking::current_record() const {
    const auto text = [this](int column) {
        return cell_text(ui->tablewidget, ui->tablewidget->currentRow(), column);
    };
    struct_stock_taking taking;
    taking.id = text(0);
    taking.sn = text(1);
    taking.operater = text(2);
    taking.operater_name = text(3);
    taking.writer = text(4);
    taking.writer_name = text(5);
    taking.profitloss_amount = text(6).toInt();
    taking.profitloss_total = text(7).toDouble();
    taking.remark = text(8);
    return taking;
}

void tab_stock_taking::open_current(int mode) {
    if (!has_current_row(ui->tablewidget)) return;
    struct_stock_taking taking = current_record();
    taking.details = model_stock_taking(ui->tablewidget).get_detail(taking.id);
    dlg_stock_taking_add dialog(this, mode);
    connect(this, &tab_stock_taking::signal_stock_taking_to_edit, &dialog,
            &dlg_stock_taking_add::slot_stock_taking_to_edit);
    connect(&dialog, &dlg_stock_taking_add::signal_stock_taking_get_list, this,
            &tab_stock_taking::slot_stock_taking_get_list);
    dialog.setWindowTitle(title_of_saved(mode));
    emit signal_stock_taking_to_edit(taking);
    dialog.exec();
}

void tab_stock_taking::on_tablewidget_itemEntered(QTableWidgetItem* item) {
    tip_whole_text(item);
}

void tab_stock_taking::on_btn_search_clicked() {
    search.date_start = first_second_of(ui->date_start);
    search.date_end = last_second_of(ui->date_end);
    search.sn = field_text(ui->txt_sn);
    search.remark = field_text(ui->txt_main_remark);
    emit signal_send_args(model_stock_taking::search_args(search));
    page_bar->page_first();
}

void tab_stock_taking::slot_text_filter(bool boolean) {
    watch_fields(this, {ui->txt_operater, ui->txt_writer}, boolean);
}

/** The writer's picker has the title of the operator's: kept on purpose. */
bool tab_stock_taking::eventFilter(QObject* object, QEvent* event) {
    if (is_pick(object, event, ui->txt_operater))
        pick_operater(this, &tab_stock_taking::slot_emp_selected);
    else if (is_pick(object, event, ui->txt_writer))
        pick_writer(this, &tab_stock_taking::slot_writer_selected, QStringLiteral("查询选择经办人"));
    else
        return QWidget::eventFilter(object, event);
    return true;
}

void tab_stock_taking::on_btn_print_clicked() {
    show_print_preview(this, printer);
}

void tab_stock_taking::slot_print() {
    print_html(document, printer, page_bar->html);
}

void tab_stock_taking::slot_emp_selected(struct_emp operater) {
    take_criterion(search.operater, ui->txt_operater, operater.name.isEmpty(), operater.id, operater.name);
}

void tab_stock_taking::slot_writer_selected(struct_user writer) {
    take_criterion(search.writer, ui->txt_writer, writer.realname.isEmpty(), writer.id, writer.realname);
}

void tab_stock_taking::slot_stock_taking_get_list() {
    on_btn_search_clicked();
}

void tab_stock_taking::keyPressEvent(QKeyEvent* event) {
    if (is_return_key(event)) on_btn_search_clicked();
}
