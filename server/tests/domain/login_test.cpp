#include <algorithm>

#include "domain/scene.h"

namespace tavrok::domain {
namespace {

using test::g_now;

const std::string g_peer = "192.0.2.10";

class login : public test::on_engine {
protected:
    login_candidate find(test::scene& in, const std::string& name, std::int64_t now = g_now,
                         const std::string& peer = g_peer) {
        return in.read([&](store::connection& with) { return find_candidate(with, name, peer, now); });
    }
    login_result complete(test::scene& in, const login_candidate& one, bool verified,
                          std::int64_t now = g_now, const std::string& peer = g_peer) {
        return in.write(
            [&](store::connection& with) { return complete_login(with, one, verified, peer, now); });
    }
    login_result attempt(test::scene& in, const std::string& name, bool verified, std::int64_t now = g_now,
                         const std::string& peer = g_peer) {
        return complete(in, find(in, name, now, peer), verified, now, peer);
    }
    relogin_result again(test::scene& in, const std::string& name, const std::string& secret,
                         std::int64_t now) {
        return in.write([&](store::connection& with) { return relogin(with, name, secret, g_peer, now); });
    }
};
ON_EVERY_ENGINE(login);

TEST_P(login, of_an_administrator_gives_session_secret_and_every_row) {
    test::scene in(GetParam());
    const auto result = attempt(in, "boss", true);
    ASSERT_TRUE(result.accepted) << result.reason;
    EXPECT_EQ(result.username, "boss");
    EXPECT_EQ(result.realname, "某人");
    EXPECT_EQ(result.type, 1);
    EXPECT_EQ(result.user, in.boss.user);
    EXPECT_EQ(result.rows.size(), static_cast<std::size_t>(in.number("SELECT count(*) FROM menu")));
    EXPECT_TRUE(in.read([&](store::connection& with) { return resume(with, result.token, g_now); }));
    EXPECT_EQ(in.number("SELECT last_login_at FROM app_user WHERE username = 'boss'"), g_now);
    EXPECT_EQ(in.number("SELECT count(*) FROM audit WHERE what = 'login' AND object_id = " +
                        std::to_string(in.boss.user)),
              1);
}

TEST_P(login, of_an_ordinary_user_gives_the_granted_rows) {
    test::scene in(GetParam());
    EXPECT_TRUE(attempt(in, "hand", true).rows.empty());
    in.write([&](store::connection& with) {
        for (const std::int64_t one : {40301, 403, 400})
            grant_row(with, in.hand, one, g_now);
    });
    const auto result = attempt(in, "hand", true);
    ASSERT_EQ(result.rows.size(), 3U);
    EXPECT_EQ(result.rows[0].id, 400);
    EXPECT_EQ(result.rows[2].action, "search");
    EXPECT_EQ(result.type, 2);
}

TEST_P(login, a_new_one_makes_a_new_session) {
    test::scene in(GetParam());
    const auto first = attempt(in, "boss", true);
    const auto second = attempt(in, "boss", true);
    EXPECT_NE(first.token, second.token);
    EXPECT_NE(first.relogin_secret, second.relogin_secret);
}

TEST_P(login, is_refused_alike_and_the_log_knows_why) {
    test::scene in(GetParam());
    const auto nobody = find(in, "nobody");
    EXPECT_EQ(nobody.user, 0);
    EXPECT_EQ(nobody.hash, dummy_hash());
    EXPECT_EQ(complete(in, nobody, false).reason, "unknown name");
    EXPECT_FALSE(complete(in, nobody, true).accepted);
    EXPECT_EQ(attempt(in, "hand", false).reason, "wrong password");
    in.write([&](store::connection& with) { disable_user(with, in.hand, g_now); });
    const auto disabled = attempt(in, "hand", true);
    EXPECT_EQ(disabled.reason, "disabled");
    EXPECT_FALSE(disabled.accepted);
    EXPECT_TRUE(disabled.token.empty());
    EXPECT_EQ(in.number("SELECT count(*) FROM session"), 0);
    EXPECT_EQ(in.number("SELECT count(*) FROM login_failure"), 4);
}

TEST_P(login, knows_names_in_their_own_spelling_only) {
    test::scene in(GetParam());
    EXPECT_EQ(find(in, "Boss").user, 0);
    EXPECT_EQ(find(in, "bos_").user, 0);
    EXPECT_EQ(find(in, "boss").user, in.boss.user);
}

TEST_P(login, is_judged_anew_when_the_account_changed_meanwhile) {
    test::scene in(GetParam());
    const auto candidate = find(in, "hand");
    in.write([&](store::connection& with) { set_password(with, in.hand, "another hash", g_now); });
    EXPECT_FALSE(complete(in, candidate, true).accepted);
}

TEST_P(login, five_failures_slow_a_name_down) {
    test::scene in(GetParam());
    for (int i = 0; i < 4; ++i)
        attempt(in, "boss", false, g_now, "192.0.2." + std::to_string(i));
    EXPECT_FALSE(find(in, "boss", g_now, "198.51.100.1").throttled);
    attempt(in, "boss", false, g_now, "192.0.2.4");
    EXPECT_TRUE(find(in, "boss", g_now + 1, "198.51.100.1").throttled);
    EXPECT_FALSE(find(in, "hand", g_now + 1, "198.51.100.1").throttled);
    EXPECT_FALSE(find(in, "boss", g_now + 2, "198.51.100.1").throttled);
    attempt(in, "boss", false, g_now + 2, "192.0.2.5");
    EXPECT_TRUE(find(in, "boss", g_now + 5, "198.51.100.1").throttled);
    EXPECT_FALSE(find(in, "boss", g_now + 6, "198.51.100.1").throttled);
}

TEST_P(login, a_name_that_does_not_exist_is_slowed_down_the_same) {
    test::scene in(GetParam());
    for (int i = 0; i < 5; ++i)
        attempt(in, "nobody", false, g_now, "192.0.2." + std::to_string(i));
    EXPECT_TRUE(find(in, "nobody", g_now + 1, "198.51.100.1").throttled);
    EXPECT_TRUE(find(in, "NOBODY", g_now + 1, "198.51.100.1").throttled);
}

TEST_P(login, five_failures_slow_an_address_down) {
    test::scene in(GetParam());
    for (int i = 0; i < 5; ++i)
        attempt(in, "guess" + std::to_string(i), false);
    EXPECT_TRUE(find(in, "boss", g_now + 1).throttled);
    EXPECT_FALSE(find(in, "boss", g_now + 1, "198.51.100.1").throttled);
}

TEST_P(login, a_pause_grows_to_a_minute_and_ends_with_the_window) {
    test::scene in(GetParam());
    auto now = g_now;
    for (int i = 0; i < 12; ++i) {
        EXPECT_FALSE(find(in, "boss", now).throttled) << i;
        attempt(in, "boss", false, now);
        now += 60;
    }
    now -= 60;
    EXPECT_TRUE(find(in, "boss", now + 59).throttled);
    EXPECT_FALSE(find(in, "boss", now + 60).throttled);
}

TEST_P(login, failures_are_forgotten_after_the_window) {
    test::scene in(GetParam());
    for (int i = 0; i < 5; ++i)
        attempt(in, "boss", false, g_now);
    ASSERT_TRUE(find(in, "boss", g_now + 1).throttled);
    attempt(in, "boss", false, g_now + 15 * 60);
    EXPECT_FALSE(find(in, "boss", g_now + 15 * 60).throttled);
}

TEST_P(login, attempts_that_were_under_way_together_do_not_slip_through) {
    test::scene in(GetParam());
    std::vector<login_candidate> flood;
    for (int i = 0; i < 8; ++i)
        flood.push_back(find(in, "boss"));
    for (int i = 0; i < 7; ++i)
        complete(in, flood[static_cast<std::size_t>(i)], false);
    EXPECT_EQ(complete(in, flood[7], true).reason, "too many failures");
    EXPECT_EQ(in.number("SELECT count(*) FROM login_failure"), 5);
}

TEST_P(login, a_success_starts_the_count_of_a_name_anew_but_not_of_an_address) {
    test::scene in(GetParam());
    for (int i = 0; i < 4; ++i)
        attempt(in, "boss", false, g_now);
    ASSERT_TRUE(attempt(in, "boss", true, g_now + 1).accepted);
    attempt(in, "boss", false, g_now + 2, "198.51.100.1");
    EXPECT_FALSE(find(in, "boss", g_now + 2, "198.51.100.2").throttled);
    attempt(in, "hand", false, g_now + 2);
    EXPECT_TRUE(find(in, "boss", g_now + 3).throttled);
}

TEST_P(login, names_that_failed_are_not_stored_as_typed) {
    test::scene in(GetParam());
    attempt(in, "my password", false);
    EXPECT_EQ(in.number("SELECT count(*) FROM login_failure WHERE name_hash LIKE '%password%'"), 0);
    EXPECT_EQ(in.number("SELECT count(*) FROM login_failure"), 1);
}

TEST_P(login, a_relogin_secret_opens_new_sessions_for_a_day) {
    test::scene in(GetParam());
    const auto first = attempt(in, "boss", true);
    const auto second = again(in, "boss", first.relogin_secret, g_now + 9 * 3600);
    ASSERT_TRUE(second.accepted);
    EXPECT_NE(second.token, first.token);
    EXPECT_TRUE(
        in.read([&](store::connection& with) { return resume(with, second.token, g_now + 9 * 3600); }));
    EXPECT_TRUE(again(in, "boss", first.relogin_secret, g_now + 24 * 3600 - 1).accepted);
    EXPECT_FALSE(again(in, "boss", first.relogin_secret, g_now + 24 * 3600).accepted);
}

TEST_P(login, a_relogin_secret_is_bound_to_its_user) {
    test::scene in(GetParam());
    const auto result = attempt(in, "boss", true);
    EXPECT_FALSE(again(in, "hand", result.relogin_secret, g_now).accepted);
    EXPECT_FALSE(again(in, "boss", result.token, g_now).accepted);
    EXPECT_FALSE(again(in, "boss", "", g_now).accepted);
    EXPECT_FALSE(again(in, "", "", g_now).accepted);
    EXPECT_EQ(
        in.number("SELECT count(*) FROM relogin_secret WHERE secret_hash = '" + result.relogin_secret + "'"),
        0);
}

TEST_P(login, a_relogin_secret_dies_with_password_and_account) {
    test::scene in(GetParam());
    const auto before = attempt(in, "hand", true);
    in.write([&](store::connection& with) { set_password(with, in.hand, "another hash", g_now); });
    EXPECT_FALSE(again(in, "hand", before.relogin_secret, g_now).accepted);
    EXPECT_FALSE(in.read([&](store::connection& with) { return resume(with, before.token, g_now); }));

    const auto after = attempt(in, "hand", true);
    ASSERT_TRUE(after.accepted);
    in.write([&](store::connection& with) { disable_user(with, in.hand, g_now); });
    EXPECT_FALSE(again(in, "hand", after.relogin_secret, g_now).accepted);
    EXPECT_FALSE(in.read([&](store::connection& with) { return resume(with, after.token, g_now); }));
    in.write([&](store::connection& with) { enable_user(with, in.hand, g_now); });
    EXPECT_FALSE(again(in, "hand", after.relogin_secret, g_now).accepted);
    EXPECT_TRUE(attempt(in, "hand", true).accepted);
}

TEST_P(login, failed_relogins_slow_nobody_down) {
    test::scene in(GetParam());
    for (int i = 0; i < 20; ++i)
        again(in, "boss", "lapsed", g_now);
    EXPECT_FALSE(find(in, "boss").throttled);
}

TEST_P(login, leaves_what_is_over_to_the_sweep) {
    test::scene in(GetParam());
    in.log_in(in.boss, g_now - 48 * 3600);
    in.write([&](store::connection& with) {
        complete_login(with, find_candidate(with, "hand", "p", g_now), true, "p", g_now);
    });
    EXPECT_EQ(in.number("SELECT count(*) FROM session"), 2);
    in.write([&](store::connection& with) { sweep(with, g_now); });
    EXPECT_EQ(in.number("SELECT count(*) FROM session"), 1);
}

} // namespace
} // namespace tavrok::domain
