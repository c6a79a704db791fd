#include "documents/dlg_search_stock.h"

#include <QCursor>

#include "documents/stock_search.h"
#include "model/model_stock_detail.h"
#include "ui_dlg_search_stock.h"
#include "widgets/keys.h"
#include "widgets/list_page.h"
#include "widgets/tips.h"

dlg_search_stock::dlg_search_stock(QWidget* parent, QString warehouse)
    : QDialog(parent, Qt::Dialog | Qt::WindowMaximizeButtonHint | Qt::WindowCloseButtonHint),
      ui(std::make_unique<Ui::dlg_search_stock>()),
      fixed_warehouse(!warehouse.isEmpty()) {
    ui->setupUi(this);
    set_up_date_range(ui->date_start, ui->date_end);
    menu = make_context_menu<dlg_search_stock>(
        this, ui->tablewidget, {{QStringLiteral("查询"), &dlg_search_stock::on_btn_search_clicked}});
    if (fixed_warehouse) {
        search.warehouse = warehouse;
        ui->label_warehouse->hide();
        ui->comb_warehouse->hide();
    } else {
        offer_warehouses(ui->comb_warehouse);
    }
    page_bar = add_page_bar(this, ui->layout_table, ui->tablewidget, QStringLiteral("stock_detail"),
                            g_rows_of_a_picker);
    on_btn_search_clicked();
}

dlg_search_stock::~dlg_search_stock() = default;

void dlg_search_stock::on_btn_search_clicked() {
    if (!fixed_warehouse) search.warehouse = ui->comb_warehouse->currentData().toString();
    take_stock_words(search, *ui);
    emit signal_send_args(model_stock_detail::search_args(search));
    page_bar->page_first();
}

void dlg_search_stock::on_tablewidget_doubleClicked(QModelIndex) {
    emit signal_stock_selected(
        read_record(ui->tablewidget, ui->tablewidget->currentRow(), model_stock_detail::columns()));
    accept();
}

void dlg_search_stock::on_tablewidget_itemEntered(QTableWidgetItem* item) {
    tip_whole_text(item);
}

void dlg_search_stock::on_tablewidget_customContextMenuRequested(QPoint) {
    menu.menu->popup(QCursor::pos());
}

void dlg_search_stock::on_btn_close_clicked() {
    close();
}

void dlg_search_stock::keyPressEvent(QKeyEvent* event) {
    if (is_return_key(event)) on_btn_search_clicked();
}
