#include <gtest/gtest.h>

#include <boost/json.hpp>

#include "api/harness.h"

namespace tavrok::test {
namespace {

const std::string empty_page = R"({"list":[],"total":0,"page_count":0,"page_num":1})";
const std::string not_added = R"({"http_state":0})";

class user_test : public testing::TestWithParam<std::string> {
protected:
    void SetUp() override {
        SKIP_WITHOUT(GetParam());
        world = std::make_unique<harness>(GetParam());
        cookie = world->administrator("owner");
        company = world->principal_of(cookie).company;
    }
    std::string ask(const std::string& action, const std::string& body) {
        return world->ask("user/" + action, body, cookie).body;
    }
    static std::string addition(const std::string& name, const std::string& mobile = "") {
        return "username=" + name + "&realname=真名&password=" + password_on_the_wire() +
               "&mobile=" + mobile + "&email=" + name + "@example.com&type=2&state=1";
    }
    std::string add(const std::string& name) {
        const auto got = boost::json::parse(ask("do_add", addition(name)));
        return std::string(got.at("insert_id").as_string());
    }
    static std::string edition(const std::string& id, const std::string& password = "", int state = 1) {
        return "&realname=新" + (password.empty() ? "" : "&password=" + password) + "&mobile=&email=mail" +
               id + "@example.com&state=" + std::to_string(state) + "&id=" + id;
    }
    bool logs_in(const std::string& name, const std::string& typed) {
        const auto body = "username=" + name + "&password=" + domain::md5_hex(typed);
        return !world->ask("login/check_login", body, "").cookie.empty();
    }
    boost::json::value page(const std::string& body) { return boost::json::parse(ask("get_page", body)); }
    std::int64_t users() { return page("page_num=1&page_size=1").at("total").as_int64(); }

    std::unique_ptr<harness> world;
    std::string cookie;
    std::int64_t company{0};
};

TEST_P(user_test, an_added_user_is_listed_in_the_client_s_form_and_logs_in) {
    const auto answer = ask("do_add", addition("Anna", "13800000001"));
    const auto id = std::string(boost::json::parse(answer).at("insert_id").as_string());
    EXPECT_EQ(answer, "{\"http_state\":1,\"insert_id\":\"" + id +
                          "\",\"datetime\":" + std::to_string(world->now.load()) + "}");
    EXPECT_EQ(ask("get_page", "username=ann&realname=&type=2&state=1&page_num=1&page_size=20"),
              "{\"list\":[{\"id\":\"" + id +
                  "\",\"username\":\"Anna\",\"realname\":\"真名\",\"type\":\"2\",\"mobile\":\"13800000001\","
                  "\"email\":\"Anna@example.com\",\"state\":\"1\",\"last_login_time\":0,\"reg_time\":" +
                  std::to_string(world->now.load()) + "}],\"total\":1,\"page_count\":1,\"page_num\":1}");
    EXPECT_TRUE(logs_in("Anna", harness::password));
    EXPECT_EQ(page("page_num=1&page_size=20").at("list").at(0).at("last_login_time").as_int64(),
              world->now.load());
}

TEST_P(user_test, the_search_leaves_out_what_is_empty_or_zero) {
    add("anna");
    for (const char* body :
         {"page_num=1&page_size=20", "&realname=&page_num=1&page_size=20",
          "&type=0&state=0&page_num=1&page_size=20", "username=&realname=&type=0&page_num=-1&page_size=20"})
        EXPECT_EQ(page(body).at("total").as_int64(), 2) << body;
    EXPECT_EQ(page("&type=1&page_num=1&page_size=20").at("total").as_int64(), 1);
    EXPECT_EQ(page("&state=2&page_num=1&page_size=20").at("total").as_int64(), 0);
    EXPECT_EQ(page("&realname=真&page_num=1&page_size=20").at("total").as_int64(), 1);
}

TEST_P(user_test, what_is_no_user_is_refused) {
    const auto id = add("anna");
    const auto stranger =
        std::to_string(world->make_user(world->make_company("elsewhere"), "stranger", 2).user);
    const auto with = [](std::string body, const std::string& from, const std::string& to) {
        return body.replace(body.find(from), from.size(), to);
    };
    const auto good = addition("berta");
    for (const auto& bad :
         {with(good, "type=2", "type=1"), with(good, "type=2", "type=3"), with(good, "state=1", "state=0"),
          with(good, "&state=1", ""), with(good, "username=berta", "username="),
          with(good, "username=berta", "username=ANNA"), with(good, "berta@example.com", "no address"),
          with(good, "berta@example.com", ""), with(good, "berta@example.com", "ANNA@example.com"),
          with(good, password_on_the_wire(), "plain"), with(good, password_on_the_wire(), ""),
          with(good, "真名", std::string(101, 'x')), with(good, "真名", "a\x01"), with(good, "真名", "\xFF"),
          with(good, "username=berta", "username=" + std::string(101, 'x'))})
        EXPECT_EQ(ask("do_add", bad), not_added) << bad;
    for (const auto& bad :
         {edition("987654321"), edition("0"), edition(stranger), edition(id, "", 3), edition(id, "", 0),
          with(edition(id), "mail" + id + "@example.com", "x"), with(edition(id), "&mobile=", "&mobile=me"),
          edition(id, std::string(1001, 'x')), edition(id, "a\x01"), with(edition(id), "新", "\xFF"),
          with(edition(id), "&id=" + id, "")})
        EXPECT_EQ(ask("do_edit", bad), "0") << bad;
    for (const auto& bad : {std::string("id=987654321"), "id=" + stranger, std::string("id=-1"),
                            "id=" + id + "x", std::string("id=99999999999999999999")})
        EXPECT_EQ(ask("do_delete", bad), "0") << bad;
    for (const char* bad : {"type=3&page_num=1&page_size=20", "state=3&page_num=1&page_size=20",
                            "type=x&page_num=1&page_size=20", "page_num=1&page_size=201", "page_num=1",
                            "username=\xFF&page_num=1&page_size=20"})
        EXPECT_EQ(ask("get_page", bad), empty_page) << bad;
    EXPECT_EQ(users(), 2);
}

TEST_P(user_test, an_edit_without_a_password_keeps_the_old_one) {
    const auto id = add("anna");
    EXPECT_EQ(ask("do_edit", edition(id)), "1");
    EXPECT_TRUE(logs_in("anna", harness::password));
    EXPECT_EQ(ask("do_edit", "&realname=a&password=&mobile=&email=a@b.cn&state=1&id=" + id), "1");
    EXPECT_TRUE(logs_in("anna", harness::password));
}

TEST_P(user_test, an_edit_takes_the_password_as_it_was_typed) {
    const auto id = add("anna");
    for (const std::string typed : {"new secret", "a&b=c%20+\"'", "&mobile=1&email=2", "密码 é", "7"}) {
        EXPECT_EQ(ask("do_edit", edition(id, typed)), "1") << typed;
        EXPECT_TRUE(logs_in("anna", typed)) << typed;
    }
    EXPECT_FALSE(logs_in("anna", harness::password));
}

TEST_P(user_test, a_disabled_or_deleted_user_gets_the_session_code_at_once) {
    for (const bool gone : {false, true}) {
        const std::string name = gone ? "anna" : "berta";
        const auto user = world->make_user(company, name, 2, {{"user", "search"}});
        const auto own = world->session_of(user);
        const auto list = [&] { return world->ask("user/get_page", "page_num=1&page_size=1", own).body; };
        EXPECT_NE(list(), "7");
        const auto id = std::to_string(user.user);
        EXPECT_EQ(gone ? ask("do_delete", "id=" + id) : ask("do_edit", edition(id, "", 2)), "1");
        EXPECT_EQ(list(), "7");
        EXPECT_FALSE(logs_in(name, harness::password));
    }
    EXPECT_EQ(users(), 2);
}

TEST_P(user_test, nobody_disables_or_deletes_himself) {
    const auto own = std::to_string(world->principal_of(cookie).user);
    world->make_user(company, "second", 1);
    EXPECT_EQ(ask("do_edit", edition(own, "", 2)), "0");
    EXPECT_EQ(ask("do_delete", "id=" + own), "0");
    EXPECT_EQ(ask("do_edit", edition(own, "my new one")), "1");
    EXPECT_EQ(users(), 2) << "the session in which he changed his password goes on";
    EXPECT_TRUE(logs_in("owner", "my new one"));
}

TEST_P(user_test, checks_tell_what_another_has) {
    const auto id = add("Anna");
    ask("do_edit", "&realname=a&mobile=13800000001&email=Anna@example.com&state=1&id=" + id);
    for (const auto& [action, key, text] : {std::tuple("check_username", "username=", "aNNA"),
                                            {"check_mobile", "mobile=", "13800000001"},
                                            {"check_email", "email=", "ANNA@EXAMPLE.COM"}}) {
        const auto body = std::string(key) + text;
        EXPECT_EQ(ask(action, body), "1") << body;
        EXPECT_EQ(ask(action, body + "&id=" + id), "0") << body;
        EXPECT_EQ(ask(action, body + "&id=" + std::to_string(world->principal_of(cookie).user)), "1");
        EXPECT_EQ(ask(action, std::string(key) + "nobody"), "0");
        EXPECT_EQ(ask(action, std::string(key)), "0");
        EXPECT_EQ(ask(action, body + "&id=987654321"), "0") << "refused";
    }
}

TEST_P(user_test, a_request_whose_answer_was_lost_takes_effect_once) {
    auto first = world->begin({"user/do_add", addition("anna"), cookie}).get();
    first.sent(false);
    EXPECT_EQ(ask("do_add", addition("anna")), first.body);
    EXPECT_EQ(ask("do_add", addition("anna")), not_added) << "a new wish: the name is taken";
    EXPECT_EQ(users(), 2);
    const auto id = std::string(boost::json::parse(first.body).at("insert_id").as_string());
    auto gone = world->begin({"user/do_delete", "id=" + id, cookie}).get();
    gone.sent(false);
    EXPECT_EQ(ask("do_delete", "id=" + id), "1");
    EXPECT_EQ(ask("do_delete", "id=" + id), "0");
    EXPECT_EQ(users(), 1);
}

TEST_P(user_test, two_at_once_are_one) {
    auto one = world->begin({"user/do_add", addition("anna"), cookie});
    auto two = world->begin({"user/do_add", addition("anna"), cookie});
    auto first = one.get();
    if (two.wait_for(std::chrono::seconds(0)) != std::future_status::ready) first.sent(false);
    EXPECT_EQ(two.get().body, first.body);
    EXPECT_EQ(users(), 2);
}

TEST_P(user_test, the_database_keeps_no_plain_hash_of_a_body_with_a_password) {
    const auto body = edition(add("Anna"), password_on_the_wire());
    EXPECT_EQ(ask("do_edit", body), "1");
    const auto kept = [&](const std::string& hash) {
        std::int64_t count = -1;
        store::read_now(*world->database, [&](store::connection& db) {
            db.query({"", "SELECT count(*) FROM repeat_record WHERE body_hash = ?"}, {hash},
                     [&](const store::row& one) { count = one.integer(0); });
        });
        return count;
    };
    EXPECT_EQ(kept(domain::token_hash(body)), 0);
    EXPECT_EQ(kept(domain::body_hash(harness::pepper, body)), 1);
}

INSTANTIATE_TEST_SUITE_P(engines, user_test, testing::ValuesIn(engines()));

} // namespace
} // namespace tavrok::test
