#pragma once

#include "app/config.h"

namespace tavrok::app {

/** Each runs one command and gives the exit code; std::exception means failure. */
int serve(const config& chosen);
int init(const config& chosen);
int demo(const config& chosen);
int check(const config& chosen);

/** The whole program: parses, runs, tells failures on stderr. 0 success, 1 failure, 2 wrong usage. */
int run(int count, const char* const* arguments);

} // namespace tavrok::app
