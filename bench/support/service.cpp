#include "support/service.h"

#include <unistd.h>

#include <fstream>
#include <stdexcept>

#include "support/statistics.h"

namespace bench {
namespace {

constexpr std::int64_t patience_ns = 30'000'000'000;
constexpr useconds_t look_again_us = 200;

/** The port once the whole line stands in the file, else 0. */
std::uint16_t told_port(const std::string& path) {
    std::ifstream file(path);
    unsigned port = 0;
    file >> port;
    return file && port > 0 ? static_cast<std::uint16_t>(port) : std::uint16_t{0};
}

} // namespace

service::service(const service_place& place) {
    const std::string port_file = place.folder + "/port";
    const std::string log = place.folder + "/service.log";
    unlink(port_file.c_str());
    std::vector<std::string> command{place.program, "serve", "--database", place.database, "--listen",
                                     "127.0.0.1", "--port", "0", "--port-file", port_file, "--pepper-file",
                                     place.folder + "/pepper",
                                     // One address makes the load of a whole company here.
                                     "--requests-per-second", "0"};
    command.insert(command.end(), place.options.begin(), place.options.end());
    m_process = std::make_unique<child_process>(command, std::vector<std::string>{}, log, place.folder);
    while ((m_port = told_port(port_file)) == 0) {
        if (!m_process->running()) throw std::runtime_error("the service ended at its start, see " + log);
        if (now_ns() - started_at() > patience_ns)
            throw std::runtime_error("the service told no port, see " + log);
        usleep(look_again_us);
    }
}

} // namespace bench
