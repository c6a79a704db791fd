#include "domain/text_rules.h"

#include "domain/fold.h"
#include "domain/refused.h"

namespace tavrok::domain {

namespace {

bool control(char32_t letter) {
    if (letter == '\t' || letter == '\n' || letter == '\r') return false;
    return letter < 0x20 || (letter >= 0x7f && letter < 0xa0);
}

/** Overlong forms, surrogates and numbers beyond Unicode decode but are no UTF-8. */
bool impossible(char32_t letter, std::size_t bytes) {
    const bool overlong = (bytes == 3 && letter < 0x800) || (bytes == 4 && letter < 0x10000);
    return overlong || (letter >= 0xd800 && letter < 0xe000) || letter > 0x10ffff;
}

[[noreturn]] void refuse(std::string_view what, const char* why) {
    throw refused(std::string(what) + ' ' + why);
}

} // namespace

void check_text(std::string_view what, std::string_view text, std::size_t limit) {
    std::size_t count = 0;
    for (std::size_t at = 0; at < text.size(); ++count) {
        const auto start = at;
        const auto letter = next_letter(text, at);
        if (letter == g_no_letter || impossible(letter, at - start)) refuse(what, "is no UTF-8");
        if (control(letter)) refuse(what, "holds a control character");
    }
    if (count > limit) refuse(what, "is too long");
}

void check_required(std::string_view what, std::string_view text, std::size_t limit) {
    check_text(what, text, limit);
    if (text.find_first_not_of(" \t\r\n") == std::string_view::npos) refuse(what, "is empty");
}

void check_dialable(std::string_view what, std::string_view text, std::size_t limit) {
    check_text(what, text, limit);
    if (text.find_first_not_of("0123456789+-()./; ") != std::string_view::npos) refuse(what, "is no number");
}

} // namespace tavrok::domain
