#include "widgets/paging.h"

#include <QEvent>
#include <QRegExpValidator>

#include "model/model_company.h"
#include "model/model_emp.h"
#include "model/model_instore.h"
#include "model/model_outstore.h"
#include "model/model_product.h"
#include "model/model_stock_allot.h"
#include "model/model_stock_detail.h"
#include "model/model_stock_summary.h"
#include "model/model_stock_taking.h"
#include "model/model_user.h"
#include "model/model_warehouse.h"
#include "ui_paging.h"

namespace {

template <class model>
model_interface* make(QTableWidget* table) {
    return new model(table);
}

model_interface* make_stock_detail(QTableWidget* table) {
    return new model_stock_detail(table, 2);
}

using maker = model_interface* (*)(QTableWidget*);

/** The lists that a bar can turn. */
model_interface* make_page_model(const QString& module, QTableWidget* table) {
    static const QHash<QString, maker> makers = {
        {QStringLiteral("company"), make<model_company>},
        {QStringLiteral("product"), make<model_product>},
        {QStringLiteral("emp"), make<model_emp>},
        {QStringLiteral("warehouse"), make<model_warehouse>},
        {QStringLiteral("user"), make<model_user>},
        {QStringLiteral("instore"), make<model_instore>},
        {QStringLiteral("outstore"), make<model_outstore>},
        {QStringLiteral("stock_allot"), make<model_stock_allot>},
        {QStringLiteral("stock_detail"), make_stock_detail},
        {QStringLiteral("stock_summary"), make<model_stock_summary>},
        {QStringLiteral("stock_taking"), make<model_stock_taking>},
    };
    const maker make_model = makers.value(module, nullptr);
    return make_model != nullptr ? make_model(table) : nullptr;
}

} // namespace

paging::paging(QWidget* parent, QTableWidget* list, QString list_module, int rows_per_page)
    : QWidget(parent),
      ui(std::make_unique<Ui::paging>()),
      page_size(rows_per_page),
      table(list),
      module(list_module),
      model(make_page_model(module, table)) {
    ui->setupUi(this);
    ui->txt_page_num->setValidator(new QRegExpValidator(QRegExp(QStringLiteral("^\\d+$")), ui->txt_page_num));
    for (QLabel* control : {ui->lbl_first, ui->lbl_pre, ui->lbl_next, ui->lbl_last})
        control->installEventFilter(this);
}

paging::~paging() = default;

void paging::slot_set_args(QString new_args) {
    args = new_args;
}

void paging::page_first() {
    page_num = 1;
    load(page_num);
    show_counts();
}

void paging::page_prev() {
    if (page_num <= 1) return;
    --page_num;
    load(page_num);
    show_counts();
}

void paging::page_next() {
    if (page_num >= page_count) return;
    ++page_num;
    load(page_num);
    show_counts();
}

/** The service picks the last page, and only here does its answer decide which page this is. */
void paging::page_last() {
    if (page_num >= page_count) return;
    load(-1);
    page_num = page_info[QStringLiteral("page_num")].toInt();
    show_counts();
}

void paging::on_btn_ok_clicked() {
    page_num = ui->txt_page_num->text().trimmed().toInt();
    load(page_num);
    show_counts();
}

void paging::load(int asked) {
    page_info = model->get_page(args, asked, page_size);
    page_count = page_info[QStringLiteral("page_count")].toInt();
    total = page_info[QStringLiteral("total")].toInt();
    html = page_info[QStringLiteral("html")].toString();
}

void paging::show_counts() {
    ui->txt_page_num->setText(QString::number(page_num, 10));
    ui->lbl_total->setText(QStringLiteral("共") + QString::number(page_count, 10) + QStringLiteral("页/") +
                           QString::number(total, 10) + QStringLiteral("条记录"));
}

bool paging::eventFilter(QObject* object, QEvent* event) {
    if (event->type() != QEvent::MouseButtonPress) return QWidget::eventFilter(object, event);
    if (object == ui->lbl_first)
        page_first();
    else if (object == ui->lbl_pre)
        page_prev();
    else if (object == ui->lbl_next)
        page_next();
    else if (object == ui->lbl_last)
        page_last();
    else
        return false;
    return true;
}

void paging::on_txt_page_num_textEdited(QString) {
    const int typed = ui->txt_page_num->text().trimmed().toInt();
    if (typed > page_count)
        ui->txt_page_num->setText(page_count < 1 ? QStringLiteral("1") : QString::number(page_count, 10));
    else if (typed < 1)
        ui->txt_page_num->setText(QStringLiteral("1"));
}
