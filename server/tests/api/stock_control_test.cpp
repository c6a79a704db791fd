#include <gtest/gtest.h>

#include "api/harness.h"
#include "api/stock_control_world.h"

namespace tavrok::test {
namespace {

const std::string empty_page = R"({"list":[],"total":0,"page_count":0,"page_num":1})";
const std::string no_header = R"({"http_state":0})";

class stock_control : public testing::TestWithParam<std::string> {
protected:
    void SetUp() override {
        SKIP_WITHOUT(GetParam());
        world = std::make_unique<harness>(GetParam());
        cookie = world->administrator("owner");
        with = std::make_unique<stock_control_world>(world->as(cookie));
        row = with->stock("10", "2.50", "25.00");
    }
    std::string ask(const std::string& path, const std::string& body) { return with->ask(path, body); }
    /** As ask(), and nobody knows whether the answer arrives. */
    std::string send(const std::string& path, const std::string& body) {
        auto answer = world->begin({path, body, cookie}).get();
        answer.sent(false);
        return answer.body;
    }
    std::string lock(int use, const std::string& rest = "") {
        return ask("wms_stock_detail/lock_stock", "lock_type=" + std::to_string(use) + "&id=" + row + rest);
    }
    std::string close(const std::string& draft, const std::string& amount, const std::string& total) {
        return ask("wms_stock_taking/update_profitloss",
                   "id=" + draft + "&profitloss_amount=" + amount + "&profitloss_total=" + total);
    }
    std::string line(const std::string& draft, const std::string& what) {
        return ask("wms_stock_allot_detail/do_add", "main_id=" + draft + what);
    }
    /** Place and amount of every row that is listed, newest first. */
    std::string rows() {
        std::string text;
        const auto list = with->page("wms_stock_detail/get_page", "").at("list");
        for (const auto& one : list.as_array())
            text += std::string(one.at("place").as_string()) + ":" +
                    std::string(one.at("amount").as_string()) + " ";
        return text;
    }
    std::int64_t documents(const std::string& module, const std::string& criteria = "") {
        return with->page(module + "/get_page", criteria).at("total").as_int64();
    }
    static std::vector<std::string> keys(const boost::json::value& of) {
        std::vector<std::string> names;
        for (const auto& one : of.as_object())
            names.emplace_back(one.key());
        return names;
    }

    std::unique_ptr<harness> world;
    std::unique_ptr<stock_control_world> with;
    std::string cookie;
    std::string row;
};
INSTANTIATE_TEST_SUITE_P(engines, stock_control, testing::ValuesIn(engines()),
                         [](const auto& one) { return one.param; });

using names = std::vector<std::string>;

TEST_P(stock_control, a_stocktaking_goes_out_as_it_came_in) {
    const auto claim = lock(2);
    ASSERT_EQ(claim.substr(0, 1), "L");
    const auto draft = with->taking_draft(with->counted(row, 10, 8, "2.50", "-5.00", claim));
    EXPECT_EQ(documents("wms_stock_taking"), 0) << "a draft is nobody's document";
    EXPECT_EQ(rows(), "A-1:10 ");
    ASSERT_EQ(close(draft, "-2", "-5.00"), "1");
    EXPECT_EQ(rows(), "A-1:8 ");
    const auto one = with->newest("wms_stock_taking");
    EXPECT_EQ(keys(one), (names{"id", "sn", "operater", "operater_name", "writer", "writer_name",
                                "profitloss_amount", "profitloss_total", "remark", "datetime"}));
    EXPECT_EQ(one.at("profitloss_amount").as_string(), "-2");
    EXPECT_EQ(one.at("profitloss_total").as_string(), "-5.00");
    EXPECT_EQ(one.at("operater").as_string(), with->employee.c_str());
    EXPECT_EQ(one.at("operater_name").as_string(), "经手");
    EXPECT_EQ(std::string(one.at("sn").as_string()).substr(0, 2), "PD");
    EXPECT_EQ(one.at("datetime").as_int64(), world->now.load());
    const auto id = std::string(one.at("id").as_string());
    const auto lines = boost::json::parse(ask("wms_stock_taking/get_detail", "id=" + id));
    ASSERT_EQ(lines.as_array().size(), 1U);
    auto told = lines.at(0).as_object();
    told.erase("id");
    EXPECT_EQ(told, boost::json::object({{"stock_id", row},
                                         {"main_id", id},
                                         {"product", with->product},
                                         {"product_name", "螺栓"},
                                         {"code", "B-8"},
                                         {"spec", "M8"},
                                         {"price", "2.50"},
                                         {"sys_amount", "10"},
                                         {"real_amount", "8"},
                                         {"profitloss_amount", "-2"},
                                         {"profitloss_total", "-5.00"},
                                         {"warehouse", with->warehouse},
                                         {"warehouse_name", "主仓"},
                                         {"place", "A-1"},
                                         {"remark", ""}}));
    EXPECT_EQ(lock(3, "&amount=8").substr(0, 1), "L") << "the row is held no longer";
}

TEST_P(stock_control, a_stocktaking_is_deleted_once) {
    const auto id = with->taking(row);
    EXPECT_EQ(rows(), "A-1:9 ");
    EXPECT_EQ(ask("wms_stock_taking/do_delete", "id=" + id), "1");
    EXPECT_EQ(rows(), "A-1:10 ");
    EXPECT_EQ(ask("wms_stock_taking/do_delete", "id=" + id), "1") << "the same deletion once more";
    EXPECT_EQ(rows(), "A-1:10 ");
    EXPECT_EQ(ask("wms_stock_taking/get_detail", "id=" + id), "[]");
    EXPECT_EQ(documents("wms_stock_taking"), 0);
}

TEST_P(stock_control, sums_that_are_wrong_drop_the_draft_and_leave_the_claim) {
    const auto claim = lock(2);
    const auto counted = with->counted(row, 10, 8, "2.50", "-5.00", claim);
    const auto draft = with->taking_draft(counted);
    EXPECT_EQ(close(draft, "-2", "-5.01"), "0");
    EXPECT_EQ(close(draft, "-2", "-5.00"), "0") << "the draft is gone";
    EXPECT_EQ(documents("wms_stock_taking"), 0);
    EXPECT_EQ(close(with->taking_draft(counted), "-3", "-5.00"), "0");
    EXPECT_EQ(close(with->taking_draft(counted), "-2", "-5.00"), "1");
    EXPECT_EQ(documents("wms_stock_taking"), 1);
    EXPECT_EQ(rows(), "A-1:8 ");
}

TEST_P(stock_control, a_repeated_closing_call_of_a_stocktaking_is_one_document) {
    const auto draft = with->taking_draft(with->counted(row, 10, 8, "2.50", "-5.00"));
    const auto body = "id=" + draft + "&profitloss_amount=-2&profitloss_total=-5.00";
    EXPECT_EQ(send("wms_stock_taking/update_profitloss", body), "1");
    EXPECT_EQ(ask("wms_stock_taking/update_profitloss", body), "1") << "the answer that did not arrive";
    EXPECT_EQ(documents("wms_stock_taking"), 1);
    EXPECT_EQ(ask("wms_stock_taking/update_profitloss", body), "1") << "an arrived answer is the same one";
    EXPECT_EQ(documents("wms_stock_taking"), 1);
    EXPECT_EQ(rows(), "A-1:8 ");
}

TEST_P(stock_control, a_stocktaking_after_one_that_failed_is_a_new_one_though_its_bytes_are_the_same) {
    const auto header = "&operater=" + with->employee + "&writer=";
    const auto first = send("wms_stock_taking/do_add", header);
    EXPECT_EQ(send("wms_stock_taking/do_add", header), first) << "a repeat, so far";
    const auto draft = std::string(boost::json::parse(first).at("insert_id").as_string());
    EXPECT_EQ(send("wms_stock_taking_detail/do_add",
                   "main_id=" + draft + with->counted(row, 10, 8, "2.50", "-5.00")),
              "1");
    EXPECT_EQ(close(draft, "-2", "5.00"), "0");
    EXPECT_NE(send("wms_stock_taking/do_add", header), first);
}

TEST_P(stock_control, a_transfer_goes_out_as_it_came_in) {
    const auto claim = lock(1, "&amount=4&total=10");
    const auto draft = with->added("wms_stock_allot/do_add", with->transfer_header() + "&writer=&remark=急");
    EXPECT_EQ(documents("wms_stock_allot"), 0) << "no line has come";
    EXPECT_EQ(rows(), "A-1:6 ");
    ASSERT_EQ(line(draft, with->moved(row, "4", "3.00", "12.00", claim)), "1");
    EXPECT_EQ(rows(), "Z-9:4 A-1:6 ");
    const auto one = with->newest("wms_stock_allot");
    EXPECT_EQ(keys(one),
              (names{"id", "sn", "warehouse_out", "warehouse_out_name", "warehouse_in", "warehouse_in_name",
                     "operater", "operater_name", "writer", "writer_name", "remark", "datetime"}));
    EXPECT_EQ(std::string(one.at("sn").as_string()).substr(0, 2), "DB");
    EXPECT_EQ(one.at("warehouse_out").as_string(), with->warehouse.c_str());
    EXPECT_EQ(one.at("warehouse_out_name").as_string(), "主仓");
    EXPECT_EQ(one.at("warehouse_in").as_string(), with->second_warehouse.c_str());
    EXPECT_EQ(one.at("warehouse_in_name").as_string(), "分仓");
    EXPECT_EQ(one.at("remark").as_string(), "急");
    EXPECT_EQ(one.at("datetime").as_int64(), world->now.load());
    const auto id = std::string(one.at("id").as_string());
    const auto lines = boost::json::parse(ask("wms_stock_allot/get_detail", "id=" + id));
    ASSERT_EQ(lines.as_array().size(), 1U);
    auto told = lines.at(0).as_object();
    told.erase("id");
    EXPECT_EQ(told, boost::json::object({{"main_id", id},
                                         {"product", with->product},
                                         {"product_name", "螺栓"},
                                         {"code", "B-8"},
                                         {"spec", "M8"},
                                         {"place", "Z-9"},
                                         {"price", "3.00"},
                                         {"amount", "4"},
                                         {"remark", "搬"},
                                         {"stock_id", row}}));
    const auto stock = with->page("wms_stock_detail/get_page", "&warehouse=" + with->second_warehouse);
    EXPECT_EQ(stock.at("list").at(0).at("price").as_string(), "2.50") << "of the row that the goods left";
}

TEST_P(stock_control, all_lines_of_a_transfer_name_the_headers_id_through_a_restart) {
    const auto draft = with->added("wms_stock_allot/do_add", with->transfer_header());
    EXPECT_EQ(line(draft, with->moved(row, "11", "2.50", "27.50")), "0") << "more than there is";
    EXPECT_EQ(documents("wms_stock_allot"), 0);
    EXPECT_EQ(line(draft, with->moved(row, "3", "2.50", "7.50")), "1");
    world->replace_service();
    EXPECT_EQ(line(draft, with->moved(row, "2", "2.50", "5.00")), "1");
    EXPECT_EQ(line(draft, with->moved(row, "6", "2.50", "15.00")), "0");
    EXPECT_EQ(documents("wms_stock_allot"), 1);
    EXPECT_EQ(rows(), "Z-9:2 Z-9:3 A-1:5 ");
    const auto again =
        world->session_of({world->principal_of(cookie).company, world->principal_of(cookie).user});
    EXPECT_EQ(world
                  ->ask("wms_stock_allot_detail/do_add",
                        "main_id=" + draft + with->moved(row, "1", "2.50", "2.50"), again)
                  .body,
              "0")
        << "another session";
}

TEST_P(stock_control, a_repeated_line_of_a_transfer_moves_once) {
    const auto draft = with->added("wms_stock_allot/do_add", with->transfer_header());
    const auto body = "main_id=" + draft + with->moved(row, "3", "2.50", "7.50");
    EXPECT_EQ(send("wms_stock_allot_detail/do_add", body), "1");
    EXPECT_EQ(ask("wms_stock_allot_detail/do_add", body), "1");
    EXPECT_EQ(rows(), "Z-9:3 A-1:7 ");
    EXPECT_EQ(ask("wms_stock_allot_detail/do_add", body), "1") << "a second line that says the same";
    EXPECT_EQ(rows(), "Z-9:3 Z-9:3 A-1:4 ");
    EXPECT_EQ(documents("wms_stock_allot"), 1);
}

TEST_P(stock_control, the_same_header_after_a_line_of_its_transfer_is_a_new_one) {
    const auto header = with->transfer_header();
    const auto first = send("wms_stock_allot/do_add", header);
    EXPECT_EQ(send("wms_stock_allot/do_add", header), first) << "a repeat, so far";
    const auto draft = std::string(boost::json::parse(first).at("insert_id").as_string());
    EXPECT_EQ(line(draft, with->moved(row, "3", "2.50", "7.50")), "1");
    EXPECT_NE(send("wms_stock_allot/do_add", header), first);
}

TEST_P(stock_control, a_transfer_is_deleted_while_its_goods_are_there) {
    const auto id = with->transfer(row);
    EXPECT_EQ(rows(), "Z-9:1 A-1:9 ");
    const auto there =
        with->page("wms_stock_detail/get_page", "&warehouse=" + with->second_warehouse).at("list").at(0);
    const auto claim = ask("wms_stock_detail/lock_stock",
                           "lock_type=3&id=" + std::string(there.at("id").as_string()) + "&amount=1");
    EXPECT_EQ(ask("wms_stock_allot/do_delete", "id=" + id), "0");
    EXPECT_EQ(ask("wms_stock_detail/unlock_stock", "locked_id=" + claim + "&lock_type=3"), "1");
    EXPECT_EQ(ask("wms_stock_taking/do_delete", "id=" + id), "0") << "it is no stocktaking";
    EXPECT_EQ(ask("wms_stock_allot/do_delete", "id=" + id), "1");
    EXPECT_EQ(rows(), "A-1:10 ");
    EXPECT_EQ(ask("wms_stock_allot/do_delete", "id=" + id), "1") << "the same deletion once more";
    EXPECT_EQ(rows(), "A-1:10 ");
}

TEST_P(stock_control, the_box_of_warehouses_shows_what_has_moved) {
    with->transfer(row);
    const auto box = boost::json::parse(
        world->ask({"wms_warehouse/get_option_with_stat", "", cookie, "192.0.2.9", "GET"}).body);
    EXPECT_EQ(box.at(0).at("sum_amount").as_string(), "9");
    EXPECT_EQ(box.at(1).at("sum_amount").as_string(), "1");
}

TEST_P(stock_control, lists_restrict_by_every_key_in_its_order) {
    with->taking(row);
    with->transfer(row);
    const auto now = std::to_string(world->now.load());
    const auto user = std::to_string(world->principal_of(cookie).user);
    const auto all =
        "&date_start=" + now + "&date_end=" + now + "&operater=" + with->employee + "&writer=" + user;
    EXPECT_EQ(documents("wms_stock_taking", all + "&sn=pd&remark="), 1);
    EXPECT_EQ(documents("wms_stock_taking", all + "&sn=db"), 0);
    EXPECT_EQ(documents("wms_stock_taking", "&remark=x"), 0);
    EXPECT_EQ(documents("wms_stock_allot", all.substr(1) + "&sn=DB&warehouse_in=" + with->second_warehouse +
                                               "&warehouse_out=" + with->warehouse),
              1);
    EXPECT_EQ(documents("wms_stock_allot", "warehouse_in=" + with->warehouse), 0);
    EXPECT_EQ(documents("wms_stock_allot", "warehouse_out=" + with->second_warehouse), 0);
    EXPECT_EQ(documents("wms_stock_allot", "date_end=1"), 0);
}

TEST_P(stock_control, bad_input_has_the_form_of_its_endpoint) {
    const auto people = "&operater=" + with->employee;
    const auto taking = with->added("wms_stock_taking/do_add", people + "&writer=");
    const auto draft = with->added("wms_stock_allot/do_add", with->transfer_header());
    const auto counted = with->counted(row, 10, 8, "2.50", "-5.00");
    const auto moved = with->moved(row, "1", "2.50", "2.50");
    const auto changed = [](std::string body, const std::string& from, const std::string& to) {
        const auto at = body.find(from);
        EXPECT_NE(at, std::string::npos) << from;
        return body.replace(at, from.size(), to);
    };
    const auto count = [&](const std::string& from, const std::string& to) {
        return std::array<std::string, 3>{"wms_stock_taking_detail/do_add",
                                          "main_id=" + taking + changed(counted, from, to), "0"};
    };
    const auto move = [&](const std::string& from, const std::string& to) {
        return std::array<std::string, 3>{"wms_stock_allot_detail/do_add",
                                          "main_id=" + draft + changed(moved, from, to), "0"};
    };
    const std::vector<std::array<std::string, 3>> cases{
        {"wms_stock_taking/get_page", "&date_start=x&page_num=1&page_size=20", empty_page},
        {"wms_stock_taking/get_page", "&page_num=1&page_size=201", empty_page},
        {"wms_stock_allot/get_page", "warehouse_in=x&page_num=1&page_size=20", empty_page},
        {"wms_stock_allot/get_page", "warehouse_in=-1&page_num=1&page_size=20", empty_page},
        {"wms_stock_taking/get_detail", "id=999999", "[]"},
        {"wms_stock_allot/get_detail", "id=", "[]"},
        {"wms_stock_taking/do_add", "&writer=", no_header},
        {"wms_stock_taking/do_add", people, no_header},
        {"wms_stock_taking/do_add", people + "&writer=1", no_header},
        {"wms_stock_taking/do_add", people + "&writer=&remark=\xff", no_header},
        {"wms_stock_taking/do_add", people + "&writer=&remark=\x01", no_header},
        {"wms_stock_taking/do_add", people + "&writer=&remark=" + std::string(1001, 'x'), no_header},
        {"wms_stock_allot/do_add", people, no_header},
        {"wms_stock_allot/do_add", "&warehouse_out=" + with->warehouse + people, no_header},
        {"wms_stock_allot/do_add",
         "&warehouse_out=" + with->warehouse + "&warehouse_in=" + with->warehouse + people, no_header},
        {"wms_stock_allot/do_add", "&warehouse_out=999999&warehouse_in=" + with->warehouse + people,
         no_header},
        {"wms_stock_allot/do_add",
         "&warehouse_out=" + with->warehouse + "&warehouse_in=" + with->second_warehouse, no_header},
        {"wms_stock_taking_detail/do_add", "main_id=" + counted, "0"},
        {"wms_stock_taking_detail/do_add", "main_id=999999" + counted, "0"},
        {"wms_stock_taking_detail/do_add", "main_id=" + draft + counted, "0"},
        count("&price=2.50", "&price=-2.50"),
        count("&price=2.50", "&price="),
        count("sys_amount=10", "sys_amount=100000000"),
        count("sys_amount=10", "sys_amount="),
        count("real_amount=8", "real_amount=-8"),
        count("profitloss_amount=-2", "profitloss_amount=2"),
        count("profitloss_amount=-2", "profitloss_amount=--2"),
        count("profitloss_total=-5.00", "profitloss_total=5.00"),
        count("profitloss_total=-5.00",
              "profitloss_total=-5"
              ".000"),
        count("&product=" + with->product, "&product=999999"),
        count("&warehouse=" + with->warehouse, "&warehouse=999999"),
        count("&remark=", "&remark=\x02"),
        count("&place=A-1", "&place=" + std::string(201, 'p')),
        {"wms_stock_taking/update_profitloss", "id=&profitloss_amount=0&profitloss_total=0.00", "0"},
        {"wms_stock_taking/update_profitloss", "id=999999&profitloss_amount=0&profitloss_total=0.00", "0"},
        {"wms_stock_taking/update_profitloss", "id=" + taking + "&profitloss_amount=x&profitloss_total=0.00",
         "0"},
        {"wms_stock_taking/update_profitloss",
         "id=" + taking + "&profitloss_amount=0&profitloss_total=", "0"},
        {"wms_stock_allot_detail/do_add", "main_id=" + moved, "0"},
        {"wms_stock_allot_detail/do_add", "main_id=999999" + moved, "0"},
        {"wms_stock_allot_detail/do_add", "main_id=" + taking + moved, "0"},
        move("&amount=1", "&amount=-1"),
        move("&amount=1", "&amount=100000000"),
        move("&total=2.50", "&total=2.60"),
        move("&place=Z-9", "&place= "),
        move("&stock_id=" + row, "&stock_id=999999"),
        move("&stock_id=" + row, "&stock_id="),
        move("&product=" + with->product, "&product=999999"),
        move("&remark=搬", "&remark=\xc3"),
        {"wms_stock_taking/do_delete", "id=7", "0"},
        {"wms_stock_allot/do_delete", "id=", "0"},
    };
    for (const auto& [path, body, answer] : cases)
        EXPECT_EQ(ask(path, body), answer) << path << " " << body;
    EXPECT_EQ(rows(), "A-1:10 ");
    EXPECT_EQ(documents("wms_stock_taking"), 0);
    EXPECT_EQ(documents("wms_stock_allot"), 0);
    EXPECT_EQ(line(draft, moved), "1") << "the draft is as good as before";
}

TEST_P(stock_control, another_company_sees_and_moves_nothing) {
    const auto taking = with->taking(row);
    const auto transfer = with->transfer(row);
    const auto draft = with->added("wms_stock_allot/do_add", with->transfer_header());
    const auto stranger = world->administrator("stranger");
    auto theirs = stock_control_world(world->as(stranger));
    EXPECT_EQ(theirs.ask("wms_stock_allot_detail/do_add",
                         "main_id=" + draft + with->moved(row, "1", "2.50", "2.50")),
              "0");
    const auto own = theirs.added("wms_stock_allot/do_add", theirs.transfer_header());
    EXPECT_EQ(theirs.ask("wms_stock_allot_detail/do_add",
                         "main_id=" + own + theirs.moved(row, "1", "2.50", "2.50")),
              "0");
    for (const std::string module : {"wms_stock_taking", "wms_stock_allot"}) {
        const auto id = module == "wms_stock_taking" ? taking : transfer;
        EXPECT_EQ(theirs.ask(module + "/get_detail", "id=" + id), "[]");
        EXPECT_EQ(theirs.ask(module + "/do_delete", "id=" + id), "0");
        EXPECT_EQ(theirs.ask(module + "/get_page", "&page_num=1&page_size=20"), empty_page);
    }
    EXPECT_EQ(theirs.ask("wms_stock_allot/do_add", with->transfer_header()), no_header);
    EXPECT_EQ(rows(), "Z-9:1 A-1:8 ");
}

TEST_P(stock_control, a_key_typed_into_a_remark_stays_there) {
    const auto draft =
        with->added("wms_stock_allot/do_add", with->transfer_header() + "&writer=&remark=甲&operater=9&乙%+");
    auto moved = with->moved(row, "1", "2.50", "2.50");
    moved.replace(moved.find("&remark=搬"), std::string("&remark=搬").size(), "&remark=x&price=9");
    EXPECT_EQ(line(draft, moved), "1");
    const auto one = with->newest("wms_stock_allot");
    EXPECT_EQ(one.at("remark").as_string(), "甲&operater=9&乙%+");
    const auto lines =
        boost::json::parse(ask("wms_stock_allot/get_detail", "id=" + std::string(one.at("id").as_string())));
    EXPECT_EQ(lines.at(0).at("remark").as_string(), "x&price=9");
}

} // namespace
} // namespace tavrok::test
