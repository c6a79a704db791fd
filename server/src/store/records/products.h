#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "store/connection.h"
#include "store/records/listing.h"

namespace tavrok::store {

/** The text columns, in the order of product_texts; all of them are searched. */
inline constexpr std::array<const char*, 3> g_product_texts{"name", "code", "spec"};
using product_texts = std::array<std::string, g_product_texts.size()>;

struct product_record {
    std::int64_t id{0};
    std::int64_t added_at{0};
    std::int64_t category{0}; /**< 0: at the root of the categories */
    std::int64_t price{0};    /**< in hundredths */
    product_texts texts{};
    std::string category_name{}; /**< read only; empty at the root */
};

/** What an update changes; null leaves a column alone. */
struct product_values {
    std::array<value, g_product_texts.size()> texts{};
    std::array<value, g_product_texts.size()> folded{};
    value category{};
    value price{};
};

/** The list of products; a row of it is read by product_of. */
extern const listing g_product_list;
product_record product_of(const row& one);
/** Restricts to products whose folded text of that number fits the pattern, where there is one. */
void text_like(list_filter& filter, std::size_t text, const std::string& pattern);

std::int64_t insert_product(connection& with, std::int64_t company, std::int64_t user,
                            const product_record& what, const product_texts& folded);
/** Holds a live product until the transaction ends and gives its category; none for an unknown or retired
 *  one. Before a category is held, never after: that is the order of locks. */
std::optional<std::int64_t> hold_product(connection& with, std::int64_t company, std::int64_t id);
/** Gives 0 for an unknown or retired product. */
std::int64_t update_product(connection& with, std::int64_t company, std::int64_t id,
                            const product_values& what);
/** Gives 0 for an unknown or retired product. */
std::int64_t retire_product(connection& with, std::int64_t company, std::int64_t id, std::int64_t now);

} // namespace tavrok::store
