#include <stdexcept>

#include "service/measures.h"
#include "support/statistics.h"
#include "support/tls_client.h"

namespace bench {

void measure_start(const scene& where) {
    constexpr int starts = 15;
    constexpr double limit_ms = 300;
    std::vector<double> milliseconds;
    for (int at = 0; at < starts; ++at) {
        service running(where.place);
        tls_client client(where.context, running.port());
        if (client.exchange(post("version/wms_check", "")).status != 200)
            throw std::runtime_error("the version check was refused");
        milliseconds.push_back(static_cast<double>(now_ns() - running.started_at()) / 1e6);
    }
    figure start{where.label + ": start to first answer, existing database",
                 median(milliseconds),
                 "ms",
                 starts,
                 std::nullopt,
                 "median; slowest " + readable(percentile(milliseconds, 1), "ms")};
    if (where.limits_apply) start.bound = limit{relation::at_most, limit_ms};
    where.found->add(std::move(start));
}

} // namespace bench
