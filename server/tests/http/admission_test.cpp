#include "http/admission.h"

#include <gtest/gtest.h>

#include "http/counters.h"

namespace tavrok::http {

using namespace std::chrono_literals;

namespace {

address at(const char* text) {
    return *read_address(text);
}

limits small() {
    limits bounds;
    bounds.connections = 4;
    bounds.connections_per_address = 2;
    bounds.requests_per_second = 10;
    bounds.request_burst = 3;
    return bounds;
}

} // namespace

TEST(admission, counts_connections_of_an_address_and_of_all) {
    admission gate(small());
    EXPECT_TRUE(gate.enter(at("10.0.0.1"), false));
    EXPECT_TRUE(gate.enter(at("10.0.0.1"), false));
    EXPECT_FALSE(gate.enter(at("10.0.0.1"), false));
    EXPECT_TRUE(gate.enter(at("10.0.0.2"), false));
    EXPECT_TRUE(gate.enter(at("10.0.0.3"), false));
    EXPECT_FALSE(gate.enter(at("10.0.0.4"), false));
    gate.leave(at("10.0.0.1"));
    EXPECT_TRUE(gate.enter(at("10.0.0.1"), false));
}

TEST(admission, a_listed_proxy_is_bound_by_the_total_alone) {
    admission gate(small());
    for (int n = 0; n < 4; ++n)
        EXPECT_TRUE(gate.enter(at("10.0.0.1"), true));
    EXPECT_FALSE(gate.enter(at("10.0.0.1"), true));
}

TEST(admission, a_64_bit_network_is_one_peer) {
    admission gate(small());
    EXPECT_TRUE(gate.enter(at("2001:db8::1"), false));
    EXPECT_TRUE(gate.enter(at("2001:db8::2"), false));
    EXPECT_FALSE(gate.enter(at("2001:db8::3"), false));
    EXPECT_TRUE(gate.enter(at("2001:db8:0:1::3"), false));
}

TEST(admission, requests_follow_burst_and_rate) {
    admission gate(small());
    const auto start = admission::clock::time_point{} + 1h;
    for (int n = 0; n < 3; ++n)
        EXPECT_TRUE(gate.request(at("10.0.0.1"), start));
    EXPECT_FALSE(gate.request(at("10.0.0.1"), start));
    EXPECT_TRUE(gate.request(at("10.0.0.2"), start));
    EXPECT_TRUE(gate.request(at("10.0.0.1"), start + 101ms));
    EXPECT_FALSE(gate.request(at("10.0.0.1"), start + 101ms));
    for (int n = 0; n < 3; ++n)
        EXPECT_TRUE(gate.request(at("10.0.0.1"), start + 1h)) << n;
    EXPECT_FALSE(gate.request(at("10.0.0.1"), start + 1h));
}

TEST(admission, a_rate_of_nothing_means_no_limit) {
    limits bounds = small();
    bounds.requests_per_second = 0;
    admission gate(bounds);
    for (int n = 0; n < 100; ++n)
        EXPECT_TRUE(gate.request(at("10.0.0.1"), {}));
}

TEST(counters, are_told_in_the_form_that_is_scraped) {
    counters figures;
    figures.requests = 3;
    figures.took(std::chrono::milliseconds(1));
    figures.took(std::chrono::milliseconds(7));
    figures.took(std::chrono::seconds(60));
    const std::string text = figures.text();
    const auto has = [&](const char* line) { return text.find(line) != std::string::npos; };
    EXPECT_TRUE(has("# TYPE tavrok_http_requests_total counter\ntavrok_http_requests_total 3\n")) << text;
    EXPECT_TRUE(has("bucket{le=\"0.001000\"} 1\n")) << text;
    EXPECT_TRUE(has("bucket{le=\"0.005000\"} 1\n"));
    EXPECT_TRUE(has("bucket{le=\"0.010000\"} 2\n"));
    EXPECT_TRUE(has("bucket{le=\"+Inf\"} 3\n"));
    EXPECT_TRUE(has("tavrok_http_request_seconds_count 3\n"));
    EXPECT_TRUE(has("tavrok_http_request_seconds_sum 60.008"));
}

} // namespace tavrok::http
