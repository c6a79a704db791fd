#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "domain/money.h"
#include "domain/products.h"
#include "domain/refused.h"

namespace tavrok::domain {
namespace {

__extension__ using wide = __int128;

/** How a client writes a number: two decimals of a binary fraction. */
std::string shown(double number) {
    char text[64];
    std::snprintf(text, sizeof text, "%.2f", number);
    return text;
}

/** The hundredths that such a text says, whatever their size. */
wide said(const std::string& text) {
    wide number = 0;
    for (const char one : text)
        if (one != '.') number = number * 10 + (one - '0');
    return number;
}

double read(const std::string& text) {
    return std::strtod(text.c_str(), nullptr);
}

/** The text of a line's total, from the text of its price, as a client makes it. */
std::string client_total(std::int64_t amount, std::int64_t price) {
    return shown(static_cast<double>(amount) * read(format_money(price)));
}

struct some_line {
    std::int64_t amount;
    std::int64_t price;
};

rc::Gen<std::int64_t> up_to(std::int64_t most) {
    return rc::gen::oneOf(rc::gen::inRange<std::int64_t>(0, most + 1),
                          rc::gen::inRange<std::int64_t>(0, 1000),
                          rc::gen::inRange<std::int64_t>(most - 1000, most + 1));
}

std::vector<some_line> some_lines() {
    const auto line = rc::gen::construct<some_line>(up_to(g_highest_amount), up_to(g_highest_price));
    return *rc::gen::resize(60, rc::gen::nonEmpty(rc::gen::container<std::vector<some_line>>(line)));
}

TEST(documents_totals, of_a_line_agree_with_what_a_client_makes_of_it) {
    EXPECT_TRUE(rc::check([] {
        const auto amount = *up_to(g_highest_amount);
        const auto price = *up_to(g_highest_price);
        const auto told = said(client_total(amount, price));
        RC_ASSERT(told <= INT64_MAX);
        RC_ASSERT(agrees(amount * price, static_cast<std::int64_t>(told), 1));
    }));
}

TEST(documents_totals, of_many_lines_agree_with_what_a_client_adds_up) {
    EXPECT_TRUE(rc::check([] {
        const auto lines = some_lines();
        wide exact = 0;
        double sum = 0;
        for (const auto& one : lines) {
            exact += static_cast<wide>(one.amount) * one.price;
            sum += read(client_total(one.amount, one.price));
        }
        RC_PRE(exact <= INT64_MAX && said(shown(sum)) <= INT64_MAX);
        const auto right = static_cast<std::int64_t>(exact);
        const auto parts = static_cast<std::int64_t>(lines.size());
        RC_ASSERT(agrees(right, static_cast<std::int64_t>(said(shown(sum))), parts));
    }));
}

TEST(documents_totals, may_be_off_by_less_than_one_hundredth_a_line_and_no_more) {
    EXPECT_TRUE(rc::check([] {
        // Below this, binary fractions tell every hundredth.
        const auto sum = *rc::gen::inRange<std::int64_t>(0, 1LL << 50);
        const auto parts = *rc::gen::inRange<std::int64_t>(1, 2001);
        for (const auto sign : {-1, 1}) {
            RC_ASSERT(agrees(sum, sum + sign * (parts - 1), parts));
            RC_ASSERT(!agrees(sum, sum + sign * parts, parts));
        }
    }));
    EXPECT_TRUE(agrees(250, 250, 1));
    EXPECT_FALSE(agrees(250, 251, 1));
    EXPECT_TRUE(agrees(250, 249, 2));
    EXPECT_FALSE(agrees(250, 248, 2));
}

TEST(documents_totals, of_losses_agree_as_those_of_profits) {
    EXPECT_TRUE(agrees(-250, -250, 1));
    EXPECT_TRUE(agrees(-250, -251, 2));
    EXPECT_FALSE(agrees(-250, -252, 2));
    EXPECT_FALSE(agrees(-250, 250, 2));
}

/** What binary fractions cannot tell of a very large sum is little: a wrong line is still seen. */
TEST(documents_totals, of_very_large_sums_are_still_looked_at) {
    const auto largest = g_highest_amount * g_highest_price;
    EXPECT_FALSE(agrees(largest, largest - g_highest_amount, 1)) << "a hundredth of the price";
    EXPECT_FALSE(agrees(largest, largest - g_highest_price, 1)) << "one piece";
    EXPECT_FALSE(agrees(largest, 0, 1));
    EXPECT_FALSE(agrees(0, largest, 1));
}

TEST(documents_totals, that_no_number_holds_are_refused) {
    EXPECT_EQ(add_money(INT64_MAX - 1, 1), INT64_MAX);
    EXPECT_THROW(add_money(INT64_MAX, 1), refused);
    EXPECT_THROW(add_money(INT64_MIN, -1), refused);
}

} // namespace
} // namespace tavrok::domain
