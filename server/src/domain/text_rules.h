#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace tavrok::domain {

/** Refuses a text that is no valid UTF-8, is longer than `limit` characters or holds a control character
 * other than tab and line breaks. `what` names it in the log. */
void check_text(std::string_view what, std::string_view text, std::size_t limit);
/** The same, and refuses a text of nothing but blanks. */
void check_required(std::string_view what, std::string_view text, std::size_t limit);
/** Refuses a telephone number that is no number: digits and what people put between them. Not stricter, as
 * what a client once stored must go on being accepted. */
void check_dialable(std::string_view what, std::string_view text, std::size_t limit);
/** Refuses a text that can be no e-mail address: something before one '@', behind it a name with a dot
 * inside, no blanks. Not stricter: whether it reaches anybody, only a letter could tell. */
void check_email(std::string_view what, std::string_view text, std::size_t limit);
/** Refuses a text with blanks around it: people trim what they type, and would not find it again. */
void check_trimmed(std::string_view what, std::string_view text);

/** A text of a record: where it stands and what it must be. */
template <typename record>
struct text_rule {
    const char* name;
    std::string record::*text;
    void (*check)(std::string_view what, std::string_view text, std::size_t limit);
    std::size_t limit;
};

template <typename record, std::size_t count>
void check_texts(const record& what, const std::array<text_rule<record>, count>& rules) {
    for (const auto& one : rules)
        one.check(one.name, what.*one.text, one.limit);
}

} // namespace tavrok::domain
