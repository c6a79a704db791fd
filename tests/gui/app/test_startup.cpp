#include <QAbstractButton>
#include <QApplication>
#include <QDesktopServices>
#include <QDialog>
#include <QFile>
#include <QIcon>
#include <QLineEdit>
#include <QMessageBox>
#include <QProcess>
#include <QResource>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QtEndian>

#include "access/dlg_user_login.h"
#include "app/startup.h"
#include "app/window.h"
#include "gui/app/app_fixture.h"
#include "init_resources.h"
#include "net/http.h"
#include "support/modal.h"
#include "support/screen.h"

/** Takes the program's resources away; a start brings them back. Cannot stand in a namespace. */
static void drop_resources() {
    Q_CLEANUP_RESOURCE(wms);
}

namespace {

/** While it lives, another style sheet stands before the program's own, and that one cannot be unpacked. */
class broken_style_sheet {
public:
    broken_style_sheet() {
        QFile file(QStringLiteral(STRAY_STYLE_SHEET));
        if (!file.open(QIODevice::ReadOnly)) throw std::runtime_error("no stray style sheet");
        set = file.readAll();
        // The third number of the head says where the data are: the length, the unpacked length, the bytes.
        const auto data = qFromBigEndian<quint32>(set.constData() + 12);
        set[int(data) + 8] = char(0xFF);
        drop_resources();
        if (!QResource::registerResource(bytes())) throw std::runtime_error("no resources");
        init_resources();
    }
    ~broken_style_sheet() { QResource::unregisterResource(bytes()); }

private:
    const uchar* bytes() const { return reinterpret_cast<const uchar*>(set.constData()); }

    QByteArray set;
};

/** The top-level window of that class; null if there is none. */
template <class kind>
kind* top_level() {
    const auto windows = QApplication::topLevelWidgets();
    for (QWidget* shown : windows)
        if (auto* found = qobject_cast<kind*>(shown)) return found;
    return nullptr;
}

class startup_test : public app_test {
protected:
    startup_test() {
        serve_menu_and_partners();
        QApplication::setWindowIcon(QIcon());
    }

    int start() {
        status = startup(*qApp);
        return status;
    }

    /** Starts, expects the login dialog, and abandons it. */
    void expect_login() {
        with_modal_of<dlg_user_login>([this] { start(); }, [](dlg_user_login* login) { login->reject(); });
        EXPECT_EQ(status, 0);
    }

    /** Starts, expects the update question, and answers it. */
    void expect_update(QMessageBox::StandardButton answer) {
        with_question([this] { start(); }, QStringLiteral("Tavrok仓储管理系统(Tavrok_WMS)"),
                      QStringLiteral("检测到新版本，需要更新才能继续登录，确认吗？"), answer);
        EXPECT_EQ(status, 0);
        EXPECT_EQ(server.paths(), QList<QByteArray>{"version/wms_check"});
    }

    /** Calls `then` as soon as `ready` holds; gives up after five seconds, ending the application. */
    void when(const std::function<bool()>& ready, const std::function<void()>& then) {
        auto* timer = new QTimer(&timers);
        auto* left = new int(5000);
        QObject::connect(timer, &QObject::destroyed, [left] { delete left; });
        QObject::connect(timer, &QTimer::timeout, timer, [=] {
            if (ready()) {
                timer->stop();
                then();
            } else if (--*left == 0) {
                timer->stop();
                ADD_FAILURE() << "what the test waits for did not come";
                QCoreApplication::exit(99);
            }
        });
        timer->start(1);
    }

    /** The texts of the buttons of the update question, Yes first. */
    QStringList update_buttons() {
        QStringList texts;
        server.answer(R"({"need_update":"1","file_name":"x"})");
        with_modal_of<QMessageBox>([this] { start(); },
                                   [&texts](QMessageBox* box) {
                                       texts = QStringList{box->button(QMessageBox::Yes)->text(),
                                                           box->button(QMessageBox::No)->text()};
                                       box->button(QMessageBox::No)->click();
                                   });
        return texts;
    }

    void log_in(QWidget* login, const char* name) {
        server.answer(login_answer(name));
        child<QLineEdit>(login, "txt_login_name")->setText(QLatin1String(name));
        child<QLineEdit>(login, "txt_login_pass")->setText(QStringLiteral("pw"));
        click(login, "btn_submit");
    }

    /** An exit outside the main loop lets no loop run until the main loop has run once. */
    static void take_back_exit() {
        QTimer::singleShot(0, qApp, [] { QCoreApplication::exit(0); });
        QApplication::exec();
    }

    int status = -1;
    QObject timers;
};

} // namespace

TEST_F(startup_test, asks_for_the_version_with_the_build_stamp) {
    server.answer("{}");
    expect_login();
    EXPECT_EQ(server.paths(), QList<QByteArray>{"version/wms_check"});
    EXPECT_EQ(server.last().method, "POST");
    EXPECT_EQ(server.last().body, "version_time=1586696219");
}

TEST_F(startup_test, looks_come_before_the_version_check_and_the_dialogs_after_it) {
    server.answer(scripted_answer::late(50, "{}"));
    bool looked = false;
    when([this] { return !server.requests().isEmpty(); },
         [&looked] {
             looked = true;
             EXPECT_TRUE(qApp->styleSheet().startsWith(
                 QLatin1String("*{font-family:Microsoft YaHei;font-size:14px}")));
             EXPECT_EQ(qApp->styleSheet().size(), 14198);
             EXPECT_EQ(QApplication::windowIcon().availableSizes(), QList<QSize>{QSize(128, 128)});
             EXPECT_EQ(top_level<dlg_user_login>(), nullptr);
             EXPECT_EQ(top_level<window>(), nullptr);
         });
    expect_login();
    EXPECT_TRUE(looked);
}

TEST_F(startup_test, a_style_sheet_that_cannot_be_read_is_not_missed) {
    const broken_style_sheet broken;
    ASSERT_FALSE(QFile(QStringLiteral(":/qss/white.qss")).open(QIODevice::ReadOnly));
    qApp->setStyleSheet(QStringLiteral("QLabel{}"));
    server.answer("{}");
    expect_login();
    EXPECT_TRUE(qApp->styleSheet().isEmpty());
    EXPECT_FALSE(QApplication::windowIcon().isNull()) << "the rest of the start goes on";
}

TEST_F(startup_test, the_window_exists_hidden_behind_the_login) {
    with_modal_of<dlg_user_login>([this] { start(); },
                                  [](dlg_user_login* login) {
                                      ASSERT_NE(top_level<window>(), nullptr);
                                      EXPECT_TRUE(top_level<window>()->isHidden());
                                      EXPECT_EQ(login->parent(), nullptr);
                                      login->reject();
                                  });
    EXPECT_EQ(top_level<window>(), nullptr);
    EXPECT_EQ(top_level<dlg_user_login>(), nullptr);
}

TEST_F(startup_test, an_abandoned_login_ends_with_status_0) {
    expect_login();
    status = -1;
    with_modal([this] { start(); }, [](QWidget* login) { click(login, "btn_close"); });
    EXPECT_EQ(status, 0);
    take_back_exit();
}

TEST_F(startup_test, a_login_shows_the_window_maximised_and_gives_its_status) {
    bool seen = false;
    when([] { return top_level<window>() != nullptr && top_level<window>()->isVisible(); },
         [&seen] {
             seen = true;
             const window* shell = top_level<window>();
             EXPECT_TRUE(shell->isMaximized());
             EXPECT_EQ(shell->windowTitle(),
                       QStringLiteral("Tavrok仓储管理系统(Tavrok_WMS) -【当前用户：boss用户】"));
             EXPECT_TRUE(top_level<dlg_user_login>()->isHidden());
             QCoreApplication::exit(3);
         });
    with_modal([this] { start(); }, [this](QWidget* login) { log_in(login, "boss"); });
    EXPECT_TRUE(seen);
    EXPECT_EQ(status, 3);
    EXPECT_EQ(server.paths(),
              (QList<QByteArray>{"version/wms_check", "login/check_login", "wms_menu/get_menu"}));
}

TEST_F(startup_test, the_program_goes_on_after_a_relogin_and_checks_no_version_again) {
    bool went_on = false;
    when([] { return top_level<window>() != nullptr && top_level<window>()->isVisible(); },
         [&] {
             window* shell = top_level<window>();
             with_modal([shell] { shell->slot_relogin(); }, [&](QWidget* login) { log_in(login, "second"); });
             // Whatever the closed dialog has posted comes before a timer.
             QTimer::singleShot(0, shell, [&went_on, shell] {
                 went_on = shell->isVisible();
                 QCoreApplication::exit(4);
             });
         });
    with_modal([this] { start(); }, [&](QWidget* login) { log_in(login, "boss"); });
    EXPECT_TRUE(went_on);
    EXPECT_EQ(status, 4);
    EXPECT_EQ(server.bodies("version/wms_check").size(), 1);
}

TEST_F(startup_test, closing_the_dialog_of_a_relogin_ends_the_program) {
    when([] { return top_level<window>() != nullptr && top_level<window>()->isVisible(); },
         [] {
             window* shell = top_level<window>();
             with_modal([shell] { shell->slot_relogin(); }, [](QWidget* login) { login->close(); });
         });
    with_modal([this] { start(); }, [this](QWidget* login) { log_in(login, "boss"); });
    EXPECT_EQ(status, 0);
}

TEST_F(startup_test, closing_the_window_ends_with_status_0) {
    when([] { return top_level<window>() != nullptr && top_level<window>()->isVisible(); },
         [] { top_level<window>()->close(); });
    with_modal([this] { start(); }, [this](QWidget* login) { log_in(login, "boss"); });
    EXPECT_EQ(status, 0);
}

TEST_F(startup_test, yes_to_the_update_opens_the_download_and_ends) {
    server.answer(R"({"need_update":"1","file_name":"download/wms.zip"})");
    expect_update(QMessageBox::Yes);
    EXPECT_EQ(web.opened, QList<QUrl>{QUrl(server.base_url() + QStringLiteral("download/wms.zip"))});
}

TEST_F(startup_test, a_browser_that_does_not_open_is_not_reported) {
    QDesktopServices::setUrlHandler(QStringLiteral("http"), &web, "no_such_slot");
    ASSERT_FALSE(QDesktopServices::openUrl(QUrl(server.base_url())));
    server.answer(R"({"need_update":"1","file_name":"download/wms.zip"})");
    expect_update(QMessageBox::Yes);
    EXPECT_FALSE(modal_shown());
    EXPECT_TRUE(web.opened.isEmpty());
}

TEST_F(startup_test, no_to_the_update_ends_without_login) {
    server.answer(R"({"need_update":"1","file_name":"download/wms.zip"})");
    expect_update(QMessageBox::No);
    EXPECT_TRUE(web.opened.isEmpty());
}

TEST_F(startup_test, the_number_1_counts_and_an_empty_file_name_opens_the_root) {
    for (const char* answer : {R"({"need_update":1,"file_name":""})", R"({"need_update":"1"})"}) {
        server.forget();
        web.opened.clear();
        server.answer(answer);
        expect_update(QMessageBox::Yes);
        EXPECT_EQ(web.opened, QList<QUrl>{QUrl(server.base_url())});
    }
}

TEST_F(startup_test, the_update_question_has_two_buttons_and_no_default_one) {
    server.answer(R"({"need_update":"1","file_name":"x"})");
    with_modal_of<QMessageBox>([this] { start(); },
                               [](QMessageBox* box) {
                                   EXPECT_EQ(box->standardButtons(), QMessageBox::Yes | QMessageBox::No);
                                   EXPECT_EQ(box->defaultButton(), nullptr);
                                   EXPECT_EQ(box->icon(), QMessageBox::Question);
                                   box->button(QMessageBox::No)->click();
                               });
}

TEST_F(startup_test, any_other_answer_lets_the_program_go_on) {
    for (const char* answer : {R"({"need_update":"0"})", R"({"need_update":"01"})", R"({"need_update":true})",
                               R"({"need_update":" 1"})", R"({"file_name":"x"})", "[]", "1", "<html>", ""}) {
        server.answer(answer);
        expect_login();
    }
    EXPECT_TRUE(web.opened.isEmpty());
}

TEST_F(startup_test, without_network_the_login_comes) {
    server.always("version/wms_check", scripted_answer::dropped());
    expect_login();
    server.always("version/wms_check", scripted_answer::of_garbage("\x16\x03\x01"));
    expect_login();
}

TEST_F(startup_test, a_session_code_renews_with_empty_credentials_and_counts_as_current) {
    server.answer("7");
    server.answer("");
    expect_login();
    EXPECT_EQ(server.paths(), (QList<QByteArray>{"version/wms_check", "wms/check_login"}));
    EXPECT_EQ(server.last().body, "username=&password=");
}

TEST_F(startup_test, standard_buttons_stay_untranslated) {
    EXPECT_TRUE(QFile::exists(QStringLiteral(":/qm/qt_zh_CN.qm")));
    EXPECT_FALSE(QFile::exists(QStringLiteral(":/qt_zh_CN.qm")));
    EXPECT_EQ(update_buttons(), (QStringList{QStringLiteral("&Yes"), QStringLiteral("&No")}));
}

TEST_F(startup_test, the_catalogue_is_looked_for_where_none_lies) {
    ASSERT_TRUE(QResource::registerResource(QStringLiteral(STRAY_CATALOGUE)));
    ASSERT_TRUE(QFile::exists(QStringLiteral(":/qt_zh_CN.qm")));
    const QStringList buttons = update_buttons();
    QResource::unregisterResource(QStringLiteral(STRAY_CATALOGUE));
    EXPECT_EQ(buttons, (QStringList{QStringLiteral("是(&Y)"), QStringLiteral("否(&N)")}));
}

TEST_F(startup_test, starting_prints_nothing_on_the_terminal) {
    QTemporaryDir runtime;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), runtime.path());
    server.always("version/wms_check", "{}");
    server.always("login/check_login", login_answer("boss"));
    QProcess program;
    program.setProcessEnvironment(environment);
    program.setProcessChannelMode(QProcess::MergedChannels);
    program.start(QStringLiteral(QUIET_START), {server.base_url()});
    QByteArray printed;
    EXPECT_TRUE(QTest::qWaitFor([&program] { return program.state() == QProcess::NotRunning; }, 20000));
    program.kill();
    program.waitForFinished();
    for (const QByteArray& line : program.readAll().split('\n'))
        // The off-screen platform itself says this of every window of fixed size.
        if (!line.isEmpty() && !line.contains("propagateSizeHints")) printed += line + '\n';
    EXPECT_EQ(printed, QByteArray());
    EXPECT_EQ(program.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(program.exitCode(), 5) << "5: the main window came up";
    EXPECT_EQ(server.paths(),
              (QList<QByteArray>{"version/wms_check", "login/check_login", "wms_menu/get_menu"}));
}
