#pragma once

#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include "http/certificate.h"
#include "http/counters.h"
#include "http/limits.h"
#include "http/message.h"

namespace spdlog {
class logger;
}

namespace tavrok::http {

struct settings {
    std::vector<std::string> listen{"127.0.0.1"}; /**< addresses; all of them get the same port */
    unsigned short port{0};                       /**< 0: any that is free */
    unsigned threads{2};
    limits bounds;
    std::vector<std::string> proxies; /**< addresses or networks whose X-Forwarded-For is believed */
    certificate_files certificate;    /**< must be there: see make_certificate_if_absent */
    std::shared_ptr<spdlog::logger> log;
};

/** The HTTPS server. Made, started once, stopped once; the destructor stops it at once where nobody has. */
class server {
public:
    /** Throws std::exception for a certificate or proxy list that cannot be used. */
    server(settings how, std::shared_ptr<handler> behind);
    ~server();
    server(const server&) = delete;
    server& operator=(const server&) = delete;

    /** Listens and answers from here on. Throws std::system_error that names the address. */
    void start();
    /** The port that is listened at, once started. */
    unsigned short port() const;
    /** Reads the certificate files again, for new connections; where they are bad the old one stays: false.
     */
    bool reload_certificate();
    /** No new connections and requests; waits at most `grace` for those under way, then closes what is left.
     */
    void stop(std::chrono::milliseconds grace = std::chrono::seconds(10));
    const counters& figures() const;

private:
    struct state;
    std::unique_ptr<state> m_state;
};

} // namespace tavrok::http
