#include "domain/claims.h"

#include "domain/stock_scene.h"

namespace tavrok::domain {
namespace {

using store::claim_state;
using test::g_now;
using test::is_refused;

class claims : public test::on_stock {
protected:
    void SetUp() override {
        on_stock::SetUp();
        if (!IsSkipped()) row = in->bring_in(10);
    }
    void TearDown() override {
        if (in) in->sound();
    }
    bool holds(const principal& who) {
        return !is_refused([&] { in->claim(who, claim_use::stocktaking, row, 0); });
    }
    std::int64_t row{0};
};
ON_EVERY_ENGINE(claims);

TEST_P(claims, for_transfer_and_outbound_take_a_quantity) {
    const auto first = in->claim(one, claim_use::transfer, row, 4);
    const auto second = in->claim(one, claim_use::outbound, row, 6);
    for (const auto& token : {first, second}) {
        EXPECT_EQ(token.front(), 'L');
        EXPECT_GE(token.size(), 32U);
    }
    EXPECT_NE(first, second);
    EXPECT_EQ(in->claimed(row), 10);
    EXPECT_EQ(in->on_hand(row), 10);
    EXPECT_FALSE(in->claims(one, row, 1)) << "nothing is left, for himself neither";
}

TEST_P(claims, of_one_user_add_up) {
    for (int i = 0; i < 3; ++i)
        EXPECT_TRUE(in->claims(one, row, 3));
    EXPECT_FALSE(in->claims(one, row, 2));
    EXPECT_TRUE(in->claims(one, row, 1));
    EXPECT_EQ(in->claims_in(claim_state::active), 4);
}

TEST_P(claims, of_others_take_what_is_left) {
    EXPECT_TRUE(in->claims(one, row, 7));
    EXPECT_FALSE(in->claims(two, row, 4));
    EXPECT_TRUE(in->claims(two, row, 3));
    EXPECT_EQ(in->claimed(row), 10);
}

TEST_P(claims, on_the_whole_row_keep_everybody_else_out) {
    EXPECT_TRUE(holds(one));
    EXPECT_EQ(in->row(row).holder, one.user);
    EXPECT_EQ(in->claimed(row), 0);
    EXPECT_FALSE(holds(two));
    EXPECT_FALSE(in->claims(two, row, 1));
    EXPECT_FALSE(in->claims(two, row, 0));
    EXPECT_TRUE(in->claims(one, row, 2));
    EXPECT_TRUE(holds(one));
    EXPECT_EQ(in->row(row).holds, 2);
}

TEST_P(claims, on_the_whole_row_are_refused_while_anybody_else_claims_it) {
    EXPECT_TRUE(in->claims(one, row, 1));
    EXPECT_TRUE(holds(one)) << "his own are none of anybody else";
    const auto other = in->bring_in(10);
    const auto token = in->claim(one, other, 0);
    EXPECT_TRUE(is_refused([&] { in->claim(two, claim_use::stocktaking, other, 0); }))
        << "a claim on nothing of it is one";
    in->give_back(one, token);
    EXPECT_FALSE(is_refused([&] { in->claim(two, claim_use::stocktaking, other, 0); }));
}

TEST_P(claims, on_the_whole_row_end_one_by_one) {
    const auto first = in->claim(one, claim_use::stocktaking, row, 0);
    const auto second = in->claim(one, claim_use::stocktaking, row, 77);
    EXPECT_EQ(in->claimed(row), 0) << "the amount says nothing";
    in->give_back(one, first);
    EXPECT_EQ(in->row(row).holder, one.user);
    in->give_back(one, second);
    EXPECT_EQ(in->row(row).holder, 0);
    EXPECT_TRUE(holds(two));
}

TEST_P(claims, have_an_amount_that_a_line_may_have) {
    EXPECT_TRUE(in->claims(one, row, 0));
    for (const std::int64_t wrong : {-1, -10, 100'000'000})
        EXPECT_FALSE(in->claims(one, row, wrong));
    EXPECT_FALSE(in->claims(one, row, 11));
    EXPECT_EQ(in->claimed(row), 0);
}

TEST_P(claims, name_a_row_of_the_company) {
    const auto other = in->another("二号");
    for (const auto use : {claim_use::transfer, claim_use::stocktaking, claim_use::outbound}) {
        EXPECT_TRUE(is_refused([&] { in->claim(one, use, row + 1, 1); }));
        EXPECT_TRUE(is_refused([&] { in->claim(other, use, row, 1); }));
    }
    EXPECT_EQ(in->number("SELECT count(*) FROM claim"), 0);
}

TEST_P(claims, are_given_back_once_and_by_their_user) {
    const auto token = in->claim(one, row, 4);
    in->claim(one, row, 5);
    const auto other = in->another("二号");
    for (const auto& who : {two, other})
        in->give_back(who, token);
    for (const char* nothing : {"", "L", "x", "7"})
        in->give_back(one, nothing);
    EXPECT_EQ(in->claimed(row), 9);
    for (int i = 0; i < 2; ++i) {
        in->give_back(one, token);
        EXPECT_EQ(in->claimed(row), 5);
    }
    EXPECT_EQ(in->claims_in(claim_state::given_back), 1);
}

TEST_P(claims, are_used_up_by_the_line_that_names_them) {
    const auto token = in->claim(one, row, 6);
    in->claim(two, row, 4);
    EXPECT_EQ(in->take_out(one, {in->line_out(row, 5, token)}), "");
    EXPECT_EQ(in->on_hand(row), 5);
    EXPECT_EQ(in->claimed(row), 4) << "the rest of the claim is free again";
    EXPECT_EQ(in->claims_in(claim_state::used), 1);
    in->give_back(one, token);
    EXPECT_EQ(in->claimed(row), 4) << "it is over";
}

TEST_P(claims, of_another_row_user_or_purpose_stay) {
    const auto other = in->bring_in(10);
    const auto elsewhere = in->claim(one, other, 1);
    const auto foreign = in->claim(two, row, 1);
    const auto moving = in->claim(one, claim_use::transfer, row, 1);
    for (const auto& token : {elsewhere, foreign, moving})
        EXPECT_EQ(in->take_out(one, {in->line_out(row, 1, token)}), "");
    EXPECT_EQ(in->on_hand(row), 7);
    EXPECT_EQ(in->claims_in(claim_state::active), 3);
}

TEST_P(claims, cover_one_line_only) {
    const auto token = in->claim(one, row, 6);
    in->claim(two, row, 4);
    EXPECT_NE(in->take_out(one, {in->line_out(row, 3, token), in->line_out(row, 4, token)}), "");
    EXPECT_EQ(in->claims_in(claim_state::active), 2) << "what is refused leaves them as they were";
    EXPECT_EQ(in->on_hand(row), 10);
    EXPECT_EQ(in->number("SELECT count(*) FROM draft"), 0);
    EXPECT_EQ(in->take_out(one, {in->line_out(row, 3, token), in->line_out(row, 3, token)}), "");
    EXPECT_EQ(in->on_hand(row), 4);
}

TEST_P(claims, of_others_stay_where_lines_fit_each_and_not_together) {
    in->claim(two, row, 2);
    EXPECT_NE(in->take_out(one, {in->line_out(row, 5), in->line_out(row, 4)}), "");
    EXPECT_EQ(in->take_out(one, {in->line_out(row, 4), in->line_out(row, 4)}), "");
    EXPECT_EQ(in->on_hand(row), 2);
    EXPECT_NE(in->take_out(one, {in->line_out(row, 1)}), "");
}

TEST_P(claims, on_the_whole_row_let_its_holder_take_out_of_it) {
    in->claim(one, claim_use::stocktaking, row, 0);
    EXPECT_NE(in->take_out(two, {in->line_out(row, 1)}), "");
    EXPECT_EQ(in->take_out(one, {in->line_out(row, 1)}), "");
    EXPECT_EQ(in->on_hand(row), 9);
    EXPECT_EQ(in->row(row).holder, one.user);
}

TEST_P(claims, stay_when_the_lines_do_not_add_up) {
    const auto token = in->claim(one, row, 10);
    const auto id = in->draft(one, document_module::outbound, {in->line_out(row, 10, token)});
    EXPECT_NE(in->close(one, document_module::outbound, id, 2'999), "");
    EXPECT_EQ(in->claimed(row), 10);
    EXPECT_TRUE(is_refused([&] { in->close(one, document_module::outbound, id, 3'000); }))
        << "the draft is gone";
    EXPECT_EQ(in->take_out(one, {in->line_out(row, 10, token)}), "");
    EXPECT_EQ(in->on_hand(row), 0);
    EXPECT_EQ(in->number("SELECT count(*) FROM document WHERE module = 2"), 1);
}

TEST_P(claims, keep_an_inbound_document_from_going) {
    const auto document = in->number("SELECT max(id) FROM document");
    const auto going = [&](const principal& who) {
        return !is_refused([&] { in->remove_document(who, document_module::inbound, document); });
    };
    const auto token = in->claim(one, row, 1);
    EXPECT_FALSE(going(one));
    in->give_back(one, token);
    const auto whole = in->claim(one, claim_use::stocktaking, row, 0);
    EXPECT_FALSE(going(one)) << "who holds the row himself neither";
    in->give_back(one, whole);
    EXPECT_TRUE(going(one));
    EXPECT_EQ(in->on_hand(row), 0);
    EXPECT_EQ(in->stock(one).total, 0);
}

TEST_P(claims, that_can_be_none_are_as_good_as_given_back) {
    const auto token = in->claim(one, row, 3);
    for (const auto& strange : {std::string(60'000, 'x'), std::string("a\0b", 3), std::string("\xff\x02"),
                                std::string(), token + "0", "l" + token.substr(1)})
        EXPECT_FALSE(is_refused([&] { in->give_back(one, strange); }));
    EXPECT_EQ(in->claimed(row), 3);
    EXPECT_TRUE(may_be_claim(token));
}

TEST_P(claims, leave_a_row_what_its_value_needs) {
    const auto fits = [&](std::int64_t more) {
        try {
            in->write([&](store::connection& with) {
                store::stock_change by;
                by.on_hand = more;
                if (!store::change_stock(with, in->company, row, by)) throw refused("too much");
                throw std::runtime_error("not to be kept");
            });
        } catch (const refused&) {
            return false;
        } catch (const std::runtime_error&) {
            return true;
        }
        return true;
    };
    EXPECT_TRUE(fits(store::g_most_on_hand - 10));
    EXPECT_FALSE(fits(store::g_most_on_hand - 9));
    EXPECT_FALSE(fits(-11));
    EXPECT_LE(store::g_most_on_hand, std::numeric_limits<std::int64_t>::max() / g_highest_price);
}

} // namespace
} // namespace tavrok::domain
