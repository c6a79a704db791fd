#include "http/request_reader.h"

#include <boost/beast/http/parser.hpp>
#include <boost/beast/http/rfc7230.hpp>
#include <boost/beast/http/string_body.hpp>

#include "http/header_text.h"

namespace tavrok::http {

namespace beast = boost::beast;

namespace {

using parser = beast::http::request_parser<beast::http::string_body>;

/** What may stand in `input` without being understood, beyond a header: the head of a chunk. */
constexpr std::size_t chunk_head_bytes = 32 * 1024;

} // namespace

struct request_reader::state {
    parser reading;
    std::uint64_t thrown_away{0};
    bool discards{false};

    explicit state(std::size_t header_bytes) {
        reading.header_limit(static_cast<std::uint32_t>(header_bytes));
        // The session decides on the length, after the header.
        reading.body_limit(boost::none);
    }
    /** Gives the parser's verdict and takes off `input` what it used up. */
    beast::error_code feed(std::string& input) {
        beast::error_code failure;
        const std::size_t used = reading.put(boost::asio::buffer(input), failure);
        input.erase(0, used);
        return failure;
    }
};

request_reader::request_reader(std::size_t header_bytes) : m_header_bytes(header_bytes) {}

request_reader::~request_reader() = default;

void request_reader::next() {
    if (!m_state) m_state = std::make_unique<state>(m_header_bytes);
}

request_reader::progress request_reader::header(std::string& input) {
    next();
    const beast::error_code failure = m_state->feed(input);
    if (failure == beast::http::error::header_limit) return progress::too_large;
    if (failure && failure != beast::http::error::need_more) return progress::malformed;
    if (m_state->reading.is_header_done()) return progress::whole;
    return input.size() > m_header_bytes ? progress::too_large : progress::more;
}

request_reader::progress request_reader::body(std::string& input) {
    while (!m_state->reading.is_done()) {
        if (input.empty()) return progress::more;
        const std::size_t before = input.size();
        const beast::error_code failure = m_state->feed(input);
        if (m_state->discards) discard_body();
        if (failure && failure != beast::http::error::need_more) return progress::malformed;
        if (input.size() == before && !m_state->reading.is_done()) {
            return before > chunk_head_bytes ? progress::malformed : progress::more;
        }
    }
    return progress::whole;
}

void request_reader::discard_body() {
    std::string& read = m_state->reading.get().body();
    m_state->discards = true;
    m_state->thrown_away += read.size();
    read.clear();
}

std::uint64_t request_reader::body_bytes() const {
    return m_state->thrown_away + m_state->reading.get().body().size();
}

std::optional<std::uint64_t> request_reader::content_length() const {
    const auto length = m_state->reading.content_length();
    return length ? std::optional<std::uint64_t>(*length) : std::nullopt;
}

bool request_reader::keep_alive() const {
    return m_state->reading.get().keep_alive();
}

bool request_reader::expects_continue() const {
    return beast::iequals(m_state->reading.get()[beast::http::field::expect], "100-continue");
}

std::string request_reader::forwarded_for() const {
    std::string hops;
    const auto [first, last] = m_state->reading.get().equal_range("X-Forwarded-For");
    for (auto field = first; field != last; ++field) {
        if (!hops.empty()) hops += ',';
        hops.append(field->value().data(), field->value().size());
    }
    return hops;
}

request request_reader::take() {
    auto message = m_state->reading.release();
    m_state.reset();
    request read;
    read.method = std::string(message.method_string());
    read.path = path_of({message.target().data(), message.target().size()});
    const auto [first, last] = message.equal_range(beast::http::field::cookie);
    for (auto field = first; field != last && read.cookie.empty(); ++field) {
        read.cookie = session_of({field->value().data(), field->value().size()});
    }
    read.body = std::move(message.body());
    return read;
}

} // namespace tavrok::http
