#include "master/dlg_product_add.h"

#include "master/dlg_prodcate.h"
#include "model/list_table.h"
#include "ui_dlg_product_add.h"
#include "widgets/fields.h"
#include "widgets/modes.h"

dlg_product_add::dlg_product_add(QWidget* parent, int dialog_mode)
    : QDialog(parent, Qt::Dialog | Qt::WindowCloseButtonHint),
      ui(std::make_unique<Ui::dlg_product_add>()),
      mode(dialog_mode) {
    ui->setupUi(this);
    set_amount(ui->txt_price, 0.0, 99999999.0, 2);
    ui->txt_category->installEventFilter(this);
    ui->txt_name->setFocus();
}

dlg_product_add::~dlg_product_add() = default;

void dlg_product_add::slot_product_to_edit(struct_product to_edit) {
    product = to_edit;
    setWindowTitle(QStringLiteral("编辑货品"));
    ui->txt_name->setText(product.name);
    ui->txt_category->setText(product.category_name);
    ui->txt_category->setToolTip(QStringLiteral("点击选择"));
    ui->txt_code->setText(product.code);
    ui->txt_spec->setText(product.spec);
    ui->txt_price->setText(shown_money(product.price));
}

bool dlg_product_add::eventFilter(QObject* object, QEvent* event) {
    if (!is_pick(object, event, ui->txt_category)) return QDialog::eventFilter(object, event);
    dlg_prodcate picker(this, 3);
    connect(&picker, &dlg_prodcate::signal_prodcate_selected, this, &dlg_product_add::slot_prodcate_selected);
    picker.setWindowTitle(QStringLiteral("选择类别"));
    picker.exec();
    return true;
}

void dlg_product_add::slot_prodcate_selected(struct_prodcate prodcate) {
    product.category = prodcate.id;
    product.category_name = prodcate.name;
    ui->txt_category->setText(prodcate.name);
}

void dlg_product_add::on_btn_cancel_clicked() {
    reject();
}

/** The price is taken as it stands: its validator governs the typing alone. */
void dlg_product_add::on_btn_submit_clicked() {
    product.name = field_text(ui->txt_name);
    product.code = field_text(ui->txt_code);
    product.price = field_text(ui->txt_price).toDouble();
    product.spec = field_text(ui->txt_spec);
    if (fails(product.name.isEmpty(), ui->txt_name, QStringLiteral("名称不能为空")) ||
        fails(product.category.isEmpty(), ui->txt_category, QStringLiteral("类别不能为空")))
        return;
    if (mode == mode_add)
        emit signal_product_do_add(product);
    else if (mode == mode_edit)
        emit signal_product_do_edit(product);
    accept();
}
