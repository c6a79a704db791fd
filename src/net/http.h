#pragma once
#include <QByteArray>
#include <QEventLoop>
#include <QHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QList>
#include <QNetworkCookie>
#include <QNetworkRequest>
#include <QObject>
#include <QSslConfiguration>
#include <QString>
#include <QStringList>
#include <QUrl>
#include <optional>

#include "model/struct_user.h"

class QNetworkAccessManager;
class QNetworkReply;

/**
 * The one door to the service: sends every request, waits for its answer in a nested event loop and keeps the
 * session. `path` is written without a leading slash, `args` is the finished form body. Every call blocks its
 * caller, has no time-out and looks neither at the network error nor at the HTTP status: a failed request is
 * an empty answer.
 *
 * The wrappers marked "session" notice the answer 7 (the session has expired) and log in again, quietly; the
 * interrupted request is not repeated and its caller gets the 7.
 */
class http : public QObject {
    Q_OBJECT

public:
    http();
    ~http() override;

    /** Sends `args` and empties it. */
    QByteArray do_post(QString path, QString& args);
    QByteArray do_get(QString path);

    /** Session. */
    void post(QString path, QString args);
    /** Session. The body, trimmed. */
    QByteArray post_raw(QString path, QString args);
    /** Session. An empty document for anything that is not JSON. */
    QJsonDocument post_json(QString path, QString args);
    /** Session. Empty for any other JSON type. */
    QJsonArray post_array(QString path, QString args);
    /** Session. Empty for any other JSON type. */
    QJsonObject post_object(QString path, QString args);
    /** Session. */
    void get(QString path);
    /** Session. The body, trimmed. */
    QByteArray get_raw(QString path);
    /** Session. An empty document for anything that is not JSON. */
    QJsonDocument get_json(QString path);
    /** Session. Empty for any other JSON type. */
    QJsonArray get_array(QString path);
    /** Session. Empty for any other JSON type. */
    QJsonObject get_object(QString path);

    /** Renews the session of `current_user`. The answer is not looked at: it may be a 7 itself. */
    void relogin();

    /** The user's granted menu rows: row id to action. */
    QHash<QString, QString> permissions;
    /** The user who is logged in; `password` is what the login answer returned. */
    struct_user current_user;
    /** Navigation key to the right keys granted on that page. */
    QHash<QString, QStringList> rights;
    /** Root of all requests, with a trailing slash. */
    QString base_url;

private:
    void receive();
    void update_cookies();
    void renew_if_expired(const QByteArray& body);

    QUrl url;
    QNetworkAccessManager* manager;
    QNetworkRequest request;
    QSslConfiguration ssl_config;
    QByteArray post_body;
    QByteArray response;
    /** Of the latest request. Replies stay children of the manager until the process ends. */
    QNetworkReply* reply = nullptr;
    /** Made at the first call: g_http exists before the application, and an event loop made then complains.
     */
    std::optional<QEventLoop> loop;
    QList<QNetworkCookie> cookies;
};

extern http g_http;
