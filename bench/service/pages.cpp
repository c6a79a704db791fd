#include <boost/json.hpp>
#include <stdexcept>

#include "service/measures.h"
#include "support/statistics.h"
#include "support/tls_load.h"

namespace bench {
namespace {

constexpr unsigned connections = 8;

std::string page_request(const paged_list& list, const std::string& session, const std::string& page) {
    return post(list.path, list.criteria + "page_num=" + page + "&page_size=20", session);
}

struct page_facts {
    std::int64_t total;
    std::int64_t pages;
    std::size_t length;
};

/** Asks for the page once and looks at it, so that the load measures real pages. */
page_facts look(const scene& where, const service& running, const std::string& request) {
    tls_client client(where.context, running.port());
    const answer given = client.exchange(request);
    const auto page = boost::json::parse(given.body).as_object();
    if (page.at("list").as_array().empty()) throw std::runtime_error("an empty page: " + given.body);
    return {page.at("total").as_int64(), page.at("page_count").as_int64(), given.body.size()};
}

} // namespace

void measure_pages(const scene& where, const service& running, const std::string& session,
                   const paged_list& list) {
    const page_facts facts = look(where, running, page_request(list, session, "1"));
    if (facts.total < list.least) throw std::runtime_error("too few " + list.name + " to page through");
    const std::string middle = std::to_string(facts.pages / 2);
    for (const auto& [name, page] : {std::pair<const char*, std::string>{"first", "1"},
                                     std::pair<const char*, std::string>{"middle", middle},
                                     std::pair<const char*, std::string>{"last", "-1"}}) {
        const std::string request = page_request(list, session, page);
        const std::size_t length = look(where, running, request).length;
        load_plan plan;
        plan.port = running.port();
        plan.connections = connections;
        plan.seconds = list.seconds;
        plan.warm_up_seconds = list.seconds / 5;
        plan.next = [&](unsigned, std::uint64_t, std::string& text) { text = request; };
        plan.good = [&](std::string_view body) { return body.size() == length; };
        const load_result result = run_load(where.context, plan);
        if (result.bad != 0)
            throw std::runtime_error(std::to_string(result.bad) + " page answers were wrong");
        const std::string what = where.label + ": " + name + " page of 20 of " +
                                 readable(static_cast<double>(facts.total), "") + " " + list.name +
                                 ", 8 connections";
        figure rate{what,         result.rate(),
                    "/s",         result.milliseconds.size(),
                    std::nullopt, std::to_string(result.handshakes) + " new handshakes meanwhile"};
        figure slow{what + ", p99", percentile(result.milliseconds, 0.99),
                    "ms",           result.milliseconds.size(),
                    std::nullopt,   "p50 " + readable(median(result.milliseconds), "ms")};
        const bool first = page == "1";
        if (where.limits_apply && first && list.first_rate)
            rate.bound = limit{relation::at_least, *list.first_rate};
        const auto& slowest = first && list.first_ms ? list.first_ms : list.any_ms;
        if (where.limits_apply && slowest) slow.bound = limit{relation::at_most, *slowest};
        where.found->add(std::move(rate));
        where.found->add(std::move(slow));
    }
}

} // namespace bench
