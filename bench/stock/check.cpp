#include <unistd.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <stdexcept>

#include "stock/measures.h"
#include "support/statistics.h"

namespace bench {

void measure_check(const scene& where) {
    constexpr useconds_t between_looks_us = 20'000;
    const std::string output = where.place.folder + "/stock_check.log";
    child_process proof({where.place.program, "check", "--database", where.place.database}, {}, output);
    std::int64_t highest = 0;
    while (proof.running()) {
        highest = std::max(highest, peak_kib(proof.pid()));
        usleep(between_looks_us);
    }
    const double seconds = static_cast<double>(now_ns() - proof.started_at()) / 1e9;
    if (proof.wait() != 0) {
        std::ifstream file(output);
        const std::string text{std::istreambuf_iterator<char>(file), {}};
        throw std::runtime_error("the database breaks a promise: " + text.substr(0, 2000));
    }
    where.found->add({where.label + ": tavrok_wmsd check, 1,000,000 movements", seconds, "s", 1, std::nullopt,
                      "clean; its memory at most " + readable(static_cast<double>(highest) / 1024, "MB")});
}

} // namespace bench
