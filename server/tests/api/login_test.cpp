#include <gtest/gtest.h>

#include <boost/json.hpp>
#include <thread>

#include "api/harness.h"

namespace tavrok::test {
namespace {

const std::string refusal = R"({"user":{"username":""},"wms_permission":[]})";

class login_test : public testing::TestWithParam<std::string> {
protected:
    void SetUp() override {
        SKIP_WITHOUT(GetParam());
        world = std::make_unique<harness>(GetParam());
        company = world->make_company("house");
    }
    static std::string body(const std::string& name, const std::string& password) {
        return "username=" + name + "&password=" + password;
    }
    reply log_in(const std::string& name) {
        return world->ask("login/check_login", body(name, password_on_the_wire()), "");
    }
    /** The re-login secret in a login answer. */
    static std::string secret_of(const reply& login) {
        return std::string(boost::json::parse(login.body).at("user").at("password").as_string());
    }
    std::string menu(const std::string& cookie) {
        return world->ask("wms_menu/get_menu", "action=list", cookie).body;
    }

    std::unique_ptr<harness> world;
    std::int64_t company{0};
};

TEST_P(login_test, the_answer_is_what_the_client_reads) {
    const auto user = world->make_user(company, "wang", 2, {{"company_client", "search"}});
    const auto got = log_in("wang");
    const auto json = boost::json::parse(got.body);
    const auto secret = secret_of(got);
    EXPECT_EQ(secret.size(), 64u);
    std::string rows;
    ASSERT_EQ(json.at("wms_permission").as_array().size(), 3u);
    for (const auto& row : json.at("wms_permission").as_array()) {
        if (!rows.empty()) rows += ",";
        rows += "{\"id\":\"" + std::string(row.at("id").as_string()) + "\",\"action\":\"" +
                std::string(row.at("action").as_string()) + "\"}";
    }
    EXPECT_NE(rows.find("\"action\":\"company_client\""), std::string::npos);
    EXPECT_NE(rows.find("\"action\":\"search\""), std::string::npos);
    EXPECT_EQ(got.body, "{\"user\":{\"username\":\"wang\",\"password\":\"" + secret + "\",\"user_id\":\"" +
                            std::to_string(user.user) + "\",\"realname\":\"wang real\",\"type\":\"2\"}," +
                            "\"wms_permission\":[" + rows + "]}");
    EXPECT_EQ(got.cookie.size(), 64u);
    EXPECT_NE(got.cookie, secret);
    EXPECT_EQ(got.content_type, "application/json");
    EXPECT_NE(menu(got.cookie), "7");
}

TEST_P(login_test, an_administrator_gets_every_row) {
    world->make_user(company, "boss", 1);
    const auto json = boost::json::parse(log_in("boss").body);
    EXPECT_GT(json.at("wms_permission").as_array().size(), world->all_grants().size());
    EXPECT_EQ(json.at("user").at("type").as_string(), "1");
}

TEST_P(login_test, nobody_learns_why_he_is_refused) {
    world->make_user(company, "boss", 1);
    world->make_user(company, "wang", 2);
    const auto off = world->make_user(company, "off", 2);
    store::write_now(*world->database,
                     [&](store::connection& db) { domain::disable_user(db, off, world->now); });
    const std::string wrong(32, '0');
    int address = 100; // one for each, as an address with too many failures is slowed down
    for (const auto& typed :
         {body("nobody", password_on_the_wire()), body("wang", wrong), body("off", password_on_the_wire()),
          body("WANG", password_on_the_wire()), body("", ""), std::string("username=wang"),
          std::string("nonsense"), std::string()}) {
        const auto peer = "192.0.2." + std::to_string(++address);
        const auto got = world->ask({"login/check_login", typed, "", peer});
        EXPECT_EQ(got.body, refusal) << typed;
        EXPECT_EQ(got.cookie, "") << typed;
    }
    EXPECT_NE(log_in("wang").body, refusal);
}

TEST_P(login_test, each_login_makes_a_session_of_its_own) {
    world->make_user(company, "wang", 2);
    const auto one = log_in("wang");
    const auto two = log_in("wang");
    EXPECT_NE(one.cookie, two.cookie);
    EXPECT_NE(secret_of(one), secret_of(two));
    EXPECT_NE(menu(one.cookie), "7");
    EXPECT_NE(menu(two.cookie), "7");
}

TEST_P(login_test, the_secret_is_for_the_quiet_login_only) {
    world->make_user(company, "wang", 2);
    const auto login = log_in("wang");
    const auto secret = secret_of(login);
    EXPECT_EQ(world->ask("login/check_login", body("wang", secret), "").body, refusal);
    EXPECT_EQ(world->ask("wms/check_login", body("wang", password_on_the_wire()), "").cookie, "");
    world->now += 9 * 3600;
    EXPECT_EQ(menu(login.cookie), "7");
    const auto quiet = world->ask("wms/check_login", body("wang", secret), login.cookie);
    EXPECT_EQ(quiet.body, "1");
    EXPECT_EQ(quiet.cookie.size(), 64u);
    EXPECT_NE(quiet.cookie, login.cookie);
    EXPECT_NE(menu(quiet.cookie), "7");
}

TEST_P(login_test, a_quiet_login_is_refused_without_a_word) {
    world->make_user(company, "wang", 2);
    world->make_user(company, "li", 2);
    const auto secret = secret_of(log_in("wang"));
    for (const auto& typed :
         {body("", ""), body("li", secret), body("wang", secret + "0"), std::string("x=1")}) {
        const auto got = world->ask("wms/check_login", typed, "");
        EXPECT_EQ(got.body, "0") << typed;
        EXPECT_EQ(got.cookie, "");
    }
    world->now += 24 * 3600 + 1;
    EXPECT_EQ(world->ask("wms/check_login", body("wang", secret), "").body, "0");
}

TEST_P(login_test, a_new_password_ends_sessions_and_secrets) {
    const auto user = world->make_user(company, "wang", 2);
    const auto login = log_in("wang");
    store::write_now(*world->database, [&](store::connection& db) {
        domain::set_password(db, user, domain::hash_password("another", std::string(32, '1')), world->now);
    });
    EXPECT_EQ(menu(login.cookie), "7");
    EXPECT_EQ(world->ask("wms/check_login", body("wang", secret_of(login)), "").body, "0");
    EXPECT_EQ(log_in("wang").body, refusal);
}

TEST_P(login_test, five_failures_slow_the_name_down_and_no_thread_waits) {
    world->make_user(company, "wang", 2);
    const wish wrong{"login/check_login", body("wang", std::string(32, '0'))};
    for (int i = 0; i < 5; ++i)
        EXPECT_EQ(world->ask(wrong).body, refusal);
    auto held = world->begin({"login/check_login", body("wang", password_on_the_wire())});
    while (world->timer.waiting() == 0)
        std::this_thread::yield();
    EXPECT_NE(held.wait_for(std::chrono::seconds(0)), std::future_status::ready);
    world->timer.turn(std::chrono::milliseconds(999));
    EXPECT_NE(held.wait_for(std::chrono::seconds(0)), std::future_status::ready);
    world->timer.turn(std::chrono::milliseconds(1));
    EXPECT_EQ(held.get().body, refusal);
    world->now += 16 * 60;
    EXPECT_NE(log_in("wang").body, refusal);
}

TEST_P(login_test, a_service_that_ends_lets_nobody_wait) {
    world->make_user(company, "wang", 2);
    const wish wrong{"login/check_login", body("wang", std::string(32, '0'))};
    auto own_timer = api::service::make(*world->database, {}, [this] { return world->now.load(); });
    std::vector<std::future<std::string>> answers;
    for (int i = 0; i < 6; ++i) {
        auto promise = std::make_shared<std::promise<std::string>>();
        answers.push_back(promise->get_future());
        own_timer->handle({"POST", wrong.path, wrong.body, "", "192.0.2.1", "1"},
                          [promise](http::response out) { promise->set_value(out.body); });
        if (i < 5) answers.back().wait();
    }
    own_timer->drain();
    for (auto& one : answers)
        EXPECT_EQ(one.get(), refusal);
}

TEST_P(login_test, a_session_ends_after_eight_hours_unused) {
    const auto user = world->make_user(company, "wang", 2);
    const auto cookie = world->session_of(user);
    world->now += 8 * 3600 - 1;
    EXPECT_NE(menu(cookie), "7");
    world->replace_service();
    world->now += 8 * 3600 - 1;
    EXPECT_NE(menu(cookie), "7") << "the request in between was not noted";
    world->replace_service();
    world->now += 8 * 3600 + 1;
    EXPECT_EQ(menu(cookie), "7");
}

TEST_P(login_test, a_session_ends_after_a_day_in_all) {
    const auto cookie = world->session_of(world->make_user(company, "wang", 2));
    for (int hour = 1; hour < 24; ++hour) {
        world->now += 3600;
        EXPECT_NE(menu(cookie), "7") << hour;
        world->replace_service();
    }
    world->now += 3601;
    EXPECT_EQ(menu(cookie), "7");
}

TEST_P(login_test, use_is_noted_once_a_minute_at_most) {
    const auto cookie = world->session_of(world->make_user(company, "wang", 2));
    const auto begun = world->now.load();
    menu(cookie);
    world->now += 59;
    menu(cookie);
    EXPECT_EQ(world->timer.waiting(), 0u);
    world->now += 2;
    menu(cookie);
    menu(cookie);
    EXPECT_EQ(world->timer.waiting(), 1u);
    EXPECT_EQ(world->principal_of(cookie).last_used, begun);
    world->replace_service();
    EXPECT_EQ(world->principal_of(cookie).last_used, begun + 61);
}

INSTANTIATE_TEST_SUITE_P(engines, login_test, testing::ValuesIn(engines()));

} // namespace
} // namespace tavrok::test
