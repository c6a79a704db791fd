#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>

#include "domain/accounts.h"
#include "domain/sessions.h"

namespace tavrok::api {

/** What the operator chooses. */
struct settings {
    std::int64_t oldest_client{0}; /**< clients with an older build stamp are told to update */
    std::string client_download;   /**< path below the root of the service where the current client lies */
    std::string pepper;            /**< key of the password hashes, kept outside the database */
    domain::session_limits sessions;
    domain::throttle_limits throttle;
    /** How long the refusal of a name or address that is slowed down is held back. */
    std::chrono::milliseconds throttled_answer{1000};
    unsigned hashing_threads{1};
    std::size_t hashing_limit{
        64}; /**< logins that may wait for a hashing thread, and as many that are held back */
    std::size_t picture_limit{16};       /**< pictures of the sign-up that may wait to be drawn */
    std::chrono::minutes sweep_every{1}; /**< how often what is long over is deleted; 0: never */
    bool metrics_for_all{false};         /**< else /metrics answers loopback addresses only */
    /** Appends what other layers measure to /metrics; may be empty. */
    std::function<void(std::string&)> more_metrics;
};

} // namespace tavrok::api
