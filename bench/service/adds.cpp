#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <stdexcept>

#include "service/measures.h"
#include "support/statistics.h"
#include "support/tls_load.h"

namespace bench {
namespace {

constexpr unsigned many = 32;
constexpr double least_gain = 5;

/** How often a second the disk of this folder takes a block and swears that it has it: at the end of a file
 * that grows, or over blocks that the file has already, as a write-ahead log that starts over does. */
figure sync_rate(const scene& where, bool grows) {
    constexpr std::int64_t time_ns = 3'000'000'000;
    constexpr off_t blocks = 1000;
    const std::string path = where.place.folder + "/sync_probe";
    const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    if (file < 0) throw std::runtime_error("cannot write " + path);
    const std::string block(4096, 'x');
    const auto size = static_cast<off_t>(block.size());
    const auto put = [&](off_t number) {
        return pwrite(file, block.data(), block.size(), number * size) == size;
    };
    if (!grows)
        for (off_t number = 0; number < blocks; ++number)
            put(number);
    fsync(file);
    std::vector<double> milliseconds;
    const std::int64_t begin = now_ns();
    for (std::int64_t now = begin; now - begin < time_ns;) {
        const auto number = static_cast<off_t>(milliseconds.size());
        if (!put(grows ? number : number % blocks) || fdatasync(file) != 0)
            throw std::runtime_error("cannot sync " + path);
        const std::int64_t after = now_ns();
        milliseconds.push_back(static_cast<double>(after - now) / 1e6);
        now = after;
    }
    const double seconds = static_cast<double>(now_ns() - begin) / 1e9;
    close(file);
    unlink(path.c_str());
    return {std::string("disk: write of 4 KiB and fdatasync, ") + (grows ? "growing file" : "in place"),
            static_cast<double>(milliseconds.size()) / seconds,
            "/s",
            milliseconds.size(),
            std::nullopt,
            "p50 " + readable(median(milliseconds), "ms")};
}

load_result add_load(const scene& where, const service& running, const std::string& session,
                     unsigned connections) {
    load_plan plan;
    plan.port = running.port();
    plan.connections = connections;
    // A name that no run before has used: every request is one of its own.
    const std::string mark = std::to_string(now_ns());
    plan.next = [&](unsigned connection, std::uint64_t number, std::string& text) {
        text = post("wms_company/do_add",
                    "&type=1&name=压力" + mark + "号" + std::to_string(connection) + "之" +
                        std::to_string(number) +
                        "&phone=0571-8800123&linkman=周明&address=云泽市滨江路18号&remark=bench",
                    session);
    };
    plan.good = [](std::string_view body) { return body.find("\"http_state\":1") != std::string_view::npos; };
    load_result result = run_load(where.context, plan);
    if (result.bad != 0) throw std::runtime_error(std::to_string(result.bad) + " adds were refused");
    return result;
}

} // namespace

void measure_adds(const scene& where, const service& running, const std::string& session) {
    if (where.limits_apply)
        for (const bool grows : {true, false})
            where.found->add(sync_rate(where, grows));
    // In turn, three rounds each, and the middle one of each: a slow second hits both alike.
    constexpr int rounds = 3;
    std::vector<double> one, all, one_ms, all_ms;
    std::size_t one_count = 0, all_count = 0;
    for (int round = 0; round < rounds; ++round) {
        const load_result alone = add_load(where, running, session, 1);
        const load_result together = add_load(where, running, session, many);
        one.push_back(alone.rate());
        all.push_back(together.rate());
        one_count += alone.milliseconds.size();
        all_count += together.milliseconds.size();
        one_ms.insert(one_ms.end(), alone.milliseconds.begin(), alone.milliseconds.end());
        all_ms.insert(all_ms.end(), together.milliseconds.begin(), together.milliseconds.end());
    }
    const std::string what = where.label + ": durable wms_company/do_add, ";
    where.found->add(
        {what + "1 connection", median(one), "/s", one_count, std::nullopt,
         "p50 " + readable(median(one_ms), "ms") + ", p99 " + readable(percentile(one_ms, 0.99), "ms")});
    where.found->add(
        {what + "32 connections", median(all), "/s", all_count, std::nullopt,
         "p50 " + readable(median(all_ms), "ms") + ", p99 " + readable(percentile(all_ms, 0.99), "ms")});
    figure gain{what + "32 beside 1", median(all) / median(one), "x", rounds, std::nullopt, "rate by rate"};
    if (where.limits_apply) gain.bound = limit{relation::at_least, least_gain};
    where.found->add(std::move(gain));
}

} // namespace bench
