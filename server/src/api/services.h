#pragma once

#include <cstdint>
#include <functional>

#include "api/scheduler.h"
#include "api/settings.h"
#include "api/work_queue.h"
#include "domain/count_cache.h"
#include "store/database.h"

namespace tavrok::api {

/** Seconds since the epoch, UTC. */
using clock_function = std::function<std::int64_t()>;

/** What the modules and the dispatcher work with. Outlives them all. */
struct services {
    store::database& database;
    const settings& options;
    clock_function clock;
    defer later;
    work_queue& hashing;
    work_queue& pictures;
    domain::count_cache& counts;
};

} // namespace tavrok::api
