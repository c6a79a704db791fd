#include <gtest/gtest.h>

#include <atomic>

#include "stock_race.h"

namespace tavrok::test {

namespace {

/** What all clients together were told. */
struct books {
    std::atomic<int> moved{0};     /**< what lies in the second warehouse */
    std::atomic<int> sold{0};      /**< what went out */
    std::atomic<int> transfers{0}; /**< documents, deleted ones among them */
    std::atomic<int> deleted{0};
    std::atomic<int> sales{0};
};

/** One client, who moves and sells out of the row until nothing is free in it. */
class mover {
public:
    mover(stock_race::client& one, const std::string& row, books& told)
        : m_one(one), m_row(row), m_told(told) {}

    void work() {
        while (true) {
            const bool sells = below(2) == 0;
            const auto use = sells ? claim_for::outbound : claim_for::transfer;
            int amount = 2 + below(8);
            if (!sells && below(4) == 0 && move(amount, "") > 0) continue;
            auto token = claim(m_one.by, use, m_row, amount);
            if (token == "0") token = claim(m_one.by, use, m_row, amount = 1);
            if (token == "0") return;
            if (m_given_back < 3 && below(6) == 0) {
                ++m_given_back;
                give_back(m_one.by, use, token);
            } else if (sells) {
                sell(m_one.by, m_row, amount, token);
                m_told.sold += amount;
                ++m_told.sales;
            } else {
                EXPECT_GE(move(amount, token), amount) << "what is claimed can be moved";
            }
        }
    }

    /** A transfer of so many, by a claim or of what is free, now and then with one more of what is free;
     * gives how many went. A few are deleted at once, so that the goods come back. */
    int move(int amount, const std::string& token) {
        const auto remark = "c" + std::to_string(m_one.number) + "n" + std::to_string(++m_words) + "x";
        const auto draft =
            m_one.by.added("wms_stock_allot/do_add", m_one.by.transfer_header() + "&remark=" + remark);
        int moved = line(draft, amount, token, "one");
        if (below(3) == 0) moved += line(draft, 1, "", "more");
        if (moved == 0) return 0;
        ++m_told.transfers;
        if (m_deleted < 2 && below(6) == 0) {
            ++m_deleted;
            ++m_told.deleted;
            const auto page = m_one.by.page("wms_stock_allot/get_page", "remark=" + remark);
            const std::string id(page.at("list").at(0).at("id").as_string());
            EXPECT_EQ(m_one.by.ask("wms_stock_allot/do_delete", "id=" + id), "1");
        } else {
            m_told.moved += moved;
        }
        return moved;
    }

private:
    int line(const std::string& draft, int amount, const std::string& token, const std::string& remark) {
        const auto body =
            m_one.by.moved(m_row, std::to_string(amount), "2.50", total_of(amount), token, remark);
        return m_one.by.ask("wms_stock_allot_detail/do_add", "main_id=" + draft + body) == "1" ? amount : 0;
    }
    int below(unsigned end) { return static_cast<int>(m_one.chance() % end); }

    stock_race::client& m_one;
    const std::string& m_row;
    books& m_told;
    int m_words{0};
    int m_given_back{0};
    int m_deleted{0};
};

/** All clients move out of one row and sell from it meanwhile. */
void race(stock_race& on) {
    books told;
    on.all([&](stock_race::client& one) { mover(one, on.row(), told).work(); });
    EXPECT_LE(told.moved + told.sold, stock_race::on_hand);
    EXPECT_GT(told.moved + told.sold, stock_race::on_hand / 2);
    if (const int left = stock_race::on_hand - told.moved - told.sold; left > 0) {
        const auto token = claim(on.goods(), claim_for::outbound, on.row(), left);
        ASSERT_NE(token, "0") << "what is left is free: " << left;
        sell(on.goods(), on.row(), left, token);
        told.sold += left;
        ++told.sales;
    }
    for (const auto use : {claim_for::transfer, claim_for::outbound})
        EXPECT_EQ(claim(on.goods(), use, on.row(), 1), "0");
    const auto second = on.goods().second_warehouse;
    on.finish();
    EXPECT_GT(told.transfers, 0);
    EXPECT_GT(told.deleted, 0);
    EXPECT_GT(told.sold, 0);
    EXPECT_EQ(on.number("SELECT CAST(sum(on_hand) AS BIGINT) FROM stock WHERE warehouse = " + second),
              told.moved);
    EXPECT_EQ(on.number("SELECT CAST(sum(on_hand) AS BIGINT) FROM stock"), stock_race::on_hand - told.sold);
    EXPECT_EQ(on.number("SELECT count(*) FROM document WHERE module = 4"), told.transfers);
    EXPECT_EQ(on.number("SELECT count(*) FROM document WHERE module = 4 AND state = 2"), told.deleted);
    EXPECT_EQ(on.number("SELECT count(*) FROM document WHERE module = 2"), told.sales);
    EXPECT_EQ(on.number("SELECT CAST(sum(last) AS BIGINT) FROM document_number WHERE kind = 'DB'"),
              told.transfers);
}

class transfer_race : public testing::TestWithParam<std::string> {
protected:
    void SetUp() override { SKIP_WITHOUT(GetParam()); }
};

} // namespace

TEST_P(transfer_race, many_clients_move_and_sell_what_was_in_the_row_and_no_more) {
    stock_race on(GetParam(), 1);
    race(on);
}

TEST(transfer_race_postgresql, nor_do_they_get_more_through_two_services) {
    SKIP_WITHOUT("postgresql");
    stock_race on("postgresql", 2);
    race(on);
}

INSTANTIATE_TEST_SUITE_P(engine, transfer_race, testing::ValuesIn(engines()),
                         [](const auto& chosen) { return chosen.param; });

} // namespace tavrok::test
