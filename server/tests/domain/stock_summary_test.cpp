#include "domain/stock_summary.h"

#include <algorithm>
#include <random>

#include "domain/stock_scene.h"

namespace tavrok::domain {
namespace {

using test::g_now;
using test::is_refused;

/** A batch as a plain look at every row would find it. */
struct batch {
    std::int64_t row;
    std::int64_t product;
    std::int64_t price;
    std::int64_t at;
    std::int64_t on_hand;
    std::int64_t claimed{0};
    std::vector<std::string> tokens{};
};

/** What the summary must say, worked out batch by batch in steps that leave no doubt. */
struct expected {
    std::int64_t on_hand{0};
    std::int64_t free{0};
    std::int64_t worth{0};
    std::int64_t worth_free{0};

    static std::int64_t rounded(std::int64_t worth, std::int64_t count) {
        const auto whole = worth / count;
        return worth % count * 2 >= count ? whole + 1 : whole;
    }
    std::string text(std::int64_t product) const {
        const auto average = free > 0 ? rounded(worth_free, free) : rounded(worth, on_hand);
        return std::to_string(product) + ": " + std::to_string(free) + " at " + std::to_string(average) +
               " = " + std::to_string(worth_free);
    }
};

std::string text_of(const summary_item& one) {
    return std::to_string(one.product) + ": " + std::to_string(one.sum_amount) + " at " +
           std::to_string(one.avg_price) + " = " + std::to_string(static_cast<std::int64_t>(one.sum_total));
}

class stock_summary : public test::on_stock {
protected:
    list_page<summary_item> look(const principal& who, const summary_search& search = {},
                                 std::int64_t num = 1, std::int64_t size = 200) {
        return in->read([&](store::connection& with) {
            return list_stock_summary(with, who, search, {num, size}, in->counts);
        });
    }
    std::vector<std::string> texts(const summary_search& search = {}) {
        std::vector<std::string> all;
        for (const auto& item : look(one, search).list)
            all.push_back(text_of(item));
        return all;
    }
    std::string only(const summary_search& search = {}) {
        const auto all = texts(search);
        return all.size() == 1 ? all.front() : std::to_string(all.size()) + " products";
    }
    std::string of(std::int64_t amount, std::int64_t average, std::int64_t total) const {
        return std::to_string(in->product) + ": " + std::to_string(amount) + " at " +
               std::to_string(average) + " = " + std::to_string(total);
    }
    std::int64_t bring(std::int64_t product, std::int64_t amount, std::int64_t price,
                       std::int64_t at = g_now) {
        auto line = in->line_in(amount, price);
        line.product = product;
        return in->bring_in(line, at);
    }
};
ON_EVERY_ENGINE(stock_summary);

TEST_P(stock_summary, has_one_row_for_a_product_over_warehouses_places_and_prices) {
    auto line = in->line_in(10, 250);
    in->bring_in(line);
    line.place = "B-02";
    in->bring_in(line);
    line = in->line_in(4, 1'000);
    line.warehouse = in->open(one, test::some_warehouse("二号仓"), in->handler);
    in->bring_in(line);
    in->new_product("没有库存");
    const auto page = look(one);
    ASSERT_EQ(page.list.size(), 1U);
    EXPECT_EQ(page.total, 1);
    EXPECT_EQ(page.page_count, 1);
    const auto& item = page.list.front();
    EXPECT_EQ(item.product, in->product);
    EXPECT_EQ(item.product_name, "栖枬漆面护理剂");
    EXPECT_EQ(item.code, "QN-01");
    EXPECT_EQ(item.spec, "500ml");
    EXPECT_EQ(item.category, 0);
    EXPECT_EQ(item.category_name, "");
    EXPECT_EQ(text_of(item), of(24, 375, 9'000));
}

TEST_P(stock_summary, shows_what_claims_leave_over_and_always_a_price) {
    const auto cheap = bring(in->product, 10, 100);
    const auto dear = bring(in->product, 10, 300);
    EXPECT_EQ(only(), of(20, 200, 4'000));
    const auto token = in->claim(two, cheap, 10);
    EXPECT_EQ(only(), of(10, 300, 3'000));
    in->claim(one, dear, 10);
    EXPECT_EQ(only(), of(0, 200, 0)) << "of what is on hand, where nothing is free";
    in->give_back(two, token);
    EXPECT_EQ(only(), of(10, 100, 1'000));
    in->claim(two, claim_use::stocktaking, cheap, 0);
    EXPECT_EQ(only(), of(10, 100, 1'000)) << "a claim on the whole row is none by quantity";
}

TEST_P(stock_summary, rounds_the_average_half_away_from_zero) {
    bring(in->product, 1, 1);
    bring(in->product, 1, 2);
    EXPECT_EQ(only(), of(2, 2, 3)) << "1.5 hundredths";
    bring(in->product, 1, 1);
    EXPECT_EQ(only(), of(3, 1, 4)) << "1.33";
    bring(in->product, 2, 0);
    EXPECT_EQ(only(), of(5, 1, 4)) << "0.8";
    bring(in->product, 3, 0);
    EXPECT_EQ(only(), of(8, 1, 4)) << "0.5";
    bring(in->product, 1, 0);
    EXPECT_EQ(only(), of(9, 0, 4)) << "0.44";
}

TEST_P(stock_summary, is_exact_beyond_64_bits) {
    for (int i = 0; i < 10; ++i)
        bring(in->product, g_highest_amount, g_highest_price);
    const auto page = look(one);
    ASSERT_EQ(page.list.size(), 1U);
    EXPECT_EQ(page.list.front().avg_price, g_highest_price);
    EXPECT_EQ(page.list.front().sum_amount, 999'999'990);
    EXPECT_EQ(format_money_sum(page.list.front().sum_total), "99999998000000010.00");
}

TEST_P(stock_summary, sums_only_what_came_in_within_the_dates) {
    bring(in->product, 1, 100, g_now);
    bring(in->product, 2, 100, g_now + 100);
    const auto later = in->new_product("后来");
    bring(later, 5, 100, g_now + 200);
    EXPECT_EQ(look(one).total, 2);
    EXPECT_EQ(only({.date_start = g_now, .date_end = g_now + 100}), of(3, 100, 300));
    EXPECT_EQ(only({.date_start = g_now + 1, .date_end = g_now + 100}), of(2, 100, 200));
    EXPECT_EQ(only({.date_start = g_now, .date_end = g_now + 99}), of(1, 100, 100));
    EXPECT_EQ(only({.date_end = g_now}), of(1, 100, 100));
    EXPECT_EQ(look(one, {.date_start = g_now + 200}).list.front().product, later);
    EXPECT_EQ(look(one, {.date_start = g_now + 101}).total, 1);
    EXPECT_EQ(look(one, {.date_start = g_now + 201}).total, 0);
    EXPECT_EQ(look(one, {.date_end = g_now - 1}).total, 0);
    EXPECT_EQ(look(one, {.date_start = g_now + 100, .date_end = g_now + 99}).total, 0);
}

TEST_P(stock_summary, is_narrowed_by_each_text) {
    bring(in->product, 1, 1);
    const auto wax = in->new_product("Wax 蜡", "wx-9", "1L_大");
    bring(wax, 1, 1);
    const auto found = [&](const summary_search& search) {
        std::vector<std::int64_t> ids;
        for (const auto& item : look(one, search).list)
            ids.push_back(item.product);
        return ids;
    };
    using ids = std::vector<std::int64_t>;
    EXPECT_EQ(found({}), (ids{wax, in->product})) << "newest first";
    EXPECT_EQ(found({.product_name = "wAX"}), ids{wax});
    EXPECT_EQ(found({.product_name = "漆面"}), ids{in->product});
    EXPECT_EQ(found({.code = "WX"}), ids{wax});
    EXPECT_EQ(found({.spec = "1l_"}), ids{wax});
    EXPECT_EQ(found({.spec = "_"}), ids{wax}) << "no wild card";
    EXPECT_EQ(found({.product_name = "wax", .code = "QN"}), ids{});
    EXPECT_EQ(found({.product_name = "蜡", .code = "9", .spec = "大"}), ids{wax});
    // what two criteria bind the same value to
    EXPECT_EQ(found({.code = "q"}), ids{in->product});
    EXPECT_EQ(found({.spec = "q"}), ids{});
}

TEST_P(stock_summary, is_of_the_company_alone) {
    bring(in->product, 1, 1);
    const auto other = in->another("二号");
    for (const auto& search : {summary_search{}, summary_search{.product_name = "漆"}}) {
        EXPECT_EQ(look(other, search).total, 0);
        EXPECT_EQ(look(one, search).total, 1);
    }
}

TEST_P(stock_summary, refuses_what_is_no_criterion_or_no_page) {
    for (const std::int64_t size : {0, -1, 201})
        EXPECT_TRUE(is_refused([&] { look(one, {}, 1, size); }));
    EXPECT_TRUE(is_refused([&] { look(one, {.code = std::string(1001, 'x')}); }));
    EXPECT_TRUE(is_refused([&] { look(one, {.product_name = "\xff"}); }));
    const auto nothing = look(one, {}, 7);
    EXPECT_EQ(nothing.page_num, 1);
    EXPECT_EQ(nothing.page_count, 0);
    EXPECT_TRUE(nothing.list.empty());
}

/** Batches come, are claimed and go between the looks. */
class stock_summary_days : public stock_summary {
protected:
    void SetUp() override {
        stock_summary::SetUp();
        if (IsSkipped()) return;
        products = {in->product};
        for (int i = 0; i < 6; ++i)
            products.push_back(in->new_product("货 " + std::to_string(i)));
    }
    std::int64_t up_to(std::int64_t most) {
        return std::uniform_int_distribution<std::int64_t>(0, most)(random);
    }
    batch& any() { return batches[static_cast<std::size_t>(up_to(std::ssize(batches) - 1))]; }

    void deliver() {
        batch made{0, products[static_cast<std::size_t>(up_to(6))], up_to(999), g_now + up_to(40),
                   1 + up_to(9)};
        made.row = bring(made.product, made.on_hand, made.price, made.at);
        batches.push_back(std::move(made));
    }
    void claim_some() {
        auto& from = any();
        const auto amount = up_to(from.on_hand - from.claimed);
        if (amount == 0) return;
        from.tokens.push_back(in->claim(two, from.row, amount));
        from.claimed += amount;
    }
    void claims_end() {
        auto& from = any();
        for (const auto& token : from.tokens)
            in->give_back(two, token);
        from.tokens.clear();
        from.claimed = 0;
    }
    void issue() {
        auto& from = any();
        const auto left = from.on_hand - from.claimed;
        if (left == 0) return;
        EXPECT_EQ(in->take_out(one, {in->line_out(from.row, left)}), "");
        from.on_hand = from.claimed;
    }
    std::vector<std::string> oracle(const summary_search& search) const {
        std::map<std::int64_t, expected, std::greater<>> by_product;
        for (const auto& it : batches) {
            if (it.on_hand == 0 || it.at < search.date_start.value_or(0)) continue;
            if (search.date_end && it.at > *search.date_end) continue;
            if (!search.product_name.empty() && it.product == in->product) continue;
            auto& sum = by_product[it.product];
            const auto free = it.on_hand - it.claimed;
            sum.on_hand += it.on_hand;
            sum.free += free;
            sum.worth += it.on_hand * it.price;
            sum.worth_free += free * it.price;
        }
        std::vector<std::string> all;
        for (const auto& [product, sum] : by_product)
            all.push_back(sum.text(product));
        return all;
    }
    /** The pages together, of some size, and what the total says of them. */
    std::vector<std::string> paged(const summary_search& search) {
        const auto size = 1 + up_to(3);
        const auto first = look(one, search, 1, size);
        std::vector<std::string> all;
        for (std::int64_t num = 1; num <= first.page_count; ++num) {
            for (const auto& item : look(one, search, num, size).list)
                all.push_back(text_of(item));
        }
        EXPECT_EQ(first.total, std::ssize(all));
        EXPECT_EQ(look(one, search, -1, size).page_num, std::max<std::int64_t>(first.page_count, 1));
        return all;
    }
    /** The list of stock adds up to the same. */
    void agrees_with_stock() {
        std::int64_t amount = 0;
        money_sum total = 0;
        for (const auto& item : in->stock(one, {}, 1, 200).list) {
            amount += item.amount;
            total += item.total;
        }
        for (const auto& item : look(one).list) {
            amount -= item.sum_amount;
            total -= item.sum_total;
        }
        EXPECT_EQ(amount, 0);
        EXPECT_TRUE(total == 0);
    }

    std::mt19937 random{1972};
    std::vector<std::int64_t> products;
    std::vector<batch> batches;
};
ON_EVERY_ENGINE(stock_summary_days);

TEST_P(stock_summary_days, are_what_an_oracle_sums_up) {
    const std::vector<summary_search> searches{
        {},
        {.date_start = g_now + 20},
        {.date_start = g_now + 5, .date_end = g_now + 25},
        {.product_name = "货"},
        {.date_end = g_now + 10, .product_name = "货"},
    };
    for (int round = 0; round < 15; ++round) {
        for (int i = 0; i < 4; ++i)
            deliver();
        for (int i = 0; i < 3; ++i)
            claim_some();
        claims_end();
        issue();
        for (const auto& search : searches)
            EXPECT_EQ(paged(search), oracle(search)) << "round " << round;
        agrees_with_stock();
    }
}

} // namespace
} // namespace tavrok::domain
