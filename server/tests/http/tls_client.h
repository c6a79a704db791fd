#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

struct ssl_st;
struct ssl_ctx_st;

namespace tavrok::test {

/** How long anything may take that is expected to happen at once: a failure, not a pause. */
inline constexpr std::chrono::milliseconds patience{20'000};

/** One answer as it came. */
struct reply {
    unsigned status{0};
    std::string head; /**< status line and header, with the empty line */
    std::string body;
    bool has(std::string_view line) const { return head.find(line) != std::string::npos; }
    /** The value of a header line; "" where it is not there. */
    std::string field(std::string_view name) const;
};

/** A plain TCP connection to the loopback address. */
class tcp_client {
public:
    explicit tcp_client(unsigned short port);
    ~tcp_client();
    tcp_client(const tcp_client&) = delete;
    tcp_client& operator=(const tcp_client&) = delete;
    void send(std::string_view bytes);
    /** True where the peer closes within `time`; what it says before is dropped. */
    bool closed_within(std::chrono::milliseconds time);
    /** Closes the sending side only. */
    void half_close();
    /** Makes closing send a reset instead of a farewell. */
    void reset_on_close();
    int socket() const { return m_socket; }

private:
    int m_socket;
};

/** A TLS client that says exactly what it is told to. Every wait ends after `patience`. */
class tls_client {
public:
    /** Connects; `version` 0 means whatever both sides like best. See connected(). */
    explicit tls_client(unsigned short port, int version = 0);
    ~tls_client();

    bool connected() const { return m_connected; }
    std::string protocol() const;
    /** Serial number of the server's certificate, in hexadecimal. */
    std::string serial() const;
    /** Gives false where the peer would not take it. */
    bool send(std::string_view bytes);
    /** The next answer; nothing where the connection ends or patience does. */
    std::optional<reply> read();
    std::optional<reply> ask(std::string_view bytes) { return send(bytes) ? read() : std::nullopt; }
    /** How many TLS records the answers came in so far. */
    unsigned records() const { return m_records; }
    /** True as soon as bytes are there to be read. */
    bool readable_within(std::chrono::milliseconds time);
    bool closed_within(std::chrono::milliseconds time);
    void say_farewell();
    tcp_client& transport() { return m_transport; }

private:
    static void on_record(int written, int version, int type, const void* data, std::size_t size, ssl_st* tls,
                          void* self);
    bool wait(short events, std::chrono::steady_clock::time_point until);
    bool more(std::chrono::steady_clock::time_point until);

    tcp_client m_transport;
    std::shared_ptr<ssl_ctx_st> m_context;
    std::shared_ptr<ssl_st> m_tls;
    std::string m_input;
    unsigned m_records{0};
    bool m_connected{false};
};

/** The bytes of a request as the desktop client sends it. */
std::string post(std::string_view path, std::string_view body, std::string_view more_fields = "");
std::string get(std::string_view path, std::string_view more_fields = "");

} // namespace tavrok::test
