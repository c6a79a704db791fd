#include <gtest/gtest.h>

#include <boost/json.hpp>

#include "api/harness.h"

namespace tavrok::test {
namespace {

class menu_edit_test : public testing::TestWithParam<std::string> {
protected:
    void SetUp() override {
        SKIP_WITHOUT(GetParam());
        world = std::make_unique<harness>(GetParam());
        chief = world->operators_session();
        before = whole();
    }
    std::string ask(const std::string& action, const std::string& body) {
        return world->ask("wms_menu/" + action, body, chief).body;
    }
    std::string whole() { return ask("get_menu", "action=edit"); }
    /** A body as the client writes it. */
    static std::string row(const std::string& name, const std::string& parent, const std::string& action,
                           const std::string& sort, const std::string& show, const std::string& level) {
        return "name=" + name + "&parent=" + parent + "&action=" + action + "&sort=" + sort +
               "&show=" + show + "&real_level=" + level;
    }
    /** The row as the edit list has it. */
    boost::json::object found(const std::string& id) {
        boost::json::object result;
        const std::function<void(const boost::json::value&)> walk = [&](const boost::json::value& rows) {
            for (const auto& one : rows.as_array()) {
                if (one.at("id").as_string() == id) result = one.as_object();
                walk(one.at("child"));
            }
        };
        walk(boost::json::parse(whole()));
        return result;
    }

    std::unique_ptr<harness> world;
    std::string chief;
    std::string before;
};

TEST_P(menu_edit_test, a_row_goes_in_is_changed_and_goes_again) {
    const auto id = ask("do_add", row("甲 & 乙=\"丙\"", "0", "own&x=1", "3", "1", "1"));
    EXPECT_EQ(id, "100001");
    boost::json::object wanted{{"id", id},
                               {"name", "甲 & 乙=\"丙\""},
                               {"action", "own&x=1"},
                               {"real_level", "1"},
                               {"sort", "3"},
                               {"show", "1"},
                               {"child", boost::json::array{}}};
    EXPECT_EQ(found(id), wanted);
    EXPECT_EQ(ask("do_edit", row("改", "400", "own", "-2", "0", "0") + "&id=" + id), "1");
    wanted["name"] = "改";
    wanted["action"] = "own";
    wanted["real_level"] = "0";
    wanted["sort"] = "-2";
    wanted["show"] = "0";
    EXPECT_EQ(found(id), wanted);
    EXPECT_EQ(found("400").at("child").at(0).at("id").as_string(), id);
    EXPECT_EQ(ask("do_delete", "id=" + id), "1");
    EXPECT_EQ(whole(), before);
    EXPECT_EQ(ask("do_delete", "id=" + id), "0");
    EXPECT_EQ(ask("do_edit", row("改", "0", "own", "0", "1", "0") + "&id=" + id), "0");
}

TEST_P(menu_edit_test, what_is_left_empty_is_filled_in) {
    const auto page = ask("do_add", row("页", "0", "own", "", "1", ""));
    EXPECT_EQ(found(page).at("sort").as_string(), "0");
    EXPECT_EQ(found(page).at("real_level").as_string(), "1");
    const auto right = ask("do_add", row("查询", page, "search", " 12 ", "1", ""));
    EXPECT_EQ(found(right).at("sort").as_string(), "12");
    EXPECT_EQ(found(right).at("real_level").as_string(), "2");
    EXPECT_EQ(ask("do_edit", row("查", page, "search", "", "1", "") + "&id=" + right), "1");
    EXPECT_EQ(found(right).at("sort").as_string(), "0");
    EXPECT_EQ(found(right).at("real_level").as_string(), "2");
}

TEST_P(menu_edit_test, bad_rows_are_refused_in_each_form) {
    const auto good = [](const std::string& name) { return row(name, "0", "own", "1", "1", "1"); };
    const std::string bad[] = {
        "",
        good(""),
        good(" \t"),
        good(std::string(101, 'x')),
        good("a\x01"),
        good("\xC3\x28"),
        good(std::string("a\0", 2)),
        row("n", "", "own", "1", "1", "1"),
        row("n", "-1", "own", "1", "1", "1"),
        row("n", "4711", "own", "1", "1", "1"),
        row("n", "40301", "own", "1", "1", "1"),
        row("n", "x", "own", "1", "1", "1"),
        row("n", "9223372036854775808", "own", "1", "1", "1"),
        row("n", "0", "", "1", "1", "1"),
        row("n", "0", std::string(101, 'x'), "1", "1", "1"),
        row("n", "0", "own", "x", "1", "1"),
        row("n", "0", "own", "99999999999", "1", "1"),
        row("n", "0", "own", "1", "2", "1"),
        row("n", "0", "own", "1", "", "1"),
        row("n", "0", "own", "1", "1", "3"),
        row("n", "0", "own", "1", "1", "-1"),
        row("n", "0", "own", "1", "1", "2"),
        row("n", "400", "emp", "1", "1", "1"),
        "name=n&parent=0&action=own&sort=1&show=1",
    };
    const auto id = ask("do_add", row("组", "0", "group", "9", "1", "0"));
    const auto now = whole();
    for (const auto& body : bad) {
        EXPECT_EQ(ask("do_add", body), "") << body;
        EXPECT_EQ(ask("do_edit", body + "&id=" + id), "0") << body;
    }
    for (const std::string wrong : {"", "0", "-1", "7", "x", "4711", "400", "403", "40301"}) {
        EXPECT_EQ(ask("do_delete", "id=" + wrong), "0") << wrong;
        EXPECT_EQ(ask("do_edit", row("n", "0", "own", "1", "1", "2") + "&id=" + wrong), "0") << wrong;
    }
    EXPECT_EQ(ask("do_edit", row("n", id, "group", "1", "1", "0") + "&id=" + id), "0") << "below itself";
    EXPECT_EQ(whole(), now);
}

TEST_P(menu_edit_test, the_answer_to_an_addition_is_no_json_and_its_refusal_is_empty) {
    const auto added = world->ask("wms_menu/do_add", row("n", "0", "own", "1", "1", "1"), chief);
    EXPECT_EQ(added.content_type.find("json"), std::string::npos);
    const auto again = world->ask("wms_menu/do_add", row("n", "0", "own", "1", "1", "1"), chief);
    EXPECT_EQ(again.body, "");
    EXPECT_EQ(again.status, 200u);
    EXPECT_EQ(world->ask("wms_menu/do_add", row("n", "0", "own", "1", "1", "1"), "").body, "7");
}

TEST_P(menu_edit_test, an_addition_that_the_network_repeats_takes_effect_once) {
    const wish add{"wms_menu/do_add", row("n", "0", "own", "1", "1", "0"), chief};
    auto pending = world->begin(add);
    ASSERT_EQ(pending.wait_for(std::chrono::seconds(60)), std::future_status::ready);
    const auto first = pending.get();
    first.sent(false);
    EXPECT_EQ(world->ask(add).body, first.body);
    const auto third = world->ask(add).body;
    EXPECT_NE(third, first.body);
    EXPECT_FALSE(third.empty());
}

TEST_P(menu_edit_test, everybody_else_gets_the_refusals_and_sees_what_was_changed) {
    const auto customer = world->administrator("customer");
    const auto company = world->principal_of(customer).company;
    const auto hand = world->make_user(company, "hand", 2, {{"company_supplier", "search"}});
    const auto clerk = world->session_of(hand);
    const auto house = world->principal_of(chief).company;
    const auto colleague = world->session_of(world->make_user(house, "colleague", 2, world->all_grants()));
    for (const auto& cookie : {customer, clerk, colleague}) {
        EXPECT_EQ(world->ask("wms_menu/get_menu", "action=edit", cookie).body, "[]");
        EXPECT_EQ(world->ask("wms_menu/do_add", row("n", "0", "own", "1", "1", "1"), cookie).body, "");
        EXPECT_EQ(
            world->ask("wms_menu/do_edit", row("n", "0", "own", "1", "1", "0") + "&id=400", cookie).body,
            "0");
        EXPECT_EQ(world->ask("wms_menu/do_delete", "id=400", cookie).body, "0");
    }
    EXPECT_EQ(whole(), before);
    EXPECT_EQ(ask("do_edit", row("往来单位", "400", "company_supplier", "3", "1", "1") + "&id=403"), "1");
    for (const auto& cookie : {customer, clerk})
        EXPECT_NE(world->ask("wms_menu/get_menu", "action=list", cookie).body.find("往来单位"),
                  std::string::npos);
    EXPECT_EQ(ask("do_edit", row("往来单位", "400", "company_supplier", "3", "0", "1") + "&id=403"), "1");
    for (const auto& cookie : {customer, clerk})
        EXPECT_EQ(world->ask("wms_menu/get_menu", "action=list", cookie).body.find("往来单位"),
                  std::string::npos);
    EXPECT_NE(whole().find("往来单位"), std::string::npos);
}

TEST_P(menu_edit_test, a_branch_that_is_deleted_takes_its_grants_along) {
    const auto page = ask("do_add", row("页", "0", "own", "1", "1", "1"));
    const auto right = ask("do_add", row("查询", page, "search", "1", "1", "2"));
    const auto house = world->principal_of(chief).company;
    const auto user = "user=" + std::to_string(world->make_user(house, "hand", 2).user);
    for (const auto& id : {page, right, std::string("403")})
        EXPECT_EQ(world->ask("wms_permission/set_checked", user + "&menu=" + id, chief).body, "1");
    EXPECT_EQ(ask("do_delete", "id=" + page), "1");
    EXPECT_EQ(world->ask("wms_permission/get_permission", user, chief).body, R"([{"menu":"403"}])");
    EXPECT_EQ(world->ask("wms_permission/set_checked", user + "&menu=" + right, chief).body, "0");
}

INSTANTIATE_TEST_SUITE_P(engines, menu_edit_test, testing::ValuesIn(engines()));

} // namespace
} // namespace tavrok::test
