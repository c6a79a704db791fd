#include "http/address.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace tavrok::http {

namespace {

std::string forwarded(const std::string& peer, const std::string& hops,
                      const std::vector<std::string>& proxies) {
    return to_text(forwarded_address(*read_address(peer), hops, address_list(proxies)));
}

} // namespace

TEST(address, reads_both_families_with_and_without_port) {
    EXPECT_EQ(to_text(*read_address("10.1.2.3")), "10.1.2.3");
    EXPECT_EQ(to_text(*read_address(" 10.1.2.3:443 ")), "10.1.2.3");
    EXPECT_EQ(to_text(*read_address("2001:db8::1")), "2001:db8::1");
    EXPECT_EQ(to_text(*read_address("[2001:db8::1]:443")), "2001:db8::1");
    EXPECT_EQ(to_text(*read_address("::ffff:10.1.2.3")), "10.1.2.3");
    for (const char* bad : {"", "unknown", "10.1.2", "10.1.2.3.4", "[::1", "1.2.3.4, 5.6.7.8"}) {
        EXPECT_FALSE(read_address(bad)) << bad;
    }
}

TEST(address, knows_loopback) {
    EXPECT_TRUE(is_loopback(*read_address("127.0.0.1")));
    EXPECT_TRUE(is_loopback(*read_address("127.9.9.9")));
    EXPECT_TRUE(is_loopback(*read_address("::1")));
    EXPECT_FALSE(is_loopback(*read_address("10.0.0.1")));
    EXPECT_FALSE(is_loopback(*read_address("2001:db8::1")));
}

TEST(address, lists_take_addresses_and_networks) {
    const address_list list({"10.0.0.0/9", "192.168.1.7", "2001:db8::/33", "0.0.0.0/32"});
    EXPECT_TRUE(list.contains(*read_address("10.127.255.255")));
    EXPECT_FALSE(list.contains(*read_address("10.128.0.0")));
    EXPECT_TRUE(list.contains(*read_address("192.168.1.7")));
    EXPECT_FALSE(list.contains(*read_address("192.168.1.8")));
    EXPECT_TRUE(list.contains(*read_address("2001:db8:7fff::1")));
    EXPECT_FALSE(list.contains(*read_address("2001:db8:8000::1")));
    EXPECT_FALSE(address_list().contains(*read_address("127.0.0.1")));
    for (const char* bad : {"10.0.0.0/33", "10.0.0.0/", "10.0.0.0/8x", "proxy", "::/129"}) {
        EXPECT_THROW(address_list({bad}), std::invalid_argument) << bad;
    }
}

TEST(address, a_forwarded_address_is_believed_from_listed_proxies_only) {
    EXPECT_EQ(forwarded("203.0.113.9", "198.51.100.1", {}), "203.0.113.9");
    EXPECT_EQ(forwarded("203.0.113.9", "198.51.100.1", {"10.0.0.0/8"}), "203.0.113.9");
    EXPECT_EQ(forwarded("10.0.0.1", "198.51.100.1", {"10.0.0.0/8"}), "198.51.100.1");
    EXPECT_EQ(forwarded("10.0.0.1", "", {"10.0.0.0/8"}), "10.0.0.1");
}

TEST(address, the_rightmost_hop_that_is_no_proxy_counts) {
    const std::vector<std::string> proxies{"10.0.0.0/8"};
    EXPECT_EQ(forwarded("10.0.0.1", "1.1.1.1, 198.51.100.1, 10.0.0.2", proxies), "198.51.100.1");
    EXPECT_EQ(forwarded("10.0.0.1", "1.1.1.1,198.51.100.1:5000", proxies), "198.51.100.1");
    EXPECT_EQ(forwarded("10.0.0.1", "10.0.0.3, 10.0.0.2", proxies), "10.0.0.3");
    EXPECT_EQ(forwarded("10.0.0.1", "1.1.1.1, nonsense", proxies), "10.0.0.1");
    EXPECT_EQ(forwarded("10.0.0.1", "1.1.1.1, , 10.0.0.2", proxies), "10.0.0.2");
}

} // namespace tavrok::http
