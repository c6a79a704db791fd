#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "domain/listing.h"
#include "domain/principal.h"
#include "store/connection.h"
#include "store/records/stock_lists.h"

namespace tavrok::domain {

/** A stock row as lists and pickers show it: its amount is what is on hand less what is claimed by quantity,
 * its total that amount times the price. */
using stock_item = store::stock_item;

/** What stock is searched for; what is empty or not given does not restrict. The dates, in seconds and both
 * included, are about when the row came in; texts are substrings, without regard to case. */
struct stock_search {
    std::optional<std::int64_t> date_start{};
    std::optional<std::int64_t> date_end{};
    std::optional<std::int64_t> warehouse{};
    std::string product_name{};
    std::string spec{};
    std::string code{};
    std::string place{};
    std::string remark{};
};

/** The rows that have something on hand, newest first. Throws `refused`. */
list_page<stock_item> list_stock(store::connection& with, const principal& who, const stock_search& search,
                                 const page_wish& wish, count_cache& counts);

} // namespace tavrok::domain
