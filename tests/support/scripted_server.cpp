#include "support/scripted_server.h"

#include <QPointer>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTimer>
#include <stdexcept>

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>

namespace {

/**
 * The client's kernel holds a body back until the head is acknowledged, which takes 40 ms unless it is asked
 * for.
 */
void acknowledge_at_once(const QTcpSocket* socket) {
    const int on = 1;
    setsockopt(int(socket->socketDescriptor()), IPPROTO_TCP, TCP_QUICKACK, &on, sizeof on);
}

/** Takes the first whole request off the bytes; false if there is none yet. */
bool take_request(QByteArray& bytes, recorded_request& request) {
    const int head_end = bytes.indexOf("\r\n\r\n");
    if (head_end < 0) return false;
    QList<QByteArray> lines = bytes.left(head_end).split('\n');
    const QList<QByteArray> start = lines.takeFirst().trimmed().split(' ');
    request.method = start.value(0);
    request.path = start.value(1).mid(1);
    for (const QByteArray& line : lines) {
        const int colon = line.indexOf(':');
        request.headers.append({line.left(colon), line.mid(colon + 1).trimmed()});
    }
    const int length = request.header("Content-Length").toInt();
    const int end = head_end + 4 + length;
    if (bytes.size() < end) return false;
    request.body = bytes.mid(head_end + 4, length);
    request.raw = bytes.left(end);
    bytes.remove(0, end);
    return true;
}

} // namespace

QByteArray recorded_request::header(const char* name) const {
    for (const auto& h : headers)
        if (h.first.compare(name, Qt::CaseInsensitive) == 0) return h.second;
    return QByteArray();
}

scripted_answer scripted_answer::dropped() {
    scripted_answer a;
    a.drop = true;
    return a;
}

scripted_answer scripted_answer::of_garbage(QByteArray bytes) {
    scripted_answer a;
    a.garbage = std::move(bytes);
    return a;
}

scripted_answer scripted_answer::with_cookie(QByteArray body, QByteArray cookie) {
    scripted_answer a(std::move(body));
    a.headers.append("Set-Cookie: " + cookie);
    return a;
}

scripted_answer scripted_answer::with_status(int status, QByteArray body) {
    scripted_answer a(std::move(body));
    a.status = status;
    return a;
}

scripted_answer scripted_answer::late(int delay_ms, QByteArray body) {
    scripted_answer a(std::move(body));
    a.delay_ms = delay_ms;
    return a;
}

scripted_server::scripted_server() : listener(new QTcpServer(this)) {
    connect(listener, &QTcpServer::newConnection, this, &scripted_server::accept);
    if (!listener->listen(QHostAddress::LocalHost)) throw std::runtime_error("scripted_server cannot listen");
}

scripted_server::~scripted_server() = default;

QString scripted_server::base_url() const {
    return QStringLiteral("http://127.0.0.1:%1/").arg(listener->serverPort());
}

void scripted_server::answer(scripted_answer next) {
    queue.enqueue(std::move(next));
}

void scripted_server::always(const QByteArray& path, scripted_answer standing) {
    always(path, [standing](const recorded_request&) { return standing; });
}

void scripted_server::always(const QByteArray& path,
                             std::function<scripted_answer(const recorded_request&)> rule) {
    standing_answers.insert(path, std::move(rule));
}

scripted_answer scripted_server::next_answer(const recorded_request& request) {
    if (!queue.isEmpty()) return queue.dequeue();
    const auto rule = standing_answers.value(request.path);
    return rule ? rule(request) : scripted_answer();
}

QList<QByteArray> scripted_server::paths() const {
    QList<QByteArray> result;
    for (const recorded_request& r : recorded)
        result.append(r.path);
    return result;
}

QList<QByteArray> scripted_server::bodies(const QByteArray& path) const {
    QList<QByteArray> result;
    for (const recorded_request& r : recorded)
        if (r.path == path) result.append(r.body);
    return result;
}

void scripted_server::accept() {
    while (QTcpSocket* socket = listener->nextPendingConnection()) {
        ++connection_count;
        connect(socket, &QTcpSocket::readyRead, this, [this, socket] { read(socket); });
        connect(socket, &QTcpSocket::disconnected, this, [this, socket] {
            pending.remove(socket);
            socket->deleteLater();
        });
    }
}

void scripted_server::read(QTcpSocket* socket) {
    pending[socket] += socket->readAll();
    acknowledge_at_once(socket);
    recorded_request request;
    while (take_request(pending[socket], request)) {
        recorded.append(request);
        const scripted_answer next = next_answer(request);
        const QPointer<QTcpSocket> target = socket;
        if (next.delay_ms == 0)
            reply(socket, next);
        else
            QTimer::singleShot(next.delay_ms, this, [this, target, next] {
                if (target) reply(target, next);
            });
        if (!target || target->state() != QAbstractSocket::ConnectedState) return;
        request = {};
    }
}

void scripted_server::reply(QTcpSocket* socket, const scripted_answer& next) {
    if (next.drop) {
        socket->abort();
        return;
    }
    if (!next.garbage.isEmpty()) {
        socket->write(next.garbage);
        socket->disconnectFromHost();
        return;
    }
    QByteArray out = "HTTP/1.1 " + QByteArray::number(next.status) + " Scripted\r\n";
    for (const QByteArray& line : next.headers)
        out += line + "\r\n";
    out += "Content-Length: " + QByteArray::number(next.body.size()) + "\r\n\r\n" + next.body;
    socket->write(out);
}
