#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "store/connection.h"
#include "store/records/listing.h"

namespace tavrok::store {

/** A stock row with the names that it shows. */
struct stock_item {
    std::int64_t id{0};
    std::int64_t warehouse{0};
    std::string warehouse_name{};
    std::string place{};
    std::int64_t product{0};
    std::string product_name{};
    std::int64_t category{0};    /**< 0: at the root of the categories */
    std::string category_name{}; /**< empty at the root */
    std::string code{};
    std::string spec{};
    std::int64_t price{0};  /**< in hundredths */
    std::int64_t amount{0}; /**< on hand less what is claimed by quantity */
    std::int64_t total{0};  /**< in hundredths */
    std::string remark{};
    std::int64_t datetime{0}; /**< when it came in, seconds */
};

/** The list of the rows that have something on hand; a row of it is read by stock_item_of. */
extern const listing g_stock_list;
stock_item stock_item_of(const row& one);

/** Rows of a product at one price, added up. */
struct stock_sum {
    std::int64_t product{0};
    std::int64_t price{0}; /**< in hundredths */
    std::int64_t on_hand{0};
    std::int64_t claimed{0}; /**< by quantity */
};
/** The sums of these products over the listed rows that came in between the moments, both included. */
void each_stock_sum(connection& with, std::int64_t company, const std::vector<std::int64_t>& products,
                    std::int64_t from, std::int64_t to, const std::function<void(const stock_sum&)>& each);

} // namespace tavrok::store
