#include "net/http.h"

#include <QNetworkAccessManager>
#include <QNetworkCookieJar>
#include <QNetworkReply>
#include <QSslSocket>

namespace {

/** The value of TlsV1SslV3: TLS 1.0 and whatever is newer, as far as the TLS library allows. */
constexpr auto any_tls = static_cast<QSsl::SslProtocol>(6);
constexpr int session_expired = 7;

} // namespace

http::http() : base_url(QStringLiteral(WMS_BASE_URL)), manager(new QNetworkAccessManager(this)) {
    ssl_config = request.sslConfiguration();
    ssl_config.setPeerVerifyMode(QSslSocket::VerifyNone);
    ssl_config.setProtocol(any_tls);
    request.setSslConfiguration(ssl_config);
    request.setRawHeader(QByteArrayLiteral("Content-Type"),
                         QByteArrayLiteral("application/x-www-form-urlencoded"));
}

http::~http() = default;

QByteArray http::do_post(QString path, QString& args) {
    url.setUrl(base_url + path);
    request.setUrl(url);
    post_body = args.toUtf8();
    reply = manager->post(request, post_body);
    receive();
    args.clear();
    update_cookies();
    return response;
}

QByteArray http::do_get(QString path) {
    url.setUrl(base_url + path);
    request.setUrl(url);
    reply = manager->get(request);
    receive();
    update_cookies();
    return response;
}

void http::post(QString path, QString args) {
    renew_if_expired(do_post(path, args));
}

QByteArray http::post_raw(QString path, QString args) {
    const QByteArray body = do_post(path, args);
    renew_if_expired(body);
    return body;
}

QJsonDocument http::post_json(QString path, QString args) {
    return QJsonDocument::fromJson(post_raw(path, args), nullptr);
}

QJsonArray http::post_array(QString path, QString args) {
    return post_json(path, args).array();
}

QJsonObject http::post_object(QString path, QString args) {
    return post_json(path, args).object();
}

void http::get(QString path) {
    renew_if_expired(do_get(path));
}

QByteArray http::get_raw(QString path) {
    const QByteArray body = do_get(path);
    renew_if_expired(body);
    return body;
}

QJsonDocument http::get_json(QString path) {
    return QJsonDocument::fromJson(get_raw(path), nullptr);
}

QJsonArray http::get_array(QString path) {
    return get_json(path).array();
}

QJsonObject http::get_object(QString path) {
    return get_json(path).object();
}

void http::relogin() {
    QString args = QStringLiteral("username=") + current_user.username + QStringLiteral("&password=") +
                   current_user.password;
    do_post(QStringLiteral("wms/check_login"), args);
}

/**
 * Waits for the latest reply. Nothing guards against a second call from an event handled meanwhile: that one
 * overwrites what is known of the first.
 */
void http::receive() {
    if (!loop) loop.emplace();
    connect(reply, &QNetworkReply::finished, &*loop, &QEventLoop::quit);
    loop->exec();
    response = reply->readAll().trimmed();
}

/** An empty jar leaves the header as it was. */
void http::update_cookies() {
    cookies = manager->cookieJar()->cookiesForUrl(url);
    if (!cookies.isEmpty()) request.setHeader(QNetworkRequest::CookieHeader, QVariant::fromValue(cookies));
}

void http::renew_if_expired(const QByteArray& body) {
    if (body.toInt(nullptr, 10) == session_expired) relogin();
}
