#include <gtest/gtest.h>

#include <atomic>

#include "stock_race.h"

namespace tavrok::test {

namespace {

constexpr auto g_parts = {claim_for::transfer, claim_for::outbound};

/** Who holds the row and who claims of it, as the clients were told: counted up after the answer that gives,
 * and down before the request that ends it, so that what it shows is so. */
struct ring {
    std::atomic<int> holders{0};
    std::atomic<int> claimers{0};
    std::atomic<int> takings{0};
    std::atomic<int> sales{0};
    std::atomic<int> changed{0}; /**< what the stocktakings came to */
    std::atomic<int> sold{0};
};

std::string money_of(int difference) {
    return std::to_string(difference * 250 / 100) + ".00";
}

std::string close_taking(stock_control_world& by, const std::string& draft, int difference) {
    return by.ask("wms_stock_taking/update_profitloss",
                  "id=" + draft + "&profitloss_amount=" + std::to_string(difference) +
                      "&profitloss_total=" + money_of(difference));
}

/** What the list shows of a row: on hand less claims by quantity. */
int shown(stock_control_world& by, const std::string& row) {
    const auto page = by.page("wms_stock_detail/get_page", "");
    for (const auto& one : page.at("list").as_array())
        if (one.at("id").as_string() == row.c_str()) return std::stoi(one.at("amount").as_string().c_str());
    ADD_FAILURE() << "row " << row << " is not listed";
    return 0;
}

/** Counts the row that the client holds. */
void count(stock_race::client& one, const std::string& row, const std::string& token, ring& told) {
    EXPECT_EQ(++told.holders, 1) << "two hold the row";
    EXPECT_EQ(told.claimers, 0) << "the row is held and claimed";
    const int held = shown(one.by, row);
    const int difference = (one.chance() % 2 == 0 ? 1 : -1) * (1 + static_cast<int>(one.chance() % 4));
    const auto draft = one.by.taking_draft(
        one.by.counted(row, held, held + difference, "2.50", money_of(difference), token));
    EXPECT_EQ(told.holders, 1) << "two hold the row";
    EXPECT_EQ(told.claimers, 0) << "the row is held and claimed";
    EXPECT_EQ(shown(one.by, row), held) << "somebody changed a row that is held";
    --told.holders;
    EXPECT_EQ(close_taking(one.by, draft, difference), "1");
    told.changed += difference;
    ++told.takings;
}

void take_part(stock_race::client& one, const std::string& row, ring& told) {
    const int amount = 1 + static_cast<int>(one.chance() % 4);
    const auto token = claim(one.by, claim_for::outbound, row, amount);
    if (token == "0") return;
    ++told.claimers;
    EXPECT_EQ(told.holders, 0) << "the row is held and claimed";
    const bool sells = one.chance() % 2 == 0;
    --told.claimers;
    if (!sells) return give_back(one.by, claim_for::outbound, token);
    sell(one.by, row, amount, token);
    told.sold += amount;
    ++told.sales;
}

/** The clients hold, count, claim and sell until each has happened often enough. Few of them claim at a time:
 * a row that is never free of claims is never held. */
void race(stock_race& on) {
    constexpr int enough = 12;
    ring told;
    const auto until = std::chrono::steady_clock::now() + patience;
    on.all([&](stock_race::client& one) {
        while ((told.takings < enough || told.sales < enough) && std::chrono::steady_clock::now() < until) {
            if (one.chance() % 16 == 0) {
                take_part(one, on.row(), told);
            } else if (const auto token = claim(one.by, claim_for::taking, on.row(), 0); token != "0") {
                count(one, on.row(), token, told);
            }
        }
    });
    EXPECT_GE(told.takings, enough);
    EXPECT_GE(told.sales, enough);
    on.finish();
    EXPECT_EQ(on.number("SELECT on_hand FROM stock"), stock_race::on_hand + told.changed - told.sold);
    EXPECT_EQ(on.number("SELECT count(*) FROM document WHERE module = 3"), told.takings);
    EXPECT_EQ(on.number("SELECT CAST(sum(last) AS BIGINT) FROM document_number WHERE kind = 'PD'"),
              told.takings);
}

/** One holds the row; whatever the others try meanwhile is refused, and what he counted is what there is. */
void hold_against_all(stock_race& on) {
    constexpr int difference = -25;
    const auto& row = on.row();
    const auto token = claim(on.goods(), claim_for::taking, row, 0);
    ASSERT_NE(token, "0");
    std::string draft;
    std::atomic<int> refused{0};
    on.all([&](stock_race::client& one) {
        if (one.number == 0) { // the one who holds it
            draft =
                one.by.taking_draft(one.by.counted(row, stock_race::on_hand, stock_race::on_hand + difference,
                                                   "2.50", money_of(difference), token));
            return;
        }
        for (const auto use : {claim_for::transfer, claim_for::taking, claim_for::outbound})
            if (claim(one.by, use, row, 1) == "0") ++refused;
        const auto sale = one.by.outbound_draft(row, "1", "2.50", "2.50", "");
        if (one.by.ask("wms_outstore/update_total", "id=" + sale + "&total=2.50") == "0") ++refused;
        const auto transfer = one.by.added("wms_stock_allot/do_add", one.by.transfer_header());
        const auto line = "main_id=" + transfer + one.by.moved(row, "1", "2.50", "2.50");
        if (one.by.ask("wms_stock_allot_detail/do_add", line) == "0") ++refused;
    });
    EXPECT_EQ(refused, 5 * (stock_race::clients - 1));
    EXPECT_EQ(close_taking(on.goods(), draft, difference), "1");
    on.all([&](stock_race::client& one) {
        for (const auto use : g_parts)
            EXPECT_NE(claim(one.by, use, row, 1), "0") << "the row is held no longer";
    });
    EXPECT_EQ(shown(on.goods(), row), stock_race::on_hand + difference - 2 * stock_race::clients);
    on.finish();
}

/** All would hold it, nobody gives back. */
void hold_at_once(stock_race& on) {
    std::atomic<int> holders{0};
    on.all([&](stock_race::client& one) {
        if (claim(one.by, claim_for::taking, on.row(), 0) != "0") ++holders;
    });
    EXPECT_EQ(holders, 1);
    on.finish();
}

class taking_race : public testing::TestWithParam<std::string> {
protected:
    void SetUp() override { SKIP_WITHOUT(GetParam()); }
};

class taking_race_postgresql : public testing::Test {
protected:
    void SetUp() override { SKIP_WITHOUT("postgresql"); }
};

} // namespace

TEST_P(taking_race, who_holds_a_row_has_it_alone_however_many_claim) {
    stock_race on(GetParam(), 1);
    race(on);
}

TEST_P(taking_race, nothing_is_got_out_of_a_row_that_is_held) {
    stock_race on(GetParam(), 1);
    hold_against_all(on);
}

TEST_P(taking_race, of_many_who_would_hold_a_row_one_does) {
    stock_race on(GetParam(), 1);
    hold_at_once(on);
}

TEST_F(taking_race_postgresql, who_holds_a_row_has_it_alone_through_two_services) {
    stock_race on("postgresql", 2);
    race(on);
}

TEST_F(taking_race_postgresql, nothing_is_got_out_of_a_row_that_is_held_through_two_services) {
    stock_race on("postgresql", 2);
    hold_against_all(on);
}

TEST_F(taking_race_postgresql, of_many_who_would_hold_a_row_through_two_services_one_does) {
    stock_race on("postgresql", 2);
    hold_at_once(on);
}

INSTANTIATE_TEST_SUITE_P(engine, taking_race, testing::ValuesIn(engines()),
                         [](const auto& chosen) { return chosen.param; });

} // namespace tavrok::test
