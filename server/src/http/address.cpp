#include "http/address.h"

#include <arpa/inet.h>

#include <algorithm>
#include <charconv>
#include <stdexcept>

namespace tavrok::http {

namespace {

constexpr unsigned mapped_bits = 96;
constexpr address mapped_prefix{0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0xff, 0xff, 0, 0, 0, 0};

bool is_mapped(const address& which) {
    return std::equal(mapped_prefix.begin(), mapped_prefix.begin() + mapped_bits / 8, which.begin());
}

std::string_view trimmed(std::string_view text) {
    const auto first = text.find_first_not_of(" \t");
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

/** Takes the port off, if one is there. */
std::string_view host_part(std::string_view text) {
    if (text.starts_with('[')) {
        const auto end = text.find(']');
        return end == std::string_view::npos ? std::string_view{} : text.substr(1, end - 1);
    }
    const auto colon = text.find(':');
    const bool has_port = colon != std::string_view::npos && text.rfind(':') == colon;
    return has_port ? text.substr(0, colon) : text;
}

bool within(const address& which, const address& base, unsigned bits) {
    const unsigned whole = bits / 8;
    if (!std::equal(base.begin(), base.begin() + whole, which.begin())) return false;
    const unsigned rest = bits % 8;
    if (rest == 0) return true;
    const auto mask = static_cast<std::uint8_t>(0xff << (8 - rest));
    return (which[whole] & mask) == (base[whole] & mask);
}

} // namespace

std::optional<address> read_address(std::string_view text) {
    const std::string host(host_part(trimmed(text)));
    address read = mapped_prefix;
    if (inet_pton(AF_INET, host.c_str(), read.data() + mapped_bits / 8) == 1) return read;
    if (inet_pton(AF_INET6, host.c_str(), read.data()) == 1) return read;
    return std::nullopt;
}

std::string to_text(const address& which) {
    char text[INET6_ADDRSTRLEN] = "";
    if (is_mapped(which)) {
        inet_ntop(AF_INET, which.data() + mapped_bits / 8, text, sizeof text);
    } else {
        inet_ntop(AF_INET6, which.data(), text, sizeof text);
    }
    return text;
}

bool is_loopback(const address& which) {
    static constexpr address v6{0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1};
    return is_mapped(which) ? which[12] == 127 : which == v6;
}

address_list::address_list(const std::vector<std::string>& entries) {
    for (const std::string& entry : entries) {
        const auto slash = entry.find('/');
        const auto base = read_address(std::string_view(entry).substr(0, slash));
        unsigned bits = 128;
        bool good = base.has_value();
        if (good && slash != std::string::npos) {
            const char* end = entry.data() + entry.size();
            const auto [stop, failure] = std::from_chars(entry.data() + slash + 1, end, bits);
            good = failure == std::errc{} && stop == end && bits <= (is_mapped(*base) ? 32u : 128u);
            if (is_mapped(*base)) bits += mapped_bits;
        }
        if (!good) throw std::invalid_argument("'" + entry + "' is neither an address nor a network");
        m_networks.push_back({*base, bits});
    }
}

bool address_list::contains(const address& which) const {
    return std::any_of(m_networks.begin(), m_networks.end(),
                       [&](const network& one) { return within(which, one.base, one.bits); });
}

address forwarded_address(const address& peer, std::string_view hops, const address_list& proxies) {
    address believed = peer;
    while (!hops.empty() && proxies.contains(believed)) {
        const auto comma = hops.rfind(',');
        const auto hop = read_address(comma == std::string_view::npos ? hops : hops.substr(comma + 1));
        if (!hop) break;
        believed = *hop;
        hops = comma == std::string_view::npos ? std::string_view{} : hops.substr(0, comma);
    }
    return believed;
}

} // namespace tavrok::http
