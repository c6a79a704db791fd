#include <gtest/gtest.h>

#include <boost/json.hpp>

#include "api/harness.h"

namespace tavrok::test {
namespace {

const std::string empty_page = R"({"list":[],"total":0,"page_count":0,"page_num":1})";
const std::string refused_result = R"({"http_state":0})";

/** The departments, categories and products of a company as its client reaches them. */
class goods_requests : public testing::TestWithParam<std::string> {
protected:
    void SetUp() override {
        SKIP_WITHOUT(GetParam());
        world = std::make_unique<harness>(GetParam());
        cookie = world->administrator("owner");
    }
    std::string ask(const std::string& path, const std::string& body) {
        return world->ask(path, body, cookie).body;
    }
    std::string tree(const std::string& path) {
        const auto got = world->ask({path, "", cookie, "192.0.2.9", "GET"});
        EXPECT_EQ(got.content_type, "application/json");
        return got.body;
    }
    std::string added(const std::string& path, const std::string& body) {
        const auto answer = boost::json::parse(ask(path, body));
        if (answer.at("http_state").as_int64() != 1) {
            ADD_FAILURE() << path << " " << body;
            return "";
        }
        EXPECT_EQ(answer.at("datetime").as_int64(), world->now.load());
        return std::string(answer.at("insert_id").as_string());
    }
    boost::json::value products(const std::string& criteria = "") {
        return boost::json::parse(ask("wms_product/get_page", criteria + "&page_num=1&page_size=20"));
    }
    std::int64_t number(const std::string& sql) {
        std::int64_t result = -1;
        store::read_now(*world->database, [&](store::connection& db) {
            db.query({"test " + sql, sql}, {}, [&](const store::row& one) { result = one.integer(0); });
        });
        return result;
    }

    std::unique_ptr<harness> world;
    std::string cookie;
};

TEST_P(goods_requests, a_tree_goes_out_nested) {
    for (const std::string module : {"wms_dept", "wms_prodcate"}) {
        const auto get = module == "wms_dept" ? "wms_dept/get_dept" : "wms_prodcate/get_prodcate";
        EXPECT_EQ(tree(get), "[]");
        const auto top = added(module + "/do_add", "name=甲 \"1\"&parent=0");
        EXPECT_EQ(top, "1001");
        EXPECT_EQ(added(module + "/do_add", "name=甲一&parent=1001"), "1002");
        EXPECT_EQ(added(module + "/do_add", "&name=乙&parent=0"), "1003");
        EXPECT_EQ(tree(get),
                  R"([{"id":"1001","name":"甲 \"1\"","child":[{"id":"1002","name":"甲一","child":[]}]},)"
                  R"({"id":"1003","name":"乙","child":[]}])");
        EXPECT_EQ(ask(module + "/do_delete", "id=1001"), "1");
        EXPECT_EQ(tree(get), R"([{"id":"1003","name":"乙","child":[]}])");
        EXPECT_EQ(ask(module + "/do_delete", "id=1001"), "0");
        EXPECT_EQ(ask(module + "/do_delete", "id=1002"), "0");
    }
}

TEST_P(goods_requests, a_node_is_renamed_in_either_order_of_the_keys) {
    for (const std::string module : {"wms_dept", "wms_prodcate"}) {
        const auto table = module == "wms_dept" ? "department" : "category";
        const auto id = added(module + "/do_add", "name=甲&parent=0");
        const auto named = [&](const std::string& name) {
            return number(std::string("SELECT count(*) FROM ") + table + " WHERE name = '" + name + "'");
        };
        EXPECT_EQ(ask(module + "/do_edit", "name=乙&id=" + id), "1");
        EXPECT_EQ(named("乙"), 1);
        EXPECT_EQ(ask(module + "/do_edit", "id=" + id + "&name=丙"), "1");
        EXPECT_EQ(named("丙"), 1);
        EXPECT_EQ(ask(module + "/do_edit", "name=a&name=b&id=" + id), "1");
        EXPECT_EQ(named("a&name=b"), 1);
        EXPECT_EQ(ask(module + "/do_edit", "id=" + id + "&name=c&id=9"), "1");
        EXPECT_EQ(named("c&id=9"), 1);
        for (const auto& body : std::vector<std::string>{
                 "id=" + id, "name=x", "id=" + id + "&name=", "name=&id=" + id, "name=  &id=" + id,
                 "id=x&name=y", "name=y&id=x", "name=x&id=" + id + "&id=" + id + "&id=",
                 "name=x&id=" + id + " ", "name=x&id=0", "name=x&id=-1", "name=x&id=4711",
                 "name=" + std::string(201, 'x') + "&id=" + id, "name=\xff&id=" + id, "name=a\x01&id=" + id})
            EXPECT_EQ(ask(module + "/do_edit", body), "0") << body;
        EXPECT_EQ(named("c&id=9"), 1);
    }
}

TEST_P(goods_requests, what_is_no_node_is_not_added) {
    for (const std::string module : {"wms_dept", "wms_prodcate"}) {
        const auto id = added(module + "/do_add", "name=甲&parent=0");
        for (const auto& body : std::vector<std::string>{
                 "name=&parent=0", "name=  &parent=0", "name=x", "parent=0", "name=x&parent=",
                 "name=x&parent=-1", "name=x&parent=4711", "name=x&parent=9223372036854775808",
                 "name=x&parent=a", "parent=" + id + "&name=x", "name=" + std::string(201, 'x') + "&parent=0",
                 "name=\xC3\x28&parent=0", "name=a\x1b&parent=0"})
            EXPECT_EQ(ask(module + "/do_add", body), refused_result) << body;
        for (const auto* body : {"id=", "id=0", "id=-1", "id=4711", "id=9223372036854775808", "id=x"})
            EXPECT_EQ(ask(module + "/do_delete", body), "0") << body;
    }
    EXPECT_EQ(number("SELECT count(*) FROM department"), 1);
    EXPECT_EQ(number("SELECT count(*) FROM category"), 1);
}

TEST_P(goods_requests, a_product_goes_in_and_comes_out_to_the_letter) {
    const auto category = added("wms_prodcate/do_add", "name=五金&parent=0");
    const auto id = added("wms_product/do_add",
                          "name=甲&x=1&code=A%2B+1&spec=\"q\"\\ 😀&category=" + category + "&price=12.50");
    boost::json::object row{{"id", id},
                            {"category_name", "五金"},
                            {"name", "甲&x=1"},
                            {"code", "A%2B+1"},
                            {"spec", "\"q\"\\ 😀"},
                            {"price", "12.50"},
                            {"category", category},
                            {"datetime", world->now.load()}};
    const auto page = products();
    EXPECT_EQ(page.at("list").as_array(), boost::json::array{row});
    EXPECT_EQ(page.at("total").as_int64(), 1);
    EXPECT_EQ(page.at("page_count").as_int64(), 1);
    EXPECT_EQ(page.at("page_num").as_int64(), 1);
    world->now += 60;
    EXPECT_EQ(ask("wms_product/do_edit", "id=" + id + "&spec=大&category=0"), "1");
    row["spec"] = "大";
    row["category"] = "0";
    row["category_name"] = "";
    EXPECT_EQ(products().at("list").as_array(), boost::json::array{row});
    EXPECT_EQ(ask("wms_product/do_edit", "id=" + id + "&name=乙&price=0.05"), "1");
    row["name"] = "乙";
    row["price"] = "0.05";
    EXPECT_EQ(products().at("list").as_array(), boost::json::array{row});
    EXPECT_EQ(ask("wms_product/do_delete", "id=" + id), "1");
    EXPECT_EQ(ask("wms_product/get_page", "&page_num=1&page_size=20"), empty_page);
    EXPECT_EQ(ask("wms_product/do_delete", "id=" + id), "0");
    EXPECT_EQ(ask("wms_product/do_edit", "id=" + id + "&name=x"), "0");
}

TEST_P(goods_requests, a_price_that_does_not_come_is_nothing_or_stays) {
    const auto id = added("wms_product/do_add", "name=甲&category=0");
    EXPECT_EQ(products().at("list").at(0).at("price").as_string(), "0.00");
    EXPECT_EQ(ask("wms_product/do_edit", "id=" + id + "&price=99999999.00"), "1");
    EXPECT_EQ(ask("wms_product/do_edit", "id=" + id + "&name=乙&category=0"), "1");
    EXPECT_EQ(products().at("list").at(0).at("price").as_string(), "99999999.00");
    EXPECT_EQ(ask("wms_product/do_edit", "id=" + id + "&price=0.00"), "1");
    EXPECT_EQ(products().at("list").at(0).at("price").as_string(), "0.00");
}

/** The client leaves a price of 0 out: what looks like one in the name must not be taken for it. */
TEST_P(goods_requests, a_price_typed_into_a_name_stays_there) {
    const auto id = added("wms_product/do_add", "name=钉&price=9+1%&code=c&spec=s&category=0&price=2.50");
    EXPECT_EQ(ask("wms_product/do_edit", "id=" + id + "&name=钉&price=9+1%&code=c&spec=t&category=0"), "1");
    const auto one = products().at("list").as_array().at(0).as_object();
    EXPECT_EQ(one.at("name").as_string(), "钉&price=9+1%");
    EXPECT_EQ(one.at("spec").as_string(), "t");
    EXPECT_EQ(one.at("price").as_string(), "2.50");
}

TEST_P(goods_requests, products_are_found_by_each_criterion) {
    const auto category = added("wms_prodcate/do_add", "name=五金&parent=0");
    added("wms_product/do_add", "name=扳手&code=WJ-1&spec=6寸&category=" + category);
    added("wms_product/do_add", "name=扳手&code=wj-2&spec=8寸&category=0");
    added("wms_product/do_add", "name=纸箱&category=0");
    const auto total = [&](const std::string& criteria) { return products(criteria).at("total").as_int64(); };
    EXPECT_EQ(total(""), 3);
    EXPECT_EQ(total("&category=" + category), 1);
    EXPECT_EQ(total("&category=0"), 2);
    EXPECT_EQ(total("&category=4711"), 0);
    EXPECT_EQ(total("&name=扳手"), 2);
    EXPECT_EQ(total("&code=WJ-"), 2);
    EXPECT_EQ(total("&spec=8"), 1);
    EXPECT_EQ(total("&category=0&name=扳&code=J&spec=寸"), 1);
    EXPECT_EQ(total("&name=%"), 0);
    const auto first = boost::json::parse(ask("wms_product/get_page", "&page_num=-1&page_size=2"));
    EXPECT_EQ(first.at("page_num").as_int64(), 2);
    EXPECT_EQ(first.at("list").at(0).at("code").as_string(), "WJ-1");
}

TEST_P(goods_requests, what_is_no_product_is_refused) {
    const auto gone = added("wms_prodcate/do_add", "name=旧&parent=0");
    EXPECT_EQ(ask("wms_prodcate/do_delete", "id=" + gone), "1");
    const auto id = added("wms_product/do_add", "name=甲&code=c&category=0&price=1.50");
    for (const auto* price : {"1e5", " 1", "1 ", "-1", "-0.01", "+1", "1.234", "", ".", "1.", ".5", "1,5",
                              "nan", "inf", "0x1", "99999999.01", "100000000.00", "１"}) {
        EXPECT_EQ(ask("wms_product/do_add", std::string("name=x&category=0&price=") + price), refused_result)
            << price;
        EXPECT_EQ(ask("wms_product/do_edit", "id=" + id + "&price=" + price), "0") << price;
    }
    const std::string longest(200, 'x');
    for (const auto& body : std::vector<std::string>{
             "&code=c&category=0", "name=&category=0", "name= &category=0", "name=x",
             "name=x&category=", "name=x&category=-1", "name=x&category=4711", "name=x&category=" + gone,
             "category=0&name=x", "name=x" + longest + "&category=0",
             "name=x&code=x" + longest + "&category=0", "name=x&spec=x" + longest + "&category=0",
             "name=\xff&category=0", "name=x&code=\x01&category=0"})
        EXPECT_EQ(ask("wms_product/do_add", body), refused_result) << body;
    for (const auto& body : std::vector<std::string>{
             "id=" + id + "&name=", "id=" + id + "&name=  ", "id=" + id + "&category=4711",
             "id=" + id + "&category=" + gone, "id=" + id + "&category=x", "id=" + id + "&spec=x" + longest,
             "id=4711&name=x", "id=0&name=x", "name=x"})
        EXPECT_EQ(ask("wms_product/do_edit", body), "0") << body;
    for (const auto* body : {"&category=-1&page_num=1&page_size=20", "&category=x&page_num=1&page_size=20",
                             "&category=&page_num=1&page_size=20", "&page_num=1&page_size=0",
                             "&page_num=1&page_size=201", "&page_num=x&page_size=20", "&page_size=20"})
        EXPECT_EQ(ask("wms_product/get_page", body), empty_page) << body;
    const auto one = products().at("list").at(0);
    EXPECT_EQ(products().at("total").as_int64(), 1);
    EXPECT_EQ(one.at("name").as_string(), "甲");
    EXPECT_EQ(one.at("code").as_string(), "c");
    EXPECT_EQ(one.at("price").as_string(), "1.50");
}

TEST_P(goods_requests, a_category_with_products_is_not_deleted) {
    const auto top = added("wms_prodcate/do_add", "name=甲&parent=0");
    const auto low = added("wms_prodcate/do_add", "name=乙&parent=" + top);
    const auto id = added("wms_product/do_add", "name=货&category=" + low);
    EXPECT_EQ(ask("wms_prodcate/do_delete", "id=" + top), "0");
    EXPECT_EQ(ask("wms_prodcate/do_delete", "id=" + low), "0");
    EXPECT_EQ(products().at("list").at(0).at("category_name").as_string(), "乙");
    EXPECT_EQ(ask("wms_product/do_delete", "id=" + id), "1");
    EXPECT_EQ(ask("wms_prodcate/do_delete", "id=" + top), "1");
    EXPECT_EQ(tree("wms_prodcate/get_prodcate"), "[]");
}

TEST_P(goods_requests, a_request_that_the_network_repeats_takes_effect_once) {
    const auto twice = [&](const std::string& path, const std::string& body) {
        auto lost = world->begin({path, body, cookie}).get();
        if (lost.sent) lost.sent(false);
        EXPECT_EQ(ask(path, body), lost.body) << path;
        return lost.body;
    };
    twice("wms_dept/do_add", "name=甲&parent=0");
    twice("wms_prodcate/do_add", "name=甲&parent=0");
    twice("wms_product/do_add", "name=货&category=1001&price=1.00");
    EXPECT_EQ(number("SELECT count(*) FROM department"), 1);
    EXPECT_EQ(number("SELECT count(*) FROM category"), 1);
    EXPECT_EQ(number("SELECT count(*) FROM product"), 1);
    EXPECT_EQ(twice("wms_product/do_delete", "id=1001"), "1");
    EXPECT_EQ(twice("wms_prodcate/do_delete", "id=1001"), "1");
    EXPECT_EQ(twice("wms_dept/do_delete", "id=1001"), "1");
}

INSTANTIATE_TEST_SUITE_P(engines, goods_requests, testing::ValuesIn(engines()));

} // namespace
} // namespace tavrok::test
