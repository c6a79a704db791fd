#include "domain/accounts.h"

#include "domain/refused.h"
#include "domain/scene.h"

namespace tavrok::domain {
namespace {

using test::g_now;

class accounts : public test::on_engine {};
ON_EVERY_ENGINE(accounts);

std::int64_t make(test::scene& in, const new_user& user) {
    return in.write([&](store::connection& with) { return create_user(with, user, g_now); });
}

TEST_P(accounts, ids_start_far_from_the_session_code) {
    test::scene in(GetParam());
    EXPECT_EQ(in.company, 1001);
    EXPECT_EQ(in.boss.user, 1001);
    EXPECT_EQ(in.hand.user, 1002);
}

TEST_P(accounts, only_one_company_runs_the_service) {
    test::scene in(GetParam());
    EXPECT_THROW(in.write([](store::connection& with) { create_company(with, "二号", true, g_now); }),
                 refused);
    EXPECT_THROW(in.write([](store::connection& with) { create_company(with, " ", false, g_now); }), refused);
    const auto other =
        in.write([](store::connection& with) { return create_company(with, "二号", false, g_now); });
    EXPECT_FALSE(in.log_in(in.user(other, "chief", 1)).operator_company);
    EXPECT_FALSE(in.read([](store::connection& with) { return no_company(with); }));
}

TEST_P(accounts, names_mobiles_and_mails_are_unique_in_the_service) {
    test::scene in(GetParam());
    const auto other =
        in.write([](store::connection& with) { return create_company(with, "二号", false, g_now); });
    make(in, {in.company, "anna", "", "h", 2, "15400000001", "Anna@example.com"});
    EXPECT_THROW(make(in, {other, "ANNA", "", "h", 2, "", ""}), refused);
    EXPECT_THROW(make(in, {other, "berta", "", "h", 2, "15400000001", ""}), refused);
    EXPECT_THROW(make(in, {other, "berta", "", "h", 2, "", "anna@EXAMPLE.com"}), refused);
    EXPECT_NO_THROW(make(in, {other, "berta", "", "h", 2, "", ""}));
    EXPECT_NO_THROW(make(in, {other, "clara", "", "h", 2, "", ""}));
}

TEST_P(accounts, refuse_what_could_never_log_in) {
    test::scene in(GetParam());
    EXPECT_THROW(make(in, {in.company, "", "", "h", 2, "", ""}), refused);
    EXPECT_THROW(make(in, {in.company, " dora", "", "h", 2, "", ""}), refused);
    EXPECT_THROW(make(in, {in.company, "dora\n", "", "h", 2, "", ""}), refused);
    EXPECT_THROW(make(in, {in.company, "dora", "", "", 2, "", ""}), refused);
    EXPECT_THROW(make(in, {in.company, "dora", "", "h", 3, "", ""}), refused);
    EXPECT_THROW(make(in, {in.company + 1, "dora", "", "h", 2, "", ""}), refused);
    EXPECT_EQ(in.number("SELECT count(*) FROM app_user"), 2);
}

TEST_P(accounts, the_last_administrator_stays) {
    test::scene in(GetParam());
    EXPECT_THROW(in.write([&](store::connection& with) { disable_user(with, in.boss, g_now); }), refused);
    const auto second = in.user(in.company, "second", 1);
    EXPECT_NO_THROW(in.write([&](store::connection& with) { disable_user(with, in.boss, g_now); }));
    EXPECT_THROW(in.write([&](store::connection& with) { disable_user(with, second, g_now); }), refused);
}

TEST_P(accounts, are_found_by_company_and_id_together) {
    test::scene in(GetParam());
    const user_key wrong{in.company + 1, in.hand.user};
    EXPECT_THROW(in.write([&](store::connection& with) { set_password(with, wrong, "x", g_now); }), refused);
    EXPECT_THROW(in.write([&](store::connection& with) { disable_user(with, wrong, g_now); }), refused);
    EXPECT_THROW(in.write([&](store::connection& with) { enable_user(with, wrong, g_now); }), refused);
    EXPECT_THROW(in.write([&](store::connection& with) { grant_row(with, wrong, 400, g_now); }), refused);
    EXPECT_EQ(in.number("SELECT count(*) FROM app_user WHERE password_hash = 'x' OR state = 2"), 0);
}

TEST_P(accounts, find_user_knows_the_exact_name) {
    test::scene in(GetParam());
    const auto found = in.read([](store::connection& with) { return find_user(with, "hand"); });
    ASSERT_TRUE(found);
    EXPECT_EQ(found->user, in.hand.user);
    EXPECT_FALSE(in.read([](store::connection& with) { return find_user(with, "Hand"); }));
}

} // namespace
} // namespace tavrok::domain
