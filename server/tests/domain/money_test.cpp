#include "domain/money.h"

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <cmath>

#include "domain/refused.h"

namespace tavrok::domain {
namespace {

constexpr std::int64_t g_most = 9'999'999'900;

TEST(money, is_read_from_decimal_texts) {
    for (const auto& [text, hundredths] :
         std::initializer_list<std::pair<const char*, std::int64_t>>{{"0", 0},
                                                                     {"0.00", 0},
                                                                     {"0.01", 1},
                                                                     {"0.1", 10},
                                                                     {"12", 1200},
                                                                     {"12.5", 1250},
                                                                     {"12.50", 1250},
                                                                     {"1.10", 110},
                                                                     {"007.00", 700},
                                                                     {"4.35", 435},
                                                                     {"1.15", 115},
                                                                     {"99999999", g_most},
                                                                     {"99999999.00", g_most}}) {
        EXPECT_EQ(parse_money("price", text, g_most), hundredths) << text;
    }
}

TEST(money, is_refused_when_it_is_written_in_any_other_way) {
    for (const char* text : {"",
                             " ",
                             ".",
                             "1.",
                             ".5",
                             "1.234",
                             "1.000",
                             "1e5",
                             "1E2",
                             " 1",
                             "1 ",
                             "-1",
                             "-0.01",
                             "+1",
                             "1,5",
                             "1..2",
                             "1.2.3",
                             "0x10",
                             "inf",
                             "nan",
                             "１",
                             "1.-5",
                             "1.+5",
                             "1.5\n",
                             "99999999.01",
                             "100000000",
                             "9223372036854775807",
                             "92233720368547758.07",
                             "1000000000000000",
                             "18446744073709551616",
                             "10000000000000000000000000000000.00"}) {
        EXPECT_THROW(parse_money("price", text, g_most), refused) << text;
    }
    EXPECT_THROW(parse_money("price", std::string_view("1\0", 2), g_most), refused);
    EXPECT_EQ(parse_money("sum", "999999999999999.99", INT64_MAX), 99'999'999'999'999'999);
}

TEST(money, is_written_with_two_decimals) {
    EXPECT_EQ(format_money(0), "0.00");
    EXPECT_EQ(format_money(5), "0.05");
    EXPECT_EQ(format_money(-5), "-0.05");
    EXPECT_EQ(format_money(1250), "12.50");
    EXPECT_EQ(format_money(-1250), "-12.50");
    EXPECT_EQ(format_money(g_most), "99999999.00");
    EXPECT_EQ(format_money(INT64_MIN), "-92233720368547758.08");
    EXPECT_EQ(format_money(INT64_MAX), "92233720368547758.07");
}

TEST(money, comes_back_from_its_own_text) {
    EXPECT_TRUE(rc::check([] {
        const auto hundredths = *rc::gen::inRange<std::int64_t>(0, g_most + 1);
        RC_ASSERT(parse_money("price", format_money(hundredths), g_most) == hundredths);
    }));
}

TEST(money, anything_that_is_read_is_digits_with_at_most_two_behind_a_point) {
    EXPECT_TRUE(rc::check([] {
        const auto text =
            *rc::gen::container<std::string>(rc::gen::element('0', '1', '9', '.', '-', 'e', ' '));
        std::int64_t read = -1;
        try {
            read = parse_money("price", text, g_most);
        } catch (const refused&) {
            return;
        }
        RC_ASSERT(read >= 0 && read <= g_most);
        RC_ASSERT(text.find_first_not_of("0123456789.") == std::string::npos);
        const auto point = text.find('.');
        RC_ASSERT(point == std::string::npos || (point > 0 && text.size() - point - 1 <= 2));
    }));
}

TEST(money, that_may_be_lost_has_a_minus_before_it) {
    EXPECT_EQ(parse_signed_money("total", "-5.00", g_most), -500);
    EXPECT_EQ(parse_signed_money("total", "5.00", g_most), 500);
    EXPECT_EQ(parse_signed_money("total", "-0.00", g_most), 0);
    EXPECT_EQ(parse_signed_money("total", "-99999999.00", g_most), -g_most);
    for (const char* text : {"", "-", "--1", "+1", "- 1", "-1.234", "-99999999.01"})
        EXPECT_THROW(parse_signed_money("total", text, g_most), refused) << text;
}

TEST(money, of_a_gain_or_loss_is_truncated_toward_zero) {
    EXPECT_TRUE(truncates_to(-3, 150, -400));
    EXPECT_FALSE(truncates_to(-3, 150, -500));
    EXPECT_FALSE(truncates_to(-3, 150, -450));
    EXPECT_TRUE(truncates_to(1, 99, 0));
    EXPECT_TRUE(truncates_to(-2, 250, -500));
    EXPECT_TRUE(truncates_to(100, 29, 2800)) << "binary";
    EXPECT_TRUE(truncates_to(100, 29, 2900)) << "exact";
    EXPECT_FALSE(truncates_to(100, 29, 2700));
    EXPECT_TRUE(truncates_to(-99'999'999, g_most, -99'999'999 * g_most));
}

TEST(money, that_a_client_truncates_is_understood) {
    EXPECT_TRUE(rc::check([] {
        const auto amount = *rc::gen::inRange<std::int64_t>(-99'999'999, 100'000'000);
        const auto price = *rc::gen::inRange<std::int64_t>(0, g_most + 1);
        const auto client = std::trunc(static_cast<double>(amount) * std::stod(format_money(price)));
        RC_ASSERT(truncates_to(amount, price, static_cast<std::int64_t>(client) * 100));
    }));
}

} // namespace
} // namespace tavrok::domain
