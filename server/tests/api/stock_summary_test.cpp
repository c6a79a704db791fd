#include <gtest/gtest.h>

#include "api/documents_world.h"
#include "api/harness.h"

namespace tavrok::test {
namespace {

const std::string path = "wms_stock_summary/get_page";
const std::string page_end = "&page_num=1&page_size=20";
const std::string empty_page = R"({"list":[],"total":0,"page_count":0,"page_num":1})";

class stock_summary_requests : public testing::TestWithParam<std::string> {
protected:
    void SetUp() override {
        SKIP_WITHOUT(GetParam());
        world = std::make_unique<harness>(GetParam());
        cookie = world->administrator("owner");
        with = std::make_unique<documents_world>(world->as(cookie));
    }
    std::string ask(const std::string& criteria) { return with->ask(path, criteria + page_end); }
    /** The whole answer where the one product is summed up so. */
    std::string page_of(const std::string& average, const std::string& amount,
                        const std::string& total) const {
        return R"({"list":[{"product_name":"螺栓","product":")" + with->product +
               R"(","category_name":"","category":"0","code":"B-8","spec":"M8","avg_price":")" + average +
               R"(","sum_amount":")" + amount + R"(","sum_total":")" + total +
               R"("}],"total":1,"page_count":1,"page_num":1})";
    }

    std::unique_ptr<harness> world;
    std::unique_ptr<documents_world> with;
    std::string cookie;
};
INSTANTIATE_TEST_SUITE_P(engines, stock_summary_requests, testing::ValuesIn(engines()),
                         [](const auto& one) { return one.param; });

TEST_P(stock_summary_requests, the_page_has_its_keys_in_order_and_texts_for_numbers) {
    EXPECT_EQ(ask(""), empty_page);
    with->stock("8", "2.50", "20.00");
    EXPECT_EQ(ask(""), page_of("2.50", "8", "20.00"));
    const auto row = with->stock("2", "1.25", "2.50");
    EXPECT_EQ(ask(""), page_of("2.25", "10", "22.50"));
    ASSERT_NE(with->ask("wms_stock_detail/lock_stock", "lock_type=3&id=" + row + "&amount=2"), "0");
    EXPECT_EQ(ask(""), page_of("2.50", "8", "20.00"));
    EXPECT_EQ(world->ask({"wms_warehouse/get_option_with_stat", "", cookie, "192.0.2.9", "GET"}).body,
              R"([{"id":")" + with->warehouse + R"(","name":"主仓","sum_amount":"8"}])")
        << "the box of warehouses shows what is free as well";
}

TEST_P(stock_summary_requests, the_criteria_are_read_as_the_client_sends_them) {
    with->stock("8", "2.50", "20.00");
    const auto all = page_of("2.50", "8", "20.00");
    const auto now = world->now.load();
    const auto from = "&date_start=" + std::to_string(now);
    const auto to = "&date_end=" + std::to_string(now);
    EXPECT_EQ(ask(from + to + "&product_name=螺&code=b-&spec=m"), all);
    EXPECT_EQ(ask("&date_start=" + std::to_string(now + 1)), empty_page);
    EXPECT_EQ(ask("&date_end=" + std::to_string(now - 1)), empty_page);
    EXPECT_EQ(ask("&date_start=-86400"), all);
    EXPECT_EQ(ask("&product_name=螺母"), empty_page);
    EXPECT_EQ(ask("&code=x"), empty_page);
    EXPECT_EQ(ask("&spec=%"), empty_page);
    EXPECT_EQ(ask("&product_name=x&code=1"), empty_page);
}

TEST_P(stock_summary_requests, pages_are_counted_as_in_the_other_lists) {
    const auto first = with->product;
    with->stock("1", "1.00", "1.00");
    with->product = with->added("wms_product/do_add", "name=螺母&code=&spec=&category=0&price=0.00");
    with->stock("1", "1.00", "1.00");
    const auto at = [&](const std::string& num) {
        const auto answer = boost::json::parse(with->ask(path, "page_num=" + num + "&page_size=1"));
        EXPECT_EQ(answer.at("total").as_int64(), 2);
        EXPECT_EQ(answer.at("page_count").as_int64(), 2);
        return std::string(answer.at("list").at(0).at("product").as_string()) + " on " +
               std::to_string(answer.at("page_num").as_int64());
    };
    EXPECT_EQ(at("1"), with->product + " on 1") << "newest first";
    EXPECT_EQ(at("2"), first + " on 2");
    EXPECT_EQ(at("-1"), first + " on 2");
    EXPECT_EQ(at("0"), with->product + " on 1");
    EXPECT_EQ(at("9"), first + " on 2");
}

TEST_P(stock_summary_requests, bad_input_gets_an_empty_page) {
    with->stock("8", "2.50", "20.00");
    for (const std::string criteria :
         {"&date_start=x", "&date_start=", "&date_end=1.5", "&date_end=99999999999999999999",
          "&product_name=\xff", "&code=\x01\x02", "&warehouse=1"})
        EXPECT_EQ(ask(criteria), empty_page) << criteria;
    EXPECT_EQ(ask("&spec=" + std::string(1001, 'x')), empty_page);
    for (const std::string paging : {"page_num=1", "page_size=20", "page_num=1&page_size=0",
                                     "page_num=1&page_size=201", "page_num=x&page_size=20"})
        EXPECT_EQ(with->ask(path, paging), empty_page) << paging;
}

TEST_P(stock_summary_requests, only_the_company_and_who_may_search_there) {
    with->stock("8", "2.50", "20.00");
    EXPECT_EQ(world->ask(path, page_end, world->administrator("stranger")).body, empty_page);
    const auto company = world->principal_of(cookie).company;
    const auto as = [&](const std::string& name, const std::vector<grant>& grants) {
        return world->ask(path, page_end, world->session_of(world->make_user(company, name, 2, grants))).body;
    };
    EXPECT_EQ(as("looker", {{"stock_summary", "search"}}), page_of("2.50", "8", "20.00"));
    EXPECT_EQ(as("printer", {{"stock_summary", "print"}}), empty_page);
    EXPECT_EQ(as("other", {{"stock_detail", "search"}}), empty_page);
    EXPECT_EQ(world->ask(path, page_end, "").body, "7");
}

} // namespace
} // namespace tavrok::test
