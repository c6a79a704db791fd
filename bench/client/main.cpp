#include <cstdio>
#include <exception>

#include "client/scene.h"
#include "support/statistics.h"
#include "support/tls_client.h"

namespace {

using namespace bench;

void measure_start(const client_scene& where) {
    constexpr int starts = 15;
    run_probe(where, "start"); // brings libraries and fonts into memory, as after the first start of a day
    std::vector<double> milliseconds;
    for (int at = 0; at < starts; ++at)
        milliseconds.push_back(run_probe(where, "start").at("dialog_ms").front());
    where.found.add({"client: process start to login dialog painted", median(milliseconds), "ms", starts,
                     limit{relation::at_most, 300},
                     "median; slowest " + readable(percentile(milliseconds, 1), "ms")});
}

void measure_session(const client_scene& where) {
    constexpr double allowed_factor = 2;
    constexpr double allowed_ms = 3;
    const std::string session = log_in(where.context, where.running.port(), demo_name, demo_password);
    std::vector<double> raw = raw_pages(where, session, "wms_company/get_page", "type=1&");
    const readings seen = run_probe(where, "session");
    const std::vector<double> after = raw_pages(where, session, "wms_company/get_page", "type=1&");
    raw.insert(raw.end(), after.begin(), after.end());
    const double own = median(raw);
    const std::vector<double>& turns = seen.at("painted_ms");
    where.report("service: its own answer to the same page, 1 connection", raw);
    where.found.add(
        {"client: page turn of 20 partners, press to painted table", median(turns), "ms", turns.size(),
         limit{relation::at_most, allowed_factor * own + allowed_ms},
         "median; p95 " + readable(percentile(turns, 0.95), "ms") + "; limit is 2 x own answer + 3 ms"});
    where.report("client: of that until the answer is in the table", seen.at("filled_ms"));
    where.report("client: painting that table again, nothing changed", seen.at("repaint_ms"),
                 "the toolkit's share of a turn");
    where.found.add({"client: resident memory after login", seen.at("memory_kib").front() / 1024, "MB", 1,
                     limit{relation::at_most, 90}, "main window painted"});
    where.found.add({"client: growth of resident memory by 1,000 requests",
                     seen.at("growth_kib").front() / 1024, "MB", 1, std::nullopt,
                     "page turns; answers stay with the session to its end"});
}

} // namespace

/** client_bench PROBE SERVICE DATABASE FOLDER OUTPUT: all measures of the client against a service of its
 * own. */
int main(int count, char** words) try {
    if (count != 6) {
        std::fputs("usage: client_bench PROBE SERVICE DATABASE FOLDER OUTPUT\n", stderr);
        return 2;
    }
    figures found;
    const ssl_context context = make_context();
    const service running({words[2], words[3], words[4]});
    const client_scene where{words[1], words[4], running, context.get(), found};
    measure_start(where);
    measure_session(where);
    measure_masters(where);
    found.write(words[5]);
    return 0;
} catch (const std::exception& failed) {
    std::fprintf(stderr, "client_bench: %s\n", failed.what());
    return 1;
}
