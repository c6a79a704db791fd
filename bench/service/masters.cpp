#include <boost/json.hpp>
#include <stdexcept>

#include "service/measures.h"
#include "support/names.h"
#include "support/statistics.h"
#include "support/tls_client.h"

namespace bench {
namespace {

namespace json = boost::json;

constexpr int warm_up = 20;

/** Milliseconds of one exchange. `wanted` must stand in the answer. */
double ask(tls_client& client, const std::string& request, const std::string& wanted) {
    const std::int64_t begin = now_ns();
    const answer given = client.exchange(request);
    const double milliseconds = static_cast<double>(now_ns() - begin) / 1e6;
    if (given.status != 200 || given.body.find(wanted) == std::string::npos)
        throw std::runtime_error("not what was asked for: " + given.body.substr(0, 200));
    return milliseconds;
}

/** Pages of products by criteria that the service has not seen, and all of them once more. */
void measure_criteria(const scene& where, const service& running, const std::string& session,
                      const std::string& what, const std::vector<std::string>& criteria) {
    tls_client client(where.context, running.port());
    std::vector<double> first_ms, again_ms;
    for (std::vector<double>* each : {&first_ms, &again_ms})
        for (const std::string& one : criteria)
            each->push_back(ask(client,
                                post("wms_product/get_page", one + "&page_num=1&page_size=20", session),
                                "\"list\":[{"));
    const std::string text = where.label + ": products by " + what;
    where.found->add({text + ", page and count, first time", median(first_ms), "ms", first_ms.size(),
                      std::nullopt, "p95 " + readable(percentile(first_ms, 0.95), "ms")});
    where.found->add({text + ", asked again", median(again_ms), "ms", again_ms.size(), std::nullopt,
                      "the count is remembered; p95 " + readable(percentile(again_ms, 0.95), "ms")});
}

/** An answer that is a whole list: how long it takes and how large it is. */
std::string measure_whole(const scene& where, const service& running, const std::string& session,
                          const std::string& what, const std::string& path) {
    constexpr int times = 200;
    tls_client client(where.context, running.port());
    const std::string request = get(path, session);
    const std::string body = client.exchange(request).body;
    std::vector<double> milliseconds;
    for (int at = 0; at < warm_up + times; ++at) {
        const double took = ask(client, request, "[{\"id\":");
        if (at >= warm_up) milliseconds.push_back(took);
    }
    where.found->add({where.label + ": " + what + ", 1 connection", median(milliseconds), "ms",
                      milliseconds.size(), std::nullopt,
                      readable(static_cast<double>(body.size()), "bytes") + "; p95 " +
                          readable(percentile(milliseconds, 0.95), "ms")});
    return body;
}

/** Criteria for each category that has none below it. */
void collect_lowest(const json::array& nodes, std::vector<std::string>& criteria) {
    for (const json::value& node : nodes) {
        const json::array& below = node.at("child").as_array();
        if (below.empty()) criteria.push_back("category=" + std::string(node.at("id").as_string()));
        collect_lowest(below, criteria);
    }
}

} // namespace

void measure_masters(const scene& where, const service& running, const std::string& session) {
    const std::string tree = measure_whole(where, running, session, "wms_prodcate/get_prodcate, whole tree",
                                           "wms_prodcate/get_prodcate");
    measure_whole(where, running, session, "wms_emp/get_option, all employees", "wms_emp/get_option");
    measure_whole(where, running, session, "wms_warehouse/get_option", "wms_warehouse/get_option");
    std::vector<std::string> words;
    for (const std::string& term : product_terms())
        words.push_back("name=" + term);
    std::vector<std::string> categories;
    collect_lowest(json::parse(tree).as_array(), categories);
    measure_criteria(where, running, session, "two characters of the name", words);
    measure_criteria(where, running, session, "category", categories);
}

} // namespace bench
