#include "support/tls_load.h"

#include <fcntl.h>
#include <sys/epoll.h>
#include <unistd.h>

#include <memory>
#include <stdexcept>

#include "support/statistics.h"

namespace bench {
namespace {

/** One connection of the load: hands over a request, reads the answer, hands over the next. */
class lane {
public:
    lane(SSL_CTX* context, int poll, const load_plan& plan, unsigned number)
        : m_context(context), m_poll(poll), m_plan(plan), m_number(number) {
        open();
    }
    ~lane() { shut(); }
    lane(const lane&) = delete;
    lane& operator=(const lane&) = delete;

    /** The socket has something to read. `from` and `until` bound the time whose answers count. */
    void wake(load_result& result, std::int64_t from, std::int64_t until) {
        if (!m_ready && !handshake()) return;
        for (;;) {
            const int count = SSL_read(m_ssl.get(), m_buffer, sizeof m_buffer);
            if (count <= 0) {
                if (SSL_get_error(m_ssl.get(), count) == SSL_ERROR_WANT_READ) return;
                ++result.bad;
                reopen(result);
                return;
            }
            m_received.append(m_buffer, static_cast<std::size_t>(count));
            if (m_size.head == 0) m_size = measure(m_received);
            if (m_size.head != 0 && m_received.size() >= m_size.head + m_size.body) {
                finish(result, from, until);
                return;
            }
        }
    }

private:
    void open() {
        m_socket = connect_loopback(m_plan.port);
        fcntl(m_socket, F_SETFL, fcntl(m_socket, F_GETFL) | O_NONBLOCK);
        m_ssl.reset(SSL_new(m_context));
        SSL_set_fd(m_ssl.get(), m_socket);
        epoll_event event{};
        event.events = EPOLLIN;
        event.data.ptr = this;
        if (epoll_ctl(m_poll, EPOLL_CTL_ADD, m_socket, &event) != 0)
            throw std::runtime_error("epoll_ctl failed");
        handshake();
    }

    void shut() {
        m_ssl.reset();
        close(m_socket);
        m_ready = false;
    }

    void reopen(load_result& result) {
        ++result.handshakes;
        shut();
        open();
    }

    bool handshake() {
        const int done = SSL_connect(m_ssl.get());
        if (done == 1) {
            m_ready = true;
            send();
            return true;
        }
        if (SSL_get_error(m_ssl.get(), done) != SSL_ERROR_WANT_READ)
            throw std::runtime_error("TLS handshake failed under load");
        return false;
    }

    void send() {
        m_plan.next(m_number, m_sent++, m_request);
        m_received.clear();
        m_size = {};
        m_sent_at = now_ns();
        const int count = SSL_write(m_ssl.get(), m_request.data(), static_cast<int>(m_request.size()));
        if (count != static_cast<int>(m_request.size()))
            throw std::runtime_error("request could not be sent");
    }

    void finish(load_result& result, std::int64_t from, std::int64_t until) {
        const std::int64_t now = now_ns();
        const std::string_view whole = m_received;
        if (now >= from && now < until) {
            if (m_plan.good(whole.substr(m_size.head)))
                result.milliseconds.push_back(static_cast<double>(now - m_sent_at) / 1e6);
            else
                ++result.bad;
        }
        if (whole.substr(0, m_size.head).find("onnection: close") != std::string_view::npos)
            reopen(result);
        else
            send();
    }

    SSL_CTX* m_context;
    int m_poll;
    const load_plan& m_plan;
    unsigned m_number;
    int m_socket{-1};
    std::unique_ptr<SSL, ssl_delete> m_ssl;
    bool m_ready{false};
    std::uint64_t m_sent{0};
    std::int64_t m_sent_at{0};
    std::string m_request;
    std::string m_received;
    extent m_size;
    char m_buffer[20000];
};

} // namespace

load_result run_load(SSL_CTX* context, const load_plan& plan) {
    const int poll = epoll_create1(EPOLL_CLOEXEC);
    if (poll < 0) throw std::runtime_error("epoll_create1 failed");
    load_result result;
    result.milliseconds.reserve(1U << 18);
    {
        std::vector<std::unique_ptr<lane>> lanes;
        for (unsigned number = 0; number < plan.connections; ++number)
            lanes.push_back(std::make_unique<lane>(context, poll, plan, number));
        const std::int64_t from = now_ns() + static_cast<std::int64_t>(plan.warm_up_seconds * 1e9);
        const std::int64_t until = from + static_cast<std::int64_t>(plan.seconds * 1e9);
        epoll_event events[64];
        while (now_ns() < until) {
            const int count = epoll_wait(poll, events, 64, 100);
            for (int at = 0; at < count; ++at)
                static_cast<lane*>(events[at].data.ptr)->wake(result, from, until);
        }
        result.seconds = plan.seconds;
    }
    close(poll);
    return result;
}

} // namespace bench
