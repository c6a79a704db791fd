#include "stock/tab_stock_detail.h"

#include <QCursor>

#include "documents/stock_search.h"
#include "model/model_stock_detail.h"
#include "ui_tab_stock_detail.h"
#include "widgets/keys.h"
#include "widgets/list_page.h"
#include "widgets/print_preview.h"
#include "widgets/rights.h"
#include "widgets/tips.h"

tab_stock_detail::tab_stock_detail(QWidget* parent)
    : QWidget(parent), ui(std::make_unique<Ui::tab_stock_detail>()) {
    ui->setupUi(this);
    set_up_date_range(ui->date_start, ui->date_end);
    offer_warehouses(ui->comb_warehouse);
    menu = make_context_menu<tab_stock_detail>(
        this, ui->tablewidget,
        {{QStringLiteral("查询"), &tab_stock_detail::on_btn_search_clicked},
         {QStringLiteral("打印"), &tab_stock_detail::on_btn_print_clicked}});
    connect(ui->tablewidget, &QTableWidget::customContextMenuRequested, this,
            &tab_stock_detail::slot_right_menu);
    page_bar = add_page_bar(this, ui->verticalLayout, ui->tablewidget, QStringLiteral("stock_detail"),
                            g_rows_of_a_tab);
    enable_by_rights();
}

tab_stock_detail::~tab_stock_detail() = default;

/** There is no right to print: whoever can search can print. */
void tab_stock_detail::enable_by_rights() {
    enable_search_with(this, ui->btn_search);
    connect(this, &tab_stock_detail::signal_enable_search, menu.actions[0], &QAction::setEnabled);
    apply_rights(this, QStringLiteral("stock_detail"), &tab_stock_detail::on_btn_search_clicked,
                 {{QStringLiteral("search"), &tab_stock_detail::signal_enable_search}});
}

void tab_stock_detail::on_btn_search_clicked() {
    struct_stock search;
    take_stock_words(search, *ui);
    search.warehouse = ui->comb_warehouse->currentData().toString();
    emit signal_send_args(model_stock_detail::search_args(search));
    page_bar->page_first();
}

void tab_stock_detail::slot_right_menu() {
    menu.menu->popup(QCursor::pos());
}

void tab_stock_detail::on_tablewidget_itemEntered(QTableWidgetItem* item) {
    tip_whole_text(item);
}

void tab_stock_detail::on_btn_print_clicked() {
    show_print_preview(this, printer);
}

void tab_stock_detail::slot_print() {
    print_html(document, printer, page_bar->html);
}

void tab_stock_detail::keyPressEvent(QKeyEvent* event) {
    if (is_return_key(event)) on_btn_search_clicked();
}
