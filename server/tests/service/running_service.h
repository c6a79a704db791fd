#pragma once

#include <memory>
#include <string>
#include <vector>

#include "process.h"
#include "tls_client.h"

namespace tavrok::test {

/** `tavrok_wmsd serve` on a free port, answering. */
class running_service {
public:
    /** Throws std::runtime_error with what it said where it does not come up. */
    running_service(const std::string& folder, const std::string& database,
                    std::vector<std::string> more = {});
    unsigned short port() const { return m_port; }
    process& program() { return *m_program; }
    /** SIGTERM; the exit code. */
    int stop();

private:
    std::unique_ptr<process> m_program;
    unsigned short m_port{0};
};

/** Runs a command to its end and gives the exit code, -1 where it does not end. */
int run_command(const std::string& folder, const std::vector<std::string>& arguments,
                const process::environment& more = {}, const std::string& input = "",
                std::string* told = nullptr, std::string* said = nullptr);

} // namespace tavrok::test
