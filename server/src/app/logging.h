#pragma once

#include <memory>

#include "app/config.h"

namespace spdlog {
class logger;
}

namespace tavrok::app {

/** Makes the log that everything writes to, its default one. Writing never waits: what does not fit the queue
 * pushes out the oldest line. Throws std::exception where the file cannot be opened. */
std::shared_ptr<spdlog::logger> start_log(const config& chosen);
/** Writes out what is queued. */
void end_log();

} // namespace tavrok::app
