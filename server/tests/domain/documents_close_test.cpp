#include "domain/documents_scene.h"

namespace tavrok::domain {
namespace {

using test::g_in;
using test::g_now;
using test::g_out;

class documents_close : public test::documents_test {
protected:
    /** Nothing of a document is there, and no draft. */
    void nothing_is_left() {
        EXPECT_EQ(in->number("SELECT count(*) FROM document"), 0);
        EXPECT_EQ(in->number("SELECT count(*) FROM document_line"), 0);
        EXPECT_EQ(in->number("SELECT count(*) FROM stock"), 0);
        EXPECT_EQ(in->number("SELECT count(*) FROM movement"), 0);
        EXPECT_EQ(in->number("SELECT count(*) FROM document_number"), 0);
        EXPECT_EQ(in->number("SELECT count(*) FROM draft"), 0);
        EXPECT_EQ(in->number("SELECT count(*) FROM draft_line"), 0);
        EXPECT_EQ(audited("inbound_add"), 0);
    }
    std::int64_t ready(std::int64_t type = 7) {
        const auto draft = open(g_in, type);
        put(g_in, draft, line());
        announce(line());
        return draft;
    }
};
ON_EVERY_ENGINE(documents_close);

TEST_P(documents_close, makes_the_document_with_all_that_it_moves) {
    auto second = line(3, 1001);
    second.product = us.second_product;
    second.warehouse = us.second_warehouse;
    second.place = "B-01-02";
    second.remark.clear();
    const auto before = version();
    const auto id = receive({line(), second}, 1, g_now + 5);
    EXPECT_EQ(in->number("SELECT count(*) FROM draft"), 0);
    EXPECT_EQ(version(), before + 1);
    EXPECT_EQ(audited("inbound_add"), 1);
    EXPECT_EQ(in->number("SELECT object_id FROM audit WHERE what = 'inbound_add'"), id);
    const auto lines = lines_of(g_in, id);
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_EQ(lines[0].document, id);
    EXPECT_EQ(lines[0].product_name, "我货甲");
    EXPECT_EQ(lines[0].code, "J-1");
    EXPECT_EQ(lines[0].spec, "大");
    EXPECT_EQ(lines[0].amount, 10);
    EXPECT_EQ(lines[0].price, 250);
    EXPECT_EQ(lines[0].total, 2500);
    EXPECT_EQ(lines[0].warehouse_name, "我一号库");
    EXPECT_EQ(lines[0].remark, "一行");
    EXPECT_EQ(lines[0].datetime, g_now + 5);
    EXPECT_EQ(lines[1].total, 3003);
    EXPECT_EQ(lines[1].place, "B-01-02");
    EXPECT_NE(lines[0].stock, lines[1].stock);
    const auto row = in->read(
        [&](store::connection& with) { return store::read_stock(with, in->company, lines[1].stock); });
    EXPECT_EQ(row->product, us.second_product);
    EXPECT_EQ(row->warehouse, us.second_warehouse);
    EXPECT_EQ(row->place, "B-01-02");
    EXPECT_EQ(row->price, 1001);
    EXPECT_EQ(row->added_at, g_now + 5);
    EXPECT_EQ(row->on_hand, 3);
    EXPECT_EQ(in->number("SELECT value FROM movement WHERE stock = " + std::to_string(lines[1].stock)), 3003);
    EXPECT_EQ(in->number("SELECT count(*) FROM movement WHERE user_id = " + std::to_string(boss.user) +
                         " AND moved_at = " + std::to_string(g_now + 5)),
              2);
    EXPECT_EQ(documents(g_in, {.type = 1}).list.at(0).total, 5503);
    ledger_is_right();
}

TEST_P(documents_close, serves_every_kind) {
    for (std::int64_t type = 1; type <= 7; ++type)
        receive({line()}, type);
    const auto stock = batch(60);
    for (std::int64_t type = 1; type <= 6; ++type)
        issue({from(stock, 10)}, type);
    EXPECT_EQ(on_hand(stock), 0);
    EXPECT_EQ(in->number("SELECT count(DISTINCT sn) FROM document"), 14);
    ledger_is_right();
}

TEST_P(documents_close, drops_a_draft_without_lines) {
    EXPECT_NE(close(g_in, open(g_in, 7), 0), "");
    EXPECT_NE(close(g_out, open(g_out, 6), 0), "");
    nothing_is_left();
}

TEST_P(documents_close, drops_a_draft_whose_lines_do_not_add_up) {
    for (const std::int64_t total : {0, 2499, 2501, -2500}) {
        EXPECT_NE(close(g_in, ready(), total), "") << total;
        nothing_is_left();
    }
}

TEST_P(documents_close, takes_a_total_that_is_off_by_less_than_a_hundredth_a_line) {
    const auto off = [&](std::int64_t by) {
        const auto draft = open(g_in, 7);
        for (int i = 0; i < 3; ++i) {
            put(g_in, draft, line());
            announce(line());
        }
        return close(g_in, draft, 7500 + by);
    };
    EXPECT_EQ(off(-2), "");
    EXPECT_EQ(off(2), "");
    EXPECT_NE(off(3), "");
    EXPECT_NE(off(-3), "");
    EXPECT_EQ(in->number("SELECT count(*) FROM document WHERE total = 7500"), 2) << "stored is the true sum";
}

TEST_P(documents_close, drops_a_draft_with_a_line_whose_stock_was_not_announced) {
    const auto draft = ready();
    put(g_in, draft, line(1));
    EXPECT_NE(close(g_in, draft, 2750), "");
    nothing_is_left();
}

TEST_P(documents_close, drops_a_draft_when_its_goods_are_gone_meanwhile) {
    auto draft = ready();
    remove_product(boss, us.product);
    EXPECT_NE(close(g_in, draft, 2500), "");
    nothing_is_left();
    auto what = line();
    what.product = us.second_product;
    draft = open(g_in, 7);
    put(g_in, draft, what);
    announce(what);
    close_warehouse(us.warehouse);
    EXPECT_NE(close(g_in, draft, 2500), "");
    nothing_is_left();
}

TEST_P(documents_close, drops_a_draft_when_the_right_is_gone_meanwhile) {
    auto who = clerk({{"instore_other", "add"}});
    auto what = header(g_in, 7);
    what.writer.clear();
    const auto draft = open(who, g_in, what);
    put(who, g_in, draft, line());
    announce(who, line());
    who.rights.clear();
    EXPECT_NE(close(who, g_in, draft, 2500), "");
    nothing_is_left();
    who.rights = {{"instore_purchase", "add"}};
    EXPECT_THROW(close(who, g_in, draft, 2500), refused) << "dropped is dropped";
}

TEST_P(documents_close, happens_once_and_from_the_drafts_own_session_and_module) {
    const auto draft = ready();
    EXPECT_THROW(close(in->log_in(in->boss), g_in, draft, 2500), refused) << "another session";
    EXPECT_THROW(close(in->log_in(in->hand), g_in, draft, 2500), refused) << "another user";
    EXPECT_THROW(close(them.boss, g_in, draft, 2500), refused) << "another company";
    EXPECT_THROW(close(g_out, draft, 2500), refused) << "another module";
    EXPECT_THROW(close(g_in, 0, 2500), refused);
    EXPECT_EQ(close(g_in, draft, 2500), "") << "and none of these dropped it";
    EXPECT_THROW(close(g_in, draft, 2500), refused);
    EXPECT_EQ(in->number("SELECT count(*) FROM document"), 1);
    EXPECT_EQ(in->number("SELECT count(*) FROM stock"), 1);
}

TEST_P(documents_close, takes_lines_of_amount_and_price_zero) {
    const auto id = receive({line(0), line(5, 0), line(0, 0)});
    const auto lines = lines_of(g_in, id);
    ASSERT_EQ(lines.size(), 3U);
    EXPECT_EQ(on_hand(lines[0].stock), 0);
    EXPECT_EQ(on_hand(lines[1].stock), 5);
    EXPECT_EQ(in->number("SELECT count(*) FROM stock WHERE listed = 1"), 1);
    const auto out = issue({from(lines[1].stock, 0), from(lines[1].stock, 5)});
    EXPECT_EQ(on_hand(lines[1].stock), 0);
    ledger_is_right();
    remove(g_out, out);
    remove(g_in, id);
    ledger_is_right();
}

TEST_P(documents_close, takes_the_largest_line_and_refuses_a_sum_that_no_number_holds) {
    const auto largest = line(g_highest_amount, g_highest_price);
    receive({largest});
    EXPECT_EQ(in->number("SELECT max(total) FROM document"), g_highest_amount * g_highest_price);
    const auto draft = open(g_in, 7);
    for (int i = 0; i < 10; ++i) {
        put(g_in, draft, largest);
        announce(largest);
    }
    EXPECT_NE(close(g_in, draft, INT64_MAX), "");
    EXPECT_EQ(in->number("SELECT count(*) FROM document"), 1);
    ledger_is_right();
}

TEST_P(documents_close, leaves_other_drafts_alone) {
    const auto kept = open(g_in, 7);
    put(g_in, kept, line(2));
    announce(line(2));
    EXPECT_EQ(close(g_in, ready(), 2500), "");
    EXPECT_NE(close(g_in, ready(), 1), "");
    EXPECT_EQ(close(g_in, kept, 500), "");
}

TEST_P(documents_close, drafts_that_never_come_to_it_are_swept_after_an_hour_and_nothing_else_is) {
    const auto stock = batch(10);
    const auto old = ready();
    const auto young = open(g_in, 7, g_now + 1);
    claim(boss, stock, 4);
    const auto sweep_at = [&](std::int64_t now) {
        in->write([&](store::connection& with) { sweep(with, now); });
    };
    sweep_at(g_now + 3599);
    EXPECT_EQ(in->number("SELECT count(*) FROM draft"), 2);
    sweep_at(g_now + 3600);
    EXPECT_EQ(in->number("SELECT count(*) FROM draft"), 1);
    EXPECT_EQ(in->number("SELECT count(*) FROM draft_line"), 0);
    EXPECT_THROW(close(g_in, old, 2500, g_now + 3600), refused);
    EXPECT_NO_THROW(put(g_in, young, line()));
    EXPECT_EQ(on_hand(stock), 10);
    EXPECT_EQ(claimed(stock), 4);
    EXPECT_EQ(in->number("SELECT count(*) FROM document"), 1);
    EXPECT_EQ(in->number("SELECT count(*) FROM document_line"), 1);
    ledger_is_right();
}

} // namespace
} // namespace tavrok::domain
