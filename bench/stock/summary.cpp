#include <boost/json.hpp>
#include <ctime>
#include <stdexcept>

#include "stock/measures.h"
#include "support/statistics.h"
#include "support/tls_client.h"

namespace bench {
namespace {

constexpr double slowest_ms = 100;
constexpr double seconds = 2;
constexpr int changes = 10;
constexpr std::int64_t day = 24 * 3600;
const std::string path = "wms_stock_summary/get_page";

/** From 1 January to today, as the client begins, late in a year: on any day of the year the same work. */
std::string dates() {
    const std::int64_t today = std::time(nullptr) / day * day;
    return "&date_start=" + std::to_string(today - 325 * day) + "&date_end=" + std::to_string(today);
}

/** Another price each time: the same bytes again would be a repeat. */
void change_a_product(tls_client& client, const std::string& session, const std::string& product, int price) {
    const answer given = client.exchange(
        post("wms_product/do_edit", "id=" + product + "&price=" + std::to_string(price) + ".00", session));
    if (given.body != "1") throw std::runtime_error("a product could not be changed: " + given.body);
}

} // namespace

void measure_summary(const scene& where, const service& running, const std::string& session) {
    tls_client client(where.context, running.port());
    const std::string request = post(path, dates() + "&page_num=1&page_size=20", session);
    std::string product;
    std::vector<double> milliseconds;
    for (int at = 0; at <= changes; ++at) {
        if (at > 0) change_a_product(client, session, product, at);
        const std::int64_t begin = now_ns();
        const answer given = client.exchange(request);
        if (at > 0) milliseconds.push_back(static_cast<double>(now_ns() - begin) / 1e6);
        const auto list = boost::json::parse(given.body).at("list").as_array();
        if (list.empty()) throw std::runtime_error("an empty summary: " + given.body);
        product = list.front().at("product").as_string();
    }
    where.found->add({where.label + ": summary page, the first time since the data changed",
                      median(milliseconds), "ms", milliseconds.size(), std::nullopt,
                      "median, 1 connection; slowest " + readable(percentile(milliseconds, 1), "ms")});
    // This limit is stated for both databases.
    scene bounded = where;
    bounded.limits_apply = true;
    measure_pages(bounded, running, session,
                  {.name = "products in the summary of 1,000,000 stock rows",
                   .path = path,
                   .criteria = dates() + "&",
                   .least = 99'000,
                   .any_ms = slowest_ms,
                   .seconds = seconds});
}

} // namespace bench
