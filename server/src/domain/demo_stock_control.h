#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "domain/principal.h"
#include "store/connection.h"

namespace tavrok::domain {

/** Where the goods of a demo company lie, and who handles them. */
struct demo_premises {
    std::vector<std::int64_t> warehouses;
    std::vector<std::int64_t> employees;
};

/** A shelf such as "A-03-12" in a warehouse of the demo company. */
std::string demo_place(std::size_t house, std::size_t number);

/** What a stocktaking or a transfer did to a row of stock. */
struct demo_shift {
    std::int64_t stock{0};
    std::int64_t by{0};        /**< below zero: is gone from there */
    std::int64_t made{0};      /**< the row that a transfer made of what is gone; 0 for none */
    std::int64_t warehouse{0}; /**< of that row, as the next */
    std::string place{};
};

/** Counts some rows of a warehouse, the keeper's way: most are right, some are a few off. `number` tells one
 * stocktaking from another. */
std::vector<demo_shift> count_demo_stock(store::connection& with, const principal& who,
                                         const demo_premises& of, std::size_t number, std::int64_t now);
/** Carries goods from one warehouse to another. */
std::vector<demo_shift> carry_demo_stock(store::connection& with, const principal& who,
                                         const demo_premises& of, std::size_t number, std::int64_t now);

} // namespace tavrok::domain
