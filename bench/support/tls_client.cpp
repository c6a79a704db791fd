#include "support/tls_client.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <openssl/evp.h>
#include <sys/socket.h>
#include <unistd.h>

#include <charconv>
#include <cstring>
#include <stdexcept>

namespace bench {
namespace {

constexpr std::string_view end_of_head = "\r\n\r\n";

/** Position behind "name" in a head, in the two spellings that servers send. */
std::size_t find_field(std::string_view head, std::string_view name, std::string_view lower) {
    const std::size_t at = head.find(name);
    if (at != std::string_view::npos) return at + name.size();
    const std::size_t other = head.find(lower);
    return other == std::string_view::npos ? other : other + lower.size();
}

} // namespace

ssl_context make_context() {
    ssl_context context(SSL_CTX_new(TLS_client_method()));
    if (!context) throw std::runtime_error("no TLS context");
    SSL_CTX_set_verify(context.get(), SSL_VERIFY_NONE, nullptr);
    return context;
}

int connect_loopback(std::uint16_t port, const std::string& source) {
    const int handle = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (handle < 0) throw std::runtime_error(std::string("socket: ") + std::strerror(errno));
    sockaddr_in address{};
    address.sin_family = AF_INET;
    bool failed = false;
    if (!source.empty()) {
        inet_pton(AF_INET, source.c_str(), &address.sin_addr);
        failed = bind(handle, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0;
    }
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(port);
    failed = failed || connect(handle, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0;
    if (failed) {
        const std::string text = std::strerror(errno);
        close(handle);
        throw std::runtime_error("no connection to port " + std::to_string(port) + ": " + text);
    }
    const int on = 1;
    setsockopt(handle, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    return handle;
}

std::string answer::cookie(std::string_view name) const {
    const std::string wanted = "ookie: " + std::string(name) + "=";
    const std::size_t at = head.find(wanted);
    if (at == std::string::npos) return {};
    const std::size_t begin = at + wanted.size();
    return head.substr(begin, head.find_first_of(";\r", begin) - begin);
}

bool answer::closes() const {
    return head.find("onnection: close") != std::string::npos;
}

extent measure(std::string_view received) {
    const std::size_t end = received.find(end_of_head);
    if (end == std::string_view::npos) return {};
    const std::string_view head = received.substr(0, end);
    const std::size_t at = find_field(head, "Content-Length: ", "content-length: ");
    if (at == std::string_view::npos) throw std::runtime_error("answer without a length");
    extent result{end + end_of_head.size(), 0};
    std::from_chars(head.data() + at, head.data() + head.size(), result.body);
    return result;
}

std::string post(std::string_view path, std::string_view body, std::string_view session) {
    std::string text = "POST /";
    text.append(path).append(
        " HTTP/1.1\r\nHost: 127.0.0.1\r\nContent-Type: application/x-www-form-urlencoded\r\n");
    if (!session.empty()) text.append("Cookie: tavrok_session=").append(session).append("\r\n");
    text.append("Content-Length: ").append(std::to_string(body.size())).append(end_of_head).append(body);
    return text;
}

std::string get(std::string_view path, std::string_view session) {
    std::string text = "GET /";
    text.append(path).append(" HTTP/1.1\r\nHost: 127.0.0.1\r\nCookie: tavrok_session=").append(session);
    return text.append(end_of_head);
}

std::string md5_hex(const std::string& text) {
    unsigned char digest[EVP_MAX_MD_SIZE];
    unsigned length = 0;
    EVP_Digest(text.data(), text.size(), digest, &length, EVP_md5(), nullptr);
    std::string hex;
    for (unsigned at = 0; at < length; ++at) {
        hex += "0123456789abcdef"[digest[at] >> 4];
        hex += "0123456789abcdef"[digest[at] & 15];
    }
    return hex;
}

tls_client::tls_client(SSL_CTX* context, std::uint16_t port, const std::string& source)
    : m_socket(connect_loopback(port, source)), m_ssl(SSL_new(context)) {
    SSL_set_fd(m_ssl.get(), m_socket);
    if (SSL_connect(m_ssl.get()) != 1) {
        close(m_socket);
        throw std::runtime_error("TLS handshake failed");
    }
}

tls_client::~tls_client() {
    SSL_shutdown(m_ssl.get());
    close(m_socket);
}

answer tls_client::exchange(std::string_view request) {
    if (SSL_write(m_ssl.get(), request.data(), static_cast<int>(request.size())) <= 0)
        throw std::runtime_error("request could not be sent");
    std::string received;
    char buffer[32768];
    extent size;
    while (size.head == 0 || received.size() < size.head + size.body) {
        const int count = SSL_read(m_ssl.get(), buffer, sizeof buffer);
        if (count <= 0) throw std::runtime_error("connection ended within an answer");
        received.append(buffer, static_cast<std::size_t>(count));
        if (size.head == 0) size = measure(received);
    }
    answer result;
    result.head = received.substr(0, size.head);
    result.body = received.substr(size.head);
    std::from_chars(result.head.data() + 9, result.head.data() + 12, result.status);
    return result;
}

std::string log_in(SSL_CTX* context, std::uint16_t port, const std::string& username,
                   const std::string& password) {
    tls_client client(context, port);
    const answer given =
        client.exchange(post("login/check_login", "username=" + username + "&password=" + md5_hex(password)));
    std::string session = given.cookie("tavrok_session");
    if (session.empty()) throw std::runtime_error("login refused: " + given.body);
    return session;
}

} // namespace bench
