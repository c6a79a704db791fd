#include "app/logging.h"

#include <signal.h>
#include <spdlog/async.h>
#include <spdlog/sinks/rotating_file_sink.h>
#include <spdlog/sinks/stdout_sinks.h>
#include <spdlog/spdlog.h>

namespace tavrok::app {

namespace {

constexpr std::size_t queued_lines = 4096;
constexpr std::size_t file_bytes = 16 * 1024 * 1024;
constexpr std::size_t files_kept = 4;

/** The threads of the log are made while this lives: no signal is theirs to take. One that came when nobody
 * else waited for it would end the process at once. */
class signals_held_back {
public:
    signals_held_back() {
        sigset_t all;
        sigfillset(&all);
        ::pthread_sigmask(SIG_SETMASK, &all, &m_before);
    }
    ~signals_held_back() { ::pthread_sigmask(SIG_SETMASK, &m_before, nullptr); }
    signals_held_back(const signals_held_back&) = delete;
    signals_held_back& operator=(const signals_held_back&) = delete;

private:
    sigset_t m_before{};
};

} // namespace

std::shared_ptr<spdlog::logger> start_log(const config& chosen) {
    const signals_held_back until_made;
    spdlog::init_thread_pool(queued_lines, 1);
    spdlog::sink_ptr sink;
    if (chosen.log_file.empty()) {
        sink = std::make_shared<spdlog::sinks::stderr_sink_mt>();
    } else {
        sink =
            std::make_shared<spdlog::sinks::rotating_file_sink_mt>(chosen.log_file, file_bytes, files_kept);
    }
    auto log = std::make_shared<spdlog::async_logger>("tavrok_wmsd", std::move(sink), spdlog::thread_pool(),
                                                      spdlog::async_overflow_policy::overrun_oldest);
    log->set_pattern("%Y-%m-%dT%H:%M:%S.%e%z %l %v");
    log->set_level(spdlog::level::from_str(chosen.log_level));
    log->flush_on(spdlog::level::warn);
    spdlog::set_default_logger(log);
    spdlog::flush_every(std::chrono::seconds(1));
    return log;
}

void end_log() {
    spdlog::shutdown();
}

} // namespace tavrok::app
