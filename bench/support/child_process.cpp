#include "support/child_process.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstring>
#include <fstream>
#include <stdexcept>

#include "support/statistics.h"

namespace bench {
namespace {

std::vector<char*> pointers(std::vector<std::string>& texts) {
    std::vector<char*> all;
    for (std::string& text : texts)
        all.push_back(text.data());
    all.push_back(nullptr);
    return all;
}

int exit_code(int status) {
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

std::int64_t memory_figure(pid_t process, const std::string& name) {
    std::ifstream status("/proc/" + std::to_string(process) + "/status");
    for (std::string line; std::getline(status, line);)
        if (line.rfind(name, 0) == 0) return std::stoll(line.substr(name.size()));
    throw std::runtime_error("no memory figure of process " + std::to_string(process));
}

} // namespace

child_process::child_process(const std::vector<std::string>& command,
                             const std::vector<std::string>& settings, const std::string& output,
                             const std::string& folder)
    : m_started_at(0) {
    std::vector<std::string> arguments = command;
    std::vector<std::string> environment = settings;
    for (char** entry = environ; *entry != nullptr; ++entry)
        environment.emplace_back(*entry);
    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    posix_spawn_file_actions_addopen(&files, STDOUT_FILENO, output.c_str(), O_WRONLY | O_CREAT | O_TRUNC,
                                     0644);
    posix_spawn_file_actions_adddup2(&files, STDOUT_FILENO, STDERR_FILENO);
    posix_spawn_file_actions_addchdir_np(&files, folder.c_str());
    m_started_at = now_ns();
    environment.insert(environment.begin(), "TAVROK_BENCH_START=" + std::to_string(m_started_at));
    const int failed = posix_spawn(&m_pid, arguments.front().c_str(), &files, nullptr,
                                   pointers(arguments).data(), pointers(environment).data());
    posix_spawn_file_actions_destroy(&files);
    if (failed != 0)
        throw std::runtime_error("cannot start " + command.front() + ": " + std::strerror(failed));
}

child_process::~child_process() {
    terminate();
}

bool child_process::running() {
    if (m_pid > 0 && waitpid(m_pid, &m_status, WNOHANG) == m_pid) m_pid = -1;
    return m_pid > 0;
}

int child_process::wait() {
    if (m_pid > 0) {
        while (waitpid(m_pid, &m_status, 0) < 0 && errno == EINTR) {
        }
        m_pid = -1;
    }
    return exit_code(m_status);
}

void child_process::terminate() {
    if (running()) kill(m_pid, SIGTERM);
    wait();
}

std::int64_t resident_kib(pid_t process) {
    return memory_figure(process, "VmRSS:");
}

std::int64_t peak_kib(pid_t process) {
    return memory_figure(process, "VmHWM:");
}

} // namespace bench
