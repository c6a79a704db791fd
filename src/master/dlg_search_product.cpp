#include "master/dlg_search_product.h"

#include "model/model_product.h"
#include "ui_dlg_search_product.h"
#include "widgets/fields.h"
#include "widgets/keys.h"
#include "widgets/list_page.h"

dlg_search_product::dlg_search_product(QWidget* parent)
    : QDialog(parent, Qt::Dialog | Qt::WindowMaximizeButtonHint | Qt::WindowCloseButtonHint),
      ui(std::make_unique<Ui::dlg_search_product>()) {
    ui->setupUi(this);
    page_bar =
        add_page_bar(this, ui->layout_table, ui->tablewidget, QStringLiteral("product"), g_rows_of_a_picker);
    page_bar->page_first();
}

dlg_search_product::~dlg_search_product() = default;

void dlg_search_product::search() {
    struct_product words;
    words.name = field_text(ui->txt_product_name);
    words.code = field_text(ui->txt_code);
    words.spec = field_text(ui->txt_spec);
    emit signal_send_args(model_product::search_args(words));
    page_bar->page_first();
}

void dlg_search_product::on_tablewidget_doubleClicked(QModelIndex) {
    auto product = read_record(ui->tablewidget, ui->tablewidget->currentRow(), model_product::columns());
    product.datetime_text.clear();
    emit signal_product_selected(product);
    accept();
}

void dlg_search_product::on_btn_close_clicked() {
    close();
}

void dlg_search_product::keyPressEvent(QKeyEvent* event) {
    if (is_return_key(event)) search();
}
