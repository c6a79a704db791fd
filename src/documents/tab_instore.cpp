#include "documents/tab_instore.h"

#include <QCursor>

#include "documents/dlg_instore_add.h"
#include "documents/document_list.h"
#include "documents/pickers.h"
#include "model/list_table.h"
#include "model/model_instore.h"
#include "ui_tab_instore.h"
#include "widgets/date_range.h"
#include "widgets/fields.h"
#include "widgets/keys.h"
#include "widgets/list_page.h"
#include "widgets/print_preview.h"
#include "widgets/selection.h"
#include "widgets/tips.h"

tab_instore::tab_instore(QWidget* parent, int type)
    : QWidget(parent), ui(std::make_unique<Ui::tab_instore>()), kind(inbound_kind(type)), search{} {
    ui->setupUi(this);
    search.type = type;
    connect(ui->btn_view, &QPushButton::clicked, this, &tab_instore::slot_instore_to_view);
    connect(ui->btn_add, &QPushButton::clicked, this, &tab_instore::slot_instore_to_add);
    connect(ui->tablewidget, &QTableWidget::customContextMenuRequested, this, &tab_instore::slot_right_menu);
    show_partner_criterion(*ui, kind);
    slot_text_filter(true);
    set_up_date_range(ui->date_start, ui->date_end);
    menu = make_context_menu<tab_instore>(this, ui->tablewidget,
                                          {{QStringLiteral("查询"), &tab_instore::on_btn_search_clicked},
                                           {QStringLiteral("查看"), &tab_instore::slot_instore_to_view},
                                           {QStringLiteral("添加"), &tab_instore::slot_instore_to_add},
                                           {QStringLiteral("删除"), &tab_instore::slot_instore_to_delete},
                                           {QStringLiteral("打印"), &tab_instore::on_btn_print_clicked}});
    page_bar =
        add_page_bar(this, ui->verticalLayout, ui->tablewidget, QStringLiteral("instore"), g_rows_of_a_tab);
    enable_by_rights();
}

tab_instore::~tab_instore() = default;

/** "查询" in the menu has no wiring of its own, unlike that of the outbound list. */
void tab_instore::enable_by_rights() {
    enable_document_list(this, *ui, menu.actions);
    apply_rights(this, kind.page, &tab_instore::on_btn_search_clicked, document_rights<tab_instore>());
}

void tab_instore::slot_text_filter(bool boolean) {
    watch_fields(this, {ui->txt_company, ui->txt_operater, ui->txt_writer, ui->txt_dept}, boolean);
}

bool tab_instore::eventFilter(QObject* object, QEvent* event) {
    if (is_pick(object, event, ui->txt_company))
        pick_company(this, kind.company_type, kind.picker_title, &tab_instore::slot_company_selected);
    else if (is_pick(object, event, ui->txt_operater))
        pick_operater(this, &tab_instore::slot_operater_selected);
    else if (is_pick(object, event, ui->txt_writer))
        pick_writer(this, &tab_instore::slot_writer_selected);
    else if (is_pick(object, event, ui->txt_dept))
        pick_dept(this, kind.picker_title, &tab_instore::slot_dept_selected);
    else
        return QWidget::eventFilter(object, event);
    return true;
}

void tab_instore::slot_company_selected(struct_company company) {
    take_criterion(search.company, ui->txt_company, company.name.isEmpty(), company.id, company.name);
}

void tab_instore::slot_operater_selected(struct_emp operater) {
    take_criterion(search.operater, ui->txt_operater, operater.name.isEmpty(), operater.id, operater.name);
}

void tab_instore::slot_writer_selected(struct_user writer) {
    take_criterion(search.writer, ui->txt_writer, writer.realname.isEmpty(), writer.id, writer.realname);
}

/** The tree's root has the id "0" and is searched for as it is. */
void tab_instore::slot_dept_selected(struct_dept dept) {
    take_criterion(search.dept, ui->txt_dept, dept.id.isEmpty(), dept.id, dept.name);
    search.dept_name = dept.name;
}

void tab_instore::on_btn_search_clicked() {
    search.date_start = first_second_of(ui->date_start);
    search.date_end = last_second_of(ui->date_end);
    search.sn = field_text(ui->txt_sn);
    search.remark = field_text(ui->txt_remark);
    emit signal_send_args(model_instore::search_args(search));
    page_bar->page_first();
}

void tab_instore::slot_instore_get_list() {
    on_btn_search_clicked();
}

void tab_instore::keyPressEvent(QKeyEvent* event) {
    if (is_return_key(event)) on_btn_search_clicked();
}

void tab_instore::slot_right_menu() {
    menu.menu->popup(QCursor::pos());
}

void tab_instore::on_tablewidget_itemEntered(QTableWidgetItem* item) {
    tip_whole_text(item);
}

/** A fresh record with what the current row shows, hidden columns included. */
struct_instore tab_instore::current_record() const {
    const auto text = [this](int column) {
        return cell_text(ui->tablewidget, ui->tablewidget->currentRow(), column);
    };
    struct_instore instore{};
    instore.id = text(0);
    instore.sn = text(1);
    if (kind.partner == counterparty::company) {
        instore.company = text(2);
        instore.company_name = text(5);
    } else if (kind.partner == counterparty::dept) {
        instore.dept = text(2);
        instore.dept_name = text(5);
    }
    instore.operater = text(3);
    instore.writer = text(4);
    instore.operater_name = text(6);
    instore.writer_name = text(7);
    instore.total = text(8).toDouble();
    instore.remark = text(9);
    return instore;
}

void tab_instore::open_current(int mode) {
    if (!has_current_row(ui->tablewidget)) return;
    struct_instore instore = current_record();
    instore.details = model_instore(ui->tablewidget, search.type).get_detail(instore.id);
    dlg_instore_add dialog(this, mode, search.type);
    connect(this, &tab_instore::signal_instore_to_edit, &dialog, &dlg_instore_add::slot_instore_to_edit);
    connect(&dialog, &dlg_instore_add::signal_instore_get_list, this, &tab_instore::slot_instore_get_list);
    dialog.setWindowTitle(title_of_saved(kind, mode));
    emit signal_instore_to_edit(instore);
    dialog.exec();
}

void tab_instore::slot_instore_to_view() {
    open_current(document_view);
}

void tab_instore::on_tablewidget_cellDoubleClicked(int, int) {
    open_current(document_view);
}

void tab_instore::slot_instore_to_edit() {
    open_current(document_edit);
}

void tab_instore::slot_instore_to_add() {
    dlg_instore_add dialog(this, document_new, search.type);
    connect(&dialog, &dlg_instore_add::signal_instore_get_list, this, &tab_instore::slot_instore_get_list);
    connect(this, &tab_instore::signal_set_window_title, &dialog, &dlg_instore_add::slot_set_window_title);
    emit signal_set_window_title(title_of_new(kind));
    dialog.exec();
}

void tab_instore::slot_instore_to_delete() {
    model_instore model(ui->tablewidget, search.type);
    delete_rows(ui->tablewidget, this,
                [&](int row) { return model.do_delete(cell_text(ui->tablewidget, row, 0)); });
}

// The form wires the button by this name; a connection besides would ask twice.
void tab_instore::on_btn_delete_clicked() {
    slot_instore_to_delete();
}

void tab_instore::on_btn_print_clicked() {
    show_print_preview(this, printer);
}

void tab_instore::slot_print() {
    print_html(document, printer, page_bar->html);
}
