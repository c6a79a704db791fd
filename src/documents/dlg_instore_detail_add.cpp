#include "documents/dlg_instore_detail_add.h"

#include "master/dlg_search_product.h"
#include "model/list_table.h"
#include "model/model_warehouse.h"
#include "ui_dlg_instore_detail_add.h"
#include "widgets/fields.h"
#include "widgets/modes.h"

namespace {

/** Of warehouses to choose one from; the first entry asks for it. */
constexpr int one_warehouse = 3;
/** No warehouse is chosen beforehand, the default one neither. */
constexpr int no_default = 2;

} // namespace

dlg_instore_detail_add::dlg_instore_detail_add(QWidget* parent, int dialog_mode)
    : QDialog(parent, Qt::Dialog | Qt::WindowCloseButtonHint),
      ui(std::make_unique<Ui::dlg_instore_detail_add>()),
      mode(dialog_mode) {
    ui->setupUi(this);
    ui->txt_product_name->installEventFilter(this);
    model_warehouse(one_warehouse).get_option(ui->comb_warehouse, no_default);
    set_amount(ui->txt_price, 0.0, 99999999.0, 2);
    set_whole_number(ui->txt_amount, 0, 99999999);
    set_amount(ui->txt_total, 0.0, 999999999999999.0, 2);
}

dlg_instore_detail_add::~dlg_instore_detail_add() = default;

bool dlg_instore_detail_add::eventFilter(QObject* object, QEvent* event) {
    if (!is_pick(object, event, ui->txt_product_name)) return QDialog::eventFilter(object, event);
    dlg_search_product picker(this);
    connect(&picker, &dlg_search_product::signal_product_selected, this,
            &dlg_instore_detail_add::slot_product_selected);
    picker.setWindowTitle(QStringLiteral("查询选择货品基础信息"));
    picker.exec();
    return true;
}

/** The product's price is a proposal: it may be overwritten. */
void dlg_instore_detail_add::slot_product_selected(struct_product product) {
    detail.product = product.id;
    detail.product_name = product.name;
    detail.category = product.category;
    detail.category_name = product.category_name;
    detail.spec = product.spec;
    detail.code = product.code;
    ui->txt_product_name->setText(product.name);
    ui->txt_category->setText(product.category_name);
    ui->txt_spec->setText(product.spec);
    ui->txt_code->setText(product.code);
    ui->txt_price->setText(shown_money(product.price));
    ui->txt_amount->setText(QStringLiteral("1"));
    ui->txt_total->setText(shown_money(product.price));
}

/** Last the stored total, whatever amount and price make of it. The code is kept and not shown. */
void dlg_instore_detail_add::slot_instore_detail_to_edit(struct_instore_detail to_edit) {
    detail = to_edit;
    ui->txt_product_name->setText(detail.product_name);
    ui->comb_warehouse->setCurrentIndex(ui->comb_warehouse->findData(detail.warehouse));
    ui->txt_category->setText(detail.category_name);
    ui->txt_amount->setText(QString::number(detail.amount));
    ui->txt_price->setText(shown_money(detail.price));
    ui->txt_total->setText(shown_money(detail.total));
    ui->txt_remark->setPlainText(detail.remark);
    ui->txt_spec->setText(detail.spec);
    ui->txt_place->setText(detail.place);
}

void dlg_instore_detail_add::on_txt_amount_textChanged(QString) {
    show_total();
}

void dlg_instore_detail_add::on_txt_price_textChanged(QString) {
    show_total();
}

/** An empty field counts as 0. */
void dlg_instore_detail_add::show_total() {
    ui->txt_total->setText(shown_money(ui->txt_amount->text().toInt() * ui->txt_price->text().toDouble()));
}

void dlg_instore_detail_add::on_btn_cancel_clicked() {
    reject();
}

void dlg_instore_detail_add::on_btn_save_clicked() {
    if (lacks_something()) return;
    read_fields();
    if (mode == mode_add)
        emit signal_instore_detail_do_add(detail);
    else if (mode == mode_edit)
        emit signal_instore_detail_do_edit(detail);
    accept();
}

/** Says the first thing that is missing. A price or an amount of 0 is none. */
bool dlg_instore_detail_add::lacks_something() {
    const auto empty = [](const QLineEdit* field) { return field_text(field).isEmpty(); };
    return fails(empty(ui->txt_product_name), ui->txt_product_name, QStringLiteral("请先选择货品")) ||
           fails(empty(ui->txt_price), ui->txt_price, QStringLiteral("请填写单价")) ||
           fails(empty(ui->txt_amount), ui->txt_amount, QStringLiteral("请填写数量")) ||
           fails(ui->comb_warehouse->currentData().toString().isEmpty(), ui->comb_warehouse,
                 QStringLiteral("请选择仓库")) ||
           fails(empty(ui->txt_place), ui->txt_place, QStringLiteral("请选择位置"));
}

void dlg_instore_detail_add::read_fields() {
    detail.price = field_text(ui->txt_price).toDouble();
    detail.amount = field_text(ui->txt_amount).toInt();
    detail.total = field_text(ui->txt_total).toDouble();
    detail.warehouse = ui->comb_warehouse->currentData().toString();
    detail.warehouse_name = ui->comb_warehouse->currentText();
    detail.place = field_text(ui->txt_place);
    detail.remark = ui->txt_remark->toPlainText().trimmed();
    detail.changed = 1;
    detail.spec = ui->txt_spec->text();
}
