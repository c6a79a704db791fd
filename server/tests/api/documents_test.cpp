#include <gtest/gtest.h>

#include "api/documents_world.h"
#include "api/harness.h"

namespace tavrok::test {
namespace {

const std::string empty_page = R"({"list":[],"total":0,"page_count":0,"page_num":1})";

class document_requests : public testing::TestWithParam<std::string> {
protected:
    void SetUp() override {
        SKIP_WITHOUT(GetParam());
        world = std::make_unique<harness>(GetParam());
        cookie = world->administrator("owner");
        with = std::make_unique<documents_world>(world->as(cookie));
    }
    std::string ask(const std::string& path, const std::string& body) { return with->ask(path, body); }
    std::string amount_shown() {
        const auto rows = with->page("wms_stock_detail/get_page", "");
        if (rows.at("list").as_array().empty()) return "none";
        return std::string(rows.at("list").at(0).at("amount").as_string());
    }
    std::int64_t documents(const std::string& module, int kind) {
        return with->page(module + "/get_page", module.substr(4) + "_type=" + std::to_string(kind))
            .at("total")
            .as_int64();
    }

    std::unique_ptr<harness> world;
    std::unique_ptr<documents_world> with;
    std::string cookie;
};

TEST_P(document_requests, an_inbound_document_goes_out_as_it_came_in) {
    const auto draft = with->inbound_draft("8", "2.50", "20.00");
    EXPECT_EQ(documents("wms_instore", 1), 0) << "a draft is nobody's document";
    ASSERT_EQ(ask("wms_instore/update_total", "id=" + draft + "&total=20.00"), "1");
    const auto rows = with->page("wms_instore/get_page", "instore_type=1");
    ASSERT_EQ(rows.at("total").as_int64(), 1);
    const auto& one = rows.at("list").at(0).as_object();
    const auto text = [&one](const char* key) { return std::string(one.at(key).as_string()); };
    EXPECT_EQ(text("company"), with->supplier);
    EXPECT_EQ(text("company_name"), "甲1");
    EXPECT_EQ(text("dept"), "");
    EXPECT_EQ(text("operater_name"), "经手");
    EXPECT_EQ(text("total"), "20.00");
    EXPECT_EQ(text("type"), "1");
    EXPECT_EQ(text("sn").substr(0, 2), "CG");
    EXPECT_EQ(text("sn").substr(10), "-0001");
    EXPECT_EQ(one.at("datetime").as_int64(), world->now.load());
    const auto lines = boost::json::parse(ask("wms_instore/get_detail", "id=" + text("id")));
    ASSERT_EQ(lines.as_array().size(), 1U);
    EXPECT_EQ(boost::json::serialize(lines.at(0).at("amount")), "\"8\"");
    EXPECT_EQ(boost::json::serialize(lines.at(0).at("price")), "\"2.50\"");
    EXPECT_EQ(boost::json::serialize(lines.at(0).at("total")), "\"20.00\"");
    EXPECT_EQ(boost::json::serialize(lines.at(0).at("datetime")), "\"1800000000\"");
    EXPECT_EQ(boost::json::serialize(lines.at(0).at("main_id")), "\"" + text("id") + "\"");
    EXPECT_FALSE(lines.at(0).as_object().contains("stock_id"));
}

TEST_P(document_requests, goods_go_out_over_a_claim) {
    const auto row = with->stock("8", "2.50", "20.00");
    const auto claim = ask("wms_stock_detail/lock_stock", "lock_type=3&id=" + row + "&amount=5&total=12.5");
    ASSERT_GT(claim.size(), 20U);
    EXPECT_TRUE(claim[0] >= 'A' && claim[0] <= 'Z');
    EXPECT_EQ(amount_shown(), "3");
    EXPECT_EQ(ask("wms_stock_detail/lock_stock", "lock_type=3&id=" + row + "&amount=4"), "0");
    const auto draft = with->outbound_draft(row, "5", "3.00", "15.00", claim);
    ASSERT_EQ(ask("wms_outstore/update_total", "id=" + draft + "&total=15.00"), "1");
    EXPECT_EQ(amount_shown(), "3");
    const auto rows = with->page("wms_outstore/get_page", "outstore_type=2");
    ASSERT_EQ(rows.at("total").as_int64(), 1);
    const auto id = std::string(rows.at("list").at(0).at("id").as_string());
    const auto lines = boost::json::parse(ask("wms_outstore/get_detail", "id=" + id));
    EXPECT_EQ(lines.at(0).at("stock_id").as_string(), row.c_str());
    EXPECT_EQ(ask("wms_outstore/do_delete", "id=" + id), "1");
    EXPECT_EQ(amount_shown(), "8");
    EXPECT_EQ(ask("wms_outstore/do_delete", "id=" + id), "1") << "the network may bring it twice";
    EXPECT_EQ(amount_shown(), "8");
    EXPECT_EQ(documents("wms_outstore", 2), 0);
    world->now += 121;
    EXPECT_EQ(ask("wms_outstore/do_delete", "id=" + id), "0");
}

TEST_P(document_requests, a_claim_given_back_is_free_and_giving_it_back_again_is_a_success) {
    const auto row = with->stock("8", "2.50", "20.00");
    const auto claim = ask("wms_stock_detail/lock_stock", "lock_type=3&id=" + row + "&amount=8&total=20");
    EXPECT_EQ(amount_shown(), "0");
    EXPECT_EQ(ask("wms_stock_detail/unlock_stock", "locked_id=" + claim + "&lock_type=3"), "1");
    EXPECT_EQ(amount_shown(), "8");
    EXPECT_EQ(ask("wms_stock_detail/unlock_stock", "locked_id=" + claim + "&lock_type=3"), "1");
    EXPECT_EQ(ask("wms_stock_detail/unlock_stock", "locked_id=0&lock_type=3"), "1");
    EXPECT_EQ(amount_shown(), "8");
}

TEST_P(document_requests, a_wrong_sum_drops_the_draft_and_leaves_the_claim) {
    const auto row = with->stock("8", "2.50", "20.00");
    const auto claim = ask("wms_stock_detail/lock_stock", "lock_type=3&id=" + row + "&amount=5");
    auto draft = with->outbound_draft(row, "5", "2.50", "12.50", claim);
    EXPECT_EQ(ask("wms_outstore/update_total", "id=" + draft + "&total=12.60"), "0");
    EXPECT_EQ(ask("wms_outstore/update_total", "id=" + draft + "&total=12.50"), "0") << "the draft is gone";
    EXPECT_EQ(amount_shown(), "3");
    EXPECT_EQ(world->counted("wms_outstore/update_total", "refused"), 2);
    draft = with->outbound_draft(row, "5", "2.50", "12.50", claim);
    EXPECT_EQ(ask("wms_outstore/update_total", "id=" + draft + "&total=12.50"), "1");
    EXPECT_EQ(amount_shown(), "3");
    EXPECT_EQ(documents("wms_outstore", 2), 1);
}

TEST_P(document_requests, every_kind_is_written_and_listed_under_its_own_kind) {
    const auto row = with->stock("60", "1.00", "60.00");
    for (int kind = 1; kind <= 7; ++kind) {
        const auto draft = with->inbound_draft("1", "1.00", "1.00", kind);
        EXPECT_EQ(ask("wms_instore/update_total", "id=" + draft + "&total=1.00"), "1") << kind;
        EXPECT_EQ(documents("wms_instore", kind), kind == 1 ? 2 : 1) << kind;
    }
    for (int kind = 1; kind <= 6; ++kind) {
        const auto draft = with->outbound_draft(row, "1", "1.00", "1.00", "", kind);
        EXPECT_EQ(ask("wms_outstore/update_total", "id=" + draft + "&total=1.00"), "1") << kind;
        EXPECT_EQ(documents("wms_outstore", kind), 1) << kind;
    }
}

TEST_P(document_requests, a_repeated_closing_call_is_one_document) {
    const auto draft = with->inbound_draft("8", "2.50", "20.00");
    const wish close{"wms_instore/update_total", "id=" + draft + "&total=20.00", cookie};
    auto first = world->begin(close).get();
    EXPECT_EQ(first.body, "1");
    first.sent(false);
    EXPECT_EQ(world->ask(close).body, "1") << "the answer that did not arrive";
    EXPECT_EQ(documents("wms_instore", 1), 1);
    EXPECT_EQ(amount_shown(), "8");
    EXPECT_EQ(world->ask(close).body, "1") << "an answer that left may be lost on its way";
    EXPECT_EQ(world->ask(close).body, "1");
    EXPECT_EQ(documents("wms_instore", 1), 1);
    EXPECT_EQ(amount_shown(), "8");
    world->now += 121;
    EXPECT_EQ(world->ask(close).body, "0") << "a draft that is gone";
}

/** As after a crash, which loses what was known of arrivals. */
TEST_P(document_requests, a_save_after_one_that_failed_is_a_new_one_though_its_bytes_are_the_same) {
    const auto send = [this](const std::string& path, const std::string& body) {
        auto answer = world->begin({path, body, cookie}).get();
        answer.sent(false);
        return answer.body;
    };
    const auto written = with->line("8", "2.50", "20.00") + "&place=A-1";
    const auto header = send("wms_instore/do_add", with->inbound_header(1));
    const auto draft = std::string(boost::json::parse(header).at("insert_id").as_string());
    EXPECT_EQ(send("wms_instore/do_add", with->inbound_header(1)), header) << "a repeat, so far";
    EXPECT_EQ(send("wms_instore_detail/do_add", "main_id=" + draft + "&" + written), "1");
    EXPECT_NE(send("wms_instore/do_add", with->inbound_header(1)), header) << "its line had its answer";
    EXPECT_EQ(send("wms_stock_detail/do_add", written), "1");
    EXPECT_EQ(ask("wms_instore/update_total", "id=" + draft + "&total=40.00"), "0");

    const auto again = with->inbound_draft("8", "2.50", "20.00");
    EXPECT_NE(again, draft);
    EXPECT_EQ(ask("wms_instore/update_total", "id=" + again + "&total=20.00"), "1");
    EXPECT_EQ(documents("wms_instore", 1), 1);
    EXPECT_EQ(amount_shown(), "8");
}

/** The timer stands still: the second service learns nothing from the first but by the requests themselves.
 */
TEST_P(document_requests, two_lines_that_are_alike_are_two_through_two_services_as_well) {
    api::settings options;
    options.pepper = harness::pepper;
    options.sweep_every = std::chrono::minutes(0);
    hand_timer timer;
    const auto second = api::service::make(
        *world->database, options, [this] { return world->now.load(); },
        [&timer](std::chrono::milliseconds delay, std::function<void()> task) {
            timer.after(delay, std::move(task));
        });
    const auto through_second = [&](const std::string& path, const std::string& body) {
        std::promise<std::string> got;
        http::request request{"POST", path, body, cookie, "192.0.2.9", "s"};
        second->handle(std::move(request), [&got](http::response answer) {
            if (answer.on_sent) answer.on_sent(true);
            got.set_value(answer.body);
        });
        return got.get_future().get();
    };
    const auto draft = with->inbound_draft("8", "2.50", "20.00");
    const auto line = with->line("8", "2.50", "20.00") + "&place=A-1";
    EXPECT_EQ(through_second("wms_instore_detail/do_add", "main_id=" + draft + "&" + line), "1");
    EXPECT_EQ(through_second("wms_stock_detail/do_add", line), "1");
    EXPECT_EQ(through_second("wms_instore/update_total", "id=" + draft + "&total=40.00"), "1");
    EXPECT_EQ(with->page("wms_stock_detail/get_page", "").at("total").as_int64(), 2);
    const auto next = boost::json::parse(through_second("wms_instore/do_add", with->inbound_header(1)));
    EXPECT_NE(next.at("insert_id").as_string(), draft.c_str()) << "the next document is none that was closed";
}

TEST_P(document_requests, bad_input_has_the_form_of_its_endpoint) {
    const auto row = with->stock("8", "2.50", "20.00");
    const std::vector<std::array<std::string, 3>> cases{
        {"wms_instore/get_page", "instore_type=8&page_num=1&page_size=20", empty_page},
        {"wms_instore/get_page", "date_start=x&instore_type=1&page_num=1&page_size=20", empty_page},
        {"wms_outstore/get_page", "outstore_type=7&page_num=1&page_size=20", empty_page},
        {"wms_outstore/get_page", "outstore_type=1&page_num=1&page_size=201", empty_page},
        {"wms_stock_detail/get_page", "&warehouse=x&page_num=1&page_size=20", empty_page},
        {"wms_instore/get_detail", "id=999999", "[]"},
        {"wms_outstore/get_detail", "id=", "[]"},
        {"wms_instore/do_add", "type=1&operater=" + with->employee, R"({"http_state":0})"},
        {"wms_instore/do_add", "type=1&company=" + with->client + "&operater=" + with->employee,
         R"({"http_state":0})"},
        {"wms_instore/do_add", with->inbound_header(7) + "&remark=\xff", R"({"http_state":0})"},
        {"wms_instore/do_add", "type=7&operater=" + with->employee + "&writer=1", R"({"http_state":0})"},
        {"wms_instore_detail/do_add", "main_id=&" + with->line("1", "1.00", "1.00") + "&place=A", "0"},
        {"wms_instore_detail/do_delete", "id=1", "0"},
        {"wms_stock_detail/do_add", with->line("1", "1.00", "1.00") + "&place=A", "0"},
        {"wms_stock_detail/lock_stock", "lock_type=4&id=" + row + "&amount=1", "0"},
        {"wms_stock_detail/lock_stock", "lock_type=3&id=" + row + "&amount=1&total=much", "0"},
        {"wms_stock_detail/lock_stock", "lock_type=3&id=" + row + "&amount=-1", "0"},
        {"wms_stock_detail/lock_stock", "lock_type=3&id=999999&amount=1", "0"},
        {"wms_stock_detail/unlock_stock", "locked_id=x&lock_type=0", "0"},
        {"wms_instore/update_total", "id=&total=1.00", "0"},
        {"wms_instore/update_total", "id=999999&total=1.00", "0"},
        {"wms_instore/update_total", "id=999999&total=-1.00", "0"},
        {"wms_instore/do_delete", "id=7", "0"},
    };
    for (const auto& [path, body, answer] : cases)
        EXPECT_EQ(ask(path, body), answer) << path << " " << body;
    EXPECT_EQ(amount_shown(), "8");
    EXPECT_EQ(documents("wms_instore", 1), 1);
}

TEST_P(document_requests, the_total_of_a_claim_may_have_an_exponent) {
    const auto row = with->stock("8", "2.50", "20.00");
    const auto claim =
        ask("wms_stock_detail/lock_stock", "lock_type=3&id=" + row + "&amount=1&total=1.23457e+06");
    EXPECT_EQ(claim.substr(0, 1), "L");
    EXPECT_EQ(ask("wms_stock_detail/lock_stock", "lock_type=2&id=" + row).substr(0, 1), "L")
        << "one's own claims are in nobody's way";
}

TEST_P(document_requests, a_key_typed_into_a_remark_stays_there) {
    const auto draft = with->added("wms_instore/do_add", with->inbound_header(7) + "&remark=甲&total=9&乙%+");
    const auto written = with->line("1", "1.00", "1.00", "x&price=9&place=B") + "&place=A-1";
    EXPECT_EQ(ask("wms_instore_detail/do_add", "main_id=" + draft + "&" + written), "1");
    EXPECT_EQ(ask("wms_stock_detail/do_add", written), "1");
    ASSERT_EQ(ask("wms_instore/update_total", "id=" + draft + "&total=1.00"), "1");
    const auto rows = with->page("wms_stock_detail/get_page", "&remark=PRICE=9");
    ASSERT_EQ(rows.at("total").as_int64(), 1);
    EXPECT_EQ(rows.at("list").at(0).at("remark").as_string(), "x&price=9&place=B");
    EXPECT_EQ(rows.at("list").at(0).at("place").as_string(), "A-1");
    const auto document = with->page("wms_instore/get_page", "instore_type=7").at("list").at(0);
    EXPECT_EQ(document.at("remark").as_string(), "甲&total=9&乙%+");
}

TEST_P(document_requests, another_company_sees_and_moves_nothing) {
    const auto row = with->stock("8", "2.50", "20.00");
    const auto draft = with->inbound_draft("1", "1.00", "1.00");
    const auto claim = ask("wms_stock_detail/lock_stock", "lock_type=3&id=" + row + "&amount=5");
    const auto document = std::string(
        with->page("wms_instore/get_page", "instore_type=1").at("list").at(0).at("id").as_string());
    const auto stranger = world->administrator("stranger");
    const auto strange = [&](const std::string& path, const std::string& body) {
        return world->ask(path, body, stranger).body;
    };
    EXPECT_EQ(strange("wms_stock_detail/lock_stock", "lock_type=3&id=" + row + "&amount=1"), "0");
    EXPECT_EQ(strange("wms_stock_detail/unlock_stock", "locked_id=" + claim + "&lock_type=3"), "1");
    EXPECT_EQ(amount_shown(), "3") << "that gave nothing back";
    EXPECT_EQ(strange("wms_instore/update_total", "id=" + draft + "&total=1.00"), "0");
    EXPECT_EQ(strange("wms_instore/get_detail", "id=" + document), "[]");
    EXPECT_EQ(strange("wms_instore/do_delete", "id=" + document), "0");
    EXPECT_EQ(strange("wms_instore/get_page", "instore_type=1&page_num=1&page_size=20"), empty_page);
    EXPECT_EQ(strange("wms_stock_detail/get_page", "&page_num=1&page_size=20"), empty_page);
    EXPECT_EQ(ask("wms_instore/update_total", "id=" + draft + "&total=1.00"), "1");
}

TEST_P(document_requests, a_user_writes_documents_of_the_kinds_that_he_may_add) {
    const auto row = with->stock("8", "2.50", "20.00");
    const auto company = world->principal_of(cookie).company;
    const auto user =
        world->make_user(company, "clerk", 2, {{"instore_other", "add"}, {"outstore_other", "add"}});
    const auto clerk = world->session_of(user);
    const auto asks = [&](const std::string& path, const std::string& body) {
        return world->ask(path, body, clerk).body;
    };
    const auto opened = [&](const std::string& path, const std::string& body) {
        const auto answer = boost::json::parse(asks(path, body));
        return answer.at("http_state").as_int64() == 1 ? std::string(answer.at("insert_id").as_string()) : "";
    };
    EXPECT_EQ(opened("wms_instore/do_add", with->inbound_header(1)), "");
    EXPECT_EQ(opened("wms_outstore/do_add", with->outbound_header(2)), "");
    const auto in = opened("wms_instore/do_add", with->inbound_header(7));
    const auto line = with->line("1", "1.00", "1.00") + "&place=A-1";
    EXPECT_EQ(asks("wms_instore_detail/do_add", "main_id=" + in + "&" + line), "1");
    EXPECT_EQ(asks("wms_stock_detail/do_add", line), "1");
    EXPECT_EQ(asks("wms_instore/update_total", "id=" + in + "&total=1.00"), "1");
    const auto claim = asks("wms_stock_detail/lock_stock", "lock_type=3&id=" + row + "&amount=1");
    EXPECT_EQ(claim.substr(0, 1), "L");
    const auto out = opened("wms_outstore/do_add", with->outbound_header(6));
    EXPECT_EQ(asks("wms_outstore_detail/do_add", "main_id=" + out + "&" + with->line("1", "1.00", "1.00") +
                                                     "&stock_id=" + row + "&place=A-1&locked_id=" + claim),
              "1");
    EXPECT_EQ(asks("wms_outstore/update_total", "id=" + out + "&total=1.00"), "1");
    EXPECT_EQ(documents("wms_instore", 7), 1);
    EXPECT_EQ(documents("wms_outstore", 6), 1);
}

TEST_P(document_requests, the_session_that_opened_a_draft_is_the_only_one_that_writes_it) {
    const auto draft = with->inbound_draft("8", "2.50", "20.00");
    const auto again =
        world->session_of({world->principal_of(cookie).company, world->principal_of(cookie).user});
    const auto line = with->line("1", "1.00", "1.00") + "&place=A-1";
    EXPECT_EQ(world->ask("wms_instore_detail/do_add", "main_id=" + draft + "&" + line, again).body, "0");
    EXPECT_EQ(world->ask("wms_instore/update_total", "id=" + draft + "&total=20.00", again).body, "0");
    EXPECT_EQ(ask("wms_instore/update_total", "id=" + draft + "&total=20.00"), "1") << "it was left alone";
}

INSTANTIATE_TEST_SUITE_P(engines, document_requests, testing::ValuesIn(engines()),
                         [](const auto& one) { return one.param; });

} // namespace
} // namespace tavrok::test
