#pragma once
#include <QByteArray>
#include <QHash>
#include <QList>
#include <QObject>
#include <QPair>
#include <QQueue>
#include <QString>
#include <functional>

class QTcpServer;
class QTcpSocket;

/** A request as it came over the wire. */
struct recorded_request {
    QByteArray method;
    /** Without the leading slash, as the client's code writes it. */
    QByteArray path;
    QList<QPair<QByteArray, QByteArray>> headers;
    QByteArray body;
    QByteArray raw;

    /** The value of a header, letter case ignored; null if the request had none. */
    QByteArray header(const char* name) const;
};

/** What the server does with one request. */
struct scripted_answer {
    QByteArray body;
    int status = 200;
    /** Whole lines without their ends, such as "Set-Cookie: a=b". */
    QList<QByteArray> headers;
    int delay_ms = 0;
    /** Closes the connection instead of answering. */
    bool drop = false;
    /** Sends these bytes instead of an answer and closes the connection. */
    QByteArray garbage;

    // A body alone is an answer.
    scripted_answer(const char* text = "") : body(text) {}
    scripted_answer(QByteArray bytes) : body(std::move(bytes)) {}
    static scripted_answer dropped();
    static scripted_answer of_garbage(QByteArray bytes);
    static scripted_answer with_cookie(QByteArray body, QByteArray cookie);
    static scripted_answer with_status(int status, QByteArray body);
    static scripted_answer late(int delay_ms, QByteArray body);
};

/**
 * An HTTP service on loopback that lives in the test's own event loop. It records every request byte for byte
 * and answers from the queue; with the queue empty from the standing answer of the path; without one with an
 * empty body.
 */
class scripted_server : public QObject {
    Q_OBJECT

public:
    scripted_server();
    ~scripted_server() override;

    /** Root address with a trailing slash. */
    QString base_url() const;
    /** Queues the answer to the next request, whatever its path. */
    void answer(scripted_answer next);
    /** The answer to every request for `path` while the queue is empty. */
    void always(const QByteArray& path, scripted_answer standing);
    /** As always, with an answer that depends on the request or on what came before. */
    void always(const QByteArray& path, std::function<scripted_answer(const recorded_request&)> rule);

    const QList<recorded_request>& requests() const { return recorded; }
    const recorded_request& last() const { return recorded.last(); }
    /** Paths of all requests in order. */
    QList<QByteArray> paths() const;
    /** Bodies of the requests for `path` in order. */
    QList<QByteArray> bodies(const QByteArray& path) const;
    /** How many connections were opened. */
    int connections() const { return connection_count; }
    void forget() { recorded.clear(); }

private:
    void accept();
    void read(QTcpSocket* socket);
    scripted_answer next_answer(const recorded_request& request);
    void reply(QTcpSocket* socket, const scripted_answer& next);

    QTcpServer* listener;
    QHash<QTcpSocket*, QByteArray> pending;
    QQueue<scripted_answer> queue;
    QHash<QByteArray, std::function<scripted_answer(const recorded_request&)>> standing_answers;
    QList<recorded_request> recorded;
    int connection_count = 0;
};
