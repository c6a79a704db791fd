#include <algorithm>
#include <atomic>
#include <future>

#include "domain/check.h"
#include "domain/passwords.h"
#include "domain/refused.h"
#include "domain/scene.h"
#include "domain/sign_up.h"
#include "domain/users.h"

namespace tavrok::domain {
namespace {

using test::g_now;

/** What two instances of the service do at the same instant. */
class user_races : public test::on_engine {
protected:
    void SetUp() override {
        on_engine::SetUp();
        if (IsSkipped()) return;
        in = std::make_unique<test::scene>(GetParam());
        // SQLite knows one instance only: there the two writes of one service stand in a row.
        if (GetParam() != "sqlite") m_second = store::open(in->database().options());
    }

    store::database& other() { return m_second ? *m_second : *in->database(); }

    /** Runs both, so that `first` has done its work and not yet committed when `second` starts; on PostgreSQL
     * `first` commits when `second` stands waiting for it. Gives what `second` failed with. */
    std::exception_ptr meet(const store::job& first, const store::job& second) {
        std::promise<std::exception_ptr> ended;
        auto result = ended.get_future();
        std::atomic<bool> started{false};
        store::write_now(*in->database(), [&](store::connection& with) {
            first(with);
            if (started.exchange(true)) return;
            other().write(second, [&](std::exception_ptr failure) { ended.set_value(failure); });
            if (m_second) {
                EXPECT_TRUE(stands_waiting()) << "the second did not have to wait for the first";
            }
        });
        return result.get();
    }

    /** What `work` gives on the second instance, in a transaction of its own. */
    template <typename what_t>
    auto after(what_t work) {
        decltype(work(std::declval<store::connection&>())) made{};
        store::write_now(other(), [&](store::connection& with) { made = work(with); });
        return made;
    }

    std::unique_ptr<test::scene> in;

private:
    bool stands_waiting() {
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(2);
        while (std::chrono::steady_clock::now() < deadline) {
            bool waits = false;
            store::read_now(other(), [&](store::connection& with) {
                with.query({"test_waits",
                            "SELECT 1 FROM pg_stat_activity WHERE datname = current_database() AND "
                            "wait_event_type = 'Lock'"},
                           {}, [&](const store::row&) { waits = true; });
            });
            if (waits) return true;
        }
        return false;
    }

    std::unique_ptr<store::database> m_second;
};
ON_EVERY_ENGINE(user_races);

sign_up_form form_of(const std::string& name) {
    return {"公司 " + name,        "",     "", "user " + name, md5_hex("x"), "名", "1380000000" + name,
            name + "@example.com", "ACE34"};
}

/** Two visitors whose forms agree in one field. */
struct agreement {
    const char* name;
    std::string sign_up_form::*field;
    sign_up_state told;
};

const agreement g_agreements[] = {{"company", &sign_up_form::company, sign_up_state::data_taken},
                                  {"username", &sign_up_form::username, sign_up_state::username_taken},
                                  {"mobile", &sign_up_form::mobile, sign_up_state::data_taken},
                                  {"email", &sign_up_form::email, sign_up_state::data_taken}};

bool is_refusal(const std::exception_ptr& failure) {
    if (!failure) return false;
    try {
        std::rethrow_exception(failure);
    } catch (const refused&) {
        return true;
    } catch (...) {
        return false;
    }
}

bool is_unique_error(const std::exception_ptr& failure) {
    if (!failure) return false;
    try {
        std::rethrow_exception(failure);
    } catch (const store::error& error) {
        return error.kind() == store::error_kind::unique;
    } catch (...) {
        return false;
    }
}

TEST_P(user_races, of_two_sign_ups_that_agree_in_anything_exactly_one_wins) {
    int number = 0;
    for (const auto& one : g_agreements) {
        auto first = form_of(std::to_string(number++));
        auto second = form_of(std::to_string(number++));
        second.*one.field = first.*one.field;
        in->write([&](store::connection& with) {
            keep_captcha(with, "one", "ACE34", g_now);
            keep_captcha(with, "two", "ACE34", g_now);
        });
        const auto before = in->number("SELECT count(*) FROM company");
        sign_up_state won{};
        sign_up_state lost{};
        const auto late = [&](store::connection& with) {
            return lost = complete_sign_up(with, "two", "r2", second, "hash", g_now);
        };
        const auto failure = meet(
            [&](store::connection& with) { won = complete_sign_up(with, "one", "r1", first, "hash", g_now); },
            [&](store::connection& with) { late(with); });
        EXPECT_EQ(won, sign_up_state::done) << one.name;
        if (failure) {
            EXPECT_TRUE(is_unique_error(failure)) << one.name;
            EXPECT_NE(GetParam(), "sqlite");
            after(late);
        }
        EXPECT_EQ(lost, one.told) << one.name;
        EXPECT_EQ(in->number("SELECT count(*) FROM company"), before + 1) << one.name;
    }
    in->read([](store::connection& with) {
        for (const auto& one : check(with))
            ADD_FAILURE() << one.text;
    });
}

TEST_P(user_races, a_sign_up_that_the_network_brought_twice_is_one) {
    in->write([&](store::connection& with) { keep_captcha(with, "one", "ACE34", g_now); });
    const auto form = form_of("5");
    sign_up_state told[2]{};
    const auto failure = meet(
        [&](store::connection& with) { told[0] = complete_sign_up(with, "one", "r", form, "h", g_now); },
        [&](store::connection& with) { told[1] = complete_sign_up(with, "one", "r", form, "h", g_now); });
    EXPECT_FALSE(failure);
    EXPECT_EQ(told[0], sign_up_state::done);
    EXPECT_EQ(told[1], sign_up_state::done);
    EXPECT_EQ(in->number("SELECT count(*) FROM company"), 2);
}

TEST_P(user_races, attempts_at_one_picture_are_all_counted) {
    in->write([&](store::connection& with) { keep_captcha(with, "one", "ACE34", g_now); });
    auto wrong = form_of("5");
    wrong.captcha = "x";
    const auto ask = [&](store::connection& with) { question_sign_up(with, "one", wrong, g_now); };
    for (int i = 0; i < 3; ++i)
        EXPECT_FALSE(meet(ask, ask));
    EXPECT_FALSE(after([&](store::connection& with) {
                     return question_sign_up(with, "one", form_of("5"), g_now);
                 }).captcha);
}

TEST_P(user_races, two_administrators_cannot_take_each_other_away) {
    const auto second = in->user(in->company, "second", 1);
    const auto boss = in->log_in(in->boss);
    const auto other_boss = in->log_in(second);
    const auto disable = [](std::int64_t id) {
        return user_change{id, "n", "", std::to_string(id) + "@example.com", 2, ""};
    };
    const auto failure =
        meet([&](store::connection& with) { edit_user(with, boss, disable(second.user), g_now); },
             [&](store::connection& with) { edit_user(with, other_boss, disable(in->boss.user), g_now); });
    EXPECT_TRUE(is_refusal(failure));
    EXPECT_EQ(in->number("SELECT count(*) FROM app_user WHERE type = 1 AND state = 1"), 1);
}

TEST_P(user_races, two_administrators_cannot_remove_each_other) {
    const auto second = in->user(in->company, "second", 1);
    const auto boss = in->log_in(in->boss);
    const auto other_boss = in->log_in(second);
    const auto failure =
        meet([&](store::connection& with) { remove_user(with, boss, second.user, g_now); },
             [&](store::connection& with) { remove_user(with, other_boss, in->boss.user, g_now); });
    EXPECT_TRUE(is_refusal(failure));
    EXPECT_EQ(in->number("SELECT count(*) FROM app_user WHERE type = 1 AND removed_at IS NULL"), 1);
}

TEST_P(user_races, a_login_under_way_does_not_outlive_a_new_password) {
    const auto boss = in->log_in(in->boss);
    const auto found =
        in->read([&](store::connection& with) { return find_candidate(with, "hand", "p", g_now); });
    bool accepted = true;
    const auto failure = meet(
        [&](store::connection& with) {
            edit_user(with, boss, {in->hand.user, "n", "", "h@example.com", 1, "another"}, g_now);
        },
        [&](store::connection& with) { accepted = complete_login(with, found, true, "p", g_now).accepted; });
    EXPECT_FALSE(failure);
    EXPECT_FALSE(accepted);
    EXPECT_EQ(in->number("SELECT count(*) FROM session WHERE user_id = " + std::to_string(in->hand.user)), 0);
}

TEST_P(user_races, a_session_made_of_a_secret_goes_with_the_secret) {
    const auto boss = in->log_in(in->boss);
    const auto found =
        in->read([&](store::connection& with) { return find_candidate(with, "hand", "p", g_now); });
    const auto login =
        in->write([&](store::connection& with) { return complete_login(with, found, true, "p", g_now); });
    const auto failure = meet(
        [&](store::connection& with) {
            EXPECT_TRUE(relogin(with, "hand", login.relogin_secret, "p", g_now).accepted);
        },
        [&](store::connection& with) {
            edit_user(with, boss, {in->hand.user, "n", "", "h@example.com", 1, "another"}, g_now);
        });
    EXPECT_FALSE(failure);
    EXPECT_EQ(in->number("SELECT count(*) FROM session WHERE user_id = " + std::to_string(in->hand.user)), 0);
    EXPECT_EQ(in->number("SELECT count(*) FROM relogin_secret"), 0);
}

TEST_P(user_races, of_two_additions_with_one_name_one_is_refused) {
    const auto boss = in->log_in(in->boss);
    const auto other_company =
        in->write([](store::connection& with) { return create_company(with, "二号", false, g_now); });
    const auto chief = in->log_in(in->user(other_company, "chief", 1));
    const auto add = [&](store::connection& with, const principal& who, const std::string& mail) {
        return add_user(with, who, {0, "same", "", "h", 2, "", mail}, g_now).id;
    };
    const auto failure = meet([&](store::connection& with) { add(with, boss, "a@example.com"); },
                              [&](store::connection& with) { add(with, chief, "b@example.com"); });
    ASSERT_TRUE(failure);
    if (GetParam() != "sqlite") {
        EXPECT_TRUE(is_unique_error(failure));
    }
    EXPECT_THROW(after([&](store::connection& with) { return add(with, chief, "b@example.com"); }), refused);
    EXPECT_EQ(in->number("SELECT count(*) FROM app_user WHERE username = 'same'"), 1);
}

} // namespace
} // namespace tavrok::domain
