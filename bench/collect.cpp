#include <sys/sysinfo.h>
#include <sys/utsname.h>
#include <unistd.h>

#include <boost/json.hpp>
#include <cstdio>
#include <ctime>
#include <exception>
#include <fstream>
#include <stdexcept>

#include "page.h"
#include "support/figures.h"

namespace {

using bench::figure;
using row = std::vector<std::string>;

std::string processor_model() {
    std::ifstream info("/proc/cpuinfo");
    for (std::string line; std::getline(info, line);)
        if (line.rfind("model name", 0) == 0) return line.substr(line.find(':') + 2);
    return "unknown";
}

boost::json::object machine() {
    struct sysinfo memory {};
    sysinfo(&memory);
    utsname system{};
    uname(&system);
    const std::string release = system.release;
    char day[32];
    const std::time_t now = std::time(nullptr);
    std::tm broken{};
    gmtime_r(&now, &broken);
    std::strftime(day, sizeof day, "%Y-%m-%d %H:%M UTC", &broken);
    return {{"processor", processor_model()},
            {"cores", sysconf(_SC_NPROCESSORS_ONLN)},
            {"memory_mib", memory.totalram / 1024 * memory.mem_unit / 1024},
            {"kernel", std::string(system.sysname) + " " + release.substr(0, release.find('-'))},
            {"date", day}};
}

std::string text_of(const boost::json::object& where, const char* key) {
    return std::string(where.at(key).as_string());
}

std::string machine_size(const boost::json::object& where) {
    return text_of(where, "processor") + ", " + std::to_string(where.at("cores").to_number<std::int64_t>()) +
           " cores, " + std::to_string(where.at("memory_mib").to_number<std::int64_t>()) + " MiB, " +
           text_of(where, "kernel") + ", " + text_of(where, "date");
}

/** Columns that a text takes: a Chinese character takes two. */
std::size_t columns(const std::string& text) {
    std::size_t wide = 0;
    for (const char byte : text) {
        const auto bits = static_cast<unsigned char>(byte);
        if (bits >= 0xE0)
            wide += 2;
        else if ((bits & 0xC0) != 0x80)
            wide += 1;
    }
    return wide;
}

row to_row(const figure& one) {
    std::string bound = "reported";
    std::string verdict;
    if (one.bound) {
        bound = one.bound->side == bench::relation::at_least ? ">= " : "<= ";
        bound += bench::readable(one.bound->value, one.unit);
        verdict = one.kept() ? "ok" : "OVER";
    }
    return {one.what,  bench::readable(one.measured, one.unit), bound, verdict, std::to_string(one.samples),
            one.remark};
}

void print_table(const std::vector<figure>& all) {
    std::vector<row> rows{{"what", "measured", "limit", "", "samples", "remark"}};
    for (const figure& one : all)
        rows.push_back(to_row(one));
    std::vector<std::size_t> widths(rows.front().size(), 0);
    for (const row& cells : rows)
        for (std::size_t at = 0; at < cells.size(); ++at)
            widths[at] = std::max(widths[at], columns(cells[at]));
    for (const row& cells : rows) {
        std::string line;
        for (std::size_t at = 0; at < cells.size(); ++at) {
            const std::string gap(widths[at] - columns(cells[at]), ' ');
            const bool number = at == 1 || at == 4;
            line += (at > 0 ? "  " : "") + (number ? gap + cells[at] : cells[at] + gap);
        }
        line.erase(line.find_last_not_of(' ') + 1);
        std::puts(line.c_str());
    }
}

} // namespace

/** collect OUTPUT PAGE BOUNDS PART...: joins what the measuring programs wrote into one table, one JSON file
 * and the figures of a Markdown page, beside what bounds them. */
int main(int count, char** words) try {
    if (count < 5) {
        std::fputs("usage: collect OUTPUT PAGE BOUNDS PART...\n", stderr);
        return 2;
    }
    std::vector<figure> all;
    for (int at = 4; at < count; ++at)
        for (figure& one : bench::read_figures(words[at]))
            all.push_back(std::move(one));
    const boost::json::object where = machine();
    const std::string size = machine_size(where);
    std::printf("%s\n\n", size.c_str());
    print_table(all);
    std::ofstream file(words[1]);
    file << "{\"machine\": " << boost::json::serialize(where) << ",\n\"figures\": " << bench::to_json(all)
         << "}\n";
    file.flush();
    if (!file) throw std::runtime_error(std::string("cannot write ") + words[1]);
    bench::replace_figures(words[2], "Machine: " + size + ".\n\n" + bench::markdown(all, words[3]));
    return 0;
} catch (const std::exception& failed) {
    std::fprintf(stderr, "collect: %s\n", failed.what());
    return 1;
}
