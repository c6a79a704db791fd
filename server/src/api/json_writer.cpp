#include "api/json_writer.h"

#include <array>
#include <charconv>

namespace tavrok::api {

namespace {

/** 0 for a byte that stands for itself, 'u' for \u00xx, else the letter after the backslash. */
constexpr std::array<char, 256> make_escapes() {
    std::array<char, 256> table{};
    for (std::size_t c = 0; c < 0x20; ++c)
        table[c] = 'u';
    table[0x7F] = 'u';
    table['"'] = '"';
    table['\\'] = '\\';
    table['\b'] = 'b';
    table['\f'] = 'f';
    table['\n'] = 'n';
    table['\r'] = 'r';
    table['\t'] = 't';
    return table;
}

constexpr auto escapes = make_escapes();

void append_number(std::string& out, std::int64_t value) {
    std::array<char, 24> digits;
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr;
    out.append(digits.data(), end);
}

} // namespace

void append_json_text(std::string& out, std::string_view text) {
    constexpr std::string_view hex = "0123456789abcdef";
    out += '"';
    std::size_t plain = 0;
    for (std::size_t at = 0; at < text.size(); ++at) {
        const auto byte = static_cast<unsigned char>(text[at]);
        const auto escape = escapes[byte];
        if (escape == 0) continue;
        out.append(text, plain, at - plain);
        plain = at + 1;
        out += '\\';
        out += escape;
        if (escape == 'u') {
            out += "00";
            out += hex[byte >> 4];
            out += hex[byte & 15];
        }
    }
    out.append(text, plain, text.size() - plain);
    out += '"';
}

void json_writer::separate() {
    if (m_comma) m_out += ',';
    m_comma = true;
}

json_writer& json_writer::open(char bracket) {
    separate();
    m_out += bracket;
    m_comma = false;
    return *this;
}

json_writer& json_writer::close(char bracket) {
    m_out += bracket;
    m_comma = true;
    return *this;
}

json_writer& json_writer::name(std::string_view name) {
    separate();
    m_out += '"';
    m_out += name;
    m_out += "\":";
    m_comma = false;
    return *this;
}

json_writer& json_writer::text(std::string_view value) {
    separate();
    append_json_text(m_out, value);
    return *this;
}

json_writer& json_writer::integer(std::int64_t value) {
    separate();
    append_number(m_out, value);
    return *this;
}

json_writer& json_writer::number_text(std::string_view key, std::int64_t value) {
    name(key);
    separate();
    m_out += '"';
    append_number(m_out, value);
    m_out += '"';
    return *this;
}

} // namespace tavrok::api
