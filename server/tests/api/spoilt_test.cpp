#include <gtest/gtest.h>

#include "api/harness.h"
#include "api/stock_control_world.h"

namespace tavrok::test {
namespace {

/** Saves of a client that does not look at the answers to its lines. */
class spoilt_saves : public testing::TestWithParam<std::string> {
protected:
    void SetUp() override {
        SKIP_WITHOUT(GetParam());
        world = std::make_unique<harness>(GetParam());
        cookie = world->administrator("owner");
        with = std::make_unique<stock_control_world>(world->as(cookie));
    }
    std::string ask(const std::string& path, const std::string& body) { return with->ask(path, body); }
    /** As ask(), and nobody knows whether the answer arrives. */
    std::string send(const std::string& path, const std::string& body) {
        auto answer = world->begin({path, body, cookie}).get();
        answer.sent(false);
        return answer.body;
    }
    std::int64_t documents(const std::string& module, const std::string& criteria) {
        return with->page(module + "/get_page", criteria).at("total").as_int64();
    }
    /** What is shown of the rows of stock, newest first. */
    std::string amounts() {
        std::string text;
        const auto list = with->page("wms_stock_detail/get_page", "").at("list");
        for (const auto& one : list.as_array())
            text += std::string(one.at("amount").as_string()) + " ";
        return text;
    }
    std::string close_inbound(const std::string& draft, const std::string& total = "5.00") {
        return ask("wms_instore/update_total", "id=" + draft + "&total=" + total);
    }
    std::string inbound_line(const std::string& draft, const std::string& rest) {
        return ask("wms_instore_detail/do_add", "main_id=" + draft + "&" + rest);
    }
    /** The line that may get lost unseen: it is worth nothing. */
    std::string worthless() const { return with->line("100", "0.00", "0.00") + "&place=B-2"; }

    static std::string changed(std::string body, const std::string& from, const std::string& to) {
        const auto at = body.find(from);
        EXPECT_NE(at, std::string::npos) << from;
        return body.replace(at, from.size(), to);
    }
    /** The worthless line in forms that are refused. */
    static std::vector<std::string> refused_forms(const std::string& good, const std::string& product,
                                                  const std::string& place) {
        const std::string nul("&remark=a\0b", 11);
        return {changed(good, "&remark=", "&remark=\x02"),
                changed(good, "&remark=", "&remark=\xff"),
                changed(good, "&remark=", nul),
                changed(good, "&remark=", "&remark=" + std::string(1001, 'x')),
                changed(good, place, "&place=" + std::string(201, 'p')),
                changed(good, place, "&plaice=1"),
                changed(good, "&price=0.00", "&price=0.001"),
                changed(good, "&price=0.00", "&price=-1"),
                changed(good, "&total=0.00", "&total=x"),
                changed(good, "product=" + product, "product=999999"),
                changed(good, "product=" + product, "product=")};
    }

    std::unique_ptr<harness> world;
    std::unique_ptr<stock_control_world> with;
    std::string cookie;
};
INSTANTIATE_TEST_SUITE_P(engines, spoilt_saves, testing::ValuesIn(engines()),
                         [](const auto& one) { return one.param; });

TEST_P(spoilt_saves, of_goods_that_come_in_write_nothing) {
    auto forms = refused_forms(worthless(), with->product, "&place=B-2");
    for (const auto* amount : {"100000000", "-1", "1e2", "", "99999999999999999999"})
        forms.push_back(changed(worthless(), "&amount=100", std::string("&amount=") + amount));
    forms.push_back(changed(worthless(), "&place=B-2", "&place= "));
    for (const auto& form : forms) {
        const auto draft = with->inbound_draft("2", "2.50", "5.00");
        EXPECT_EQ(inbound_line(draft, form), "0") << form;
        EXPECT_EQ(close_inbound(draft), "0") << form;
        EXPECT_EQ(documents("wms_instore", "instore_type=1"), 0);
        EXPECT_EQ(amounts(), "");
    }
    const auto refused = static_cast<std::int64_t>(forms.size());
    EXPECT_EQ(world->counted("wms_instore_detail/do_add", "refused"), refused);
    EXPECT_EQ(world->counted("wms_instore/update_total", "refused"), refused);
    const auto draft = with->inbound_draft("2", "2.50", "5.00");
    EXPECT_EQ(inbound_line(draft, worthless()), "1");
    EXPECT_EQ(ask("wms_stock_detail/do_add", worthless()), "1");
    EXPECT_EQ(close_inbound(draft), "1");
    EXPECT_EQ(documents("wms_instore", "instore_type=1"), 1);
    EXPECT_EQ(amounts(), "100 2 ");
}

TEST_P(spoilt_saves, of_a_product_that_was_retired_a_moment_ago_write_nothing) {
    const auto product = with->added("wms_product/do_add", "name=旧货&code=&spec=&category=0&price=0.00");
    const auto draft = with->inbound_draft("2", "2.50", "5.00");
    EXPECT_EQ(ask("wms_product/do_delete", "id=" + product), "1");
    const auto old = changed(worthless(), "product=" + with->product, "product=" + product);
    EXPECT_EQ(inbound_line(draft, old), "0");
    EXPECT_EQ(ask("wms_stock_detail/do_add", old), "0");
    EXPECT_EQ(close_inbound(draft), "0");
    EXPECT_EQ(amounts(), "");
}

TEST_P(spoilt_saves, of_goods_that_go_out_leave_the_claims) {
    const auto row = with->stock("200", "2.50", "500.00");
    const auto lock = [&](const std::string& amount) {
        return ask("wms_stock_detail/lock_stock", "lock_type=3&id=" + row + "&amount=" + amount);
    };
    const auto paid = lock("2");
    const auto free = lock("100");
    const auto good = with->line("100", "0.00", "0.00") + "&stock_id=" + row + "&place=A-1&locked_id=" + free;
    auto forms = refused_forms(good, with->product, "&place=A-1");
    forms.push_back(changed(good, "&stock_id=" + row, "&stock_id=x"));
    const auto line = [&](const std::string& draft, const std::string& what) {
        return ask("wms_outstore_detail/do_add", "main_id=" + draft + "&" + what);
    };
    const auto close = [&](const std::string& draft) {
        return ask("wms_outstore/update_total", "id=" + draft + "&total=5.00");
    };
    for (const auto& form : forms) {
        const auto draft = with->outbound_draft(row, "2", "2.50", "5.00", paid);
        EXPECT_EQ(line(draft, form), "0") << form;
        EXPECT_EQ(close(draft), "0") << form;
        EXPECT_EQ(amounts(), "98 ") << "both claims stand";
        EXPECT_EQ(documents("wms_outstore", "outstore_type=2"), 0);
    }
    const auto draft = with->outbound_draft(row, "2", "2.50", "5.00", paid);
    EXPECT_EQ(line(draft, good), "1");
    EXPECT_EQ(close(draft), "1");
    EXPECT_EQ(amounts(), "98 ") << "both claims were used up";
    EXPECT_EQ(ask("wms_stock_detail/unlock_stock", "locked_id=" + free + "&lock_type=3"), "1");
    EXPECT_EQ(amounts(), "98 ");
}

TEST_P(spoilt_saves, of_a_stocktaking_leave_the_claims) {
    const auto row = with->stock("10", "2.50", "25.00");
    const auto token = ask("wms_stock_detail/lock_stock", "lock_type=2&id=" + row);
    const auto good = with->counted(row, 10, 10, "0.00", "0.00", token).substr(1);
    auto forms = refused_forms(changed(good, "&profitloss_total", "&total"), with->product, "&place=A-1");
    for (auto& form : forms)
        form = changed(form, "&total", "&profitloss_total");
    forms.push_back(changed(good, "&sys_amount=10", "&sys_amount=x"));
    const auto line = [&](const std::string& draft, const std::string& what) {
        return ask("wms_stock_taking_detail/do_add", "main_id=" + draft + "&" + what);
    };
    const auto close = [&](const std::string& draft) {
        return ask("wms_stock_taking/update_profitloss",
                   "id=" + draft + "&profitloss_amount=-2&profitloss_total=-5.00");
    };
    for (const auto& form : forms) {
        const auto draft = with->taking_draft(with->counted(row, 10, 8, "2.50", "-5.00"));
        EXPECT_EQ(line(draft, form), "0") << form;
        EXPECT_EQ(close(draft), "0") << form;
        EXPECT_EQ(amounts(), "10 ");
        EXPECT_EQ(documents("wms_stock_taking", ""), 0);
    }
    const auto draft = with->taking_draft(with->counted(row, 10, 8, "2.50", "-5.00"));
    EXPECT_EQ(line(draft, good), "1");
    EXPECT_EQ(close(draft), "1");
    EXPECT_EQ(amounts(), "8 ");
}

TEST_P(spoilt_saves, are_not_those_of_a_line_that_names_no_draft) {
    const auto draft = with->inbound_draft("2", "2.50", "5.00");
    for (const auto& id :
         {std::string("x"), std::string(""), std::string("999999"), draft + "x", "-" + draft})
        EXPECT_EQ(inbound_line(id, worthless() + "\xff"), "0") << id;
    EXPECT_EQ(ask("wms_instore_detail/do_add", worthless() + "&main_id=" + draft), "0");
    EXPECT_EQ(ask("wms_outstore_detail/do_add", "main_id=" + draft + "&product=x"), "0") << "another module";
    EXPECT_EQ(close_inbound(draft), "1");
}

/** The line got lost without an answer, the announcement did not. */
TEST_P(spoilt_saves, come_of_stock_that_no_line_waits_for) {
    for (int save = 0; save < 2; ++save) {
        const auto draft = with->inbound_draft("2", "2.50", "5.00");
        EXPECT_EQ(send("wms_stock_detail/do_add", worthless()), "0");
        EXPECT_EQ(send("wms_stock_detail/do_add", worthless()), "0") << "the network repeats it";
        EXPECT_EQ(close_inbound(draft), "0") << "the same bytes count for each save: " << save;
    }
    EXPECT_EQ(world->counted("wms_stock_detail/do_add", "replayed"), 2);
    EXPECT_EQ(close_inbound(with->inbound_draft("2", "2.50", "5.00")), "1");
    EXPECT_EQ(amounts(), "2 ");
}

TEST_P(spoilt_saves, come_of_stock_whose_sum_is_no_money) {
    const auto draft = with->inbound_draft("2", "2.50", "5.00");
    EXPECT_EQ(ask("wms_stock_detail/do_add", changed(worthless(), "&total=0.00", "&total=x")), "0");
    EXPECT_EQ(close_inbound(draft), "0");
}

TEST_P(spoilt_saves, answer_a_repeated_line_as_they_did_before) {
    const auto draft = with->inbound_draft("2", "2.50", "5.00");
    const auto form = "main_id=" + draft + "&" + changed(worthless(), "&remark=", "&remark=\x02");
    EXPECT_EQ(send("wms_instore_detail/do_add", form), "0");
    EXPECT_EQ(send("wms_instore_detail/do_add", form), "0");
    EXPECT_EQ(world->counted("wms_instore_detail/do_add", "refused"), 1);
    EXPECT_EQ(world->counted("wms_instore_detail/do_add", "replayed"), 1);
    EXPECT_EQ(close_inbound(draft), "0");
}

TEST_P(spoilt_saves, are_those_too_whose_total_nobody_can_read) {
    for (const std::string total : {"&total=", "&total=x", "&total=1e3", "&total=\xff", "&other=5.00", ""}) {
        const auto header = send("wms_instore/do_add", with->inbound_header(7));
        const auto draft = std::string(boost::json::parse(header).at("insert_id").as_string());
        const auto written = with->line("2", "2.50", "5.00") + "&place=A-1";
        EXPECT_EQ(inbound_line(draft, written), "1");
        EXPECT_EQ(ask("wms_stock_detail/do_add", written), "1");
        EXPECT_EQ(ask("wms_instore/update_total", "id=" + draft + total), "0") << total;
        EXPECT_EQ(close_inbound(draft), "0") << "it is gone: " << total;
        EXPECT_NE(send("wms_instore/do_add", with->inbound_header(7)), header) << "a new save: " << total;
    }
    EXPECT_EQ(amounts(), "");
}

TEST_P(spoilt_saves, are_those_stocktakings_too_whose_sums_nobody_can_read) {
    const auto row = with->stock("10", "2.50", "25.00");
    const auto token = ask("wms_stock_detail/lock_stock", "lock_type=2&id=" + row);
    const std::string good = "&profitloss_amount=-2&profitloss_total=-5.00";
    for (const auto& sums : {changed(good, "-5.00", "5x"), changed(good, "-5.00", ""),
                             changed(good, "=-2", "=--2"), changed(good, "-5.00", "\xff"), std::string()}) {
        const auto draft = with->taking_draft(with->counted(row, 10, 8, "2.50", "-5.00", token));
        EXPECT_EQ(ask("wms_stock_taking/update_profitloss", "id=" + draft + sums), "0") << sums;
        EXPECT_EQ(ask("wms_stock_taking/update_profitloss", "id=" + draft + good), "0") << sums;
    }
    const auto draft = with->taking_draft(with->counted(row, 10, 8, "2.50", "-5.00", token));
    EXPECT_EQ(ask("wms_stock_taking/update_profitloss", "id=" + draft + good), "1");
    EXPECT_EQ(amounts(), "8 ");
}

/** What a client keeps of a failed claim: whatever something between answered. */
TEST_P(spoilt_saves, do_not_come_of_a_strange_claim) {
    const auto row = with->stock("100", "2.50", "250.00");
    for (const auto& page : {"<html>" + std::string(60'000, 'x') + "</html>", std::string(2'000, 'L'),
                             std::string("a\r\nb\x02\x1b"), std::string("a\0b", 3),
                             std::string("x&lock_type=9&y"), std::string("0"), std::string()}) {
        EXPECT_EQ(ask("wms_stock_detail/unlock_stock", "locked_id=" + page + "&lock_type=3"), "1");
        const auto draft = with->outbound_draft(row, "1", "2.50", "2.50", page);
        EXPECT_EQ(ask("wms_outstore/update_total", "id=" + draft + "&total=2.50"), "1");
        const auto taking = with->taking_draft(with->counted(row, 9, 10, "2.50", "2.00", page));
        EXPECT_EQ(ask("wms_stock_taking/update_profitloss",
                      "id=" + taking + "&profitloss_amount=1&profitloss_total=2.00"),
                  "1");
        EXPECT_EQ(amounts(), "100 ");
    }
    const auto transfer = with->added("wms_stock_allot/do_add", with->transfer_header());
    EXPECT_EQ(ask("wms_stock_allot_detail/do_add",
                  "main_id=" + transfer + with->moved(row, "1", "2.50", "2.50", std::string(2'000, '\x02'))),
              "1");
    EXPECT_EQ(amounts(), "1 99 ");
    EXPECT_EQ(ask("wms_stock_detail/unlock_stock", "locked_id=\xff&lock_type=3"), "0");
    EXPECT_EQ(ask("wms_stock_detail/unlock_stock", "locked_id=" + std::string(65'536, 'x') + "&lock_type=3"),
              "0");
}

} // namespace
} // namespace tavrok::test
