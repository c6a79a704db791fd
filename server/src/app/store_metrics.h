#pragma once

#include <string>

#include "store/database.h"

namespace tavrok::app {

/** Appends what a database did, in the form that Prometheus reads. */
void append_metrics(std::string& text, const store::activity& done);

} // namespace tavrok::app
