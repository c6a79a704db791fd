#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <boost/json.hpp>
#include <map>
#include <set>
#include <thread>

#include "api/harness.h"

namespace tavrok::test {
namespace {

class permission_test : public testing::TestWithParam<std::string> {
protected:
    void SetUp() override {
        SKIP_WITHOUT(GetParam());
        world = std::make_unique<harness>(GetParam());
        chief = world->administrator("chief");
        company = world->principal_of(chief).company;
        hand = world->make_user(company, "hand", 2);
    }
    static std::string body(std::int64_t user, std::int64_t row) {
        return "user=" + std::to_string(user) + "&menu=" + std::to_string(row);
    }
    std::string click(const std::string& action, std::int64_t row) {
        return world->ask("wms_permission/" + action, body(hand.user, row), chief).body;
    }
    std::string check(std::int64_t row) { return click("set_checked", row); }
    std::string uncheck(std::int64_t row) { return click("set_unchecked", row); }
    std::string granted(std::int64_t user) {
        return world->ask("wms_permission/get_permission", "user=" + std::to_string(user), chief).body;
    }
    std::string tree(const std::string& cookie) {
        return world->ask({"wms_permission/get_permission_tree", "", cookie, "192.0.2.9", "GET"}).body;
    }
    void run(const std::string& sql) {
        store::write_now(*world->database, [&](store::connection& db) { db.execute({sql, sql}, {}); });
    }
    std::int64_t number(const std::string& sql) {
        std::int64_t found = -1;
        store::read_now(*world->database, [&](store::connection& db) {
            db.query({sql, sql}, {}, [&](const store::row& one) { found = one.integer(0); });
        });
        return found;
    }

    std::unique_ptr<harness> world;
    std::string chief;
    std::int64_t company{0};
    domain::user_key hand{};
};

TEST_P(permission_test, clicks_are_answered_and_kept_and_may_be_repeated) {
    EXPECT_EQ(granted(hand.user), "[]");
    for (const std::int64_t row : {40301, 403, 400, 403})
        EXPECT_EQ(check(row), "1");
    EXPECT_EQ(granted(hand.user), R"([{"menu":"400"},{"menu":"403"},{"menu":"40301"}])");
    // a row that is being cleared is granted and then revoked
    for (const auto& answer : {check(40302), uncheck(40302), check(403), uncheck(403), uncheck(403)})
        EXPECT_EQ(answer, "1");
    EXPECT_EQ(granted(hand.user), R"([{"menu":"400"},{"menu":"40301"}])");
}

TEST_P(permission_test, a_click_counts_from_the_next_request_of_the_user_on) {
    const auto cookie = world->session_of(hand);
    const auto list = [&] {
        return boost::json::parse(
                   world->ask("wms_company/get_page", "type=1&page_num=1&page_size=5", cookie).body)
            .at("total")
            .as_int64();
    };
    const auto menu = [&] { return world->ask("wms_menu/get_menu", "action=list", cookie).body; };
    world->add_partner(chief, 1, "seen");
    EXPECT_EQ(list(), 0);
    EXPECT_EQ(menu(), "[]");
    for (const std::int64_t row : {40301, 403, 400})
        check(row);
    EXPECT_EQ(list(), 1);
    EXPECT_NE(menu().find("company_supplier"), std::string::npos);
    uncheck(40301);
    EXPECT_EQ(list(), 0);
    EXPECT_NE(menu().find("company_supplier"), std::string::npos);
    uncheck(403);
    EXPECT_EQ(menu().find("company_supplier"), std::string::npos);
}

TEST_P(permission_test, only_a_living_ordinary_user_of_the_own_company_can_be_granted_rows) {
    const auto stranger = world->make_user(world->make_company("far"), "stranger", 2);
    const auto second = world->make_user(company, "second", 1);
    const auto gone = world->make_user(company, "gone", 2, {{"emp", "search"}});
    run("UPDATE app_user SET removed_at = 1 WHERE id = " + std::to_string(gone.user));
    const auto before = number("SELECT count(*) FROM user_grant");
    for (const auto user :
         {stranger.user, second.user, gone.user, world->principal_of(chief).user, std::int64_t{4711}}) {
        for (const auto* action : {"wms_permission/set_checked", "wms_permission/set_unchecked"})
            EXPECT_EQ(world->ask(action, body(user, 408), chief).body, "0") << action << user;
    }
    EXPECT_EQ(number("SELECT count(*) FROM user_grant"), before);
    for (const auto user : {stranger.user, gone.user, std::int64_t{4711}})
        EXPECT_EQ(granted(user), "[]") << user;
}

TEST_P(permission_test, what_is_no_row_or_no_number_is_refused) {
    const auto user = "user=" + std::to_string(hand.user);
    for (const std::string rest :
         {"&menu=0", "&menu=7", "&menu=-403", "&menu=4711", "&menu=x", "&menu=", "&menu=403 ",
          "&menu=403&menu=403", "", "&menu=9223372036854775808", "&menu=403\x01", "&menu=\xC3\x28"}) {
        EXPECT_EQ(world->ask("wms_permission/set_checked", user + rest, chief).body, "0") << rest;
        EXPECT_EQ(world->ask("wms_permission/set_unchecked", user + rest, chief).body, "0") << rest;
    }
    for (const std::string wish : {"", "user=", "user=0", "user=-1", "user=x", "user=9223372036854775808"}) {
        EXPECT_EQ(world->ask("wms_permission/get_permission", wish, chief).body, "[]") << wish;
        EXPECT_EQ(world->ask("wms_permission/set_checked", wish + "&menu=403", chief).body, "0") << wish;
    }
    EXPECT_EQ(number("SELECT count(*) FROM user_grant"), 0);
}

TEST_P(permission_test, the_tree_is_the_whole_menu_hidden_rows_too) {
    run("UPDATE menu SET shown = 0 WHERE id = 403");
    std::set<std::string> ids;
    std::int64_t hidden = 0;
    const std::function<void(const boost::json::value&)> walk = [&](const boost::json::value& rows) {
        for (const auto& row : rows.as_array()) {
            EXPECT_TRUE(ids.insert(std::string(row.at("id").as_string())).second);
            hidden += row.at("show").as_string() == "0";
            walk(row.at("child"));
        }
    };
    const auto text = tree(chief);
    walk(boost::json::parse(text));
    EXPECT_EQ(static_cast<std::int64_t>(ids.size()), number("SELECT count(*) FROM menu"));
    EXPECT_EQ(hidden, 1);
    EXPECT_EQ(text, world->ask("wms_menu/get_menu", "action=edit", world->operators_session()).body);
    EXPECT_EQ(tree(world->session_of(hand)), "[]");
    EXPECT_EQ(tree(""), "7");
}

TEST_P(permission_test, an_administrator_is_shown_with_every_row) {
    const auto rows = boost::json::parse(granted(world->principal_of(chief).user)).as_array();
    EXPECT_EQ(static_cast<std::int64_t>(rows.size()), number("SELECT count(*) FROM menu"));
}

TEST_P(permission_test, the_audit_tells_who_gave_what_to_whom) {
    check(403);
    check(403);
    uncheck(403);
    const auto deed = [&](const std::string& what) {
        return number("SELECT count(*) FROM audit WHERE what = '" + what +
                      "' AND user_id = " + std::to_string(world->principal_of(chief).user) +
                      " AND object_id = " + std::to_string(hand.user) + " AND detail = 403");
    };
    EXPECT_EQ(deed("grant"), 1);
    EXPECT_EQ(deed("revoke"), 1);
}

/** One click: which user, which row, granted or revoked. */
struct clicked {
    std::size_t user;
    std::int64_t row;
    bool on;
};

/** Three administrators click at the same time. Each has rows of his own, so the order of the words on a row
 * is known, and the last one is what must hold. */
TEST_P(permission_test, a_storm_of_clicks_ends_with_the_last_words) {
    const std::vector<std::int64_t> rows{400, 403, 40301, 40302, 40303, 40304, 404,   40401, 40402,
                                         500, 501, 50101, 100,   101,   10101, 10102, 10103, 10104};
    constexpr std::size_t clickers = 3;
    std::vector<std::string> cookies{chief};
    while (cookies.size() < clickers)
        cookies.push_back(
            world->session_of(world->make_user(company, "chief" + std::to_string(cookies.size()), 1)));
    const std::vector<domain::user_key> users{hand, world->make_user(company, "second hand", 2)};
    std::map<std::pair<std::size_t, std::int64_t>, bool> model;
    EXPECT_TRUE(rc::check([&] {
        std::vector<std::vector<clicked>> storms(clickers);
        for (std::size_t i = 0; i < clickers; ++i) {
            const auto count = *rc::gen::inRange(0, 25);
            for (int n = 0; n < count; ++n) {
                const auto own = *rc::gen::inRange<std::size_t>(0, rows.size() / clickers);
                const clicked one{*rc::gen::inRange<std::size_t>(0, users.size()), rows[own * clickers + i],
                                  *rc::gen::arbitrary<bool>()};
                storms[i].push_back(one);
                model[{one.user, one.row}] = one.on;
            }
        }
        std::atomic<int> refused{0};
        std::vector<std::thread> threads;
        for (std::size_t i = 0; i < clickers; ++i) {
            threads.emplace_back([&, i] {
                for (const auto& one : storms[i]) {
                    const auto* action =
                        one.on ? "wms_permission/set_checked" : "wms_permission/set_unchecked";
                    refused +=
                        world->ask(action, body(users[one.user].user, one.row), cookies[i]).body != "1";
                }
            });
        }
        for (auto& one : threads)
            one.join();
        RC_ASSERT(refused == 0);
        for (std::size_t user = 0; user < users.size(); ++user) {
            std::string wanted;
            for (const auto& [key, on] : model)
                if (on && key.first == user)
                    wanted +=
                        (wanted.empty() ? "" : ",") + (R"({"menu":")" + std::to_string(key.second) + "\"}");
            RC_ASSERT(granted(users[user].user) == "[" + wanted + "]");
        }
    }));
}

INSTANTIATE_TEST_SUITE_P(engines, permission_test, testing::ValuesIn(engines()));

} // namespace
} // namespace tavrok::test
