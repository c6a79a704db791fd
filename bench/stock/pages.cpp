#include <boost/json.hpp>
#include <ctime>
#include <stdexcept>

#include "stock/measures.h"
#include "support/names.h"
#include "support/statistics.h"
#include "support/tls_load.h"

namespace bench {
namespace {

constexpr double slowest_ms = 50;
constexpr double seconds = 2;
constexpr std::int64_t day = 24 * 3600;
constexpr int unseen = 10; /**< criteria that the service has not been asked for */

/** Dates that most of the year fits; each number gives other ones. */
std::string dates(int number) {
    const std::int64_t now = std::time(nullptr);
    return "date_start=" + std::to_string(now - (300 + number) * day) +
           "&date_end=" + std::to_string(now - (60 + number) * day);
}

std::string first_warehouse(tls_client& client, const std::string& session) {
    const answer given = client.exchange(get("wms_warehouse/get_option", session));
    return std::string(boost::json::parse(given.body).as_array().at(0).at("id").as_string());
}

/** Milliseconds of one page; its answer must have rows. */
double ask(tls_client& client, const std::string& session, const std::string& criteria, int page) {
    const std::string request =
        post("wms_stock_detail/get_page", criteria + "page_num=" + std::to_string(page) + "&page_size=20",
             session);
    const std::int64_t begin = now_ns();
    const answer given = client.exchange(request);
    const double milliseconds = static_cast<double>(now_ns() - begin) / 1e6;
    if (given.body.find("\"list\":[{") == std::string::npos)
        throw std::runtime_error("not a page of stock: " + given.body.substr(0, 200));
    return milliseconds;
}

/** The first answers to criteria that the service does not know: what it keeps afterwards, it does not have.
 */
void measure_unseen(const scene& where, tls_client& client, const std::string& session,
                    const std::string& name, const std::vector<std::string>& criteria) {
    std::vector<double> milliseconds;
    for (const std::string& one : criteria)
        milliseconds.push_back(ask(client, session, one, 300));
    where.found->add({where.label + ": stock page " + name + ", the first time since the data changed",
                      median(milliseconds), "ms", milliseconds.size(), std::nullopt,
                      "median, 1 connection; slowest " + readable(percentile(milliseconds, 1), "ms")});
}

} // namespace

void measure_stock_pages(const scene& where, const service& running, const std::string& session) {
    tls_client client(where.context, running.port());
    where.found->add({where.label + ": middle page of all stock, first request after the start",
                      ask(client, session, "", 25'000), "ms", 1, std::nullopt, "1 connection"});
    const std::string warehouse = "&warehouse=" + first_warehouse(client, session) + "&";
    std::vector<std::string> ranges, words;
    for (int at = 1; at <= unseen; ++at) {
        ranges.push_back(dates(at) + warehouse);
        words.push_back(dates(0) + warehouse +
                        "product_name=" + product_terms().at(static_cast<std::size_t>(at)) + "&");
    }
    measure_unseen(where, client, session, "by dates and warehouse", ranges);
    measure_unseen(where, client, session, "by dates, warehouse and product name", words);
    const std::string word = "product_name=" + product_terms().front() + "&";
    const std::string path = "wms_stock_detail/get_page";
    for (const paged_list& list :
         {paged_list{.name = "stock rows", .path = path, .criteria = "", .least = 1'000'000},
          paged_list{.name = "stock rows (of 1,000,000 by dates and warehouse)",
          .path = path,
          .criteria = dates(0) + warehouse,
          .least = 100'000},
          paged_list{.name = "stock rows (of 1,000,000 by dates, warehouse and product name)",
          .path = path,
          .criteria = dates(0) + warehouse + word,
          .least = 5'000}}) {
        paged_list bounded = list;
        bounded.any_ms = slowest_ms;
        bounded.seconds = seconds;
        measure_pages(where, running, session, bounded);
    }
}

} // namespace bench
