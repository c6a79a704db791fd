#pragma once

#include <sys/types.h>

#include <cstdint>
#include <string>
#include <vector>

namespace bench {

/** A program that this one started; ended by SIGTERM and waited for when the object goes. */
class child_process {
public:
    /** Starts it at once; its output (both streams) goes to the file; `folder` is where it runs. The
     * environment gets the "NAME=value" settings on top, and TAVROK_BENCH_START with the monotonic
     * nanoseconds right before the start. */
    child_process(const std::vector<std::string>& command, const std::vector<std::string>& settings,
                  const std::string& output, const std::string& folder = ".");
    ~child_process();
    child_process(const child_process&) = delete;
    child_process& operator=(const child_process&) = delete;

    std::int64_t started_at() const { return m_started_at; }
    pid_t pid() const { return m_pid; }
    bool running();
    /** Waits for the end; gives the exit code, 128 + signal when it was killed. */
    int wait();
    /** SIGTERM, then wait(). */
    void terminate();

private:
    std::int64_t m_started_at;
    pid_t m_pid{-1};
    int m_status{-1};
};

/** Resident memory of a process in KiB, now and at its highest so far. */
std::int64_t resident_kib(pid_t process);
std::int64_t peak_kib(pid_t process);

} // namespace bench
