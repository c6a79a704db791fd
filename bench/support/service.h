#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "support/child_process.h"

namespace bench {

/** The demo account that every measurement logs in with. */
inline constexpr const char* demo_name = "demo_admin";
inline constexpr const char* demo_password = "Tavrok-2026";

/** Where a service finds its data; absolute paths, as it runs in the folder. */
struct service_place {
    std::string program;                /**< path of tavrok_wmsd */
    std::string database;               /**< file or connection string */
    std::string folder;                 /**< of pepper, certificate, key, port file and log */
    std::vector<std::string> options{}; /**< further words of its command line */
};

/** A service that serves on a free port of 127.0.0.1 while the object lives. */
class service {
public:
    /** Returns as soon as the service has told its port. */
    explicit service(const service_place& place);

    std::uint16_t port() const { return m_port; }
    pid_t pid() const { return m_process->pid(); }
    std::int64_t started_at() const { return m_process->started_at(); }
    void stop() { m_process->terminate(); }

private:
    std::unique_ptr<child_process> m_process;
    std::uint16_t m_port{0};
};

} // namespace bench
