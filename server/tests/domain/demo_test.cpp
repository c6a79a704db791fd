#include "domain/demo.h"

#include <map>
#include <regex>
#include <set>

#include "domain/check.h"
#include "domain/employees.h"
#include "domain/refused.h"
#include "domain/scene.h"
#include "domain/warehouses.h"

namespace tavrok::domain {
namespace {

using test::g_now;

const std::string g_pepper = "test pepper";

class demo : public test::on_engine {
protected:
    void SetUp() override {
        on_engine::SetUp();
        if (IsSkipped()) return;
        database = std::make_unique<test::scratch_database>(GetParam());
        store::write_now(**database,
                         [&](store::connection& with) { accounts = make_demo(with, g_pepper, g_now); });
    }
    login_result log_in(const std::string& name) {
        login_candidate found;
        store::read_now(**database,
                        [&](store::connection& with) { found = find_candidate(with, name, "p", g_now); });
        const bool fits = verify_password(g_pepper, md5_hex(g_demo_password), found.hash);
        login_result result;
        store::write_now(**database, [&](store::connection& with) {
            result = complete_login(with, found, fits, "p", g_now);
        });
        return result;
    }
    principal principal_of(const std::string& name) {
        const auto token = log_in(name).token;
        std::optional<principal> who;
        store::read_now(**database, [&](store::connection& with) { who = resume(with, token, g_now); });
        return who.value();
    }
    partner_page list(const principal& who, partner_type type) {
        partner_page page;
        count_cache counts;
        store::read_now(**database, [&](store::connection& with) {
            page = list_partners(with, who, {.type = type}, 1, 200, counts);
        });
        return page;
    }

    std::unique_ptr<test::scratch_database> database;
    std::vector<demo_account> accounts;
};
ON_EVERY_ENGINE(demo);

TEST_P(demo, names_its_accounts) {
    std::set<std::string> names;
    for (const auto& one : accounts) {
        names.insert(one.username);
        EXPECT_FALSE(one.role.empty());
    }
    EXPECT_EQ(names, (std::set<std::string>{"demo_admin", "demo_clerk", "demo_keeper", "demo_buyer",
                                            "demo_guest", "demo_gone", "nord_admin"}));
}

TEST_P(demo, has_many_believable_partners_of_each_kind) {
    const auto who = principal_of("demo_admin");
    EXPECT_TRUE(who.operator_company);
    EXPECT_EQ(list(who, partner_type::supplier).total, 45);
    EXPECT_EQ(list(who, partner_type::client).total, 38);
    EXPECT_EQ(list(who, partner_type::other).total, 32);
    const auto all = list(who, partner_type::any);
    ASSERT_EQ(all.list.size(), 115U);
    const std::regex mobile("1[345789][0-9]{9}");
    std::set<std::string> names;
    std::set<std::string> mobiles;
    std::int64_t newer = g_now;
    for (const auto& one : all.list) {
        EXPECT_TRUE(names.insert(one.name).second) << one.name;
        if (!one.mobile.empty()) {
            EXPECT_TRUE(std::regex_match(one.mobile, mobile)) << one.mobile;
            EXPECT_TRUE(one.mobile.starts_with("154")) << "a prefix that nobody has";
            EXPECT_TRUE(mobiles.insert(one.mobile).second) << one.mobile;
        }
        EXPECT_TRUE(one.phone.starts_with("0193-555")) << one.phone;
        EXPECT_LT(one.datetime, newer) << "newest first, all in the past";
        newer = one.datetime;
    }
    EXPECT_GT(newer, g_now - 600 * 24 * 3600) << "nothing is older than the company";
}

TEST_P(demo, has_believable_staff_and_warehouses) {
    const auto who = principal_of("demo_admin");
    count_cache counts;
    employee_page staff;
    warehouse_page houses;
    store::read_now(**database, [&](store::connection& with) {
        staff = list_employees(with, who, {}, {1, 200}, counts);
        houses = list_warehouses(with, who, {}, {1, 200}, counts);
    });
    EXPECT_EQ(staff.total, 40);
    const std::regex idnum("[1-9][0-9]{5}[1-9][0-9]{3}(0[0-9]|1[0-2])([012][0-9]|3[01])[0-9]{3}[0-9X]");
    std::set<std::string> names;
    std::map<std::string, int> count;
    std::int64_t newer = g_now;
    for (const auto& one : staff.list) {
        EXPECT_TRUE(names.insert(one.name).second) << one.name;
        EXPECT_TRUE(one.idnum.empty() || std::regex_match(one.idnum, idnum)) << one.idnum;
        EXPECT_TRUE(one.idnum.empty() || one.idnum.starts_with("990117")) << "an area that does not exist";
        EXPECT_TRUE(one.mobile.empty() || one.mobile.starts_with("154")) << "a prefix that nobody has";
        count["no idnum"] += one.idnum.empty() ? 1 : 0;
        count["no mobile"] += one.mobile.empty() ? 1 : 0;
        count["left"] += one.dimission == 1 ? 1 : 0;
        count["default"] += one.isdefault == 1 ? 1 : 0;
        EXPECT_LT(one.added_at, newer) << "newest first, all in the past";
        newer = one.added_at;
    }
    EXPECT_GT(newer, g_now - 600 * 24 * 3600) << "nobody is older than the company";
    EXPECT_EQ(count["default"], 1);
    for (const char* some : {"no idnum", "no mobile", "left"}) {
        EXPECT_GT(count[some], 1) << some;
        EXPECT_LT(count[some], 15) << some;
    }
    ASSERT_EQ(houses.total, 4);
    std::set<std::int64_t> keepers;
    for (const auto& one : houses.list) {
        EXPECT_TRUE(names.contains(one.keeper_name)) << one.keeper_name;
        EXPECT_TRUE(keepers.insert(one.keeper).second) << "each has a keeper of its own";
        EXPECT_EQ(one.isdefault, one.id == houses.list.back().id ? 1 : 0);
    }
}

TEST_P(demo, accounts_may_do_what_they_are_said_to) {
    EXPECT_TRUE(log_in("demo_guest").rows.empty());
    EXPECT_EQ(log_in("demo_guest").accepted, true);
    EXPECT_EQ(log_in("demo_gone").reason, "disabled");
    const auto clerk = principal_of("demo_clerk");
    for (const char* right : {"search", "add", "edit", "delete"})
        EXPECT_TRUE(clerk.has("company_supplier", right));
    EXPECT_TRUE(clerk.has("company_other", "search"));
    EXPECT_FALSE(clerk.has("company_other", "add"));
    EXPECT_FALSE(clerk.has_any("company_client"));
    EXPECT_EQ(clerk.menu_rows,
              (std::unordered_set<std::int64_t>{400, 403, 40301, 40302, 40303, 40304, 405, 40501}));
}

TEST_P(demo, keeper_and_buyer_work_in_different_corners) {
    const auto keeper = principal_of("demo_keeper");
    for (const char* page : {"prodcate", "product", "warehouse", "stock_taking", "stock_allot"})
        EXPECT_TRUE(keeper.has(page, "search")) << page;
    for (const auto& [page, right] : {std::pair("prodcate", "add_child"),
                                      {"product", "delete"},
                                      {"warehouse", "add"},
                                      {"stock_taking", "detail_add"}})
        EXPECT_TRUE(keeper.has(page, right)) << page << " " << right;
    EXPECT_FALSE(keeper.has("dept", "edit"));
    EXPECT_FALSE(keeper.has_any("company_supplier"));
    EXPECT_FALSE(keeper.has_any("user"));
    const auto buyer = principal_of("demo_buyer");
    EXPECT_TRUE(buyer.has("instore_purchase", "add"));
    EXPECT_TRUE(buyer.has("instore_purchase", "detail_add"));
    EXPECT_TRUE(buyer.has("company_supplier", "edit"));
    EXPECT_FALSE(buyer.has("product", "edit"));
    EXPECT_FALSE(buyer.has_any("stock_taking"));
    EXPECT_TRUE(buyer.menu_rows.contains(100) && buyer.menu_rows.contains(101));
}

TEST_P(demo, shows_two_companies_that_do_not_see_each_other) {
    const auto here = list(principal_of("demo_admin"), partner_type::any);
    const auto nord = principal_of("nord_admin");
    EXPECT_FALSE(nord.operator_company);
    const auto there = list(nord, partner_type::any);
    EXPECT_EQ(there.total, 12);
    store::read_now(**database, [&](store::connection& with) {
        EXPECT_EQ(list_employee_options(with, nord).size(), 3U);
        EXPECT_EQ(list_warehouse_options(with, nord).size(), 1U);
    });
    std::set<std::int64_t> ids;
    for (const auto& one : here.list)
        ids.insert(one.id);
    for (const auto& one : there.list)
        EXPECT_FALSE(ids.contains(one.id)) << one.name;
}

TEST_P(demo, stands_the_proof_and_is_made_once) {
    store::read_now(**database, [](store::connection& with) {
        for (const auto& one : check(with))
            ADD_FAILURE() << one.text;
    });
    EXPECT_THROW(
        store::write_now(**database, [](store::connection& with) { make_demo(with, g_pepper, g_now); }),
        refused);
}

} // namespace
} // namespace tavrok::domain
