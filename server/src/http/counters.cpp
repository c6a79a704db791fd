#include "http/counters.h"

namespace tavrok::http {

namespace {

void family(std::string& text, const char* name, const char* kind, const counters::count& figure) {
    text.append("# TYPE tavrok_http_").append(name).append(" ").append(kind);
    text.append("\ntavrok_http_").append(name).append(" ").append(std::to_string(figure.load()));
    text.append("\n");
}

} // namespace

void counters::took(std::chrono::microseconds time) {
    request_microseconds += static_cast<std::uint64_t>(time.count());
    std::size_t bucket = 0;
    while (bucket < bounds_ms.size() && time > std::chrono::milliseconds(bounds_ms[bucket]))
        ++bucket;
    ++request_times[bucket];
}

std::string counters::text() const {
    std::string text;
    family(text, "connections_total", "counter", connections);
    family(text, "connections_open", "gauge", connections_open);
    family(text, "connections_refused_total", "counter", connections_refused);
    family(text, "handshakes_failed_total", "counter", handshakes_failed);
    family(text, "timeouts_total", "counter", timeouts);
    family(text, "malformed_total", "counter", malformed);
    family(text, "rejected_total", "counter", rejected);
    family(text, "requests_total", "counter", requests);
    family(text, "unsent_total", "counter", unsent);
    family(text, "received_bytes_total", "counter", bytes_in);
    family(text, "sent_bytes_total", "counter", bytes_out);

    text += "# TYPE tavrok_http_request_seconds histogram\n";
    std::uint64_t sum = 0;
    for (std::size_t bucket = 0; bucket < request_times.size(); ++bucket) {
        sum += request_times[bucket].load();
        const std::string bound =
            bucket < bounds_ms.size() ? std::to_string(bounds_ms[bucket] / 1000.0) : std::string("+Inf");
        text += "tavrok_http_request_seconds_bucket{le=\"" + bound + "\"} " + std::to_string(sum) + "\n";
    }
    const double seconds = static_cast<double>(request_microseconds.load()) / 1e6;
    text += "tavrok_http_request_seconds_sum " + std::to_string(seconds) + "\n";
    text += "tavrok_http_request_seconds_count " + std::to_string(sum) + "\n";
    return text;
}

} // namespace tavrok::http
