#pragma once

#include <condition_variable>
#include <exception>
#include <memory>
#include <mutex>
#include <string>

#include "api/endpoint.h"
#include "api/housekeeping.h"
#include "api/metrics.h"
#include "api/repeat_gate.h"
#include "api/services.h"

namespace tavrok::api {

/** Takes a request to its endpoint: session, rights and work in one job of the store, then the form of the
 * answer. Nothing here blocks and nothing is thrown out of it. */
class dispatcher {
public:
    dispatcher(const services& with, metrics& figures);
    dispatcher(const dispatcher&) = delete;
    dispatcher& operator=(const dispatcher&) = delete;

    /** Answers a request to `what`, an endpoint of the registry. */
    void handle(const endpoint& what, http::request incoming, http::respond answer);
    /** Refuses in the form of the endpoint what the HTTP server did not let through. */
    void reject(const endpoint& what, http::request incoming, std::string reason, http::respond answer);
    housekeeping& house() { return *m_house; }
    /** Waits until every request that came has been answered, then writes what is left. */
    void drain();

private:
    struct call;
    using shared_call = std::shared_ptr<call>;

    shared_call begin(const endpoint& what, http::request incoming, http::respond answer);
    void start(const shared_call& one);
    void run_plain(const shared_call& one);
    void run_staged(const shared_call& one, const staged_work& work);
    void run_read(const shared_call& one);
    void enter_write(const shared_call& one);
    void run_hashed(const shared_call& one, const hashed_work& work);
    void hash(const shared_call& one);
    void run_write(const shared_call& one);
    void written(const shared_call& one, const std::exception_ptr& failure);
    static bool look_again(call& one, const std::exception_ptr& failure);
    bool admit(call& one, store::connection& db);
    void work_once(call& one, store::connection& db);
    static context context_of(call& one, store::connection& db);
    static std::string scoped_path(call& one, store::connection& db);
    static void run_work(call& one, store::connection& db, const std::string& path, std::int64_t known);
    void settle(call& one, std::exception_ptr failure);
    http::response close(call& one);
    void end(const shared_call& one);
    void leave();

    const services& m_with;
    metrics& m_figures;
    std::shared_ptr<housekeeping> m_house;
    std::shared_ptr<repeat_gate> m_gate;
    std::mutex m_mutex;
    std::condition_variable m_idle;
    std::size_t m_open{0};
};

} // namespace tavrok::api
