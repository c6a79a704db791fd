#include "domain/fold.h"

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <cctype>

namespace tavrok::domain {
namespace {

TEST(fold, folds_the_alphabets_that_have_case) {
    EXPECT_EQ(fold("ABCxyz-019[]"), "abcxyz-019[]");
    EXPECT_EQ(fold("ÀÖØÞŸĀŹſẞ×"), "àöøþÿāźsß×");
    EXPECT_EQ(fold("ΑΣΩΆΏς"), "ασωάώσ");
    EXPECT_EQ(fold("АЯЁЪҐӀ"), "аяёъґӏ");
    EXPECT_EQ(fold("ԱՖ"), "աֆ");
    EXPECT_EQ(fold("ＡＺ Ⅳ ƠƯ"), "ａｚ ⅳ ơư");
}

TEST(fold, leaves_small_letters_and_everything_without_case_alone) {
    const std::string text = "澜杉市 仓库 １２３ àöøāź σω яё \t\n😀 ĸŉ";
    EXPECT_EQ(fold(text), text);
}

TEST(fold, every_capital_and_its_small_letter_meet) {
    EXPECT_EQ(fold("Ĺĺ Ňň Žž Ŷŷ"), fold("ĺĺ ňň žž ŷŷ"));
    EXPECT_EQ(fold("STRASSE"), fold("strasse"));
}

TEST(fold, passes_invalid_bytes_through) {
    const std::string text = "A\xff\xc3(\xe4\xbd\x80Z\xf0\x9f";
    EXPECT_EQ(fold(text), "a\xff\xc3(\xe4\xbd\x80z\xf0\x9f");
}

TEST(fold, folding_twice_is_folding_once) {
    EXPECT_TRUE(rc::check([](const std::string& text) { RC_ASSERT(fold(fold(text)) == fold(text)); }));
    EXPECT_TRUE(rc::check([] {
        std::string text;
        const auto letter = *rc::gen::inRange<int>(0x80, 0x800);
        text += static_cast<char>(0xc0 | letter >> 6);
        text += static_cast<char>(0x80 | (letter & 0x3f));
        RC_ASSERT(fold(fold(text)) == fold(text));
    }));
}

TEST(fold, is_tolower_on_ascii) {
    EXPECT_TRUE(rc::check([](std::string text) {
        for (auto& one : text)
            one = static_cast<char>(one & 0x7f);
        std::string lower;
        for (const char one : text)
            lower += static_cast<char>(one >= 'A' && one <= 'Z' ? one + 32 : one);
        RC_ASSERT(fold(text) == lower);
    }));
}

TEST(like_pattern, takes_every_character_as_itself) {
    EXPECT_EQ(like_pattern("仓库"), "%仓库%");
    EXPECT_EQ(like_pattern("50%_\\A"), "%50\\%\\_\\\\a%");
    EXPECT_EQ(like_pattern(""), "%%");
}

} // namespace
} // namespace tavrok::domain
