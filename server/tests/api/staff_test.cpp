#include <gtest/gtest.h>

#include <boost/json.hpp>
#include <regex>

#include "api/harness.h"

namespace tavrok::test {
namespace {

const std::string empty_page = R"({"list":[],"total":0,"page_count":0,"page_num":1})";
const std::string refused_result = R"({"http_state":0})";

class staff_test : public testing::TestWithParam<std::string> {
protected:
    void SetUp() override {
        SKIP_WITHOUT(GetParam());
        world = std::make_unique<harness>(GetParam());
        owner = world->administrator("owner");
    }
    std::string ask(const std::string& path, const std::string& body) {
        return world->ask(path, body, owner).body;
    }
    std::string get(const std::string& path, const std::string& cookie) {
        return world->ask({path, "", cookie, "192.0.2.9", "GET"}).body;
    }
    static std::string employee(const std::string& name, const std::string& jobnum,
                                const std::string& idnum = "", const std::string& mobile = "",
                                const std::string& isdefault = "2") {
        return "name=" + name + "&jobnum=" + jobnum + "&mobile=" + mobile + "&address=街&idnum=" + idnum +
               "&remark=r&isdefault=" + isdefault + "&dimission=2";
    }
    /** The id that an addition gave. */
    std::string add(const std::string& path, const std::string& body) {
        const auto got = boost::json::parse(ask(path, body));
        EXPECT_EQ(got.at("http_state").as_int64(), 1) << body;
        EXPECT_EQ(got.at("datetime").as_int64(), world->now.load());
        return std::string(got.at("insert_id").as_string());
    }
    std::string hire(const std::string& name, const std::string& jobnum) {
        return add("wms_emp/do_add", employee(name, jobnum));
    }
    std::int64_t employees() {
        return boost::json::parse(ask("wms_emp/get_page", "&page_num=1&page_size=1")).at("total").as_int64();
    }
    std::int64_t warehouses(const std::string& args = "") {
        const auto got = ask("wms_warehouse/get_page", args + "&page_num=1&page_size=20");
        return boost::json::parse(got).at("total").as_int64();
    }

    std::unique_ptr<harness> world;
    std::string owner;
};

TEST_P(staff_test, an_employee_goes_out_as_the_client_reads_him) {
    const auto id =
        add("wms_emp/do_add", employee("A&B=%+\"", "7", "99011719900307101X", "15400005001", "1"));
    EXPECT_EQ(ask("wms_emp/get_page", "&page_num=1&page_size=10"),
              R"({"list":[{"id":")" + id +
                  R"(","name":"A&B=%+\"","idnum":"99011719900307101X","jobnum":"7","mobile":"15400005001",)"
                  R"("address":"街","remark":"r","isdefault":"1","dimission":"2","datetime":1800000000}],)"
                  R"("total":1,"page_count":1,"page_num":1})");
    EXPECT_EQ(get("wms_emp/get_option", owner), R"([{"id":")" + id + R"(","name":"A&B=%+\"","jobnum":"7"}])");
}

TEST_P(staff_test, employees_are_searched_with_any_of_the_keys_first) {
    add("wms_emp/do_add", employee("顾念慈", "Ab-1", "990117A", "15400005001"));
    hire("裴云舟", "Ab-2");
    const auto total = [&](const std::string& args) {
        const auto got = ask("wms_emp/get_page", args + "&page_num=1&page_size=20");
        return boost::json::parse(got).at("total").as_int64();
    };
    EXPECT_EQ(total("name=顾"), 1);
    EXPECT_EQ(total("&name=顾&idnum=117a&jobnum=aB&mobile=5001"), 1);
    EXPECT_EQ(total("&idnum=990"), 1);
    EXPECT_EQ(total("&jobnum=AB"), 2);
    EXPECT_EQ(total("&mobile=5002"), 0);
    EXPECT_EQ(total(""), 2);
}

TEST_P(staff_test, an_edit_clears_what_comes_empty) {
    const auto id = add("wms_emp/do_add", employee("甲", "1", "990117", "15400005001", "1"));
    EXPECT_EQ(ask("wms_emp/do_edit",
                  "id=" + id + "&name=乙&jobnum=1&mobile=&address=&idnum=&remark=&isdefault=2&dimission=1"),
              "1");
    const auto row = boost::json::parse(ask("wms_emp/get_page", "&page_num=1&page_size=10")).at("list").at(0);
    EXPECT_EQ(row.at("name").as_string(), "乙");
    for (const char* key : {"mobile", "address", "idnum", "remark"})
        EXPECT_EQ(row.at(key).as_string(), "") << key;
    EXPECT_EQ(row.at("isdefault").as_string(), "2");
    EXPECT_EQ(row.at("dimission").as_string(), "1");
    EXPECT_EQ(get("wms_emp/get_option", owner), "[]") << "has left";
    EXPECT_EQ(ask("wms_emp/do_delete", "id=" + id), "1");
    EXPECT_EQ(ask("wms_emp/do_delete", "id=" + id), "0");
    EXPECT_EQ(employees(), 0);
}

TEST_P(staff_test, marks_are_checked_without_and_with_an_id) {
    const auto id = add("wms_emp/do_add", employee("甲", "Ab", "990117x", "15400005001"));
    const auto other = hire("乙", "2");
    for (const auto& [path, taken, free] :
         {std::tuple("wms_emp/check_mobile", "mobile=15400005001", "mobile=15400005002"),
          std::tuple("wms_emp/check_jobnum_exist", "jobnum=aB", "jobnum=aBc"),
          std::tuple("wms_emp/check_idnum_exist", "idnum=990117X", "idnum=990117Y")}) {
        const std::string body = taken;
        EXPECT_EQ(ask(path, body), "1") << path;
        EXPECT_EQ(ask(path, body + "&id=" + other), "1") << path;
        EXPECT_EQ(ask(path, body + "&id=" + id), "0") << path;
        EXPECT_EQ(ask(path, free), "0") << path;
        EXPECT_EQ(ask(path, body.substr(0, body.find('=') + 1)), "0") << path;
        for (const char* bad : {"&id=4711", "&id=0", "&id=-1", "&id=x", "&id="}) {
            const auto refused = world->counted(path, "refused");
            EXPECT_EQ(ask(path, body + bad), "0") << path << bad;
            EXPECT_EQ(world->counted(path, "refused"), refused + 1) << path << bad;
        }
        EXPECT_EQ(ask(path, "id=" + id), "0") << path;
    }
    EXPECT_EQ(ask("wms_emp/do_add", employee("丙", "AB")), refused_result);
    EXPECT_EQ(employees(), 2);
}

TEST_P(staff_test, garbled_employees_are_refused_and_change_nothing) {
    const auto id = hire("甲", "1");
    const auto body = [&](const std::string& flags) {
        return "name=n&jobnum=j&mobile=&address=&idnum=&remark=" + flags;
    };
    const auto good = body("&isdefault=2&dimission=2");
    for (const auto& bad :
         {body("&isdefault=0&dimission=2"), body("&isdefault=3&dimission=2"), body("&isdefault=&dimission=2"),
          body("&isdefault=2&dimission=x"), body("&isdefault=2"), body("&dimission=2"), body(""),
          employee("", "2"), employee("n", ""), employee(" ", "2"), employee("n", "1"),
          employee("n", "2", "", "abc"), employee("n", "2", std::string(41, '1')),
          employee(std::string(201, 'n'), "2"), employee("n\x01", "2"), employee("n\xC3", "2")}) {
        EXPECT_EQ(ask("wms_emp/do_add", bad), refused_result) << bad;
        EXPECT_EQ(ask("wms_emp/do_edit", "id=" + hire("乙", "x" + std::to_string(++world->now)) + "&" + bad),
                  "0")
            << bad;
    }
    for (const char* unknown : {"0", "-1", "4711", "9223372036854775808", "x", ""}) {
        EXPECT_EQ(ask("wms_emp/do_edit", "id=" + std::string(unknown) + "&" + good), "0") << unknown;
        EXPECT_EQ(ask("wms_emp/do_delete", "id=" + std::string(unknown)), "0") << unknown;
    }
    for (const char* page : {"&page_num=1&page_size=0", "&page_num=1&page_size=201",
                             "&page_num=x&page_size=9", "&page_size=10", "&nam=x&page_num=1&page_size=10"})
        EXPECT_EQ(ask("wms_emp/get_page", page), empty_page) << page;
    EXPECT_EQ(ask("wms_emp/do_add", good).find(R"({"http_state":1)"), 0u) << "the measure is sound";
    EXPECT_EQ(ask("wms_emp/get_page", "name=甲&page_num=1&page_size=1").find(R"({"list":[{"id":")" + id), 0u);
}

TEST_P(staff_test, a_warehouse_goes_out_as_the_client_reads_it) {
    const auto keeper = hire("裴云舟", "1");
    const auto id = add("wms_warehouse/do_add", "name=甲&phone=0193&keeper=" + keeper +
                                                    "&address=街&mobile=154&isdefault=1&remark=a&name=b");
    const auto least = add("wms_warehouse/do_add", "name=乙&keeper=" + keeper + "&isdefault=0");
    EXPECT_EQ(ask("wms_warehouse/get_page", "name=甲&page_num=1&page_size=20"),
              R"({"list":[{"id":")" + id +
                  R"(","name":"甲","phone":"0193","isdefault":"1","address":"街","keeper_name":"裴云舟",)"
                  R"("mobile":"154","remark":"a&name=b","keeper":")" +
                  keeper + R"(","datetime":1800000000}],"total":1,"page_count":1,"page_num":1})");
    EXPECT_EQ(get("wms_warehouse/get_option", owner), R"([{"id":")" + id +
                                                          R"(","name":"甲","isdefault":"1"},{"id":")" +
                                                          least + R"(","name":"乙","isdefault":"0"}])");
    EXPECT_EQ(get("wms_warehouse/get_option_with_stat", owner),
              R"([{"id":")" + id + R"(","name":"甲","sum_amount":"0"},{"id":")" + least +
                  R"(","name":"乙","sum_amount":"0"}])");
}

TEST_P(staff_test, warehouses_are_searched_with_any_of_the_keys_first) {
    const auto keeper = hire("裴云舟", "1");
    const auto letter = "\xC3\xA9"; // U+00E9, the low byte of 1001
    ASSERT_EQ(keeper, "1001");
    add("wms_warehouse/do_add", "name=Ab&phone=01&keeper=" + keeper + "&mobile=154&isdefault=0");
    add("wms_warehouse/do_add", std::string("name=b&keeper=") + letter + "&isdefault=0");
    EXPECT_EQ(warehouses("name=aB"), 1);
    EXPECT_EQ(warehouses("&phone=01"), 1);
    EXPECT_EQ(warehouses("phone=01"), 1);
    EXPECT_EQ(warehouses("&keeper=" + keeper), 2);
    EXPECT_EQ(warehouses("keeper=" + std::string(letter) + "&mobile=15"), 1);
    EXPECT_EQ(warehouses("&mobile=15"), 1);
    EXPECT_EQ(ask("wms_warehouse/get_page", "&keeper=4711&page_num=3&page_size=20"), empty_page);
    EXPECT_EQ(world->counted("wms_warehouse/get_page", "refused"), 0) << "nobody's warehouses are none";
}

TEST_P(staff_test, a_warehouse_is_edited_whole_and_closed_once) {
    const auto keeper = hire("裴云舟", "1");
    const auto id = add("wms_warehouse/do_add",
                        "name=甲&phone=01&keeper=" + keeper + "&address=街&mobile=154&isdefault=1&remark=r");
    EXPECT_EQ(ask("wms_emp/do_delete", "id=" + keeper), "1");
    EXPECT_EQ(ask("wms_warehouse/do_edit",
                  "id=" + id + "&name=甲&phone=&keeper=" + keeper + "&address=&mobile=&isdefault=0&remark="),
              "1");
    const auto row =
        boost::json::parse(ask("wms_warehouse/get_page", "&page_num=1&page_size=20")).at("list").at(0);
    for (const char* key : {"phone", "address", "mobile", "remark"})
        EXPECT_EQ(row.at(key).as_string(), "") << key;
    EXPECT_EQ(row.at("isdefault").as_string(), "0");
    EXPECT_EQ(row.at("keeper_name").as_string(), "裴云舟") << "though he has gone";
    EXPECT_EQ(ask("wms_warehouse/do_add", "name=乙&keeper=" + keeper + "&isdefault=0"), refused_result);
    EXPECT_EQ(ask("wms_warehouse/do_delete", "id=" + id), "1");
    EXPECT_EQ(ask("wms_warehouse/do_delete", "id=" + id), "0");
    EXPECT_EQ(get("wms_warehouse/get_option", owner), "[]");
    EXPECT_EQ(get("wms_warehouse/get_option_with_stat", owner), "[]");
}

TEST_P(staff_test, garbled_warehouses_are_refused_and_change_nothing) {
    const auto keeper = hire("裴云舟", "1");
    const auto id = add("wms_warehouse/do_add", "name=甲&keeper=" + keeper + "&isdefault=0");
    const auto body = [&](const std::string& name, const std::string& who, const std::string& flag,
                          const std::string& mobile = "") {
        return "name=" + name + "&phone=&keeper=" + who + "&address=&mobile=" + mobile +
               "&isdefault=" + flag + "&remark=";
    };
    for (const auto& bad :
         {body("", keeper, "0"), body(" ", keeper, "0"), body("n", "", "0"), body("n", "4711", "0"),
          body("n", "7", "0"), body("n", "裴云舟", "0"), body("n", "x", "0"), body("n", keeper, "2"),
          body("n", keeper, "-1"), body("n", keeper, ""), body("n", keeper, "0", "abc"),
          body(std::string(201, 'n'), keeper, "0"), body("n\x01", keeper, "0"), body("n\xC3", keeper, "0"),
          "name=n&keeper=" + keeper, std::string("name=n&isdefault=0"),
          "keeper=" + keeper + "&isdefault=0"}) {
        EXPECT_EQ(ask("wms_warehouse/do_add", bad), refused_result) << bad;
        EXPECT_EQ(ask("wms_warehouse/do_edit", "id=" + id + "&" + bad), "0") << bad;
    }
    for (const char* unknown : {"0", "-1", "4711", "9223372036854775808", "x", ""}) {
        EXPECT_EQ(ask("wms_warehouse/do_edit", "id=" + std::string(unknown) + "&" + body("n", keeper, "0")),
                  "0");
        EXPECT_EQ(ask("wms_warehouse/do_delete", "id=" + std::string(unknown)), "0") << unknown;
    }
    EXPECT_EQ(ask("wms_warehouse/do_edit", "id=" + id + "&name=n&keeper=" + keeper + "&isdefault=0"), "0")
        << "an edit has every key";
    EXPECT_EQ(warehouses(), 1);
    EXPECT_EQ(warehouses("name=甲"), 1);
}

TEST_P(staff_test, a_company_cannot_name_the_staff_of_another) {
    const auto stranger = world->administrator("stranger");
    const auto keeper = hire("甲", "1");
    const auto id = add("wms_warehouse/do_add", "name=甲&keeper=" + keeper + "&isdefault=1");
    for (const auto& who : {keeper, std::string("\xC3\xA9")}) {
        EXPECT_EQ(world->ask("wms_warehouse/do_add", "name=n&keeper=" + who + "&isdefault=0", stranger).body,
                  refused_result);
        EXPECT_EQ(
            world->ask("wms_warehouse/get_page", "keeper=" + who + "&page_num=1&page_size=20", stranger).body,
            empty_page);
    }
    EXPECT_EQ(
        world
            ->ask("wms_warehouse/do_edit",
                  "id=" + id + "&name=n&phone=&keeper=" + keeper + "&address=&mobile=&isdefault=0&remark=",
                  stranger)
            .body,
        "0");
    EXPECT_EQ(world->ask("wms_emp/check_jobnum_exist", "jobnum=1", stranger).body, "0");
    for (const char* path :
         {"wms_emp/get_option", "wms_warehouse/get_option", "wms_warehouse/get_option_with_stat"})
        EXPECT_EQ(get(path, stranger), "[]") << path;
}

TEST_P(staff_test, an_addition_that_the_network_repeats_is_made_once) {
    const auto body = employee("甲", "1");
    const wish asked{"wms_emp/do_add", body, owner};
    const auto first = world->begin(asked).get();
    first.sent(false); // it did not arrive
    const auto second = world->ask(asked);
    EXPECT_EQ(second.body, first.body) << "and no refusal for its own job number";
    EXPECT_EQ(employees(), 1);
    EXPECT_EQ(world->counted("wms_emp/do_add", "replayed"), 1);
}

TEST_P(staff_test, two_defaults_at_once_are_both_answered_and_one_stays) {
    const auto again =
        world->session_of({world->principal_of(owner).company, world->principal_of(owner).user});
    for (int round = 0; round < 10; ++round) {
        const auto number = std::to_string(round);
        auto one = world->begin({"wms_emp/do_add", employee("甲", "a" + number, "", "", "1"), owner});
        auto two = world->begin({"wms_emp/do_add", employee("乙", "b" + number, "", "", "1"), again});
        for (auto* each : {&one, &two}) {
            const auto got = each->get();
            got.sent(true);
            EXPECT_EQ(got.body.find(R"({"http_state":1)"), 0u) << got.body;
        }
    }
    const auto list = ask("wms_emp/get_page", "&page_num=1&page_size=200");
    const std::regex flag(R"("isdefault":"1")");
    EXPECT_EQ(std::distance(std::sregex_iterator(list.begin(), list.end(), flag), std::sregex_iterator()), 1);
    EXPECT_EQ(employees(), 20);
}

INSTANTIATE_TEST_SUITE_P(engines, staff_test, testing::ValuesIn(engines()));

} // namespace
} // namespace tavrok::test
