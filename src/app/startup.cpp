#include "app/startup.h"

#include <QApplication>
#include <QDesktopServices>
#include <QFile>
#include <QFont>
#include <QIcon>
#include <QJsonObject>
#include <QMessageBox>
#include <QTranslator>
#include <QUrl>

#include "access/dlg_user_login.h"
#include "app/window.h"
#include "init_resources.h"
#include "model/model_version.h"
#include "net/constants.h"
#include "net/http.h"

namespace {

void apply_style_sheet(QApplication& application) {
    QFile file(QStringLiteral(":/qss/white.qss"));
    file.open(QIODevice::ReadOnly);
    // Up to the first NUL byte only.
    application.setStyleSheet(QString::fromLatin1(file.readAll().constData()));
}

/**
 * The catalogue lies elsewhere, so this finds nothing and an empty translator is installed: Qt's standard
 * button texts stay untranslated, as the message boxes are meant to show them.
 */
void install_translator(QTranslator& translator) {
    translator.load(QStringLiteral(":/qt_zh_CN.qm"), QString(), QString(), QString());
    QCoreApplication::installTranslator(&translator);
}

/** Asks whether to fetch the new version and hands its download to the browser. */
void offer_update(const QString& file_name) {
    const auto answer = QMessageBox::question(nullptr, g_app_title,
                                              QStringLiteral("检测到新版本，需要更新才能继续登录，确认吗？"),
                                              QMessageBox::Yes | QMessageBox::No);
    if (answer == QMessageBox::Yes) QDesktopServices::openUrl(QUrl(g_http.base_url + file_name));
}

int log_in_and_run() {
    dlg_user_login login;
    window main_window;
    QObject::connect(&login, &dlg_user_login::signal_init_info, &main_window, &window::slot_init_info,
                     Qt::DirectConnection);
    if (login.exec() != QDialog::Accepted) return 0;
    main_window.setWindowState(Qt::WindowMaximized);
    main_window.show();
    return QApplication::exec();
}

} // namespace

/** Only some systems have the font that is named. Elsewhere the one that Debian brings stands in for it, for
 * Latin letters and digits too, which would else be taken from a wider font. */
void stand_in_for_missing_font() {
    QFont::insertSubstitution(QStringLiteral("Microsoft YaHei"), QStringLiteral("WenQuanYi Micro Hei"));
}

int startup(QApplication& application) {
    init_resources();
    stand_in_for_missing_font();
    apply_style_sheet(application);
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/img/tavrok.ico")));
    QTranslator translator;
    install_translator(translator);

    const QJsonObject answer = version_check();
    if (answer.value(QLatin1String("need_update")).toVariant().toString() == QLatin1String("1")) {
        offer_update(answer.value(QLatin1String("file_name")).toString());
        return 0;
    }
    return log_in_and_run();
}
