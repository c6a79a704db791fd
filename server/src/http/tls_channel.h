#pragma once

#include <memory>
#include <string>
#include <string_view>

struct ssl_st;
struct ssl_ctx_st;

namespace tavrok::http {

/**
 * The server's side of TLS straight on a non-blocking socket. Nothing stands between OpenSSL and the socket,
 * so an idle connection holds no buffers; the caller waits for the socket where a call says so and makes it
 * again.
 */
class tls_channel {
public:
    enum class result { done, want_read, want_write, closed, failed };

    tls_channel(ssl_ctx_st* context, int socket);
    ~tls_channel();
    tls_channel(const tls_channel&) = delete;
    tls_channel& operator=(const tls_channel&) = delete;

    result handshake();
    /** Appends what is there, at most one record. */
    result read(std::string& into);
    /** Hands all of it to the system. After want_... the same bytes are to be given again. */
    result write(std::string_view whole);
    /** Acknowledges at once what has come. A peer that writes head and body apart and leaves Nagle's
     * algorithm on would else hold the body back until the delayed acknowledgement, some 40 ms. Lasts for one
     * wait. */
    void acknowledge();
    /** Says close_notify where the handshake is over; never waits. */
    void say_farewell();
    /** Reads and drops raw bytes; `done` when some came, `closed` at the end. */
    result drain();
    /** True where the peer has closed its side or the connection is broken. */
    bool peer_gone() const;

private:
    result outcome(int returned);

    struct release {
        void operator()(ssl_st* what) const;
    };
    std::unique_ptr<ssl_st, release> m_tls;
    int m_socket;
};

} // namespace tavrok::http
