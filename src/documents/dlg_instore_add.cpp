#include "documents/dlg_instore_add.h"

#include <QCursor>

#include "documents/dlg_instore_detail_add.h"
#include "documents/document_print.h"
#include "documents/editor_parts.h"
#include "model/answers.h"
#include "model/model_instore.h"
#include "model/model_instore_detail.h"
#include "model/model_stock_detail.h"
#include "net/http.h"
#include "ui_dlg_instore_add.h"
#include "widgets/fields.h"
#include "widgets/modes.h"
#include "widgets/print_preview.h"
#include "widgets/selection.h"
#include "widgets/tips.h"

namespace {

/** Column of the line's id. */
constexpr int id_column = 0;

/** The stock that a line makes. */
struct_stock stock_of(const struct_instore_detail& line) {
    struct_stock stock;
    stock.product = line.product;
    stock.price = line.price;
    stock.amount = line.amount;
    stock.total = line.total;
    stock.warehouse = line.warehouse;
    stock.remark = line.remark;
    stock.place = line.place;
    return stock;
}

} // namespace

dlg_instore_add::dlg_instore_add(QWidget* parent, int editor_mode, int kind_number)
    : QDialog(parent, Qt::Dialog | Qt::WindowMaximizeButtonHint | Qt::WindowCloseButtonHint),
      ui(std::make_unique<Ui::dlg_instore_add>()),
      mode(editor_mode),
      type(kind_number),
      kind(inbound_kind(kind_number)) {
    ui->setupUi(this);
    set_up_columns(ui->tablewidget, faces(model_instore_detail::columns()));
    for (QLineEdit* field : {ui->txt_operater, ui->txt_company, ui->txt_dept})
        field->installEventFilter(this);
    menu = make_line_menu(ui->tablewidget);
    enable_lines(this, *ui, menu.actions);
    // The record has no kind yet, so this finds none and says nothing: kept on purpose. Whoever may open the
    // editor may do all that there is to do in it.
    apply_line_rights(this, inbound_kind(instore.type));
    apply_mode();
    show_partner_field(*ui, kind);
}

dlg_instore_add::~dlg_instore_add() = default;

/** In neither mode "打印" of the menu does anything: kept on purpose. */
void dlg_instore_add::apply_mode() {
    if (mode == document_view) {
        hide_what_writes(*ui);
        // The table does not open its menu here.
        connect(menu.actions[2], &QAction::triggered, this, &dlg_instore_add::on_btn_print_clicked);
    } else if (mode == document_new) {
        hide_what_saving_brings(*ui, ui->label);
        ui->tablewidget->setContextMenuPolicy(Qt::CustomContextMenu);
        connect(menu.actions[0], &QAction::triggered, this, &dlg_instore_add::on_btn_add_clicked);
        connect(menu.actions[1], &QAction::triggered, this, &dlg_instore_add::slot_instore_detail_to_delete);
    }
}

bool dlg_instore_add::eventFilter(QObject* object, QEvent* event) {
    const bool writes = !calls.under_way() && (mode == document_new || mode == document_edit);
    return (writes && opens_picker(this, *ui, kind, object, event)) || QDialog::eventFilter(object, event);
}

void dlg_instore_add::slot_emp_selected(struct_emp operater) {
    instore.operater = operater.id;
    ui->txt_operater->setText(operater.name);
}

void dlg_instore_add::slot_company_selected(struct_company company) {
    instore.company = company.id;
    ui->txt_company->setText(company.name);
}

void dlg_instore_add::slot_dept_selected(struct_dept dept) {
    instore.dept = dept.id;
    instore.dept_name = dept.name;
    ui->txt_dept->setText(dept.name);
}

void dlg_instore_add::on_btn_add_clicked() {
    slot_instore_detail_to_add();
}

void dlg_instore_add::slot_instore_detail_to_add() {
    if (calls.under_way()) return;
    dlg_instore_detail_add dialog(this, mode_add);
    connect(&dialog, &dlg_instore_detail_add::signal_instore_detail_do_add, this,
            &dlg_instore_add::slot_instore_detail_do_add);
    dialog.exec();
}

void dlg_instore_add::slot_instore_detail_do_add(struct_instore_detail detail) {
    detail.id = g_id_of_a_new_line;
    detail.main_id = instore.id;
    append_record(ui->tablewidget, model_instore_detail::columns(), detail);
}

void dlg_instore_add::slot_instore_detail_to_edit() {
    if (!ui->tablewidget->currentIndex().isValid()) {
        tip_in_list(ui->tablewidget, QStringLiteral("请先选择行"));
        return;
    }
    dlg_instore_detail_add dialog(this, mode_edit);
    dialog.setWindowTitle(QStringLiteral("编辑货品明细"));
    connect(this, &dlg_instore_add::signal_instore_detail_to_edit, &dialog,
            &dlg_instore_detail_add::slot_instore_detail_to_edit);
    connect(&dialog, &dlg_instore_detail_add::signal_instore_detail_do_edit, this,
            &dlg_instore_add::slot_instore_detail_do_edit);
    emit signal_instore_detail_to_edit(line_at(ui->tablewidget->currentRow()));
    dialog.exec();
}

void dlg_instore_add::slot_instore_detail_do_edit(struct_instore_detail detail) {
    patch_record(ui->tablewidget, ui->tablewidget->currentRow(), model_instore_detail::columns(), detail);
}

void dlg_instore_add::on_btn_delete_clicked() {
    slot_instore_detail_to_delete();
}

void dlg_instore_add::slot_instore_detail_to_delete() {
    calls.run([this] {
        delete_rows(ui->tablewidget, this, [this](int row) {
            const QString id = cell_text(ui->tablewidget, row, id_column);
            return id == g_id_of_a_new_line || model_instore_detail().do_delete(id);
        });
    });
}

void dlg_instore_add::on_btn_submit_clicked() {
    calls.run([this] {
        if (lacks_something()) return;
        instore.writer = g_http.current_user.id;
        instore.writer_name = g_http.current_user.realname;
        instore.type = type;
        instore.remark = field_text(ui->txt_remark);
        save();
    });
}

/**
 * Header, then each line with the stock that it makes, then the total. There is no way back: a failure on the
 * way leaves what was done before, and another save begins a second document. All that is kept on purpose.
 */
void dlg_instore_add::save() {
    const QString main_id = mode == document_new ? save_header() : QString();
    double total = 0;
    for (int row = 0; row < ui->tablewidget->rowCount(); ++row) {
        auto line = line_at(row);
        line.main_id = main_id;
        total += line.total;
        if (mode == document_new) save_line(line);
    }
    if (!model_instore(type).update_total(main_id, total)) return;
    emit signal_instore_get_list();
    accept();
}

/** Says the first thing that is missing. */
bool dlg_instore_add::lacks_something() {
    if (fails(instore.operater.isEmpty(), ui->txt_operater, QStringLiteral("请选择经办人"))) return true;
    if (lacks_partner(*ui, kind, instore)) return true;
    if (ui->tablewidget->rowCount() > 0) return false;
    tip_in_list(ui->tablewidget, QStringLiteral("请先添加明细再保存"));
    return true;
}

/** The id that the lines go to; empty when the service refused, which does not stop the save. */
QString dlg_instore_add::save_header() {
    const auto added = read_added(model_instore(type).do_add(instore));
    if (!added) return QString();
    instore.id = added->id;
    return instore.id;
}

/** What the service says of either is not looked at. */
void dlg_instore_add::save_line(const struct_instore_detail& line) {
    model_instore_detail().do_add(line);
    model_stock_detail().do_add(stock_of(line));
}

/** The line as the table shows it: its total is that of the text, with two decimals. */
struct_instore_detail dlg_instore_add::line_at(int row) const {
    return read_trimmed(ui->tablewidget, row, model_instore_detail::columns());
}

void dlg_instore_add::slot_instore_to_edit(struct_instore saved) {
    instore = saved;
    show_header(*ui, instore);
    for (const auto& line : qAsConst(instore.details))
        append_record(ui->tablewidget, model_instore_detail::columns(), line);
    print_text = print_document(QStringLiteral("入库明细"), instore);
}

void dlg_instore_add::slot_set_window_title(QString title) {
    setWindowTitle(title);
}

/** Accepts, and tells no one: nothing was saved. */
void dlg_instore_add::on_btn_cancel_clicked() {
    calls.run([this] { accept(); });
}

/** Of the close box and of Escape. A save that is under way comes to its end first. */
void dlg_instore_add::reject() {
    calls.run([this] { QDialog::reject(); });
}

void dlg_instore_add::on_tablewidget_itemEntered(QTableWidgetItem* item) {
    tip_whole_text(item);
}

void dlg_instore_add::on_btn_print_clicked() {
    show_print_preview(this, printer);
}

void dlg_instore_add::slot_print() {
    print_html(document, printer, print_text);
}

void dlg_instore_add::on_tablewidget_customContextMenuRequested(QPoint) {
    menu.menu->popup(QCursor::pos());
}
