#include "stock/dlg_stock_taking_detail_add.h"

#include <cmath>

#include "documents/dlg_search_stock.h"
#include "model/list_table.h"
#include "ui_dlg_stock_taking_detail_add.h"
#include "widgets/fields.h"
#include "widgets/modes.h"

namespace {

/** Kept on purpose, unlike every other amount of money: what is behind the point is dropped. */
QString whole_money(double amount) {
    // The sum makes a plain zero of a negative one.
    return shown_money(std::trunc(amount) + 0.0);
}

} // namespace

dlg_stock_taking_detail_add::dlg_stock_taking_detail_add(QWidget* parent, int dialog_mode)
    : QDialog(parent, Qt::Dialog | Qt::WindowCloseButtonHint),
      ui(std::make_unique<Ui::dlg_stock_taking_detail_add>()),
      mode(dialog_mode) {
    ui->setupUi(this);
    ui->txt_product_name->installEventFilter(this);
    for (QLineEdit* field : {ui->txt_price, ui->txt_profitloss_total})
        set_amount(field, 0, 99999999, 2);
    for (QLineEdit* field : {ui->txt_sys_amount, ui->txt_real_amount, ui->txt_profitloss_amount})
        set_whole_number(field, 0, 99999999);
}

dlg_stock_taking_detail_add::~dlg_stock_taking_detail_add() = default;

bool dlg_stock_taking_detail_add::eventFilter(QObject* object, QEvent* event) {
    if (!is_pick(object, event, ui->txt_product_name)) return QDialog::eventFilter(object, event);
    dlg_search_stock picker(this, QString());
    picker.setWindowTitle(QStringLiteral("选择货品库存"));
    connect(&picker, &dlg_search_stock::signal_stock_selected, this,
            &dlg_stock_taking_detail_add::slot_stock_selected);
    picker.exec();
    return true;
}

/** Shows what a line has of its stock row. Gain and loss follow price and quantity, and are to be shown after
 * them. */
void dlg_stock_taking_detail_add::show_stock_row() {
    ui->txt_product_name->setText(detail.product_name);
    ui->txt_spec->setText(detail.spec);
    ui->txt_num->setText(detail.code);
    ui->txt_price->setText(shown_money(detail.price));
    ui->txt_sys_amount->setText(QString::number(detail.sys_amount));
    ui->txt_real_amount->setText(QString::number(detail.real_amount));
    ui->txt_remark->setPlainText(detail.remark);
    ui->txt_place->setText(detail.place);
    ui->txt_warehouse_name->setText(detail.warehouse_name);
}

void dlg_stock_taking_detail_add::slot_stock_taking_detail_to_edit(struct_stock_taking_detail line) {
    detail = line;
    show_stock_row();
    ui->txt_profitloss_amount->setText(QString::number(detail.profitloss_amount));
    ui->txt_profitloss_total->setText(shown_money(detail.profitloss_total));
}

void dlg_stock_taking_detail_add::slot_stock_selected(struct_stock stock) {
    detail.changed = stock.product != detail.product ? 1 : 0;
    detail.stock_id = stock.id;
    detail.product = stock.product;
    detail.product_name = stock.product_name;
    detail.warehouse = stock.warehouse;
    detail.warehouse_name = stock.warehouse_name;
    detail.code = stock.code;
    detail.spec = stock.spec;
    detail.sys_amount = stock.amount;
    // What the user may change is read back from the fields.
    detail.real_amount = stock.amount;
    detail.price = stock.price;
    detail.place = stock.place;
    detail.remark = stock.remark;
    show_stock_row();
    ui->txt_profitloss_amount->setText(QStringLiteral("0"));
    ui->txt_profitloss_total->setText(QStringLiteral("0"));
}

void dlg_stock_taking_detail_add::on_btn_cancel_clicked() {
    reject();
}

void dlg_stock_taking_detail_add::show_profitloss() {
    const int difference = ui->txt_real_amount->text().toInt() - ui->txt_sys_amount->text().toInt();
    ui->txt_profitloss_amount->setText(QString::number(difference));
    ui->txt_profitloss_total->setText(whole_money(difference * ui->txt_price->text().toDouble()));
}

void dlg_stock_taking_detail_add::on_txt_real_amount_textChanged(QString) {
    show_profitloss();
}

void dlg_stock_taking_detail_add::on_txt_price_textChanged(QString) {
    show_profitloss();
}

void dlg_stock_taking_detail_add::on_btn_submit_clicked() {
    calls.run([this] {
        if (lacks_something()) return;
        read_fields();
        if (mode != mode_add) return;
        emit signal_stock_taking_detail_do_add(detail);
        accept();
    });
}

/** Says the first thing that is missing. A quantity or a price that is left empty counts as 0. */
bool dlg_stock_taking_detail_add::lacks_something() {
    if (fails(field_text(ui->txt_product_name).isEmpty(), ui->txt_product_name,
              QStringLiteral("请先选择货品")))
        return true;
    const bool same = field_text(ui->txt_real_amount).toInt() == field_text(ui->txt_sys_amount).toInt();
    return fails(same, ui->txt_real_amount, QStringLiteral("盘点数量没有变化"));
}

void dlg_stock_taking_detail_add::read_fields() {
    detail.price = field_text(ui->txt_price).toDouble();
    detail.place = field_text(ui->txt_place);
    detail.real_amount = field_text(ui->txt_real_amount).toInt();
    detail.profitloss_amount = ui->txt_profitloss_amount->text().toInt();
    detail.profitloss_total = ui->txt_profitloss_total->text().toDouble();
    detail.remark = ui->txt_remark->toPlainText().trimmed();
}
