#include <malloc.h>
#include <pthread.h>
#include <signal.h>
#include <spdlog/spdlog.h>
#include <sys/resource.h>
#include <unistd.h>

#include <atomic>
#include <ctime>
#include <filesystem>
#include <memory>

#include "api/service.h"
#include "app/commands.h"
#include "app/folds.h"
#include "app/pepper.h"
#include "app/store_metrics.h"
#include "http/private_file.h"
#include "http/server.h"
#include "store/database.h"

namespace tavrok::app {

namespace {

constexpr std::chrono::seconds stop_grace{10};

/** Set when the store no longer trusts what is on disk: the process ends with a failure. */
std::atomic<bool> doubted{false};

/** One heap for each core instead of eight: idle connections are many and small. */
void keep_memory_small() {
    ::mallopt(M_ARENA_MAX, 2);
    ::mallopt(M_TRIM_THRESHOLD, 128 * 1024);
}

void allow_many_files() {
    rlimit files{};
    if (::getrlimit(RLIMIT_NOFILE, &files) != 0) return;
    files.rlim_cur = files.rlim_max;
    ::setrlimit(RLIMIT_NOFILE, &files);
}

/** Signals are taken by sigwait() alone, so every thread that is made from here on inherits them blocked. */
sigset_t block_signals() {
    sigset_t awaited;
    sigemptyset(&awaited);
    for (const int one : {SIGTERM, SIGINT, SIGHUP})
        sigaddset(&awaited, one);
    ::pthread_sigmask(SIG_BLOCK, &awaited, nullptr);
    ::signal(SIGPIPE, SIG_IGN);
    return awaited;
}

std::unique_ptr<store::database> open_database(const config& chosen) {
    store::options how;
    how.location = chosen.database;
    how.readers = chosen.readers;
    how.on_doubt = [](const std::string& why) {
        spdlog::critical("the database is not to be trusted any more: {}", why);
        doubted = true;
        ::kill(::getpid(), SIGTERM);
    };
    auto opened = store::open(how);
    complete_folds(*opened);
    return opened;
}

api::settings service_settings(const config& chosen) {
    api::settings how;
    how.oldest_client = chosen.oldest_accepted_version;
    how.client_download = chosen.download_path;
    how.pepper = load_pepper(chosen.pepper_file);
    how.sessions.idle = chosen.session_idle;
    how.sessions.total = chosen.session_total;
    how.sessions.claim = chosen.claim_lapse;
    how.hashing_threads = chosen.hashing_threads;
    how.metrics_for_all = chosen.metrics_public;
    return how;
}

http::settings server_settings(const config& chosen) {
    http::settings how;
    how.listen = chosen.listen;
    how.port = chosen.port;
    how.threads = chosen.network_threads;
    how.proxies = chosen.trusted_proxies;
    how.certificate = {chosen.certificate, chosen.private_key};
    how.log = spdlog::default_logger();
    how.bounds.connections = chosen.connections;
    how.bounds.connections_per_address = chosen.connections_per_address;
    how.bounds.requests_per_second = chosen.requests_per_second;
    how.bounds.request_burst = chosen.request_burst;
    if (!chosen.own_certificate && http::make_certificate_if_absent(how.certificate)) {
        spdlog::info("made the self-signed certificate {}", chosen.certificate);
    }
    return how;
}

void wait_for_the_end(const sigset_t& awaited, http::server& server) {
    for (;;) {
        int received = 0;
        if (::sigwait(&awaited, &received) != 0) continue;
        if (received != SIGHUP) return;
        server.reload_certificate();
    }
}

} // namespace

int serve(const config& chosen) {
    keep_memory_small();
    allow_many_files();
    const sigset_t awaited = block_signals();

    api::settings how = service_settings(chosen);
    const auto database = open_database(chosen);
    // The metrics page asks for the server only once it runs.
    std::unique_ptr<http::server> server;
    how.more_metrics = [&](std::string& text) {
        text += server->figures().text();
        append_metrics(text, database->figures());
    };
    const std::shared_ptr<api::service> service = api::service::make(
        *database, std::move(how), [] { return static_cast<std::int64_t>(std::time(nullptr)); });
    server = std::make_unique<http::server>(server_settings(chosen), service);
    server->start();
    for (const std::string& at : chosen.listen)
        spdlog::info("listening at {} port {}", at, server->port());
    if (!chosen.port_file.empty()) {
        http::write_file(chosen.port_file, std::to_string(server->port()) + "\n", 0644);
    }

    wait_for_the_end(awaited, *server);
    spdlog::info("stopping");
    server->stop(stop_grace);
    service->drain();
    database->stop();
    if (!chosen.port_file.empty()) {
        std::error_code ignored;
        std::filesystem::remove(chosen.port_file, ignored);
    }
    spdlog::info("stopped");
    return doubted ? 1 : 0;
}

} // namespace tavrok::app
