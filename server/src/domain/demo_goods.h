#pragma once

#include <cstddef>
#include <cstdint>

#include "domain/principal.h"
#include "store/connection.h"

namespace tavrok::domain {

/** How much of the demo goods: departments and lines of goods at the top (at most 5 each, all with what is
 * below them), and products (at most 40 for each line). */
struct goods_wish {
    std::size_t departments;
    std::size_t lines;
    std::size_t products;
};

/** Gives a company departments of two levels, categories of three and products in the lowest of them,
 * gathered over the last year. What they are called is everyday Chinese and nobody's brand. */
void fill_goods(store::connection& with, const principal& who, const goods_wish& how, std::int64_t now);

} // namespace tavrok::domain
