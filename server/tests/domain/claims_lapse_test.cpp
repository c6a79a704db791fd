#include "domain/claims.h"
#include "domain/stock_scene.h"
#include "store/records/sessions.h"

namespace tavrok::domain {
namespace {

using store::claim_state;
using test::g_now;
using test::is_refused;

constexpr std::int64_t g_hour = 3600;
/** A last use is noted to the minute, so that is how much longer a claim may live. */
constexpr std::int64_t g_over = 2 * g_hour + 60;

class claims_lapse : public test::on_stock {
protected:
    void SetUp() override {
        on_stock::SetUp();
        if (!IsSkipped()) row = in->bring_in(10);
    }
    void TearDown() override {
        if (in) in->sound();
    }
    void use(const principal& who, std::int64_t now) {
        in->write([&](store::connection& with) { touch(with, in->again(who), now); });
    }
    void come(const principal& who, std::int64_t now) {
        const auto known = in->again(who);
        in->write([&](store::connection& with) { come_back(with, known, now); });
    }
    void end_access(const principal& who) {
        in->write([&](store::connection& with) { void_access(with, who.company, who.user); });
    }
    std::int64_t swept(std::int64_t now, std::int64_t most = 500) {
        return in->write([&](store::connection& with) { return sweep_claims(with, now, {}, most); });
    }
    /** Whether somebody who is there at that moment gets all of the row. */
    bool is_free(std::int64_t now) { return in->claims(in->log_in(in->boss, now), row, 10, now); }
    std::int64_t row{0};
};
ON_EVERY_ENGINE(claims_lapse);

TEST_P(claims_lapse, two_hours_after_the_last_request_and_not_before) {
    in->claim(two, row, 1);
    for (const auto early : {g_hour, 2 * g_hour, g_over - 1})
        EXPECT_FALSE(is_free(g_now + early)) << early;
    EXPECT_TRUE(is_free(g_now + g_over));
    EXPECT_EQ(in->claims_in(claim_state::lapsed), 1);
}

TEST_P(claims_lapse, not_while_requests_come) {
    in->claim(two, row, 1);
    for (int hour = 1; hour < 5; ++hour)
        use(two, g_now + hour * 2 * g_hour - 1);
    EXPECT_FALSE(is_free(g_now + 9 * g_hour));
    EXPECT_TRUE(is_free(g_now + 8 * g_hour - 1 + g_over));
}

TEST_P(claims_lapse, not_while_another_session_of_the_user_lives) {
    in->claim(two, row, 1);
    const auto beside = in->log_in({in->company, two.user}, g_now + g_hour);
    EXPECT_FALSE(is_free(g_now + g_over));
    come(two, g_now + g_over);
    EXPECT_EQ(in->claimed(row), 1) << "the user was not gone, only this session";
    in->write([&](store::connection& with) { void_access(with, beside.company, beside.user, two.session); });
    EXPECT_FALSE(is_free(g_now + g_over)) << "one session is left";
}

TEST_P(claims_lapse, when_all_sessions_have_ended) {
    in->claim(two, row, 1);
    in->claim(two, claim_use::stocktaking, row, 0);
    EXPECT_FALSE(is_free(g_now + 1));
    end_access(two);
    EXPECT_TRUE(is_free(g_now + 1));
    EXPECT_EQ(in->row(row).holder, 0);
}

TEST_P(claims_lapse, with_a_session_that_has_lived_as_long_as_it_may) {
    in->claim(two, row, 1);
    for (std::int64_t hour = 1; hour < 24; ++hour)
        use(two, g_now + hour * g_hour);
    EXPECT_FALSE(is_free(g_now + 24 * g_hour - 1));
    EXPECT_TRUE(is_free(g_now + 24 * g_hour));
}

TEST_P(claims_lapse, with_sessions_that_end_sooner_than_they) {
    session_limits limits;
    limits.idle = g_hour;
    in->claim(two, row, 10);
    const auto gets = [&](std::int64_t now) {
        const auto who = in->log_in(in->boss, now);
        return !is_refused([&] {
            in->write([&](store::connection& with) {
                take_claim(with, who, {claim_use::outbound, row, 1}, now, limits);
            });
        });
    };
    EXPECT_FALSE(gets(g_now + g_hour - 1));
    EXPECT_TRUE(gets(g_now + g_hour));
}

TEST_P(claims_lapse, and_hold_nothing_against_the_whole_row_either) {
    in->claim(two, row, 0);
    const auto now = g_now + g_over;
    const auto who = in->log_in(in->boss, now);
    EXPECT_NO_THROW(in->claim(who, claim_use::stocktaking, row, 0, now));
    EXPECT_EQ(in->row(row).holder, who.user);
}

TEST_P(claims_lapse, and_a_return_does_not_revive_them) {
    in->claim(two, row, 10);
    use(two, g_now + g_over);
    EXPECT_EQ(in->claimed(row), 0);
    EXPECT_EQ(in->claims_in(claim_state::lapsed), 1);
}

TEST_P(claims_lapse, and_a_new_login_does_not_revive_them) {
    in->claim(two, row, 10);
    in->log_in({in->company, two.user}, g_now + g_over);
    EXPECT_EQ(in->claimed(row), 0);

    const auto third = in->clerk("three");
    in->claim(third, row, 10);
    end_access(third);
    in->log_in({in->company, third.user}, g_now + 1);
    EXPECT_EQ(in->claimed(row), 0) << "between his sessions there was none";
}

TEST_P(claims_lapse, but_those_live_that_a_returned_user_takes) {
    const auto now = g_now + 3 * g_hour;
    in->claim(two, row, 4);
    come(two, now);
    in->claim(two, row, 10, now);
    use(two, now + 1);
    EXPECT_EQ(in->claimed(row), 10);
    EXPECT_EQ(swept(now + 1), 0);
    EXPECT_EQ(in->claims_in(claim_state::lapsed), 1);
}

TEST_P(claims_lapse, and_a_line_takes_from_what_is_free_then) {
    const auto now = g_now + g_over;
    const auto token = in->claim(two, row, 6);
    const auto who = in->log_in(in->boss, now);
    in->claim(who, row, 5, now);
    EXPECT_NE(in->take_out(two, {in->line_out(row, 6, token)}, now), "");
    EXPECT_EQ(in->take_out(two, {in->line_out(row, 5, token)}, now), "");
    EXPECT_EQ(in->on_hand(row), 5);
    EXPECT_EQ(in->claims_in(claim_state::used), 0);
    EXPECT_EQ(in->claims_in(claim_state::lapsed), 1);
}

TEST_P(claims_lapse, make_room_for_the_end_of_an_inbound_document) {
    in->claim(two, row, 1);
    const auto document = in->number("SELECT max(id) FROM document");
    const auto going = [&](std::int64_t now) {
        return !is_refused([&] {
            in->write([&](store::connection& with) {
                remove_document(with, one, document_module::inbound, document, now);
            });
        });
    };
    EXPECT_FALSE(going(g_now + g_over - 1));
    EXPECT_TRUE(going(g_now + g_over));
}

TEST_P(claims_lapse, are_swept_all_of_them_and_no_others) {
    std::vector<std::int64_t> rows{row};
    for (int i = 0; i < 4; ++i)
        rows.push_back(in->bring_in(10));
    for (const auto each : rows) {
        in->claim(two, each, 2);
        in->claim(two, each, 3);
        in->claim(one, each, 4);
    }
    const auto other = in->another("二号"); // without anything
    use(one, g_now + 2 * g_hour);
    EXPECT_EQ(swept(g_now + g_over - 1), 0);
    EXPECT_EQ(swept(g_now + g_over, 3), 3);
    EXPECT_EQ(in->claims_in(claim_state::lapsed), 6);
    EXPECT_EQ(in->claimed(rows[2]), 4);
    EXPECT_EQ(in->claimed(rows[3]), 9);
    in->write([&](store::connection& with) { sweep(with, g_now + g_over); });
    EXPECT_EQ(in->claims_in(claim_state::lapsed), 10);
    EXPECT_EQ(in->claims_in(claim_state::active), 5);
    EXPECT_EQ(swept(g_now + g_over), 0);
}

TEST_P(claims_lapse, rows_to_lapse_come_by_company_and_id_from_behind_any_of_them_on) {
    std::vector<std::int64_t> rows{row, in->bring_in(10), in->bring_in(10)};
    for (const auto each : rows)
        in->claim(two, each, 2);
    const auto found = [&](const store::stock_key& after, std::int64_t most) {
        std::vector<std::int64_t> ids;
        in->write([&](store::connection& with) {
            ids.clear();
            for (const auto& found_row : rows_to_lapse(with, g_now + g_over, {}, after, most))
                ids.push_back(found_row.stock);
        });
        return ids;
    };
    EXPECT_EQ(found({}, 500), rows);
    EXPECT_EQ(found({}, 2), (std::vector<std::int64_t>{rows[0], rows[1]}));
    EXPECT_EQ(found({in->company, rows[1]}, 2), std::vector<std::int64_t>{rows[2]});
    EXPECT_EQ(found({in->company - 1, rows[2]}, 500), rows);
    EXPECT_TRUE(found({in->company, rows[2]}, 500).empty());
}

} // namespace
} // namespace tavrok::domain
