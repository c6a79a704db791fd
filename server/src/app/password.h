#pragma once

#include <string>

namespace tavrok::app {

/** One line from stdin; at a terminal it is asked for and not shown. */
std::string ask_password();

} // namespace tavrok::app
