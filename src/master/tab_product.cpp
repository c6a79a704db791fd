#include "master/tab_product.h"

#include <QCursor>

#include "master/dlg_prodcate.h"
#include "master/dlg_product_add.h"
#include "model/answers.h"
#include "model/model_product.h"
#include "ui_tab_product.h"
#include "widgets/fields.h"
#include "widgets/keys.h"
#include "widgets/list_page.h"
#include "widgets/modes.h"
#include "widgets/rights.h"
#include "widgets/selection.h"

tab_product::tab_product(QWidget* parent) : QWidget(parent), ui(std::make_unique<Ui::tab_product>()) {
    ui->setupUi(this);
    connect(ui->btn_add, &QPushButton::clicked, this, &tab_product::slot_product_to_add);
    connect(ui->btn_edit, &QPushButton::clicked, this, &tab_product::slot_product_to_edit);
    connect(ui->btn_delete, &QPushButton::clicked, this, &tab_product::slot_product_to_delete);
    ui->txt_prodcate->installEventFilter(this);
    page_bar =
        add_page_bar(this, ui->verticalLayout, ui->tablewidget, QStringLiteral("product"), g_rows_of_a_tab);
    menu = make_context_menu<tab_product>(this, ui->tablewidget,
                                          {{QStringLiteral("查询"), &tab_product::on_btn_search_clicked},
                                           {QStringLiteral("添加"), &tab_product::slot_product_to_add},
                                           {QStringLiteral("编辑"), &tab_product::slot_product_to_edit},
                                           {QStringLiteral("删除"), &tab_product::slot_product_to_delete}});
    enable_by_rights();
}

tab_product::~tab_product() = default;

void tab_product::enable_by_rights() {
    enable_list(this, *ui, menu.actions);
    apply_rights(this, QStringLiteral("product"), &tab_product::on_btn_search_clicked,
                 list_rights<tab_product>());
}

void tab_product::on_tablewidget_customContextMenuRequested(QPoint) {
    menu.menu->popup(QCursor::pos());
}

void tab_product::on_btn_search_clicked() {
    search.name = field_text(ui->txt_product);
    search.code = field_text(ui->txt_code);
    search.spec = field_text(ui->txt_spec);
    emit signal_send_args(model_product::search_args(search));
    page_bar->page_first();
}

bool tab_product::eventFilter(QObject* object, QEvent* event) {
    if (!is_pick(object, event, ui->txt_prodcate)) return QWidget::eventFilter(object, event);
    dlg_prodcate picker(this, 4);
    connect(&picker, &dlg_prodcate::signal_prodcate_selected, this, &tab_product::slot_prodcate_selected);
    picker.setWindowTitle(QStringLiteral("选择货品类别"));
    picker.exec();
    return true;
}

/** Only an empty id lifts the restriction; the tree's root has the id "0" and is searched for as it is. */
void tab_product::slot_prodcate_selected(struct_prodcate prodcate) {
    search.category = prodcate.id;
    ui->txt_prodcate->setText(prodcate.id.isEmpty() ? QStringLiteral("【全部】") : prodcate.name);
}

void tab_product::slot_product_to_add() {
    dlg_product_add dialog(this, mode_add);
    connect(&dialog, &dlg_product_add::signal_product_do_add, this, &tab_product::slot_product_do_add);
    dialog.exec();
}

void tab_product::slot_product_do_add(struct_product product) {
    model_product model(ui->tablewidget);
    if (take_added(product, model.do_add(product))) model.add_row(product);
}

void tab_product::slot_product_to_edit() {
    if (!has_current_row(ui->tablewidget)) return;
    const auto product =
        read_record(ui->tablewidget, ui->tablewidget->currentRow(), model_product::columns());
    dlg_product_add dialog(this, mode_edit);
    connect(this, &tab_product::signal_product_to_edit, &dialog, &dlg_product_add::slot_product_to_edit);
    connect(&dialog, &dlg_product_add::signal_product_do_edit, this, &tab_product::slot_product_do_edit);
    emit signal_product_to_edit(product);
    dialog.exec();
}

void tab_product::slot_product_do_edit(struct_product product) {
    model_product(ui->tablewidget).do_edit(product);
}

void tab_product::slot_product_to_delete() {
    model_product model(ui->tablewidget);
    const QAbstractItemModel* rows = ui->tablewidget->model();
    // A row that has moved away meanwhile reads as an empty id.
    delete_rows(ui->tablewidget, this,
                [&](int row) { return model.do_delete(rows->index(row, 0).data().toString()); });
}

void tab_product::keyPressEvent(QKeyEvent* event) {
    if (is_return_key(event)) on_btn_search_clicked();
}
