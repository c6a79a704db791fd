#include <QAction>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QTabWidget>
#include <QTableWidget>
#include <QTest>

#include "app/window.h"
#include "e2e/e2e_fixture.h"
#include "master/dlg_company_add.h"
#include "master/dlg_search_company.h"
#include "net/http.h"
#include "support/modal.h"
#include "support/screen.h"

namespace {

/** Names and texts that the protocol could trip over. */
const QString awkward = QStringLiteral("甲&x=乙+50%=\"'<b>\\ ;&y");

class partner_flow : public e2e_test {
protected:
    void open(const QString& user, const QString& page) {
        serve();
        log_in(shell, user);
        click_navigation(shell, page);
        tab = front(shell);
    }

    static void press(const QWidget* screen, const char* label) {
        QTest::mousePress(child<QLabel>(screen, label), Qt::LeftButton);
    }

    void answer_delete(QMessageBox::StandardButton answer) {
        with_question([this] { click(tab, "btn_delete"); }, QStringLiteral("确认删除"),
                      QStringLiteral("确认删除吗？"), answer);
    }

    window shell;
    QWidget* tab = nullptr;
};

} // namespace

TEST_F(partner_flow, lists_are_paged) {
    open(QStringLiteral("demo_admin"), QStringLiteral("company_client"));
    const QStringList first = column(tab, 0);
    ASSERT_EQ(first.size(), 20);
    EXPECT_EQ(child<QLineEdit>(tab, "txt_page_num")->text(), QStringLiteral("1"));
    press(tab, "lbl_next");
    const QStringList second = column(tab, 0);
    EXPECT_GE(second.size(), 10);
    for (const QString& id : second)
        EXPECT_FALSE(first.contains(id));
    press(tab, "lbl_pre");
    EXPECT_EQ(column(tab, 0), first);
    press(tab, "lbl_last");
    EXPECT_NE(column(tab, 0), first);
    press(tab, "lbl_first");
    EXPECT_EQ(column(tab, 0), first);
    for (const QString& type : column(tab, 10))
        EXPECT_EQ(type, QStringLiteral("2"));
}

TEST_F(partner_flow, a_partner_is_added_found_edited_and_deleted) {
    open(QStringLiteral("demo_admin"), QStringLiteral("company_supplier"));
    add_partner(tab, awkward, QStringLiteral("备注&phone=1"));
    EXPECT_EQ(column(tab, 1).value(0), awkward);
    EXPECT_EQ(table(tab)->rowCount(), 21) << "on top of the full page";

    search_name(tab, QStringLiteral("乙+50%"));
    ASSERT_EQ(column(tab, 1), QStringList{awkward});
    EXPECT_EQ(column(tab, 9), QStringList{QStringLiteral("备注&phone=1")});
    EXPECT_EQ(column(tab, 2), QStringList{QStringLiteral("0571-88")});

    click_row(table(tab), 0);
    with_modal_of<dlg_company_add>(
        [this] { click(tab, "btn_edit"); },
        [](dlg_company_add* dialog) {
            child<QLineEdit>(dialog, "txt_phone")->setText(QStringLiteral("021-66"));
            click(dialog, "btn_save");
        });
    click(tab, "btn_search");
    EXPECT_EQ(column(tab, 2), QStringList{QStringLiteral("021-66")});
    EXPECT_EQ(column(tab, 9), QStringList{QStringLiteral("备注&phone=1")});

    click_row(table(tab), 0);
    answer_delete(QMessageBox::No);
    EXPECT_EQ(table(tab)->rowCount(), 1);
    answer_delete(QMessageBox::Yes);
    EXPECT_EQ(table(tab)->rowCount(), 0);
    click(tab, "btn_search");
    EXPECT_EQ(table(tab)->rowCount(), 0);
    EXPECT_EQ(service->stop(), 0);
    EXPECT_EQ(service->check(), 0);
}

TEST_F(partner_flow, several_are_deleted_at_once) {
    open(QStringLiteral("demo_admin"), QStringLiteral("company_other"));
    for (const char* name : {"流程一", "流程二", "流程三"})
        add_partner(tab, QString::fromUtf8(name));
    search_name(tab, QStringLiteral("流程"));
    ASSERT_EQ(column(tab, 1),
              (QStringList{QStringLiteral("流程三"), QStringLiteral("流程二"), QStringLiteral("流程一")}));
    click_row(table(tab), 0);
    click_row(table(tab), 2, Qt::ControlModifier);
    answer_delete(QMessageBox::Yes);
    EXPECT_EQ(column(tab, 1), QStringList{QStringLiteral("流程二")});
    click(tab, "btn_search");
    EXPECT_EQ(column(tab, 1), QStringList{QStringLiteral("流程二")});
}

TEST_F(partner_flow, clearing_a_field_keeps_what_the_service_has) {
    open(QStringLiteral("demo_admin"), QStringLiteral("company_other"));
    add_partner(tab, QStringLiteral("清空备注"), QStringLiteral("旧备注"));
    search_name(tab, QStringLiteral("清空备注"));
    click_row(table(tab), 0);
    with_modal_of<dlg_company_add>([this] { click(tab, "btn_edit"); },
                                   [](dlg_company_add* dialog) {
                                       child<QLineEdit>(dialog, "txt_remark")->clear();
                                       click(dialog, "btn_save");
                                   });
    EXPECT_EQ(column(tab, 9), QStringList{QString()});
    click(tab, "btn_search");
    EXPECT_EQ(column(tab, 9), QStringList{QStringLiteral("旧备注")});
}

TEST_F(partner_flow, a_partner_is_picked) {
    open(QStringLiteral("demo_admin"), QStringLiteral("company_supplier"));
    dlg_search_company picker(&shell, 1, 3);
    struct_company picked;
    QObject::connect(&picker, &dlg_search_company::signal_company_selected, &picker,
                     [&picked](const struct_company& company) { picked = company; });
    picker.show();
    ASSERT_EQ(table(&picker)->rowCount(), 10);
    EXPECT_EQ(column(&picker, 0), column(tab, 0).mid(0, 10));
    click_row(table(&picker), 3);
    click(&picker, "btn_choose");
    EXPECT_EQ(picked.id, column(tab, 0).at(3));
    EXPECT_EQ(picked.name, column(tab, 1).at(3));
    EXPECT_EQ(picker.result(), int(QDialog::Accepted));
}

TEST_F(partner_flow, a_clerk_may_what_is_granted_whatever_the_screen_shows) {
    open(QStringLiteral("demo_clerk"), QStringLiteral("company_supplier"));
    EXPECT_TRUE(tab->isEnabled());
    add_partner(tab, QStringLiteral("职员新增"));
    search_name(tab, QStringLiteral("职员新增"));
    EXPECT_EQ(column(tab, 1), QStringList{QStringLiteral("职员新增")});

    click_navigation(shell, QStringLiteral("company_other"));
    tab = front(shell);
    ASSERT_EQ(table(tab)->rowCount(), 20);
    add_partner(tab, QStringLiteral("职员不可"));
    EXPECT_EQ(table(tab)->rowCount(), 20) << "the service refuses, the list stays";
    const QString kept = column(tab, 0).at(0);
    click_row(table(tab), 0);
    answer_delete(QMessageBox::Yes);
    EXPECT_EQ(column(tab, 0).at(0), kept);
    const QJsonObject refused = g_http.post_object(QStringLiteral("wms_company/get_page"),
                                                   QStringLiteral("type=2&page_num=1&page_size=20"));
    EXPECT_TRUE(refused.value(QLatin1String("list")).toArray().isEmpty());
}

TEST_F(partner_flow, an_expired_session_is_renewed_and_the_next_click_works) {
    open(QStringLiteral("demo_admin"), QStringLiteral("company_supplier"));
    const QStringList before = column(tab, 0);
    service->change_database("DELETE FROM session");
    click(tab, "btn_search");
    EXPECT_EQ(table(tab)->rowCount(), 0);
    EXPECT_EQ(child<QLabel>(tab, "lbl_total")->text(), QStringLiteral("共0页/0条记录"));
    EXPECT_FALSE(modal_shown());
    click(tab, "btn_search");
    EXPECT_EQ(column(tab, 0), before);
}

TEST_F(partner_flow, an_add_into_an_expired_session_is_not_repeated) {
    open(QStringLiteral("demo_admin"), QStringLiteral("company_supplier"));
    service->change_database("DELETE FROM session");
    add_partner(tab, QStringLiteral("过期新增"));
    EXPECT_EQ(table(tab)->rowCount(), 20);
    search_name(tab, QStringLiteral("过期新增"));
    EXPECT_EQ(table(tab)->rowCount(), 0);
    add_partner(tab, QStringLiteral("过期新增"));
    click(tab, "btn_search");
    EXPECT_EQ(column(tab, 1), QStringList{QStringLiteral("过期新增")});
}

TEST_F(partner_flow, without_a_relogin_secret_the_lists_stay_empty_and_nothing_is_said) {
    open(QStringLiteral("demo_admin"), QStringLiteral("company_supplier"));
    service->change_database("DELETE FROM relogin_secret");
    service->change_database("DELETE FROM session");
    for (int i = 0; i < 2; ++i) {
        click(tab, "btn_search");
        EXPECT_EQ(table(tab)->rowCount(), 0);
        EXPECT_FALSE(modal_shown());
    }
}

TEST_F(partner_flow, a_service_that_is_gone_empties_the_list) {
    open(QStringLiteral("demo_admin"), QStringLiteral("company_supplier"));
    service->stop();
    click(tab, "btn_search");
    EXPECT_EQ(table(tab)->rowCount(), 0);
    EXPECT_FALSE(modal_shown());
}
