#pragma once

#include <spdlog/logger.h>

#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/asio/strand.hpp>
#include <memory>
#include <string>

#include "http/core.h"
#include "http/request_reader.h"
#include "http/tls_channel.h"

namespace tavrok::http {

using strand = boost::asio::strand<boost::asio::io_context::executor_type>;
using stream_socket = boost::asio::ip::tcp::socket::rebind_executor<strand>::other;

/**
 * One TLS connection: handshake, then requests one after the other, each read whole, handled and answered by
 * one write. Everything runs on the socket's strand, under a deadline that is set before each operation
 * begins.
 */
class session final : public connection, public std::enable_shared_from_this<session> {
public:
    /** The connection counts in the gate already; the session counts it out. */
    session(std::shared_ptr<core> shared, stream_socket socket, const address& peer);
    ~session() override;
    void start();
    void leave() override;
    void abort() override;

private:
    enum class stage { handshake, idle, header, body, handling, writing, closing, closed };
    using step = void (session::*)();
    class exchange;

    void go_on_handshake();
    void begin_request();
    void read_header();
    void accept_header();
    void send_continue();
    void read_body();
    void handle_request();
    respond responder();
    void reject(rejection why);
    void fail(rejection why);
    void close_unanswered();
    void refuse(unsigned status);
    void deliver(std::uint64_t number, response given);
    void abandoned(std::uint64_t number);
    void answer(std::uint64_t number, response given);
    void go_on_writing();
    void written(bool whole);
    void linger();
    void go_on_lingering();
    void close_quietly();
    void close();

    bool wait_for(tls_channel::result needed, step next);
    bool read_more(step next);
    void arm(std::chrono::milliseconds time);
    void on_deadline();
    void count_request();
    void tell(std::function<void(bool)>& whom, bool sent);

    const std::shared_ptr<core> m_core;
    stream_socket m_socket;
    boost::asio::steady_timer::rebind_executor<strand>::other m_timer;
    tls_channel m_tls;
    const address m_peer;
    request_reader m_reader;
    stage m_stage{stage::handshake};
    std::uint64_t m_deadline{0}; /**< number of the deadline that counts; older ones have been replaced */
    std::uint64_t m_wait{0};     /**< likewise for waits on the socket */
    std::uint64_t m_exchange{0}; /**< likewise for answers */
    unsigned m_requests{0};
    bool m_keep{true};
    std::string m_input;  /**< read and not yet understood */
    std::string m_output; /**< the answer on its way, whole */
    request m_current;    /**< the request under way, without its body once the handler has it */
    std::function<void(bool)> m_on_sent;
    unsigned m_status{0};
    std::chrono::steady_clock::time_point m_started;
};

} // namespace tavrok::http
