#pragma once

#include <spdlog/logger.h>

#include <atomic>
#include <boost/asio/io_context.hpp>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <shared_mutex>
#include <string>
#include <unordered_map>

#include "http/admission.h"
#include "http/certificate.h"
#include "http/counters.h"
#include "http/message.h"

namespace tavrok::http {

/** One connection as the server sees it. Both calls are safe from any thread. */
class connection {
public:
    virtual ~connection() = default;
    /** Closes at once where no request is under way, else after its answer. */
    virtual void leave() = 0;
    /** Closes at once. */
    virtual void abort() = 0;
};

/** What the server and its connections share. Lives until the last connection and the last unanswered
 * request. */
struct core {
    core(const limits& of, address_list listed, std::shared_ptr<handler> what,
         std::shared_ptr<spdlog::logger> where)
        : bounds(of), proxies(std::move(listed)), behind(std::move(what)), log(std::move(where)), gate(of) {}

    boost::asio::io_context io;
    const limits bounds;
    const address_list proxies;
    const std::shared_ptr<handler> behind;
    const std::shared_ptr<spdlog::logger> log;
    counters figures;
    admission gate;
    std::atomic<bool> stopping{false};

    /** Held shared while a late answer is handed to the network threads, exclusively while these end. */
    std::shared_mutex ending;
    bool ended{false};

    std::string next_id();
    std::shared_ptr<ssl_ctx_st> tls();
    void use(std::shared_ptr<ssl_ctx_st> context);

    void add(const std::shared_ptr<connection>& one);
    void remove(const connection* one);
    std::vector<std::shared_ptr<connection>> open();
    /** True once no connection is left. */
    bool wait_until_empty(std::chrono::steady_clock::time_point until);

private:
    std::mutex m_guard;
    std::condition_variable m_changed;
    std::unordered_map<const connection*, std::weak_ptr<connection>> m_open;
    std::shared_ptr<ssl_ctx_st> m_tls;
    std::atomic<std::uint64_t> m_requests{0};
    const std::uint32_t m_run{make_run()};
    static std::uint32_t make_run();
};

} // namespace tavrok::http
