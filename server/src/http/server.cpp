#include "http/server.h"

#include <boost/asio/bind_executor.hpp>
#include <boost/asio/executor_work_guard.hpp>
#include <boost/asio/post.hpp>
#include <optional>
#include <thread>

#include "http/session.h"

namespace tavrok::http {

namespace asio = boost::asio;
using boost::system::error_code;
using tcp = asio::ip::tcp;

namespace {

/** How long accepting rests after a failure (out of descriptors, mostly). */
constexpr std::chrono::milliseconds accept_pause{100};

address to_address(const asio::ip::address& from) {
    const auto v6 =
        from.is_v6() ? from.to_v6() : asio::ip::make_address_v6(asio::ip::v4_mapped, from.to_v4());
    return v6.to_bytes();
}

/** Listens at one address. */
class listener : public std::enable_shared_from_this<listener> {
public:
    listener(std::shared_ptr<core> shared, const tcp::endpoint& at)
        : m_core(std::move(shared)),
          m_strand(asio::make_strand(m_core->io)),
          m_acceptor(m_strand),
          m_pause(m_strand) {
        m_acceptor.open(at.protocol());
        m_acceptor.set_option(tcp::acceptor::reuse_address(true));
        m_acceptor.bind(at);
        m_acceptor.listen(asio::socket_base::max_listen_connections);
    }
    unsigned short port() const { return m_acceptor.local_endpoint().port(); }
    void start() {
        asio::post(m_strand, [self = shared_from_this()] { self->accept(); });
    }
    void stop() {
        asio::post(m_strand, [self = shared_from_this()] {
            error_code ignored;
            self->m_acceptor.close(ignored);
            self->m_pause.cancel();
        });
    }

private:
    void accept() {
        if (!m_acceptor.is_open()) return;
        auto taken = [self = shared_from_this()](const error_code& failure, stream_socket peer) {
            if (!failure) {
                self->admit(std::move(peer));
                self->accept();
            } else if (failure != asio::error::operation_aborted) {
                self->rest(failure);
            }
        };
        m_acceptor.async_accept(asio::make_strand(m_core->io),
                                asio::bind_executor(m_strand, std::move(taken)));
    }
    void rest(const error_code& failure) {
        m_core->log->warn("cannot accept a connection: {}", failure.message());
        m_pause.expires_after(accept_pause);
        m_pause.async_wait([self = shared_from_this()](const error_code& stopped) {
            if (!stopped) self->accept();
        });
    }
    void admit(stream_socket peer) {
        error_code failure;
        const auto endpoint = peer.remote_endpoint(failure);
        if (failure) return;
        const address who = to_address(endpoint.address());
        if (m_core->stopping || !m_core->gate.enter(who, m_core->proxies.contains(who))) {
            ++m_core->figures.connections_refused;
            return;
        }
        peer.set_option(tcp::no_delay(true), failure);
        peer.native_non_blocking(true, failure);
        std::shared_ptr<session> made;
        try {
            made = std::make_shared<session>(m_core, std::move(peer), who);
        } catch (const std::exception& told) {
            m_core->gate.leave(who);
            m_core->log->error("cannot serve a connection: {}", told.what());
            return;
        }
        ++m_core->figures.connections;
        m_core->add(made);
        made->start();
        // stop() may have listed the open connections before this one stood among them.
        if (m_core->stopping) made->leave();
    }

    const std::shared_ptr<core> m_core;
    const asio::strand<asio::io_context::executor_type> m_strand;
    asio::basic_socket_acceptor<tcp, strand> m_acceptor;
    asio::steady_timer::rebind_executor<strand>::other m_pause;
};

void run(core& shared) {
    for (;;) {
        try {
            shared.io.run();
            return;
        } catch (const std::exception& failure) {
            shared.log->error("on a network thread: {}", failure.what());
        }
    }
}

} // namespace

struct server::state {
    settings how;
    std::shared_ptr<core> shared;
    std::vector<std::shared_ptr<listener>> listeners;
    std::vector<std::thread> threads;
    std::optional<asio::executor_work_guard<asio::io_context::executor_type>> work;
    unsigned short port{0};
};

server::server(settings how, std::shared_ptr<handler> behind) : m_state(std::make_unique<state>()) {
    m_state->shared =
        std::make_shared<core>(how.bounds, address_list(how.proxies), std::move(behind), how.log);
    m_state->shared->use(load_tls(how.certificate));
    m_state->how = std::move(how);
}

server::~server() {
    stop(std::chrono::milliseconds(0));
}

void server::start() {
    core& shared = *m_state->shared;
    m_state->port = m_state->how.port;
    for (const std::string& text : m_state->how.listen) {
        try {
            const tcp::endpoint at(asio::ip::make_address(text), m_state->port);
            m_state->listeners.push_back(std::make_shared<listener>(m_state->shared, at));
        } catch (const boost::system::system_error& failure) {
            throw std::system_error(failure.code().value(), std::generic_category(),
                                    "cannot listen at " + text + " port " + std::to_string(m_state->port));
        }
        m_state->port = m_state->listeners.back()->port();
    }
    m_state->work.emplace(shared.io.get_executor());
    for (const auto& one : m_state->listeners)
        one->start();
    for (unsigned n = 0; n < std::max(1u, m_state->how.threads); ++n) {
        m_state->threads.emplace_back([&shared] { run(shared); });
    }
}

unsigned short server::port() const {
    return m_state->port;
}

bool server::reload_certificate() {
    try {
        m_state->shared->use(load_tls(m_state->how.certificate));
        m_state->how.log->info("certificate {} reloaded", m_state->how.certificate.certificate);
        return true;
    } catch (const std::exception& failure) {
        m_state->how.log->error("the former certificate stays in use: {}", failure.what());
        return false;
    }
}

void server::stop(std::chrono::milliseconds grace) {
    const auto until = std::chrono::steady_clock::now() + grace;
    core& shared = *m_state->shared;
    if (shared.stopping.exchange(true)) return;
    for (const auto& one : m_state->listeners)
        one->stop();
    for (const auto& one : shared.open())
        one->leave();
    if (!m_state->threads.empty() && !shared.wait_until_empty(until)) {
        m_state->how.log->warn("requests under way at the end of the grace time are dropped");
    }
    for (const auto& one : shared.open())
        one->abort();
    m_state->work.reset();
    for (std::thread& one : m_state->threads)
        one.join();
    {
        const std::unique_lock lock(shared.ending);
        shared.ended = true;
    }
    // What was handed over after the last thread went, and what never ran.
    m_state->listeners.clear();
    shared.io.restart();
    shared.io.poll();
}

const counters& server::figures() const {
    return m_state->shared->figures;
}

} // namespace tavrok::http
