#include <gtest/gtest.h>

#include "api/harness.h"
#include "domain/sign_up.h"

namespace tavrok::test {
namespace {

const std::string nothing_taken = R"({"company":0,"username":0,"mobile":0,"email":0,"captcha":1})";
const std::string no_marks = R"({"company":0,"username":0,"mobile":0,"email":0,"captcha":0})";

std::string state(int number) {
    return "{\"state\":" + std::to_string(number) + "}";
}

/** What the dialog sends. */
struct filled {
    std::string company{"霁岚新客户有限公司"};
    std::string username{"newboss"};
    std::string mobile{"13800000009"};
    std::string email{"newboss@example.com"};
    std::string captcha{"ACE34"};
    std::string phone{"0193-5550009"};
    std::string reg_time{"1586696219"};
    std::string password{password_on_the_wire()};

    std::string body() const {
        return "company=" + company + "&phone=" + phone + "&address=澜杉市&username=" + username +
               "&password=" + password + "&realname=戚望舒&mobile=" + mobile + "&email=" + email +
               "&reg_time=" + reg_time + "&captcha=" + captcha;
    }
};

class user_reg_test : public testing::TestWithParam<std::string> {
protected:
    void SetUp() override {
        SKIP_WITHOUT(GetParam());
        start({});
    }
    void start(api::settings options) {
        world = std::make_unique<harness>(GetParam(), std::move(options));
        visitor = picture().cookie;
        read();
    }
    reply picture(const std::string& cookie = "") {
        return world->ask({"user_reg/captcha_data", "", cookie, "192.0.2.9", "GET"});
    }
    /** As if the picture that the visitor was shown had said ACE34. */
    void read(const std::string& cookie = "") {
        store::write_now(*world->database, [&](store::connection& db) {
            domain::keep_captcha(db, cookie.empty() ? visitor : cookie, "ACE34", world->now);
        });
    }
    std::string check(const filled& what) {
        return world->ask("user_reg/check_reg_exist", what.body(), visitor).body;
    }
    std::string sign_up(const filled& what) {
        return world->ask("user_reg/do_reg", what.body(), visitor).body;
    }
    std::int64_t number(const std::string& sql) {
        std::int64_t found = -1;
        store::read_now(*world->database, [&](store::connection& db) {
            db.query({"test " + sql, sql}, {}, [&](const store::row& one) { found = one.integer(0); });
        });
        return found;
    }

    std::unique_ptr<harness> world;
    std::string visitor;
};

TEST_P(user_reg_test, a_picture_is_a_png_with_a_cookie_that_is_no_session) {
    const auto first = picture();
    EXPECT_EQ(first.content_type, "image/png");
    EXPECT_EQ(first.body.substr(0, 8), "\x89PNG\r\n\x1a\n");
    EXPECT_EQ(first.cookie.size(), 64u);
    EXPECT_EQ(world->ask("wms_menu/get_menu", "action=list", first.cookie).body, "7");
    EXPECT_EQ(world->ask("user/get_page", "page_num=1&page_size=1", first.cookie).body, "7");
    const auto second = picture();
    EXPECT_NE(second.body, first.body);
    EXPECT_NE(second.cookie, first.cookie);
    const auto again = picture(first.cookie);
    EXPECT_EQ(again.cookie, "") << "who has a cookie keeps it";
    EXPECT_NE(again.body, first.body);
    EXPECT_EQ(number("SELECT count(*) FROM captcha"), 3);
}

TEST_P(user_reg_test, a_customer_signs_up_and_logs_in) {
    EXPECT_EQ(check({}), nothing_taken);
    EXPECT_EQ(sign_up({}), state(5));
    const auto body = "username=newboss&password=" + password_on_the_wire();
    const auto login = world->ask("login/check_login", body, visitor);
    ASSERT_EQ(login.cookie.size(), 64u);
    EXPECT_NE(login.cookie, visitor);
    EXPECT_TRUE(world->principal_of(login.cookie).administrator);
    EXPECT_EQ(world->ask("user/get_page", "page_num=1&page_size=20", login.cookie).body,
              "{\"list\":[{\"id\":\"1001\",\"username\":\"newboss\",\"realname\":\"戚望舒\",\"type\":\"1\","
              "\"mobile\":\"13800000009\",\"email\":\"newboss@example.com\",\"state\":\"1\","
              "\"last_login_time\":" +
                  std::to_string(world->now.load()) + ",\"reg_time\":" + std::to_string(world->now.load()) +
                  "}],\"total\":1,\"page_count\":1,\"page_num\":1}");
}

TEST_P(user_reg_test, the_answers_name_what_is_taken) {
    sign_up({});
    read();
    EXPECT_EQ(check({}), R"({"company":1,"username":1,"mobile":1,"email":1,"captcha":1})");
    EXPECT_EQ(check({.captcha = "WRONG"}), no_marks);
    EXPECT_EQ(check({.company = "另一家", .mobile = "13800000010"}),
              R"({"company":0,"username":1,"mobile":0,"email":1,"captcha":1})");
    EXPECT_EQ(sign_up({.company = "另一家", .mobile = "13800000010"}), state(2));
    EXPECT_EQ(sign_up({.username = "other"}), state(4));
    EXPECT_EQ(sign_up({.captcha = "WRONG"}), state(3));
    EXPECT_EQ(number("SELECT count(*) FROM company"), 1);
}

TEST_P(user_reg_test, without_the_cookie_of_the_picture_nothing_is_read_rightly) {
    for (const auto& other : {std::string(), std::string(64, 'a'), picture().cookie}) {
        EXPECT_EQ(world->ask("user_reg/check_reg_exist", filled().body(), other).body, no_marks);
        EXPECT_EQ(world->ask("user_reg/do_reg", filled().body(), other).body, state(3));
    }
    EXPECT_EQ(check({}), nothing_taken);
}

TEST_P(user_reg_test, a_living_session_may_read_a_picture_too) {
    const auto cookie = world->administrator("owner");
    EXPECT_EQ(picture(cookie).cookie, "");
    read(cookie);
    EXPECT_EQ(world->ask("user_reg/check_reg_exist", filled().body(), cookie).body, nothing_taken);
    EXPECT_NE(world->ask("wms_menu/get_menu", "action=list", cookie).body, "7");
}

TEST_P(user_reg_test, six_attempts_void_the_picture) {
    for (int i = 0; i < 6; ++i)
        EXPECT_EQ(check({}), nothing_taken);
    EXPECT_EQ(check({}), no_marks);
    EXPECT_EQ(sign_up({}), state(3));
    picture(visitor);
    EXPECT_EQ(check({}), no_marks) << "another picture, another text";
    read();
    EXPECT_EQ(sign_up({}), state(5));
}

TEST_P(user_reg_test, a_picture_is_spent_after_five_minutes) {
    world->now += 300;
    EXPECT_EQ(check({}), no_marks);
    EXPECT_EQ(sign_up({}), state(3));
}

TEST_P(user_reg_test, a_form_that_cannot_be_is_no_sign_up) {
    for (const auto& bad :
         {filled{.company = ""}, filled{.company = " x"}, filled{.username = ""},
          filled{.username = std::string(101, 'x')}, filled{.mobile = "138"}, filled{.mobile = ""},
          filled{.email = "x"}, filled{.email = ""}, filled{.phone = "call"}, filled{.reg_time = "now"},
          filled{.reg_time = ""}, filled{.password = "plain"}, filled{.company = "a\x01"},
          filled{.company = "\xFF"}, filled{.company = std::string(201, 'x')}})
        EXPECT_EQ(sign_up(bad), state(6)) << bad.body();
    EXPECT_EQ(world->ask("user_reg/do_reg", "company=a", visitor).body, state(6));
    EXPECT_EQ(number("SELECT count(*) FROM company"), 0);
    EXPECT_EQ(sign_up({.phone = "", .reg_time = "-5"}), state(5)) << "nor does it cost an attempt";
}

TEST_P(user_reg_test, a_request_that_comes_twice_is_one_sign_up) {
    const wish asked{"user_reg/do_reg", filled().body(), visitor};
    auto one = world->begin(asked);
    auto two = world->begin(asked);
    EXPECT_EQ(one.get().body, state(5));
    EXPECT_EQ(two.get().body, state(5));
    world->now += 60;
    world->replace_service();
    EXPECT_EQ(world->ask(asked).body, state(5)) << "another instance knows it too";
    EXPECT_EQ(number("SELECT count(*) FROM company"), 1);
    world->now += 60;
    EXPECT_EQ(world->ask(asked).body, state(3));
}

TEST_P(user_reg_test, many_sign_ups_with_one_name_at_once_make_one_company) {
    std::vector<std::future<reply>> pending;
    for (int i = 0; i < 8; ++i) {
        const auto number = std::to_string(i);
        const auto cookie = "visitor " + number;
        read(cookie);
        pending.push_back(world->begin(
            {"user_reg/do_reg",
             filled{.username = "u" + number, .mobile = "1380000001" + number, .email = number + "@b.cn"}
                 .body(),
             cookie}));
    }
    int won = 0;
    for (auto& one : pending) {
        const auto body = one.get().body;
        if (body == state(5)) {
            ++won;
        } else {
            EXPECT_EQ(body, state(4));
        }
    }
    EXPECT_EQ(won, 1);
    EXPECT_EQ(number("SELECT count(*) FROM company"), 1);
    EXPECT_EQ(number("SELECT count(*) FROM app_user"), 1);
}

TEST_P(user_reg_test, a_full_queue_refuses_pictures_and_sign_ups) {
    visitor = "a cookie";
    api::settings none;
    none.hashing_limit = 0;
    none.picture_limit = 0;
    world = std::make_unique<harness>(GetParam(), none);
    const auto got = picture();
    EXPECT_EQ(got.body, "");
    EXPECT_EQ(got.cookie, "");
    EXPECT_EQ(world->counted("user_reg/captcha_data", "refused"), 1);
    read();
    EXPECT_EQ(check({}), nothing_taken) << "which needs no hashing";
    EXPECT_EQ(sign_up({}), state(6));
    EXPECT_EQ(number("SELECT count(*) FROM company"), 0);
}

TEST_P(user_reg_test, pictures_do_not_wait_for_passwords_nor_passwords_for_pictures) {
    api::settings none;
    none.hashing_limit = 0;
    start(none);
    EXPECT_EQ(picture().content_type, "image/png");
    EXPECT_NE(picture().body, "");
    none = {};
    none.picture_limit = 0;
    visitor = "a cookie";
    world = std::make_unique<harness>(GetParam(), none);
    EXPECT_EQ(picture().body, "");
    read();
    EXPECT_EQ(sign_up({}), state(5));
}

TEST_P(user_reg_test, an_address_gets_twenty_pictures_and_then_one_every_three_seconds) {
    for (int i = 1; i < 20; ++i) // the first one was shown at the start
        EXPECT_NE(picture(visitor).body, "") << i;
    EXPECT_EQ(picture(visitor).body, "");
    EXPECT_EQ(picture().cookie, "") << "another cookie is no other address";
    EXPECT_EQ(world->counted("user_reg/captcha_data", "refused"), 2);
    EXPECT_NE(world->ask({"user_reg/captcha_data", "", "", "192.0.2.10", "GET"}).body, "");
    world->now += 3;
    EXPECT_NE(picture(visitor).body, "");
    EXPECT_EQ(picture(visitor).body, "");
}

TEST_P(user_reg_test, an_address_gets_thirty_attempts_and_then_one_every_two_seconds) {
    filled wrong;
    wrong.captcha = "x";
    for (int i = 0; i < 15; ++i) {
        check(wrong);
        sign_up(wrong);
    }
    read();
    EXPECT_EQ(check({}), no_marks);
    EXPECT_EQ(sign_up({}), state(6));
    EXPECT_EQ(number("SELECT attempts FROM captcha"), 0) << "they did not reach the database";
    EXPECT_EQ(number("SELECT count(*) FROM company"), 0);
    world->now += 2;
    EXPECT_EQ(check({}), nothing_taken);
    EXPECT_EQ(sign_up({}), state(6));
    world->now += 2;
    EXPECT_EQ(sign_up({}), state(5));
}

TEST_P(user_reg_test, the_database_keeps_no_plain_hash_of_a_sign_up) {
    EXPECT_EQ(sign_up({}), state(5));
    const auto kept = [&](const std::string& hash) {
        return number("SELECT count(*) FROM captcha WHERE used_for = '" + hash + "' OR fitted_for = '" +
                      hash + "'");
    };
    EXPECT_EQ(kept(domain::token_hash(filled().body())), 0);
    EXPECT_EQ(kept(domain::body_hash(harness::pepper, filled().body())), 1);
}

INSTANTIATE_TEST_SUITE_P(engines, user_reg_test, testing::ValuesIn(engines()));

} // namespace
} // namespace tavrok::test
