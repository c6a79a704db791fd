#include <stdexcept>

#include "service/measures.h"
#include "service/raw_search.h"
#include "support/names.h"
#include "support/statistics.h"
#include "support/tls_client.h"

namespace bench {
namespace {

constexpr double allowed_factor = 1.3;

/** The service's time for a search, in milliseconds; the answer must tell the total that the statements gave.
 */
double ask(tls_client& client, const std::string& session, const recorded_search& search) {
    const std::string request =
        post("wms_company/get_page", "type=1&name=" + search.term + "&page_num=1&page_size=20", session);
    const std::int64_t begin = now_ns();
    const answer given = client.exchange(request);
    const double milliseconds = static_cast<double>(now_ns() - begin) / 1e6;
    if (given.body.find("\"total\":" + std::to_string(search.total)) == std::string::npos)
        throw std::runtime_error("the service counts otherwise than its statements: " +
                                 given.body.substr(0, 200));
    return milliseconds;
}

} // namespace

void measure_search(const scene& where) {
    const std::vector<std::string> warm_up{"有限", "贸易", "公司", "商行", "实业", "限公"};
    const auto warm = record_searches(where.place.database, warm_up);
    const auto searches = record_searches(where.place.database, search_terms());
    const service running(where.place);
    const std::string session = log_in(where.context, running.port(), demo_name, demo_password);
    tls_client client(where.context, running.port());
    raw_reader raw(where.place.database);
    for (int round = 0; round < 3; ++round)
        for (const recorded_search& search : warm) {
            raw.run(search);
            ask(client, session, search);
        }
    // Each term is new to the service; who comes first takes turns.
    std::vector<double> raw_ms, first_ms, again_ms;
    for (std::size_t at = 0; at < searches.size(); ++at) {
        if (at % 2 == 0) raw_ms.push_back(raw.run(searches[at]));
        first_ms.push_back(ask(client, session, searches[at]));
        if (at % 2 == 1) raw_ms.push_back(raw.run(searches[at]));
    }
    for (const recorded_search& search : searches)
        again_ms.push_back(ask(client, session, search));
    const std::string what = where.label + ": search of the name by two characters, page and count";
    where.found->add({what + ", raw SQL in process", median(raw_ms), "ms", raw_ms.size(), std::nullopt,
                      "p95 " + readable(percentile(raw_ms, 0.95), "ms")});
    where.found->add({what + ", service", median(first_ms), "ms", first_ms.size(),
                      limit{relation::at_most, allowed_factor * median(raw_ms)},
                      "terms it has not seen; p95 " + readable(percentile(first_ms, 0.95), "ms") +
                          "; limit is 1.3 x raw"});
    where.found->add(
        {what + ", service, asked again", median(again_ms), "ms", again_ms.size(), std::nullopt,
         "unchanged data: the count is remembered; p95 " + readable(percentile(again_ms, 0.95), "ms")});
}

} // namespace bench
