#pragma once

#include <cstdint>
#include <vector>

namespace bench {

/** Nanoseconds of the monotonic clock, the same in every process of the machine. */
std::int64_t now_ns();

/** The value below which the given part (0 to 1) of the samples lies; 0 of no samples. */
double percentile(std::vector<double> samples, double part);

inline double median(std::vector<double> samples) {
    return percentile(std::move(samples), 0.5);
}

} // namespace bench
