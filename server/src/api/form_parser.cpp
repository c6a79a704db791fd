#include "api/form_parser.h"

#include <charconv>
#include <limits>

namespace tavrok::api {

/** Lets the parser fill what everybody else only reads. */
struct parser_access {
    static auto& values(fields& f) { return f.m_values; }
    static auto& integers(fields& f) { return f.m_integers; }
};

namespace {

constexpr std::size_t nowhere = std::string_view::npos;

/** Length of `&name=`. */
std::size_t marker_size(const key& k) {
    return k.name.size() + 2;
}

bool marker_at(std::string_view body, std::size_t at, const key& k) {
    return body.size() - at >= marker_size(k) && body[at] == '&' &&
           body.compare(at + 1, k.name.size(), k.name) == 0 && body[at + marker_size(k) - 1] == '=';
}

std::size_t first_marker(std::string_view body, std::size_t from, const key& k) {
    for (auto at = body.find('&', from); at != nowhere; at = body.find('&', at + 1))
        if (marker_at(body, at, k)) return at;
    return nowhere;
}

/** The last place of `&name=` that lies in [low, body.size()) as a whole. */
std::size_t last_marker(std::string_view body, std::size_t low, const key& k) {
    for (auto at = body.rfind('&'); at != nowhere && at >= low; at = body.rfind('&', at - 1)) {
        if (marker_at(body, at, k)) return at;
        if (at == 0) break;
    }
    return nowhere;
}

struct opening {
    std::size_t key{nowhere};
    std::size_t value{0}; /**< where the value of that key starts */
};

/** The key that the body starts with, written with or without a leading `&`. */
opening find_opening(std::string_view body, const std::vector<key>& keys) {
    const std::size_t skip = !body.empty() && body.front() == '&' ? 1 : 0;
    for (std::size_t k = 0; k < keys.size(); ++k) {
        const auto& name = keys[k].name;
        if (body.size() > skip + name.size() && body.compare(skip, name.size(), name) == 0 &&
            body[skip + name.size()] == '=')
            return {k, skip + name.size() + 1};
    }
    return {};
}

/** For each key the earliest place where its marker may stand so that the keys before it that are always
 * written have room. Empty when one of them is missing. */
std::vector<std::size_t> earliest_places(std::string_view body, const std::vector<key>& keys, opening first) {
    std::vector<std::size_t> low(keys.size(), 0);
    auto end = first.value;
    for (auto k = first.key + 1; k < keys.size(); ++k) {
        low[k] = end;
        if (keys[k].given == presence::optional) continue;
        const auto at = first_marker(body, end, keys[k]);
        if (at == nowhere) return {};
        end = at + marker_size(keys[k]);
    }
    return low;
}

bool parse_number(std::string_view text, const key& k, std::int64_t& number) {
    const auto* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number, 10);
    return error == std::errc() && stop == end && number >= k.low && number <= k.high;
}

std::optional<std::string_view> without_blanks(std::optional<std::string_view> text) {
    constexpr std::string_view blanks = " \t\r\n";
    const auto from = text ? text->find_first_not_of(blanks) : nowhere;
    if (from == nowhere) return std::nullopt;
    return text->substr(from, text->find_last_not_of(blanks) - from + 1);
}

parsed_form refused(std::string why) {
    parsed_form form;
    form.refusal = std::move(why);
    return form;
}

parsed_form split(std::string_view body, const std::vector<key>& keys) {
    parsed_form form;
    form.values = fields(keys);
    auto& values = parser_access::values(form.values);
    const auto first = body.empty() ? opening{} : find_opening(body, keys);
    if (!body.empty() && first.key == nowhere) return refused("the body starts with an unknown key");
    const auto before_first = body.empty() ? keys.size() : first.key;
    for (std::size_t k = 0; k < before_first; ++k)
        if (keys[k].given == presence::always) return refused("missing key " + std::string(keys[k].name));
    if (body.empty()) return form;
    const auto low = earliest_places(body, keys, first);
    if (low.empty()) return refused("a key that is always written is missing");
    auto rest = body;
    for (auto k = keys.size() - 1; k > first.key; --k) {
        const auto at = last_marker(rest, low[k], keys[k]);
        if (at == nowhere) continue;
        values[k] = rest.substr(at + marker_size(keys[k]));
        rest = rest.substr(0, at);
    }
    values[first.key] = rest.substr(first.value);
    return form;
}

bool first_value_alone(const std::vector<key>& keys) {
    return keys.size() > 1 && keys[1].kind == key_kind::unread;
}

parsed_form split_first(std::string_view body, const std::vector<key>& keys) {
    const auto first = find_opening(body, keys);
    if (first.key != 0) return refused("the body starts with another key");
    parsed_form form;
    form.values = fields(keys);
    const auto value = body.substr(first.value);
    parser_access::values(form.values)[0] = value.substr(0, value.find('&'));
    return form;
}

/** Bytes after the first one of a UTF-8 sequence; -1 for a byte that starts none. */
int trailing_bytes(unsigned char lead) {
    if (lead < 0x80) return 0;
    if (lead >= 0xC2 && lead <= 0xDF) return 1;
    if (lead >= 0xE0 && lead <= 0xEF) return 2;
    if (lead >= 0xF0 && lead <= 0xF4) return 3;
    return -1;
}

/** The second byte excludes overlong forms, surrogates and what lies beyond U+10FFFF. */
bool second_byte_fits(unsigned char lead, unsigned char second) {
    const unsigned char low = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
    const unsigned char high = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
    return second >= low && second <= high;
}

bool valid_utf8(std::string_view text) {
    for (std::size_t at = 0; at < text.size(); ++at) {
        const auto lead = static_cast<unsigned char>(text[at]);
        const auto more = trailing_bytes(lead);
        if (more == 0) continue;
        if (more < 0 || text.size() - at <= static_cast<std::size_t>(more)) return false;
        if (!second_byte_fits(lead, static_cast<unsigned char>(text[at + 1]))) return false;
        for (int i = 2; i <= more; ++i)
            if ((static_cast<unsigned char>(text[at + static_cast<std::size_t>(i)]) & 0xC0) != 0x80)
                return false;
        at += static_cast<std::size_t>(more);
    }
    return true;
}

/** NUL bytes are for tokens alone. */
bool texts_fit(std::string_view body, const std::vector<key>& keys,
               const std::vector<std::optional<std::string_view>>& values) {
    if (!valid_utf8(body)) return false;
    for (std::size_t k = 0; k < keys.size(); ++k)
        if (values[k] && keys[k].kind != key_kind::token && values[k]->find('\0') != nowhere) return false;
    return true;
}

} // namespace

key text_key(std::string_view name, presence given) {
    return {name, key_kind::text, given, 0, 0};
}

key id_key(std::string_view name, presence given, std::int64_t low) {
    return {name, key_kind::id, given, low, std::numeric_limits<std::int64_t>::max()};
}

key integer_key(std::string_view name, std::int64_t low, std::int64_t high, presence given) {
    return {name, key_kind::integer, given, low, high};
}

key typed_integer_key(std::string_view name, std::int64_t low, std::int64_t high) {
    return {name, key_kind::typed, presence::always, low, high};
}

key token_key(std::string_view name) {
    return {name, key_kind::token, presence::always, 0, 0};
}

std::vector<key> first_alone(std::vector<key> keys) {
    for (std::size_t k = 1; k < keys.size(); ++k) {
        keys[k].kind = key_kind::unread;
        keys[k].given = presence::optional;
    }
    return keys;
}

fields::fields(const std::vector<key>& keys)
    : m_keys(&keys), m_values(keys.size()), m_integers(keys.size(), 0) {}

std::size_t fields::index(std::string_view name) const {
    if (m_keys == nullptr) return nowhere;
    for (std::size_t k = 0; k < m_keys->size(); ++k)
        if ((*m_keys)[k].name == name) return k;
    return nowhere;
}

bool fields::has(std::string_view name) const {
    const auto k = index(name);
    return k != nowhere && m_values[k].has_value();
}

std::string_view fields::text(std::string_view name) const {
    const auto k = index(name);
    return k == nowhere ? std::string_view{} : m_values[k].value_or(std::string_view{});
}

std::int64_t fields::integer(std::string_view name, std::int64_t otherwise) const {
    const auto k = index(name);
    return k == nowhere || !m_values[k].has_value() ? otherwise : m_integers[k];
}

parsed_form parse_form(std::string_view body, const std::vector<key>& keys) {
    if (body.size() > body_limit) return refused("the body is over the limit");
    const bool alone = first_value_alone(keys);
    auto form = alone ? split_first(body, keys) : split(body, keys);
    if (!form.ok()) return form;
    auto& values = parser_access::values(form.values);
    if (!alone && !texts_fit(body, keys, values)) return refused("the body is not valid UTF-8");
    for (std::size_t k = 0; k < keys.size(); ++k) {
        if (keys[k].kind == key_kind::typed) values[k] = without_blanks(values[k]);
        if (!values[k] || keys[k].kind == key_kind::text || keys[k].kind == key_kind::token) continue;
        if (!parse_number(*values[k], keys[k], parser_access::integers(form.values)[k]))
            return refused("no number or out of range: " + std::string(keys[k].name));
    }
    return form;
}

bool valid_text(std::string_view text) {
    return text.find('\0') == nowhere && valid_utf8(text);
}

} // namespace tavrok::api
