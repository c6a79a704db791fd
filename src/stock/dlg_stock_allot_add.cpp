#include "stock/dlg_stock_allot_add.h"

#include <QCloseEvent>
#include <QCursor>
#include <QKeyEvent>

#include "documents/document_list.h"
#include "documents/editor_parts.h"
#include "model/answers.h"
#include "model/model_stock_allot.h"
#include "model/model_warehouse.h"
#include "net/http.h"
#include "stock/allot_print.h"
#include "stock/dlg_stock_allot_detail_add.h"
#include "ui_dlg_stock_allot_add.h"
#include "widgets/print_preview.h"
#include "widgets/selection.h"
#include "widgets/tips.h"

namespace {

constexpr int column_locked_id = 13;

/** The options ask for a warehouse, and none is proposed. */
constexpr int options_ask = 3;
constexpr int without_default = 2;

} // namespace

dlg_stock_allot_add::dlg_stock_allot_add(QWidget* parent, int editor_mode)
    : QDialog(parent, Qt::Dialog | Qt::WindowMaximizeButtonHint | Qt::WindowCloseButtonHint),
      ui(std::make_unique<Ui::dlg_stock_allot_add>()),
      mode(editor_mode) {
    ui->setupUi(this);
    set_up_columns(ui->tablewidget, faces(model_stock_allot_detail::columns()));
    model_warehouse(options_ask).get_option(ui->comb_warehouse_in, without_default);
    menu = make_line_menu(ui->tablewidget);
    connect(ui->tablewidget, &QTableWidget::customContextMenuRequested, this,
            &dlg_stock_allot_add::slot_right_menu);
    enable_lines(this, *ui, menu.actions);
    apply_line_rights(this, QStringLiteral("stock_allot"));
    apply_mode();
}

dlg_stock_allot_add::~dlg_stock_allot_add() = default;

void dlg_stock_allot_add::apply_mode() {
    if (mode == document_new)
        write_new();
    else if (mode == document_view)
        view_saved();
}

/** The stock of each warehouse stands with the sources alone. */
void dlg_stock_allot_add::write_new() {
    setWindowTitle(QStringLiteral("添加调拨"));
    model_warehouse(options_ask).get_option_with_stat(ui->comb_warehouse_out);
    hide_what_saving_brings(*ui, ui->label_warehouse_out);
    ui->txt_operater->setPlaceholderText(QStringLiteral("点击选择"));
    ui->txt_operater->installEventFilter(this);
    ui->tablewidget->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(ui->btn_add, &QPushButton::clicked, this, &dlg_stock_allot_add::slot_stock_allot_detail_to_add);
    connect(ui->btn_delete, &QPushButton::clicked, this,
            &dlg_stock_allot_add::slot_stock_allot_detail_to_delete);
    connect(menu.actions[0], &QAction::triggered, this, &dlg_stock_allot_add::slot_stock_allot_detail_to_add);
    connect(menu.actions[1], &QAction::triggered, this,
            &dlg_stock_allot_add::slot_stock_allot_detail_to_delete);
}

/** The table opens no menu in this mode, though its entry to print is connected; the button prints. */
void dlg_stock_allot_add::view_saved() {
    model_warehouse(options_ask).get_option(ui->comb_warehouse_out, without_default);
    hide_what_writes(*ui);
    ui->comb_warehouse_out->setEnabled(false);
    ui->comb_warehouse_in->setEnabled(false);
    ui->txt_writer->setReadOnly(true);
    connect(menu.actions[2], &QAction::triggered, this, &dlg_stock_allot_add::on_btn_print_clicked);
}

void dlg_stock_allot_add::slot_set_current_user() {
    stock_allot.writer = g_http.current_user.id;
}

bool dlg_stock_allot_add::eventFilter(QObject* object, QEvent* event) {
    if (calls.under_way() || !is_pick(object, event, ui->txt_operater))
        return QDialog::eventFilter(object, event);
    pick_operater(this, &dlg_stock_allot_add::slot_emp_selected);
    return true;
}

/** The field then says "【全部】", as in the lists, and a save asks for an operator. */
void dlg_stock_allot_add::slot_emp_selected(struct_emp operater) {
    take_criterion(stock_allot.operater, ui->txt_operater, operater.name.isEmpty(), operater.id,
                   operater.name);
}

/** The source may be changed later on: lines that were added stay as they are. */
void dlg_stock_allot_add::slot_stock_allot_detail_to_add() {
    if (calls.under_way()) return;
    const QString warehouse = ui->comb_warehouse_out->currentData().toString();
    if (fails(warehouse.isEmpty(), ui->comb_warehouse_out, QStringLiteral("请先选择调出仓库"))) return;
    dlg_stock_allot_detail_add dialog(this, mode_add);
    connect(&dialog, &dlg_stock_allot_detail_add::signal_stock_allot_detail_do_add, this,
            &dlg_stock_allot_add::slot_stock_allot_detail_do_add);
    connect(this, &dlg_stock_allot_add::signal_set_warehouse_out, &dialog,
            &dlg_stock_allot_detail_add::slot_set_warehouse_out);
    emit signal_set_warehouse_out(warehouse);
    dialog.exec();
}

/** The answer is kept as it came, a refusal too. */
void dlg_stock_allot_add::slot_stock_allot_detail_do_add(struct_stock_allot_detail detail) {
    calls.run([&] {
        detail.id = g_id_of_a_new_line;
        detail.main_id = g_id_of_a_new_line;
        const int row = ui->tablewidget->rowCount();
        append_record(ui->tablewidget, model_stock_allot_detail::columns(), detail);
        struct_stock claim;
        claim.id = detail.stock_id;
        claim.amount = detail.amount;
        claim.total = detail.amount * detail.price;
        set_cell(ui->tablewidget, row, column_locked_id, stock_detail.lock_stock(claim, lock_for_allot));
    });
}

void dlg_stock_allot_add::slot_stock_allot_detail_to_edit() {}

void dlg_stock_allot_add::slot_stock_allot_detail_do_edit(struct_stock_allot_detail) {}

/** A row whose claim the service does not take back stays, so that line and claim remain paired. */
void dlg_stock_allot_add::slot_stock_allot_detail_to_delete() {
    calls.run([this] {
        delete_rows(ui->tablewidget, this, [this](int row) {
            return stock_detail.unlock_stock(cell_text(ui->tablewidget, row, column_locked_id),
                                             lock_for_allot);
        });
    });
}

void dlg_stock_allot_add::on_btn_cancel_clicked() {
    calls.run([this] {
        for (int row = 0; mode == document_new && row < ui->tablewidget->rowCount(); ++row)
            stock_detail.unlock_stock(cell_text(ui->tablewidget, row, column_locked_id), lock_for_allot);
        reject();
    });
}

void dlg_stock_allot_add::closeEvent(QCloseEvent* event) {
    on_btn_cancel_clicked();
    event->setAccepted(!isVisible());
}

void dlg_stock_allot_add::keyPressEvent(QKeyEvent* event) {
    if (event->matches(QKeySequence::Cancel))
        close();
    else
        QDialog::keyPressEvent(event);
}

/** Says the first thing that is missing; the warehouses come before the operator. */
bool dlg_stock_allot_add::lacks_something(const QString& warehouse_out, const QString& warehouse_in) {
    if (fails(warehouse_out.isEmpty(), ui->comb_warehouse_out, QStringLiteral("请选择调出仓")) ||
        fails(warehouse_in.isEmpty(), ui->comb_warehouse_in, QStringLiteral("请选择调入仓")) ||
        fails(warehouse_out == warehouse_in, ui->comb_warehouse_in,
              QStringLiteral("调出仓和调入仓不能相同")) ||
        fails(stock_allot.operater.isEmpty(), ui->txt_operater, QStringLiteral("请选择经办人")))
        return true;
    if (ui->tablewidget->rowCount() > 0) return false;
    tip_in_list(ui->tablewidget, QStringLiteral("请先添加明细再保存"));
    return true;
}

void dlg_stock_allot_add::on_btn_submit_clicked() {
    calls.run([this] {
        const QString warehouse_out = ui->comb_warehouse_out->currentData().toString();
        const QString warehouse_in = ui->comb_warehouse_in->currentData().toString();
        if (lacks_something(warehouse_out, warehouse_in)) return;
        stock_allot.warehouse_out = warehouse_out;
        stock_allot.warehouse_in = warehouse_in;
        stock_allot.remark = field_text(ui->txt_remark);
        save();
    });
}

/** No call closes the transfer, and the dialog closes whatever the answers were. The claims go over to the
 * service with their lines. */
void dlg_stock_allot_add::save() {
    const QString main_id = mode == document_new ? save_header() : QString();
    for (int row = 0; row < ui->tablewidget->rowCount(); ++row) {
        auto line = read_trimmed(ui->tablewidget, row, model_stock_allot_detail::columns());
        line.main_id = main_id;
        if (mode == document_new) lines.do_add(line);
    }
    emit signal_stock_allot_get_list();
    accept();
}

/** Gives the id of the new transfer; none when it is refused, and its lines go out all the same. */
QString dlg_stock_allot_add::save_header() {
    const auto added = read_added(model_stock_allot().do_add(stock_allot));
    if (!added) return QString();
    stock_allot.id = added->id;
    return stock_allot.id;
}

void dlg_stock_allot_add::slot_stock_allot_to_edit(struct_stock_allot saved) {
    ui->txt_sn->setText(saved.sn);
    ui->txt_writer->setText(saved.writer_name);
    ui->txt_remark->setText(saved.remark);
    ui->txt_operater->setText(saved.operater_name);
    ui->comb_warehouse_out->setCurrentIndex(ui->comb_warehouse_out->findData(saved.warehouse_out));
    ui->comb_warehouse_in->setCurrentIndex(ui->comb_warehouse_in->findData(saved.warehouse_in));
    stock_allot = saved;
    print_text = print_allot(stock_allot);
    for (struct_stock_allot_detail line : stock_allot.details) {
        line.changed = 0;
        append_record(ui->tablewidget, model_stock_allot_detail::columns(), line);
    }
}

void dlg_stock_allot_add::slot_right_menu() {
    menu.menu->popup(QCursor::pos());
}

void dlg_stock_allot_add::on_tablewidget_itemEntered(QTableWidgetItem* item) {
    tip_whole_text(item);
}

void dlg_stock_allot_add::on_btn_print_clicked() {
    show_print_preview(this, printer);
}

void dlg_stock_allot_add::slot_print() {
    print_html(document, printer, print_text);
}
