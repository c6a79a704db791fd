#include "master/tab_company.h"

#include <QAction>
#include <QCursor>
#include <QMenu>

#include "master/dlg_company_add.h"
#include "model/model_company.h"
#include "ui_tab_company.h"
#include "widgets/context_menu.h"
#include "widgets/keys.h"
#include "widgets/paging.h"
#include "widgets/rights.h"
#include "widgets/selection.h"

namespace {

constexpr int rows_per_page = 20;

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
            [this] { menu->popup(QCursor::pos()); });
    connect(ui->btn_add, &QPushButton::clicked, this, &tab_company::slot_company_to_add);
    connect(ui->btn_edit, &QPushButton::clicked, this, &tab_company::slot_company_to_edit);
    connect(ui->btn_delete, &QPushButton::clicked, this, &tab_company::slot_company_to_delete);
    page_bar = new paging(this, ui->tablewidget, QStringLiteral("company"), rows_per_page);
    connect(this, &tab_company::signal_send_args, page_bar, &paging::slot_set_args);
    ui->verticalLayout->addWidget(page_bar);
    make_context_menu();
    enable_by_rights();
}

tab_company::~tab_company() = default;

void tab_company::make_context_menu() {
    action_search = new QAction(QStringLiteral("查询"), this);
    action_add = new QAction(QStringLiteral("添加"), this);
    action_edit = new QAction(QStringLiteral("编辑"), this);
    action_delete = new QAction(QStringLiteral("删除"), this);
    connect(action_search, &QAction::triggered, this, &tab_company::on_btn_search_clicked);
    connect(action_add, &QAction::triggered, this, &tab_company::slot_company_to_add);
    connect(action_edit, &QAction::triggered, this, &tab_company::slot_company_to_edit);
    connect(action_delete, &QAction::triggered, this, &tab_company::slot_company_to_delete);
    menu = ::make_context_menu(ui->tablewidget, {action_search, action_add, action_edit, action_delete});
}

/**
 * The rights govern the menu entries and not the buttons. All three kinds' rights are applied in this order,
 * whichever kind the tab shows: the last has the last word, and each that grants the search loads the list.
 */
void tab_company::enable_by_rights() {
    connect(this, &tab_company::signal_enable_search, this, &QWidget::setEnabled);
    connect(this, &tab_company::signal_enable_add, action_add, &QAction::setEnabled);
    connect(this, &tab_company::signal_enable_edit, action_edit, &QAction::setEnabled);
    connect(this, &tab_company::signal_enable_delete, action_delete, &QAction::setEnabled);
    const std::vector<right_signal<tab_company>> rights = {
        {QStringLiteral("search"), &tab_company::signal_enable_search},
        {QStringLiteral("add"), &tab_company::signal_enable_add},
        {QStringLiteral("edit"), &tab_company::signal_enable_edit},
        {QStringLiteral("delete"), &tab_company::signal_enable_delete}};
    for (const QString& page : {QStringLiteral("company_supplier"), QStringLiteral("company_client"),
                                QStringLiteral("company_other")})
        apply_rights(this, page, &tab_company::on_btn_search_clicked, rights);
}

void tab_company::on_btn_search_clicked() {
    search.type = type;
    search.name = ui->txt_name->text().trimmed();
    search.address = ui->txt_address->text().trimmed();
    search.bank = ui->txt_bank->text().trimmed();
    search.account = ui->txt_account->text().trimmed();
    search.remark = ui->txt_remark->text().trimmed();
    emit signal_send_args(model_company::search_args(search));
    page_bar->page_first();
}

void tab_company::slot_company_to_add() {
    dlg_company_add dialog(this, 0, type);
    connect(&dialog, &dlg_company_add::signal_company_do_add, this, &tab_company::slot_company_do_add);
    dialog.exec();
}

void tab_company::slot_company_do_add(struct_company company) {
    model_company model(ui->tablewidget);
    const QJsonObject answer = model.do_add(company);
    if (answer.value(QLatin1String("http_state")).toVariant().toInt() != 1) return;
    company.id = answer.value(QLatin1String("insert_id")).toString();
    company.datetime = answer.value(QLatin1String("datetime")).toVariant().toInt();
    model.add_row(company);
}

void tab_company::slot_company_to_edit() {
    if (!has_current_row(ui->tablewidget)) return;
    const auto company =
        read_record(ui->tablewidget, ui->tablewidget->currentRow(), model_company::columns());
    dlg_company_add dialog(this, 1, type);
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
    for (int row : rows_to_delete(ui->tablewidget, this)) {
        // A row that has moved away meanwhile reads as id 0.
        const int id = rows->index(row, 0).data().toInt();
        if (model.do_delete(QString::number(id, 10))) ui->tablewidget->removeRow(row);
    }
}

void tab_company::keyPressEvent(QKeyEvent* event) {
    if (is_return_key(event)) on_btn_search_clicked();
}
