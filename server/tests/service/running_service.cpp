#include "running_service.h"

#include <csignal>
#include <filesystem>
#include <stdexcept>

namespace tavrok::test {

running_service::running_service(const std::string& folder, const std::string& database,
                                 std::vector<std::string> more) {
    static int count = 0;
    const std::string port_file = folder + "/port_" + std::to_string(++count);
    std::vector<std::string> arguments{"serve",       "--database", database,        "--port",          "0",
                                       "--port-file", port_file,    "--pepper-file", folder + "/pepper"};
    arguments.insert(arguments.end(), more.begin(), more.end());
    m_program = std::make_unique<process>(folder, arguments);
    const std::string port = m_program->wait_for_file(port_file, patience);
    if (port.empty()) throw std::runtime_error("the service did not start: " + m_program->said());
    m_port = static_cast<unsigned short>(std::stoul(port));
}

int running_service::stop() {
    m_program->signal(SIGTERM);
    return m_program->exit_code(patience).value_or(-1);
}

int run_command(const std::string& folder, const std::vector<std::string>& arguments,
                const process::environment& more, const std::string& input, std::string* told,
                std::string* said) {
    process program(folder, arguments, more, input);
    const int code = program.exit_code(patience).value_or(-1);
    if (told != nullptr) *told = program.told();
    if (said != nullptr) *said = program.said();
    return code;
}

} // namespace tavrok::test
