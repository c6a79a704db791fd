#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <boost/json.hpp>
#include <map>

#include "api/endpoint.h"
#include "api/harness.h"
#include "api/registry.h"

namespace tavrok::test {
namespace {

const std::string empty_page = R"({"list":[],"total":0,"page_count":0,"page_num":1})";

/** What each endpoint says when it refuses. */
const std::map<std::string, std::string> refusals{
    {"version/wms_check", "{}"},
    {"login/check_login", R"({"user":{"username":""},"wms_permission":[]})"},
    {"wms/check_login", "0"},
    {"wms_menu/get_menu", "[]"},
    {"wms_menu/do_add", ""},
    {"wms_menu/do_edit", "0"},
    {"wms_menu/do_delete", "0"},
    {"wms_permission/get_permission", "[]"},
    {"wms_permission/get_permission_tree", "[]"},
    {"wms_permission/set_checked", "0"},
    {"wms_permission/set_unchecked", "0"},
    {"wms_company/get_page", empty_page},
    {"wms_company/do_add", R"({"http_state":0})"},
    {"wms_company/do_edit", "0"},
    {"wms_company/do_delete", "0"},
    {"wms_emp/get_page", empty_page},
    {"wms_emp/do_add", R"({"http_state":0})"},
    {"wms_emp/do_edit", "0"},
    {"wms_emp/do_delete", "0"},
    {"wms_emp/check_mobile", "0"},
    {"wms_emp/check_jobnum_exist", "0"},
    {"wms_emp/check_idnum_exist", "0"},
    {"wms_emp/get_option", "[]"},
    {"wms_warehouse/get_page", empty_page},
    {"wms_warehouse/do_add", R"({"http_state":0})"},
    {"wms_warehouse/do_edit", "0"},
    {"wms_warehouse/do_delete", "0"},
    {"wms_warehouse/get_option", "[]"},
    {"wms_warehouse/get_option_with_stat", "[]"},
    {"wms_dept/get_dept", "[]"},
    {"wms_dept/do_add", R"({"http_state":0})"},
    {"wms_dept/do_edit", "0"},
    {"wms_dept/do_delete", "0"},
    {"wms_prodcate/get_prodcate", "[]"},
    {"wms_prodcate/do_add", R"({"http_state":0})"},
    {"wms_prodcate/do_edit", "0"},
    {"wms_prodcate/do_delete", "0"},
    {"wms_product/get_page", empty_page},
    {"wms_product/do_add", R"({"http_state":0})"},
    {"wms_product/do_edit", "0"},
    {"wms_product/do_delete", "0"},
    {"wms_instore/get_page", empty_page},
    {"wms_instore/get_detail", "[]"},
    {"wms_instore/do_add", R"({"http_state":0})"},
    {"wms_instore/update_total", "0"},
    {"wms_instore/do_delete", "0"},
    {"wms_instore_detail/do_add", "0"},
    {"wms_outstore/get_page", empty_page},
    {"wms_outstore/get_detail", "[]"},
    {"wms_outstore/do_add", R"({"http_state":0})"},
    {"wms_outstore/update_total", "0"},
    {"wms_outstore/do_delete", "0"},
    {"wms_outstore_detail/do_add", "0"},
    {"wms_instore_detail/do_delete", "0"},
    {"wms_stock_detail/get_page", empty_page},
    {"wms_stock_detail/do_add", "0"},
    {"wms_stock_detail/lock_stock", "0"},
    {"wms_stock_detail/unlock_stock", "0"},
    {"wms_stock_summary/get_page", empty_page},
    {"wms_stock_taking/get_page", empty_page},
    {"wms_stock_taking/get_detail", "[]"},
    {"wms_stock_taking/do_add", R"({"http_state":0})"},
    {"wms_stock_taking/update_profitloss", "0"},
    {"wms_stock_taking/do_delete", "0"},
    {"wms_stock_taking_detail/do_add", "0"},
    {"wms_stock_allot/get_page", empty_page},
    {"wms_stock_allot/get_detail", "[]"},
    {"wms_stock_allot/do_add", R"({"http_state":0})"},
    {"wms_stock_allot/do_delete", "0"},
    {"wms_stock_allot_detail/do_add", "0"},
    {"user_reg/captcha_data", ""},
    {"user_reg/check_reg_exist", R"({"company":0,"username":0,"mobile":0,"email":0,"captcha":0})"},
    {"user_reg/do_reg", R"({"state":6})"},
    {"user/get_page", empty_page},
    {"user/do_add", R"({"http_state":0})"},
    {"user/do_edit", "0"},
    {"user/do_delete", "0"},
    {"user/check_username", "0"},
    {"user/check_mobile", "0"},
    {"user/check_email", "0"}};

class endpoints_test : public testing::TestWithParam<std::string> {
protected:
    void SetUp() override {
        SKIP_WITHOUT(GetParam());
        api::settings options;
        options.oldest_client = 1586696219;
        options.throttled_answer = std::chrono::milliseconds(0);
        options.client_download = "download/new client.exe";
        world = std::make_unique<harness>(GetParam(), options);
        cookie = world->administrator("owner");
    }
    std::string ask(const std::string& path, const std::string& body) {
        return world->ask(path, body, cookie).body;
    }
    boost::json::value page(const std::string& body) {
        return boost::json::parse(ask("wms_company/get_page", body));
    }

    std::unique_ptr<harness> world;
    std::string cookie;
};

TEST_P(endpoints_test, every_endpoint_refuses_what_is_garbled_in_its_own_form) {
    const auto before = world->partners_of(cookie);
    ASSERT_EQ(world->service->routes().size(), refusals.size());
    for (const auto& route : world->service->routes()) {
        const auto& refusal = refusals.at(route.path);
        const auto first = route.keys.empty() ? std::string("no_key") : route.keys.front();
        for (const auto& body : {std::string("unknown=1"), std::string("&&"), std::string(70'000, 'a'),
                                 first + "=" + std::string(66'000, '1'), first + "=\xC3\x28",
                                 first + "=" + std::string(1, '\0')}) {
            const auto got = world->ask({route.path, body, cookie, "192.0.2.1", route.method});
            EXPECT_EQ(got.body, refusal) << route.path;
            EXPECT_EQ(got.status, 200u);
        }
        const std::string other = route.method == "GET" ? "POST" : "GET";
        EXPECT_EQ(world->ask({route.path, "", cookie, "192.0.2.1", other}).body, refusal) << route.path;
    }
    EXPECT_EQ(world->partners_of(cookie), before);
}

TEST_P(endpoints_test, what_the_server_turns_away_is_refused_in_the_form_of_the_endpoint) {
    using http::rejection;
    for (const auto& route : world->service->routes()) {
        for (const auto why : {rejection::body_too_large, rejection::too_many_requests, rejection::timed_out,
                               rejection::failed}) {
            std::string body = "nothing came";
            world->service->reject({"POST", route.path, "", cookie, "192.0.2.9", "id"}, why,
                                   [&](const http::response& got) { body = got.body; });
            EXPECT_EQ(body, refusals.at(route.path)) << route.path;
        }
        EXPECT_EQ(world->counted(route.path, "refused"), 4) << route.path;
    }
}

TEST_P(endpoints_test, numbers_out_of_range_and_unknown_ids_are_refused) {
    const auto id = std::to_string(world->add_partner(cookie, 1, "kept"));
    const std::vector<std::pair<std::string, std::string>> wishes{
        {"version/wms_check", "version_time=-1"},
        {"version/wms_check", "version_time=9223372036854775808"},
        {"wms_menu/get_menu", "action=other"},
        {"wms_company/get_page", "type=0&page_num=1&page_size=20"},
        {"wms_company/get_page", "type=5&page_num=1&page_size=20"},
        {"wms_company/get_page", "type=1&page_num=1&page_size=0"},
        {"wms_company/get_page", "type=1&page_num=1&page_size=201"},
        {"wms_company/get_page", "type=1&page_num=x&page_size=20"},
        {"wms_company/get_page", "type=1&page_num=99999999999999999999&page_size=20"},
        {"wms_company/get_page", "type=1&page_size=20"},
        {"wms_company/do_add", "&type=0&name=n&phone=1&address=a"},
        {"wms_company/do_add", "&type=4&name=n&phone=1&address=a"},
        {"wms_company/do_add", "&type=1&phone=1&address=a"},
        {"wms_company/do_add", "&type=1&name=&phone=1&address=a"},
        {"wms_company/do_edit", "&id=0&name=n"},
        {"wms_company/do_edit", "&id=-3&name=n"},
        {"wms_company/do_edit", "&id=987654321&name=n"},
        {"wms_company/do_edit", "&name=n"},
        {"wms_company/do_delete", "id=987654321"},
        {"wms_company/do_delete", "id=9223372036854775808"},
        {"wms_company/do_delete", "id=" + id + " "},
        {"wms_company/do_delete", "id=" + id + "&id=" + id}};
    for (const auto& [path, body] : wishes)
        EXPECT_EQ(ask(path, body), refusals.at(path)) << path << " " << body;
    EXPECT_EQ(world->partners_of(cookie), 1);
}

TEST_P(endpoints_test, a_path_that_is_no_route_is_no_endpoint) {
    for (const auto* path :
         {"", "wms_company", "wms_company/", "wms_company/get_page/", "WMS_company/get_page"})
        EXPECT_EQ(world->ask(path, "", cookie).status, 404u) << path;
    EXPECT_EQ(world->ask({"healthz", "", "", "192.0.2.1", "GET"}).body, "alive\n");
    EXPECT_EQ(world->ask({"readyz", "", "", "192.0.2.1", "GET"}).status, 200u);
}

TEST_P(endpoints_test, no_answer_reads_as_the_session_code) {
    const auto own =
        world->session_of({world->principal_of(cookie).company, world->principal_of(cookie).user});
    EXPECT_TRUE(rc::check([&] {
        const auto& all = world->service->endpoints().all();
        const auto& what = *all[*rc::gen::inRange<std::size_t>(0, all.size())];
        std::string body;
        for (const auto& k : what.keys) {
            const auto value =
                *rc::gen::element<std::string>("7", "1", "2", "0", " 7", "07", "-1", "seven", "7\n");
            if (*rc::gen::inRange(0, 4) > 0) body += "&" + std::string(k.name) + "=" + value;
        }
        RC_ASSERT(!api::reads_as_session_code(world->ask(what.path(), body, own).body));
    }));
}

TEST_P(endpoints_test, the_version_check_compares_stamps) {
    EXPECT_EQ(world->ask("version/wms_check", "version_time=1586696219", "").body,
              R"({"need_update":"0","file_name":"download/new client.exe"})");
    EXPECT_EQ(world->ask("version/wms_check", "version_time=1586696218", "").body,
              R"({"need_update":"1","file_name":"download/new client.exe"})");
}

TEST_P(endpoints_test, the_menu_is_a_tree_of_texts) {
    const auto menu = boost::json::parse(ask("wms_menu/get_menu", "action=list"));
    int pages = 0;
    int rights = 0;
    const std::function<void(const boost::json::value&)> walk = [&](const boost::json::value& rows) {
        for (const auto& row : rows.as_array()) {
            for (const auto* name : {"id", "name", "action", "real_level", "sort", "show"})
                EXPECT_TRUE(row.at(name).is_string()) << name;
            EXPECT_NE(row.at("id").as_string(), "7");
            pages += row.at("real_level").as_string() == "1";
            rights += row.at("real_level").as_string() == "2";
            walk(row.at("child"));
        }
    };
    walk(menu);
    EXPECT_EQ(pages, 26);
    EXPECT_EQ(static_cast<std::size_t>(rights), world->all_grants().size());
}

TEST_P(endpoints_test, a_partner_goes_in_and_comes_out_to_the_letter) {
    const std::string remark = "100%25+a&b=c \"q\"\\\r\n\t甲&price=1 😀";
    const auto answer = boost::json::parse(
        ask("wms_company/do_add",
            "&type=2&name=甲公司&phone=010-1&linkman=李&mobile=13800000000&fax=2&address=路1号"
            "&account=622&bank=银行&remark=" +
                remark));
    EXPECT_EQ(answer.at("http_state").as_int64(), 1);
    EXPECT_EQ(answer.at("datetime").as_int64(), world->now.load());
    const auto id = answer.at("insert_id").as_string();
    const auto list = page("type=2&page_num=1&page_size=20");
    boost::json::object row{{"id", id},
                            {"name", "甲公司"},
                            {"phone", "010-1"},
                            {"linkman", "李"},
                            {"mobile", "13800000000"},
                            {"fax", "2"},
                            {"address", "路1号"},
                            {"bank", "银行"},
                            {"account", "622"},
                            {"remark", remark},
                            {"type", "2"},
                            {"datetime", world->now.load()}};
    EXPECT_EQ(list.at("list").as_array(), boost::json::array{row});
    EXPECT_EQ(ask("wms_company/do_edit", "&id=" + std::string(id) + "&phone=99"), "1");
    row["phone"] = "99";
    EXPECT_EQ(page("type=4&page_num=1&page_size=20").at("list").as_array(), boost::json::array{row});
    EXPECT_EQ(ask("wms_company/do_delete", "id=" + std::string(id)), "1");
    EXPECT_EQ(ask("wms_company/get_page", "type=4&page_num=1&page_size=20"), empty_page);
    EXPECT_EQ(ask("wms_company/do_delete", "id=" + std::string(id)), "0");
}

TEST_P(endpoints_test, type_four_searches_every_kind) {
    for (const int kind : {1, 2, 3})
        world->add_partner(cookie, kind, "same " + std::to_string(kind));
    EXPECT_EQ(page("type=4&name=SAME&page_num=1&page_size=10").at("total").as_int64(), 3);
    EXPECT_EQ(page("type=4&name=same 2&page_num=1&page_size=10").at("total").as_int64(), 1);
    EXPECT_EQ(page("type=3&name=same&page_num=1&page_size=10").at("total").as_int64(), 1);
    EXPECT_EQ(page("type=1&name=same 2&page_num=1&page_size=10").at("total").as_int64(), 0);
}

TEST_P(endpoints_test, page_numbers_are_brought_into_the_range) {
    for (int i = 1; i <= 25; ++i)
        world->add_partner(cookie, 1, "p" + std::to_string(i));
    const auto shown = [&](const std::string& number) {
        const auto got = page("type=1&page_num=" + number + "&page_size=10");
        EXPECT_EQ(got.at("total").as_int64(), 25);
        EXPECT_EQ(got.at("page_count").as_int64(), 3);
        return std::pair(got.at("page_num").as_int64(),
                         std::string(got.at("list").at(0).at("name").as_string()));
    };
    EXPECT_EQ(shown("1"), std::pair(std::int64_t{1}, std::string("p25")));
    EXPECT_EQ(shown("2"), std::pair(std::int64_t{2}, std::string("p15")));
    EXPECT_EQ(shown("3"), std::pair(std::int64_t{3}, std::string("p5")));
    EXPECT_EQ(shown("-1"), shown("3"));
    EXPECT_EQ(shown("0"), shown("1"));
    EXPECT_EQ(shown("-5"), shown("1"));
    EXPECT_EQ(shown("4"), shown("3"));
    EXPECT_EQ(shown("9223372036854775807"), shown("3"));
    EXPECT_EQ(page("type=1&page_num=1&page_size=200").at("list").as_array().size(), 25u);
}

TEST_P(endpoints_test, routes_say_what_they_need) {
    const auto& routes = world->service->routes();
    EXPECT_EQ(routes.front().path, "version/wms_check");
    for (const auto& route : routes) {
        EXPECT_FALSE(route.access.empty()) << route.path;
        // Sign-up has no session to be repeated under, and looks after that itself.
        const bool changes =
            (route.path.find("/do_") != std::string::npos && route.path != "user_reg/do_reg") ||
            route.path.find("/set_") != std::string::npos ||
            route.path.find("/update_") != std::string::npos || route.path.ends_with("lock_stock");
        EXPECT_EQ(route.writes, changes) << route.path;
    }
}

INSTANTIATE_TEST_SUITE_P(engines, endpoints_test, testing::ValuesIn(engines()));

} // namespace
} // namespace tavrok::test
