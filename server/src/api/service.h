#pragma once

#include <memory>
#include <string>
#include <vector>

#include "api/scheduler.h"
#include "api/services.h"
#include "api/settings.h"
#include "http/message.h"
#include "store/database.h"

namespace tavrok::api {

/** One route as documentation and tests list it. */
struct route_info {
    std::string path;
    std::string method;
    std::vector<std::string> keys; /**< in their order */
    std::string answer;            /**< "count", "result", "page", "array", "object", "image" or "none" */
    std::string access;            /**< in words */
    bool writes{false};
};

class registry;

/** Everything that stands behind the HTTP server: the endpoints and the probes. */
class service : public http::handler {
public:
    /** `where` outlives the service. Without `later` it has a timer of its own. Throws std::logic_error when
     * the table of endpoints is at fault. */
    static std::unique_ptr<service> make(store::database& where, settings options, clock_function clock,
                                         defer later = {});

    /** Every route, probes not among them. */
    virtual const std::vector<route_info>& routes() const = 0;
    /** The declarations behind the routes. */
    virtual const registry& endpoints() const = 0;
    /** True while requests can be served. */
    virtual bool ready() const = 0;
    /** Ends the service: what is held back goes on at once, requests under way are finished and what is still
     * to be written is written. Blocks; the HTTP server must send no new requests. The database stays open.
     */
    virtual void drain() = 0;
};

} // namespace tavrok::api
