#include <cstdio>
#include <exception>

#include "stock/measures.h"
#include "support/tls_client.h"

namespace {

using namespace bench;

/** What the service took at its highest over all of this, and takes now that nothing is asked. */
void report_memory(const scene& where, const service& running) {
    constexpr double limit_mb = 200;
    const auto megabytes = [](std::int64_t kib) { return static_cast<double>(kib) / 1024; };
    where.found->add({where.label + ": resident memory of the service over pages, claims and saves, highest",
                      megabytes(peak_kib(running.pid())), "MB", 1, limit{relation::at_most, limit_mb},
                      "in the end " + readable(megabytes(resident_kib(running.pid())), "MB")});
}

} // namespace

/** stock_bench LABEL PROBE PROGRAM DATABASE FOLDER OUTPUT: what wants a large stock, on one database. */
int main(int count, char** words) try {
    if (count != 7) {
        std::fputs("usage: stock_bench SQLite|PostgreSQL PROBE PROGRAM DATABASE FOLDER OUTPUT\n", stderr);
        return 2;
    }
    figures found;
    const ssl_context context = make_context();
    const std::string label = words[1];
    const scene where{label, label == "SQLite", {words[3], words[4], words[5]}, context.get(), &found};
    {
        const service running(where.place);
        const std::string session = log_in(context.get(), running.port(), demo_name, demo_password);
        measure_stock_pages(where, running, session);
        measure_summary(where, running, session);
        measure_claims(where, running, session);
        measure_documents(where, running, words[2]);
        report_memory(where, running);
    }
    measure_check(where);
    found.write(words[6]);
    return 0;
} catch (const std::exception& failed) {
    std::fprintf(stderr, "stock_bench: %s\n", failed.what());
    return 1;
}
