#include "domain/users.h"

#include <algorithm>

#include "domain/check.h"
#include "domain/fold.h"
#include "domain/refused.h"
#include "domain/scene.h"

namespace tavrok::domain {
namespace {

using test::g_now;

class users : public test::on_engine {
protected:
    void SetUp() override {
        on_engine::SetUp();
        if (IsSkipped()) return;
        in = std::make_unique<test::scene>(GetParam());
        boss = in->log_in(in->boss);
    }
    user_page list(const user_search& search = {}, const page_wish& wish = {1, 200}) {
        return in->read(
            [&](store::connection& with) { return list_users(with, boss, search, wish, counts); });
    }
    std::vector<std::string> names(const user_search& search) {
        std::vector<std::string> found;
        for (const auto& one : list(search).list)
            found.push_back(one.username);
        return found;
    }
    std::int64_t add(const new_user& what, std::int64_t now = g_now) {
        return in->write([&](store::connection& with) { return add_user(with, boss, what, now).id; });
    }
    std::int64_t add(const std::string& name) {
        return add({0, name, name + " 真名", "hash", 2, "", name + "@example.com"});
    }
    void edit(const user_change& change) { edit_as(boss, change); }
    void edit_as(const principal& who, const user_change& change) {
        in->write([&](store::connection& with) { edit_user(with, who, change, g_now + 5); });
    }
    void remove(std::int64_t id) { remove_as(boss, id); }
    void remove_as(const principal& who, std::int64_t id) {
        in->write([&](store::connection& with) { remove_user(with, who, id, g_now + 5); });
    }
    bool has(user_mark what, const std::string& text, std::int64_t except = 0) {
        return in->read([&](store::connection& with) { return taken(with, boss, what, text, except); });
    }
    user_change change_of(std::int64_t id) {
        return {id, "新名", "", "edited" + std::to_string(id) + "@example.com", 1, ""};
    }
    bool alive(const std::string& token) {
        return in->read([&](store::connection& with) { return resume(with, token, g_now); }).has_value();
    }
    std::string token_of(const user_key& whom) {
        return in->write(
            [&](store::connection& with) { return open_session(with, whom.company, whom.user, "p", g_now); });
    }
    /** A login by the stored hash; "accepted", or the reason of the refusal. */
    std::string log_in(const std::string& name) {
        const auto found =
            in->read([&](store::connection& with) { return find_candidate(with, name, "p", g_now); });
        const auto got =
            in->write([&](store::connection& with) { return complete_login(with, found, true, "p", g_now); });
        secret = got.relogin_secret;
        return got.accepted ? "accepted" : got.reason;
    }
    bool secret_works(const std::string& name) {
        return in->write(
            [&](store::connection& with) { return relogin(with, name, secret, "p", g_now).accepted; });
    }
    void expect_sound() {
        in->read([](store::connection& with) {
            for (const auto& one : check(with))
                ADD_FAILURE() << one.text;
        });
    }

    std::unique_ptr<test::scene> in;
    principal boss;
    count_cache counts;
    std::string secret;
};
ON_EVERY_ENGINE(users);

TEST_P(users, are_listed_newest_first_with_what_the_list_shows) {
    const auto id = add({0, "Anna", "安娜", "hash", 2, "13800000001", "Anna@example.com", 2}, g_now + 3);
    const auto page = list();
    EXPECT_EQ(page.total, 3);
    EXPECT_EQ(page.page_count, 1);
    ASSERT_EQ(page.list.size(), 3U);
    const auto& first = page.list.front();
    EXPECT_EQ(first.id, id);
    EXPECT_EQ(first.username, "Anna");
    EXPECT_EQ(first.realname, "安娜");
    EXPECT_EQ(first.type, 2);
    EXPECT_EQ(first.mobile, "13800000001");
    EXPECT_EQ(first.email, "Anna@example.com");
    EXPECT_EQ(first.state, 2);
    EXPECT_EQ(first.last_login_at, 0);
    EXPECT_EQ(first.registered_at, g_now + 3);
    EXPECT_EQ(page.list.back().username, "boss");
    EXPECT_EQ(page.list.back().type, 1);
    log_in("boss");
    EXPECT_EQ(list().list.back().last_login_at, g_now);
}

TEST_P(users, are_found_by_parts_of_their_names_type_and_state) {
    add("Ännchen_1");
    add("anna%");
    in->write([&](store::connection& with) { disable_user(with, in->hand, g_now); });
    using list_of = std::vector<std::string>;
    EXPECT_EQ(names({.username = "än"}), (list_of{"Ännchen_1"}));
    EXPECT_EQ(names({.username = "_"}), (list_of{"Ännchen_1"}));
    EXPECT_EQ(names({.username = "NN"}), (list_of{"anna%", "Ännchen_1"}));
    EXPECT_EQ(names({.realname = "ANNA% 真"}), (list_of{"anna%"}));
    EXPECT_EQ(names({.type = 1}), (list_of{"boss"}));
    EXPECT_EQ(names({.type = 2, .state = 1}), (list_of{"anna%", "Ännchen_1"}));
    EXPECT_EQ(names({.state = 2}), (list_of{"hand"}));
    EXPECT_EQ(names({}).size(), 4U);
    EXPECT_THROW(names({.username = "\xff"}), refused);
    EXPECT_THROW(list({}, {1, 201}), refused);
    EXPECT_EQ(list({}, {-1, 3}).page_num, 2);
    EXPECT_EQ(list({.state = 1}, {9, 2}).list.size(), 1U);
}

TEST_P(users, of_other_companies_are_not_seen_or_touched) {
    const auto other =
        in->write([](store::connection& with) { return create_company(with, "二号", false, g_now); });
    const auto stranger = in->user(other, "stranger", 2);
    const auto chief = in->user(other, "chief", 1);
    EXPECT_EQ(list().total, 2);
    EXPECT_THROW(edit(change_of(stranger.user)), refused);
    EXPECT_THROW(remove(stranger.user), refused);
    EXPECT_THROW(remove(chief.user), refused);
    EXPECT_THROW(has(user_mark::username, "boss", stranger.user), refused);
    EXPECT_EQ(log_in("stranger"), "accepted");
    expect_sound();
}

TEST_P(users, that_are_added_are_ordinary_and_of_the_own_company) {
    add({4711, "newcomer", "", "hash", 1, "", "new@example.com"});
    const auto added = list().list.front();
    EXPECT_EQ(added.username, "newcomer");
    EXPECT_EQ(added.type, 2);
    EXPECT_EQ(in->number("SELECT count(*) FROM audit WHERE what = 'user_add' AND user_id = " +
                         std::to_string(boss.user)),
              1);
    expect_sound();
}

TEST_P(users, with_impossible_data_are_refused) {
    add("anna");
    for (const auto& bad : std::vector<new_user>{{0, "b", "", "h", 2, "", ""},
                                                 {0, "b", "", "h", 2, "", "no address"},
                                                 {0, "", "", "h", 2, "", "b@c.cn"},
                                                 {0, " b", "", "h", 2, "", "b@c.cn"},
                                                 {0, "ANNA", "", "h", 2, "", "b@c.cn"},
                                                 {0, "b", "", "h", 2, "", "ANNA@example.com"},
                                                 {0, "b", "", "h", 2, "mobile", "b@c.cn"},
                                                 {0, "b", "", "h", 2, "", "b@c.cn", 3},
                                                 {0, "b", std::string(101, 'x'), "h", 2, "", "b@c.cn"},
                                                 {0, std::string(101, 'x'), "", "h", 2, "", "b@c.cn"},
                                                 {0, "b\x02", "", "h", 2, "", "b@c.cn"},
                                                 {0, "b", "", "", 2, "", "b@c.cn"}}) {
        EXPECT_THROW(add(bad), refused) << bad.username << " " << bad.email;
    }
    EXPECT_EQ(list().total, 3);
    expect_sound();
}

TEST_P(users, an_edit_changes_all_but_name_type_and_password) {
    auto change = change_of(in->hand.user);
    change.mobile = "13800000003";
    edit(change);
    const auto got = list({.username = "hand"}).list.at(0);
    EXPECT_EQ(got.realname, "新名");
    EXPECT_EQ(got.mobile, "13800000003");
    EXPECT_EQ(got.email, change.email);
    EXPECT_EQ(got.type, 2);
    EXPECT_EQ(names({.realname = "新"}), (std::vector<std::string>{"hand"}));
    EXPECT_EQ(log_in("hand"), "accepted") << "the old hash";
    edit(change);
    EXPECT_TRUE(secret_works("hand")) << "an edit that changes neither password nor state ends nothing";
    expect_sound();
}

TEST_P(users, an_edit_with_impossible_data_changes_nothing) {
    const auto anna = add({0, "anna", "", "h", 2, "13800000001", "anna@example.com"});
    for (const auto& bad : std::vector<user_change>{{anna, "n", "", "", 1, ""},
                                                    {anna, "n", "", "no", 1, ""},
                                                    {anna, "n", "", "a@b.cn", 0, ""},
                                                    {anna, "n", "mobile", "a@b.cn", 1, ""},
                                                    {anna, "n\x01", "", "a@b.cn", 1, ""},
                                                    {4711, "n", "", "a@b.cn", 1, ""},
                                                    {in->hand.user, "n", "13800000001", "a@b.cn", 1, ""},
                                                    {in->hand.user, "n", "", "ANNA@example.com", 1, ""}}) {
        EXPECT_THROW(edit(bad), refused) << bad.id << bad.email;
    }
    EXPECT_NO_THROW(edit({anna, "n", "13800000001", "Anna@example.com", 1, ""})) << "her own";
}

TEST_P(users, a_new_password_ends_what_the_old_one_opened) {
    EXPECT_EQ(log_in("hand"), "accepted");
    const auto token = token_of(in->hand);
    auto change = change_of(in->hand.user);
    change.password_hash = "another";
    edit(change);
    EXPECT_FALSE(alive(token));
    EXPECT_FALSE(secret_works("hand"));
    EXPECT_EQ(in->number("SELECT count(*) FROM app_user WHERE password_hash = 'another'"), 1);
}

TEST_P(users, who_changes_his_own_password_keeps_the_session_in_which_he_does) {
    log_in("boss");
    const auto here = token_of(in->boss);
    const auto elsewhere = token_of(in->boss);
    const auto who = in->read([&](store::connection& with) { return resume(with, here, g_now); }).value();
    auto change = change_of(in->boss.user);
    change.password_hash = "another";
    edit_as(who, change);
    EXPECT_TRUE(alive(here));
    EXPECT_FALSE(alive(elsewhere));
    EXPECT_FALSE(secret_works("boss"));
}

TEST_P(users, who_is_disabled_is_out_at_once) {
    EXPECT_EQ(log_in("hand"), "accepted");
    const auto token = token_of(in->hand);
    auto change = change_of(in->hand.user);
    change.state = 2;
    edit(change);
    EXPECT_FALSE(alive(token));
    EXPECT_FALSE(secret_works("hand"));
    EXPECT_EQ(log_in("hand"), "disabled");
    change.state = 1;
    edit(change);
    EXPECT_FALSE(alive(token)) << "what has ended stays ended";
    EXPECT_EQ(log_in("hand"), "accepted");
}

TEST_P(users, nobody_takes_himself_or_the_last_administrator_away) {
    auto self = change_of(in->boss.user);
    self.state = 2;
    EXPECT_THROW(edit(self), refused);
    EXPECT_THROW(remove(in->boss.user), refused);
    const auto second = in->user(in->company, "second", 1);
    EXPECT_THROW(edit(self), refused) << "not even where there is another";
    EXPECT_THROW(remove(in->boss.user), refused);
    const auto who = in->log_in(second);
    edit_as(who, self);
    EXPECT_THROW(edit(change_of(in->hand.user)), refused) << "disabled: no administrator any more";
    EXPECT_THROW(add("late"), refused);
    EXPECT_THROW(remove(in->hand.user), refused);
    remove_as(who, in->boss.user);
    EXPECT_THROW(remove_as(who, second.user), refused);
    EXPECT_EQ(names({.type = 1}), (std::vector<std::string>{"second"}));
    expect_sound();
}

TEST_P(users, the_last_one_is_counted_among_the_enabled) {
    const auto second = in->user(in->company, "second", 1);
    const auto third = in->user(in->company, "third", 1);
    in->write([&](store::connection& with) { disable_user(with, second, g_now); });
    const auto who = in->log_in(third);
    remove_as(who, in->boss.user);
    auto enable = change_of(second.user);
    edit_as(who, enable);
    enable.state = 2;
    EXPECT_NO_THROW(edit_as(who, enable));
    EXPECT_THROW(in->write([&](store::connection& with) { disable_user(with, third, g_now); }), refused);
}

TEST_P(users, who_is_removed_leaves_everything_but_his_row) {
    const auto id = add({0, "Anna", "安娜", "h", 2, "13800000001", "anna@example.com"});
    const user_key anna{in->company, id};
    EXPECT_EQ(log_in("Anna"), "accepted");
    const auto token = token_of(anna);
    in->write([&](store::connection& with) { grant_row(with, anna, 400, g_now); });
    remove(id);
    EXPECT_EQ(names({}), (std::vector<std::string>{"hand", "boss"}));
    EXPECT_FALSE(alive(token));
    EXPECT_EQ(in->number("SELECT count(*) FROM session WHERE user_id = " + std::to_string(id)), 0);
    EXPECT_EQ(in->number("SELECT count(*) FROM relogin_secret WHERE user_id = " + std::to_string(id)), 0);
    EXPECT_EQ(in->number("SELECT count(*) FROM user_grant WHERE user_id = " + std::to_string(id)), 0);
    EXPECT_FALSE(secret_works("Anna"));
    EXPECT_EQ(log_in("Anna"), "unknown name");
    EXPECT_FALSE(in->read([](store::connection& with) { return find_user(with, "Anna"); }));
    EXPECT_EQ(in->number("SELECT count(*) FROM app_user WHERE username = 'Anna' AND realname = '安娜' AND "
                         "removed_at = " +
                         std::to_string(g_now + 5)),
              1);
    EXPECT_THROW(remove(id), refused);
    EXPECT_THROW(edit(change_of(id)), refused);
    EXPECT_THROW(in->write([&](store::connection& with) { enable_user(with, anna, g_now); }), refused);
    EXPECT_THROW(in->write([&](store::connection& with) { set_password(with, anna, "x", g_now); }), refused);
    EXPECT_THROW(in->write([&](store::connection& with) { grant_row(with, anna, 400, g_now); }), refused);
    expect_sound();
    for (const auto& [what, text] : {std::pair(user_mark::username, "anna"),
                                     {user_mark::mobile, "13800000001"},
                                     {user_mark::email, "anna@example.com"}})
        EXPECT_FALSE(has(what, text)) << text;
    const auto again = add({0, "anna", "安娜", "h2", 2, "13800000001", "anna@example.com"});
    EXPECT_GT(again, id);
    EXPECT_EQ(log_in("anna"), "accepted");
    remove(again);
    expect_sound();
}

TEST_P(users, marks_are_taken_in_the_whole_service_case_aside) {
    const auto other =
        in->write([](store::connection& with) { return create_company(with, "二号", false, g_now); });
    in->write([&](store::connection& with) {
        create_user(with, {other, "Änne", "", "h", 2, "13800000001", "Aenne@example.com"}, g_now);
    });
    EXPECT_TRUE(has(user_mark::username, "ÄNNE"));
    EXPECT_TRUE(has(user_mark::mobile, "13800000001"));
    EXPECT_TRUE(has(user_mark::email, "AENNE@example.com"));
    EXPECT_FALSE(has(user_mark::username, "Ann"));
    EXPECT_FALSE(has(user_mark::mobile, ""));
    EXPECT_FALSE(has(user_mark::email, ""));
    EXPECT_TRUE(has(user_mark::username, "hand"));
    EXPECT_FALSE(has(user_mark::username, "hand", in->hand.user));
    EXPECT_TRUE(has(user_mark::username, "boss", in->hand.user));
    EXPECT_THROW(has(user_mark::username, "hand", 4711), refused);
}

TEST_P(users, disabling_and_enabling_are_audited_with_who_did_it) {
    const auto noted = [&](const std::string& what) {
        return in->number("SELECT count(*) FROM audit WHERE what = '" + what + "' AND object_id = " +
                          std::to_string(in->hand.user) + " AND user_id = " + std::to_string(in->boss.user));
    };
    auto change = change_of(in->hand.user);
    edit(change);
    EXPECT_EQ(noted("user_disable") + noted("user_enable"), 0) << "nothing of the kind was done";
    change.state = 2;
    edit(change);
    edit(change);
    EXPECT_EQ(noted("user_disable"), 1);
    change.state = 1;
    edit(change);
    edit(change);
    EXPECT_EQ(noted("user_enable"), 1);
}

TEST_P(users, check_finds_the_session_of_a_removed_user_and_a_wrong_count) {
    log_in("hand");
    in->write([&](store::connection& with) {
        with.execute({"damage", "UPDATE app_user SET removed_at = 5 WHERE username = 'hand'"}, {});
    });
    const auto found = in->read([](store::connection& with) { return check(with); });
    for (const auto& [rule, words] :
         {std::pair("reference", "session"), {"reference", "relogin_secret"}, {"counter", "list user"}}) {
        EXPECT_TRUE(std::any_of(found.begin(), found.end(), [&](const finding& one) {
            return one.rule == rule && one.text.find(words) != std::string::npos;
        })) << words;
    }
    EXPECT_EQ(found.size(), 3U);
}

} // namespace
} // namespace tavrok::domain
