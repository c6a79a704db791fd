#include "process.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <csignal>
#include <fstream>
#include <sstream>
#include <stdexcept>

extern char** environ;

namespace tavrok::test {

using clock = std::chrono::steady_clock;
using namespace std::chrono_literals;

namespace {

/** How often a file is looked at while the process is waited for. */
constexpr auto glance = 5ms;

std::string content_of(const std::string& path) {
    std::ifstream file(path);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

int opened(const std::string& path, int flags) {
    const int file = ::open(path.c_str(), flags, 0600);
    if (file < 0) throw std::runtime_error("cannot open " + path);
    return file;
}

std::vector<char*> pointers(std::vector<std::string>& texts) {
    std::vector<char*> all;
    for (std::string& one : texts)
        all.push_back(one.data());
    all.push_back(nullptr);
    return all;
}

} // namespace

process::process(const std::string& folder, const std::vector<std::string>& arguments,
                 const environment& more, const std::string& input) {
    static std::atomic<int> count{0};
    const std::string base = folder + "/process_" + std::to_string(++count);
    m_out = base + ".out";
    m_err = base + ".err";
    std::ofstream(base + ".in") << input;
    const int files[] = {opened(base + ".in", O_RDONLY | O_CLOEXEC),
                         opened(m_out, O_CREAT | O_WRONLY | O_CLOEXEC),
                         opened(m_err, O_CREAT | O_WRONLY | O_CLOEXEC)};
    std::vector<std::string> words{TAVROK_WMSD};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<std::string> variables;
    for (char** one = environ; *one != nullptr; ++one) {
        if (!std::string(*one).starts_with("TAVROK_")) variables.emplace_back(*one);
    }
    for (const auto& [name, value] : more)
        variables.push_back(name + "=" + value);
    const auto argv = pointers(words);
    const auto envp = pointers(variables);
    m_id = ::fork();
    if (m_id == 0) {
        // Only calls that are safe between fork and exec.
        for (int n = 0; n < 3; ++n)
            ::dup2(files[n], n);
        if (::chdir(folder.c_str()) == 0) ::execve(argv[0], argv.data(), envp.data());
        ::_exit(127);
    }
    for (const int file : files)
        ::close(file);
    m_handle = static_cast<int>(::syscall(SYS_pidfd_open, m_id, 0));
    if (m_id < 0 || m_handle < 0) throw std::runtime_error("cannot start the program");
}

process::~process() {
    if (!m_code) {
        signal(SIGKILL);
        ended(20s);
    }
    ::close(m_handle);
}

void process::signal(int number) const {
    if (!m_code) ::kill(m_id, number);
}

bool process::ended(std::chrono::milliseconds within) {
    if (m_code) return true;
    pollfd state{m_handle, POLLIN, 0};
    if (::poll(&state, 1, static_cast<int>(within.count())) <= 0) return false;
    int status = 0;
    if (::waitpid(m_id, &status, 0) != m_id) return false;
    m_code = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    return true;
}

std::optional<int> process::exit_code(std::chrono::milliseconds within) {
    ended(within);
    return m_code;
}

std::string process::wait_for_file(const std::string& path, std::chrono::milliseconds within) {
    const auto until = clock::now() + within;
    for (;;) {
        std::string content = content_of(path);
        if (!content.empty() || clock::now() > until || ended(glance)) return content;
    }
}

bool process::says(const std::string& text, std::chrono::milliseconds within) {
    const auto until = clock::now() + within;
    for (;;) {
        const bool over = clock::now() > until || ended(glance);
        if (said().find(text) != std::string::npos) return true;
        if (over) return false;
    }
}

std::string process::said() const {
    return content_of(m_err);
}

std::string process::told() const {
    return content_of(m_out);
}

long process::resident_kib() const {
    std::istringstream status(content_of("/proc/" + std::to_string(m_id) + "/status"));
    std::string line;
    while (std::getline(status, line)) {
        if (line.starts_with("VmRSS:")) return std::stol(line.substr(6));
    }
    return 0;
}

} // namespace tavrok::test
