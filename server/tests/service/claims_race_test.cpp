#include <gtest/gtest.h>

#include <atomic>

#include "stock_race.h"

namespace tavrok::test {

namespace {

/** Claims and takes what it gets until nothing is free; gives how much it took. */
int take_all(stock_race::client& one, const std::string& stock) {
    int taken = 0;
    for (int given_back = 0;;) {
        int amount = 2 + static_cast<int>(one.chance() % 8);
        auto token = claim(one.by, claim_for::outbound, stock, amount);
        if (token == "0") token = claim(one.by, claim_for::outbound, stock, amount = 1);
        if (token == "0") return taken;
        if (given_back < 3 && one.chance() % 4 == 0) {
            ++given_back;
            give_back(one.by, claim_for::outbound, token);
            continue;
        }
        sell(one.by, stock, amount, token);
        taken += amount;
        if (one.chance() % 8 == 0) {
            const auto draft = one.by.inbound_draft("1", "2.50", "2.50");
            EXPECT_EQ(one.by.ask("wms_instore/update_total", "id=" + draft + "&total=2.50"), "1");
        }
    }
}

/** All clients on one row; nobody gets what another has. */
void race(stock_race& on) {
    std::atomic<int> sum{0};
    on.all([&](stock_race::client& one) { sum += take_all(one, on.row()); });
    EXPECT_LE(sum, stock_race::on_hand);
    EXPECT_GT(sum, stock_race::on_hand / 2);
    if (const int left = stock_race::on_hand - sum; left > 0) {
        const auto token = claim(on.goods(), claim_for::outbound, on.row(), left);
        ASSERT_NE(token, "0") << "what is left is free: " << left;
        sell(on.goods(), on.row(), left, token);
    }
    EXPECT_EQ(claim(on.goods(), claim_for::outbound, on.row(), 1), "0");
    on.finish();
}

/** The same bytes to two services, which meet: both have looked whether the request is a repeat before either
 * can keep its answer. Both answers must be the same. */
class two_doors {
public:
    two_doors(scratch_database& database, unsigned short one, unsigned short other, const std::string& cookie)
        : m_database(database), m_one(one, cookie), m_other(other, cookie) {}
    std::string ask(const std::string& path, const std::string& body) {
        store::write_now(*m_database, [&](store::connection& with) {
            with.execute({"", "LOCK TABLE repeat_record IN EXCLUSIVE MODE"}, {});
            EXPECT_TRUE(m_one.send(path, body) && m_other.send(path, body));
            EXPECT_TRUE(both_wait(with)) << path << " " << body;
        });
        const auto one = m_one.read().value_or("no answer");
        const auto other = m_other.read().value_or("no answer");
        EXPECT_EQ(one, other) << path << " " << body;
        return one;
    }

private:
    /** Two that wait for a lock, beside the small writes about answers that arrived. */
    static bool both_wait(store::connection& with) {
        const auto until = std::chrono::steady_clock::now() + patience;
        std::int64_t waiting = 0;
        while (waiting < 2 && std::chrono::steady_clock::now() < until) {
            // The figures of a transaction stand still unless they are asked for anew.
            with.query({"", "SELECT pg_stat_clear_snapshot()"}, {}, [](const store::row&) {});
            with.query({"",
                        "SELECT count(*) FROM pg_stat_activity WHERE datname = current_database() AND "
                        "wait_event_type = 'Lock' AND query NOT LIKE '%SET delivered = 1%'"},
                       {}, [&](const store::row& one) { waiting = one.integer(0); });
        }
        return waiting >= 2;
    }

    scratch_database& m_database;
    wire m_one;
    wire m_other;
};

std::string first_of(const boost::json::value& page) {
    return std::string(page.at("list").at(0).at("id").as_string());
}

/** Finds one more than there were in the row, which is all free; then moves one away and back. */
void count_and_move(stock_control_world& both, stock_control_world& goods, const std::string& stock,
                    int round) {
    const auto remark = "r" + std::to_string(round);
    const auto people = "&operater=" + both.employee + "&writer=&remark=" + remark;
    const auto taking = both.added("wms_stock_taking/do_add", people);
    const auto hold = claim(both, claim_for::taking, stock, 0);
    EXPECT_EQ(
        both.ask("wms_stock_taking_detail/do_add",
                 "main_id=" + taking + both.counted(stock, round, round + 1, "2.50", "2.00", hold, remark)),
        "1");
    EXPECT_EQ(both.ask("wms_stock_taking/update_profitloss",
                       "id=" + taking + "&profitloss_amount=1&profitloss_total=2.00"),
              "1");
    const auto transfer =
        both.added("wms_stock_allot/do_add", both.transfer_header() + "&writer=&remark=" + remark);
    const auto part = claim(both, claim_for::transfer, stock, 1);
    EXPECT_EQ(both.ask("wms_stock_allot_detail/do_add",
                       "main_id=" + transfer + both.moved(stock, "1", "2.50", "2.50", part, remark)),
              "1");
    const auto document = first_of(goods.page("wms_stock_allot/get_page", "remark=" + remark));
    EXPECT_EQ(both.ask("wms_stock_allot/do_delete", "id=" + document), "1");
}

class claims_race : public testing::TestWithParam<std::string> {
protected:
    void SetUp() override { SKIP_WITHOUT(GetParam()); }
};

} // namespace

TEST_P(claims_race, many_clients_get_what_was_in_the_row_and_no_more) {
    stock_race on(GetParam(), 1);
    race(on);
}

TEST(claims_race_postgresql, nor_do_they_through_two_services) {
    SKIP_WITHOUT("postgresql");
    stock_race on("postgresql", 2);
    race(on);
    EXPECT_GE(on.number("SELECT count(*) FROM document WHERE module = 1"), 2);
}

TEST(claims_race_postgresql, the_same_bytes_through_two_services_at_once_take_effect_once) {
    SKIP_WITHOUT("postgresql");
    constexpr int rounds = 10;
    documents_site site("postgresql", 1);
    const auto one = site.start();
    const auto other = site.start();
    const auto& who = site.actors().front();
    auto goods = site.furnish(one->port());
    goods.stock("1000", "2.50", "2500.00");
    two_doors doors(site.database(), one->port(), other->port(), who.cookie);
    auto both =
        goods.by([&](const std::string& path, const std::string& body) { return doors.ask(path, body); });
    for (int round = 1; round <= rounds && !testing::Test::HasFailure(); ++round) {
        // No bytes twice, since these would be repeats as well.
        const auto amount = std::to_string(round);
        const auto total = total_of(round);
        const auto line = goods.line(amount, "2.50", total, "r" + amount);
        const auto inbound = both.added("wms_instore/do_add", goods.inbound_header(1) + "&remark=r" + amount);
        EXPECT_EQ(both.ask("wms_instore_detail/do_add", "main_id=" + inbound + "&" + line + "&place=A-1"),
                  "1");
        EXPECT_EQ(both.ask("wms_stock_detail/do_add", line + "&place=A-1"), "1");
        EXPECT_EQ(both.ask("wms_instore/update_total", "id=" + inbound + "&total=" + total), "1");
        const auto stock = first_of(goods.page("wms_stock_detail/get_page", ""));
        const auto token = claim(both, claim_for::outbound, stock, round);
        const auto idle =
            both.ask("wms_stock_detail/lock_stock", "lock_type=3&id=1001&amount=1&total=" + amount);
        EXPECT_EQ(both.ask("wms_stock_detail/unlock_stock", "locked_id=" + idle + "&lock_type=3"), "1");
        const auto outbound = both.added("wms_outstore/do_add", goods.outbound_header(2) + "r" + amount);
        EXPECT_EQ(both.ask("wms_outstore_detail/do_add", "main_id=" + outbound + "&" + line + "&stock_id=" +
                                                             stock + "&place=A-1&locked_id=" + token),
                  "1");
        EXPECT_EQ(both.ask("wms_outstore/update_total", "id=" + outbound + "&total=" + total), "1");
        const auto document = first_of(goods.page("wms_outstore/get_page", "outstore_type=2"));
        EXPECT_EQ(both.ask("wms_outstore/do_delete", "id=" + document), "1");
        count_and_move(both, goods, stock, round);
        both.added("wms_company/do_add", "type=2&name=乙" + amount + "&phone=1&address=路");
    }
    site.database().close();
    EXPECT_EQ(one->stop(), 0);
    EXPECT_EQ(other->stop(), 0);
    EXPECT_EQ(site.faults(), "");
    auto& found = *site.database();
    EXPECT_EQ(number_in(found, "SELECT count(*) FROM document WHERE module = 1"), rounds + 1);
    EXPECT_EQ(number_in(found, "SELECT count(*) FROM document WHERE module = 2 AND state = 2"), rounds);
    EXPECT_EQ(number_in(found, "SELECT count(*) FROM document WHERE module = 3 AND state = 1"), rounds);
    EXPECT_EQ(number_in(found, "SELECT count(*) FROM document WHERE module = 4 AND state = 2"), rounds);
    EXPECT_EQ(number_in(found, "SELECT count(*) FROM document"), 4 * rounds + 1);
    EXPECT_EQ(number_in(found, "SELECT count(*) FROM document_line"), 4 * rounds + 1);
    EXPECT_EQ(number_in(found, "SELECT count(*) FROM claim WHERE state = 2"), 3 * rounds);
    EXPECT_EQ(number_in(found, "SELECT count(*) FROM claim"), 4 * rounds);
    EXPECT_EQ(number_in(found, "SELECT count(*) FROM draft WHERE document IS NULL"), 0);
    EXPECT_EQ(number_in(found, "SELECT count(*) FROM partner"), rounds + 3);
}

INSTANTIATE_TEST_SUITE_P(engine, claims_race, testing::ValuesIn(engines()),
                         [](const auto& chosen) { return chosen.param; });

} // namespace tavrok::test
