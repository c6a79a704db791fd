#include "e2e/service_process.h"

#include <sqlite3.h>

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QFile>
#include <QUrl>
#include <stdexcept>

const QString demo_password = QStringLiteral("Tavrok-2026");

namespace {

constexpr int deadline_ms = 30000;

QString program() {
    return qEnvironmentVariable("TAVROK_WMSD", QStringLiteral(TAVROK_WMSD_PROGRAM));
}

int run(const QStringList& arguments) {
    QProcess once;
    once.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    once.setStandardOutputFile(QProcess::nullDevice());
    once.start(program(), arguments);
    if (!once.waitForFinished(deadline_ms)) return -1;
    return once.exitStatus() == QProcess::NormalExit ? once.exitCode() : -1;
}

void make_demo(const QStringList& where) {
    if (run(QStringList{QStringLiteral("demo"), QStringLiteral("--database")} + where) != 0)
        throw std::runtime_error("the demo data could not be made by " + program().toStdString());
}

/** What a statement or query gives in PostgreSQL, a row a line. */
QStringList ask_postgresql(const QString& uri, const QString& sql) {
    QProcess psql;
    psql.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    psql.start(QStringLiteral("psql"), {QStringLiteral("-XqtA"), QStringLiteral("-v"),
                                        QStringLiteral("ON_ERROR_STOP=1"), QStringLiteral("-c"), sql, uri});
    if (!psql.waitForFinished(deadline_ms) || psql.exitCode() != 0)
        throw std::runtime_error("PostgreSQL did not do: " + sql.toStdString());
    return QString::fromUtf8(psql.readAllStandardOutput()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

} // namespace

std::unique_ptr<shared_database> shared_database::make() {
    const QString server = qEnvironmentVariable("TAVROK_TEST_POSTGRESQL");
    if (server.isEmpty()) return nullptr;
    return std::unique_ptr<shared_database>(new shared_database(server));
}

shared_database::shared_database(const QString& server_uri)
    : server(server_uri),
      name(QStringLiteral("e2e_%1").arg(QCoreApplication::applicationPid())),
      uri(server_uri) {
    if (!folder.isValid()) throw std::runtime_error("no temporary folder");
    QUrl named(server);
    named.setPath(QLatin1Char('/') + name);
    uri = named.toString(QUrl::FullyEncoded);
    ask_postgresql(server, QStringLiteral("CREATE DATABASE ") + name);
    make_demo({uri, QStringLiteral("--pepper-file"), pepper()});
}

shared_database::~shared_database() {
    try {
        ask_postgresql(server, QStringLiteral("DROP DATABASE ") + name);
    } catch (const std::runtime_error&) {
        // It goes with its server.
    }
}

service_process::service_process(const QStringList& further_options)
    : database(folder.filePath(QStringLiteral("wms.db"))), options(further_options) {
    if (!folder.isValid()) throw std::runtime_error("no temporary folder");
    make_demo({database});
    start(0);
}

service_process::service_process(const shared_database& shared, const QStringList& further_options)
    : database(shared.location()),
      options(further_options + QStringList{QStringLiteral("--pepper-file"), shared.pepper()}) {
    start(0);
}

service_process::~service_process() {
    stop();
}

/** Port 0 is any that is free. */
void service_process::start(int wanted_port) {
    const QString port_path = folder.filePath(QStringLiteral("port"));
    // One that was killed leaves its file.
    QFile::remove(port_path);
    // Where it keeps its certificate.
    process.setWorkingDirectory(folder.path());
    process.setProcessChannelMode(QProcess::SeparateChannels);
    process.setStandardOutputFile(QProcess::nullDevice());
    process.setStandardErrorFile(folder.filePath(QStringLiteral("log")));
    process.start(program(), QStringList{QStringLiteral("serve"), QStringLiteral("--database"), database,
                                         QStringLiteral("--listen"), QStringLiteral("127.0.0.1"),
                                         QStringLiteral("--port"), QString::number(wanted_port),
                                         QStringLiteral("--port-file"), port_path} +
                                 options);
    const QDeadlineTimer deadline(deadline_ms);
    while (!deadline.hasExpired()) {
        QFile file(port_path);
        if (file.open(QIODevice::ReadOnly)) {
            const int port = file.readAll().trimmed().toInt();
            if (port > 0) {
                root = QStringLiteral("https://127.0.0.1:%1/").arg(port);
                return;
            }
        }
        if (process.waitForFinished(10)) break;
    }
    QFile log(folder.filePath(QStringLiteral("log")));
    const QByteArray said = log.open(QIODevice::ReadOnly) ? log.readAll() : QByteArray();
    throw std::runtime_error("the service did not come up: " + said.toStdString());
}

void service_process::change_database(const char* sql) {
    sqlite3* connection = nullptr;
    int result = sqlite3_open(database.toUtf8().constData(), &connection);
    sqlite3_busy_timeout(connection, 5000);
    if (result == SQLITE_OK) result = sqlite3_exec(connection, sql, nullptr, nullptr, nullptr);
    const std::string said = sqlite3_errmsg(connection);
    const int changed = sqlite3_changes(connection);
    sqlite3_close(connection);
    if (result != SQLITE_OK) throw std::runtime_error("the database could not be changed: " + said);
    if (changed == 0) throw std::runtime_error("nothing to change in the database");
}

QStringList service_process::read_database(const QString& query) const {
    if (database.startsWith(QLatin1String("postgresql:"))) return ask_postgresql(database, query);
    QStringList found;
    sqlite3* connection = nullptr;
    int result = sqlite3_open(database.toUtf8().constData(), &connection);
    sqlite3_busy_timeout(connection, 5000);
    const auto take = [](void* into, int, char** values, char**) {
        static_cast<QStringList*>(into)->append(QString::fromUtf8(values[0]));
        return 0;
    };
    if (result == SQLITE_OK)
        result = sqlite3_exec(connection, query.toUtf8().constData(), take, &found, nullptr);
    const std::string said = sqlite3_errmsg(connection);
    sqlite3_close(connection);
    if (result != SQLITE_OK) throw std::runtime_error("the database could not be read: " + said);
    return found;
}

int service_process::stop() {
    if (process.state() == QProcess::NotRunning) return process.exitCode();
    process.terminate();
    if (process.waitForFinished(deadline_ms))
        return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    process.kill();
    process.waitForFinished(deadline_ms);
    return -1;
}

void service_process::kill() {
    process.kill();
    process.waitForFinished(deadline_ms);
}

void service_process::start_again() {
    start(QUrl(root).port());
}

int service_process::check() {
    return run({QStringLiteral("check"), QStringLiteral("--database"), database});
}
