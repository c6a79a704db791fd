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

void check_email(std::string_view what, std::string_view text, std::size_t limit) {
    check_required(what, text, limit);
    const auto at = text.find('@');
    const auto host = at == std::string_view::npos ? std::string_view{} : text.substr(at + 1);
    const auto dot = host.find('.');
    if (at == 0 || dot == 0 || dot == std::string_view::npos || host.back() == '.' ||
        host.find('@') != std::string_view::npos || text.find_first_of(" \t\r\n") != std::string_view::npos) {
        refuse(what, "is no e-mail address");
    }
}

void check_trimmed(std::string_view what, std::string_view text) {
    constexpr std::string_view blank = " \t\r\n";
    if (text.empty()) return;
    if (blank.find(text.front()) != std::string_view::npos ||
        blank.find(text.back()) != std::string_view::npos) {
        refuse(what, "has blanks around it");
    }
}

} // namespace tavrok::domain
