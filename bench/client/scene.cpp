#include "client/scene.h"

#include <fstream>
#include <sstream>
#include <stdexcept>

#include "support/statistics.h"
#include "support/tls_client.h"

namespace bench {

void client_scene::report(const std::string& what, const std::vector<double>& milliseconds,
                          const std::string& remark) const {
    found.add({what, median(milliseconds), "ms", milliseconds.size(), std::nullopt,
               "median; p95 " + readable(percentile(milliseconds, 0.95), "ms") +
                   (remark.empty() ? "" : "; " + remark)});
}

readings run_probe(const client_scene& where, const std::string& mode) {
    const std::string output = where.folder + "/client_probe.log";
    const std::string base_url = "https://127.0.0.1:" + std::to_string(where.running.port()) + "/";
    child_process probe({where.probe, mode, base_url}, {"QT_QPA_PLATFORM=offscreen", "LC_ALL=C.UTF-8"},
                        output);
    const int code = probe.wait();
    std::ifstream file(output);
    readings seen;
    std::ostringstream text;
    for (std::string line; std::getline(file, line);) {
        text << line << '\n';
        std::istringstream words(line);
        std::string name;
        double value = 0;
        if (words >> name >> value) seen[name].push_back(value);
    }
    if (code != 0) throw std::runtime_error("client_probe " + mode + " failed: " + text.str());
    return seen;
}

std::vector<double> raw_pages(const client_scene& where, const std::string& session, const std::string& path,
                              const std::string& criteria) {
    constexpr int warm_up = 20;
    constexpr int pages = 300;
    tls_client client(where.context, where.running.port());
    std::vector<double> milliseconds;
    for (int page = 2; page < 2 + warm_up + pages; ++page) {
        const std::string request =
            post(path, criteria + "page_num=" + std::to_string(page) + "&page_size=20", session);
        const std::int64_t begin = now_ns();
        const answer given = client.exchange(request);
        if (page >= 2 + warm_up) milliseconds.push_back(static_cast<double>(now_ns() - begin) / 1e6);
        if (given.body.find("\"list\":[{") == std::string::npos)
            throw std::runtime_error("not a page: " + given.body);
    }
    return milliseconds;
}

} // namespace bench
