#include "e2e/e2e_fixture.h"

#include <QApplication>
#include <QLineEdit>
#include <QTabWidget>
#include <QTableWidget>
#include <QTreeWidget>

#include "access/dlg_user_login.h"
#include "app/window.h"
#include "init_resources.h"
#include "master/dlg_company_add.h"
#include "model/list_table.h"
#include "net/http.h"
#include "support/modal.h"
#include "support/screen.h"

e2e_test::e2e_test() : former_base_url(g_http.base_url) {
    init_resources();
    g_http.permissions.clear();
    g_http.rights.clear();
    g_http.current_user = struct_user();
}

e2e_test::~e2e_test() {
    clear_tip();
    g_http.base_url = former_base_url;
}

void e2e_test::serve(const QStringList& options) {
    service = std::make_unique<service_process>(options);
    g_http.base_url = service->base_url();
}

void e2e_test::submit(QWidget* login, const QString& name, const QString& password) {
    child<QLineEdit>(login, "txt_login_name")->setText(name);
    child<QLineEdit>(login, "txt_login_pass")->setText(password);
    click(login, "btn_submit");
}

void e2e_test::log_in(window& shell, const QString& name) {
    dlg_user_login login;
    QObject::connect(&login, &dlg_user_login::signal_init_info, &shell, &window::slot_init_info);
    with_modal([&login] { login.exec(); }, [&name](QWidget* shown) { submit(shown, name, demo_password); });
    ASSERT_EQ(login.result(), int(QDialog::Accepted));
    shell.show();
}

QWidget* e2e_test::front(const window& shell) {
    return child<QTabWidget>(&shell, "main_tab")->currentWidget();
}

QStringList e2e_test::pages(const window& shell) {
    QStringList keys;
    auto* tree = child<QTreeWidget>(&shell, "treewidget");
    for (int group = 0; group < tree->topLevelItemCount(); ++group)
        for (int i = 0; i < tree->topLevelItem(group)->childCount(); ++i)
            keys.append(tree->topLevelItem(group)->child(i)->text(2));
    return keys;
}

QTableWidget* e2e_test::table(const QWidget* screen) {
    return child<QTableWidget>(screen, "tablewidget");
}

QStringList e2e_test::column(const QWidget* screen, int index) {
    QStringList texts;
    for (int row = 0; row < table(screen)->rowCount(); ++row)
        texts.append(cell_text(table(screen), row, index));
    return texts;
}

void e2e_test::search_name(const QWidget* screen, const QString& name) {
    child<QLineEdit>(screen, "txt_name")->setText(name);
    click(screen, "btn_search");
}

void e2e_test::add_partner(QWidget* tab, const QString& name, const QString& remark) {
    with_modal_of<dlg_company_add>(
        [tab] { click(tab, "btn_add"); },
        [&](dlg_company_add* dialog) {
            child<QLineEdit>(dialog, "txt_name")->setText(name);
            child<QLineEdit>(dialog, "txt_address")->setText(QStringLiteral("云溪路1号"));
            child<QLineEdit>(dialog, "txt_phone")->setText(QStringLiteral("0571-88"));
            child<QLineEdit>(dialog, "txt_remark")->setText(remark);
            click(dialog, "btn_save");
        });
}
