#include "domain/counts_scene.h"

namespace tavrok::domain {
namespace {

using test::g_in;
using test::g_now;
using test::g_out;
using test::g_taking;

/** Saves of a client that does not look at the answers to its lines. */
class spoilt_drafts : public test::counts_test {
protected:
    std::string try_to(const principal& who, document_module module, std::int64_t draft,
                       const std::function<void(store::connection&)>& add) {
        return in->write([&](store::connection& with) {
            return add_or_spoil(
                with, who, module, [&] { return draft; }, [&] { add(with); });
        });
    }
    std::string try_line(const principal& who, document_module module, std::int64_t draft,
                         const document_line& what) {
        return try_to(who, module, draft,
                      [&](store::connection& with) { add_line(with, who, module, draft, what); });
    }
    std::string try_line(document_module module, std::int64_t draft, const document_line& what) {
        return try_line(boss, module, draft, what);
    }
    std::string try_count(std::int64_t draft, const taking_line& what) {
        return try_to(boss, g_taking, draft,
                      [&](store::connection& with) { add_taking_line(with, boss, draft, what); });
    }
    std::string try_announce(const document_line& like) {
        return in->write([&](store::connection& with) {
            return add_or_spoil(
                with, boss, g_in, [&] { return newest_draft(with, boss, g_in); },
                [&] { announce_stock(with, boss, like); });
        });
    }
    /** A draft with one good line, worth 25.00, whose stock is announced. */
    std::int64_t begun(std::int64_t amount = 10) {
        const auto draft = open(g_in, 7);
        put(g_in, draft, line(amount));
        announce(line(amount));
        return draft;
    }
    std::int64_t spoilt() { return in->number("SELECT count(*) FROM draft WHERE spoilt = 1"); }
    std::int64_t rows(const std::string& table) { return in->number("SELECT count(*) FROM " + table); }
    void nothing_is_written() {
        for (const auto* table :
             {"document", "document_line", "stock", "movement", "document_number", "draft", "draft_line"})
            EXPECT_EQ(rows(table), 0) << table;
    }
};
ON_EVERY_ENGINE(spoilt_drafts);

/** Ways in which a line that is worth nothing is refused. */
struct way {
    const char* name;
    std::function<void(document_line&)> change;
};

std::vector<way> ways_of_a_line(std::int64_t retired_product, std::int64_t closed_warehouse) {
    return {{"control character", [](document_line& what) { what.remark = "a\x02"; }},
            {"no UTF-8", [](document_line& what) { what.remark = "\xc3"; }},
            {"long remark", [](document_line& what) { what.remark = std::string(1001, 'x'); }},
            {"long place", [](document_line& what) { what.place = std::string(201, 'p'); }},
            {"price", [](document_line& what) { what.price = -1; }},
            {"amount", [](document_line& what) { what.amount = g_highest_amount + 1; }},
            {"total", [](document_line& what) { what.total = 100; }},
            {"unknown product", [](document_line& what) { what.product = 4711; }},
            {"retired product", [=](document_line& what) { what.product = retired_product; }},
            {"closed warehouse", [=](document_line& what) { what.warehouse = closed_warehouse; }}};
}

TEST_P(spoilt_drafts, of_goods_that_come_in_are_dropped_whatever_the_line_was_refused_for) {
    remove_product(boss, us.second_product);
    close_warehouse(us.second_warehouse);
    auto ways = ways_of_a_line(us.second_product, us.second_warehouse);
    ways.push_back({"no place", [](document_line& what) { what.place = " "; }});
    for (const auto& one : ways) {
        const auto draft = begun();
        auto lost = line(100, 0);
        one.change(lost);
        EXPECT_NE(try_line(g_in, draft, lost), "") << one.name;
        EXPECT_EQ(try_line(g_in, draft, line(1, 0)), "") << "the next one comes in: " << one.name;
        EXPECT_EQ(try_announce(line(1, 0)), "");
        EXPECT_EQ(close(g_in, draft, 2500), "a part of the draft was refused") << one.name;
        nothing_is_written();
    }
    receive({line(), line(100, 0)});
    EXPECT_EQ(rows("document"), 1);
    ledger_is_right();
}

TEST_P(spoilt_drafts, of_goods_that_go_out_leave_the_claims) {
    const auto stock = batch(300);
    const auto retired = add(boss, {.name = "旧货"}).id;
    const auto closed = warehouse(boss, "旧库", us.employee);
    remove_product(boss, retired);
    close_warehouse(closed);
    const auto paid = claim(boss, stock, 5);
    const auto free = claim(boss, stock, 100);
    const auto whole = [&] { return from(stock, 5, paid); };
    const auto unpaid = [&] {
        auto what = from(stock, 100, free);
        what.price = what.total = 0;
        return what;
    };
    for (const auto& one : ways_of_a_line(retired, closed)) {
        const auto draft = open(g_out, 6);
        EXPECT_EQ(try_line(g_out, draft, whole()), "");
        auto lost = unpaid();
        one.change(lost);
        EXPECT_NE(try_line(g_out, draft, lost), "") << one.name;
        EXPECT_NE(close(g_out, draft, 1250), "") << one.name;
        EXPECT_EQ(rows("draft"), 0);
        EXPECT_EQ(claimed(stock), 105);
        EXPECT_EQ(claims(), 2);
        EXPECT_EQ(on_hand(stock), 300);
    }
    issue({whole(), unpaid()});
    EXPECT_EQ(claims(), 0);
    EXPECT_EQ(on_hand(stock), 195);
    ledger_is_right();
}

TEST_P(spoilt_drafts, of_a_stocktaking_leave_the_claims) {
    const auto stock = batch(10);
    const auto token = claim(boss, stock, 0, claim_use::stocktaking);
    const auto same = counted(stock, 10, 10, token);
    const std::vector<std::function<void(taking_line&)>> ways{
        [](taking_line& what) { what.what.remark = "\x01"; },
        [](taking_line& what) { what.what.place = std::string(201, 'p'); },
        [](taking_line& what) { what.what.total = 100; },
        [](taking_line& what) { what.real_amount = 11; },
        [](taking_line& what) { what.sys_amount = what.real_amount = -1; },
        [](taking_line& what) { what.what.warehouse = 4711; }};
    for (const auto& change : ways) {
        const auto draft = counting(boss, {counted(stock, 10, 8)});
        auto lost = same;
        change(lost);
        EXPECT_NE(try_count(draft, lost), "");
        EXPECT_EQ(close_sums(boss, draft, -2, -500), "a part of the draft was refused");
        EXPECT_EQ(rows("draft"), 0);
        EXPECT_EQ(claims(), 1);
        EXPECT_EQ(on_hand(stock), 10);
    }
    EXPECT_EQ(take_stock({counted(stock, 10, 8), same}), "");
    EXPECT_EQ(claims(), 0);
    EXPECT_EQ(on_hand(stock), 8);
    ledger_is_right();
}

TEST_P(spoilt_drafts, come_of_one_line_too_many) {
    const auto draft = begun();
    in->write([&](store::connection& with) { with.execute({"", "UPDATE draft SET lines = 2000"}, {}); });
    EXPECT_NE(try_line(g_in, draft, line(100, 0)), "");
    EXPECT_NE(close(g_in, draft, 2500), "");
    nothing_is_written();
}

TEST_P(spoilt_drafts, come_of_a_right_that_was_away_for_a_while) {
    const auto draft = begun();
    auto without = boss;
    without.administrator = false;
    EXPECT_NE(try_line(without, g_in, draft, line(100, 0)), "");
    EXPECT_NE(close(g_in, draft, 2500), "");
    nothing_is_written();
}

TEST_P(spoilt_drafts, are_those_that_the_line_names_and_no_others) {
    const auto other = begun();
    const auto draft = begun();
    auto wrong = line(100, 0);
    wrong.product = 4711;
    EXPECT_NE(try_line(in->log_in(in->boss), g_in, draft, wrong), "") << "another session";
    EXPECT_NE(try_line(them.boss, g_in, draft, wrong), "") << "another company";
    EXPECT_NE(try_line(g_out, draft, wrong), "") << "another module";
    EXPECT_NE(try_line(g_in, 4711, wrong), "");
    EXPECT_EQ(spoilt(), 0);
    EXPECT_NE(try_line(g_in, draft, wrong), "");
    EXPECT_EQ(spoilt(), 1);
    EXPECT_EQ(close(g_in, other, 2500), "");
    EXPECT_NE(close(g_in, draft, 2500), "");
    EXPECT_EQ(rows("document"), 1);
}

/** The line got lost without an answer, the announcement did not. */
TEST_P(spoilt_drafts, come_of_stock_that_no_line_waits_for) {
    const auto before = begun(3);
    const auto draft = begun();
    const auto outbound = open(g_out, 6);
    EXPECT_NE(try_announce(line(100, 0)), "");
    EXPECT_EQ(spoilt(), 1);
    EXPECT_EQ(in->number("SELECT id FROM draft WHERE spoilt = 1"), draft);
    EXPECT_EQ(close(g_in, before, 750), "");
    EXPECT_EQ(close(g_in, draft, 2500), "a part of the draft was refused");
    put(g_out, outbound, from(in->number("SELECT max(id) FROM stock"), 1));
    EXPECT_EQ(close(g_out, outbound, 250), "");
    ledger_is_right();
}

TEST_P(spoilt_drafts, come_of_stock_that_says_what_no_line_may) {
    const auto draft = begun();
    auto wrong = line(100, 0);
    wrong.remark = "\x02";
    EXPECT_NE(try_announce(wrong), "");
    EXPECT_NE(close(g_in, draft, 2500), "");
    nothing_is_written();
    EXPECT_NE(try_announce(line()), "") << "there is no draft, and nothing happens";
}

TEST_P(spoilt_drafts, are_not_needed_where_nobody_can_read_the_total) {
    const auto stock = batch(10);
    claim(boss, stock, 0, claim_use::stocktaking);
    const auto drop = [&](document_module module, std::int64_t draft) {
        return in->write([&](store::connection& with) {
            return module == g_taking ? close_taking(with, boss, draft, std::nullopt, g_now)
                                      : close_draft(with, boss, module, draft, std::nullopt, g_now);
        });
    };
    EXPECT_EQ(drop(g_in, begun()), "the total is no money");
    EXPECT_EQ(drop(g_taking, counting(boss, {counted(stock, 10, 8)})), "the total is no money");
    EXPECT_EQ(rows("draft"), 0);
    EXPECT_EQ(rows("document"), 1);
    EXPECT_EQ(claims(), 1);
    EXPECT_THROW(drop(g_in, 4711), refused);
}

/** Many pallets of one product: the lines differ in their places alone. */
TEST_P(spoilt_drafts, do_not_come_of_many_lines_that_are_nearly_alike) {
    const auto older = begun();
    const auto draft = open(g_in, 7);
    const auto pallet = [&](int number) {
        auto what = line(1, 100);
        what.place = "P-" + std::to_string(number);
        return what;
    };
    for (int i = 0; i < 60; ++i) {
        const auto id = put(g_in, draft, pallet(i));
        EXPECT_EQ(in->read([&](store::connection& with) { return line_announced(with, boss, pallet(i)); }),
                  id);
        EXPECT_EQ(try_announce(pallet(i)), "");
        EXPECT_EQ(in->number("SELECT stocked FROM draft_line WHERE id = " + std::to_string(id)), 1);
    }
    EXPECT_NE(try_announce(pallet(7)), "") << "it was announced before";
    EXPECT_NE(close(g_in, draft, 6000), "");
    EXPECT_EQ(close(g_in, older, 2500), "");
}

} // namespace
} // namespace tavrok::domain
