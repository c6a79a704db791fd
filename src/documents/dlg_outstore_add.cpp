#include "documents/dlg_outstore_add.h"

#include <QCloseEvent>
#include <QCursor>
#include <QKeyEvent>

#include "documents/dlg_outstore_detail_add.h"
#include "documents/document_print.h"
#include "documents/editor_parts.h"
#include "model/answers.h"
#include "model/model_outstore.h"
#include "model/model_outstore_detail.h"
#include "net/http.h"
#include "ui_dlg_outstore_add.h"
#include "widgets/fields.h"
#include "widgets/modes.h"
#include "widgets/print_preview.h"
#include "widgets/selection.h"
#include "widgets/tips.h"

namespace {

constexpr int column_product = 1;
constexpr int column_changed = 15;
constexpr int column_locked_id = 17;

} // namespace

dlg_outstore_add::dlg_outstore_add(QWidget* parent, int editor_mode, int kind_number)
    : QDialog(parent, Qt::Dialog | Qt::WindowMaximizeButtonHint | Qt::WindowCloseButtonHint),
      ui(std::make_unique<Ui::dlg_outstore_add>()),
      mode(editor_mode),
      type(kind_number),
      kind(outbound_kind(kind_number)) {
    ui->setupUi(this);
    set_up_columns(ui->tablewidget, faces(model_outstore_detail::columns()));
    for (QLineEdit* field : {ui->txt_operater, ui->txt_company, ui->txt_dept})
        field->installEventFilter(this);
    for (QLineEdit* field : {ui->txt_operater, ui->txt_company, ui->txt_sn, ui->txt_writer, ui->txt_dept})
        field->setReadOnly(true);
    ui->tablewidget->setMouseTracking(true);
    menu = make_line_menu(ui->tablewidget);
    enable_lines(this, *ui, menu.actions);
    // The record has no kind yet, so this finds none and says nothing: kept on purpose. Whoever may open the
    // editor may do all that there is to do in it.
    apply_line_rights(this, outbound_kind(outstore.type));
    apply_mode();
    show_partner_field(*ui, kind);
}

dlg_outstore_add::~dlg_outstore_add() = default;

/** In neither mode "打印" of the menu does anything: kept on purpose. */
void dlg_outstore_add::apply_mode() {
    if (mode == document_view) {
        hide_what_writes(*ui);
        // The table opens no menu in this mode; the button prints.
        connect(menu.actions[2], &QAction::triggered, this, &dlg_outstore_add::on_btn_print_clicked);
    } else if (mode == document_new) {
        hide_what_saving_brings(*ui, ui->label_4);
        ui->tablewidget->setContextMenuPolicy(Qt::CustomContextMenu);
        connect(menu.actions[0], &QAction::triggered, this, &dlg_outstore_add::on_btn_add_clicked);
        connect(menu.actions[1], &QAction::triggered, this,
                &dlg_outstore_add::slot_outstore_detail_to_delete);
    }
}

bool dlg_outstore_add::eventFilter(QObject* object, QEvent* event) {
    const bool writes = !calls.under_way() && (mode == document_new || mode == document_edit);
    return (writes && opens_picker(this, *ui, kind, object, event)) || QDialog::eventFilter(object, event);
}

void dlg_outstore_add::slot_emp_selected(struct_emp operater) {
    outstore.operater = operater.id;
    ui->txt_operater->setText(operater.name);
}

void dlg_outstore_add::slot_dept_selected(struct_dept dept) {
    outstore.dept = dept.id;
    outstore.dept_name = dept.name;
    ui->txt_dept->setText(dept.name);
}

void dlg_outstore_add::slot_company_selected(struct_company client) {
    outstore.company = client.id;
    ui->txt_company->setText(client.name);
}

void dlg_outstore_add::on_btn_add_clicked() {
    slot_outstore_detail_to_add();
}

void dlg_outstore_add::slot_outstore_detail_to_add() {
    if (calls.under_way()) return;
    dlg_outstore_detail_add dialog(this, mode_add);
    connect(&dialog, &dlg_outstore_detail_add::signal_outstore_detail_do_add, this,
            &dlg_outstore_add::slot_outstore_detail_do_add);
    dialog.exec();
}

/** The answer is kept as it came, a refusal too: the service says so when the line is saved. */
void dlg_outstore_add::slot_outstore_detail_do_add(struct_outstore_detail detail) {
    calls.run([&] {
        detail.id = g_id_of_a_new_line;
        detail.main_id = outstore.id;
        const int row = ui->tablewidget->rowCount();
        append_record(ui->tablewidget, model_outstore_detail::columns(), detail);
        struct_stock claim;
        claim.id = detail.stock_id;
        claim.amount = detail.amount;
        claim.total = detail.amount * detail.price;
        set_cell(ui->tablewidget, row, column_locked_id, stock_detail.lock_stock(claim, lock_for_outstore));
    });
}

void dlg_outstore_add::slot_outstore_detail_to_edit() {
    if (!ui->tablewidget->currentIndex().isValid()) {
        tip_in_list(ui->tablewidget, QStringLiteral("请先选择行"));
        return;
    }
    const auto line =
        read_record(ui->tablewidget, ui->tablewidget->currentRow(), model_outstore_detail::columns());
    dlg_outstore_detail_add dialog(this, mode_edit);
    dialog.setWindowTitle(QStringLiteral("编辑出库明细"));
    connect(this, &dlg_outstore_add::signal_outstore_detail_to_edit, &dialog,
            &dlg_outstore_detail_add::slot_outstore_detail_to_edit);
    connect(&dialog, &dlg_outstore_detail_add::signal_outstore_detail_do_edit, this,
            &dlg_outstore_add::slot_outstore_detail_do_edit);
    emit signal_outstore_detail_to_edit(line);
    dialog.exec();
}

void dlg_outstore_add::slot_outstore_detail_do_edit(struct_outstore_detail detail) {
    patch_record(ui->tablewidget, ui->tablewidget->currentRow(), model_outstore_detail::columns(), detail,
                 column_product, column_changed);
}

void dlg_outstore_add::on_btn_delete_clicked() {
    slot_outstore_detail_to_delete();
}

/** A line goes when the service agrees to take its claim back. */
void dlg_outstore_add::slot_outstore_detail_to_delete() {
    calls.run([this] {
        delete_rows(ui->tablewidget, this, [this](int row) {
            return stock_detail.unlock_stock(cell_text(ui->tablewidget, row, column_locked_id),
                                             lock_for_outstore);
        });
    });
}

/** Says the first thing that is missing. */
bool dlg_outstore_add::lacks_something() {
    if (fails(outstore.operater.isEmpty(), ui->txt_operater, QStringLiteral("请选择经办人"))) return true;
    if (lacks_partner(*ui, kind, outstore)) return true;
    if (ui->tablewidget->rowCount() > 0) return false;
    tip_in_list(ui->tablewidget, QStringLiteral("请先添加明细再保存"));
    return true;
}

void dlg_outstore_add::on_btn_submit_clicked() {
    calls.run([this] {
        if (lacks_something()) return;
        outstore.writer = g_http.current_user.id;
        outstore.writer_name = g_http.current_user.realname;
        outstore.type = type;
        outstore.remark = field_text(ui->txt_remark);
        save();
    });
}

/** The lines of a header that the service refuses go out all the same, for no document. The claims go over
 * to the service with their lines. */
void dlg_outstore_add::save() {
    const QString main_id = mode == document_new ? save_header() : QString();
    double total = 0;
    model_outstore_detail model;
    for (int row = 0; row < ui->tablewidget->rowCount(); ++row) {
        auto line = read_trimmed(ui->tablewidget, row, model_outstore_detail::columns());
        line.main_id = main_id;
        total += line.total;
        if (mode == document_new) model.do_add(line);
    }
    if (!model_outstore().update_total(main_id, total)) return;
    emit signal_outstore_get_list();
    accept();
}

/** Gives the id of the new document; none when it is refused. */
QString dlg_outstore_add::save_header() {
    const auto added = read_added(model_outstore().do_add(outstore));
    if (!added) return QString();
    outstore.id = added->id;
    return outstore.id;
}

void dlg_outstore_add::give_claims_back() {
    if (mode != document_new) return;
    for (int row = 0; row < ui->tablewidget->rowCount(); ++row)
        stock_detail.unlock_stock(cell_text(ui->tablewidget, row, column_locked_id), lock_for_outstore);
}

void dlg_outstore_add::on_btn_cancel_clicked() {
    calls.run([this] {
        give_claims_back();
        accept();
    });
}

void dlg_outstore_add::closeEvent(QCloseEvent* event) {
    const bool closes = calls.run([this, event] {
        give_claims_back();
        QDialog::closeEvent(event);
    });
    if (!closes) event->ignore();
}

void dlg_outstore_add::keyPressEvent(QKeyEvent* event) {
    if (event->matches(QKeySequence::Cancel))
        close();
    else
        QDialog::keyPressEvent(event);
}

void dlg_outstore_add::slot_outstore_to_edit(struct_outstore saved) {
    outstore = saved;
    show_header(*ui, outstore);
    print_text = print_document(QStringLiteral("出库明细"), outstore);
    for (const auto& line : outstore.details)
        append_record(ui->tablewidget, model_outstore_detail::columns(), line);
}

void dlg_outstore_add::slot_set_window_title(QString title) {
    setWindowTitle(title);
}

void dlg_outstore_add::on_tablewidget_itemEntered(QTableWidgetItem* item) {
    tip_whole_text(item);
}

void dlg_outstore_add::on_btn_print_clicked() {
    show_print_preview(this, printer);
}

void dlg_outstore_add::slot_print() {
    print_html(document, printer, print_text);
}

void dlg_outstore_add::on_tablewidget_customContextMenuRequested(QPoint) {
    menu.menu->popup(QCursor::pos());
}
