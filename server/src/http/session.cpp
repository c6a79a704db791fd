#include "http/session.h"

#include <boost/asio/post.hpp>

#include "http/header_text.h"

namespace tavrok::http {

using result = tls_channel::result;
using clock = std::chrono::steady_clock;

session::session(std::shared_ptr<core> shared, stream_socket socket, const address& peer)
    : m_core(std::move(shared)),
      m_socket(std::move(socket)),
      m_timer(m_socket.get_executor()),
      m_tls(m_core->tls().get(), m_socket.native_handle()),
      m_peer(peer),
      m_reader(m_core->bounds.header_bytes) {
    ++m_core->figures.connections_open;
}

session::~session() {
    m_core->gate.leave(m_peer);
    --m_core->figures.connections_open;
}

void session::start() {
    boost::asio::post(m_socket.get_executor(), [self = shared_from_this()] {
        self->arm(self->m_core->bounds.handshake);
        self->go_on_handshake();
    });
}

void session::leave() {
    boost::asio::post(m_socket.get_executor(), [self = shared_from_this()] {
        const stage at = self->m_stage;
        self->m_keep = false;
        const bool unasked = at == stage::header && self->m_input.empty();
        if (at == stage::handshake || at == stage::idle || unasked) self->close_quietly();
    });
}

void session::abort() {
    boost::asio::post(m_socket.get_executor(), [self = shared_from_this()] { self->close(); });
}

/** Sets the deadline of the operation that begins now; it replaces the former one. */
void session::arm(std::chrono::milliseconds time) {
    const std::uint64_t number = ++m_deadline;
    m_timer.expires_after(time);
    m_timer.async_wait([self = shared_from_this(), number](const boost::system::error_code& failure) {
        if (!failure && number == self->m_deadline) self->on_deadline();
    });
}

void session::on_deadline() {
    ++m_wait; // whatever is waited for on the socket is not wanted any more
    switch (m_stage) {
        case stage::handling:
            fail(rejection::timed_out);
            return;
        case stage::idle:
            close_quietly();
            return;
        case stage::header:
            ++m_core->figures.timeouts;
            if (m_input.empty()) {
                close_quietly();
            } else {
                refuse(408);
            }
            return;
        case stage::body:
            ++m_core->figures.timeouts;
            refuse(408);
            return;
        case stage::handshake:
        case stage::writing:
            ++m_core->figures.timeouts;
            break;
        case stage::closing:
        case stage::closed:
            break;
    }
    close();
}

/** Makes `next` run when the socket can go on; false where nothing is to be waited for. */
bool session::wait_for(result needed, step next) {
    if (needed != result::want_read && needed != result::want_write) return false;
    const std::uint64_t number = ++m_wait;
    m_socket.async_wait(needed == result::want_read ? stream_socket::wait_read : stream_socket::wait_write,
                        [self = shared_from_this(), next, number](const boost::system::error_code& failure) {
                            if (failure || number != self->m_wait) return;
                            (self.get()->*next)();
                        });
    return true;
}

void session::go_on_handshake() {
    const result now = m_tls.handshake();
    if (wait_for(now, &session::go_on_handshake)) return;
    if (now == result::done) {
        begin_request();
        return;
    }
    ++m_core->figures.handshakes_failed;
    close();
}

void session::begin_request() {
    if (m_core->stopping) {
        close_quietly();
        return;
    }
    const bool idles = m_requests > 0 && m_input.empty();
    m_stage = idles ? stage::idle : stage::header;
    arm(idles ? m_core->bounds.idle : m_core->bounds.header);
    if (m_input.empty()) m_input.shrink_to_fit();
    read_header();
}

/** Reads into m_input; false where the caller has to return, be it that `next` will run later or never. */
bool session::read_more(step next) {
    const std::size_t before = m_input.size();
    const result now = m_tls.read(m_input);
    if (now == result::done) {
        m_core->figures.bytes_in += m_input.size() - before;
        return true;
    }
    if (!wait_for(now, next)) close_quietly();
    return false;
}

void session::read_header() {
    for (;;) {
        if (!m_input.empty()) {
            if (m_stage == stage::idle) {
                m_stage = stage::header;
                arm(m_core->bounds.header);
            }
            switch (m_reader.header(m_input)) {
                case request_reader::progress::whole:
                    accept_header();
                    return;
                case request_reader::progress::too_large:
                    refuse(431);
                    return;
                case request_reader::progress::malformed:
                    refuse(400);
                    return;
                case request_reader::progress::more:
                    break;
            }
        }
        if (!read_more(&session::read_header)) return;
    }
}

/** Decides what becomes of the body before a byte of it is read. */
void session::accept_header() {
    const auto length = m_reader.content_length();
    m_stage = stage::body;
    arm(m_core->bounds.body);
    m_keep = m_reader.keep_alive() && ++m_requests < m_core->bounds.requests_per_connection;
    if (length && *length > m_core->bounds.discard_bytes) {
        m_reader.discard_body();
        m_keep = false;
        count_request();
        reject(rejection::body_too_large);
        return;
    }
    if (length && *length > m_core->bounds.body_bytes) m_reader.discard_body();
    if (m_reader.expects_continue() && m_input.empty()) {
        m_output = "HTTP/1.1 100 Continue\r\n\r\n";
        send_continue();
    } else {
        read_body();
    }
}

void session::send_continue() {
    const result now = m_tls.write(m_output);
    if (wait_for(now, &session::send_continue)) return;
    if (now == result::done) {
        read_body();
    } else {
        close();
    }
}

void session::read_body() {
    for (;;) {
        const auto now = m_reader.body(m_input);
        const bool too_large = m_reader.body_bytes() > m_core->bounds.body_bytes;
        if (too_large) m_reader.discard_body();
        const bool endless = m_reader.body_bytes() > m_core->bounds.discard_bytes;
        if (now == request_reader::progress::malformed) {
            refuse(400);
            return;
        }
        if (endless) m_keep = false;
        if (endless || (now == request_reader::progress::whole && too_large)) {
            count_request();
            reject(rejection::body_too_large);
            return;
        }
        if (now == request_reader::progress::whole) {
            handle_request();
            return;
        }
        m_tls.acknowledge();
        if (!read_more(&session::read_body)) return;
    }
}

/** Takes the request out of the reader and starts its time. */
void session::count_request() {
    const std::string hops = m_reader.forwarded_for();
    m_current = m_reader.take();
    m_current.id = m_core->next_id();
    m_current.peer = to_text(forwarded_address(m_peer, hops, m_core->proxies));
    m_started = clock::now();
    m_stage = stage::handling;
    ++m_exchange;
    arm(m_core->bounds.handler);
}

void session::handle_request() {
    count_request();
    const auto peer = read_address(m_current.peer);
    if (!m_core->gate.request(peer.value_or(m_peer), m_started)) {
        m_current.body.clear();
        reject(rejection::too_many_requests);
        return;
    }
    std::string body = std::move(m_current.body);
    m_current.body.clear();
    request whole = m_current;
    whole.body = std::move(body);
    try {
        m_core->behind->handle(std::move(whole), responder());
    } catch (const std::exception& failure) {
        m_core->log->error("{} {} failed: {}", m_current.id, loggable(m_current.path), failure.what());
        fail(rejection::failed);
    }
}

} // namespace tavrok::http
