#include "domain/documents_scene.h"

namespace tavrok::domain {
namespace {

using test::g_in;
using test::g_now;
using test::g_out;

constexpr std::int64_t g_long_gone = g_now + 3 * 3600; // for claims, not for sessions

class documents_outbound : public test::documents_test {
protected:
    void SetUp() override {
        documents_test::SetUp();
        if (IsSkipped()) return;
        stock = batch(10);
        hand = in->log_in(in->hand);
    }
    std::string take(const std::vector<document_line>& lines, std::int64_t now = g_now) {
        return attempt(g_out, header(g_out, 6), lines, now);
    }
    /** As nothing had been tried: what is on hand, claimed, and numbered. */
    void as_before(std::int64_t claimed_before) {
        EXPECT_EQ(on_hand(stock), 10);
        EXPECT_EQ(claimed(stock), claimed_before);
        EXPECT_EQ(in->number("SELECT count(*) FROM document WHERE module = 2"), 0);
        EXPECT_EQ(in->number("SELECT count(*) FROM document_number WHERE kind = 'QC'"), 0);
        EXPECT_EQ(in->number("SELECT count(*) FROM draft"), 0);
        EXPECT_EQ(in->number("SELECT count(*) FROM movement"), 1);
        ledger_is_right();
    }

    std::int64_t stock{0};
    domain::principal hand;
};
ON_EVERY_ENGINE(documents_outbound);

TEST_P(documents_outbound, takes_goods_off_their_row) {
    const auto id = issue({from(stock, 4)});
    EXPECT_EQ(on_hand(stock), 6);
    const auto lines = lines_of(g_out, id);
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_EQ(lines[0].stock, stock);
    EXPECT_EQ(lines[0].place, "A-03-12");
    EXPECT_EQ(in->number("SELECT amount FROM movement ORDER BY id DESC LIMIT 1"), -4);
    EXPECT_EQ(in->number("SELECT value FROM movement ORDER BY id DESC LIMIT 1"), -1000);
    EXPECT_EQ(audited("outbound_add"), 1);
    EXPECT_NE(take({from(stock, 7)}), "");
    EXPECT_EQ(take({from(stock, 6)}), "");
    EXPECT_EQ(in->number("SELECT listed FROM stock"), 0);
    EXPECT_NE(take({from(stock, 1)}), "");
    ledger_is_right();
}

TEST_P(documents_outbound, uses_the_claim_up) {
    const auto token = claim(boss, stock, 10);
    EXPECT_EQ(take({from(stock, 10, token)}), "");
    EXPECT_EQ(on_hand(stock), 0);
    EXPECT_EQ(claimed(stock), 0);
    EXPECT_EQ(in->number("SELECT state FROM claim"), 2);
    ledger_is_right();
}

TEST_P(documents_outbound, takes_its_lines_on_a_row_in_their_order) {
    const auto token = claim(boss, stock, 10);
    const auto nothing = from(stock, 0, token);
    EXPECT_NE(take({from(stock, 1), nothing}), "") << "a later line frees nothing for an earlier one";
    as_before(10);
    EXPECT_EQ(take({nothing, from(stock, 1)}), "");
    EXPECT_EQ(on_hand(stock), 9);
    EXPECT_EQ(claims(), 0);
    ledger_is_right();
}

TEST_P(documents_outbound, uses_a_claim_up_whole_whatever_the_line_takes) {
    const auto more = claim(boss, stock, 5);
    EXPECT_EQ(take({from(stock, 3, more)}), "") << "less than was claimed";
    EXPECT_EQ(claimed(stock), 0);
    const auto less = claim(boss, stock, 2);
    EXPECT_EQ(take({from(stock, 6, less)}), "") << "more: the rest is free";
    EXPECT_EQ(on_hand(stock), 1);
    EXPECT_EQ(claims(), 0);
    ledger_is_right();
}

TEST_P(documents_outbound, leaves_the_claims_as_they_were_when_it_is_refused) {
    const auto token = claim(boss, stock, 6);
    claim(hand, stock, 3);
    const auto refuse = [&](std::int64_t total, std::vector<document_line> lines) {
        const auto draft = open(g_out, 6);
        for (const auto& one : lines)
            put(g_out, draft, one);
        EXPECT_NE(close(g_out, draft, total), "");
        as_before(9);
        EXPECT_EQ(claims(), 2);
    };
    refuse(1499, {from(stock, 6, token)});
    refuse(2000, {from(stock, 6, token), from(stock, 2)});
    refuse(2000, {from(stock, 8, token)});
    // Pressing save again writes the document once.
    EXPECT_EQ(take({from(stock, 6, token)}), "");
    EXPECT_EQ(on_hand(stock), 4);
    EXPECT_EQ(claimed(stock), 3);
    EXPECT_EQ(in->number("SELECT count(*) FROM document WHERE module = 2"), 1);
    ledger_is_right();
}

TEST_P(documents_outbound, takes_what_is_free_where_a_line_has_no_live_claim) {
    const auto given_back = claim(boss, stock, 3);
    in->write([&](store::connection& with) { give_back_claim(with, boss, given_back, g_now); });
    const auto others = claim(hand, stock, 3);
    const auto transfer = claim(boss, stock, 1, claim_use::transfer);
    for (const std::string& token :
         {std::string(), std::string("0"), std::string("no such claim"), given_back, others, transfer}) {
        EXPECT_EQ(take({from(stock, 1, token)}), "") << token;
    }
    EXPECT_EQ(on_hand(stock), 4);
    EXPECT_EQ(claimed(stock), 4) << "neither another's claim nor one for another use is used up";
    EXPECT_NE(take({from(stock, 1, others)}), "") << "nothing is free";
    ledger_is_right();
}

TEST_P(documents_outbound, does_not_use_a_claim_on_another_row) {
    const auto other = batch(10);
    const auto token = claim(boss, other, 4);
    EXPECT_EQ(take({from(stock, 4, token)}), "");
    EXPECT_EQ(claimed(other), 4);
    EXPECT_EQ(claims(), 1);
}

TEST_P(documents_outbound, uses_a_claim_up_once_where_two_lines_name_it) {
    const auto token = claim(boss, stock, 6);
    EXPECT_NE(take({from(stock, 6, token), from(stock, 6, token)}), "");
    as_before(6);
    EXPECT_EQ(take({from(stock, 6, token), from(stock, 4, token)}), "") << "the second takes what is free";
    EXPECT_EQ(on_hand(stock), 0);
    ledger_is_right();
}

TEST_P(documents_outbound, refuses_two_lines_that_each_fit_and_together_do_not) {
    EXPECT_NE(take({from(stock, 6), from(stock, 6)}), "");
    as_before(0);
    EXPECT_EQ(take({from(stock, 6), from(stock, 4)}), "");
    EXPECT_EQ(on_hand(stock), 0);
}

TEST_P(documents_outbound, is_refused_whole_when_one_line_does_not_fit) {
    const auto other = batch(5);
    EXPECT_NE(take({from(stock, 1), from(other, 6)}), "");
    EXPECT_NE(take({from(other, 6), from(stock, 1)}), "");
    EXPECT_EQ(on_hand(stock), 10);
    EXPECT_EQ(on_hand(other), 5);
    EXPECT_EQ(in->number("SELECT count(*) FROM document WHERE module = 2"), 0);
    EXPECT_EQ(in->number("SELECT count(*) FROM document_line"), 2);
}

TEST_P(documents_outbound, does_not_take_what_others_claim_or_hold) {
    const auto token = claim(hand, stock, 8);
    EXPECT_NE(take({from(stock, 3)}), "");
    EXPECT_NE(take({from(stock, 3, token)}), "") << "another's claim";
    EXPECT_EQ(claimed(stock), 8);
    in->write([&](store::connection& with) { give_back_claim(with, hand, token, g_now); });
    claim(hand, stock, 0, claim_use::stocktaking);
    EXPECT_NE(take({from(stock, 1)}), "") << "held as a whole";
    as_before(0);
}

TEST_P(documents_outbound, does_not_wait_for_claims_whose_users_are_gone) {
    claim(hand, stock, 8);
    const auto later = in->log_in(in->boss, g_long_gone);
    auto what = header(g_out, 6);
    const auto draft = open(later, g_out, what, g_long_gone);
    put(later, g_out, draft, from(stock, 10));
    EXPECT_EQ(close(later, g_out, draft, 2500, g_long_gone), "");
    EXPECT_EQ(in->number("SELECT state FROM claim"), 4);
    EXPECT_EQ(on_hand(stock), 0);
    ledger_is_right();
}

TEST_P(documents_outbound, takes_from_what_is_free_when_the_claim_has_lapsed) {
    const auto token = claim(boss, stock, 6);
    const auto later = in->log_in(in->hand, g_long_gone);
    EXPECT_NO_THROW(in->write([&](store::connection& with) {
        take_claim(with, later, {claim_use::outbound, stock, 7}, g_long_gone);
    })) << "the claim of the other has lapsed";
    const auto draft = open(g_out, 6);
    put(g_out, draft, from(stock, 6, token));
    EXPECT_NE(close(g_out, draft, 1500, g_long_gone), "") << "3 are free";
    EXPECT_EQ(claimed(stock), 7);
    const auto again = open(g_out, 6);
    put(g_out, again, from(stock, 3, token));
    EXPECT_EQ(close(g_out, again, 750, g_long_gone), "");
    EXPECT_EQ(on_hand(stock), 7);
    EXPECT_EQ(claimed(stock), 7);
    ledger_is_right();
}

TEST_P(documents_outbound, names_a_row_of_the_company_and_what_lies_there) {
    auto other_goods = from(stock, 1);
    other_goods.product = us.second_product;
    EXPECT_NE(take({other_goods}), "");
    auto other_house = from(stock, 1);
    other_house.warehouse = us.second_warehouse;
    EXPECT_NE(take({other_house}), "");
    for (const std::int64_t unknown : {std::int64_t{0}, std::int64_t{-1}, stock + 1}) {
        auto nowhere = from(stock, 1);
        nowhere.stock = unknown;
        EXPECT_NE(take({nowhere}), "") << unknown;
    }
    as_before(0);
}

TEST_P(documents_outbound, does_not_reach_another_companys_stock) {
    auto what = line(1);
    what.product = them.product;
    what.warehouse = them.warehouse;
    document_header theirs;
    theirs.type = 7;
    theirs.operater = std::to_string(them.employee);
    const auto draft = open(them.boss, g_in, theirs);
    put(them.boss, g_in, draft, what);
    announce(them.boss, what);
    ASSERT_EQ(close(them.boss, g_in, draft, 250), "");
    auto nowhere = from(stock, 1);
    nowhere.stock = in->number("SELECT max(id) FROM stock");
    ASSERT_NE(nowhere.stock, stock);
    EXPECT_NE(take({nowhere}), "");
    EXPECT_EQ(on_hand(nowhere.stock), 1);
}

TEST_P(documents_outbound, may_sell_at_another_price_and_moves_the_value_of_the_batch) {
    auto what = from(stock, 4);
    what.price = 999;
    what.total = 4 * 999;
    what.place = "somewhere else";
    const auto id = issue({what});
    EXPECT_EQ(in->number("SELECT total FROM document WHERE module = 2"), 3996);
    EXPECT_EQ(in->number("SELECT value FROM movement ORDER BY id DESC LIMIT 1"), -1000);
    const auto lines = lines_of(g_out, id);
    EXPECT_EQ(lines.at(0).price, 999);
    EXPECT_EQ(lines.at(0).place, "A-03-12") << "where the goods lie is the row's affair";
    remove(g_out, id);
    EXPECT_EQ(in->number("SELECT sum(value) FROM movement"), 2500);
    ledger_is_right();
}

} // namespace
} // namespace tavrok::domain
