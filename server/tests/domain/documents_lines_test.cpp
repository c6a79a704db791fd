#include "domain/documents_scene.h"

namespace tavrok::domain {
namespace {

using test::g_in;
using test::g_now;
using test::g_out;

class documents_lines : public test::documents_test {
protected:
    std::int64_t draft_lines() { return in->number("SELECT count(*) FROM draft_line"); }
    std::int64_t announced() { return in->number("SELECT count(*) FROM draft_line WHERE stocked = 1"); }
};
ON_EVERY_ENGINE(documents_lines);

TEST_P(documents_lines, go_into_a_draft_of_the_session_and_module) {
    const auto draft = open(g_in, 7);
    EXPECT_GT(put(g_in, draft, line()), 1000);
    EXPECT_THROW(put(g_out, draft, line()), refused);
    EXPECT_THROW(put(in->log_in(in->boss), g_in, draft, line()), refused) << "another session";
    EXPECT_THROW(put(them.boss, g_in, draft, line()), refused) << "another company";
    for (const std::int64_t unknown : {0, -1, 4711})
        EXPECT_THROW(put(g_in, unknown, line()), refused) << unknown;
    EXPECT_EQ(draft_lines(), 1);
}

TEST_P(documents_lines, need_the_right_to_add_that_kind) {
    auto who = clerk({{"instore_purchase", "add"}, {"instore_other", "view"}});
    auto what = header(g_in, 1);
    what.writer.clear();
    const auto may = open(who, g_in, what);
    EXPECT_NO_THROW(put(who, g_in, may, line()));
    what = header(g_in, 7);
    what.writer.clear();
    EXPECT_THROW(put(who, g_in, open(who, g_in, what), line()), refused);
}

TEST_P(documents_lines, name_live_goods_of_the_company) {
    const auto draft = open(g_in, 7);
    const auto refuses = [&](std::int64_t product, std::int64_t warehouse) {
        auto what = line();
        what.product = product;
        what.warehouse = warehouse;
        EXPECT_THROW(put(g_in, draft, what), refused) << product << ' ' << warehouse;
    };
    refuses(them.product, us.warehouse);
    refuses(us.product, them.warehouse);
    refuses(0, us.warehouse);
    refuses(us.product, 0);
    remove_product(boss, us.second_product);
    refuses(us.second_product, us.warehouse);
    close_warehouse(us.second_warehouse);
    refuses(us.product, us.second_warehouse);
    EXPECT_EQ(draft_lines(), 0);
}

TEST_P(documents_lines, have_prices_and_amounts_within_the_bounds) {
    const auto draft = open(g_in, 7);
    const auto fits = [&](std::int64_t amount, std::int64_t price) {
        try {
            put(g_in, draft, line(amount, price));
        } catch (const refused&) {
            return false;
        }
        return true;
    };
    for (const auto& [amount, price] :
         {std::pair(0L, 0L), {0L, 250L}, {1L, 0L}, {g_highest_amount, g_highest_price}})
        EXPECT_TRUE(fits(amount, price)) << amount << ' ' << price;
    for (const auto& [amount, price] :
         {std::pair(-1L, 250L), {1L, -1L}, {g_highest_amount + 1, 1L}, {1L, g_highest_price + 1}})
        EXPECT_FALSE(fits(amount, price)) << amount << ' ' << price;
    auto huge = line();
    huge.amount = INT64_MAX; // with the price no product of 64 bits
    EXPECT_THROW(put(g_in, draft, huge), refused);
    huge = line();
    huge.price = INT64_MIN;
    EXPECT_THROW(put(g_in, draft, huge), refused);
    EXPECT_EQ(draft_lines(), 4);
}

TEST_P(documents_lines, have_a_total_that_is_amount_times_price) {
    const auto draft = open(g_in, 7);
    for (const std::int64_t off : {-250, -1, 1, 100}) {
        auto what = line();
        what.total += off;
        EXPECT_THROW(put(g_in, draft, what), refused) << off;
        EXPECT_THROW(announce(what), refused) << off;
    }
    EXPECT_EQ(draft_lines(), 0);
}

TEST_P(documents_lines, have_texts_of_the_right_form) {
    const auto draft = open(g_in, 7);
    const auto out = open(g_out, 6);
    const auto refuses = [&](auto change) {
        auto what = line();
        change(what);
        EXPECT_THROW(put(g_in, draft, what), refused);
    };
    for (const auto& wrong :
         {std::string(), std::string("  "), std::string(201, 'x'), std::string("a\x02"), std::string("\xc3")})
        refuses([&](document_line& what) { what.place = wrong; });
    for (const auto& wrong : {std::string(1001, 'x'), std::string("a\x02"), std::string("\xc3")})
        refuses([&](document_line& what) { what.remark = wrong; });
    auto what = line();
    what.place = std::string(200, 'x');
    what.remark.clear();
    EXPECT_NO_THROW(put(g_in, draft, what));
    what.place.clear();
    EXPECT_NO_THROW(put(g_out, out, what)) << "an outbound line's place is its row's";
}

/** What a client took for a claim: an error page of something between, for example. */
TEST_P(documents_lines, name_no_claim_by_what_can_be_none) {
    const auto out = open(g_out, 6);
    const std::string real = "L" + new_token();
    for (const auto& strange : {std::string(60'000, 'x'), std::string("a\r\n\x02"), std::string("a\0b", 3),
                                std::string("0"), std::string("\xff"), "l" + real.substr(1), real + "0",
                                real.substr(1), "L" + std::string(64, 'F')}) {
        auto what = line();
        what.token = strange;
        EXPECT_NO_THROW(put(g_out, out, what));
    }
    EXPECT_EQ(in->number("SELECT count(*) FROM draft_line WHERE token = ''"), 9);
    auto what = line();
    what.token = real;
    put(g_out, out, what);
    EXPECT_EQ(in->number("SELECT count(*) FROM draft_line WHERE token = '" + real + "'"), 1);
}

TEST_P(documents_lines, are_two_thousand_at_most) {
    const auto draft = open(g_in, 7);
    in->write([&](store::connection& with) {
        for (int i = 0; i < 2000; ++i)
            add_line(with, boss, g_in, draft, line(1));
    });
    EXPECT_THROW(put(g_in, draft, line()), refused);
    drop(boss, in->number("SELECT min(id) FROM draft_line"));
    EXPECT_NO_THROW(put(g_in, draft, line())) << "a line was dropped";
    EXPECT_THROW(put(g_in, draft, line()), refused);
}

TEST_P(documents_lines, can_be_dropped_until_the_document_is_made) {
    const auto draft = open(g_in, 7);
    const auto first = put(g_in, draft, line(1));
    const auto second = put(g_in, draft, line(2));
    EXPECT_THROW(drop(in->log_in(in->boss), first), refused) << "another session";
    EXPECT_THROW(drop(them.boss, first), refused) << "another company";
    EXPECT_THROW(drop(boss, 0), refused);
    drop(boss, first);
    EXPECT_THROW(drop(boss, first), refused) << "twice";
    EXPECT_EQ(in->number("SELECT lines FROM draft"), 1);
    announce(line(2));
    EXPECT_EQ(close(g_in, draft, 500), "");
    EXPECT_THROW(drop(boss, second), refused);
    const auto made = lines_of(g_in, newest_document());
    ASSERT_EQ(made.size(), 1U);
    EXPECT_EQ(made[0].amount, 2);
    EXPECT_THROW(drop(boss, made[0].id), refused) << "lines of documents stay";
}

TEST_P(documents_lines, wait_for_their_stock_with_the_same_values) {
    const auto draft = open(g_in, 7);
    put(g_in, draft, line());
    const auto refuses = [&](const char* what, auto change) {
        auto other = line();
        change(other);
        other.total = other.amount * other.price;
        EXPECT_THROW(announce(other), refused) << what;
    };
    refuses("product", [&](document_line& one) { one.product = us.second_product; });
    refuses("price", [](document_line& one) { one.price = 251; });
    refuses("amount", [](document_line& one) { one.amount = 11; });
    refuses("warehouse", [&](document_line& one) { one.warehouse = us.second_warehouse; });
    refuses("remark", [](document_line& one) { one.remark = "一行 "; });
    refuses("place", [](document_line& one) { one.place = "a-03-12"; });
    EXPECT_THROW(announce(in->log_in(in->boss), line()), refused) << "another session";
    EXPECT_THROW(announce(them.boss, line()), refused) << "another company";
    EXPECT_EQ(announced(), 0);
    announce(line());
    EXPECT_EQ(announced(), 1);
    EXPECT_THROW(announce(line()), refused) << "no line waits any more";
    EXPECT_EQ(in->number("SELECT count(*) FROM stock"), 0) << "stock comes with the closing call";
}

TEST_P(documents_lines, that_are_alike_each_get_their_stock) {
    const auto draft = open(g_in, 7);
    put(g_in, draft, line());
    put(g_in, draft, line());
    announce(line());
    EXPECT_NE(close(g_in, draft, 5000), "") << "one of them waits";
    const auto again = open(g_in, 7);
    for (int i = 0; i < 2; ++i) {
        put(g_in, again, line());
        announce(line());
    }
    EXPECT_EQ(close(g_in, again, 5000), "");
    EXPECT_EQ(in->number("SELECT count(*) FROM stock WHERE on_hand = 10"), 2);
    ledger_is_right();
}

TEST_P(documents_lines, of_an_abandoned_draft_do_not_take_the_stock_of_a_later_one) {
    put(g_in, open(g_in, 7), line());
    const auto draft = open(g_in, 7);
    put(g_in, draft, line());
    announce(line());
    EXPECT_EQ(close(g_in, draft, 2500), "");
}

TEST_P(documents_lines, of_outbound_drafts_wait_for_no_stock) {
    const auto stock = batch(10);
    const auto draft = open(g_out, 6);
    put(g_out, draft, from(stock, 5));
    EXPECT_THROW(announce(from(stock, 5)), refused);
    EXPECT_EQ(close(g_out, draft, 1250), "");
    EXPECT_EQ(on_hand(stock), 5);
}

} // namespace
} // namespace tavrok::domain
