#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace tavrok::app {

/** What the operator chose. A flag beats the environment, the environment beats the file, the file the
 * default. */
struct config {
    std::string command; /**< "serve", "init", "demo", "check" or "version" */

    std::string database{"tavrok_wms.db"}; /**< file path or PostgreSQL connection string */
    std::string pepper_file; /**< these three lie beside the database file where nothing is said */
    std::string certificate;
    std::string private_key;
    bool own_certificate{false}; /**< the operator named the certificate, so none is made */

    std::vector<std::string> listen{"127.0.0.1"};
    unsigned short port{8443};
    std::string port_file;
    std::vector<std::string> trusted_proxies;
    unsigned network_threads{2};
    unsigned hashing_threads{1};
    unsigned readers{3};
    unsigned connections{1024};
    unsigned connections_per_address{64};
    double requests_per_second{1000};
    double request_burst{5000};

    std::int64_t oldest_accepted_version{0};
    std::string download_path;
    std::int64_t session_idle{8 * 3600};
    std::int64_t session_total{24 * 3600};
    std::int64_t claim_lapse{2 * 3600};
    bool metrics_public{false};
    std::string time_zone;
    std::string log_level{"info"};
    std::string log_file;

    std::string company; /**< of the first company and its administrator, for init */
    std::string user;
    std::string realname;
    std::string password;
};

/** What a command line asks for: work to do, or nothing but the exit code (help was shown, or the usage was
 * wrong). */
struct parsed {
    bool runs{false};
    int exit_code{0};
    config chosen;
};

/** Reads command line, environment and file. Help goes to stdout, complaints to stderr. */
parsed parse(int count, const char* const* arguments);

} // namespace tavrok::app
