#include <QApplication>
#include <QCryptographicHash>
#include <QFile>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

#include "access/dlg_user_login.h"
#include "access/dlg_user_reg.h"
#include "gui/app/app_fixture.h"
#include "net/http.h"
#include "support/modal.h"
#include "support/screen.h"

namespace {

class login_test : public app_test {
protected:
    void show_with_focus(dlg_user_login& dialog, QWidget* focus) {
        dialog.show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
        focus->setFocus();
        ASSERT_EQ(QApplication::focusWidget(), focus);
    }

    static void fill(const dlg_user_login& dialog, const QString& name, const QString& password) {
        child<QLineEdit>(&dialog, "txt_login_name")->setText(name);
        child<QLineEdit>(&dialog, "txt_login_pass")->setText(password);
    }

    static void expect_warning(const std::function<void()>& act, const QString& text) {
        with_modal_of<QMessageBox>(act, [&](QMessageBox* box) {
            EXPECT_EQ(box->windowTitle(), QStringLiteral("提示"));
            EXPECT_EQ(box->text(), text);
            EXPECT_EQ(box->icon(), QMessageBox::Warning);
            EXPECT_EQ(box->standardButtons(), QMessageBox::StandardButtons(QMessageBox::Yes));
            box->button(QMessageBox::Yes)->click();
        });
    }

    static QByteArray md5(const QByteArray& bytes) {
        return QCryptographicHash::hash(bytes, QCryptographicHash::Md5).toHex();
    }

    const QString refused_text = QStringLiteral("用户名、密码错误或帐号已停用");
    const QString no_network_text = QStringLiteral("网络无法连接，请检查网络");
};

} // namespace

TEST_F(login_test, has_the_stated_texts_and_properties) {
    const dlg_user_login dialog;
    EXPECT_EQ(dialog.windowTitle(), QStringLiteral("Tavrok仓储管理系统(Tavrok_WMS) - 用户登陆"));
    // The toolkit adds title and system menu to whatever has a title bar button.
    EXPECT_EQ(dialog.windowFlags() & ~(Qt::WindowTitleHint | Qt::WindowSystemMenuHint),
              Qt::WindowFlags(Qt::Dialog | Qt::WindowMinimizeButtonHint | Qt::WindowCloseButtonHint));
    EXPECT_EQ(dialog.minimumSize(), QSize(426, 275));
    EXPECT_EQ(dialog.maximumSize(), QSize(426, 275));
    EXPECT_EQ(dialog.size(), QSize(426, 275));
    EXPECT_EQ(child<QGroupBox>(&dialog, "groupBox")->title(), QStringLiteral("用户登录"));
    EXPECT_EQ(child<QLabel>(&dialog, "label_login_name")->text(), QStringLiteral("用户名"));
    EXPECT_EQ(child<QLabel>(&dialog, "label_login_pass")->text(), QStringLiteral("密码"));
    EXPECT_EQ(child<QPushButton>(&dialog, "btn_submit")->text(), QStringLiteral("确认"));
    EXPECT_EQ(child<QPushButton>(&dialog, "btn_close")->text(), QStringLiteral("关闭"));
    EXPECT_EQ(child<QPushButton>(&dialog, "btn_reg")->text(), QStringLiteral("注册"));

    const auto* name = child<QLineEdit>(&dialog, "txt_login_name");
    EXPECT_EQ(name->placeholderText(), QStringLiteral("请输入账号"));
    EXPECT_TRUE(name->isClearButtonEnabled());
    EXPECT_EQ(name->echoMode(), QLineEdit::Normal);
    EXPECT_TRUE(name->text().isEmpty());
    const auto* password = child<QLineEdit>(&dialog, "txt_login_pass");
    EXPECT_EQ(password->placeholderText(), QStringLiteral("请输入密码"));
    EXPECT_TRUE(password->isClearButtonEnabled());
    EXPECT_EQ(password->echoMode(), QLineEdit::Password);
    EXPECT_EQ(password->minimumWidth(), 160);
    EXPECT_TRUE(password->text().isEmpty());
}

TEST_F(login_test, banner_links_to_the_service) {
    const dlg_user_login dialog;
    const auto* banner = child<QLabel>(&dialog, "lbl_img");
    EXPECT_EQ(banner->text(),
              QStringLiteral("<a href='%1'><img src=':/img/logo.jpg'></a>").arg(server.base_url()));
    EXPECT_TRUE(banner->hasScaledContents());
    EXPECT_TRUE(banner->openExternalLinks());
}

TEST_F(login_test, a_click_on_the_banner_opens_the_browser_once) {
    dlg_user_login dialog;
    dialog.show();
    auto* banner = child<QLabel>(&dialog, "lbl_img");
    QTest::mouseClick(banner, Qt::LeftButton, Qt::NoModifier, QPoint(40, banner->height() / 2));
    EXPECT_EQ(web.opened, QList<QUrl>{QUrl(server.base_url())});
}

TEST_F(login_test, the_banner_opens_links_itself_and_by_its_slot) {
    dlg_user_login dialog;
    auto* banner = child<QLabel>(&dialog, "lbl_img");
    EXPECT_TRUE(banner->openExternalLinks());
    emit banner->linkActivated(QStringLiteral("https://partner.example/a"));
    EXPECT_EQ(web.opened, QList<QUrl>{QUrl(QStringLiteral("https://partner.example/a"))});
}

TEST_F(login_test, tab_goes_from_name_to_password_to_submit_to_close) {
    dlg_user_login dialog;
    show_with_focus(dialog, child<QLineEdit>(&dialog, "txt_login_name"));
    for (const char* next : {"txt_login_pass", "btn_submit", "btn_close"}) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        EXPECT_EQ(QApplication::focusWidget()->objectName(), QLatin1String(next));
    }
}

TEST_F(login_test, the_name_has_the_focus_at_first) {
    dlg_user_login dialog;
    dialog.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
    EXPECT_EQ(QApplication::focusWidget(), child<QLineEdit>(&dialog, "txt_login_name"));
}

TEST_F(login_test, nothing_is_cut_off_with_the_style_sheet) {
    QFile sheet(QStringLiteral(":/qss/white.qss"));
    ASSERT_TRUE(sheet.open(QIODevice::ReadOnly));
    qApp->setStyleSheet(QString::fromLatin1(sheet.readAll()));
    dlg_user_login dialog;
    dialog.show();
    EXPECT_EQ(dialog.size(), QSize(426, 275));
    expect_nothing_cut(&dialog);
    EXPECT_GE(child<QLabel>(&dialog, "lbl_img")->width(), 400);
    EXPECT_GE(child<QLabel>(&dialog, "lbl_img")->height(), 90);
}

TEST_F(login_test, an_empty_name_gets_a_tip_and_sends_nothing) {
    dlg_user_login dialog;
    dialog.show();
    fill(dialog, QStringLiteral("  "), QString());
    click(&dialog, "btn_submit");
    expect_tip(child<QLineEdit>(&dialog, "txt_login_name"), QStringLiteral("请输入帐号"));
    EXPECT_TRUE(dialog.isVisible());
    EXPECT_TRUE(server.requests().isEmpty());
}

TEST_F(login_test, an_empty_password_gets_a_tip_and_sends_nothing) {
    dlg_user_login dialog;
    dialog.show();
    fill(dialog, QStringLiteral("boss"), QStringLiteral(" "));
    click(&dialog, "btn_submit");
    expect_tip(child<QLineEdit>(&dialog, "txt_login_pass"), QStringLiteral("请输入密码"));
    EXPECT_TRUE(dialog.isVisible());
    EXPECT_TRUE(server.requests().isEmpty());
}

TEST_F(login_test, return_in_the_name_with_an_empty_password_gets_the_password_tip) {
    dlg_user_login dialog;
    auto* name = child<QLineEdit>(&dialog, "txt_login_name");
    show_with_focus(dialog, name);
    name->setText(QStringLiteral("boss"));
    QTest::keyClick(name, Qt::Key_Return);
    expect_tip(child<QLineEdit>(&dialog, "txt_login_pass"), QStringLiteral("请输入密码"));
    EXPECT_TRUE(server.requests().isEmpty());
}

TEST_F(login_test, sends_the_trimmed_name_and_the_hash_of_the_trimmed_password) {
    dlg_user_login dialog;
    fill(dialog, QStringLiteral(" boss\t"), QStringLiteral("  Tavrok-2026 "));
    server.answer(login_answer("boss"));
    click(&dialog, "btn_submit");
    EXPECT_EQ(server.paths(), QList<QByteArray>{"login/check_login"});
    EXPECT_EQ(server.last().body, "username=boss&password=" + md5("Tavrok-2026"));
    EXPECT_EQ(dialog.result(), int(QDialog::Accepted));
}

TEST_F(login_test, characters_outside_latin1_are_hashed_as_question_marks) {
    dlg_user_login dialog;
    fill(dialog, QStringLiteral("boss"), QStringLiteral("密a码"));
    server.answer(login_answer("boss"));
    click(&dialog, "btn_submit");
    EXPECT_EQ(server.last().body, "username=boss&password=" + md5("?a?"));
}

TEST_F(login_test, a_login_fills_the_session_and_announces_it_before_it_closes) {
    dlg_user_login dialog;
    dialog.show();
    fill(dialog, QStringLiteral("li"), QStringLiteral("pw"));
    g_http.permissions[QStringLiteral("555")] = QStringLiteral("of the former user");
    server.answer(login_answer("li", 2, R"([{"id":"3","action":"a"},{"id":"4","action":"b"},
                                            {"id":"3","action":"c"}])"));
    bool up_at_signal = false;
    QString user_at_signal;
    QObject::connect(&dialog, &dlg_user_login::signal_init_info, &dialog, [&] {
        up_at_signal = dialog.isVisible();
        user_at_signal = g_http.current_user.username;
    });
    QSignalSpy announced(&dialog, &dlg_user_login::signal_init_info);
    QSignalSpy to_reg(&dialog, &dlg_user_login::signal_to_reg);
    click(&dialog, "btn_submit");
    EXPECT_EQ(announced.count(), 1);
    EXPECT_EQ(to_reg.count(), 0);
    EXPECT_TRUE(up_at_signal);
    EXPECT_EQ(user_at_signal, QStringLiteral("li"));
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_EQ(dialog.result(), int(QDialog::Accepted));
    EXPECT_EQ(g_http.current_user.password, QStringLiteral("secret-of-li"));
    EXPECT_EQ(g_http.current_user.id, QStringLiteral("9"));
    EXPECT_EQ(g_http.current_user.realname, QStringLiteral("某人"));
    EXPECT_EQ(g_http.current_user.type, 2);
    const QHash<QString, QString> rows{{QStringLiteral("3"), QStringLiteral("c")},
                                       {QStringLiteral("4"), QStringLiteral("b")}};
    EXPECT_EQ(g_http.permissions, rows);
}

TEST_F(login_test, an_ordinary_user_without_any_grant_gets_in) {
    dlg_user_login dialog;
    fill(dialog, QStringLiteral("li"), QStringLiteral("pw"));
    server.answer(login_answer("li", 2));
    click(&dialog, "btn_submit");
    EXPECT_EQ(dialog.result(), int(QDialog::Accepted));
    EXPECT_TRUE(g_http.permissions.isEmpty());
}

TEST_F(login_test, a_refusal_warns_and_changes_nothing) {
    const QList<QByteArray> refusals{R"({"user":{}})", R"({"wms_permission":[]})", R"({"user":null})",
                                     login_answer("BOSS"), login_answer(" boss")};
    for (const QByteArray& refusal : refusals) {
        dlg_user_login dialog;
        dialog.show();
        fill(dialog, QStringLiteral("boss"), QStringLiteral("pw"));
        log_in_administrator(QStringLiteral("former"));
        g_http.permissions[QStringLiteral("5")] = QStringLiteral("kept");
        QSignalSpy announced(&dialog, &dlg_user_login::signal_init_info);
        server.answer(refusal);
        expect_warning([&] { click(&dialog, "btn_submit"); }, refused_text);
        EXPECT_EQ(announced.count(), 0);
        EXPECT_TRUE(dialog.isVisible());
        EXPECT_EQ(child<QLineEdit>(&dialog, "txt_login_name")->text(), QStringLiteral("boss"));
        EXPECT_EQ(child<QLineEdit>(&dialog, "txt_login_pass")->text(), QStringLiteral("pw"));
        EXPECT_EQ(g_http.current_user.username, QStringLiteral("former"));
        EXPECT_EQ(g_http.permissions.value(QStringLiteral("5")), QStringLiteral("kept"));
    }
}

TEST_F(login_test, an_empty_answer_reads_as_no_network) {
    const QList<scripted_answer> failures{scripted_answer::dropped(),
                                          scripted_answer(""),
                                          scripted_answer("{}"),
                                          scripted_answer("[1]"),
                                          scripted_answer("<html>"),
                                          scripted_answer::with_status(500, "oops"),
                                          scripted_answer::of_garbage("\x01\x02\x03")};
    for (const scripted_answer& failure : failures) {
        dlg_user_login dialog;
        dialog.show();
        fill(dialog, QStringLiteral("boss"), QStringLiteral("pw"));
        // A dropped request is sent again by the network library, and dropped again.
        server.always("login/check_login", failure);
        expect_warning([&] { click(&dialog, "btn_submit"); }, no_network_text);
        EXPECT_TRUE(dialog.isVisible());
        EXPECT_TRUE(g_http.current_user.username.isEmpty());
    }
}

TEST_F(login_test, may_be_tried_any_number_of_times) {
    dlg_user_login dialog;
    dialog.show();
    fill(dialog, QStringLiteral("boss"), QStringLiteral("pw"));
    server.always("login/check_login", R"({"user":{}})");
    for (int i = 0; i < 12; ++i)
        expect_warning([&] { click(&dialog, "btn_submit"); }, refused_text);
    server.always("login/check_login", login_answer("boss"));
    click(&dialog, "btn_submit");
    EXPECT_EQ(dialog.result(), int(QDialog::Accepted));
    EXPECT_EQ(server.requests().size(), 13);
}

TEST_F(login_test, return_and_enter_submit_whichever_widget_has_the_focus) {
    for (const char* focus : {"txt_login_name", "txt_login_pass", "btn_submit", "btn_close", "btn_reg"}) {
        for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter}) {
            dlg_user_login dialog;
            fill(dialog, QStringLiteral("boss"), QStringLiteral("pw"));
            show_with_focus(dialog, child<QWidget>(&dialog, focus));
            server.forget();
            server.answer(login_answer("boss"));
            QTest::keyClick(QApplication::focusWidget(), key);
            EXPECT_EQ(server.paths(), QList<QByteArray>{"login/check_login"}) << focus;
            EXPECT_EQ(dialog.result(), int(QDialog::Accepted)) << focus;
        }
    }
}

TEST_F(login_test, escape_and_other_keys_do_nothing) {
    for (const char* focus : {"txt_login_name", "btn_submit", "btn_close"}) {
        dlg_user_login dialog;
        fill(dialog, QStringLiteral("boss"), QStringLiteral("pw"));
        show_with_focus(dialog, child<QWidget>(&dialog, focus));
        for (const Qt::Key key : {Qt::Key_Escape, Qt::Key_F1, Qt::Key_F4}) {
            QTest::keyClick(QApplication::focusWidget(), key);
            EXPECT_TRUE(dialog.isVisible());
        }
        EXPECT_TRUE(server.requests().isEmpty());
    }
}

TEST_F(login_test, keys_that_reach_the_dialog_end_there) {
    dlg_user_login dialog;
    dialog.show();
    for (const Qt::Key key : {Qt::Key_Escape, Qt::Key_A, Qt::Key_Down}) {
        QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier);
        QApplication::sendEvent(&dialog, &event);
        EXPECT_TRUE(event.isAccepted());
        EXPECT_TRUE(dialog.isVisible());
    }
}

TEST_F(login_test, close_ends_every_event_loop) {
    dlg_user_login dialog;
    int login_result = -1;
    QTimer::singleShot(0, &dialog, [&] {
        with_modal([&] { login_result = dialog.exec(); }, [](QWidget* shown) { click(shown, "btn_close"); });
    });
    EXPECT_EQ(QApplication::exec(), 0);
    EXPECT_EQ(login_result, int(QDialog::Rejected));
    EXPECT_TRUE(server.requests().isEmpty());
}

TEST_F(login_test, sign_up_opens_in_front_of_the_dialog_and_leaves_it_as_it_is) {
    dlg_user_login dialog;
    dialog.show();
    fill(dialog, QStringLiteral("boss"), QStringLiteral("pw"));
    QSignalSpy to_reg(&dialog, &dlg_user_login::signal_to_reg);
    with_modal_of<dlg_user_reg>([&] { click(&dialog, "btn_reg"); },
                                [&](dlg_user_reg* shown) {
                                    EXPECT_EQ(shown->parent(), &dialog);
                                    EXPECT_TRUE(dialog.isVisible());
                                    shown->reject();
                                });
    EXPECT_EQ(dialog.findChild<dlg_user_reg*>(), nullptr) << "it lives as long as it is shown";
    EXPECT_TRUE(dialog.isVisible());
    EXPECT_EQ(child<QLineEdit>(&dialog, "txt_login_name")->text(), QStringLiteral("boss"));
    EXPECT_EQ(child<QLineEdit>(&dialog, "txt_login_pass")->text(), QStringLiteral("pw"));
    EXPECT_EQ(to_reg.count(), 0);
    EXPECT_EQ(server.paths(), QList<QByteArray>{"user_reg/captcha_data"});
}

TEST_F(login_test, a_cancelled_sign_up_shows_the_dialog_again) {
    dlg_user_login dialog;
    dialog.show();
    with_modal_of<dlg_user_reg>([&] { click(&dialog, "btn_reg"); },
                                [&](dlg_user_reg* shown) {
                                    dialog.hide();
                                    click(shown, "btn_cancel");
                                });
    EXPECT_TRUE(dialog.isVisible());
}

TEST_F(login_test, the_relogin_slot_runs_the_dialog) {
    dlg_user_login dialog;
    with_modal([&] { dialog.slot_relogin(); },
               [&](QWidget* shown) {
                   EXPECT_EQ(shown, &dialog);
                   dialog.reject();
               });
    EXPECT_FALSE(dialog.isVisible());
}
