#pragma once

#include <atomic>
#include <chrono>
#include <functional>
#include <future>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "api/service.h"
#include "domain/accounts.h"
#include "domain/grants.h"
#include "domain/menu.h"
#include "domain/partners.h"
#include "domain/passwords.h"
#include "support/scratch_database.h"

namespace tavrok::test {

/** What came back. `sent` tells the service whether it arrived; ask() does so itself. */
struct reply {
    unsigned status{0};
    std::string body;
    std::string cookie;
    std::string content_type;
    std::function<void(bool)> sent;
};

/** What goes in. */
struct wish {
    std::string path;
    std::string body;
    std::string cookie{};
    std::string peer{"192.0.2.9"};
    std::string method{"POST"};
};

/** A timer that runs when it is told to. */
class hand_timer {
public:
    void after(std::chrono::milliseconds delay, std::function<void()> task);
    /** Runs what is due once so much time has passed. */
    void turn(std::chrono::milliseconds passed);
    std::size_t waiting() const;

private:
    mutable std::mutex m_mutex;
    std::chrono::milliseconds m_now{0};
    std::multimap<std::chrono::milliseconds, std::function<void()>> m_tasks;
};

using grant = std::pair<std::string, std::string>; /**< page and right */

/** A service over a database of its own, with a clock and a timer that stand still. */
class harness {
public:
    explicit harness(const std::string& engine, api::settings options = {});
    ~harness();
    harness(const harness&) = delete;
    harness& operator=(const harness&) = delete;

    /** Asks and waits; the answer arrives. What the service puts off by no time at all is done meanwhile. */
    reply ask(const wish& what);
    reply ask(const std::string& path, const std::string& body, const std::string& cookie) {
        return ask({path, body, cookie});
    }
    /** ask() in the words of documents_world: the bodies alone, in that session. */
    std::function<std::string(const std::string& path, const std::string& body)> as(
        const std::string& session) {
        return [this, session](const std::string& path, const std::string& body) {
            return ask(path, body, session).body;
        };
    }
    /** Asks; whether the answer arrives is left to the caller. */
    std::future<reply> begin(const wish& what);
    /** The service's own figure of requests to `path` that ended so: "answered", "refused", ... */
    std::int64_t counted(const std::string& path, const std::string& outcome);
    /** All of these figures at once, by path and outcome. */
    std::map<std::pair<std::string, std::string>, std::int64_t> figures();
    /** Another instance over the same database takes the place of the service. */
    void replace_service();

    std::int64_t make_company(const std::string& name, bool operator_company = false);
    domain::user_key make_user(std::int64_t company, const std::string& name, int type,
                               const std::vector<grant>& grants = {});
    std::string session_of(const domain::user_key& user);
    /** A live session of a new administrator of a new company. */
    std::string administrator(const std::string& name, bool operator_company = false);
    /** A session of the administrator of the company that runs the service; both are made at the first call.
     */
    const std::string& operators_session();
    /** Every page and right of the menu. */
    std::vector<grant> all_grants();
    domain::principal principal_of(const std::string& cookie);
    std::int64_t add_partner(const std::string& cookie, int type, const std::string& name);
    std::int64_t partners_of(const std::string& cookie);

    scratch_database database;
    std::atomic<std::int64_t> now{1'800'000'000};
    hand_timer timer;
    std::unique_ptr<api::service> service;
    static constexpr const char* password = "correct horse";
    static constexpr const char* pepper = "a pepper for tests";

private:
    void start();
    api::settings m_options;
    std::string m_operators_session;
    std::vector<domain::menu_node> m_menu;
};

/** The MD5 text that the client would send for the harness's password. */
std::string password_on_the_wire();

} // namespace tavrok::test
