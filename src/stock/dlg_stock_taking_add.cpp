#include "stock/dlg_stock_taking_add.h"

#include <QCloseEvent>
#include <QCursor>
#include <QKeyEvent>
#include <QMessageBox>

#include "documents/editor_parts.h"
#include "model/answers.h"
#include "model/model_stock_taking_detail.h"
#include "net/http.h"
#include "stock/dlg_stock_taking_detail_add.h"
#include "stock/taking_print.h"
#include "ui_dlg_stock_taking_add.h"
#include "widgets/modes.h"
#include "widgets/print_preview.h"
#include "widgets/selection.h"
#include "widgets/tips.h"

namespace {

constexpr int column_id = 0;
constexpr int column_changed = 15;
constexpr int column_locked_id = 16;

void set_up_lines(QTableWidget* table) {
    set_up_columns(table, faces(model_stock_taking_detail::columns()));
}

} // namespace

dlg_stock_taking_add::dlg_stock_taking_add(QWidget* parent, int editor_mode)
    : QDialog(parent, Qt::Dialog | Qt::WindowMaximizeButtonHint | Qt::WindowCloseButtonHint),
      ui(std::make_unique<Ui::dlg_stock_taking_add>()),
      mode(editor_mode) {
    ui->setupUi(this);
    ui->txt_operater->installEventFilter(this);
    set_up_lines(ui->tablewidget);
    ui->tablewidget->setContextMenuPolicy(Qt::CustomContextMenu);
    menu = make_line_menu(ui->tablewidget);
    connect(ui->tablewidget, &QTableWidget::customContextMenuRequested, this,
            &dlg_stock_taking_add::slot_right_menu);
    enable_lines(this, *ui, menu.actions);
    apply_line_rights(this, QStringLiteral("stock_taking"));
    apply_mode();
}

dlg_stock_taking_add::~dlg_stock_taking_add() = default;

/** "打印" of the menu does nothing in any mode, and nothing of the menu in a saved document: kept on purpose.
 */
void dlg_stock_taking_add::apply_mode() {
    if (mode == document_new) {
        setWindowTitle(QStringLiteral("添加盘点"));
        hide_what_saving_brings(*ui, ui->label_2);
        ui->btn_audit->hide();
        connect(menu.actions[0], &QAction::triggered, this,
                &dlg_stock_taking_add::slot_stock_taking_detail_to_add);
        connect(menu.actions[1], &QAction::triggered, this,
                &dlg_stock_taking_add::slot_stock_taking_detail_to_delete);
    } else if (mode == document_view) {
        hide_what_writes(*ui);
        ui->btn_audit->hide();
        ui->txt_writer->setReadOnly(true);
    }
}

void dlg_stock_taking_add::slot_set_current_user() {
    stock_taking.writer = g_http.current_user.id;
    stock_taking.writer_name = g_http.current_user.realname;
}

bool dlg_stock_taking_add::eventFilter(QObject* object, QEvent* event) {
    const bool writes = !calls.under_way() && (mode == document_new || mode == document_edit);
    if (!writes || !is_pick(object, event, ui->txt_operater)) return QDialog::eventFilter(object, event);
    pick_operater(this, &dlg_stock_taking_add::slot_emp_selected);
    return true;
}

void dlg_stock_taking_add::slot_stock_taking_to_edit(struct_stock_taking saved) {
    stock_taking = saved;
    ui->txt_sn->setText(saved.sn);
    ui->txt_operater->setText(saved.operater_name);
    ui->txt_writer->setText(saved.writer_name);
    ui->txt_remark->setText(saved.remark);
    print_text = print_taking(saved);
    for (const auto& line : saved.details)
        append_record(ui->tablewidget, model_stock_taking_detail::columns(), line);
    set_up_lines(ui->tablewidget);
}

void dlg_stock_taking_add::slot_emp_selected(struct_emp operater) {
    stock_taking.operater = operater.id;
    ui->txt_operater->setText(operater.name);
}

void dlg_stock_taking_add::slot_stock_taking_detail_do_edit(struct_stock_taking_detail detail) {
    patch_record(ui->tablewidget, ui->tablewidget->currentRow(), model_stock_taking_detail::columns(), detail,
                 column_id, column_changed);
}

/** The whole row is claimed, without a quantity. The answer is kept as it came, a refusal too: the service
 * says so when the line is saved. */
void dlg_stock_taking_add::slot_stock_taking_detail_do_add(struct_stock_taking_detail detail) {
    calls.run([&] {
        detail.id = g_id_of_a_new_line;
        const int row = ui->tablewidget->rowCount();
        append_record(ui->tablewidget, model_stock_taking_detail::columns(), detail);
        struct_stock claim;
        claim.id = detail.stock_id;
        set_cell(ui->tablewidget, row, column_locked_id, stock_detail.lock_stock(claim, lock_for_taking));
        set_up_lines(ui->tablewidget);
    });
}

void dlg_stock_taking_add::give_claims_back() {
    if (mode != document_new) return;
    for (int row = 0; row < ui->tablewidget->rowCount(); ++row)
        stock_detail.unlock_stock(cell_text(ui->tablewidget, row, column_locked_id), lock_for_taking);
}

void dlg_stock_taking_add::on_btn_cancel_clicked() {
    calls.run([this] {
        give_claims_back();
        reject();
    });
}

void dlg_stock_taking_add::closeEvent(QCloseEvent* event) {
    const bool closes = calls.run([this, event] {
        give_claims_back();
        QDialog::closeEvent(event);
    });
    if (!closes) event->ignore();
}

void dlg_stock_taking_add::slot_right_menu() {
    menu.menu->popup(QCursor::pos());
}

void dlg_stock_taking_add::slot_stock_taking_detail_to_add() {
    if (calls.under_way()) return;
    dlg_stock_taking_detail_add dialog(this, mode_add);
    connect(&dialog, &dlg_stock_taking_detail_add::signal_stock_taking_detail_do_add, this,
            &dlg_stock_taking_add::slot_stock_taking_detail_do_add);
    dialog.exec();
}

void dlg_stock_taking_add::slot_stock_taking_detail_to_edit() {
    if (!ui->tablewidget->currentIndex().isValid()) {
        tip_in_list(ui->tablewidget, QStringLiteral("请先选择行"));
        return;
    }
    const auto line =
        read_record(ui->tablewidget, ui->tablewidget->currentRow(), model_stock_taking_detail::columns());
    dlg_stock_taking_detail_add dialog(this, mode_edit);
    dialog.setWindowTitle(QStringLiteral("编辑货品明细"));
    connect(&dialog, &dlg_stock_taking_detail_add::signal_stock_taking_detail_do_edit, this,
            &dlg_stock_taking_add::slot_stock_taking_detail_do_edit);
    connect(this, &dlg_stock_taking_add::signal_stock_taking_detail_to_edit, &dialog,
            &dlg_stock_taking_detail_add::slot_stock_taking_detail_to_edit);
    emit signal_stock_taking_detail_to_edit(line);
    dialog.exec();
}

/** A row goes whatever the service says of its claim; one without an id stays, and nothing goes out. */
void dlg_stock_taking_add::slot_stock_taking_detail_to_delete() {
    calls.run([this] {
        delete_rows(ui->tablewidget, this, [this](int row) {
            if (cell_text(ui->tablewidget, row, column_id).isEmpty()) return false;
            stock_detail.unlock_stock(cell_text(ui->tablewidget, row, column_locked_id), lock_for_taking);
            return true;
        });
    });
}

void dlg_stock_taking_add::on_btn_add_clicked() {
    slot_stock_taking_detail_to_add();
}

void dlg_stock_taking_add::on_btn_delete_clicked() {
    slot_stock_taking_detail_to_delete();
}

void dlg_stock_taking_add::on_btn_submit_clicked() {
    calls.run([this] {
        if (lacks_something()) return;
        stock_taking.remark = field_text(ui->txt_remark);
        save();
    });
}

/** Says the first thing that is missing. */
bool dlg_stock_taking_add::lacks_something() {
    if (fails(stock_taking.operater.isEmpty(), ui->txt_operater, QStringLiteral("请选择经办人"))) return true;
    if (ui->tablewidget->rowCount() > 0) return false;
    tip_in_list(ui->tablewidget, QStringLiteral("请先添加明细再保存"));
    return true;
}

/** The lines of a header that the service refuses go out all the same, for no document, and so do the sums.
 * When the sums are refused the dialog stays as it is, and another save begins a second document. All that is
 * kept on purpose. */
void dlg_stock_taking_add::save() {
    struct_stock_taking sums;
    if (mode == document_new) sums.id = save_header();
    model_stock_taking_detail lines;
    for (int row = 0; row < ui->tablewidget->rowCount(); ++row) {
        auto line = read_trimmed(ui->tablewidget, row, model_stock_taking_detail::columns());
        line.main_id = sums.id;
        sums.profitloss_amount += line.profitloss_amount;
        sums.profitloss_total += line.profitloss_total;
        if (mode == document_new) lines.do_add(line);
    }
    if (!model.update_profitloss(sums)) return;
    emit signal_stock_taking_get_list();
    accept();
}

/** Gives the id of the new document; none when it is refused. */
QString dlg_stock_taking_add::save_header() {
    const auto added = read_added(model.do_add(stock_taking));
    if (!added) return QString();
    stock_taking.id = added->id;
    return stock_taking.id;
}

void dlg_stock_taking_add::on_btn_audit_clicked() {
    if (calls.under_way()) return;
    if (ui->tablewidget->rowCount() == 0) {
        tip_in_list(ui->tablewidget, QStringLiteral("没有盘点明细可以审核"));
        return;
    }
    if (QMessageBox::question(this, QStringLiteral("确认审核"), QStringLiteral("确认审核吗？"),
                              QMessageBox::Yes | QMessageBox::No) != QMessageBox::Yes)
        return;
    model_stock_taking().do_audit(stock_taking.id);
    emit signal_stock_taking_get_list();
    close();
}

void dlg_stock_taking_add::keyPressEvent(QKeyEvent* event) {
    if (event->matches(QKeySequence::Cancel))
        close();
    else
        QDialog::keyPressEvent(event);
}

void dlg_stock_taking_add::on_tablewidget_itemEntered(QTableWidgetItem* item) {
    tip_whole_text(item);
}

void dlg_stock_taking_add::on_btn_print_clicked() {
    show_print_preview(this, printer);
}

void dlg_stock_taking_add::slot_print() {
    print_html(document, printer, print_text);
}
