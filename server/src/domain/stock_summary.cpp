#include "domain/stock_summary.h"

#include <limits>
#include <unordered_map>
#include <utility>
#include <vector>

#include "store/records/products.h"
#include "store/records/stock_lists.h"

namespace tavrok::domain {

namespace {

using limits = std::numeric_limits<std::int64_t>;

/** When the rows came in, both included. */
struct period {
    std::int64_t from;
    std::int64_t to;
};

/** What the rows of a product add up to. */
struct sums {
    std::int64_t on_hand{0};
    std::int64_t free{0};
    money_sum worth{0};
    money_sum worth_free{0};

    void add(const store::stock_sum& one) {
        const auto left = one.on_hand - one.claimed;
        on_hand += one.on_hand;
        free += left;
        worth += money_sum{one.on_hand} * one.price;
        worth_free += money_sum{left} * one.price;
    }
    std::int64_t average() const {
        if (on_hand == 0) return 0;
        return free > 0 ? average_money(worth_free, free) : average_money(worth, on_hand);
    }
};

store::list_filter filter_of(const principal& who, const summary_search& search, const period& dates) {
    // in the order of store::g_product_texts
    const auto words = {&search.product_name, &search.code, &search.spec};
    store::list_filter filter{who.company, {}};
    std::size_t text = 0;
    for (const auto* word : words)
        store::text_like(filter, text++, criterion_pattern(*word));
    store::named_within(filter, store::g_stock_list, "product", "added_at", dates.from, dates.to);
    return filter;
}

summary_item item_of(const store::row& one) {
    auto record = store::product_of(one);
    summary_item made;
    made.product = record.id;
    made.product_name = std::move(record.texts[0]);
    made.code = std::move(record.texts[1]);
    made.spec = std::move(record.texts[2]);
    made.category = record.category;
    made.category_name = std::move(record.category_name);
    return made;
}

void add_up(store::connection& with, const principal& who, const period& dates,
            std::vector<summary_item>& list) {
    std::vector<std::int64_t> products;
    products.reserve(list.size());
    for (const auto& one : list)
        products.push_back(one.product);
    std::unordered_map<std::int64_t, sums> found;
    store::each_stock_sum(with, who.company, products, dates.from, dates.to,
                          [&](const store::stock_sum& one) { found[one.product].add(one); });
    for (auto& one : list) {
        const auto& of = found[one.product];
        one.avg_price = of.average();
        one.sum_amount = of.free;
        one.sum_total = of.worth_free;
    }
}

} // namespace

list_page<summary_item> list_stock_summary(store::connection& with, const principal& who,
                                           const summary_search& search, const page_wish& wish,
                                           count_cache& counts) {
    check_page_size(wish.page_size);
    const period dates{search.date_start.value_or(limits::min()), search.date_end.value_or(limits::max())};
    const auto filter = filter_of(who, search, dates);
    auto page =
        read_page<summary_item>(with, store::g_product_list, filter,
                                filtered_total(with, store::g_product_list, filter, counts), wish, item_of);
    add_up(with, who, dates, page.list);
    return page;
}

} // namespace tavrok::domain
