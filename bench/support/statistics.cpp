#include "support/statistics.h"

#include <algorithm>
#include <cmath>
#include <ctime>

namespace bench {

std::int64_t now_ns() {
    timespec time{};
    clock_gettime(CLOCK_MONOTONIC, &time);
    return std::int64_t{time.tv_sec} * 1'000'000'000 + time.tv_nsec;
}

double percentile(std::vector<double> samples, double part) {
    if (samples.empty()) return 0;
    const auto last = static_cast<double>(samples.size() - 1);
    const auto rank = static_cast<std::ptrdiff_t>(std::lround(part * last));
    std::nth_element(samples.begin(), samples.begin() + rank, samples.end());
    return samples[static_cast<std::size_t>(rank)];
}

} // namespace bench
