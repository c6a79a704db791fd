#pragma once

#include <openssl/ssl.h>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace bench {

struct ssl_delete {
    void operator()(SSL* ssl) const { SSL_free(ssl); }
    void operator()(SSL_CTX* context) const { SSL_CTX_free(context); }
};
using ssl_context = std::unique_ptr<SSL_CTX, ssl_delete>;

/** A client context that trusts any certificate, as the desktop client does. */
ssl_context make_context();

/** A connected TCP socket to 127.0.0.1, without delay, from the given loopback address ("" for any). */
int connect_loopback(std::uint16_t port, const std::string& source = {});

struct answer {
    unsigned status{};
    std::string head;
    std::string body;

    /** Value of a cookie that this answer sets, empty if it sets none of that name. */
    std::string cookie(std::string_view name) const;
    bool closes() const;
};

/** Length of the head with its blank line, and of the body behind it; head 0 while the head is not whole. */
struct extent {
    std::size_t head{};
    std::size_t body{};
};
extent measure(std::string_view received);

/** The bytes of a POST as the service expects it, with the session cookie if there is one. */
std::string post(std::string_view path, std::string_view body, std::string_view session = {});

/** The same for a GET. */
std::string get(std::string_view path, std::string_view session);

/** What the client sends in place of a typed password. */
std::string md5_hex(const std::string& text);

/** One blocking TLS connection to the service on 127.0.0.1. Throws std::runtime_error on any failure. */
class tls_client {
public:
    tls_client(SSL_CTX* context, std::uint16_t port, const std::string& source = {});
    ~tls_client();
    tls_client(const tls_client&) = delete;
    tls_client& operator=(const tls_client&) = delete;

    answer exchange(std::string_view request);

private:
    int m_socket;
    std::unique_ptr<SSL, ssl_delete> m_ssl;
};

/** Logs in and gives the value of the session cookie. */
std::string log_in(SSL_CTX* context, std::uint16_t port, const std::string& username,
                   const std::string& password);

} // namespace bench
