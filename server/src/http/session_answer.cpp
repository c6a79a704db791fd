#include <boost/asio/post.hpp>

#include "http/header_text.h"
#include "http/session.h"

namespace tavrok::http {

using result = tls_channel::result;
using clock = std::chrono::steady_clock;

/** Leads one answer back, once; where the handler lets go of it without an answer, that is a failure. */
class session::exchange {
public:
    exchange(std::shared_ptr<session> owner, std::uint64_t number)
        : m_owner(std::move(owner)), m_number(number) {}
    ~exchange() {
        if (!m_used.exchange(true)) m_owner->abandoned(m_number);
    }
    exchange(const exchange&) = delete;
    exchange& operator=(const exchange&) = delete;

    void answer(response given) {
        if (!m_used.exchange(true)) m_owner->deliver(m_number, std::move(given));
    }

private:
    const std::shared_ptr<session> m_owner;
    const std::uint64_t m_number;
    std::atomic<bool> m_used{false};
};

respond session::responder() {
    auto way = std::make_shared<exchange>(shared_from_this(), m_exchange);
    return [way = std::move(way)](response given) { way->answer(std::move(given)); };
}

void session::reject(rejection why) {
    ++m_core->figures.rejected;
    ++m_exchange; // an answer that is still to come is late now
    arm(m_core->bounds.handler);
    const std::uint64_t number = m_exchange;
    try {
        m_core->behind->reject(m_current, why, responder());
    } catch (const std::exception& failure) {
        m_core->log->error("{} {} failed: {}", m_current.id, loggable(m_current.path), failure.what());
        answer(number, response{});
    }
}

/** Answers for the handler, unless what it was asked for may take place after all: then nothing is said. */
void session::fail(rejection why) {
    m_current.outcome->give_up() ? reject(why) : close_unanswered();
}

/** The peer knows as little as we do what became of its request, and may ask again. */
void session::close_unanswered() {
    m_core->log->warn("{} {} is not answered: its outcome is not known", m_current.id,
                      loggable(m_current.path));
    ++m_core->figures.unsent;
    close_quietly();
}

/** Answers what is no request of the protocol, and closes. */
void session::refuse(unsigned status) {
    if (status == 400) ++m_core->figures.malformed;
    m_current = request{};
    m_current.id = m_core->next_id();
    m_current.method = "-";
    m_current.path = "-";
    m_current.peer = to_text(m_peer);
    m_started = clock::now();
    m_keep = false;
    m_stage = stage::handling;
    response told;
    told.status = status;
    answer(++m_exchange, std::move(told));
}

void session::deliver(std::uint64_t number, response given) {
    const std::shared_lock lock(m_core->ending);
    if (m_core->ended) {
        tell(given.on_sent, false);
        return;
    }
    boost::asio::post(m_socket.get_executor(),
                      [self = shared_from_this(), number, given = std::move(given)]() mutable {
                          self->answer(number, std::move(given));
                      });
}

/** The handler let go of the request without an answer. */
void session::abandoned(std::uint64_t number) {
    const std::shared_lock lock(m_core->ending);
    if (m_core->ended) return;
    boost::asio::post(m_socket.get_executor(), [self = shared_from_this(), number] {
        if (self->m_stage == stage::handling && number == self->m_exchange) self->fail(rejection::failed);
    });
}

void session::answer(std::uint64_t number, response given) {
    if (m_stage != stage::handling || number != m_exchange) {
        tell(given.on_sent, false);
        return;
    }
    if (given.unknown) {
        tell(given.on_sent, false);
        close_unanswered();
        return;
    }
    m_stage = stage::writing;
    arm(m_core->bounds.write);
    m_keep = m_keep && !m_core->stopping;
    m_output = head_of(given, m_keep);
    if (m_current.method != "HEAD") m_output += given.body;
    m_status = given.status;
    m_on_sent = std::move(given.on_sent);
    go_on_writing();
}

void session::go_on_writing() {
    const result now = m_tls.write(m_output);
    if (!wait_for(now, &session::go_on_writing)) written(now == result::done);
}

void session::written(bool whole) {
    // A peer that closed before it could read has not got the answer, even though the system took it.
    const bool sent = whole && !m_tls.peer_gone();
    const auto time = std::chrono::duration_cast<std::chrono::microseconds>(clock::now() - m_started);
    counters& figures = m_core->figures;
    ++figures.requests;
    figures.took(time);
    if (whole) figures.bytes_out += m_output.size();
    m_core->log->info("{} {} {} {} {} {:.1f} {}{}", m_current.id, loggable(m_current.method),
                      loggable(m_current.path), m_status, m_output.size(),
                      static_cast<double>(time.count()) / 1000.0, m_current.peer, sent ? "" : " unsent");
    std::string{}.swap(m_output);
    tell(m_on_sent, sent);
    if (!sent) ++figures.unsent;
    if (!whole) {
        close();
    } else if (m_keep) {
        begin_request();
    } else {
        linger();
    }
}

void session::tell(std::function<void(bool)>& whom, bool sent) {
    const auto called = std::exchange(whom, nullptr);
    if (!called) return;
    try {
        called(sent);
    } catch (const std::exception& failure) {
        m_core->log->error("{} failed after its answer: {}", m_current.id, failure.what());
    }
}

/** Says farewell and reads on for a while: closing with bytes unread would take the answer from the peer. */
void session::linger() {
    m_stage = stage::closing;
    arm(m_core->bounds.shutdown);
    m_tls.say_farewell();
    boost::system::error_code ignored;
    m_socket.shutdown(stream_socket::shutdown_send, ignored);
    go_on_lingering();
}

void session::go_on_lingering() {
    // One piece a turn, so that a peer that sends without end takes nothing but its time.
    const result now = m_tls.drain();
    if (now == result::closed || !wait_for(result::want_read, &session::go_on_lingering)) close();
}

void session::close_quietly() {
    if (m_stage != stage::closed) m_tls.say_farewell();
    close();
}

void session::close() {
    if (m_stage == stage::closed) return;
    m_stage = stage::closed;
    ++m_wait;
    ++m_deadline;
    m_timer.cancel();
    boost::system::error_code ignored;
    m_socket.close(ignored);
    if (m_on_sent) ++m_core->figures.unsent;
    tell(m_on_sent, false);
    m_core->remove(this);
}

} // namespace tavrok::http
