#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <regex>
#include <sstream>

#include "api/harness.h"

namespace tavrok::test {
namespace {

/** One endpoint as docs/protocol.md has it, or as the router does. */
struct documented {
    std::string method;
    std::vector<std::string> keys;
    std::string answer;

    bool operator==(const documented&) const = default;
};

void PrintTo(const documented& one, std::ostream* out) {
    *out << one.method << " [";
    for (const auto& key : one.keys)
        *out << key << " ";
    *out << "] " << one.answer;
}

std::vector<std::string> quoted(const std::string& cell) {
    static const std::regex name("`([a-z_]+)`");
    std::vector<std::string> names;
    for (std::sregex_iterator at(cell.begin(), cell.end(), name), end; at != end; ++at)
        names.push_back((*at)[1]);
    return names;
}

std::map<std::string, documented> page() {
    std::map<std::string, documented> rows;
    std::ifstream file(PROTOCOL_PAGE);
    static const std::regex row(R"(\| `([a-z_]+/[a-z_]+)` \| (GET|POST) \| ([^|]*) \| ([a-z]+)[^|]* \|.*)");
    for (std::string line; std::getline(file, line);) {
        std::smatch cells;
        if (std::regex_match(line, cells, row)) rows[cells[1]] = {cells[2], quoted(cells[3]), cells[4]};
    }
    return rows;
}

TEST(protocol_page, names_every_endpoint_of_the_router_and_no_other) {
    const harness world("sqlite");
    std::map<std::string, documented> routes;
    for (const auto& route : world.service->routes())
        routes[route.path] = {route.method, route.keys, route.answer == "none" ? "text" : route.answer};
    EXPECT_EQ(page(), routes);
}

TEST(protocol_page, names_the_probes) {
    std::ifstream file(PROTOCOL_PAGE);
    std::stringstream text;
    text << file.rdbuf();
    harness world("sqlite");
    for (const std::string probe : {"healthz", "readyz", "metrics"}) {
        EXPECT_NE(text.str().find("| `" + probe + "` | GET |"), std::string::npos) << probe;
        EXPECT_EQ(world.ask({probe, "", "", "127.0.0.1", "GET"}).status, 200u) << probe;
    }
}

} // namespace
} // namespace tavrok::test
