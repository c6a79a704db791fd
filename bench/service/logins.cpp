#include <array>
#include <atomic>
#include <stdexcept>
#include <thread>

#include "domain/passwords.h"
#include "service/measures.h"
#include "support/statistics.h"
#include "support/tls_load.h"

namespace bench {
namespace {

constexpr unsigned connections = 32;
constexpr double load_seconds = 8;
constexpr std::array<const char*, 5> names{"demo_admin", "demo_clerk", "demo_keeper", "demo_buyer",
                                           "demo_guest"};

/** Password verifications a second on so many threads of this process, nothing around them. */
double raw_hashes(unsigned threads) {
    constexpr std::int64_t time_ns = 5'000'000'000;
    const std::string pepper(32, 'p');
    const std::string password = md5_hex(demo_password);
    const std::string hash = tavrok::domain::hash_password(pepper, password);
    std::atomic<int> done{0};
    std::atomic<bool> fits{true};
    const std::int64_t begin = now_ns();
    std::vector<std::thread> all;
    for (unsigned at = 0; at < threads; ++at)
        all.emplace_back([&] {
            while (now_ns() - begin < time_ns) {
                if (!tavrok::domain::verify_password(pepper, password, hash)) fits = false;
                ++done;
            }
        });
    for (std::thread& one : all)
        one.join();
    if (!fits) throw std::runtime_error("a right password did not fit");
    return done / (static_cast<double>(now_ns() - begin) / 1e9);
}

load_result login_load(const scene& where, unsigned threads) {
    service_place place = where.place;
    place.options = {"--hashing-threads", std::to_string(threads)};
    const service running(place);
    load_plan plan;
    plan.port = running.port();
    plan.connections = connections;
    plan.warm_up_seconds = 2;
    plan.seconds = load_seconds;
    const std::string password = "&password=" + md5_hex(demo_password);
    plan.next = [&](unsigned connection, std::uint64_t number, std::string& text) {
        text = post("login/check_login",
                    std::string("username=") + names[(connection + number) % names.size()] + password);
    };
    plan.good = [](std::string_view body) {
        return body.find("\"username\":\"demo_") != std::string_view::npos;
    };
    load_result result = run_load(where.context, plan);
    if (result.bad != 0) throw std::runtime_error(std::to_string(result.bad) + " logins were refused");
    return result;
}

} // namespace

void measure_logins(const scene& where) {
    for (const unsigned threads : {1U, 2U}) {
        const std::string on = std::to_string(threads) + (threads == 1 ? " thread" : " threads");
        const double raw = raw_hashes(threads);
        if (where.limits_apply)
            where.found->add({"Argon2id verifications in process, " + on, raw, "/s",
                              static_cast<std::size_t>(raw * 5), std::nullopt,
                              readable(1e3 * threads / raw, "ms") + " each; what bounds the logins below"});
        const load_result result = login_load(where, threads);
        where.found->add({where.label + ": logins, 32 connections, " + on + " for hashing", result.rate(),
                          "/s", result.milliseconds.size(), std::nullopt,
                          "p50 " + readable(median(result.milliseconds), "ms") + ", p99 " +
                              readable(percentile(result.milliseconds, 0.99), "ms")});
    }
}

} // namespace bench
