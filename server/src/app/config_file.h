#pragma once

#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace tavrok::app {

/**
 * Gives the options of `command` that neither command line nor environment have set the values from a TOML
 * file. A name that belongs to another command is passed over, so that one file serves all; a name that
 * belongs to none is an error (CLI::ParseError).
 */
void apply_file(const std::string& path, CLI::App& command, const std::vector<CLI::App*>& commands);

} // namespace tavrok::app
