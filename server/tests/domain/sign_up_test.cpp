#include "domain/sign_up.h"

#include <algorithm>
#include <set>

#include "domain/check.h"
#include "domain/passwords.h"
#include "domain/refused.h"
#include "domain/scene.h"

namespace tavrok::domain {
namespace {

using test::g_now;

const std::string g_visitor = "a cookie of a visitor";

sign_up_form some_form() {
    return {"霁岚新客户有限公司",
            "0193-5550009",
            "澜杉市栖枬路1号",
            "newboss",
            md5_hex("secret 1"),
            "戚望舒",
            "13800000009",
            "NewBoss@example.com",
            "ACE34"};
}

class sign_up : public test::on_engine {
protected:
    void SetUp() override {
        on_engine::SetUp();
        if (IsSkipped()) return;
        in = std::make_unique<test::scene>(GetParam());
        picture();
    }
    void picture(const std::string& code = "ACE34", const std::string& visitor = g_visitor) {
        in->write([&](store::connection& with) { keep_captcha(with, visitor, code, now); });
    }
    sign_up_marks question(const sign_up_form& form, const std::string& visitor = g_visitor) {
        return in->write([&](store::connection& with) { return question_sign_up(with, visitor, form, now); });
    }
    std::optional<sign_up_state> begin(const sign_up_form& form, const std::string& request = "r") {
        return in->write(
            [&](store::connection& with) { return begin_sign_up(with, g_visitor, request, form, now); });
    }
    sign_up_state complete(const sign_up_form& form, const std::string& request = "r") {
        return in->write([&](store::connection& with) {
            return complete_sign_up(with, g_visitor, request, form, "a hash", now);
        });
    }
    sign_up_state run(const sign_up_form& form, const std::string& request = "r") {
        const auto ended = begin(form, request);
        return ended ? *ended : complete(form, request);
    }
    std::int64_t companies() { return in->number("SELECT count(*) FROM company"); }

    std::unique_ptr<test::scene> in;
    std::int64_t now{g_now};
};
ON_EVERY_ENGINE(sign_up);

TEST_P(sign_up, makes_a_company_with_its_administrator_and_nothing_else) {
    EXPECT_EQ(run(some_form()), sign_up_state::done);
    const auto key = in->read([](store::connection& with) { return find_user(with, "newboss"); });
    ASSERT_TRUE(key);
    EXPECT_NE(key->company, in->company);
    const auto who = in->log_in(*key);
    EXPECT_TRUE(who.administrator);
    EXPECT_FALSE(who.operator_company);
    const auto one =
        " FROM company WHERE phone = '0193-5550009' AND address = '澜杉市栖枬路1号' AND created_at = ";
    EXPECT_EQ(in->number("SELECT count(*)" + std::string(one) + std::to_string(now)), 1);
    EXPECT_EQ(
        in->number("SELECT count(*) FROM app_user WHERE username = 'newboss' AND type = 1 AND state = 1 "
                   "AND mobile = '13800000009' AND email = 'NewBoss@example.com' "
                   "AND password_hash = 'a hash' AND registered_at = " +
                   std::to_string(now)),
        1);
    EXPECT_EQ(in->number("SELECT count(*) FROM warehouse"), 0);
    EXPECT_EQ(in->number("SELECT count(*) FROM audit WHERE what = 'sign_up'"), 1);
    in->read([](store::connection& with) {
        for (const auto& one_finding : check(with))
            ADD_FAILURE() << one_finding.text;
    });
}

TEST_P(sign_up, takes_letters_of_either_case_and_blanks_around_them) {
    auto form = some_form();
    for (const char* typed : {"ace34", " AcE34\t", "ACE34"}) {
        form.captcha = typed;
        EXPECT_TRUE(question(form).captcha) << typed;
    }
    for (const char* typed : {"", "ACE3", "ACE344", "A CE34"}) {
        picture();
        form.captcha = typed;
        EXPECT_FALSE(question(form).captcha) << typed;
    }
}

TEST_P(sign_up, tells_what_is_taken_only_to_who_has_read_the_picture) {
    in->write([&](store::connection& with) {
        create_company(with, "Taken 公司", false, g_now);
        create_user(with, {in->company, "Taken", "", "h", 2, "13800000001", "Taken@example.com"}, g_now);
    });
    auto form = some_form();
    auto found = question(form);
    EXPECT_TRUE(found.captcha);
    EXPECT_FALSE(found.company || found.username || found.mobile || found.email);
    form.company = "TAKEN 公司";
    form.username = "tAKEN";
    form.mobile = "13800000001";
    form.email = "TAKEN@EXAMPLE.COM";
    found = question(form);
    EXPECT_TRUE(found.captcha && found.company && found.username && found.mobile && found.email);
    form.captcha = "wrong";
    found = question(form);
    EXPECT_FALSE(found.captcha || found.company || found.username || found.mobile || found.email);
}

TEST_P(sign_up, names_what_stands_in_the_way) {
    in->write([&](store::connection& with) {
        create_company(with, "Taken 公司", false, g_now);
        create_user(with, {in->company, "Taken", "", "h", 2, "13800000001", "Taken@example.com"}, g_now);
    });
    const auto state = [&](auto change) {
        picture();
        auto form = some_form();
        change(form);
        EXPECT_EQ(complete(form), begin(form)) << "both stages look";
        return begin(form);
    };
    EXPECT_EQ(state([](sign_up_form& f) { f.username = "TAKEN"; }), sign_up_state::username_taken);
    EXPECT_EQ(state([](sign_up_form& f) { f.company = "taken 公司"; }), sign_up_state::data_taken);
    EXPECT_EQ(state([](sign_up_form& f) { f.mobile = "13800000001"; }), sign_up_state::data_taken);
    EXPECT_EQ(state([](sign_up_form& f) { f.email = "taken@example.com"; }), sign_up_state::data_taken);
    EXPECT_EQ(state([](sign_up_form& f) {
                  f.captcha = "x";
                  f.username = "taken";
              }),
              sign_up_state::captcha_wrong);
    EXPECT_EQ(companies(), 2);
}

TEST_P(sign_up, the_sixth_attempt_is_the_last) {
    auto wrong = some_form();
    wrong.captcha = "wrong";
    for (int i = 0; i < 3; ++i) {
        EXPECT_FALSE(question(wrong).captcha);
        if (i < 2) {
            EXPECT_EQ(begin(wrong), sign_up_state::captcha_wrong);
        }
    }
    EXPECT_TRUE(question(some_form()).captcha) << "the sixth";
    EXPECT_FALSE(question(some_form()).captcha) << "the seventh";
    EXPECT_EQ(begin(some_form()), sign_up_state::captcha_wrong);
    picture("NEW34");
    EXPECT_FALSE(question(some_form()).captcha) << "the old picture";
    auto read = some_form();
    read.captcha = "NEW34";
    EXPECT_TRUE(question(read).captcha);
}

TEST_P(sign_up, the_last_attempt_may_be_the_sign_up_itself) {
    for (int i = 0; i < 5; ++i)
        EXPECT_TRUE(question(some_form()).captcha);
    EXPECT_EQ(run(some_form()), sign_up_state::done);
}

TEST_P(sign_up, a_repeat_of_the_sixth_attempt_is_no_seventh) {
    for (int i = 0; i < 5; ++i)
        EXPECT_TRUE(question(some_form()).captcha);
    EXPECT_EQ(begin(some_form()), std::nullopt) << "the sixth";
    EXPECT_EQ(begin(some_form()), std::nullopt) << "the same once more, while the first hashes";
    EXPECT_EQ(begin(some_form(), "other bytes"), sign_up_state::captcha_wrong) << "the seventh";
    EXPECT_EQ(begin(some_form()), std::nullopt) << "what had read it still has";
    EXPECT_EQ(complete(some_form()), sign_up_state::done);
    EXPECT_EQ(complete(some_form()), sign_up_state::done);
    EXPECT_EQ(companies(), 2);
}

TEST_P(sign_up, equal_wrong_attempts_are_all_counted) {
    auto wrong = some_form();
    wrong.captcha = "wrong";
    for (int i = 0; i < 6; ++i)
        EXPECT_EQ(begin(wrong), sign_up_state::captcha_wrong);
    EXPECT_EQ(in->number("SELECT attempts FROM captcha"), 6);
    EXPECT_EQ(begin(some_form()), sign_up_state::captcha_wrong);
    EXPECT_FALSE(question(some_form()).captcha);
}

TEST_P(sign_up, a_new_picture_forgets_what_had_read_the_old_one) {
    EXPECT_EQ(begin(some_form()), std::nullopt);
    picture("NEW34");
    for (int i = 0; i < 6; ++i)
        EXPECT_EQ(begin(some_form()), sign_up_state::captcha_wrong);
    EXPECT_EQ(in->number("SELECT attempts FROM captcha"), 6);
}

TEST_P(sign_up, a_picture_holds_five_minutes_and_for_its_visitor_alone) {
    EXPECT_FALSE(question(some_form(), "another cookie").captcha);
    EXPECT_FALSE(question(some_form(), "").captcha);
    now += 299;
    EXPECT_TRUE(question(some_form()).captcha);
    now += 1;
    EXPECT_FALSE(question(some_form()).captcha);
    EXPECT_EQ(begin(some_form()), sign_up_state::captcha_wrong);
}

TEST_P(sign_up, the_database_does_not_tell_the_text_of_a_picture) {
    EXPECT_EQ(in->number("SELECT count(*) FROM captcha"), 1);
    for (const auto& guess : {std::string("ACE34"), token_hash("ACE34"), token_hash("ace34")})
        EXPECT_EQ(in->number("SELECT count(*) FROM captcha WHERE code_hash = '" + guess + "'"), 0);
    EXPECT_EQ(in->number("SELECT count(*) FROM captcha WHERE visitor_hash = '" + g_visitor + "'"), 0);
}

TEST_P(sign_up, a_repeated_request_takes_effect_once) {
    EXPECT_EQ(run(some_form()), sign_up_state::done);
    EXPECT_EQ(run(some_form()), sign_up_state::done);
    EXPECT_EQ(complete(some_form()), sign_up_state::done) << "one that was hashing meanwhile";
    EXPECT_EQ(companies(), 2);
    now += 119;
    EXPECT_EQ(run(some_form()), sign_up_state::done);
    now += 1;
    EXPECT_EQ(run(some_form()), sign_up_state::captcha_wrong);
    EXPECT_EQ(companies(), 2);
}

TEST_P(sign_up, a_picture_is_for_one_sign_up) {
    EXPECT_EQ(run(some_form()), sign_up_state::done);
    auto second = some_form();
    second.company = "另一家";
    second.username = "other";
    second.mobile = "13800000010";
    second.email = "other@example.com";
    EXPECT_EQ(run(second, "another request"), sign_up_state::captcha_wrong);
    EXPECT_FALSE(question(second).captcha);
    EXPECT_EQ(companies(), 2);
    picture();
    EXPECT_EQ(run(second, "another request"), sign_up_state::done);
}

TEST_P(sign_up, what_changes_while_the_password_is_hashed_is_seen) {
    EXPECT_EQ(begin(some_form()), std::nullopt);
    picture("NEW34");
    EXPECT_EQ(complete(some_form()), sign_up_state::captcha_wrong);
    picture();
    EXPECT_EQ(begin(some_form()), std::nullopt);
    in->write([&](store::connection& with) {
        create_user(with, {in->company, "NEWBOSS", "", "h", 2, "", ""}, g_now);
    });
    EXPECT_EQ(complete(some_form()), sign_up_state::username_taken);
    EXPECT_EQ(companies(), 1);
}

TEST_P(sign_up, old_pictures_go_with_the_sweep) {
    in->write([&](store::connection& with) { sweep(with, now + 600); });
    EXPECT_EQ(in->number("SELECT count(*) FROM captcha"), 1);
    in->write([&](store::connection& with) { sweep(with, now + 900); });
    EXPECT_EQ(in->number("SELECT count(*) FROM captcha"), 0);
}

TEST(sign_up_form, refuses_what_the_fields_would_not_let_through) {
    EXPECT_NO_THROW(check_form(some_form()));
    const auto with = [](std::string sign_up_form::*field, const std::string& text) {
        auto form = some_form();
        form.*field = text;
        return form;
    };
    for (const auto field : {&sign_up_form::phone, &sign_up_form::address})
        EXPECT_NO_THROW(check_form(with(field, "")));
    for (const auto field : {&sign_up_form::company, &sign_up_form::username, &sign_up_form::realname,
                             &sign_up_form::mobile, &sign_up_form::email, &sign_up_form::password})
        EXPECT_THROW(check_form(with(field, "")), refused);
    for (const auto field : {&sign_up_form::company, &sign_up_form::username, &sign_up_form::realname}) {
        for (const auto& text :
             {std::string(" "), std::string("a\x01z"), std::string(201, 'a'), std::string("\xff")})
            EXPECT_THROW(check_form(with(field, text)), refused);
    }
    for (const auto field : {&sign_up_form::company, &sign_up_form::username}) {
        EXPECT_THROW(check_form(with(field, " a")), refused);
        EXPECT_THROW(check_form(with(field, "a\n")), refused);
    }
    for (const char* mobile :
         {"12800000000", "1380000000", "138000000000", "1380000000x", "23800000000", "+13800000000"})
        EXPECT_THROW(check_form(with(&sign_up_form::mobile, mobile)), refused) << mobile;
    for (const char* mobile :
         {"13800000000", "14800000000", "15800000000", "17800000000", "18800000000", "19800000000"})
        EXPECT_NO_THROW(check_form(with(&sign_up_form::mobile, mobile))) << mobile;
    for (const char* email : {"a", "a@", "@b.cn", "a@b", "a@b.", "a@.cn", "a b@c.cn", "a@b@c.cn"})
        EXPECT_THROW(check_form(with(&sign_up_form::email, email)), refused) << email;
    for (const auto& md5 : {std::string(31, 'a'), std::string(33, 'a'), std::string(32, 'A'),
                            std::string(32, 'g'), md5_hex("")})
        EXPECT_THROW(check_form(with(&sign_up_form::password, md5)), refused) << md5;
    EXPECT_THROW(check_form(with(&sign_up_form::phone, "call me")), refused);
    EXPECT_THROW(check_form(with(&sign_up_form::address, std::string(1001, 'a'))), refused);
}

TEST(captcha_code, differs_from_time_to_time) {
    std::set<std::string> seen;
    for (int i = 0; i < 100; ++i)
        seen.insert(new_captcha_code());
    EXPECT_GT(seen.size(), 95u);
    for (const auto& one : seen)
        EXPECT_EQ(one.find_first_of("0OQ1IL2Z5S69G8BUV"), std::string::npos) << one;
}

} // namespace
} // namespace tavrok::domain
