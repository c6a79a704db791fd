#include <cstdio>
#include <exception>

#include "service/measures.h"
#include "support/tls_client.h"

/** service_bench LABEL PROGRAM DATABASE FOLDER OUTPUT: all measures of the service on one database. */
int main(int count, char** words) try {
    if (count != 6) {
        std::fputs("usage: service_bench SQLite|PostgreSQL PROGRAM DATABASE FOLDER OUTPUT\n", stderr);
        return 2;
    }
    bench::figures found;
    const bench::ssl_context context = bench::make_context();
    const std::string label = words[1];
    const bench::scene where{label, label == "SQLite", {words[2], words[3], words[4]}, context.get(), &found};
    {
        const bench::service first(where.place); // makes the certificate, so that no start below has to
    }
    bench::measure_start(where);
    if (where.limits_apply) bench::measure_search(where);
    {
        const bench::service running(where.place);
        const std::string session =
            bench::log_in(context.get(), running.port(), bench::demo_name, bench::demo_password);
        bench::measure_pages(where, running, session,
                             {.name = "partners",
                              .path = "wms_company/get_page",
                              .criteria = "type=1&",
                              .least = 100'000,
                              .first_rate = 5000,
                              .first_ms = 10});
        bench::measure_idle_memory(where, running);
    }
    {
        const bench::service running(where.place);
        const std::string session =
            bench::log_in(context.get(), running.port(), bench::demo_name, bench::demo_password);
        bench::measure_pages(where, running, session, {"products", "wms_product/get_page", "", 100'000});
        bench::measure_pages(where, running, session, {"employees", "wms_emp/get_page", "", 5'000});
        bench::measure_masters(where, running, session);
    }
    bench::measure_logins(where);
    const bench::service running(where.place);
    const std::string session =
        bench::log_in(context.get(), running.port(), bench::demo_name, bench::demo_password);
    bench::measure_adds(where, running, session);
    found.write(words[5]);
    return 0;
} catch (const std::exception& failed) {
    std::fprintf(stderr, "service_bench: %s\n", failed.what());
    return 1;
}
