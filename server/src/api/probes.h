#pragma once

#include "api/metrics.h"
#include "api/settings.h"
#include "http/message.h"

namespace tavrok::api {

/** What the probes tell of. */
struct service_state {
    bool ready;
    const settings& options;
    const metrics& figures;
};

/** Answers healthz, readyz and metrics, and anything that is no route at all with 404. */
http::response probe(const http::request& incoming, const service_state& state);

/** True for an address of this machine itself. */
bool is_loopback(const std::string& peer);

} // namespace tavrok::api
