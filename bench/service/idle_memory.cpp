#include <unistd.h>

#include <memory>
#include <vector>

#include "service/measures.h"
#include "support/statistics.h"
#include "support/tls_client.h"

namespace bench {

void measure_idle_memory(const scene& where, const service& running) {
    constexpr unsigned connections = 1000;
    constexpr unsigned per_address = 50;
    constexpr double limit_mb = 80;
    const double before = static_cast<double>(resident_kib(running.pid())) / 1024;
    // Each asks once, so that it counts as idle between two requests and not as a slow first one.
    std::vector<std::unique_ptr<tls_client>> idle;
    for (unsigned at = 0; at < connections; ++at) {
        const std::string source = "127.0.0." + std::to_string(1 + at / per_address);
        idle.push_back(std::make_unique<tls_client>(where.context, running.port(), source));
        idle.back()->exchange(post("version/wms_check", ""));
    }
    std::vector<double> megabytes;
    for (int look = 0; look < 5; ++look) {
        usleep(100'000);
        megabytes.push_back(static_cast<double>(resident_kib(running.pid())) / 1024);
    }
    figure memory{where.label + ": resident memory, 1,000 idle connections",
                  median(megabytes),
                  "MB",
                  megabytes.size(),
                  std::nullopt,
                  "before them " + readable(before, "MB")};
    if (where.limits_apply) memory.bound = limit{relation::at_most, limit_mb};
    where.found->add(std::move(memory));
}

} // namespace bench
