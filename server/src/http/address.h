#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tavrok::http {

/** An IP address, IPv4 as its mapped IPv6 form. */
using address = std::array<std::uint8_t, 16>;

/** Reads "10.0.0.1", "::1", "10.0.0.1:80" or "[::1]:80"; a port is dropped. Nothing for anything else. */
std::optional<address> read_address(std::string_view text);
std::string to_text(const address& which);
bool is_loopback(const address& which);

/** The proxies whose word about an address is believed. */
class address_list {
public:
    address_list() = default;
    /** Takes addresses and networks ("10.0.0.0/8"); throws std::invalid_argument with the entry that is none.
     */
    explicit address_list(const std::vector<std::string>& entries);
    bool contains(const address& which) const;

private:
    struct network {
        address base;
        unsigned bits;
    };
    std::vector<network> m_networks;
};

/**
 * The address that a request counts for. `hops` is the value of X-Forwarded-For, "" if none came. It is
 * believed only where `peer` is a listed proxy, and then from the right: the first hop that is no listed
 * proxy itself.
 */
address forwarded_address(const address& peer, std::string_view hops, const address_list& proxies);

} // namespace tavrok::http
