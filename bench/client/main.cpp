#include <cstdio>
#include <exception>
#include <fstream>
#include <map>
#include <sstream>
#include <stdexcept>

#include "support/figures.h"
#include "support/service.h"
#include "support/statistics.h"
#include "support/tls_client.h"

namespace {

using namespace bench;
using readings = std::map<std::string, std::vector<double>>;

struct client_scene {
    std::string probe; /**< path of client_probe */
    std::string folder;
    std::string base_url;
};

/** Runs the probe and gives the values it printed, by name. */
readings run_probe(const client_scene& where, const std::string& mode) {
    const std::string output = where.folder + "/client_probe.log";
    child_process probe({where.probe, mode, where.base_url}, {"QT_QPA_PLATFORM=offscreen", "LC_ALL=C.UTF-8"},
                        output);
    const int code = probe.wait();
    std::ifstream file(output);
    readings found;
    std::ostringstream text;
    for (std::string line; std::getline(file, line);) {
        text << line << '\n';
        std::istringstream words(line);
        std::string name;
        double value = 0;
        if (words >> name >> value) found[name].push_back(value);
    }
    if (code != 0) throw std::runtime_error("client_probe " + mode + " failed: " + text.str());
    return found;
}

void measure_start(const client_scene& where, figures& found) {
    constexpr int starts = 15;
    run_probe(where, "start"); // brings libraries and fonts into memory, as after the first start of a day
    std::vector<double> milliseconds;
    for (int at = 0; at < starts; ++at)
        milliseconds.push_back(run_probe(where, "start").at("dialog_ms").front());
    found.add({"client: process start to login dialog painted", median(milliseconds), "ms", starts,
               limit{relation::at_most, 300},
               "median; slowest " + readable(percentile(milliseconds, 1), "ms")});
}

/** The service's own answer time: the same pages in the same order, bytes only, on one connection. */
std::vector<double> raw_pages(SSL_CTX* context, const service& running, const std::string& session) {
    constexpr int warm_up = 20;
    constexpr int pages = 300;
    tls_client client(context, running.port());
    std::vector<double> milliseconds;
    for (int page = 2; page < 2 + warm_up + pages; ++page) {
        const std::string request = post(
            "wms_company/get_page", "type=1&page_num=" + std::to_string(page) + "&page_size=20", session);
        const std::int64_t begin = now_ns();
        const answer given = client.exchange(request);
        if (page >= 2 + warm_up) milliseconds.push_back(static_cast<double>(now_ns() - begin) / 1e6);
        if (given.body.find("\"list\":[{") == std::string::npos)
            throw std::runtime_error("not a page: " + given.body);
    }
    return milliseconds;
}

void measure_session(const client_scene& where, const service& running, SSL_CTX* context, figures& found) {
    constexpr double allowed_factor = 2;
    constexpr double allowed_ms = 3;
    const std::string session = log_in(context, running.port(), demo_name, demo_password);
    std::vector<double> raw = raw_pages(context, running, session);
    const readings seen = run_probe(where, "session");
    const std::vector<double> after = raw_pages(context, running, session);
    raw.insert(raw.end(), after.begin(), after.end());
    const double own = median(raw);
    const std::vector<double>& turns = seen.at("painted_ms");
    found.add({"service: its own answer to the same page, 1 connection", own, "ms", raw.size(), std::nullopt,
               "median; p95 " + readable(percentile(raw, 0.95), "ms")});
    found.add(
        {"client: page turn of 20 partners, press to painted table", median(turns), "ms", turns.size(),
         limit{relation::at_most, allowed_factor * own + allowed_ms},
         "median; p95 " + readable(percentile(turns, 0.95), "ms") + "; limit is 2 x own answer + 3 ms"});
    const std::vector<double>& filled = seen.at("filled_ms");
    found.add({"client: of that until the answer is in the table", median(filled), "ms", filled.size(),
               std::nullopt, "median; p95 " + readable(percentile(filled, 0.95), "ms")});
    const std::vector<double>& repaints = seen.at("repaint_ms");
    found.add({"client: painting that table again, nothing changed", median(repaints), "ms", repaints.size(),
               std::nullopt,
               "the toolkit's share of a turn; p95 " + readable(percentile(repaints, 0.95), "ms")});
    found.add({"client: resident memory after login", seen.at("memory_kib").front() / 1024, "MB", 1,
               limit{relation::at_most, 90}, "main window painted"});
    found.add({"client: growth of resident memory by 1,000 requests", seen.at("growth_kib").front() / 1024,
               "MB", 1, std::nullopt, "page turns; answers stay with the session to its end"});
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
    const client_scene where{words[1], words[4], "https://127.0.0.1:" + std::to_string(running.port()) + "/"};
    measure_start(where, found);
    measure_session(where, running, context.get(), found);
    found.write(words[5]);
    return 0;
} catch (const std::exception& failed) {
    std::fprintf(stderr, "client_bench: %s\n", failed.what());
    return 1;
}
