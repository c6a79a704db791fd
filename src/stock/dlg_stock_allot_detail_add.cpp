#include "stock/dlg_stock_allot_detail_add.h"

#include "documents/dlg_search_stock.h"
#include "documents/stock_line.h"
#include "model/list_table.h"
#include "ui_dlg_stock_allot_detail_add.h"
#include "widgets/fields.h"
#include "widgets/modes.h"

dlg_stock_allot_detail_add::dlg_stock_allot_detail_add(QWidget* parent, int dialog_mode)
    : QDialog(parent, Qt::Dialog | Qt::WindowCloseButtonHint),
      ui(std::make_unique<Ui::dlg_stock_allot_detail_add>()),
      mode(dialog_mode) {
    ui->setupUi(this);
    ui->txt_product_name->installEventFilter(this);
    set_amount(ui->txt_price, 0.0, 99999999.0, 2);
    set_whole_number(ui->txt_amount, 0, 99999999);
    set_amount(ui->txt_total, 0.0, 99999999.0, 2);
}

dlg_stock_allot_detail_add::~dlg_stock_allot_detail_add() = default;

void dlg_stock_allot_detail_add::slot_set_warehouse_out(QString warehouse_id) {
    warehouse_out = warehouse_id;
}

bool dlg_stock_allot_detail_add::eventFilter(QObject* object, QEvent* event) {
    if (!is_pick(object, event, ui->txt_product_name)) return QDialog::eventFilter(object, event);
    dlg_search_stock picker(this, warehouse_out);
    connect(&picker, &dlg_search_stock::signal_stock_selected, this,
            &dlg_stock_allot_detail_add::slot_stock_selected);
    picker.setWindowTitle(QStringLiteral("选择货品库存"));
    picker.exec();
    return true;
}

void dlg_stock_allot_detail_add::slot_stock_selected(struct_stock stock) {
    detail.changed = stock.product != detail.product ? 1 : 0;
    detail.stock_id = stock.id;
    detail.product = stock.product;
    detail.product_name = stock.product_name;
    detail.code = stock.code;
    detail.spec = stock.spec;
    detail.category = stock.category;
    detail.category_name = stock.category_name;
    maximum = stock.amount;
    ui->txt_category_name->setText(stock.category_name);
    ui->txt_product_name->setText(stock.product_name);
    ui->txt_place->setText(stock.place);
    ui->txt_spec->setText(stock.spec);
    ui->txt_num->setText(stock.code);
    ui->txt_price->setText(shown_money(stock.price));
    ui->txt_amount->setText(QString::number(stock.amount));
    // The row's own, whatever amount and price make of it.
    ui->txt_total->setText(shown_money(stock.total));
    ui->txt_remark->setPlainText(stock.remark);
}

void dlg_stock_allot_detail_add::show_total(int amount, double price) {
    ui->txt_total->setText(shown_money(amount * price));
}

void dlg_stock_allot_detail_add::on_txt_amount_textChanged(QString arg1) {
    if (detail.stock_id.isEmpty()) return;
    const int amount = amount_within(ui->txt_amount, arg1, maximum);
    show_total(amount, ui->txt_price->text().toDouble());
}

void dlg_stock_allot_detail_add::on_txt_price_textChanged(QString) {
    show_total(field_text(ui->txt_amount).toInt(), field_text(ui->txt_price).toDouble());
}

/** Says the first thing that is missing: the place is wanted too, though no star says so. */
bool dlg_stock_allot_detail_add::lacks_something() {
    const struct {
        QLineEdit* field;
        QString tip;
    } required[] = {{ui->txt_product_name, QStringLiteral("请先选择货品")},
                    {ui->txt_place, QStringLiteral("请填写存储位置")},
                    {ui->txt_price, QStringLiteral("请填写单价")},
                    {ui->txt_amount, QStringLiteral("请填写数量")}};
    for (const auto& each : required)
        if (fails(field_text(each.field).isEmpty(), each.field, each.tip)) return true;
    return false;
}

void dlg_stock_allot_detail_add::on_btn_save_clicked() {
    calls.run([this] {
        if (lacks_something()) return;
        read_fields();
        if (mode == mode_add)
            emit signal_stock_allot_detail_do_add(detail);
        else if (mode == mode_edit)
            emit signal_stock_allot_detail_do_edit(detail);
        accept();
    });
}

void dlg_stock_allot_detail_add::read_fields() {
    const double price = field_text(ui->txt_price).toDouble();
    const int amount = field_text(ui->txt_amount).toInt();
    const QString remark = ui->txt_remark->toPlainText().trimmed();
    if (mode == mode_edit && (price != detail.price || amount != detail.amount || remark != detail.remark))
        detail.changed = 1;
    detail.place = field_text(ui->txt_place);
    detail.price = price;
    detail.amount = amount;
    detail.total = ui->txt_total->text().toDouble();
    detail.remark = remark;
}

void dlg_stock_allot_detail_add::on_btn_cancel_clicked() {
    reject();
}

void dlg_stock_allot_detail_add::slot_stock_allot_detail_to_edit(struct_stock_allot_detail line) {
    detail = line;
    ui->txt_product_name->setText(line.product_name);
    ui->txt_amount->setText(QString::number(line.amount));
    ui->txt_price->setText(shown_money(line.price));
    // The line's own, whatever amount and price make of it.
    ui->txt_total->setText(shown_money(line.total));
    ui->txt_remark->setPlainText(line.remark);
    ui->txt_place->setText(line.place);
}
