#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "support/tls_client.h"

namespace bench {

/** A load of keep-alive TLS connections, each with one request under way at a time. */
struct load_plan {
    std::uint16_t port{};
    unsigned connections{};
    double warm_up_seconds{1};
    double seconds{5};
    /** Puts the bytes of the next request of a connection into the string; `number` counts them from 0. */
    std::function<void(unsigned connection, std::uint64_t number, std::string& request)> next;
    /** Whether the body of an answer is the one that was to come. */
    std::function<bool(std::string_view body)> good;
};

struct load_result {
    double seconds{};
    std::uint64_t bad{};              /**< answers that `good` refused, and connections that broke */
    std::uint64_t handshakes{};       /**< new connections after those of the beginning */
    std::vector<double> milliseconds; /**< of each good answer: request handed over to last byte read */

    double rate() const { return static_cast<double>(milliseconds.size()) / seconds; }
};

/** Runs the load on the calling thread. */
load_result run_load(SSL_CTX* context, const load_plan& plan);

} // namespace bench
