#include "store/bound_values.h"

namespace tavrok::store {

value or_null(const std::optional<std::int64_t>& number) {
    value made;
    if (number) made.emplace<std::int64_t>(*number);
    return made;
}

namespace {

/** Length of the UTF-8 sequence at the start of `text`, 0 when there is none. */
std::size_t sequence_length(std::string_view text) {
    const auto byte = [text](std::size_t at) {
        return at < text.size() ? static_cast<unsigned char>(text[at]) : 0U;
    };
    const auto follows = [&byte](std::size_t at) { return (byte(at) & 0xC0U) == 0x80U; };
    const auto first = byte(0);
    if (first < 0x80) return first == 0 ? 0 : 1;
    if (first >= 0xC2 && first <= 0xDF) return follows(1) ? 2 : 0;
    if (first >= 0xE0 && first <= 0xEF) {
        const bool overlong = first == 0xE0 && byte(1) < 0xA0;
        const bool surrogate = first == 0xED && byte(1) > 0x9F;
        return follows(1) && follows(2) && !overlong && !surrogate ? 3 : 0;
    }
    if (first >= 0xF0 && first <= 0xF4) {
        const bool overlong = first == 0xF0 && byte(1) < 0x90;
        const bool beyond = first == 0xF4 && byte(1) > 0x8F;
        return follows(1) && follows(2) && follows(3) && !overlong && !beyond ? 4 : 0;
    }
    return 0;
}

} // namespace

bool storable(std::string_view text) {
    while (!text.empty()) {
        const auto length = sequence_length(text);
        if (length == 0) return false;
        text.remove_prefix(length);
    }
    return true;
}

void check_bound(const statement& what, std::span<const value> bound) {
    for (const auto& one : bound) {
        const auto* text = std::get_if<std::string>(&one);
        if (text && !storable(*text)) {
            throw error(error_kind::check, what.name + ": a text is not UTF-8 or holds a zero byte");
        }
    }
}

} // namespace tavrok::store
