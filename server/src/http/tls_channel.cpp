#include "http/tls_channel.h"

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <openssl/bio.h>
#include <openssl/err.h>
#include <openssl/ssl.h>
#include <poll.h>
#include <sys/socket.h>

#include <array>
#include <cerrno>
#include <cstdint>
#include <stdexcept>

namespace tavrok::http {

namespace {

/** One per network thread: connections have no buffers of their own. */
thread_local std::array<char, 16 * 1024> scratch;

int socket_of(BIO* channel) {
    return static_cast<int>(reinterpret_cast<std::intptr_t>(BIO_get_data(channel)));
}

bool try_again() {
    return errno == EAGAIN || errno == EINTR;
}

int read_socket(BIO* channel, char* into, int size) {
    BIO_clear_retry_flags(channel);
    const ssize_t count = ::recv(socket_of(channel), into, static_cast<std::size_t>(size), 0);
    if (count < 0 && try_again()) BIO_set_retry_read(channel);
    return static_cast<int>(count);
}

int write_socket(BIO* channel, const char* from, int size) {
    BIO_clear_retry_flags(channel);
    const ssize_t count = ::send(socket_of(channel), from, static_cast<std::size_t>(size), MSG_NOSIGNAL);
    if (count < 0 && try_again()) BIO_set_retry_write(channel);
    return static_cast<int>(count);
}

long control(BIO*, int command, long, void*) {
    return command == BIO_CTRL_FLUSH ? 1 : 0;
}

/** OpenSSL's own socket channel writes with write(), which ends the process by SIGPIPE where the peer has
 * gone. */
BIO_METHOD* channel_method() {
    static BIO_METHOD* const method = [] {
        BIO_METHOD* made = BIO_meth_new(BIO_get_new_index() | BIO_TYPE_SOURCE_SINK, "socket without signals");
        BIO_meth_set_read(made, read_socket);
        BIO_meth_set_write(made, write_socket);
        BIO_meth_set_ctrl(made, control);
        return made;
    }();
    return method;
}

} // namespace

void tls_channel::release::operator()(ssl_st* what) const {
    SSL_free(what);
}

tls_channel::tls_channel(ssl_ctx_st* context, int socket) : m_tls(SSL_new(context)), m_socket(socket) {
    BIO* channel = m_tls ? BIO_new(channel_method()) : nullptr;
    if (channel == nullptr) throw std::runtime_error("no memory for a TLS connection");
    BIO_set_data(channel, reinterpret_cast<void*>(static_cast<std::intptr_t>(socket)));
    BIO_set_init(channel, 1);
    SSL_set_bio(m_tls.get(), channel, channel);
    SSL_set_accept_state(m_tls.get());
}

tls_channel::~tls_channel() = default;

tls_channel::result tls_channel::outcome(int returned) {
    switch (SSL_get_error(m_tls.get(), returned)) {
        case SSL_ERROR_WANT_READ:
            return result::want_read;
        case SSL_ERROR_WANT_WRITE:
            return result::want_write;
        case SSL_ERROR_ZERO_RETURN:
            return result::closed;
        default:
            ERR_clear_error();
            return result::failed;
    }
}

tls_channel::result tls_channel::handshake() {
    ERR_clear_error();
    const int returned = SSL_do_handshake(m_tls.get());
    return returned == 1 ? result::done : outcome(returned);
}

tls_channel::result tls_channel::read(std::string& into) {
    ERR_clear_error();
    const int count = SSL_read(m_tls.get(), scratch.data(), static_cast<int>(scratch.size()));
    if (count <= 0) return outcome(count);
    into.append(scratch.data(), static_cast<std::size_t>(count));
    return result::done;
}

tls_channel::result tls_channel::write(std::string_view whole) {
    ERR_clear_error();
    const int count = SSL_write(m_tls.get(), whole.data(), static_cast<int>(whole.size()));
    return count > 0 ? result::done : outcome(count);
}

void tls_channel::acknowledge() {
    const int on = 1;
    ::setsockopt(m_socket, IPPROTO_TCP, TCP_QUICKACK, &on, sizeof on);
}

void tls_channel::say_farewell() {
    ERR_clear_error();
    if (SSL_is_init_finished(m_tls.get()) == 1) SSL_shutdown(m_tls.get());
    ERR_clear_error();
}

tls_channel::result tls_channel::drain() {
    const ssize_t count = ::recv(m_socket, scratch.data(), scratch.size(), 0);
    if (count > 0) return result::done;
    return count < 0 && try_again() ? result::want_read : result::closed;
}

bool tls_channel::peer_gone() const {
    pollfd state{m_socket, POLLRDHUP, 0};
    return ::poll(&state, 1, 0) > 0 && (state.revents & (POLLRDHUP | POLLHUP | POLLERR)) != 0;
}

} // namespace tavrok::http
