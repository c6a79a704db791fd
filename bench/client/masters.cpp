#include <boost/json.hpp>
#include <cmath>
#include <stdexcept>

#include "client/scene.h"
#include "support/statistics.h"
#include "support/tls_client.h"

namespace bench {
namespace {

/** The service's own time for a grant and its taking back, durable, bytes only, on one connection. */
std::vector<double> raw_grants(const client_scene& where, const std::string& session) {
    constexpr int rounds = 100;
    tls_client client(where.context, where.running.port());
    const answer found =
        client.exchange(post("user/get_page", "username=demo_guest&page_num=1&page_size=20", session));
    const boost::json::value users = boost::json::parse(found.body);
    const boost::json::value& user = users.at("list").as_array().at(0);
    const std::string body = "user=" + std::string(user.at("id").as_string()) + "&menu=101";
    std::vector<double> milliseconds;
    for (int round = 0; round < rounds; ++round)
        for (const char* path : {"wms_permission/set_checked", "wms_permission/set_unchecked"}) {
            const std::int64_t begin = now_ns();
            const answer given = client.exchange(post(path, body, session));
            milliseconds.push_back(static_cast<double>(now_ns() - begin) / 1e6);
            if (given.body != "1") throw std::runtime_error("a grant was refused: " + given.body);
        }
    return milliseconds;
}

/** A number that the probe told, which is whole. */
std::string whole(const readings& seen, const std::string& name) {
    return std::to_string(std::llround(median(seen.at(name))));
}

void report_click(const client_scene& where, const readings& seen, const std::string& what,
                  const std::string& name) {
    const std::vector<double>& took = seen.at(name + "_ms");
    const double each = median(took) / median(seen.at(name + "_requests"));
    where.report("client: " + what + " by one click on a group of " + whole(seen, "group_rows") + " rows",
                 took, whole(seen, name + "_requests") + " requests, " + readable(each, "ms each"));
}

} // namespace

void measure_masters(const client_scene& where) {
    const std::string session = log_in(where.context, where.running.port(), demo_name, demo_password);
    where.report("service: its own answer to a page of products, 1 connection",
                 raw_pages(where, session, "wms_product/get_page", ""));
    where.report("service: its own answer to a grant, 1 connection", raw_grants(where, session));
    const readings seen = run_probe(where, "masters");
    where.report("client: page turn of 20 products, press to painted table", seen.at("product_painted_ms"));
    where.report("client: of that until the answer is in the table", seen.at("product_filled_ms"));
    where.report("client: grants of a user opened, to the painted tree", seen.at("grants_painted_ms"),
                 whole(seen, "grants_requests") + " requests");
    where.report("client: of that until the tree is filled", seen.at("grants_filled_ms"));
    report_click(where, seen, "granting", "grant");
    report_click(where, seen, "revoking", "revoke");
    where.report("client: box of employees filled, " + whole(seen, "box_entries") + " entries",
                 seen.at("box_filled_ms"));
    where.report("client: the same to the painted box", seen.at("box_painted_ms"));
    where.report("client: the list of that box opened", seen.at("box_opened_ms"));
}

} // namespace bench
