#include <QAbstractButton>
#include <QApplication>
#include <QLineEdit>
#include <QMessageBox>
#include <QTabWidget>
#include <QTreeWidget>

#include "access/dlg_user_login.h"
#include "app/navigation.h"
#include "app/startup.h"
#include "app/window.h"
#include "e2e/e2e_fixture.h"
#include "net/http.h"
#include "support/modal.h"
#include "support/screen.h"

namespace {

class login_flow : public e2e_test {
protected:
    /** Tries to log in; the warning that comes is expected to read so. */
    static void expect_warning(const QString& name, const QString& password, const QString& text) {
        dlg_user_login login;
        login.show();
        with_modal_of<QMessageBox>([&] { submit(&login, name, password); },
                                   [&text](QMessageBox* box) {
                                       EXPECT_EQ(box->text(), text);
                                       box->button(QMessageBox::Yes)->click();
                                   });
        EXPECT_TRUE(login.isVisible());
        EXPECT_TRUE(g_http.current_user.username.isEmpty());
    }

    const QString refused = QStringLiteral("用户名、密码错误或帐号已停用");
};

} // namespace

TEST_F(login_flow, an_administrator_gets_every_page) {
    serve();
    window shell;
    log_in(shell, QStringLiteral("demo_admin"));
    EXPECT_EQ(g_http.current_user.type, 1);
    EXPECT_FALSE(g_http.current_user.password.isEmpty());
    EXPECT_NE(g_http.current_user.password, demo_password);
    for (const navigation_row& row : navigation_rows())
        EXPECT_NE(navigation_item(shell, row.key), nullptr) << row.key.toStdString();
    const QStringList all{QStringLiteral("search"), QStringLiteral("add"), QStringLiteral("edit"),
                          QStringLiteral("delete")};
    for (const char* page : {"company_supplier", "company_client", "company_other"})
        for (const QString& right : all)
            EXPECT_TRUE(g_http.rights[QLatin1String(page)].contains(right)) << page << right.toStdString();
    EXPECT_EQ(service->stop(), 0);
    EXPECT_EQ(service->check(), 0);
}

TEST_F(login_flow, wrong_password_and_unknown_name_are_refused_alike) {
    serve();
    expect_warning(QStringLiteral("demo_admin"), QStringLiteral("Tavrok-2025"), refused);
    expect_warning(QStringLiteral("nobody_here"), demo_password, refused);
    expect_warning(QStringLiteral("DEMO_ADMIN"), demo_password, refused);
    window shell;
    log_in(shell, QStringLiteral("demo_admin"));
    EXPECT_EQ(g_http.current_user.username, QStringLiteral("demo_admin"));
}

TEST_F(login_flow, a_disabled_account_is_refused_as_a_wrong_password_is) {
    serve();
    expect_warning(QStringLiteral("demo_gone"), demo_password, refused);
    service->change_database("UPDATE app_user SET state = 2 WHERE username = 'demo_clerk'");
    expect_warning(QStringLiteral("demo_clerk"), demo_password, refused);
}

TEST_F(login_flow, without_a_service_the_network_is_blamed) {
    serve();
    service->stop();
    expect_warning(QStringLiteral("demo_admin"), demo_password, QStringLiteral("网络无法连接，请检查网络"));
}

TEST_F(login_flow, a_guest_sees_an_empty_navigation) {
    serve();
    window shell;
    log_in(shell, QStringLiteral("demo_guest"));
    EXPECT_EQ(child<QTreeWidget>(&shell, "treewidget")->topLevelItemCount(), 0);
    EXPECT_TRUE(g_http.rights.isEmpty());
    EXPECT_EQ(child<QTabWidget>(&shell, "main_tab")->count(), 1);
}

TEST_F(login_flow, a_relogin_as_a_clerk_rebuilds_everything) {
    serve();
    window shell;
    log_in(shell, QStringLiteral("demo_admin"));
    open_partner_tabs(shell);
    ASSERT_EQ(child<QTabWidget>(&shell, "main_tab")->count(), 4);
    with_modal([&shell] { shell.slot_relogin(); },
               [](QWidget* login) { submit(login, QStringLiteral("demo_clerk"), demo_password); });
    EXPECT_TRUE(shell.isVisible());
    EXPECT_TRUE(shell.windowTitle().contains(QStringLiteral("demo_clerk")));
    EXPECT_EQ(child<QTabWidget>(&shell, "main_tab")->count(), 1);
    EXPECT_NE(navigation_item(shell, QStringLiteral("company_supplier")), nullptr);
    EXPECT_NE(navigation_item(shell, QStringLiteral("company_other")), nullptr);
    EXPECT_THROW(navigation_item(shell, QStringLiteral("company_client")), std::runtime_error);
    EXPECT_EQ(g_http.rights[QStringLiteral("company_other")], QStringList{QStringLiteral("search")});
    EXPECT_EQ(g_http.rights[QStringLiteral("company_supplier")].size(), 4);
}

TEST_F(login_flow, a_current_client_passes_the_version_gate) {
    serve({QStringLiteral("--oldest-accepted-version"), QStringLiteral("1586696219")});
    with_modal_of<dlg_user_login>([] { EXPECT_EQ(startup(*qApp), 0); },
                                  [](dlg_user_login* login) { login->reject(); });
    EXPECT_TRUE(web.opened.isEmpty());
    qApp->setStyleSheet(QString());
}

TEST_F(login_flow, an_outdated_client_is_sent_to_the_download) {
    serve({QStringLiteral("--oldest-accepted-version"), QStringLiteral("1586696220"),
           QStringLiteral("--download-path"), QStringLiteral("download/tavrok_wms.zip")});
    with_question([] { EXPECT_EQ(startup(*qApp), 0); }, QStringLiteral("Tavrok仓储管理系统(Tavrok_WMS)"),
                  QStringLiteral("检测到新版本，需要更新才能继续登录，确认吗？"), QMessageBox::Yes);
    EXPECT_EQ(web.opened, QList<QUrl>{QUrl(service->base_url() + QStringLiteral("download/tavrok_wms.zip"))});
    qApp->setStyleSheet(QString());
}
