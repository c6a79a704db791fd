#include "documents/tab_outstore.h"

#include <QCursor>

#include "documents/dlg_outstore_add.h"
#include "documents/document_list.h"
#include "documents/pickers.h"
#include "model/list_table.h"
#include "model/model_outstore.h"
#include "ui_tab_outstore.h"
#include "widgets/date_range.h"
#include "widgets/fields.h"
#include "widgets/keys.h"
#include "widgets/list_page.h"
#include "widgets/print_preview.h"
#include "widgets/selection.h"
#include "widgets/tips.h"

tab_outstore::tab_outstore(QWidget* parent, int type)
    : QWidget(parent), ui(std::make_unique<Ui::tab_outstore>()), kind(outbound_kind(type)), outstore{} {
    ui->setupUi(this);
    outstore.type = type;
    connect(ui->btn_search, &QPushButton::clicked, this, &tab_outstore::slot_outstore_get_list);
    connect(ui->btn_view, &QPushButton::clicked, this, &tab_outstore::slot_outstore_to_view);
    connect(ui->btn_add, &QPushButton::clicked, this, &tab_outstore::slot_outstore_to_add);
    connect(ui->btn_delete, &QPushButton::clicked, this, &tab_outstore::slot_outstore_to_delete);
    connect(ui->tablewidget, &QTableWidget::customContextMenuRequested, this, &tab_outstore::slot_right_menu);
    show_partner_criterion(*ui, kind);
    slot_text_filter(true);
    set_up_date_range(ui->date_start, ui->date_end);
    menu = make_context_menu<tab_outstore>(this, ui->tablewidget,
                                           {{QStringLiteral("查询"), &tab_outstore::slot_outstore_get_list},
                                            {QStringLiteral("查看"), &tab_outstore::slot_outstore_to_view},
                                            {QStringLiteral("添加"), &tab_outstore::slot_outstore_to_add},
                                            {QStringLiteral("删除"), &tab_outstore::slot_outstore_to_delete},
                                            {QStringLiteral("打印"), &tab_outstore::on_btn_print_clicked}});
    page_bar =
        add_page_bar(this, ui->verticalLayout, ui->tablewidget, QStringLiteral("outstore"), g_rows_of_a_tab);
    enable_by_rights();
}

tab_outstore::~tab_outstore() = default;

void tab_outstore::enable_by_rights() {
    enable_document_list(this, *ui, menu.actions);
    connect(this, &tab_outstore::signal_enable_search, menu.actions[0], &QAction::setEnabled);
    apply_rights(this, kind.page, &tab_outstore::slot_outstore_get_list, document_rights<tab_outstore>());
}

void tab_outstore::slot_outstore_get_list() {
    outstore.date_start = first_second_of(ui->date_start);
    outstore.date_end = last_second_of(ui->date_end);
    outstore.sn = field_text(ui->txt_sn);
    outstore.remark = field_text(ui->txt_main_remark);
    emit signal_send_args(model_outstore::search_args(outstore));
    page_bar->page_first();
}

void tab_outstore::slot_dept_selected(struct_dept dept) {
    take_criterion(outstore.dept, ui->txt_dept, dept.id.isEmpty(), dept.id, dept.name);
    outstore.dept_name = dept.name;
}

void tab_outstore::slot_emp_selected(struct_emp operater) {
    take_criterion(outstore.operater, ui->txt_operater, operater.name.isEmpty(), operater.id, operater.name);
}

void tab_outstore::slot_writer_selected(struct_user writer) {
    take_criterion(outstore.writer, ui->txt_writer, writer.realname.isEmpty(), writer.id, writer.realname);
}

void tab_outstore::slot_company_selected(struct_company company) {
    take_criterion(outstore.company, ui->txt_company, company.name.isEmpty(), company.id, company.name);
}

void tab_outstore::slot_right_menu() {
    menu.menu->popup(QCursor::pos());
}

void tab_outstore::slot_outstore_to_add() {
    dlg_outstore_add dialog(this, document_new, outstore.type);
    connect(&dialog, &dlg_outstore_add::signal_outstore_get_list, this,
            &tab_outstore::slot_outstore_get_list);
    connect(this, &tab_outstore::signal_set_window_title, &dialog, &dlg_outstore_add::slot_set_window_title);
    emit signal_set_window_title(title_of_new(kind));
    dialog.exec();
}

void tab_outstore::slot_outstore_to_edit() {
    open_current(document_edit);
}

void tab_outstore::slot_outstore_to_delete() {
    model_outstore model(ui->tablewidget, outstore.type);
    delete_rows(ui->tablewidget, this,
                [&](int row) { return model.do_delete(cell_text(ui->tablewidget, row, 0)); });
}

void tab_outstore::slot_outstore_to_view() {
    open_current(document_view);
}

void tab_outstore::on_tablewidget_doubleClicked(QModelIndex) {
    open_current(document_view);
}

void tab_outstore::read_current_row() {
    const auto text = [this](int column) {
        return cell_text(ui->tablewidget, ui->tablewidget->currentRow(), column);
    };
    outstore.id = text(0);
    outstore.sn = text(1);
    outstore.operater_name = text(3);
    outstore.writer_name = text(4);
    outstore.total = text(5).toDouble();
    if (kind.partner == counterparty::company) {
        outstore.company_name = text(2);
        outstore.company = text(7);
    } else if (kind.partner == counterparty::dept) {
        outstore.dept_name = text(2);
        outstore.dept = text(7);
    }
    outstore.operater = text(8);
    outstore.writer = text(9);
    outstore.remark = text(6);
}

void tab_outstore::open_current(int mode) {
    if (!has_current_row(ui->tablewidget)) return;
    read_current_row();
    outstore.details = model_outstore(ui->tablewidget, outstore.type).get_detail(outstore.id);
    dlg_outstore_add dialog(this, mode, outstore.type);
    connect(this, &tab_outstore::signal_outstore_to_edit, &dialog, &dlg_outstore_add::slot_outstore_to_edit);
    connect(&dialog, &dlg_outstore_add::signal_outstore_get_list, this,
            &tab_outstore::slot_outstore_get_list);
    dialog.setWindowTitle(title_of_saved(kind, mode));
    emit signal_outstore_to_edit(outstore);
    dialog.exec();
}

void tab_outstore::on_tablewidget_itemEntered(QTableWidgetItem* item) {
    tip_whole_text(item);
}

void tab_outstore::slot_text_filter(bool boolean) {
    watch_fields(this, {ui->txt_company, ui->txt_operater, ui->txt_writer, ui->txt_dept}, boolean);
}

void tab_outstore::on_btn_print_clicked() {
    show_print_preview(this, printer);
}

void tab_outstore::slot_print() {
    print_html(document, printer, page_bar->html);
}

bool tab_outstore::eventFilter(QObject* object, QEvent* event) {
    if (is_pick(object, event, ui->txt_operater))
        pick_operater(this, &tab_outstore::slot_emp_selected);
    else if (is_pick(object, event, ui->txt_writer))
        pick_writer(this, &tab_outstore::slot_writer_selected);
    else if (is_pick(object, event, ui->txt_company))
        pick_company(this, kind.company_type, kind.picker_title, &tab_outstore::slot_company_selected);
    else if (is_pick(object, event, ui->txt_dept))
        pick_dept(this, kind.picker_title, &tab_outstore::slot_dept_selected);
    else
        return QWidget::eventFilter(object, event);
    return true;
}

void tab_outstore::keyPressEvent(QKeyEvent* event) {
    if (is_return_key(event)) slot_outstore_get_list();
}
