#include "stock/tab_stock_summary.h"

#include <QCursor>

#include "model/model_stock_summary.h"
#include "ui_tab_stock_summary.h"
#include "widgets/date_range.h"
#include "widgets/fields.h"
#include "widgets/keys.h"
#include "widgets/list_page.h"
#include "widgets/print_preview.h"
#include "widgets/rights.h"
#include "widgets/tips.h"

tab_stock_summary::tab_stock_summary(QWidget* parent)
    : QWidget(parent), ui(std::make_unique<Ui::tab_stock_summary>()) {
    ui->setupUi(this);
    set_up_date_range(ui->date_start, ui->date_end);
    menu = make_context_menu<tab_stock_summary>(
        this, ui->tablewidget,
        {{QStringLiteral("查询"), &tab_stock_summary::on_btn_search_clicked},
         {QStringLiteral("打印"), &tab_stock_summary::on_btn_print_clicked}});
    connect(ui->tablewidget, &QTableWidget::customContextMenuRequested, this,
            &tab_stock_summary::slot_right_menu);
    page_bar = add_page_bar(this, ui->verticalLayout, ui->tablewidget, QStringLiteral("stock_summary"),
                            g_rows_of_a_tab);
    enable_by_rights();
}

tab_stock_summary::~tab_stock_summary() = default;

/**
 * Crossed on purpose: both rights go out as that to search, so that the right to print has the last word on
 * the tab and its search button, and nothing ever takes the ways to print away.
 */
void tab_stock_summary::enable_by_rights() {
    enable_search_with(this, ui->btn_search);
    enable_with(this, &tab_stock_summary::signal_enable_print, ui->btn_print, menu.actions[1]);
    apply_rights(this, QStringLiteral("stock_summary"), &tab_stock_summary::on_btn_search_clicked,
                 {{QStringLiteral("search"), &tab_stock_summary::signal_enable_search},
                  {QStringLiteral("print"), &tab_stock_summary::signal_enable_search}});
}

/** What is typed into txt_num is searched for as the code. */
void tab_stock_summary::on_btn_search_clicked() {
    struct_stock search;
    search.date_start = first_second_of(ui->date_start);
    search.date_end = last_second_of(ui->date_end);
    search.product_name = field_text(ui->txt_product_name);
    search.code = field_text(ui->txt_num);
    search.spec = field_text(ui->txt_spec);
    emit signal_send_args(model_stock_summary::search_args(search));
    page_bar->page_first();
}

void tab_stock_summary::slot_right_menu() {
    menu.menu->popup(QCursor::pos());
}

void tab_stock_summary::on_tablewidget_itemEntered(QTableWidgetItem* item) {
    tip_whole_text(item);
}

void tab_stock_summary::slot_print() {
    print_html(document, printer, page_bar->html);
}

void tab_stock_summary::on_btn_print_clicked() {
    show_print_preview(this, printer);
}

void tab_stock_summary::keyPressEvent(QKeyEvent* event) {
    if (is_return_key(event)) on_btn_search_clicked();
}
