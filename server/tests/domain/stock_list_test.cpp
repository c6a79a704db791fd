#include <algorithm>
#include <random>
#include <set>

#include "domain/stock_scene.h"

namespace tavrok::domain {
namespace {

using test::g_now;
using test::is_refused;

class stock_list : public test::on_stock {
protected:
    std::vector<std::int64_t> ids(const stock_search& search) {
        std::vector<std::int64_t> found;
        for (const auto& item : in->stock(one, search, 1, 200).list)
            found.push_back(item.id);
        return found;
    }
    std::int64_t total(const stock_search& search) { return in->stock(one, search).total; }
};
ON_EVERY_ENGINE(stock_list);

TEST_P(stock_list, shows_every_field_of_a_row) {
    auto line = in->line_in(10, 1'299);
    line.place = "A&B=1%20 '架'";
    line.remark = "第一行\n&x=1";
    const auto row = in->bring_in(line, g_now + 5);
    in->claim(two, row, 3);
    in->claim(two, row, 1);
    const auto page = in->stock(one);
    ASSERT_EQ(page.list.size(), 1U);
    const auto& item = page.list.front();
    EXPECT_EQ(item.id, row);
    EXPECT_EQ(item.warehouse, in->warehouse);
    EXPECT_EQ(item.warehouse_name, "一号仓");
    EXPECT_EQ(item.place, line.place);
    EXPECT_EQ(item.product, in->product);
    EXPECT_EQ(item.product_name, "栖枬漆面护理剂");
    EXPECT_EQ(item.category, 0);
    EXPECT_EQ(item.category_name, "");
    EXPECT_EQ(item.code, "QN-01");
    EXPECT_EQ(item.spec, "500ml");
    EXPECT_EQ(item.price, 1'299);
    EXPECT_EQ(item.amount, 6);
    EXPECT_EQ(item.total, 6 * 1'299);
    EXPECT_EQ(item.remark, line.remark);
    EXPECT_EQ(item.datetime, g_now + 5);
}

TEST_P(stock_list, shows_a_row_that_is_claimed_whole_and_none_that_is_empty) {
    const auto row = in->bring_in(10);
    in->claim(two, row, 10);
    ASSERT_EQ(ids({}), std::vector<std::int64_t>{row});
    EXPECT_EQ(in->stock(one).list.front().amount, 0);
    const auto other = in->bring_in(4);
    EXPECT_EQ(in->take_out(one, {in->line_out(other, 4)}), "");
    EXPECT_EQ(ids({}), std::vector<std::int64_t>{row});
    in->remove_document(one, document_module::outbound, in->number("SELECT max(id) FROM document"));
    EXPECT_EQ(ids({}), (std::vector<std::int64_t>{other, row}));
}

TEST_P(stock_list, is_narrowed_by_each_criterion) {
    const auto plain = in->bring_in(1);
    auto line = in->line_in(1);
    line.product = in->new_product("Wax 蜡", "wx-9", "1L_大");
    line.warehouse = in->open(one, test::some_warehouse("二号仓"), in->handler);
    line.place = "B%货架";
    line.remark = "Sommer";
    const auto other = in->bring_in(line, g_now + 100);
    const std::vector<std::int64_t> just_other{other};
    const std::vector<std::int64_t> just_plain{plain};
    EXPECT_EQ(ids({}), (std::vector<std::int64_t>{other, plain}));
    EXPECT_EQ(ids({.date_start = g_now + 100}), just_other);
    EXPECT_EQ(ids({.date_start = g_now + 101}), std::vector<std::int64_t>{});
    EXPECT_EQ(ids({.date_end = g_now + 99}), just_plain);
    EXPECT_EQ(total({.date_start = g_now, .date_end = g_now + 100}), 2);
    EXPECT_EQ(ids({.warehouse = line.warehouse}), just_other);
    EXPECT_EQ(ids({.product_name = "wAX"}), just_other);
    EXPECT_EQ(ids({.product_name = "漆面"}), just_plain);
    EXPECT_EQ(ids({.spec = "1l_"}), just_other);
    EXPECT_EQ(ids({.code = "WX"}), just_other);
    EXPECT_EQ(ids({.place = "b%"}), just_other);
    EXPECT_EQ(ids({.remark = "SOMM"}), just_other);
    EXPECT_EQ(ids({.product_name = "wax", .code = "QN"}), std::vector<std::int64_t>{});
    EXPECT_EQ(ids({.product_name = "wax", .spec = "1l", .code = "wx", .place = "货架"}), just_other);
    // an id that is none of the company's
    EXPECT_EQ(total({.warehouse = 999'999}), 0);
    // a name that two criteria bind the same value to
    EXPECT_EQ(ids({.code = "q"}), just_plain);
    EXPECT_EQ(ids({.spec = "q"}), std::vector<std::int64_t>{});
}

TEST_P(stock_list, is_of_the_company_alone) {
    in->bring_in(1);
    const auto other = in->another("二号");
    for (const auto& search :
         {stock_search{}, stock_search{.product_name = "漆"}, stock_search{.warehouse = in->warehouse}}) {
        EXPECT_EQ(in->stock(other, search).total, 0);
        EXPECT_EQ(in->stock(one, search).total, 1);
    }
}

TEST_P(stock_list, refuses_what_is_no_criterion_or_no_page) {
    for (const std::int64_t size : {0, -1, 201})
        EXPECT_TRUE(is_refused([&] { in->stock(one, {}, 1, size); }));
    EXPECT_TRUE(is_refused([&] { in->stock(one, {.place = std::string(1001, 'x')}); }));
    EXPECT_TRUE(is_refused([&] { in->stock(one, {.product_name = "\xff"}); }));
    const auto nothing = in->stock(one, {}, 7);
    EXPECT_EQ(nothing.page_num, 1);
    EXPECT_EQ(nothing.page_count, 0);
}

/** Rows come and go between the looks; at every moment the pages of each search together are what a plain
 * look at every row gives. */
TEST_P(stock_list, has_pages_that_are_the_list_together) {
    std::mt19937 random(4711);
    const auto up_to = [&](std::int64_t most) {
        return std::uniform_int_distribution<std::int64_t>(0, most)(random);
    };
    const std::vector<std::int64_t> products{in->product, in->new_product("蜡 A"), in->new_product("蜡 B")};
    std::vector<std::int64_t> rows;
    const std::vector<stock_search> searches{{},
                                             {.product_name = "蜡"},
                                             {.place = "1"},
                                             {.date_start = g_now + 20},
                                             {.product_name = "a", .place = "2"}};
    for (int round = 0; round < 12; ++round) {
        for (int i = 0; i < 6; ++i) {
            auto line = in->line_in(1 + up_to(3));
            line.product = products[static_cast<std::size_t>(up_to(2))];
            line.place = "P" + std::to_string(up_to(30));
            rows.push_back(in->bring_in(line, g_now + up_to(40)));
        }
        const auto victim = rows[static_cast<std::size_t>(up_to(static_cast<std::int64_t>(rows.size()) - 1))];
        if (const auto left = in->on_hand(victim); left > 0) {
            EXPECT_EQ(in->take_out(one, {in->line_out(victim, left)}), "");
        }
        for (const auto& search : searches) {
            const auto all = ids(search); // in one page
            EXPECT_TRUE(std::is_sorted(all.rbegin(), all.rend()));
            EXPECT_EQ(std::set<std::int64_t>(all.begin(), all.end()).size(), all.size());
            const auto size = 1 + up_to(8);
            std::vector<std::int64_t> pages;
            const auto count = in->stock(one, search, 1, size).page_count;
            for (std::int64_t num = 1; num <= count; ++num) {
                for (const auto& item : in->stock(one, search, num, size).list)
                    pages.push_back(item.id);
            }
            EXPECT_EQ(pages, all);
            EXPECT_EQ(in->stock(one, search, -1, size).page_num, std::max<std::int64_t>(count, 1));
        }
        const auto listed = in->number("SELECT count(*) FROM stock WHERE on_hand > 0");
        EXPECT_EQ(total({}), listed);
        EXPECT_EQ(
            total({.product_name = "蜡"}),
            in->number("SELECT count(*) FROM stock s JOIN product p ON p.id = s.product WHERE s.on_hand "
                       "> 0 AND p.name LIKE '蜡%'"));
    }
}

} // namespace
} // namespace tavrok::domain
