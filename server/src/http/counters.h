#pragma once

#include <array>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <string>

namespace tavrok::http {

/** What the server has done since it was made. Written by the network threads, read by anybody. */
struct counters {
    using count = std::atomic<std::uint64_t>;
    /** Upper bounds of the request time buckets, in milliseconds; one more bucket stands for the rest. */
    static constexpr std::array<unsigned, 11> bounds_ms{1, 2, 5, 10, 20, 50, 100, 200, 500, 1000, 5000};

    count connections{0};         /**< accepted and kept */
    count connections_open{0};    /**< of these, still open */
    count connections_refused{0}; /**< closed at once: over a limit or while stopping */
    count handshakes_failed{0};
    count timeouts{0};  /**< deadlines that passed, but for idle connections */
    count malformed{0}; /**< bytes that were no HTTP */
    count rejected{0};  /**< requests answered in the handler's place */
    count requests{0};  /**< answers, whatever became of them */
    count unsent{0};    /**< answers not handed to the peer whole */
    count bytes_in{0};  /**< of HTTP, within TLS */
    count bytes_out{0};
    count request_microseconds{0};
    std::array<count, bounds_ms.size() + 1> request_times{};

    void took(std::chrono::microseconds time);
    /** The text form that Prometheus reads, one family after the other. */
    std::string text() const;
};

} // namespace tavrok::http
