#include "api/metrics.h"

#include <algorithm>

#include <spdlog/fmt/fmt.h>

namespace tavrok::api {

namespace {

constexpr std::array outcomes{outcome::answered, outcome::replayed, outcome::refused, outcome::no_session,
                              outcome::failed};

} // namespace

std::string_view word_of(outcome how) {
    switch (how) {
        case outcome::answered:
            return "answered";
        case outcome::replayed:
            return "replayed";
        case outcome::refused:
            return "refused";
        case outcome::no_session:
            return "no_session";
        case outcome::failed:
            break;
    }
    return "failed";
}

metrics::metrics(const registry& routes) : m_routes(routes) {
    for (const auto& what : routes.all())
        m_figures.try_emplace(what.get());
}

void metrics::count(const endpoint& what, outcome how, std::chrono::steady_clock::duration took) {
    auto& of = m_figures.at(&what);
    const std::chrono::duration<double> seconds = took;
    const auto bucket = std::lower_bound(bounds.begin(), bounds.end(), seconds.count()) - bounds.begin();
    of.by_outcome[static_cast<std::size_t>(how)].fetch_add(1, std::memory_order_relaxed);
    of.by_time[static_cast<std::size_t>(bucket)].fetch_add(1, std::memory_order_relaxed);
    const auto micro = std::chrono::duration_cast<std::chrono::microseconds>(took).count();
    of.microseconds.fetch_add(static_cast<std::uint64_t>(micro), std::memory_order_relaxed);
}

std::uint64_t metrics::counted(const endpoint& what, outcome how) const {
    return m_figures.at(&what).by_outcome[static_cast<std::size_t>(how)].load(std::memory_order_relaxed);
}

void metrics::write(std::string& out) const {
    out += "# TYPE tavrok_requests_total counter\n";
    for (const auto& what : m_routes.all())
        for (const auto how : outcomes)
            out += fmt::format("tavrok_requests_total{{path=\"{}\",outcome=\"{}\"}} {}\n", what->path(),
                               word_of(how), counted(*what, how));
    out += "# TYPE tavrok_request_seconds histogram\n";
    for (const auto& what : m_routes.all())
        write_times(out, *what, m_figures.at(what.get()));
}

void metrics::write_times(std::string& out, const endpoint& what, const figures& of) const {
    std::uint64_t sum = 0;
    for (std::size_t i = 0; i <= bounds.size(); ++i) {
        sum += of.by_time[i].load(std::memory_order_relaxed);
        const auto bound = i < bounds.size() ? fmt::format("{}", bounds[i]) : std::string("+Inf");
        out += fmt::format("tavrok_request_seconds_bucket{{path=\"{}\",le=\"{}\"}} {}\n", what.path(), bound,
                           sum);
    }
    const auto total = static_cast<double>(of.microseconds.load(std::memory_order_relaxed)) / 1e6;
    out += fmt::format("tavrok_request_seconds_sum{{path=\"{}\"}} {}\n", what.path(), total);
    out += fmt::format("tavrok_request_seconds_count{{path=\"{}\"}} {}\n", what.path(), sum);
}

} // namespace tavrok::api
