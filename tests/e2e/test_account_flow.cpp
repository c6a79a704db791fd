#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QCryptographicHash>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QNetworkAccessManager>
#include <QNetworkCookieJar>
#include <QPixmap>
#include <QRadioButton>
#include <QTableWidget>
#include <QTest>
#include <QTreeWidget>

#include "access/dlg_permission.h"
#include "access/dlg_search_user.h"
#include "access/dlg_user_add.h"
#include "access/dlg_user_login.h"
#include "access/dlg_user_reg.h"
#include "app/window.h"
#include "e2e/e2e_fixture.h"
#include "net/http.h"
#include "support/modal.h"
#include "support/screen.h"

namespace {

/** Who signs up, and what for. */
struct newcomer {
    QString company = QStringLiteral("霁月&company=仓储 有限公司");
    QString username = QStringLiteral("moon_admin");
    QString mobile = QStringLiteral("15400009001");
    QString email = QStringLiteral("moon@example.com");
};

class account_flow : public e2e_test {
protected:
    /** The picture cannot be read by a program: the service is told behind its back what stands on it. */
    void know_captcha() {
        const auto cookies = g_http.findChild<QNetworkAccessManager*>()->cookieJar()->cookiesForUrl(
            QUrl(g_http.base_url + QStringLiteral("user_reg/do_reg")));
        ASSERT_EQ(cookies.size(), 1);
        const QByteArray code =
            QCryptographicHash::hash(cookies.first().value() + "\nknown", QCryptographicHash::Sha256).toHex();
        service->change_database(QByteArray("UPDATE captcha SET code_hash = '" + code +
                                            "' WHERE made_at = (SELECT max(made_at) FROM captcha)")
                                     .constData());
    }

    static void fill(QWidget* form, const newcomer& who) {
        const QPair<const char*, QString> fields[] = {{"txt_company", who.company},
                                                      {"txt_phone", QStringLiteral("010-12345678")},
                                                      {"txt_address", QStringLiteral("云溪路 9 号")},
                                                      {"txt_username", who.username},
                                                      {"txt_password", demo_password},
                                                      {"txt_password2", demo_password},
                                                      {"txt_realname", QStringLiteral("白露")},
                                                      {"txt_mobile", who.mobile},
                                                      {"txt_email", who.email},
                                                      {"txt_captcha", QStringLiteral(" Known ")}};
        for (const auto& [name, text] : fields)
            child<QLineEdit>(form, name)->setText(text);
    }

    /** Fills the form in and submits it; the box that comes is expected to read so. */
    static void submit_form(QWidget* form, const newcomer& who, const QString& expected) {
        fill(form, who);
        with_modal_of<QMessageBox>([form] { click(form, "btn_submit"); },
                                   [&expected](QMessageBox* box) {
                                       EXPECT_EQ(box->windowTitle(), QStringLiteral("提示"));
                                       EXPECT_EQ(box->text(), expected);
                                       box->button(QMessageBox::Ok)->click();
                                   });
    }

    /** Opens the sign-up from the login dialog. */
    void with_sign_up(const std::function<void(dlg_user_reg*)>& drive) {
        dlg_user_login login;
        with_modal([&login] { login.exec(); },
                   [&](QWidget* shown) {
                       with_modal_of<dlg_user_reg>([shown] { click(shown, "btn_reg"); }, drive);
                       EXPECT_TRUE(shown->isVisible());
                       shown->close();
                   });
    }

    void sign_up(const newcomer& who) {
        with_sign_up([&](dlg_user_reg* form) {
            know_captcha();
            submit_form(form, who, QStringLiteral("注册成功，请使用帐号进行登录"));
        });
    }

    /** Adds an ordinary user through the dialog that "添加" opens. */
    static void add_user(QWidget* tab, const QString& name, const QString& mobile) {
        with_modal_of<dlg_user_add>(
            [tab] { click(tab, "btn_add"); },
            [&](dlg_user_add* dialog) {
                child<QLineEdit>(dialog, "txt_username")->setText(name);
                child<QLineEdit>(dialog, "txt_realname")->setText(QStringLiteral("谷雨"));
                child<QLineEdit>(dialog, "txt_password")->setText(demo_password);
                child<QLineEdit>(dialog, "txt_password2")->setText(demo_password);
                child<QLineEdit>(dialog, "txt_mobile")->setText(mobile);
                child<QLineEdit>(dialog, "txt_email")->setText(name + QStringLiteral("@example.com"));
                click(dialog, "btn_submit");
            });
    }

    /** Opens the grants of the user in the current row and sets the boxes of these rights, "page right". */
    static void grant(QWidget* tab, const QStringList& rights) {
        with_modal_of<dlg_permission>([tab] { click(tab, "btn_grant"); },
                                      [&](dlg_permission* dialog) {
                                          auto* tree = child<QTreeWidget>(dialog, "treewidget");
                                          for (const QString& entry : rights) {
                                              const QStringList words = entry.split(QLatin1Char(' '));
                                              const auto pages = tree->findItems(
                                                  words.at(0), Qt::MatchExactly | Qt::MatchRecursive, 2);
                                              ASSERT_EQ(pages.size(), 1) << entry.toStdString();
                                              for (int i = 0; i < pages.first()->childCount(); ++i)
                                                  if (pages.first()->child(i)->text(2) == words.at(1))
                                                      pages.first()->child(i)->setCheckState(0, Qt::Checked);
                                          }
                                          click(dialog, "btn_close");
                                      });
    }
};

} // namespace

TEST_F(account_flow, a_new_company_signs_up_grants_and_its_user_sees_exactly_what_was_granted) {
    serve();
    const newcomer who;
    sign_up(who);
    {
        window shell;
        log_in(shell, who.username);
        EXPECT_EQ(g_http.current_user.type, 1);
        for (const char* page : {"company_supplier", "emp", "product", "warehouse"}) {
            click_navigation(shell, QLatin1String(page));
            EXPECT_EQ(table(front(shell))->rowCount(), 0) << page << ": a new company has nothing";
        }
        click_navigation(shell, QStringLiteral("user"));
        QWidget* tab = front(shell);
        EXPECT_EQ(column(tab, 1), QStringList{who.username});
        EXPECT_EQ(column(tab, 3), QStringList{QStringLiteral("管理员")});
        add_user(tab, QStringLiteral("moon_keeper"), QStringLiteral("15400009002"));
        ASSERT_EQ(column(tab, 1).value(0), QStringLiteral("moon_keeper"));
        click_row(table(tab), 0);
        grant(tab, {QStringLiteral("warehouse search"), QStringLiteral("warehouse add"),
                    QStringLiteral("emp search"), QStringLiteral("dept edit")});
    }
    window shell;
    log_in(shell, QStringLiteral("moon_keeper"));
    EXPECT_EQ(g_http.current_user.type, 2);
    EXPECT_EQ(pages(shell),
              (QStringList{QStringLiteral("warehouse"), QStringLiteral("dept"), QStringLiteral("emp")}));
    EXPECT_EQ(g_http.rights.value(QStringLiteral("warehouse")),
              (QStringList{QStringLiteral("search"), QStringLiteral("add")}));
    EXPECT_EQ(g_http.rights.value(QStringLiteral("emp")), QStringList{QStringLiteral("search")});
    EXPECT_EQ(g_http.rights.value(QStringLiteral("dept")), QStringList{QStringLiteral("edit")});

    click_navigation(shell, QStringLiteral("warehouse"));
    EXPECT_TRUE(front(shell)->isEnabled());
    click_navigation(shell, QStringLiteral("dept"));
    EXPECT_FALSE(front(shell)->isEnabled()) << "edit without search: the page is grey";
    // What was not granted is refused by the service, whatever is sent.
    EXPECT_EQ(g_http.post_raw(QStringLiteral("wms_emp/do_delete"), QStringLiteral("id=1")), "0");
    EXPECT_TRUE(
        g_http.post_object(QStringLiteral("wms_product/get_page"), QStringLiteral("&page_num=1&page_size=20"))
            .value(QLatin1String("list"))
            .toArray()
            .isEmpty());
    EXPECT_EQ(service->stop(), 0);
    EXPECT_EQ(service->check(), 0);
}

TEST_F(account_flow, what_is_taken_is_said_before_anything_is_made) {
    serve();
    const newcomer first;
    sign_up(first);
    newcomer second;
    second.company = QStringLiteral("另一家公司");
    with_sign_up([&](dlg_user_reg* form) {
        know_captcha();
        fill(form, second);
        click(form, "btn_submit");
        expect_tip(child<QLineEdit>(form, "txt_username"), QStringLiteral("用户名已存在"));
        second.username = QStringLiteral("star_admin");
        fill(form, second);
        click(form, "btn_submit");
        expect_tip(child<QLineEdit>(form, "txt_mobile"), QStringLiteral("联系人手机已存在"));
        second.mobile = QStringLiteral("15400009003");
        fill(form, second);
        click(form, "btn_submit");
        expect_tip(child<QLineEdit>(form, "txt_email"), QStringLiteral("邮箱已存在"));
        click(form, "btn_cancel");
    });
    const newcomer again;
    with_sign_up([&](dlg_user_reg* form) {
        know_captcha();
        fill(form, again);
        click(form, "btn_submit");
        expect_tip(child<QLineEdit>(form, "txt_company"), QStringLiteral("公司名称已存在"));
        click(form, "btn_cancel");
    });
}

TEST_F(account_flow, the_picture_is_a_new_one_at_every_press_and_a_wrong_answer_is_told) {
    serve();
    with_sign_up([&](dlg_user_reg* form) {
        auto* picture = child<QLabel>(form, "lbl_captcha");
        const auto shown = [picture] { return picture->pixmap(Qt::ReturnByValue).toImage(); };
        const QImage first = shown();
        EXPECT_GT(first.width(), 60);
        QTest::mousePress(picture, Qt::LeftButton);
        EXPECT_NE(shown(), first);
        fill(form, newcomer());
        click(form, "btn_submit");
        expect_tip(picture, QStringLiteral("验证码错误"));
        click(form, "btn_cancel");
    });
}

TEST_F(account_flow, a_user_is_found_edited_disabled_picked_and_deleted) {
    serve();
    window shell;
    log_in(shell, QStringLiteral("demo_admin"));
    click_navigation(shell, QStringLiteral("user"));
    QWidget* tab = front(shell);
    const int before = table(tab)->rowCount();
    add_user(tab, QStringLiteral("flow_user"), QStringLiteral("15400009010"));
    EXPECT_EQ(table(tab)->rowCount(), before + 1);
    child<QLineEdit>(tab, "txt_username")->setText(QStringLiteral("FLOW"));
    click(tab, "btn_search");
    ASSERT_EQ(column(tab, 1), QStringList{QStringLiteral("flow_user")});
    EXPECT_EQ(column(tab, 7), QStringList{QString()}) << "never logged in";

    // A new password, as typed, works at the next login.
    click_row(table(tab), 0);
    with_modal_of<dlg_user_add>([tab] { click(tab, "btn_edit"); },
                                [](dlg_user_add* dialog) {
                                    const QString changed = QStringLiteral("neu&id=7+%");
                                    child<QLineEdit>(dialog, "txt_password")->setText(changed);
                                    child<QLineEdit>(dialog, "txt_password2")->setText(changed);
                                    click(dialog, "btn_submit");
                                });
    {
        dlg_user_login login;
        login.show();
        submit(&login, QStringLiteral("flow_user"), QStringLiteral("neu&id=7+%"));
        EXPECT_EQ(g_http.current_user.username, QStringLiteral("flow_user"));
        submit(&login, QStringLiteral("demo_admin"), demo_password);
    }

    dlg_search_user picker(&shell);
    struct_user picked;
    QObject::connect(&picker, &dlg_search_user::signal_user_selected, &picker,
                     [&picked](const struct_user& user) { picked = user; });
    picker.show();
    child<QLineEdit>(&picker, "txt_username")->setText(QStringLiteral("flow_user"));
    click(&picker, "btn_search");
    ASSERT_EQ(table(&picker)->rowCount(), 1);
    click_row(table(&picker), 0);
    click(&picker, "btn_choose");
    EXPECT_EQ(picked.id, column(tab, 0).value(0));

    click(tab, "btn_search");
    EXPECT_FALSE(column(tab, 7).value(0).isEmpty()) << "has logged in";
    click_row(table(tab), 0);
    with_modal_of<dlg_user_add>([tab] { click(tab, "btn_edit"); },
                                [](dlg_user_add* dialog) {
                                    child<QRadioButton>(dialog, "radio_off")->setChecked(true);
                                    click(dialog, "btn_submit");
                                });
    EXPECT_EQ(column(tab, 6), QStringList{QStringLiteral("停用")});
    click_row(table(tab), 0);
    with_question([tab] { click(tab, "btn_delete"); }, QStringLiteral("确认删除"),
                  QStringLiteral("确认删除吗？"), QMessageBox::Yes);
    EXPECT_EQ(table(tab)->rowCount(), 0);
    click(tab, "btn_search");
    EXPECT_EQ(table(tab)->rowCount(), 0);
    EXPECT_EQ(service->stop(), 0);
    EXPECT_EQ(service->check(), 0);
}

TEST_F(account_flow, the_last_administrator_stays_whatever_is_sent) {
    serve();
    window shell;
    log_in(shell, QStringLiteral("demo_admin"));
    const QString own = g_http.current_user.id;
    EXPECT_EQ(g_http.post_raw(QStringLiteral("user/do_delete"), QStringLiteral("id=") + own), "0");
    EXPECT_EQ(g_http.post_raw(QStringLiteral("user/do_edit"),
                              QStringLiteral("&realname=x&mobile=15400001001&email=demo_admin@example.com"
                                             "&state=2&id=") +
                                  own),
              "0");
    click_navigation(shell, QStringLiteral("user"));
    EXPECT_TRUE(column(front(shell), 1).contains(QStringLiteral("demo_admin")));
}
