#include "support/metrics.h"

#include <cstdlib>
#include <sstream>
#include <stdexcept>

#include "support/tls_client.h"

namespace bench {

metrics read_metrics(SSL_CTX* context, std::uint16_t port) {
    tls_client client(context, port);
    const answer given = client.exchange(get("metrics", ""));
    if (given.status != 200) throw std::runtime_error("the service tells no figures");
    metrics all;
    std::istringstream text(given.body);
    for (std::string line; std::getline(text, line);) {
        const std::size_t space = line.rfind(' ');
        if (line.empty() || line.front() == '#' || space == std::string::npos) continue;
        all[line.substr(0, space)] = std::strtod(line.c_str() + space, nullptr);
    }
    return all;
}

double work_done::grown(const std::string& name) const {
    const auto after = m_after.find(name);
    if (after == m_after.end()) throw std::runtime_error("the service tells nothing of " + name);
    const auto before = m_before.find(name);
    return after->second - (before == m_before.end() ? 0 : before->second);
}

double work_done::all_grown(const std::string& family) const {
    double sum = 0;
    for (auto at = m_after.lower_bound(family); at != m_after.end() && at->first.rfind(family, 0) == 0; ++at)
        sum += grown(at->first);
    return sum;
}

double work_done::requests(const std::string& path) const {
    return grown("tavrok_request_seconds_count{path=\"" + path + "\"}");
}

double work_done::request_seconds(const std::string& path) const {
    return grown("tavrok_request_seconds_sum{path=\"" + path + "\"}");
}

double work_done::runs(const std::string& statement) const {
    return grown("tavrok_store_statements_total{name=\"" + statement + "\"}");
}

double work_done::statements() const {
    return all_grown("tavrok_store_statements_total{");
}

double work_done::statement_seconds() const {
    return all_grown("tavrok_store_statement_seconds_total{");
}

double work_done::commits() const {
    return grown("tavrok_store_commits_total");
}

} // namespace bench
