#pragma once

#include <openssl/ssl.h>

#include <map>
#include <string>
#include <vector>

#include "support/figures.h"
#include "support/service.h"

namespace bench {

/** What the measures of the client share. */
struct client_scene {
    std::string probe; /**< path of client_probe */
    std::string folder;
    const service& running;
    SSL_CTX* context;
    figures& found;

    /** Adds the median of the samples, with their 95th percentile; no limit. */
    void report(const std::string& what, const std::vector<double>& milliseconds,
                const std::string& remark = {}) const;
};

using readings = std::map<std::string, std::vector<double>>;

/** Runs the probe and gives the values it printed, by name. */
readings run_probe(const client_scene& where, const std::string& mode);

/** The service's own answer time: pages 22 to 321 of a list in their order, bytes only, on one connection. */
std::vector<double> raw_pages(const client_scene& where, const std::string& session, const std::string& path,
                              const std::string& criteria);

/** Products' page turn, the grants of a user, the box of employees. */
void measure_masters(const client_scene& where);

} // namespace bench
