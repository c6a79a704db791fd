#include "domain/sessions.h"

#include <set>

#include "domain/scene.h"

namespace tavrok::domain {
namespace {

using test::g_now;

class sessions : public test::on_engine {};
ON_EVERY_ENGINE(sessions);

std::string open(test::scene& in, const user_key& whom) {
    return in.write([&](store::connection& with) {
        return open_session(with, whom.company, whom.user, "192.0.2.1", g_now);
    });
}

std::optional<principal> at(test::scene& in, const std::string& token, std::int64_t now,
                            const session_limits& limits = {}) {
    return in.read([&](store::connection& with) { return resume(with, token, now, limits); });
}

TEST(tokens, are_256_random_bits) {
    std::set<std::string> seen;
    for (int i = 0; i < 100; ++i) {
        const auto token = new_token();
        EXPECT_EQ(token.size(), 64U);
        EXPECT_EQ(token.find_first_not_of("0123456789abcdef"), std::string::npos);
        seen.insert(token);
    }
    EXPECT_EQ(seen.size(), 100U);
    EXPECT_EQ(token_hash("abc"), "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
}

TEST_P(sessions, know_their_user) {
    test::scene in(GetParam());
    const auto who = at(in, open(in, in.boss), g_now);
    ASSERT_TRUE(who);
    EXPECT_EQ(who->company, in.company);
    EXPECT_EQ(who->user, in.boss.user);
    EXPECT_EQ(who->username, "boss");
    EXPECT_TRUE(who->administrator);
    EXPECT_TRUE(who->operator_company);
    EXPECT_TRUE(who->has("stock_taking", "print"));
    EXPECT_FALSE(at(in, "", g_now));
    EXPECT_FALSE(at(in, new_token(), g_now));
}

TEST_P(sessions, keep_no_token_in_the_database) {
    test::scene in(GetParam());
    const auto token = open(in, in.boss);
    EXPECT_EQ(in.number("SELECT count(*) FROM session WHERE token_hash = '" + token + "'"), 0);
    EXPECT_EQ(in.number("SELECT count(*) FROM session WHERE token_hash = '" + token_hash(token) + "'"), 1);
}

TEST_P(sessions, end_after_eight_idle_hours) {
    test::scene in(GetParam());
    const auto token = open(in, in.boss);
    EXPECT_TRUE(at(in, token, g_now + 8 * 3600 - 1));
    EXPECT_FALSE(at(in, token, g_now + 8 * 3600));
}

TEST_P(sessions, are_kept_alive_by_requests_for_a_day) {
    test::scene in(GetParam());
    const auto token = open(in, in.boss);
    for (std::int64_t hour = 6; hour < 24; hour += 6) {
        const auto who = at(in, token, g_now + hour * 3600);
        ASSERT_TRUE(who) << hour;
        EXPECT_TRUE(needs_touch(*who, g_now + hour * 3600));
        in.write([&](store::connection& with) { touch(with, *who, g_now + hour * 3600); });
    }
    EXPECT_TRUE(at(in, token, g_now + 24 * 3600 - 1));
    EXPECT_FALSE(at(in, token, g_now + 24 * 3600));
}

TEST_P(sessions, are_touched_once_a_minute_and_never_backwards) {
    test::scene in(GetParam());
    const auto token = open(in, in.boss);
    const auto who = at(in, token, g_now);
    EXPECT_FALSE(needs_touch(*who, g_now + 60));
    EXPECT_TRUE(needs_touch(*who, g_now + 61));
    in.write([&](store::connection& with) { touch(with, *who, g_now + 500); });
    in.write([&](store::connection& with) { touch(with, *who, g_now + 400); });
    EXPECT_EQ(at(in, token, g_now + 500)->last_used, g_now + 500);
}

TEST_P(sessions, obey_other_limits) {
    test::scene in(GetParam());
    const auto token = open(in, in.boss);
    const session_limits limits{10, 20, 20};
    EXPECT_TRUE(at(in, token, g_now + 9, limits));
    EXPECT_FALSE(at(in, token, g_now + 10, limits));
    const auto who = at(in, token, g_now + 9, limits);
    in.write([&](store::connection& with) { touch(with, *who, g_now + 15); });
    EXPECT_TRUE(at(in, token, g_now + 19, limits));
    EXPECT_FALSE(at(in, token, g_now + 20, limits));
}

TEST_P(sessions, carry_the_grants_of_an_ordinary_user_alone) {
    test::scene in(GetParam());
    in.write([&](store::connection& with) {
        for (const std::int64_t one : {400, 403, 40301})
            grant_row(with, in.hand, one, g_now);
    });
    const auto who = in.log_in(in.hand);
    EXPECT_FALSE(who.administrator);
    EXPECT_EQ(who.menu_rows, (std::unordered_set<std::int64_t>{400, 403, 40301}));
    EXPECT_TRUE(who.has("company_supplier", "search"));
    EXPECT_FALSE(who.has("company_supplier", "add"));
    EXPECT_FALSE(who.has("company_client", "search"));
    EXPECT_TRUE(who.has_any("company_supplier"));
    EXPECT_FALSE(who.has_any("company_client"));
}

TEST_P(sessions, end_with_their_access) {
    test::scene in(GetParam());
    const auto token = open(in, in.hand);
    const auto other = open(in, in.boss);
    in.write([&](store::connection& with) { void_access(with, in.company, in.hand.user); });
    EXPECT_FALSE(at(in, token, g_now));
    EXPECT_TRUE(at(in, other, g_now));
}

TEST_P(sessions, the_sweep_takes_the_dead_ones_only) {
    test::scene in(GetParam());
    const auto old = open(in, in.hand);
    const auto fresh = in.write([&](store::connection& with) {
        return open_session(with, in.company, in.hand.user, "192.0.2.1", g_now + 7 * 3600);
    });
    in.write([&](store::connection& with) { sweep(with, g_now + 8 * 3600); });
    EXPECT_EQ(in.number("SELECT count(*) FROM session"), 1);
    EXPECT_TRUE(at(in, fresh, g_now + 8 * 3600));
}

} // namespace
} // namespace tavrok::domain
