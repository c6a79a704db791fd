#include "master/tab_company.h"

#include <QCursor>

#include "master/dlg_company_add.h"
#include "model/answers.h"
#include "model/model_company.h"
#include "ui_tab_company.h"
#include "widgets/fields.h"
#include "widgets/keys.h"
#include "widgets/list_page.h"
#include "widgets/modes.h"
#include "widgets/rights.h"
#include "widgets/selection.h"

namespace {

QString kind_word(int type) {
    static const QHash<int, QString> words = {
        {1, QStringLiteral("供应商")}, {2, QStringLiteral("客户")}, {3, QStringLiteral("其他单位")}};
    return words.value(type);
}

} // namespace

tab_company::tab_company(QWidget* parent, int kind)
    : QWidget(parent), ui(std::make_unique<Ui::tab_company>()), type(kind) {
    ui->setupUi(this);
    connect(ui->tablewidget, &QTableWidget::customContextMenuRequested, this,
            [this] { menu.menu->popup(QCursor::pos()); });
    connect(ui->btn_add, &QPushButton::clicked, this, &tab_company::slot_company_to_add);
    connect(ui->btn_edit, &QPushButton::clicked, this, &tab_company::slot_company_to_edit);
    connect(ui->btn_delete, &QPushButton::clicked, this, &tab_company::slot_company_to_delete);
    page_bar =
        add_page_bar(this, ui->verticalLayout, ui->tablewidget, QStringLiteral("company"), g_rows_of_a_tab);
    menu = make_context_menu<tab_company>(this, ui->tablewidget,
                                          {{QStringLiteral("查询"), &tab_company::on_btn_search_clicked},
                                           {QStringLiteral("添加"), &tab_company::slot_company_to_add},
                                           {QStringLiteral("编辑"), &tab_company::slot_company_to_edit},
                                           {QStringLiteral("删除"), &tab_company::slot_company_to_delete}});
    enable_by_rights();
}

tab_company::~tab_company() = default;

/**
 * The rights govern the menu entries and not the buttons. All three kinds' rights are applied in this order,
 * whichever kind the tab shows: the last has the last word, and each that grants the search loads the list.
 */
void tab_company::enable_by_rights() {
    enable_entries(this, menu.actions);
    for (const QString& page : {QStringLiteral("company_supplier"), QStringLiteral("company_client"),
                                QStringLiteral("company_other")})
        apply_rights(this, page, &tab_company::on_btn_search_clicked, list_rights<tab_company>());
}

void tab_company::on_btn_search_clicked() {
    search.type = type;
    search.name = field_text(ui->txt_name);
    search.address = field_text(ui->txt_address);
    search.bank = field_text(ui->txt_bank);
    search.account = field_text(ui->txt_account);
    search.remark = field_text(ui->txt_remark);
    emit signal_send_args(model_company::search_args(search));
    page_bar->page_first();
}

void tab_company::slot_company_to_add() {
    dlg_company_add dialog(this, mode_add, type);
    connect(&dialog, &dlg_company_add::signal_company_do_add, this, &tab_company::slot_company_do_add);
    dialog.exec();
}

void tab_company::slot_company_do_add(struct_company company) {
    model_company model(ui->tablewidget);
    if (take_added(company, model.do_add(company))) model.add_row(company);
}

void tab_company::slot_company_to_edit() {
    if (!has_current_row(ui->tablewidget)) return;
    const auto company =
        read_record(ui->tablewidget, ui->tablewidget->currentRow(), model_company::columns());
    dlg_company_add dialog(this, mode_edit, type);
    dialog.setWindowTitle(QStringLiteral("编辑") + kind_word(type));
    connect(this, &tab_company::signal_company_to_edit, &dialog, &dlg_company_add::slot_company_to_edit);
    connect(&dialog, &dlg_company_add::signal_company_do_edit, this, &tab_company::slot_company_do_edit);
    emit signal_company_to_edit(company);
    dialog.exec();
}

void tab_company::slot_company_do_edit(struct_company company) {
    model_company(ui->tablewidget).do_edit(company);
}

void tab_company::slot_company_to_delete() {
    model_company model(ui->tablewidget);
    const QAbstractItemModel* rows = ui->tablewidget->model();
    delete_rows(ui->tablewidget, this, [&](int row) {
        // A row that has moved away meanwhile reads as id 0.
        return model.do_delete(QString::number(rows->index(row, 0).data().toInt(), 10));
    });
}

void tab_company::keyPressEvent(QKeyEvent* event) {
    if (is_return_key(event)) on_btn_search_clicked();
}
