#include <algorithm>
#include <boost/json.hpp>
#include <stdexcept>
#include <unordered_set>

#include "stock/measures.h"
#include "support/metrics.h"
#include "support/names.h"
#include "support/statistics.h"
#include "support/tls_load.h"

namespace bench {
namespace {

constexpr unsigned many = 32;
constexpr std::size_t spread = 1000;
constexpr int rounds = 3;
constexpr double seconds = 2;
constexpr double least_rate = 2000;

/** The rows that have plenty on hand. */
std::vector<std::string> bulk_rows(const scene& where, const service& running, const std::string& session) {
    std::vector<std::string> rows;
    tls_client client(where.context, running.port());
    for (int page = 1; rows.size() < spread; ++page) {
        const answer given = client.exchange(post(
            "wms_stock_detail/get_page",
            "remark=" + std::string(bulk_remark) + "&page_num=" + std::to_string(page) + "&page_size=200",
            session));
        const auto list = boost::json::parse(given.body).as_object().at("list").as_array();
        if (list.empty()) throw std::runtime_error("too few rows with plenty on hand");
        for (const boost::json::value& row : list)
            rows.emplace_back(row.at("id").as_string());
    }
    return rows;
}

/** The claims of one load; `number` of a connection's requests and the connection tell the row. */
load_result claim_load(const scene& where, const service& running, const std::vector<std::string>& sessions,
                       const std::vector<std::string>& rows) {
    const std::size_t connections = sessions.size();
    std::unordered_set<std::string> tokens;
    load_plan plan;
    plan.port = running.port();
    plan.connections = static_cast<unsigned>(connections);
    plan.warm_up_seconds = seconds / 5;
    plan.seconds = seconds;
    plan.next = [&](unsigned connection, std::uint64_t number, std::string& text) {
        const std::string& row = rows[(number * connections + connection) % rows.size()];
        text = post("wms_stock_detail/lock_stock", "lock_type=3&id=" + row + "&amount=1&total=1.5",
                    sessions[connection]);
    };
    // A token that came before is no claim of its own.
    plan.good = [&](std::string_view body) {
        return body.size() > 20 && body.front() == 'L' && tokens.emplace(body).second;
    };
    load_result result = run_load(where.context, plan);
    if (result.bad != 0) throw std::runtime_error(std::to_string(result.bad) + " claims were refused");
    return result;
}

/** Several loads of one kind, gathered. */
struct gathered {
    std::vector<double> rates;
    std::vector<double> milliseconds;
    double claims{0};
    double statements{0};
    double statement_seconds{0};
    double commits{0};

    void add(const load_result& load, const work_done& work) {
        rates.push_back(load.rate());
        milliseconds.insert(milliseconds.end(), load.milliseconds.begin(), load.milliseconds.end());
        claims += work.requests("wms_stock_detail/lock_stock");
        statements += work.statements();
        statement_seconds += work.statement_seconds();
        commits += work.commits();
    }
    /** p50, p99 and what a claim costs the database. */
    std::string remark() const {
        return "p50 " + readable(median(milliseconds), "ms") + ", p99 " +
               readable(percentile(milliseconds, 0.99), "ms") + "; each " +
               readable(statements / claims, "") + " statements of " +
               readable(statement_seconds / claims * 1e6, "us in all") + ", " +
               readable(claims / commits, "to a commit");
    }
};

} // namespace

void measure_claims(const scene& where, const service& running, const std::string& session) {
    const std::vector<std::string> thousand = bulk_rows(where, running, session);
    const std::vector<std::string> one{thousand.front()};
    const std::vector<std::string> alone{session};
    std::vector<std::string> sessions{session};
    while (sessions.size() < many)
        sessions.push_back(log_in(where.context, running.port(), demo_name, demo_password));
    struct kind {
        std::string name;
        const std::vector<std::string>& sessions;
        const std::vector<std::string>& rows;
        gathered all{};
    };
    kind kinds[]{{"1,000 rows, 1 connection", alone, thousand},
                 {"1,000 rows, 32 connections", sessions, thousand},
                 {"one row, 32 connections", sessions, one}};
    // In turn, so that a slow second hits all alike.
    for (int round = 0; round < rounds; ++round)
        for (kind& each : kinds) {
            metrics before = read_metrics(where.context, running.port());
            const load_result load = claim_load(where, running, each.sessions, each.rows);
            each.all.add(load, {std::move(before), read_metrics(where.context, running.port())});
        }
    for (const kind& each : kinds) {
        figure rate{where.label + ": durable claims, " + each.name,
                    median(each.all.rates),
                    "/s",
                    each.all.milliseconds.size(),
                    std::nullopt,
                    each.all.remark()};
        if (where.limits_apply && &each == &kinds[1]) rate.bound = limit{relation::at_least, least_rate};
        where.found->add(std::move(rate));
    }
}

} // namespace bench
