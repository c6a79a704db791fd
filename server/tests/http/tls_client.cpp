#include "tls_client.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <openssl/err.h>
#include <openssl/ssl.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <csignal>
#include <stdexcept>

namespace tavrok::test {

using clock = std::chrono::steady_clock;

namespace {

bool wait_for(int socket, short events, clock::time_point until) {
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(until - clock::now()).count();
    pollfd state{socket, events, 0};
    return left > 0 && ::poll(&state, 1, static_cast<int>(left)) > 0;
}

} // namespace

std::string reply::field(std::string_view name) const {
    const std::string key = "\r\n" + std::string(name) + ": ";
    const auto start = head.find(key);
    if (start == std::string::npos) return {};
    const auto value = start + key.size();
    return head.substr(value, head.find("\r\n", value) - value);
}

tcp_client::tcp_client(unsigned short port) : m_socket(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_in at{};
    at.sin_family = AF_INET;
    at.sin_port = htons(port);
    at.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    if (::connect(m_socket, reinterpret_cast<const sockaddr*>(&at), sizeof at) != 0) {
        ::close(m_socket);
        throw std::runtime_error("nobody listens at the port");
    }
    ::fcntl(m_socket, F_SETFL, O_NONBLOCK);
}

tcp_client::~tcp_client() {
    ::close(m_socket);
}

void tcp_client::send(std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t sent = ::send(m_socket, bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (sent > 0) {
            bytes.remove_prefix(static_cast<std::size_t>(sent));
        } else if (errno != EAGAIN || !wait_for(m_socket, POLLOUT, clock::now() + patience)) {
            return;
        }
    }
}

bool tcp_client::closed_within(std::chrono::milliseconds time) {
    const auto until = clock::now() + time;
    char dropped[4096];
    while (wait_for(m_socket, POLLIN, until)) {
        if (::recv(m_socket, dropped, sizeof dropped, 0) <= 0) return true;
    }
    return false;
}

void tcp_client::half_close() {
    ::shutdown(m_socket, SHUT_WR);
}

void tcp_client::reset_on_close() {
    const linger at_once{1, 0};
    ::setsockopt(m_socket, SOL_SOCKET, SO_LINGER, &at_once, sizeof at_once);
}

void tls_client::on_record(int written, int, int type, const void* data, std::size_t size, ssl_st*,
                           void* self) {
    if (written == 0 && type == SSL3_RT_HEADER && size > 0 &&
        *static_cast<const unsigned char*>(data) == SSL3_RT_APPLICATION_DATA) {
        ++static_cast<tls_client*>(self)->m_records;
    }
}

tls_client::tls_client(unsigned short port, int version)
    : m_transport(port), m_context(SSL_CTX_new(TLS_client_method()), SSL_CTX_free) {
    SSL_CTX_set_verify(m_context.get(), SSL_VERIFY_NONE, nullptr);
    if (version != 0) {
        // Security level 0: otherwise this side would already refuse the old versions.
        SSL_CTX_set_security_level(m_context.get(), 0);
        SSL_CTX_set_min_proto_version(m_context.get(), version);
        SSL_CTX_set_max_proto_version(m_context.get(), version);
    }
    // OpenSSL writes with write(): a peer that has closed would end the tests.
    std::signal(SIGPIPE, SIG_IGN);
    m_tls = std::shared_ptr<ssl_st>(SSL_new(m_context.get()), SSL_free);
    SSL_set_fd(m_tls.get(), m_transport.socket());
    SSL_set_connect_state(m_tls.get());
    SSL_set_msg_callback(m_tls.get(), on_record);
    SSL_set_msg_callback_arg(m_tls.get(), this);
    const auto until = clock::now() + patience;
    for (;;) {
        ERR_clear_error();
        const int done = SSL_do_handshake(m_tls.get());
        m_connected = done == 1;
        if (m_connected || SSL_get_error(m_tls.get(), done) != SSL_ERROR_WANT_READ || !wait(POLLIN, until))
            break;
    }
    m_records = 0;
}

tls_client::~tls_client() = default;

bool tls_client::wait(short events, clock::time_point until) {
    return wait_for(m_transport.socket(), events, until);
}

std::string tls_client::protocol() const {
    return SSL_get_version(m_tls.get());
}

std::string tls_client::serial() const {
    X509* shown = SSL_get1_peer_certificate(m_tls.get());
    if (shown == nullptr) return {};
    BIGNUM* number = ASN1_INTEGER_to_BN(X509_get0_serialNumber(shown), nullptr);
    char* text = BN_bn2hex(number);
    std::string serial = text;
    OPENSSL_free(text);
    BN_free(number);
    X509_free(shown);
    return serial;
}

bool tls_client::send(std::string_view bytes) {
    const auto until = clock::now() + patience;
    for (;;) {
        ERR_clear_error();
        const int sent = SSL_write(m_tls.get(), bytes.data(), static_cast<int>(bytes.size()));
        if (sent > 0) return true;
        const int why = SSL_get_error(m_tls.get(), sent);
        const short events = why == SSL_ERROR_WANT_READ ? POLLIN : POLLOUT;
        if ((why != SSL_ERROR_WANT_READ && why != SSL_ERROR_WANT_WRITE) || !wait(events, until)) return false;
    }
}

bool tls_client::more(clock::time_point until) {
    char piece[16 * 1024];
    for (;;) {
        ERR_clear_error();
        const int count = SSL_read(m_tls.get(), piece, sizeof piece);
        if (count > 0) {
            m_input.append(piece, static_cast<std::size_t>(count));
            return true;
        }
        if (SSL_get_error(m_tls.get(), count) != SSL_ERROR_WANT_READ || !wait(POLLIN, until)) return false;
    }
}

std::optional<reply> tls_client::read() {
    const auto until = clock::now() + patience;
    std::size_t end = 0;
    while ((end = m_input.find("\r\n\r\n")) == std::string::npos) {
        if (!more(until)) return std::nullopt;
    }
    reply got;
    got.head = m_input.substr(0, end + 4);
    got.status = static_cast<unsigned>(std::stoul(got.head.substr(9, 3)));
    m_input.erase(0, end + 4);
    const std::string length = got.field("Content-Length");
    const std::size_t size = length.empty() ? 0 : std::stoul(length);
    while (m_input.size() < size) {
        if (!more(until)) return std::nullopt;
    }
    got.body = m_input.substr(0, size);
    m_input.erase(0, size);
    return got;
}

bool tls_client::readable_within(std::chrono::milliseconds time) {
    return wait(POLLIN, clock::now() + time);
}

bool tls_client::closed_within(std::chrono::milliseconds time) {
    const auto until = clock::now() + time;
    while (clock::now() < until) {
        if (!more(until)) return clock::now() < until;
    }
    return false;
}

void tls_client::say_farewell() {
    SSL_shutdown(m_tls.get());
}

std::string post(std::string_view path, std::string_view body, std::string_view more_fields) {
    std::string text = "POST /";
    text.append(path).append(" HTTP/1.1\r\nHost: localhost\r\n").append(more_fields);
    text.append("Content-Length: ").append(std::to_string(body.size())).append("\r\n\r\n").append(body);
    return text;
}

std::string get(std::string_view path, std::string_view more_fields) {
    std::string text = "GET /";
    text.append(path).append(" HTTP/1.1\r\nHost: localhost\r\n").append(more_fields).append("\r\n");
    return text;
}

} // namespace tavrok::test
