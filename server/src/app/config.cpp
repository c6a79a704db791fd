#include "app/config.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <filesystem>
#include <map>

#include "app/config_file.h"

namespace tavrok::app {

namespace {

constexpr int usage_error = 2;

void add_database(CLI::App& to, config& into) {
    to.add_option("--database", into.database, "SQLite file, or postgresql://...");
    to.add_option("--pepper-file", into.pepper_file, "key of the password hashes; made where it is missing");
    to.add_option("--time-zone", into.time_zone, "zone of the service's days, such as Asia/Shanghai");
    to.add_option("--log-level", into.log_level, "")
        ->check(CLI::IsMember({"debug", "info", "warning", "error", "off"}));
    to.add_option("--log-file", into.log_file, "instead of stderr; turned over at 16 MiB, four are kept");
}

void add_network(CLI::App& to, config& into) {
    to.add_option("--listen", into.listen, "address, may be given several times")->delimiter(',');
    to.add_option("--port", into.port, "0: any that is free");
    to.add_option("--port-file", into.port_file, "is written with the port once the service answers");
    to.add_option("--certificate", into.certificate, "PEM file; without it a self-signed one is made");
    to.add_option("--private-key", into.private_key, "PEM file");
    to.add_option("--trusted-proxy", into.trusted_proxies, "address or network whose X-Forwarded-For counts")
        ->delimiter(',');
    to.add_option("--network-threads", into.network_threads, "")->check(CLI::Range(1, 64));
    to.add_option("--connections", into.connections, "in all")->check(CLI::Range(1, 100'000));
    to.add_option("--connections-per-address", into.connections_per_address, "")
        ->check(CLI::Range(1, 100'000));
    to.add_option("--requests-per-second", into.requests_per_second, "per address; 0: no limit")
        ->check(CLI::NonNegativeNumber);
    to.add_option("--request-burst", into.request_burst, "per address, after a pause")
        ->check(CLI::PositiveNumber);
}

void add_service(CLI::App& to, config& into) {
    to.add_option("--hashing-threads", into.hashing_threads, "for password hashes")->check(CLI::Range(1, 64));
    to.add_option("--readers", into.readers, "reading threads, or connections of the pool")
        ->check(CLI::Range(1, 64));
    to.add_option("--oldest-accepted-version", into.oldest_accepted_version,
                  "build stamp; older clients are told to update; 0: none is")
        ->check(CLI::NonNegativeNumber);
    to.add_option("--download-path", into.download_path,
                  "where those clients are sent, below the service's root");
    to.add_option("--session-idle", into.session_idle, "seconds without a request that end a session")
        ->check(CLI::PositiveNumber);
    to.add_option("--session-total", into.session_total, "seconds that end a session in any case")
        ->check(CLI::PositiveNumber);
    to.add_option("--claim-lapse", into.claim_lapse,
                  "seconds without a request that end a user's claims on stock")
        ->check(CLI::PositiveNumber);
    to.add_flag("--metrics-public", into.metrics_public, "/metrics answers not only this machine");
}

void add_first_company(CLI::App& to, config& into) {
    to.add_option("--company", into.company, "name of the first company");
    to.add_option("--user", into.user, "user name of its administrator");
    to.add_option("--realname", into.realname, "his name; the user name where nothing is said");
    to.add_option("--password", into.password,
                  "his password; without it it is asked for, or read from stdin");
}

/** Every option can come from the environment: --port-file as TAVROK_PORT_FILE. */
void open_to_environment(CLI::App& command) {
    for (CLI::Option* option : command.get_options()) {
        if (option->get_lnames().empty() || option->get_lnames()[0] == "help") continue;
        std::string name = "TAVROK_" + option->get_lnames()[0];
        std::transform(name.begin(), name.end(), name.begin(),
                       [](unsigned char c) { return c == '-' ? '_' : static_cast<char>(std::toupper(c)); });
        option->envname(name);
    }
}

void fill_paths(config& chosen) {
    const bool named = chosen.database.find("://") != std::string::npos;
    const auto folder =
        named ? std::filesystem::path() : std::filesystem::path(chosen.database).parent_path();
    chosen.own_certificate = !chosen.certificate.empty() || !chosen.private_key.empty();
    if (chosen.own_certificate && (chosen.certificate.empty() || chosen.private_key.empty())) {
        throw CLI::ValidationError("--certificate and --private-key go together");
    }
    if (chosen.pepper_file.empty()) chosen.pepper_file = folder / "pepper";
    if (chosen.certificate.empty()) chosen.certificate = folder / "certificate.pem";
    if (chosen.private_key.empty()) chosen.private_key = folder / "private_key.pem";
}

/** Not left to the library, which would look before the file is read. */
void require_names(const config& chosen) {
    if (chosen.command != "init") return;
    if (chosen.company.empty()) throw CLI::RequiredError("--company");
    if (chosen.user.empty()) throw CLI::RequiredError("--user");
}

} // namespace

parsed parse(int count, const char* const* arguments) {
    parsed outcome;
    std::string file;
    CLI::App app("The service behind the warehouse client.", "tavrok_wmsd");
    app.require_subcommand(1);
    app.option_defaults()->always_capture_default();
    // Each command fills a record of its own: the library gives the environment to the commands not chosen as
    // well.
    std::map<const CLI::App*, config> records;
    std::vector<CLI::App*> commands;
    const auto add = [&](const char* name, const char* purpose) {
        commands.push_back(app.add_subcommand(name, purpose));
        commands.back()->add_option("--config", file,
                                    "TOML file with the same names, without the leading --");
        add_database(*commands.back(), records[commands.back()]);
        return commands.back();
    };
    CLI::App* serve = add("serve", "answer the clients until SIGTERM; SIGHUP reloads the certificate");
    CLI::App* init = add("init", "make a database with the first company and its administrator");
    add("demo", "make a database with believable companies to try things with");
    add("check", "prove that a database keeps what it promises");
    app.add_subcommand("version", "say which version this is");
    add_network(*serve, records[serve]);
    add_service(*serve, records[serve]);
    add_first_company(*init, records[init]);
    for (CLI::App* command : commands)
        open_to_environment(*command);
    try {
        app.parse(count, arguments);
        CLI::App* command = app.get_subcommands().front();
        config& chosen = records[command];
        chosen.command = command->get_name();
        if (!file.empty()) apply_file(file, *command, commands);
        require_names(chosen);
        fill_paths(chosen);
        outcome.chosen = chosen;
        outcome.runs = true;
    } catch (const CLI::ParseError& told) {
        outcome.exit_code = app.exit(told) == 0 ? 0 : usage_error;
    }
    return outcome;
}

} // namespace tavrok::app
