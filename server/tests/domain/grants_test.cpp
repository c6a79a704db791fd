#include "domain/grants.h"

#include "domain/interleave.h"
#include "domain/menu_edit.h"

namespace tavrok::domain {
namespace {

using test::g_now;
using test::is_refused;

class grants : public test::on_engine {
protected:
    void SetUp() override {
        test::on_engine::SetUp();
        if (IsSkipped()) return;
        in.emplace(GetParam());
        boss = in->log_in(in->boss);
        far = in->write([](store::connection& with) { return create_company(with, "二号", false, g_now); });
        stranger = in->user(far, "stranger", 2);
    }
    bool grant(std::int64_t user, std::int64_t row) {
        return !is_refused(
            [&] { in->write([&](store::connection& with) { grant_row(with, boss, user, row, g_now); }); });
    }
    bool revoke(std::int64_t user, std::int64_t row) {
        return !is_refused(
            [&] { in->write([&](store::connection& with) { revoke_row(with, boss, user, row, g_now); }); });
    }
    std::vector<std::int64_t> rows(std::int64_t user) {
        std::vector<std::int64_t> ids;
        for (const auto& one :
             in->read([&](store::connection& with) { return granted_rows(with, boss, user); }))
            ids.push_back(one.id);
        return ids;
    }
    std::int64_t noted(const std::string& where) {
        return in->number("SELECT count(*) FROM audit WHERE " + where);
    }
    void run(const std::string& sql) {
        in->write([&](store::connection& with) { with.execute({sql, sql}, {}); });
    }

    std::optional<test::scene> in;
    principal boss;
    std::int64_t far{0};
    user_key stranger{};
};
ON_EVERY_ENGINE(grants);

using ids = std::vector<std::int64_t>;

TEST_P(grants, are_what_was_granted_last) {
    const auto hand = in->hand.user;
    EXPECT_EQ(rows(hand), ids());
    for (const std::int64_t row : {40301, 400, 403, 40301})
        EXPECT_TRUE(grant(hand, row));
    EXPECT_EQ(rows(hand), (ids{400, 403, 40301}));
    for (const std::int64_t row : {403, 403, 40401})
        EXPECT_TRUE(revoke(hand, row));
    EXPECT_EQ(rows(hand), (ids{400, 40301}));
    EXPECT_TRUE(grant(hand, 403));
    EXPECT_EQ(rows(hand), (ids{400, 403, 40301}));
}

TEST_P(grants, are_noted_with_who_gave_what_to_whom_and_only_where_something_changed) {
    const auto hand = in->hand.user;
    for (int i = 0; i < 2; ++i)
        EXPECT_TRUE(grant(hand, 403));
    const auto deed = [&](const std::string& what) {
        return "what = '" + what + "' AND user_id = " + std::to_string(boss.user) +
               " AND object_id = " + std::to_string(hand) +
               " AND detail = 403 AND noted_at = " + std::to_string(g_now);
    };
    EXPECT_EQ(noted(deed("grant")), 1);
    EXPECT_EQ(noted("what = 'revoke'"), 0);
    for (int i = 0; i < 2; ++i)
        EXPECT_TRUE(revoke(hand, 403));
    EXPECT_EQ(noted(deed("revoke")), 1);
    EXPECT_EQ(noted("what IN ('grant', 'revoke')"), 2);
    in->write([&](store::connection& with) { grant_row(with, in->hand, 403, g_now); });
    EXPECT_EQ(noted("what = 'grant' AND user_id = 0 AND object_id = " + std::to_string(hand)), 1);
}

TEST_P(grants, are_for_ordinary_users_of_the_own_company_who_are_still_there) {
    const auto second = in->user(in->company, "second", 1);
    const auto gone = in->user(in->company, "gone", 2);
    EXPECT_TRUE(grant(gone.user, 403));
    run("UPDATE app_user SET removed_at = 1 WHERE id = " + std::to_string(gone.user));
    const auto before = in->number("SELECT count(*) FROM user_grant");
    for (const auto user :
         {in->boss.user, second.user, stranger.user, gone.user, std::int64_t{4711}, std::int64_t{0}}) {
        EXPECT_FALSE(grant(user, 400)) << user;
        EXPECT_FALSE(revoke(user, 403)) << user;
    }
    EXPECT_EQ(in->number("SELECT count(*) FROM user_grant"), before);
    for (const auto user : {stranger.user, gone.user, std::int64_t{4711}})
        EXPECT_THROW(rows(user), refused) << user;
}

TEST_P(grants, of_a_disabled_user_can_be_prepared) {
    in->write([&](store::connection& with) { disable_user(with, in->hand, g_now); });
    EXPECT_TRUE(grant(in->hand.user, 403));
    EXPECT_EQ(rows(in->hand.user), ids{403});
}

TEST_P(grants, need_a_row_that_is_there) {
    for (const std::int64_t row : {0, 7, -1, 4711, 100001}) {
        EXPECT_FALSE(grant(in->hand.user, row)) << row;
        EXPECT_FALSE(revoke(in->hand.user, row)) << row;
    }
    EXPECT_EQ(in->number("SELECT count(*) FROM user_grant"), 0);
}

TEST_P(grants, of_an_administrator_are_all_rows) {
    EXPECT_EQ(static_cast<std::int64_t>(rows(in->boss.user).size()), in->number("SELECT count(*) FROM menu"));
}

TEST_P(grants, of_a_right_count_without_the_page_above) {
    EXPECT_TRUE(grant(in->hand.user, 40301));
    const auto who = in->log_in(in->hand);
    EXPECT_TRUE(who.has("company_supplier", "search"));
    EXPECT_TRUE(in->read([&](store::connection& with) { return visible_menu(with, who); }).empty());
}

TEST_P(grants, of_a_page_are_not_grants_of_its_rights) {
    EXPECT_TRUE(grant(in->hand.user, 400));
    EXPECT_TRUE(grant(in->hand.user, 403));
    const auto who = in->log_in(in->hand);
    EXPECT_FALSE(who.has_any("company_supplier"));
    EXPECT_FALSE(who.has("company_supplier", "search"));
}

TEST_P(grants, of_two_users_do_not_touch_each_other) {
    const auto other = in->user(in->company, "other", 2);
    for (const auto user : {in->hand.user, other.user})
        EXPECT_TRUE(grant(user, 403));
    EXPECT_TRUE(revoke(other.user, 403));
    EXPECT_EQ(rows(in->hand.user), ids{403});
    EXPECT_EQ(rows(other.user), ids());
}

/** What only a database with many writers can show. */
class grants_at_once : public grants {};
INSTANTIATE_TEST_SUITE_P(engines, grants_at_once, testing::Values("postgresql"));

TEST_P(grants_at_once, a_user_who_is_being_removed_gets_nothing_more) {
    const auto sql = "UPDATE app_user SET removed_at = 1 WHERE id = " + std::to_string(in->hand.user);
    const auto end = test::interleave(
        *in,
        [&](store::connection& with) {
            with.execute({sql, sql}, {});
        },
        [&](store::connection& with) { grant_row(with, boss, in->hand.user, 403, g_now); });
    EXPECT_TRUE(end.waited);
    ASSERT_TRUE(end.failure);
    EXPECT_THROW(std::rethrow_exception(end.failure), refused);
    EXPECT_EQ(in->number("SELECT count(*) FROM user_grant"), 0);
}

TEST_P(grants_at_once, two_administrators_who_grant_the_same_row_grant_it_once) {
    const auto wish = [&](store::connection& with) { grant_row(with, boss, in->hand.user, 403, g_now); };
    const auto end = test::interleave(*in, wish, wish);
    EXPECT_TRUE(end.waited);
    EXPECT_FALSE(end.failure);
    EXPECT_EQ(rows(in->hand.user), ids{403});
    EXPECT_EQ(noted("what = 'grant'"), 1);
}

TEST_P(grants_at_once, a_row_that_goes_takes_a_grant_with_it_that_is_just_being_given) {
    const auto row = in->write([&](store::connection& with) {
        return add_menu_row(with, boss, {"own", 0, "own", 0, 1, 1}, g_now);
    });
    const auto end = test::interleave(
        *in, [&](store::connection& with) { grant_row(with, boss, in->hand.user, row, g_now); },
        [&](store::connection& with) { remove_menu_row(with, boss, row, g_now); });
    EXPECT_TRUE(end.waited);
    EXPECT_FALSE(end.failure);
    EXPECT_EQ(in->number("SELECT count(*) FROM user_grant"), 0);
    EXPECT_EQ(in->number("SELECT count(*) FROM menu WHERE id = " + std::to_string(row)), 0);
}

TEST_P(grants_at_once, a_row_that_is_just_going_cannot_be_granted) {
    const auto row = in->write([&](store::connection& with) {
        return add_menu_row(with, boss, {"own", 0, "own", 0, 1, 1}, g_now);
    });
    const auto end = test::interleave(
        *in, [&](store::connection& with) { remove_menu_row(with, boss, row, g_now); },
        [&](store::connection& with) { grant_row(with, boss, in->hand.user, row, g_now); });
    EXPECT_TRUE(end.waited);
    ASSERT_TRUE(end.failure);
    try {
        std::rethrow_exception(end.failure);
    } catch (const store::error& error) {
        // such a request is tried once more, and then the row is unknown
        EXPECT_EQ(error.kind(), store::error_kind::unique);
    }
    EXPECT_FALSE(grant(in->hand.user, row));
    EXPECT_EQ(in->number("SELECT count(*) FROM user_grant"), 0);
}

} // namespace
} // namespace tavrok::domain
