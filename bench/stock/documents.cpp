#include <cmath>

#include "client/scene.h"
#include "stock/measures.h"
#include "support/metrics.h"
#include "support/statistics.h"

namespace bench {
namespace {

constexpr double slowest_ms = 1000;

/** A part of the work with documents, and the paths that make it up. */
struct document_work {
    std::string what;
    std::string reading; /**< how the probe names it */
    std::vector<std::string> paths;
    bool limited;
    std::string last{"the closing call"};
};

void report_work(const client_scene& where, const readings& seen, const work_done& work,
                 const document_work& one, const std::string& label, bool limits_apply) {
    const std::vector<double>& took = seen.at(one.reading + "_ms");
    const double requests = median(seen.at(one.reading + "_requests"));
    double service_ms = 0;
    for (const std::string& path : one.paths)
        service_ms += work.request_seconds(path) * 1e3 / static_cast<double>(took.size());
    const std::string what = label + ": client: " + one.what;
    figure whole{what,
                 median(took),
                 "ms",
                 took.size(),
                 std::nullopt,
                 std::to_string(std::llround(requests)) + " requests, " +
                     readable(median(took) / requests, "ms") + " each; slowest " +
                     readable(percentile(took, 1), "ms")};
    if (one.limited && limits_apply) whole.bound = limit{relation::at_most, slowest_ms};
    where.found.add(std::move(whole));
    where.found.add({what + ", of that in the service", service_ms, "ms", took.size(), std::nullopt,
                     "mean, from arrival to answer; " + one.last + " " +
                         readable(median(seen.at(one.reading + "_close_ms")), "ms")});
}

} // namespace

void measure_documents(const scene& where, const service& running, const std::string& probe) {
    const client_scene client{probe, where.place.folder, running, where.context, *where.found};
    const auto report_all = [&](const std::string& mode, const std::vector<document_work>& all) {
        metrics before = read_metrics(where.context, running.port());
        const readings seen = run_probe(client, mode);
        const work_done work(std::move(before), read_metrics(where.context, running.port()));
        for (const document_work& one : all)
            report_work(client, seen, work, one, where.label, where.limits_apply);
    };
    report_all("documents",
               {{"save of an inbound document of 100 lines",
                 "inbound",
                 {"wms_instore/do_add", "wms_instore_detail/do_add", "wms_stock_detail/do_add",
                  "wms_instore/update_total"},
                 true},
                {"save of an outbound document of 100 lines",
                 "outbound",
                 {"wms_outstore/do_add", "wms_outstore_detail/do_add", "wms_outstore/update_total"},
                 true},
                {"the 100 claims before an outbound document",
                 "claims",
                 {"wms_stock_detail/lock_stock"},
                 false,
                 "the last one"}});
    report_all(
        "stock",
        {{"save of a stocktaking of 500 lines",
          "taking",
          {"wms_stock_taking/do_add", "wms_stock_taking_detail/do_add", "wms_stock_taking/update_profitloss"},
          false},
         {"save of a transfer of 100 lines",
          "transfer",
          {"wms_stock_allot/do_add", "wms_stock_allot_detail/do_add"},
          false,
          "the last line"}});
}

} // namespace bench
