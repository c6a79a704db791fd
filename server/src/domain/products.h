#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "domain/listing.h"
#include "domain/principal.h"
#include "store/connection.h"

namespace tavrok::domain {

/** The highest price, in hundredths. */
inline constexpr std::int64_t g_highest_price = 99'999'999'00;
/** The largest quantity of a line, in whole units. */
inline constexpr std::int64_t g_highest_amount = 99'999'999;

struct product {
    std::int64_t id{0};
    std::string name{};
    std::string code{};
    std::string spec{};
    std::int64_t category{0};    /**< 0: at the root of the categories */
    std::string category_name{}; /**< empty at the root */
    std::int64_t price{0};       /**< in hundredths */
    std::int64_t datetime{0};    /**< when it was added, seconds */
};

/** Substrings, without regard to case; an empty one does not restrict. The category is that one alone,
 * without those below it. */
struct product_search {
    std::optional<std::int64_t> category{};
    std::string name{};
    std::string code{};
    std::string spec{};
};

using product_page = list_page<product>;

/** What an edit changes: only what is given. */
struct product_change {
    std::int64_t id{0};
    std::optional<std::string> name{};
    std::optional<std::string> code{};
    std::optional<std::string> spec{};
    std::optional<std::int64_t> category{};
    std::optional<std::int64_t> price{};
};

/** All of these throw `refused`; an unknown id is as refused as one of another company. */
product_page list_products(store::connection& with, const principal& who, const product_search& search,
                           const page_wish& wish, count_cache& counts);
/** `what.id`, `what.category_name` and `what.datetime` are ignored. The category must be live, or 0. */
added add_product(store::connection& with, const principal& who, const product& what, std::int64_t now);
/** A category that is changed must be live, or 0. */
void edit_product(store::connection& with, const principal& who, const product_change& change,
                  std::int64_t now);
/** Refused while anything of it is on hand. */
void remove_product(store::connection& with, const principal& who, std::int64_t id, std::int64_t now);

} // namespace tavrok::domain
