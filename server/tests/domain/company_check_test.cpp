#include <algorithm>

#include "domain/check.h"
#include "domain/staff_scene.h"
#include "domain/users.h"

namespace tavrok::domain {
namespace {

using test::g_now;

struct damage {
    const char* sql;
    const char* rule;
    const char* words;
};

class company_check : public test::on_staff {
protected:
    std::vector<finding> proof() {
        return in->read([](store::connection& with) { return check(with); });
    }
    void write(const std::string& sql) {
        in->write([&](store::connection& with) { with.execute({"", sql}, {}); });
    }
    void expect_alone(const damage& by) {
        const auto found = proof();
        EXPECT_EQ(found.size(), 1U) << by.sql;
        EXPECT_TRUE(std::any_of(found.begin(), found.end(),
                                [&](const finding& one) {
                                    return one.rule == by.rule &&
                                           one.text.find(by.words) != std::string::npos;
                                }))
            << by.sql << (found.empty() ? "" : found.front().text);
    }
};
ON_EVERY_ENGINE(company_check);

TEST_P(company_check, finds_a_series_that_would_give_an_id_again) {
    in->hire(in->chief, test::some_employee("1"));
    const auto last = in->hire(in->chief, test::some_employee("2"));
    EXPECT_TRUE(proof().empty());
    for (const damage& one :
         {damage{"UPDATE number_series SET last = last - 1 WHERE name = 'employee'", "series", "of employee"},
          damage{"DELETE FROM number_series WHERE name = 'employee'", "series", "of employee stands at -1"},
          damage{"UPDATE number_series SET last = 1001 WHERE name = 'menu'", "series", "of menu"}}) {
        write(one.sql);
        expect_alone(one);
        write("DELETE FROM number_series");
        write("INSERT INTO number_series (name, last) VALUES ('menu', 100000), ('employee', " +
              std::to_string(last) + ")");
        EXPECT_TRUE(proof().empty());
    }
}

TEST_P(company_check, finds_a_company_that_nobody_can_administer) {
    in->user(in->company, "second", 1);
    write("UPDATE app_user SET state = 2 WHERE username = 'boss'");
    EXPECT_TRUE(proof().empty());
    const damage one{"UPDATE app_user SET state = 2 WHERE username = 'second'", "administrator",
                     "company 1001 has no enabled"};
    write(one.sql);
    expect_alone(one);
    write("UPDATE app_user SET state = 1, type = 2 WHERE username = 'boss'");
    expect_alone(one);
}

TEST_P(company_check, finds_grants_of_whom_nothing_can_be_granted_to) {
    const auto gone = in->user(in->company, "gone", 2);
    in->write([&](store::connection& with) { remove_user(with, in->chief, gone.user, g_now); });
    EXPECT_TRUE(proof().empty());
    for (const auto user : {gone.user, in->boss.user}) {
        write("INSERT INTO user_grant (company, user_id, menu_id) VALUES (" + std::to_string(in->company) +
              ", " + std::to_string(user) + ", 400)");
        expect_alone({"", "reference", "user_grant"});
        write("DELETE FROM user_grant");
    }
}

TEST_P(company_check, finds_a_right_that_the_service_was_made_with_gone) {
    for (const damage& one :
         {damage{"DELETE FROM menu WHERE id = 40702", "menu", "add_child on the page dept"},
          damage{"DELETE FROM menu WHERE id = 30302", "menu", "add on the page stock_taking"},
          damage{"DELETE FROM menu WHERE id = 50101", "menu", "search on the page user"},
          damage{"DELETE FROM menu WHERE id = 20608", "menu", "detail_print on the page outstore_other"}}) {
        const auto before = proof().size();
        write(one.sql);
        const auto found = proof();
        EXPECT_EQ(found.size(), before + 1) << one.sql;
        EXPECT_TRUE(std::any_of(found.begin(), found.end(), [&](const finding& each) {
            return each.rule == one.rule && each.text.find(one.words) != std::string::npos;
        })) << one.sql;
    }
}

/** The rules know exactly the rights that the schema is made with. */
TEST_P(company_check, knows_every_right_of_the_menu) {
    const auto rights = in->number("SELECT count(*) FROM menu WHERE real_level = 2 AND id <= 100000");
    write("DELETE FROM menu WHERE real_level = 2 AND id <= 100000");
    EXPECT_EQ(static_cast<std::int64_t>(proof().size()), rights);
}

TEST_P(company_check, finds_a_company_that_cannot_be_found_by_its_name) {
    const damage one{"UPDATE company SET name_folded = 'x'", "folded", "company 1001 cannot be found"};
    write(one.sql);
    expect_alone(one);
}

} // namespace
} // namespace tavrok::domain
