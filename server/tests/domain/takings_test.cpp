#include "domain/counts_scene.h"

namespace tavrok::domain {
namespace {

using test::g_in;
using test::g_now;
using test::g_out;
using test::g_taking;

class takings : public test::counts_test {
protected:
    void SetUp() override {
        counts_test::SetUp();
        if (IsSkipped()) return;
        stock = batch(10); // at 2.50
        hand = in->log_in(in->hand);
    }
    std::string hold(const principal& who, std::int64_t row, std::int64_t now = g_now) {
        return claim(who, row, 0, claim_use::stocktaking, now);
    }
    document_record newest() { return documents(g_taking, {.type = 1}).list.at(0); }

    std::int64_t stock{0};
    domain::principal hand;
};
ON_EVERY_ENGINE(takings);

TEST_P(takings, apply_what_was_counted_less_what_the_system_held) {
    const auto other = batch(4, 70);
    const auto before = version();
    ASSERT_EQ(take_stock({counted(stock, 10, 8), counted(other, 4, 5)}), "");
    EXPECT_EQ(on_hand(stock), 8);
    EXPECT_EQ(on_hand(other), 5);
    EXPECT_EQ(in->number("SELECT value FROM movement WHERE amount = -2"), -500);
    EXPECT_EQ(in->number("SELECT value FROM movement WHERE amount = 1"), 70);
    EXPECT_EQ(audited("taking_add"), 1);
    EXPECT_EQ(in->number("SELECT count(*) FROM draft"), 0);
    EXPECT_GT(version(), before);
    const auto one = newest();
    EXPECT_EQ(one.sn.substr(0, 2), "PD");
    EXPECT_EQ(one.difference, -1);
    EXPECT_EQ(one.total, -500) << "0.70 is no whole money";
    const auto lines = lines_of(g_taking, one.id);
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_EQ(lines[0].stock, stock);
    EXPECT_EQ(lines[0].sys_amount, 10);
    EXPECT_EQ(lines[0].amount, -2);
    EXPECT_EQ(lines[0].total, -500);
    EXPECT_EQ(lines[1].total, 0);
    ledger_is_right();
}

TEST_P(takings, do_not_ask_what_is_on_hand_by_now) {
    issue({from(stock, 4)});
    ASSERT_EQ(take_stock({counted(stock, 10, 7)}), "");
    EXPECT_EQ(on_hand(stock), 3);
    ASSERT_EQ(take_stock({counted(stock, 100, 103)}), "");
    EXPECT_EQ(on_hand(stock), 6);
    ledger_is_right();
}

TEST_P(takings, empty_a_row_and_fill_an_empty_one) {
    ASSERT_EQ(take_stock({counted(stock, 10, 0)}), "");
    EXPECT_EQ(in->number("SELECT count(*) FROM stock WHERE listed = 1"), 0);
    ASSERT_EQ(take_stock({counted(stock, 0, 3)}), "");
    EXPECT_EQ(on_hand(stock), 3);
    EXPECT_NE(take_stock({counted(stock, 4, 0)}), "") << "below nothing";
    EXPECT_EQ(on_hand(stock), 3);
    ledger_is_right();
}

TEST_P(takings, use_the_claim_up) {
    const auto token = hold(boss, stock);
    ASSERT_EQ(take_stock({counted(stock, 10, 8, token)}), "");
    EXPECT_EQ(in->number("SELECT state FROM claim"), 2);
    EXPECT_EQ(in->number("SELECT holds + holder FROM stock"), 0);
    ledger_is_right();
}

TEST_P(takings, count_a_row_in_two_lines_each_with_its_claim) {
    const auto first = hold(boss, stock);
    const auto second = hold(boss, stock);
    ASSERT_EQ(take_stock({counted(stock, 10, 0, first), counted(stock, 10, 12, second)}), "");
    EXPECT_EQ(on_hand(stock), 2);
    EXPECT_EQ(claims(), 0);
    ASSERT_EQ(take_stock({counted(stock, 10, 0), counted(stock, 10, 18)}), "")
        << "what comes goes before what is taken";
    EXPECT_EQ(on_hand(stock), 0);
    ledger_is_right();
    remove(g_taking, newest().id);
    EXPECT_EQ(on_hand(stock), 2) << "and so it is undone";
    ledger_is_right();
}

TEST_P(takings, leave_the_row_held_where_a_claim_is_left) {
    const auto used = hold(boss, stock);
    hold(boss, stock);
    ASSERT_EQ(take_stock({counted(stock, 10, 9, used)}), "");
    EXPECT_EQ(in->number("SELECT holds FROM stock"), 1);
    EXPECT_EQ(in->number("SELECT holder FROM stock"), boss.user);
    ledger_is_right();
}

TEST_P(takings, go_without_a_claim_where_nobody_else_holds_or_claims_it) {
    const auto gone = hold(boss, stock);
    in->write([&](store::connection& with) { give_back_claim(with, boss, gone, g_now); });
    const auto others = claim(hand, stock, 3);
    const auto transfer = claim(boss, stock, 2, claim_use::transfer);
    for (const std::string& token :
         {std::string(), std::string("0"), std::string("nothing"), gone, others, transfer})
        EXPECT_EQ(take_stock({counted(stock, 1, 2, token)}), "") << token;
    EXPECT_EQ(on_hand(stock), 16);
    EXPECT_EQ(claimed(stock), 5) << "neither another's claim nor one for another use is used up";
    EXPECT_EQ(take_stock({counted(stock, 16, 5)}), "");
    EXPECT_NE(take_stock({counted(stock, 5, 4)}), "") << "others claim that";
    EXPECT_EQ(on_hand(stock), 5);
    ledger_is_right();
}

TEST_P(takings, are_refused_while_another_holds_the_row) {
    const auto theirs = hold(hand, stock);
    EXPECT_NE(take_stock({counted(stock, 10, 12)}), "");
    EXPECT_NE(take_stock({counted(stock, 10, 12, theirs)}), "") << "it is not his claim";
    nothing_made(1);
    EXPECT_EQ(claims(), 1);
    const auto later = in->log_in(in->boss, g_now + 3 * 3600);
    EXPECT_EQ(take_stock(later, {counted(stock, 10, 12)}, g_now + 3 * 3600), "") << "the claim has lapsed";
    EXPECT_EQ(in->number("SELECT state FROM claim"), 4);
}

TEST_P(takings, leave_every_claim_when_they_are_refused) {
    const auto other = batch(5);
    const auto first = hold(boss, stock);
    const auto second = hold(boss, other);
    const auto fits = counted(stock, 10, 8, first);
    const auto not_so = counted(other, 9, 3, second);
    EXPECT_NE(take_stock({fits, not_so}), "");
    EXPECT_NE(take_stock({not_so, fits}), "");
    nothing_made(2);
    EXPECT_EQ(on_hand(stock), 10);
    EXPECT_EQ(claims(), 2);
    EXPECT_EQ(take_stock({fits, counted(other, 5, 3, second)}), "") << "pressing save again";
    EXPECT_EQ(claims(), 0);
    EXPECT_EQ(newest().sn.substr(10), "-0001");
}

TEST_P(takings, are_closed_with_the_sums_of_their_lines) {
    const auto close = [&](std::int64_t difference, std::int64_t total) {
        return close_sums(boss, counting(boss, {counted(stock, 10, 8), counted(stock, 8, 9)}), difference,
                          total);
    };
    EXPECT_NE(close(1, -300), "");
    EXPECT_NE(close(-2, -300), "");
    EXPECT_NE(close(-1, 300), "");
    EXPECT_NE(close(-1, -299), "") << "whole money adds up to the hundredth";
    EXPECT_NE(close(-1, -301), "");
    EXPECT_NE(close_sums(boss, open(boss, g_taking, taking_header()), 0, 0), "") << "without lines";
    nothing_made(1);
    EXPECT_EQ(close(-1, -300), "");
    EXPECT_EQ(newest().total, -300);
}

TEST_P(takings, take_the_money_that_the_client_truncates) {
    const auto draft = open(boss, g_taking, taking_header());
    const auto line = [&](std::int64_t sys, std::int64_t real, std::int64_t price, std::int64_t total) {
        auto made = counted(stock, sys, real);
        made.what.price = price;
        made.what.total = total;
        return made;
    };
    put(boss, draft, line(10, 7, 150, -400));  // -3 at 1.50
    put(boss, draft, line(10, 11, 99, 0));     // 1 at 0.99
    put(boss, draft, line(10, 110, 29, 2800)); // 100 at 0.29, as binary fractions have it
    put(boss, draft, line(10, 110, 29, 2900)); // and exactly
    for (const auto& wrong : {line(10, 7, 150, -450), line(10, 7, 150, -500), line(10, 7, 150, 400),
                              line(10, 11, 99, 100), line(10, 11, 99, 99), line(10, 110, 29, 2700)})
        EXPECT_THROW(put(boss, draft, wrong), refused) << wrong.what.total;
    EXPECT_EQ(close_sums(boss, draft, 198, 5300), "");
    EXPECT_EQ(on_hand(stock), 208);
    EXPECT_EQ(in->number("SELECT sum(value) FROM movement"), 208 * 250) << "the ledger has the row's price";
    ledger_is_right();
}

TEST_P(takings, refuse_figures_that_do_not_belong_together) {
    const auto draft = open(boss, g_taking, taking_header());
    const auto refuses = [&](std::int64_t sys, std::int64_t real, std::int64_t difference) {
        auto made = counted(stock, 10, 10);
        made.sys_amount = sys;
        made.real_amount = real;
        made.what.amount = difference;
        made.what.total = difference * 250 / 100 * 100;
        EXPECT_THROW(put(boss, draft, made), refused) << sys << ' ' << real << ' ' << difference;
    };
    refuses(10, 8, 2);
    refuses(10, 8, -1);
    refuses(-1, 8, 9);
    refuses(10, -1, -11);
    refuses(100'000'000, 1, -99'999'999);
    refuses(1, 100'000'000, 99'999'999);
    auto priced = counted(stock, 10, 11);
    priced.what.price = -100;
    priced.what.total = -100;
    EXPECT_THROW(put(boss, draft, priced), refused);
    priced.what.price = 100'000'000'00;
    priced.what.total = 100'000'000'00;
    EXPECT_THROW(put(boss, draft, priced), refused);
    auto remark = counted(stock, 10, 11);
    remark.what.remark = std::string(1001, 'x');
    EXPECT_THROW(put(boss, draft, remark), refused);
    EXPECT_EQ(in->number("SELECT count(*) FROM draft_line"), 0);
    EXPECT_NO_THROW(put(boss, draft, counted(stock, 99'999'999, 0)));
    EXPECT_NO_THROW(put(boss, draft, counted(stock, 0, 99'999'999)));
    EXPECT_NO_THROW(put(boss, draft, counted(stock, 10, 10)));
}

TEST_P(takings, name_goods_of_the_row_and_leave_the_place_to_it) {
    auto elsewhere = counted(stock, 10, 9);
    elsewhere.what.place = "somewhere";
    ASSERT_EQ(take_stock({elsewhere}), "");
    EXPECT_EQ(lines_of(g_taking, newest().id).at(0).place, "A-03-12");
    auto other_goods = counted(stock, 9, 8);
    other_goods.what.product = us.second_product;
    EXPECT_NE(take_stock({other_goods}), "");
    auto other_house = counted(stock, 9, 8);
    other_house.what.warehouse = us.second_warehouse;
    EXPECT_NE(take_stock({other_house}), "");
    auto nowhere = counted(stock, 9, 8);
    nowhere.what.stock += 1;
    EXPECT_NE(take_stock({nowhere}), "");
    auto theirs = counted(stock, 9, 8);
    theirs.what.product = them.product;
    EXPECT_THROW(take_stock({theirs}), refused);
    EXPECT_EQ(on_hand(stock), 9);
}

TEST_P(takings, belong_to_the_session_and_need_the_right) {
    const auto draft = counting(boss, {counted(stock, 10, 8)});
    const auto again = in->log_in(in->boss);
    EXPECT_THROW(close_sums(again, draft, -2, -500), refused);
    EXPECT_THROW(put(again, draft, counted(stock, 10, 8)), refused);
    EXPECT_THROW(close(g_out, draft, 0), refused) << "another module";
    EXPECT_THROW(put(g_out, draft, from(stock, 1)), refused);
    auto who = clerk({{"stock_taking", "add"}});
    const auto his = counting(who, {counted(stock, 10, 9)});
    who.rights = {{"stock_taking", "view"}};
    EXPECT_THROW(put(who, his, counted(stock, 10, 8)), refused);
    EXPECT_NE(close_sums(who, his, -1, -200), "") << "the right is gone";
    EXPECT_EQ(close_sums(boss, draft, -2, -500), "");
    who.rights = {{"stock_taking", "delete"}};
    EXPECT_NO_THROW(remove(who, g_taking, newest().id));
}

TEST_P(takings, have_neither_partner_nor_warehouses) {
    auto with_partner = taking_header();
    with_partner.partner = us.supplier;
    EXPECT_THROW(open(boss, g_taking, with_partner), refused);
    auto with_dept = taking_header();
    with_dept.dept = 0;
    EXPECT_THROW(open(boss, g_taking, with_dept), refused);
    auto with_warehouses = transfer_header();
    EXPECT_THROW(open(boss, g_taking, with_warehouses), refused);
    auto second_kind = taking_header();
    second_kind.type = 2;
    EXPECT_THROW(open(boss, g_taking, second_kind), refused);
    auto somebody_else = taking_header();
    somebody_else.writer = std::to_string(hand.user);
    EXPECT_THROW(open(boss, g_taking, somebody_else), refused);
    auto nobody = taking_header();
    nobody.operater = "";
    EXPECT_THROW(open(boss, g_taking, nobody), refused);
}

TEST_P(takings, are_undone_by_contrary_movements) {
    const auto other = batch(4);
    ASSERT_EQ(take_stock({counted(stock, 10, 8), counted(other, 4, 9)}), "");
    const auto id = newest().id;
    EXPECT_THROW(remove(g_in, id), refused);
    EXPECT_THROW(remove(them.boss, g_taking, id), refused);
    remove(g_taking, id);
    EXPECT_EQ(on_hand(stock), 10);
    EXPECT_EQ(on_hand(other), 4);
    EXPECT_EQ(audited("taking_delete"), 1);
    EXPECT_THROW(remove(g_taking, id), refused);
    EXPECT_TRUE(documents(g_taking, {.type = 1}).list.empty());
    EXPECT_THROW(lines_of(g_taking, id), refused);
    ledger_is_right();
}

TEST_P(takings, stay_where_undoing_them_would_take_what_is_not_free) {
    ASSERT_EQ(take_stock({counted(stock, 10, 14)}), "");
    const auto id = newest().id;
    const auto stays = [&](const char* why) {
        EXPECT_THROW(remove(g_taking, id), refused) << why;
        ledger_is_right();
    };
    const auto out = issue({from(stock, 11)});
    stays("below nothing");
    remove(g_out, out);
    const auto token = claim(hand, stock, 11);
    stays("claimed");
    in->write([&](store::connection& with) { give_back_claim(with, hand, token, g_now); });
    hold(hand, stock);
    stays("held by another");
    const auto later = in->log_in(in->boss, g_now + 3 * 3600);
    hold(later, stock, g_now + 3 * 3600);
    EXPECT_NO_THROW(remove(later, g_taking, id, g_now + 3 * 3600)) << "held by himself";
    EXPECT_EQ(on_hand(stock), 10);
    ledger_is_right();
}

TEST_P(takings, of_retired_goods_are_neither_made_nor_undone) {
    const auto draft = counting(boss, {counted(stock, 0, 3)});
    issue({from(stock, 10)});
    remove_product(boss, us.product);
    EXPECT_NE(close_sums(boss, draft, 3, 700), "") << "retired since its line came";
    EXPECT_EQ(on_hand(stock), 0);
    ledger_is_right();
}

TEST_P(takings, that_took_the_last_of_retired_goods_stay) {
    ASSERT_EQ(take_stock({counted(stock, 10, 0)}), "");
    const auto id = newest().id;
    close_warehouse(us.warehouse);
    EXPECT_THROW(remove(g_taking, id), refused);
    EXPECT_EQ(on_hand(stock), 0);
    ledger_is_right();
}

TEST_P(takings, do_not_stand_in_the_way_of_deleting_what_came_in) {
    const auto id = receive({line(10)});
    const auto row = lines_of(g_in, id).at(0).stock;
    ASSERT_EQ(take_stock({counted(row, 10, 9)}), "");
    EXPECT_THROW(remove(g_in, id), refused) << "one is missing";
    remove(g_taking, newest().id);
    EXPECT_NO_THROW(remove(g_in, id));
    ledger_is_right();
}

TEST_P(takings, are_found_by_what_they_tell) {
    ASSERT_EQ(take_stock({counted(stock, 10, 9)}), "");
    auto told = taking_header();
    told.remark = "Ärger";
    const auto draft = open(boss, g_taking, told, g_now + 100);
    put(boss, draft, counted(stock, 9, 8));
    ASSERT_EQ(close_sums(boss, draft, -1, -200, g_now + 100), "");
    const auto count = [&](document_search search) {
        search.type = 1;
        return documents(g_taking, search).total;
    };
    EXPECT_EQ(count({}), 2);
    EXPECT_EQ(count({.date_start = g_now + 1}), 1);
    EXPECT_EQ(count({.date_end = g_now}), 1);
    EXPECT_EQ(count({.sn = "pd"}), 2);
    EXPECT_EQ(count({.sn = "-0002"}), 1);
    EXPECT_EQ(count({.remark = "äR"}), 1);
    EXPECT_EQ(count({.operater = std::to_string(us.employee)}), 2);
    EXPECT_EQ(count({.operater = "4711"}), 0);
    EXPECT_EQ(count({.writer = boss.user}), 2);
    EXPECT_EQ(count({.writer = hand.user}), 0);
    EXPECT_EQ(documents(them.boss, g_taking, {.type = 1}).total, 0);
    EXPECT_EQ(documents(g_in, {.type = 1}).total, 0);
}

} // namespace
} // namespace tavrok::domain
