#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "store/connection.h"

namespace tavrok::store {

/** The most that a row may hold: its value at the highest price fits into 64 bits. */
inline constexpr std::int64_t g_most_on_hand = 900'000'000;

/** A stock row: a batch of a product at one place and one price. */
struct stock_record {
    std::int64_t id{0};
    std::int64_t product{0};
    std::int64_t warehouse{0};
    std::string place{};
    std::int64_t price{0}; /**< in hundredths */
    std::string remark{};
    std::int64_t added_at{0};
    std::int64_t on_hand{0};
    std::int64_t claimed{0}; /**< by quantity */
    std::int64_t holder{0};  /**< the user who holds the row as a whole; 0: nobody */
    std::int64_t holds{0};   /**< how many claims hold it as a whole */
};

/** Gives the id of a new row with nothing on hand; `what.id` and the figures are ignored. */
std::int64_t insert_stock(connection& with, std::int64_t company, const stock_record& what,
                          const std::string& place_folded, const std::string& remark_folded);
/** Locks a row until the transaction ends and reads it; none for an unknown one. Rows are locked by ascending
 * id. */
std::optional<stock_record> hold_stock(connection& with, std::int64_t company, std::int64_t id);

/** The same without a lock. */
std::optional<stock_record> read_stock(connection& with, std::int64_t company, std::int64_t id);

/** A change of a row's figures. */
struct stock_change {
    std::int64_t on_hand{0};
    std::int64_t claimed{0};
    std::int64_t holds{0};
    std::int64_t user{0}; /**< only where nobody, or this user, holds the row as a whole */
};
/** Changes the figures where what is on hand covers what is claimed afterwards and is not too much, and no
 * other user holds the row as a whole; false when that is not so. */
bool change_stock(connection& with, std::int64_t company, std::int64_t id, const stock_change& by);
/** Takes claims that have ended out of the figures, whoever holds the row. */
void release_stock(connection& with, std::int64_t company, std::int64_t id, std::int64_t claimed,
                   std::int64_t holds);

/** A line of the ledger. */
struct movement_record {
    std::int64_t stock{0};
    std::int64_t amount{0}; /**< with its sign, as the value */
    std::int64_t value{0};  /**< in hundredths, at the price of the batch */
    std::int64_t document{0};
    std::int64_t line{0};
    std::int64_t user{0};
    std::int64_t moved_at{0};
};
void insert_movement(connection& with, std::int64_t company, const movement_record& what);

/** Whether the company has anything of the product, or in the warehouse, on hand. */
bool product_on_hand(connection& with, std::int64_t company, std::int64_t product);
bool warehouse_in_use(connection& with, std::int64_t company, std::int64_t warehouse);

} // namespace tavrok::store
