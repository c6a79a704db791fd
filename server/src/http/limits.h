#pragma once

#include <chrono>
#include <cstddef>

namespace tavrok::http {

/** What one peer may cost. Every time is an absolute deadline that is set before the operation begins. */
struct limits {
    using ms = std::chrono::milliseconds;

    ms handshake{10'000}; /**< TCP accept to finished TLS handshake */
    ms header{10'000};    /**< first byte of a request (or end of the handshake) to the end of its header */
    ms body{30'000};      /**< end of the header to the end of the body */
    ms handler{10'000};   /**< whole request to the handler's answer */
    ms write{30'000};     /**< the answer to the last byte handed to the system */
    ms idle{75'000};      /**< between two requests of a connection */
    ms shutdown{3'000};   /**< farewell: our close_notify to the peer's */

    std::size_t header_bytes{8 * 1024};
    std::size_t body_bytes{64 * 1024};
    /** A longer body than body_bytes is still read to its end, and thrown away, up to this size, so that
     * peers which send everything before they read get their answer. Beyond it they are answered and closed
     * at once. */
    std::size_t discard_bytes{1024 * 1024};
    unsigned requests_per_connection{1000};
    unsigned connections{1024};
    unsigned connections_per_address{64}; /**< listed proxies are exempt */
    double requests_per_second{1000};     /**< per address, sustained; 0 means no limit */
    double request_burst{5000};           /**< per address, at once after a pause */
};

} // namespace tavrok::http
