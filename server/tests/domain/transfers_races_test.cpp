#include "domain/counts_scene.h"
#include "domain/interleave.h"
#include "domain/warehouses.h"

namespace tavrok::domain {
namespace {

using test::g_now;
using test::g_out;
using test::g_taking;
using test::g_transfer;

/** Two transactions about a count or a move, step by step: the second begins when the first is done and not
 * yet committed, and has to wait for it. */
class transfers_races : public test::counts_test {
protected:
    void SetUp() override {
        counts_test::SetUp();
        if (IsSkipped()) return;
        stock = batch(10);
        hand = in->log_in(in->boss);
    }
    void TearDown() override {
        if (in) ledger_is_right();
    }
    using work = std::function<void(store::connection&)>;

    bool second_refused(const work& first, const work& second) {
        const auto met = test::interleave(*in, first, second);
        EXPECT_TRUE(met.waited);
        return test::is_refused([&] {
            if (met.failure) std::rethrow_exception(met.failure);
        });
    }
    work moving(const principal& who, std::int64_t draft, std::int64_t amount) {
        return [=, this, line = moved(stock, amount)](store::connection& with) {
            add_transfer_line(with, who, draft, line, g_now);
        };
    }
    work moving(const principal& who, std::int64_t amount) {
        return moving(who, open(who, g_transfer, transfer_header()), amount);
    }
    work saving_count(const principal& who, std::int64_t sys, std::int64_t real) {
        const auto line = counted(stock, sys, real);
        const auto draft = counting(who, {line});
        return [=](store::connection& with) {
            const auto reason =
                close_taking(with, who, draft, document_sums{line.what.total, line.what.amount}, g_now);
            if (!reason.empty()) throw refused(reason);
        };
    }
    work saving_outbound(std::int64_t amount) {
        const auto draft = open(g_out, 6);
        const auto line = from(stock, amount);
        documents_test::put(g_out, draft, line);
        return [=, this](store::connection& with) {
            const auto reason = close_draft(with, boss, g_out, draft, line.total, g_now);
            if (!reason.empty()) throw refused(reason);
        };
    }
    work deleting(document_module module, std::int64_t id) {
        return [=, this](store::connection& with) { remove_document(with, boss, module, id, g_now); };
    }
    work closing(std::int64_t warehouse) {
        return [=, this](store::connection& with) { remove_warehouse(with, boss, warehouse, g_now); };
    }

    std::int64_t stock{0};
    domain::principal hand; /**< the administrator in another session */
};
INSTANTIATE_TEST_SUITE_P(engines, transfers_races, testing::Values("postgresql", "postgresql_serializable"),
                         [](const auto& one) { return one.param; });

TEST_P(transfers_races, two_transfers_that_fit_each_and_not_together) {
    EXPECT_TRUE(second_refused(moving(boss, 7), moving(hand, 4)));
    EXPECT_EQ(on_hand(stock), 3);
    EXPECT_FALSE(second_refused(moving(boss, 1), moving(hand, 2)));
    EXPECT_EQ(on_hand(stock), 0);
    EXPECT_EQ(documents(g_transfer, {.type = 1}).total, 3);
}

TEST_P(transfers_races, two_lines_of_one_draft_are_one_document) {
    const auto draft = open(g_transfer, transfer_header());
    EXPECT_FALSE(second_refused(moving(boss, draft, 1), moving(boss, draft, 2)));
    EXPECT_EQ(documents(g_transfer, {.type = 1}).total, 1);
    EXPECT_EQ(lines_of(g_transfer, newest_document()).size(), 2U);
}

TEST_P(transfers_races, a_further_line_of_a_transfer_that_is_deleted) {
    const auto draft = open(g_transfer, transfer_header());
    move(draft, moved(stock, 1));
    const auto id = newest_document();
    EXPECT_TRUE(second_refused(deleting(g_transfer, id), moving(boss, draft, 2)));
    EXPECT_EQ(on_hand(stock), 10);
}

TEST_P(transfers_races, a_deletion_that_meets_a_further_line_undoes_it_too) {
    const auto draft = open(g_transfer, transfer_header());
    move(draft, moved(stock, 1));
    const auto id = newest_document();
    EXPECT_FALSE(second_refused(moving(boss, draft, 2), deleting(g_transfer, id)));
    EXPECT_EQ(on_hand(stock), 10);
    EXPECT_EQ(documents(g_transfer, {.type = 1}).total, 0);
}

TEST_P(transfers_races, goods_on_their_way_to_a_warehouse_that_is_closed) {
    EXPECT_TRUE(second_refused(closing(us.second_warehouse), moving(boss, 4)));
    EXPECT_EQ(on_hand(stock), 10);
    EXPECT_EQ(rows(), 1);
}

TEST_P(transfers_races, a_warehouse_into_which_goods_have_come_stays_open) {
    EXPECT_TRUE(second_refused(moving(boss, 4), closing(us.second_warehouse)));
    EXPECT_EQ(on_hand(stock), 6);
}

TEST_P(transfers_races, goods_that_go_back_to_a_warehouse_that_is_closed) {
    const auto id = transfer({moved(stock, 10)});
    EXPECT_TRUE(second_refused(closing(us.warehouse), deleting(g_transfer, id)));
    EXPECT_EQ(on_hand(stock), 0);
}

TEST_P(transfers_races, a_count_and_goods_that_go_out) {
    EXPECT_TRUE(second_refused(saving_count(boss, 10, 2), saving_outbound(3)));
    EXPECT_EQ(on_hand(stock), 2);
    EXPECT_TRUE(second_refused(saving_outbound(1), saving_count(boss, 2, 0)));
    EXPECT_EQ(on_hand(stock), 1);
}

TEST_P(transfers_races, two_counts_of_one_row) {
    EXPECT_FALSE(second_refused(saving_count(boss, 10, 4), saving_count(hand, 10, 6)));
    EXPECT_EQ(on_hand(stock), 0);
    EXPECT_EQ(sn_of(newest_document()).substr(10), "-0002");
}

TEST_P(transfers_races, a_stocktaking_that_two_delete) {
    ASSERT_EQ(take_stock({counted(stock, 10, 14)}), "");
    const auto id = newest_document();
    EXPECT_TRUE(second_refused(deleting(g_taking, id), deleting(g_taking, id)));
    EXPECT_EQ(on_hand(stock), 10);
}

TEST_P(transfers_races, transfers_in_opposite_directions_do_not_deadlock) {
    const auto there = transfer({moved(stock, 5)});
    const auto row = in->number("SELECT max(id) FROM stock");
    auto back = transfer_header();
    std::swap(back.warehouse_out, back.warehouse_in);
    const auto draft = open(hand, g_transfer, back);
    const auto line = moved(row, 2);
    EXPECT_TRUE(
        second_refused([&](store::connection& with) { add_transfer_line(with, hand, draft, line, g_now); },
                       deleting(g_transfer, there)))
        << "the goods have left by then";
    EXPECT_EQ(on_hand(stock), 5);
    EXPECT_EQ(on_hand(row), 3);
}

} // namespace
} // namespace tavrok::domain
