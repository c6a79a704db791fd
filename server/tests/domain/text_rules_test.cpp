#include "domain/text_rules.h"

#include <gtest/gtest.h>

#include <string>

#include "domain/refused.h"

namespace tavrok::domain {
namespace {

TEST(text_rules, counts_characters_not_bytes) {
    EXPECT_NO_THROW(check_text("x", "仓库仓库", 4));
    EXPECT_THROW(check_text("x", "仓库仓库a", 4), refused);
}

TEST(text_rules, takes_what_people_type) {
    EXPECT_NO_THROW(check_text("x", "a&b=c+d%20 '\"\\ \t\r\n😀é", 100));
}

TEST(text_rules, refuses_control_characters) {
    EXPECT_THROW(check_text("x", std::string("a\0b", 3), 100), refused);
    EXPECT_THROW(check_text("x", "a\x1b[0m", 100), refused);
    EXPECT_THROW(check_text("x", "a\x7f", 100), refused);
    EXPECT_THROW(check_text("x", "a\xc2\x85", 100), refused);
}

TEST(text_rules, refuses_what_is_no_utf8) {
    for (const char* text :
         {"\xff", "\xc3", "\xc0\xaf", "\xe0\x80\xaf", "\xed\xa0\x80", "\xf4\x90\x80\x80", "\x80"}) {
        EXPECT_THROW(check_text("x", text, 100), refused) << text;
    }
}

TEST(text_rules, a_required_text_is_more_than_blanks) {
    EXPECT_NO_THROW(check_required("x", " a ", 100));
    EXPECT_THROW(check_required("x", "", 100), refused);
    EXPECT_THROW(check_required("x", " \t\n ", 100), refused);
}

TEST(text_rules, a_number_to_dial_is_digits_and_what_stands_between_them) {
    EXPECT_NO_THROW(check_dialable("x", "", 40));
    EXPECT_NO_THROW(check_dialable("x", "+00 (193) 555-01.23/4", 40));
    EXPECT_THROW(check_dialable("x", "call me", 40), refused);
    EXPECT_THROW(check_dialable("x", "12345", 4), refused);
}

} // namespace
} // namespace tavrok::domain
