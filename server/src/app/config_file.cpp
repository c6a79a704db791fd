#include "app/config_file.h"

#include <CLI/CLI.hpp>
#include <algorithm>

namespace tavrok::app {

namespace {

bool known(const std::string& flag, const std::vector<CLI::App*>& commands) {
    return std::any_of(commands.begin(), commands.end(), [&](const CLI::App* command) {
        return command->get_option_no_throw(flag) != nullptr;
    });
}

} // namespace

// The library would apply the file before it looks at the environment, and so let the file win.
void apply_file(const std::string& path, CLI::App& command, const std::vector<CLI::App*>& commands) {
    for (const CLI::ConfigItem& item : CLI::ConfigTOML().from_file(path)) {
        const std::string flag = "--" + item.name;
        CLI::Option* option = item.parents.empty() ? command.get_option_no_throw(flag) : nullptr;
        if (option == nullptr && item.parents.empty() && known(flag, commands)) continue;
        if (option == nullptr || item.name == "config" || item.name == "help") {
            throw CLI::ConfigError(path + ": " + item.fullname() + " is no option");
        }
        if (option->count() > 0) continue;
        option->add_result(item.inputs);
        option->run_callback();
    }
}

} // namespace tavrok::app
