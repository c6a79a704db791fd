#include "api/probes.h"

namespace tavrok::api {

namespace {

http::response text(unsigned status, std::string body) {
    http::response out;
    out.status = status;
    out.body = std::move(body);
    return out;
}

} // namespace

bool is_loopback(const std::string& peer) {
    return peer == "::1" || peer.starts_with("127.") || peer.starts_with("::ffff:127.");
}

http::response probe(const http::request& incoming, const service_state& state) {
    if (incoming.method == "GET") {
        if (incoming.path == "healthz") return text(200, "alive\n");
        if (incoming.path == "readyz") return state.ready ? text(200, "ready\n") : text(503, "not ready\n");
        if (incoming.path == "metrics" && (state.options.metrics_for_all || is_loopback(incoming.peer))) {
            auto out = text(200, {});
            out.content_type = "text/plain; version=0.0.4; charset=utf-8";
            state.figures.write(out.body);
            if (state.options.more_metrics) state.options.more_metrics(out.body);
            return out;
        }
    }
    return text(404, "not found\n");
}

} // namespace tavrok::api
