#pragma once
#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

/** The real service on a database of its own, filled with the demo companies. Throws when it does not come
 * up. */
class service_process {
public:
    /** Starts with further options of `serve`. */
    explicit service_process(const QStringList& options = {});
    ~service_process();

    /** Root address with a trailing slash. */
    QString base_url() const { return root; }
    /** Changes the database behind the service's back. */
    void change_database(const char* sql);
    /** The first column of what the query finds in the database. */
    QStringList read_database(const QString& query) const;
    /** Asks it to stop as an operator does and waits; gives its exit code, -1 if it had to be killed. */
    int stop();
    /** Ends it without a warning, as a power cut does. */
    void kill();
    /** Starts it once more, with the same database, port and options. */
    void start_again();
    /** What the service's own check of the database says: 0 when all is well. Only after stop(). */
    int check();

private:
    QString database() const { return folder.filePath(QStringLiteral("wms.db")); }
    void start(int port);

    QTemporaryDir folder;
    QStringList options;
    QProcess process;
    QString root;
};

/** The password of every demo account. */
extern const QString demo_password;
