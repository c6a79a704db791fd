#pragma once
#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <memory>

/** A database in PostgreSQL, filled with the demo companies, that several services may share. */
class shared_database {
public:
    /** Nothing where the environment names no PostgreSQL. Throws when the database cannot be made. */
    static std::unique_ptr<shared_database> make();
    ~shared_database();

    /** The connection string. */
    QString location() const { return uri; }
    /** The key of the password hashes, which all its services share. */
    QString pepper() const { return folder.filePath(QStringLiteral("pepper")); }

private:
    explicit shared_database(const QString& server_uri);

    QTemporaryDir folder;
    QString server;
    QString name;
    QString uri;
};

/** The real service on a database filled with the demo companies. Throws when it does not come up. */
class service_process {
public:
    /** Serves a database of its own, with further options of `serve`. */
    explicit service_process(const QStringList& options = {});
    /** Serves a database that others may serve too. */
    service_process(const shared_database& database, const QStringList& options);
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
    void start(int port);

    QTemporaryDir folder;
    /** SQLite file or connection string. */
    QString database;
    QStringList options;
    QProcess process;
    QString root;
};

/** The password of every demo account. */
extern const QString demo_password;
