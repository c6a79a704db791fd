#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "domain/listing.h"
#include "domain/money.h"
#include "domain/principal.h"
#include "store/connection.h"

namespace tavrok::domain {

/** A product summed over its stock rows, as the list of stock shows them. */
struct summary_item {
    std::int64_t product{0};
    std::string product_name{};
    std::string code{};
    std::string spec{};
    std::int64_t category{0};    /**< 0: at the root of the categories */
    std::string category_name{}; /**< empty at the root */
    /** In hundredths: of what is free; where nothing is, of what is on hand. */
    std::int64_t avg_price{0};
    std::int64_t sum_amount{0}; /**< on hand less what is claimed by quantity */
    money_sum sum_total{0};     /**< that, each row at its price, in hundredths */
};

/** What the summary is restricted to; what is empty or not given does not restrict. The dates, in seconds and
 * both included, are about when the rows came in; texts are substrings, without regard to case. */
struct summary_search {
    std::optional<std::int64_t> date_start{};
    std::optional<std::int64_t> date_end{};
    std::string product_name{};
    std::string code{};
    std::string spec{};
};

/** The products that have something on hand that came in within the dates, newest first, summed over just
 * these rows. Throws `refused`. */
list_page<summary_item> list_stock_summary(store::connection& with, const principal& who,
                                           const summary_search& search, const page_wish& wish,
                                           count_cache& counts);

} // namespace tavrok::domain
