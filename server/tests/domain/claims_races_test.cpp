#include <atomic>

#include "domain/stock_scene.h"

namespace tavrok::domain {
namespace {

using store::claim_state;
using test::g_now;

constexpr std::int64_t g_over = 2 * 3600 + 60;

/** Two transactions on one stock row, step by step: the second begins when the first is done and not yet
 * committed. SQLite runs writes one after the other. */
class claims_races : public test::on_stock {
protected:
    void SetUp() override {
        on_stock::SetUp();
        if (!IsSkipped()) row = in->bring_in(10);
    }
    void TearDown() override {
        if (in) in->sound();
    }
    using work = std::function<void(store::connection&)>;

    /** Whether the second, which has to wait for the first, was refused. */
    bool second_refused(const work& first, const work& second) {
        const auto met = test::interleave(*in, first, second);
        EXPECT_TRUE(met.waited);
        if (!met.failure) return false;
        EXPECT_TRUE(test::is_refused([&] { std::rethrow_exception(met.failure); }));
        return true;
    }
    work claiming(const principal& who, std::int64_t amount, claim_use use = claim_use::outbound,
                  std::int64_t now = g_now) {
        return [this, who, amount, use, now](store::connection& with) {
            take_claim(with, who, {use, row, amount}, now);
        };
    }
    work holding(const principal& who) { return claiming(who, 0, claim_use::stocktaking); }
    /** Takes that out of the row; the draft stands before the two meet. Throws where it is dropped. */
    work saving(const principal& who, std::int64_t amount, const std::string& token = "",
                std::int64_t now = g_now) {
        const auto line = in->line_out(row, amount, token);
        const auto draft = in->draft(who, document_module::outbound, {line}, now);
        return [this, who, draft, total = line.total, now](store::connection& with) {
            close(with, who, document_module::outbound, draft, total, now);
        };
    }
    void close(store::connection& with, const principal& who, document_module module, std::int64_t draft,
               std::int64_t total, std::int64_t now = g_now) {
        const auto reason = close_draft(with, who, module, draft, total, now);
        if (!reason.empty()) throw refused(reason);
    }
    work sweeping(std::int64_t now) {
        return [now](store::connection& with) { sweep_claims(with, now); };
    }
    std::int64_t row{0};
};
INSTANTIATE_TEST_SUITE_P(engines, claims_races, testing::Values("postgresql", "postgresql_serializable"),
                         [](const auto& one) { return one.param; });

TEST_P(claims_races, two_claims_that_fit_each_and_not_together) {
    EXPECT_TRUE(second_refused(claiming(one, 7), claiming(two, 4)));
    EXPECT_EQ(in->claimed(row), 7);
    EXPECT_FALSE(second_refused(claiming(one, 1), claiming(two, 2)));
    EXPECT_EQ(in->claimed(row), 10);
}

TEST_P(claims_races, a_quantity_and_the_whole_row) {
    EXPECT_TRUE(second_refused(claiming(one, 1), holding(two)));
    EXPECT_EQ(in->row(row).holder, 0);
    EXPECT_TRUE(second_refused(claiming(one, 0), holding(two)));
}

TEST_P(claims_races, the_whole_row_and_a_quantity) {
    EXPECT_TRUE(second_refused(holding(one), claiming(two, 1)));
    EXPECT_TRUE(second_refused(holding(one), holding(two)));
    EXPECT_FALSE(second_refused(holding(one), claiming(one, 1)));
    EXPECT_EQ(in->row(row).holds, 3);
}

TEST_P(claims_races, a_claim_and_a_save) {
    EXPECT_TRUE(second_refused(claiming(one, 7), saving(two, 4)));
    EXPECT_EQ(in->on_hand(row), 10);
    EXPECT_FALSE(second_refused(claiming(one, 1), saving(two, 2)));
    EXPECT_EQ(in->on_hand(row), 8);
}

TEST_P(claims_races, a_save_and_a_claim) {
    EXPECT_TRUE(second_refused(saving(one, 7), claiming(two, 4)));
    EXPECT_FALSE(second_refused(saving(one, 1), claiming(two, 2)));
    EXPECT_EQ(in->on_hand(row), 2);
    EXPECT_EQ(in->claimed(row), 2);
}

TEST_P(claims_races, two_saves_of_the_last_goods) {
    EXPECT_TRUE(second_refused(saving(one, 6), saving(two, 6)));
    EXPECT_EQ(in->on_hand(row), 4);
}

TEST_P(claims_races, two_saves_with_one_claim) {
    const auto token = in->claim(one, row, 6);
    const auto first = saving(one, 6, token);
    const auto second = saving(one, 6, token);
    EXPECT_TRUE(second_refused(first, second));
    EXPECT_EQ(in->on_hand(row), 4);
    EXPECT_EQ(in->claims_in(claim_state::used), 1);
}

TEST_P(claims_races, a_save_and_its_claim_given_back) {
    const auto token = in->claim(one, row, 6);
    const work giving = [&](store::connection& with) { give_back_claim(with, one, token, g_now); };
    EXPECT_FALSE(second_refused(saving(one, 6, token), giving));
    EXPECT_EQ(in->claims_in(claim_state::used), 1);
    const auto other = in->claim(one, row, 4);
    const work giving_other = [&](store::connection& with) { give_back_claim(with, one, other, g_now); };
    EXPECT_FALSE(second_refused(giving_other, saving(one, 4, other))) << "it is free again";
    EXPECT_EQ(in->claims_in(claim_state::given_back), 1);
    EXPECT_EQ(in->on_hand(row), 0);
}

TEST_P(claims_races, a_claim_given_back_twice) {
    const auto token = in->claim(one, row, 6);
    const work giving = [&](store::connection& with) { give_back_claim(with, one, token, g_now); };
    EXPECT_FALSE(second_refused(giving, giving));
    EXPECT_EQ(in->claimed(row), 0);
}

TEST_P(claims_races, a_lapse_and_a_save) {
    const auto token = in->claim(two, row, 6);
    in->claim(in->log_in(in->boss, g_now + g_over), row, 4, g_now + g_over);
    EXPECT_FALSE(second_refused(sweeping(g_now + g_over), saving(two, 6, token)));
    EXPECT_EQ(in->claims_in(claim_state::lapsed), 1);
    EXPECT_EQ(in->claims_in(claim_state::used), 0);
    EXPECT_EQ(in->on_hand(row), 4);
}

TEST_P(claims_races, a_save_and_a_lapse) {
    const auto token = in->claim(one, row, 6);
    EXPECT_FALSE(second_refused(saving(one, 6, token), sweeping(g_now + g_over)));
    EXPECT_EQ(in->claims_in(claim_state::used), 1);
    EXPECT_EQ(in->claimed(row), 0);
}

TEST_P(claims_races, two_lapses) {
    in->claim(two, row, 6);
    const auto now = g_now + g_over;
    const auto there = in->log_in(in->boss, now);
    EXPECT_FALSE(second_refused(sweeping(now), claiming(there, 10, claim_use::outbound, now)));
    EXPECT_EQ(in->claims_in(claim_state::lapsed), 1);
    EXPECT_EQ(in->claimed(row), 10);
}

TEST_P(claims_races, a_lapse_and_the_return_of_the_user) {
    in->claim(two, row, 6);
    const auto now = g_now + g_over;
    const work returning = [&](store::connection& with) { come_back(with, two, now); };
    EXPECT_FALSE(second_refused(sweeping(now), returning));
    EXPECT_EQ(in->claimed(row), 0);
    EXPECT_EQ(in->claims_in(claim_state::lapsed), 1);
}

TEST_P(claims_races, a_return_of_the_user_in_two_sessions) {
    in->claim(two, row, 6);
    const auto beside = in->log_in({in->company, two.user}, g_now);
    const auto now = g_now + g_over;
    const work first = [&](store::connection& with) {
        come_back(with, two, now);
        take_claim(with, two, {claim_use::outbound, row, 9}, now);
    };
    EXPECT_FALSE(second_refused(first, [&](store::connection& with) { come_back(with, beside, now); }));
    EXPECT_EQ(in->claimed(row), 9) << "what he claimed after his return is none of what lapsed";
}

TEST_P(claims_races, a_save_and_the_end_of_the_inbound_document) {
    const auto document = in->number("SELECT max(id) FROM document");
    const work removing = [&](store::connection& with) {
        remove_document(with, one, document_module::inbound, document, g_now);
    };
    EXPECT_TRUE(second_refused(saving(two, 1), removing));
    EXPECT_TRUE(second_refused(claiming(two, 1), removing));
    EXPECT_EQ(in->on_hand(row), 9);
}

TEST_P(claims_races, the_end_of_the_inbound_document_and_a_save_or_a_claim) {
    const auto document = in->number("SELECT max(id) FROM document");
    const work removing = [&](store::connection& with) {
        remove_document(with, one, document_module::inbound, document, g_now);
    };
    EXPECT_TRUE(second_refused(removing, saving(two, 1)));
    EXPECT_EQ(in->on_hand(row), 0);
    EXPECT_FALSE(in->claims(two, row, 1));
}

TEST_P(claims_races, a_document_that_is_deleted_twice) {
    const auto document = in->number("SELECT max(id) FROM document");
    const work removing = [&](store::connection& with) {
        remove_document(with, one, document_module::inbound, document, g_now);
    };
    EXPECT_TRUE(second_refused(removing, removing));
    EXPECT_EQ(in->number("SELECT count(*) FROM movement"), 2);
}

TEST_P(claims_races, a_draft_that_is_closed_twice) {
    const auto save = saving(one, 4);
    EXPECT_TRUE(second_refused(save, save));
    EXPECT_EQ(in->on_hand(row), 6);
}

TEST_P(claims_races, numbers_follow_each_other) {
    EXPECT_FALSE(second_refused(saving(one, 1), saving(two, 1)));
    EXPECT_TRUE(second_refused(saving(one, 8), saving(two, 1)));
    EXPECT_EQ(in->number("SELECT last FROM document_number WHERE kind = 'QC'"), 3);
    EXPECT_EQ(in->number("SELECT count(DISTINCT sn) FROM document WHERE module = 2"), 3);
}

/** Rows are taken in the order of their ids: a closing call that waits for the first of its rows has none of
 * the others yet. */
TEST_P(claims_races, lines_in_opposite_orders_take_the_rows_in_one) {
    const auto other = in->bring_in(10);
    const std::vector<document_line> lines{in->line_out(other, 1), in->line_out(row, 1)};
    const auto draft = in->draft(two, document_module::outbound, lines);
    std::atomic<int> runs{0};
    const auto met = test::interleave(
        *in,
        [&](store::connection& with) {
            ++runs;
            store::hold_stock(with, in->company, row);
        },
        [&](store::connection& with) {
            ++runs;
            close(with, two, document_module::outbound, draft, test::total_of(lines));
        },
        [&](store::connection& with) { store::hold_stock(with, in->company, other); });
    EXPECT_TRUE(met.waited);
    EXPECT_FALSE(GetParam() == "postgresql" && met.failure);
    if (GetParam() == "postgresql") {
        EXPECT_EQ(runs, 2) << "no deadlock had to be broken";
    }
    EXPECT_EQ(in->on_hand(row), 9);
    EXPECT_EQ(in->on_hand(other), 9);
}

} // namespace
} // namespace tavrok::domain
