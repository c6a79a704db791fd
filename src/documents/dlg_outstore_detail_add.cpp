#include "documents/dlg_outstore_detail_add.h"

#include "documents/dlg_search_stock.h"
#include "documents/stock_line.h"
#include "model/list_table.h"
#include "ui_dlg_outstore_detail_add.h"
#include "widgets/fields.h"
#include "widgets/modes.h"

dlg_outstore_detail_add::dlg_outstore_detail_add(QWidget* parent, int dialog_mode)
    : QDialog(parent, Qt::Dialog | Qt::WindowCloseButtonHint),
      ui(std::make_unique<Ui::dlg_outstore_detail_add>()),
      mode(dialog_mode) {
    ui->setupUi(this);
    ui->txt_product_name->installEventFilter(this);
    set_amount(ui->txt_price, 0.0, 99999999.0, 2);
    set_whole_number(ui->txt_amount, 0, 99999999);
    set_amount(ui->txt_total, 0.0, 1e16, 2);
}

dlg_outstore_detail_add::~dlg_outstore_detail_add() = default;

bool dlg_outstore_detail_add::eventFilter(QObject* object, QEvent* event) {
    if (!is_pick(object, event, ui->txt_product_name)) return QDialog::eventFilter(object, event);
    dlg_search_stock picker(this, QString());
    connect(&picker, &dlg_search_stock::signal_stock_selected, this,
            &dlg_outstore_detail_add::slot_stock_selected);
    picker.setWindowTitle(QStringLiteral("查询选择库存"));
    picker.exec();
    return true;
}

void dlg_outstore_detail_add::slot_stock_selected(struct_stock stock) {
    if (mode == mode_edit && stock.id != detail.stock_id) detail.changed = 1;
    detail.stock_id = stock.id;
    detail.product = stock.product;
    detail.product_name = stock.product_name;
    detail.category = stock.category;
    detail.category_name = stock.category_name;
    detail.warehouse = stock.warehouse;
    detail.code = stock.code;
    maximum = stock.amount;
    ui->txt_product_name->setText(stock.product_name);
    ui->txt_warehouse->setText(stock.warehouse_name);
    ui->txt_price->setText(shown_money(stock.price));
    ui->txt_code->setText(stock.code);
    ui->txt_amount->setText(QString::number(stock.amount));
    ui->txt_spec->setText(stock.spec);
    ui->txt_place->setText(stock.place);
    ui->txt_remark->setPlainText(stock.remark);
    // Of the price as it is: the field shows it rounded.
    show_total(stock.amount, stock.price);
}

void dlg_outstore_detail_add::show_total(int amount, double price) {
    ui->txt_total->setText(shown_money(amount * price));
}

void dlg_outstore_detail_add::on_txt_price_textChanged(QString arg1) {
    show_total(ui->txt_amount->text().toInt(), arg1.toDouble());
}

void dlg_outstore_detail_add::on_txt_amount_textChanged(QString arg1) {
    if (detail.stock_id.isEmpty()) return;
    const int amount = amount_within(ui->txt_amount, arg1, maximum);
    show_total(amount, ui->txt_price->text().toDouble());
}

/** Says the first thing that is missing. Warehouse and place come with the stock row. */
bool dlg_outstore_detail_add::lacks_something() {
    return fails(field_text(ui->txt_product_name).isEmpty(), ui->txt_product_name,
                 QStringLiteral("请先选择库存")) ||
           fails(field_text(ui->txt_price).isEmpty(), ui->txt_price, QStringLiteral("请填写单价")) ||
           fails(field_text(ui->txt_amount).isEmpty(), ui->txt_amount, QStringLiteral("请填写数量"));
}

void dlg_outstore_detail_add::on_btn_save_clicked() {
    calls.run([this] {
        if (lacks_something()) return;
        read_fields();
        if (mode == mode_add)
            emit signal_outstore_detail_do_add(detail);
        else if (mode == mode_edit)
            emit signal_outstore_detail_do_edit(detail);
        accept();
    });
}

void dlg_outstore_detail_add::read_fields() {
    detail.price = field_text(ui->txt_price).toDouble();
    detail.amount = field_text(ui->txt_amount).toInt();
    detail.remark = ui->txt_remark->toPlainText().trimmed();
    detail.place = field_text(ui->txt_place);
    detail.total = ui->txt_total->text().toDouble();
    detail.warehouse_name = ui->txt_warehouse->text();
    detail.spec = ui->txt_spec->text();
}

void dlg_outstore_detail_add::on_btn_cancel_clicked() {
    reject();
}

void dlg_outstore_detail_add::slot_outstore_detail_to_edit(struct_outstore_detail) {}
