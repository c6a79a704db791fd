#include "app/store_metrics.h"

namespace tavrok::app {

namespace {

void family(std::string& text, const std::string& name, const char* kind, std::uint64_t figure) {
    text += "# TYPE tavrok_store_" + name + " " + kind + "\n";
    text += "tavrok_store_" + name + " " + std::to_string(figure) + "\n";
}

} // namespace

void append_metrics(std::string& text, const store::activity& done) {
    family(text, "commits_total", "counter", done.commits);
    family(text, "committed_jobs_total", "counter", done.committed_jobs);
    family(text, "waiting_writes", "gauge", done.waiting_writes);
    family(text, "waiting_reads", "gauge", done.waiting_reads);
    text += "# TYPE tavrok_store_statements_total counter\n";
    for (const auto& [name, figures] : done.statements) {
        text +=
            "tavrok_store_statements_total{name=\"" + name + "\"} " + std::to_string(figures.count) + "\n";
    }
    text += "# TYPE tavrok_store_statement_seconds_total counter\n";
    for (const auto& [name, figures] : done.statements) {
        const std::chrono::duration<double> seconds = figures.time;
        text += "tavrok_store_statement_seconds_total{name=\"" + name + "\"} " +
                std::to_string(seconds.count()) + "\n";
    }
}

} // namespace tavrok::app
