#pragma once

#include <spdlog/logger.h>

#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "http/server.h"
#include "tls_client.h"

namespace tavrok::test {

/** Something that happens in another thread and is waited for, at most as long as patience lasts. */
template <typename value>
class awaited {
public:
    void put(value what) {
        {
            const std::lock_guard lock(m_guard);
            m_all.push_back(std::move(what));
        }
        m_changed.notify_all();
    }
    /** Everything so far, once there are `count` of them or patience is at its end. */
    std::vector<value> wait(std::size_t count) {
        std::unique_lock lock(m_guard);
        m_changed.wait_for(lock, patience, [&] { return m_all.size() >= count; });
        return m_all;
    }

private:
    std::mutex m_guard;
    std::condition_variable m_changed;
    std::vector<value> m_all;
};

/** Answers with path and body; "hold" and "bound" when told to, the latter cannot be given up; "unknown" says
 * that nobody knows; "throw" throws; "drop" lets go of the request. */
class echo_handler : public http::handler {
public:
    void handle(http::request incoming, http::respond answer) override;
    void reject(http::request incoming, http::rejection why, http::respond answer) override;
    /** Waits for `count` held requests and answers the last of them. */
    void answer_held(std::size_t count, const std::string& body);

    awaited<http::request> seen;
    awaited<http::rejection> rejected;
    awaited<bool> sent;

private:
    awaited<http::respond> m_held;
};

/** A directory that goes with the test. */
class scratch_directory {
public:
    scratch_directory();
    ~scratch_directory();
    std::string file(const std::string& name) const { return m_path + "/" + name; }

private:
    std::string m_path;
};

/** A server on a free port with a certificate of its own and everything it logged. */
class scene {
public:
    using change = std::function<void(http::settings&)>;
    explicit scene(const change& changed = {});
    unsigned short port() const { return server->port(); }
    /** Waits until a figure has reached `least`. */
    bool reaches(const http::counters::count& figure, std::uint64_t least) const;
    std::vector<std::string> log_lines(std::size_t count) { return log->wait(count); }

    scratch_directory files;
    http::certificate_files certificate;
    std::shared_ptr<awaited<std::string>> log;
    std::shared_ptr<echo_handler> handler;
    std::unique_ptr<http::server> server;
};

} // namespace tavrok::test
