#pragma once

#include <array>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <string>
#include <unordered_map>

#include "api/registry.h"

namespace tavrok::api {

/** How a request ended. */
enum class outcome { answered, replayed, refused, no_session, failed };

/** The word that logs and metrics use. */
std::string_view word_of(outcome how);

/** Counts and times per endpoint, as Prometheus reads them. */
class metrics {
public:
    explicit metrics(const registry& routes);

    void count(const endpoint& what, outcome how, std::chrono::steady_clock::duration took);
    std::uint64_t counted(const endpoint& what, outcome how) const;
    /** Appends the text form. */
    void write(std::string& out) const;

private:
    static constexpr std::array<double, 8> bounds{0.001, 0.002, 0.005, 0.01, 0.05, 0.1, 1, 10};
    struct figures {
        std::array<std::atomic<std::uint64_t>, 5> by_outcome{};
        std::array<std::atomic<std::uint64_t>, bounds.size() + 1> by_time{};
        std::atomic<std::uint64_t> microseconds{0};
    };
    void write_times(std::string& out, const endpoint& what, const figures& of) const;

    const registry& m_routes;
    std::unordered_map<const endpoint*, figures> m_figures; /**< fixed after construction */
};

} // namespace tavrok::api
